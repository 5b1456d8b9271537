#pragma once

#include "framework/base/Archive.h"
#include "framework/base/MemFile.h"

#include <gtest/gtest.h>

#include <fstream>
#include <iterator>
#include <string>
#include <string_view>

namespace vak::test {

/// The bytes that `write(archive)` stores.
template <class Write>
std::string Stored(Write write, int bufferSize = 4096)
{
    CMemFile file;
    CArchive archive(&file, CArchive::store, bufferSize);
    write(archive);
    archive.Close();
    std::string bytes(std::size_t(file.GetLength()), '\0');
    file.SeekToBegin();
    file.Read(bytes.data(), UINT(bytes.size()));
    return bytes;
}

/// Lets `read(archive)` load from `bytes`.
template <class Read>
void Load(std::string_view bytes, Read read, int bufferSize = 4096)
{
    std::string copy(bytes);
    CMemFile file(reinterpret_cast<BYTE*>(copy.data()), UINT(copy.size()));
    CArchive archive(&file, CArchive::load, bufferSize);
    read(archive);
}

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

/// True when `act()` throws an exception of class Thrown.
template <class Thrown = CInvalidArgException, class Act>
bool IsRefused(Act act)
{
    try {
        act();
    } catch (Thrown* exception) {
        exception->Delete();
        return true;
    }
    return false;
}

/// The cause that ends reading from `bytes`.
template <class Read>
int LoadCause(std::string_view bytes, Read read)
{
    return ArchiveCause([&] { Load(bytes, read); });
}

/// The bytes of a pipe: what they are, but not how many nor which.
class LengthlessFile : public CMemFile
{
public:
    using CMemFile::CMemFile;
    ULONGLONG GetLength() const override { AfxThrowNotSupportedException(); }
    ULONGLONG GetPosition() const override { AfxThrowNotSupportedException(); }
};

/// How reading `object` from a File of the bytes ends: -1 when it does, else the archive's cause.
template <class File = CMemFile, class Object>
int ReadCause(Object& object, std::string bytes)
{
    File file(reinterpret_cast<BYTE*>(bytes.data()), UINT(bytes.size()));
    CArchive archive(&file, CArchive::load, 128);
    return ArchiveCause([&] { object.Serialize(archive); });
}

template <class Object>
std::string StoredBytes(Object& object, int bufferSize = 128)
{
    return Stored([&](CArchive& archive) { object.Serialize(archive); }, bufferSize);
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
