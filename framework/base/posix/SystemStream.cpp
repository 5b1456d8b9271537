#include "framework/base/SystemStream.h"

#include "framework/base/posix/HostPath.h"
#include "framework/base/posix/ShareTable.h"

#include <cerrno>
#include <cstdint>

namespace vak::system {

StreamBytes PeekStream(std::FILE* stream)
{
    if (stream->_IO_read_ptr >= stream->_IO_read_end) {
        if (posix::Refused(FileOperation::Read)) {
            stream->_flags |= _IO_ERR_SEEN;
            errno = EIO;
            return {};
        }
        // Reading one byte fills the buffer; putting the same byte back only moves the pointer.
        const int byte = std::getc(stream);
        if (byte == EOF)
            return {};
        std::ungetc(byte, stream);
    }
    return {stream->_IO_read_ptr, static_cast<std::size_t>(stream->_IO_read_end - stream->_IO_read_ptr)};
}

void SkipStream(std::FILE* stream, std::size_t count)
{
    stream->_IO_read_ptr += count;
}

std::FILE* OpenStream(HANDLE file, bool read, bool write, char* buffer, std::size_t size)
{
    const auto descriptor = static_cast<int>(reinterpret_cast<std::intptr_t>(file));
    std::FILE* const stream = fdopen(descriptor, write ? (read ? "r+" : "w") : "r");
    if (stream != nullptr)
        std::setvbuf(stream, buffer, _IOFBF, size);
    return stream;
}

bool CloseStream(std::FILE* stream)
{
    const bool refused = posix::Refused(FileOperation::Close);
    posix::ForgetOpen(fileno(stream));
    const bool closed = std::fclose(stream) == 0;
    if (refused)
        errno = EIO;
    return closed && !refused;
}

bool FlushStream(std::FILE* stream)
{
    return std::fflush(stream) == 0;
}

bool SeekStream(std::FILE* stream, LONGLONG offset, int origin)
{
    return fseeko(stream, offset, origin) == 0;
}

LONGLONG StreamPosition(std::FILE* stream)
{
    return ftello(stream);
}

DWORD LastStreamError()
{
    return posix::ErrorFromErrno(errno);
}

} // namespace vak::system
