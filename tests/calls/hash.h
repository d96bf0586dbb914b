// A hash of calls, to compare whole shows.
#pragma once

#include <cstddef>
#include <cstdint>

#include "tests/hosts/recording/recording.h"

// FNV-1a over everything that is put in.
class Hash {
public:
    void add(const void* data, std::size_t size) {
        const auto* bytes = static_cast<const unsigned char*>(data);
        for (std::size_t i = 0; i < size; ++i) value_ = (value_ ^ bytes[i]) * 1099511628211u;
    }
    void add(const recording::Call& call) {
        add(call.name.data(), call.name.size() + 1);
        for (const recording::Argument& argument : call.arguments) {
            if (const double* number = std::get_if<double>(&argument)) {
                add(number, sizeof *number);
            } else {
                const std::string& text = std::get<std::string>(argument);
                add(text.data(), text.size() + 1);
            }
        }
    }
    std::uint64_t value() const { return value_; }

private:
    std::uint64_t value_ = 14695981039346656037u;
};
