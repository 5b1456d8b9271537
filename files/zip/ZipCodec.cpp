#include "files/zip/ZipCodec.h"

#include <zlib.h>

#include <algorithm>
#include <climits>

namespace vak::detail {

namespace {

/// Lets `step` go on from the front of `input` to the front of `output`, and takes both down to what it left.
/// Returns zlib's code.
int Go(z_stream& z, ZipSource::Bytes& input, std::span<std::uint8_t>& output, int (*step)(z_stream*, int),
       int flush)
{
    const auto offered = static_cast<uInt>(std::min<std::size_t>(input.size(), UINT_MAX));
    const auto room = static_cast<uInt>(std::min<std::size_t>(output.size(), UINT_MAX));
    z.next_in = const_cast<Bytef*>(input.data()); // only read
    z.avail_in = offered;
    z.next_out = output.data();
    z.avail_out = room;
    const int code = step(&z, flush);
    input = input.subspan(offered - z.avail_in);
    output = output.subspan(room - z.avail_out);
    return code;
}

} // namespace

std::uint32_t ZipCrc(std::uint32_t crc, std::span<const std::uint8_t> bytes)
{
    return static_cast<std::uint32_t>(crc32_z(crc, bytes.data(), bytes.size()));
}

struct ZipInflater::Stream
{
    ~Stream() { inflateEnd(&z); }

    z_stream z{};
};

ZipInflater::ZipInflater() = default;

ZipInflater::~ZipInflater() = default;

void ZipInflater::Reset()
{
    if (m_stream != nullptr && inflateReset(&m_stream->z) == Z_OK)
        return;
    auto stream = std::make_unique<Stream>();
    if (inflateInit2(&stream->z, -MAX_WBITS) != Z_OK)
        ThrowMemory();
    m_stream = std::move(stream);
}

ZipInflater::Result ZipInflater::Expand(ZipSource::Bytes& input, std::span<std::uint8_t>& output)
{
    const int code = Go(m_stream->z, input, output, inflate, Z_NO_FLUSH);
    if (code == Z_STREAM_END)
        return Result::End;
    if (code == Z_MEM_ERROR)
        ThrowMemory();
    return code == Z_OK || code == Z_BUF_ERROR ? Result::More : Result::Damaged;
}

struct ZipDeflater::Stream
{
    ~Stream() { deflateEnd(&z); }

    z_stream z{};
};

ZipDeflater::ZipDeflater() = default;

ZipDeflater::~ZipDeflater() = default;

void ZipDeflater::Reset(int level)
{
    constexpr int kMemory = 8;
    if (m_stream != nullptr && level == m_level && deflateReset(&m_stream->z) == Z_OK)
        return;
    // The old state goes first: there is never more than one.
    m_stream = nullptr;
    auto stream = std::make_unique<Stream>();
    if (deflateInit2(&stream->z, level, Z_DEFLATED, -MAX_WBITS, kMemory, Z_DEFAULT_STRATEGY) != Z_OK)
        ThrowMemory();
    m_stream = std::move(stream);
    m_level = level;
}

bool ZipDeflater::Compress(ZipSource::Bytes& input, std::span<std::uint8_t>& output, bool isLast)
{
    return Go(m_stream->z, input, output, deflate, isLast ? Z_FINISH : Z_NO_FLUSH) == Z_STREAM_END;
}

} // namespace vak::detail
