#pragma once

#include "framework/base/Archive.h"
#include "framework/base/Exception.h"
#include "framework/base/MemFile.h"

#include <string>

namespace vak::fuzz {

/// The bytes of a pipe: what they are, but not how many.
class LengthlessFile : public CMemFile
{
public:
    using CMemFile::CMemFile;
    ULONGLONG GetLength() const override { AfxThrowNotSupportedException(); }
};

/// What the object stores.
template <class Object>
std::string Stored(Object& object)
{
    CMemFile file;
    CArchive archive(&file, CArchive::store, 128);
    object.Serialize(archive);
    archive.Close();
    std::string bytes(std::size_t(file.GetLength()), '\0');
    file.SeekToBegin();
    file.Read(bytes.data(), UINT(bytes.size()));
    return bytes;
}

/// Reads the object from a File of the bytes; false when an exception of class Expected ends that.
template <class Expected, class File = CMemFile, class Object>
bool IsLoaded(Object& object, std::string bytes)
{
    File file(reinterpret_cast<BYTE*>(bytes.data()), UINT(bytes.size()));
    CArchive archive(&file, CArchive::load, 128);
    try {
        object.Serialize(archive);
    } catch (Expected* exception) {
        exception->Delete();
        return false;
    }
    return true;
}

} // namespace vak::fuzz
