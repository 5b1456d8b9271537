#include "files/ZipArchive.h"
#include "files/detail/ZipState.h"
#include "framework/base/Exception.h"

void CZipArchive::SetComment(const CString&)
{
    AfxThrowNotSupportedException();
}

void CZipArchive::Add(LPCWSTR, LPCWSTR, int, int, UINT)
{
    AfxThrowNotSupportedException();
}

void CZipArchive::Delete(const std::vector<std::size_t>&)
{
    AfxThrowNotSupportedException();
}

void CZipArchive::Rename(const std::vector<std::size_t>&, const CStringArray&)
{
    AfxThrowNotSupportedException();
}

void CZipArchive::Create(ULONGLONG)
{
    AfxThrowNotSupportedException();
}

void CZipArchive::Complete(bool) {}
