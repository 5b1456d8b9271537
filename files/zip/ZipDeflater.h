#pragma once

#include "files/zip/ZipSource.h"

#include <cstdint>
#include <memory>
#include <span>

namespace vak::detail {

/// The encoder's state, kept from entry to entry because making it costs more than a small file.
class ZipDeflater
{
public:
    ZipDeflater();
    ~ZipDeflater();
    ZipDeflater(const ZipDeflater&) = delete;
    ZipDeflater& operator=(const ZipDeflater&) = delete;

    /// Makes ready for a new stream of that level, 1 to 9. Throws CMemoryException*.
    void Reset(int level);
    /// Compresses from the front of `input` to the front of `output` and takes both down to what is left.
    /// `isLast`: no input follows, the stream is to be ended. True when it has ended.
    bool Compress(ZipSource::Bytes& input, std::span<std::uint8_t>& output, bool isLast);

private:
    struct Stream;
    std::unique_ptr<Stream> m_stream;
    int m_level = 0;
};

} // namespace vak::detail
