#pragma once

#include <cstddef>

/// Counts the characters of a UTF-16 file's lines, line ends left out, as a program of this system reads
/// them: fgetws with wide characters of the C library's own width, which is why this stands in a library of
/// its own.
std::size_t CountWideLines(const char* path);
