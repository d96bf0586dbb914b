// How the entry points write the log.
#pragma once

#include <type_traits>

#include "tests/hosts/recording/recording.h"

namespace recording {

extern bool g_logging;
extern GlModel g_gl;

template <class T>
Argument argument(T value) {
    if constexpr (std::is_convertible_v<T, std::string>) {
        return std::string(value);
    } else {
        return static_cast<double>(value);
    }
}

// Adds a call to the log and shows it to the observer.
void write(const Call& call);

template <class... Arguments>
void record(const char* name, Arguments... arguments) {
    if (g_logging) write({name, {argument(arguments)...}});
}

// A call that ends in an array of `count` values.
template <class Value, class... Arguments>
void record_array(const char* name, const Value* values, int count, Arguments... arguments) {
    if (!g_logging) return;
    Call call{name, {argument(arguments)...}};
    for (int i = 0; i < count; ++i) call.arguments.push_back(argument(values[i]));
    write(call);
}

} // namespace recording
