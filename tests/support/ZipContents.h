#pragma once

/// Archives as tests look at them: names and data.

#include "files/Zip.h"
#include "framework/base/MemFile.h"
#include "framework/base/SystemText.h"
#include "tests/support/ArchiveBytes.h"
#include "tests/support/Print.h"
#include "tests/support/TempFolder.h"
#include "tests/support/ZipBuilder.h"

#include <map>
#include <string>
#include <vector>

namespace vak::test {

/// By UTF-8 names with slashes.
using Contents = std::map<std::string, std::string>;

inline std::string Utf8(CString text)
{
    text.Replace(L'\\', L'/');
    CStringA narrow;
    vak::system::ToNarrow(CP_UTF8, text, static_cast<std::size_t>(text.GetLength()), narrow);
    return narrow.GetString();
}

inline std::string DataOf(CZipArchive& zip, std::size_t index)
{
    CMemFile file;
    zip.ExtractTo(index, file);
    std::string bytes(static_cast<std::size_t>(file.GetLength()), '\0');
    file.SeekToBegin();
    file.Read(bytes.data(), static_cast<UINT>(bytes.size()));
    return bytes;
}

/// Every entry, checked while it is read. A name that is there twice fails the test.
inline Contents ContentsOf(CZipArchive& zip)
{
    Contents contents;
    CZipHeader header;
    for (std::size_t i = 0; zip.GetEntry(i, header); ++i)
        EXPECT_TRUE(contents.emplace(Utf8(header.GetFileName()), DataOf(zip, i)).second) << i;
    return contents;
}

inline Contents ContentsOf(const CString& path)
{
    CZip zip;
    zip.Open(path, CZip::zipOpenReadOnly);
    return ContentsOf(zip);
}

inline CZipHeader HeaderOf(CZip& zip, LPCWSTR name)
{
    CZipHeader header;
    EXPECT_TRUE(zip.GetFileInfo(header, static_cast<WORD>(zip.FindFile(name)))) << Utf8(name);
    return header;
}

template <class Act>
int ZipCause(Act act)
{
    return Cause<CZipException>(act);
}

struct ZipNames : CStringArray
{
    explicit ZipNames(const std::vector<CString>& names)
    {
        for (const CString& name : names)
            Add(name);
    }
};

/// A folder and an archive "pack.zip" in it.
class ZipFixture : public testing::Test
{
protected:
    CString Write(const BuiltZip& built) { return folder.Write("pack.zip", built.bytes); }
    void Open(const BuiltZip& built, int mode = CZip::zipOpen)
    {
        zip.Close();
        zip.Open(Write(built), mode);
    }
    void Create() { zip.Open(path, CZip::zipCreate); }
    void Add(const std::string& name, const std::string& data, int level = -1)
    {
        zip.AddNewFile(folder.Write("in/file", data), CString(name.c_str()).GetString(), level);
    }

    TempFolder folder;
    const CString path = folder.Path("pack.zip");
    CZip zip;
};

/// Bytes that no deflating makes smaller.
inline std::string Noise(std::size_t size, std::uint32_t seed = 1)
{
    std::string bytes(size, '\0');
    for (char& byte : bytes) {
        seed = seed * 1664525 + 1013904223;
        byte = static_cast<char>(seed >> 24);
    }
    return bytes;
}

/// Bytes that deflate well, without being all the same.
inline std::string Words(std::size_t size)
{
    std::string text;
    for (int i = 0; text.size() < size; ++i)
        text += "v " + std::to_string(i * 7919 % 1000) + " 0.5\n";
    text.resize(size);
    return text;
}

} // namespace vak::test
