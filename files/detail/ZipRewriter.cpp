#include "files/detail/ZipRewriter.h"

#include "framework/base/Exception.h"

namespace vak::detail {

struct ZipRewriter::Output
{
};

ZipRewriter::ZipRewriter(const CString&, std::uint64_t)
{
    AfxThrowNotSupportedException();
}

ZipRewriter::~ZipRewriter() = default;

void ZipRewriter::CopyPrefix(ZipVolumes&, const ZipDirectory&)
{
    AfxThrowNotSupportedException();
}

void ZipRewriter::Keep(ZipVolumes&, const ZipDirectory&, const ZipEntry&, const CString*)
{
    AfxThrowNotSupportedException();
}

void ZipRewriter::Add(const CString&, const CString&, int, int, std::size_t)
{
    AfxThrowNotSupportedException();
}

void ZipRewriter::SetComment(const CString&)
{
    AfxThrowNotSupportedException();
}

void ZipRewriter::Commit()
{
    AfxThrowNotSupportedException();
}

} // namespace vak::detail
