// How the exporter says that it cannot go on: one clear line and an exit status.
#pragma once

#include <stdexcept>
#include <string>

// Exit statuses besides 0 and what the show itself exits with.
constexpr int kStatusFailed = 1; // what was asked for could not be done
constexpr int kStatusUsage = 2;  // what was asked for makes no sense

class Failure : public std::runtime_error {
public:
    explicit Failure(const std::string& message, int status = kStatusFailed)
        : std::runtime_error(message), status_(status) {}
    int status() const { return status_; }

private:
    int status_;
};
