#pragma once

/// Archives for tests, sound ones and ones with a single defect: built from specs, and patched where the test
/// wants the bytes to lie.

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace vak::test {

/// The lowest `width` bytes of the value, low byte first.
inline std::string Little(std::uint64_t value, int width)
{
    std::string bytes;
    for (; width > 0; --width, value >>= 8)
        bytes += static_cast<char>(value & 0xFF);
    return bytes;
}

/// The format's CRC by its definition, bit by bit.
inline std::uint32_t Crc(std::string_view bytes)
{
    std::uint32_t crc = ~0u;
    for (const char byte : bytes) {
        crc ^= static_cast<unsigned char>(byte);
        for (int bit = 0; bit < 8; ++bit)
            crc = crc >> 1 ^ ((crc & 1) != 0 ? 0xEDB88320 : 0);
    }
    return ~crc;
}

/// A deflate stream of one block that holds the bytes as they are (at most 65,535).
inline std::string Deflated(std::string_view bytes)
{
    return '\x01' + Little(bytes.size(), 2) + Little(~bytes.size(), 2) + std::string(bytes);
}

inline std::string Extra(int id, const std::string& contents)
{
    return Little(id, 2) + Little(contents.size(), 2) + contents;
}

struct ZipSpec
{
    std::string name;
    std::string data;
    bool deflated = false;
    int flags = 0;
    std::string extra{};      ///< of the directory
    std::string localExtra{}; ///< of the local header
    std::string comment{};
    bool streamed = false; ///< the local header has neither CRC nor sizes
    std::string behind{};  ///< what follows the data
    int madeBy = 20;
    std::uint32_t attributes = 0;
};

/// An archive's bytes and where its records begin.
struct BuiltZip
{
    std::string bytes;
    std::vector<std::size_t> local;
    std::vector<std::size_t> central;
    std::size_t end = 0;

    void Put(std::size_t at, std::uint64_t value, int width)
    {
        bytes.replace(at, static_cast<std::size_t>(width), Little(value, width));
    }
};

struct ZipShape
{
    std::string front{}; ///< in front of the archive, not counted by its offsets
    std::string gap{};   ///< between the directory and the end
    std::string comment{};
    std::string behind{};
    bool zip64 = false; ///< the end record leaves everything to a zip64 record
};

/// What local header and central record share, from the flags to the lengths.
inline std::string SharedFields(const ZipSpec& spec, const std::string& stored, bool isLocal)
{
    const bool isEmpty = isLocal && spec.streamed;
    return Little(spec.flags | (spec.streamed ? 8 : 0), 2) + Little(spec.deflated ? 8 : 0, 2) +
           Little(0x6CA5, 2) + Little(0x5A6F, 2) + // 13:37:10 on 15 March 2025
           Little(isEmpty ? 0 : Crc(spec.data), 4) + Little(isEmpty ? 0 : stored.size(), 4) +
           Little(isEmpty ? 0 : spec.data.size(), 4) + Little(spec.name.size(), 2);
}

inline std::string EndRecords(std::size_t count, std::size_t start, std::size_t size, bool zip64,
                              const std::string& comment)
{
    std::string records;
    if (zip64) {
        records = "PK\x06\x06" + Little(44, 8) + Little(45, 2) + Little(45, 2) + Little(0, 8) +
                  Little(count, 8) + Little(count, 8) + Little(size, 8) + Little(start, 8) + "PK\x06\x07" +
                  Little(0, 4) + Little(start + size, 8) + Little(1, 4);
        count = start = size = 0xFFFFFFFF;
    }
    return records + "PK\x05\x06" + Little(0, 4) + Little(count, 2) + Little(count, 2) + Little(size, 4) +
           Little(start, 4) + Little(comment.size(), 2) + comment;
}

inline BuiltZip BuildZip(const std::vector<ZipSpec>& specs, const ZipShape& shape = {})
{
    BuiltZip built;
    std::string directory;
    built.bytes = shape.front;
    for (const ZipSpec& spec : specs) {
        const std::string stored = spec.deflated ? Deflated(spec.data) : spec.data;
        const std::size_t at = built.bytes.size();
        built.local.push_back(at);
        built.bytes += "PK\x03\x04" + Little(20, 2) + SharedFields(spec, stored, true) +
                       Little(spec.localExtra.size(), 2) + spec.name + spec.localExtra + stored + spec.behind;
        built.central.push_back(directory.size());
        directory += "PK\x01\x02" + Little(spec.madeBy, 2) + Little(20, 2) +
                     SharedFields(spec, stored, false) + Little(spec.extra.size(), 2) +
                     Little(spec.comment.size(), 2) + Little(0, 4) + Little(spec.attributes, 4) +
                     Little(at - shape.front.size(), 4) + spec.name + spec.extra + spec.comment;
    }
    const std::size_t start = built.bytes.size();
    for (std::size_t& at : built.central)
        at += start;
    const std::string end =
        EndRecords(specs.size(), start - shape.front.size(), directory.size(), shape.zip64, shape.comment);
    built.end = start + directory.size() + shape.gap.size() + (shape.zip64 ? 76 : 0);
    built.bytes += directory + shape.gap + end + shape.behind;
    return built;
}

} // namespace vak::test
