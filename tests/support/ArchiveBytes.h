#pragma once

#include "tests/support/Archived.h"

#include <gtest/gtest.h>

#include <fstream>
#include <iterator>

namespace vak::test {

/// The cause of the exception of class Thrown that `act()` throws, -1 when it throws none.
template <class Thrown, class Act>
int Cause(Act act)
{
    try {
        act();
    } catch (Thrown* exception) {
        const int cause = exception->m_cause;
        exception->Delete();
        return cause;
    }
    return -1;
}

template <class Act>
int ArchiveCause(Act act)
{
    return Cause<CArchiveException>(act);
}

/// The cause that ends reading from `bytes`.
template <class Read>
int LoadCause(std::string_view bytes, Read read)
{
    return ArchiveCause([&] { Load(bytes, read); });
}

/// How reading `object` from a File of the bytes ends: -1 when it does, else the archive's cause.
template <class File = CMemFile, class Object>
int ReadCause(Object& object, std::string_view bytes)
{
    const auto read = [&](CArchive& archive) { object.Serialize(archive); };
    return ArchiveCause([&] { Load<File>(bytes, read, 128); });
}

/// "0A ff" as bytes; blanks are skipped.
inline std::string Hex(std::string_view digits)
{
    std::string bytes;
    std::string byte;
    for (const char digit : digits) {
        if (digit != ' ')
            byte += digit;
        if (byte.size() == 2) {
            bytes += char(std::stoi(byte, nullptr, 16));
            byte.clear();
        }
    }
    return bytes;
}

/// A file of tests/data.
inline std::string Data(const char* name)
{
    std::ifstream file(std::string(VAK_SOURCE_DIR "/tests/data/") + name, std::ios::binary);
    EXPECT_TRUE(file.is_open()) << name;
    return {std::istreambuf_iterator<char>(file), {}};
}

} // namespace vak::test
