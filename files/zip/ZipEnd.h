#pragma once

#include "files/zip/ZipFormat.h"
#include "files/zip/ZipSource.h"
#include "framework/base/String.h"

#include <cstdint>

namespace vak::detail {

/// What the records at an archive's end say, brought into positions of the whole space.
struct ZipEnd
{
    std::uint64_t record = 0; ///< where the end record begins
    std::uint16_t commentLength = 0;
    std::uint64_t start = 0; ///< where the directory begins
    std::uint64_t size = 0;  ///< its bytes
    std::uint64_t entries = 0;
    /// False when the number of entries was written in 16 bits: tools without zip64 wrote the rest of it.
    bool isExact = false;
    /// By how much positions in the records are too low because something stands in front of the archive.
    std::uint64_t prefix = 0;
    /// Offsets were written in 32 bits although the archive is longer: each lacks a multiple of their space.
    bool isWrapped = false;
};

/// Finds the end of the archive, which may have data of somebody else behind it, and brings the parts of a
/// split one. Throws CZipException*.
ZipEnd FindZipEnd(ZipSource& source, const CString& archive);

} // namespace vak::detail
