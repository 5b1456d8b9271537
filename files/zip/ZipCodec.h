#pragma once

#include "files/zip/ZipSource.h"

#include <cstdint>
#include <memory>
#include <span>

/// Deflate streams and the format's CRC: all that is asked of zlib.
namespace vak::detail {

/// Goes on with the format's CRC-32 of what came before; begins with 0.
std::uint32_t ZipCrc(std::uint32_t crc, std::span<const std::uint8_t> bytes);

/// The decoder's state, kept from entry to entry because making it costs more than a small file.
class ZipInflater
{
public:
    ZipInflater();
    ~ZipInflater();
    ZipInflater(const ZipInflater&) = delete;
    ZipInflater& operator=(const ZipInflater&) = delete;

    /// Makes ready for a new stream. Throws CMemoryException*.
    void Reset();
    enum class Result
    {
        More, ///< all input is used up or all output is filled
        End,  ///< the stream has ended
        Damaged
    };
    /// Expands from the front of `input` to the front of `output` and takes both down to what is left.
    Result Expand(ZipSource::Bytes& input, std::span<std::uint8_t>& output);

private:
    struct Stream;
    std::unique_ptr<Stream> m_stream;
};

/// The encoder's state, kept for the same reason.
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
