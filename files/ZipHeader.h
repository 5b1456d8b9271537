#pragma once

#include "framework/base/Platform.h"
#include "framework/base/String.h"

#include <cstdint>

namespace vak::detail {
class ZipDirectory;
}

/// One entry of an archive as the archive's directory describes it: a copy, which outlives the archive.
class VAK_API CZipHeader
{
public:
    CZipHeader() = default;
    CZipHeader(const CZipHeader&) = default;
    CZipHeader& operator=(const CZipHeader&) = default;
    virtual ~CZipHeader();

    /// The name with backslashes; that of a directory ends in one.
    const CString& GetFileName() const { return m_name; }
    /// The modification time, local time in the archive, as seconds since 1970; 0 when it names no moment.
    std::int64_t GetTime() const;
    /// The size of the data when extracted, in bytes. Throws CZipException* (tooLarge) when it does not fit.
    UINT GetUncompressedSize() const;

    /// The same without a limit.
    ULONGLONG GetLength() const { return m_length; }
    ULONGLONG GetCompressedLength() const { return m_compressed; }
    UINT GetCrc() const { return m_crc; }
    /// The method's number in the format: 0 is stored, 8 is deflated.
    WORD GetMethod() const { return m_method; }
    bool IsDirectory() const;
    bool IsEncrypted() const { return m_encrypted; }
    const CString& GetComment() const { return m_comment; }

private:
    friend class vak::detail::ZipDirectory;

    CString m_name;
    CString m_comment;
    ULONGLONG m_length = 0;
    ULONGLONG m_compressed = 0;
    UINT m_crc = 0;
    WORD m_method = 0;
    WORD m_dosDate = 0;
    WORD m_dosTime = 0;
    bool m_encrypted = false;
};
