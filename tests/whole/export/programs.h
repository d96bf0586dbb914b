// The programs under test, ready to be started.
#pragma once

#include <string>
#include <vector>

#include "tests/whole/export/run_program.h"

// skav-export with the project's data, in English, unless `arguments` say otherwise.
inline Start export_show(std::vector<std::string> arguments) {
    Start start;
    start.arguments = {SKAV_EXPORT, "--data", SKAV_DATA, "--language", "en"};
    start.arguments.insert(start.arguments.end(), arguments.begin(), arguments.end());
    return start;
}

// The same host under the probe show (probe_show.cpp).
inline Start export_probe(const std::string& probe, std::vector<std::string> arguments) {
    Start start = export_show(std::move(arguments));
    start.arguments[0] = SKAV_PROBE_EXPORT;
    start.environment["PROBE"] = probe;
    return start;
}
