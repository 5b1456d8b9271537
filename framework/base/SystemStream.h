#pragma once

#include "framework/base/Platform.h"

#include <cstddef>
#include <cstdio>

/// Standard C streams over open files, and questions about a stream's own read buffer, which each C library
/// keeps in its own fields.
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

/// Shows what `stream` would read next without reading it; fills the buffer when it is empty. No bytes at the
/// end of the file and after an error (`feof` and `ferror` tell which).
StreamBytes PeekStream(std::FILE* stream);

/// Reads past `count` bytes, at most as many as PeekStream has just shown.
void SkipStream(std::FILE* stream, std::size_t count);

/// A buffered binary stream over an open file (SystemFile.h), which it takes over: CloseStream closes both.
/// Null on failure; `file` is then still the caller's. `buffer` holds `size` bytes and outlives the stream.
std::FILE* OpenStream(HANDLE file, bool read, bool write, char* buffer, std::size_t size);
/// Writes out what is buffered and closes; false when something could not be written, the stream is closed
/// anyway.
bool CloseStream(std::FILE* stream);
bool FlushStream(std::FILE* stream);
/// Moves by the standard library's origin codes; needed between a read and a write.
bool SeekStream(std::FILE* stream, LONGLONG offset, int origin);
/// -1 on failure.
LONGLONG StreamPosition(std::FILE* stream);
/// The platform's code of the stream operation on this thread that has just failed.
DWORD LastStreamError();

} // namespace vak::system
