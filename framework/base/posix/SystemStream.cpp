#include "framework/base/SystemStream.h"

namespace vak::system {

StreamBytes PeekStream(std::FILE* stream)
{
    if (stream->_IO_read_ptr >= stream->_IO_read_end) {
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

} // namespace vak::system
