#include "files/zip/ZipEntryStream.h"

#include <zlib.h>

#include <algorithm>
#include <climits>

namespace vak::detail {

struct ZipInflater::Stream
{
    z_stream z{};
};

ZipInflater::ZipInflater() = default;

ZipInflater::~ZipInflater()
{
    if (m_stream != nullptr)
        inflateEnd(&m_stream->z);
}

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
    z_stream& z = m_stream->z;
    const auto offered = static_cast<uInt>(std::min<std::size_t>(input.size(), UINT_MAX));
    const auto room = static_cast<uInt>(std::min<std::size_t>(output.size(), UINT_MAX));
    z.next_in = const_cast<Bytef*>(input.data()); // only read
    z.avail_in = offered;
    z.next_out = output.data();
    z.avail_out = room;
    const int code = inflate(&z, Z_NO_FLUSH);
    input = input.subspan(offered - z.avail_in);
    output = output.subspan(room - z.avail_out);
    if (code == Z_STREAM_END)
        return Result::End;
    if (code == Z_MEM_ERROR)
        ThrowMemory();
    return code == Z_OK || code == Z_BUF_ERROR ? Result::More : Result::Damaged;
}

} // namespace vak::detail
