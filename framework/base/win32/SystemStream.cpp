#include "framework/base/SystemStream.h"

#include "framework/base/SystemFileFault.h"

#include <fcntl.h>
#include <io.h>

#include <cerrno>
#include <cstdint>
#include <cstdlib>

namespace vak::system {

StreamBytes PeekStream(std::FILE* stream)
{
    if (stream->_cnt <= 0) {
        if (const DWORD fault = FileFault(FileOperation::Read)) {
            stream->_flag |= _IOERR;
            _doserrno = fault;
            return {};
        }
        // Reading one byte fills the buffer; putting the same byte back only moves the pointer.
        const int byte = std::getc(stream);
        if (byte == EOF)
            return {};
        std::ungetc(byte, stream);
    }
    return {stream->_ptr, static_cast<std::size_t>(stream->_cnt)};
}

void SkipStream(std::FILE* stream, std::size_t count)
{
    stream->_ptr += count;
    stream->_cnt -= static_cast<int>(count);
}

std::FILE* OpenStream(HANDLE file, bool read, bool write, char* buffer, std::size_t size)
{
    const int descriptor = _open_osfhandle(reinterpret_cast<std::intptr_t>(file),
                                           _O_BINARY | (write ? (read ? _O_RDWR : _O_WRONLY) : _O_RDONLY));
    if (descriptor == -1)
        return nullptr;
    // From here on the handle goes with the descriptor, and nothing below fails short of memory for the
    // stream.
    std::FILE* const stream = _fdopen(descriptor, write ? (read ? "r+b" : "wb") : "rb");
    if (stream != nullptr)
        std::setvbuf(stream, buffer, _IOFBF, size);
    return stream;
}

bool CloseStream(std::FILE* stream)
{
    const DWORD fault = FileFault(FileOperation::Close);
    const bool closed = std::fclose(stream) == 0;
    if (fault != 0)
        _doserrno = fault;
    return closed && fault == 0;
}

bool FlushStream(std::FILE* stream)
{
    return std::fflush(stream) == 0;
}

bool SeekStream(std::FILE* stream, LONGLONG offset, int origin)
{
    return _fseeki64(stream, offset, origin) == 0;
}

LONGLONG StreamPosition(std::FILE* stream)
{
    return _ftelli64(stream);
}

DWORD LastStreamError()
{
    // The run-time sees a full disk itself, by a write that took nothing, without an error of the system.
    if (errno == ENOSPC)
        return ERROR_DISK_FULL;
    return _doserrno != 0 ? _doserrno : ERROR_GEN_FAILURE;
}

} // namespace vak::system
