#pragma once

#include <cstddef>
#include <cstdio>

/// Questions about a standard stream's own read buffer, which each C library keeps in its own fields.
///
/// Line readers look for line ends right in that buffer. The stream stays the only truth about the position:
/// `fread`, `fscanf`, `ftell` and whoever was handed the `FILE*` go on where the line reader stopped.
///
/// Streams are always opened in binary mode (`"rb"`, `"wb"` ...) on both builds; text mode is translated by
/// CStdioFile above them, since only one of the two C libraries knows it.
namespace vak::system {

/// Bytes that a stream already holds; valid until the next operation on the stream.
struct StreamBytes
{
    const char* bytes = nullptr;
    std::size_t count = 0;
};

/// Shows what `stream` would read next without reading it; fills the buffer when it is empty. No bytes at the end
/// of the file and after an error (`feof` and `ferror` tell which).
StreamBytes PeekStream(std::FILE* stream);

/// Reads past `count` bytes, at most as many as PeekStream has just shown.
void SkipStream(std::FILE* stream, std::size_t count);

} // namespace vak::system
