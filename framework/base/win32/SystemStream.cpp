#include "framework/base/SystemStream.h"

namespace vak::system {

StreamBytes PeekStream(std::FILE* stream)
{
    if (stream->_cnt <= 0) {
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

} // namespace vak::system
