#include "files/zip/ZipDeflater.h"

#include <zlib.h>

#include <algorithm>
#include <climits>

namespace vak::detail {

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
    z_stream& z = m_stream->z;
    const auto offered = static_cast<uInt>(std::min<std::size_t>(input.size(), UINT_MAX));
    const auto room = static_cast<uInt>(std::min<std::size_t>(output.size(), UINT_MAX));
    z.next_in = const_cast<Bytef*>(input.data()); // only read
    z.avail_in = offered;
    z.next_out = output.data();
    z.avail_out = room;
    const int code = deflate(&z, isLast ? Z_FINISH : Z_NO_FLUSH);
    input = input.subspan(offered - z.avail_in);
    output = output.subspan(room - z.avail_out);
    return code == Z_STREAM_END;
}

} // namespace vak::detail
