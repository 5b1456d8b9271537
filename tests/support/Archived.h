#pragma once

/// Objects and values as the bytes that they store. For the fuzz targets, too: nothing of GoogleTest.

#include "framework/base/Archive.h"
#include "framework/base/Exception.h"
#include "framework/base/MemFile.h"

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

template <class Object>
std::string StoredBytes(Object& object, int bufferSize = 128)
{
    return Stored([&](CArchive& archive) { object.Serialize(archive); }, bufferSize);
}

/// Lets `read(archive)` load from a File of the bytes.
template <class File = CMemFile, class Read>
void Load(std::string_view bytes, Read read, int bufferSize = 4096)
{
    std::string copy(bytes);
    File file(reinterpret_cast<BYTE*>(copy.data()), UINT(copy.size()));
    CArchive archive(&file, CArchive::load, bufferSize);
    read(archive);
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

/// Reads the object from a File of the bytes; false when an exception of class Expected ends that.
template <class Expected, class File = CMemFile, class Object>
bool IsLoaded(Object& object, std::string_view bytes)
{
    const auto read = [&](CArchive& archive) { object.Serialize(archive); };
    return !IsRefused<Expected>([&] { Load<File>(bytes, read, 128); });
}

/// The bytes of a pipe: what they are, but not how many nor which.
class LengthlessFile : public CMemFile
{
public:
    using CMemFile::CMemFile;
    ULONGLONG GetLength() const override { AfxThrowNotSupportedException(); }
    ULONGLONG GetPosition() const override { AfxThrowNotSupportedException(); }
};

} // namespace vak::test
