// An error that ends the export: one line for the user and an exit status.
#pragma once

#include <stdexcept>
#include <string>

namespace offscreen {

constexpr int kStatusFailed = 1; // what was asked for could not be done
constexpr int kStatusUsage = 2;  // the command line makes no sense

class Failure : public std::runtime_error {
public:
    explicit Failure(const std::string& message, int status = kStatusFailed)
        : std::runtime_error(message), status_(status) {}
    int status() const { return status_; }

private:
    int status_;
};

} // namespace offscreen
