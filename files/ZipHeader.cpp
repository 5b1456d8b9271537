#include "files/ZipHeader.h"

#include "files/ZipException.h"
#include "files/zip/ZipDates.h"

CZipHeader::~CZipHeader() = default;

std::int64_t CZipHeader::GetTime() const
{
    return vak::detail::zip::TimeFromDos(m_dosDate, m_dosTime);
}

UINT CZipHeader::GetUncompressedSize() const
{
    if (m_length > 0xFFFFFFFF)
        vak::detail::ThrowZip(CZipException::tooLarge, nullptr, m_name);
    return static_cast<UINT>(m_length);
}

bool CZipHeader::IsDirectory() const
{
    return !m_name.IsEmpty() && m_name[m_name.GetLength() - 1] == L'\\';
}
