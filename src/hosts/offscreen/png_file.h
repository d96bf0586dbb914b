#pragma once

#include <string>

#include "hosts/offscreen/picture.h"

// Writes `picture` as an 8-bit RGB PNG at `path`, all of it or nothing: a file of that name is replaced only
// once the new one is complete. The same picture gives the same bytes. Throws Failure.
void write_png(const Picture& picture, const std::string& path);

// Makes `folder`, and those it lies in, where they are missing. Throws Failure.
void make_folder(const std::string& folder);

// Throws Failure when no file could be written at `path`: early, rather than when its picture is ready.
void expect_writable(const std::string& path);
