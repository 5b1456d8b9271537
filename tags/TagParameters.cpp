#include "tags/TagValue.h"

#include "core/CustomData.h"
#include "files/FilePath.h"
#include "files/FileSystem.h"
#include "files/FileText.h"
#include "framework/base/StringArray.h"
#include "framework/base/SystemFolder.h"
#include "framework/base/Time.h"
#include "framework/base/detail/PathText.h"
#include "tags/detail/ParameterChain.h"
#include "tags/detail/TagParameterTable.h"

#include <algorithm>

namespace {

/// A piece of a path. The name that a tag stands for need not exist, so that what does exist must not decide
/// how it is taken apart: nothing here asks the disk.
using PieceOfPath = CString (*)(const CString& path);

/// Where the directory ends and the name begins: "C:x" has a root but no backslash.
int NameStart(const CString& path)
{
    return std::max(vak::detail::NameStart(path), vak::detail::RootLength(path));
}

CString FullPath(const CString& path)
{
    return path;
}

CString Name(const CString& path)
{
    return path.Mid(NameStart(path));
}

CString Directory(const CString& path)
{
    CString directory = path.Left(NameStart(path));
    if (!directory.IsEmpty() && directory.GetLength() == path.GetLength())
        fileSlashTerminate(directory); // a share, or a drive without its backslash
    return directory;
}

CString ShortName(const CString& path)
{
    return fileRemoveExtension(Name(path));
}

CString TopDirectory(const CString& path)
{
    CString directory = Directory(path).Mid(vak::detail::RootLength(path));
    directory.TrimRight(L'\\');
    return directory.Mid(vak::detail::NameStart(directory));
}

CString Root(const CString& path)
{
    CString root = path.Left(vak::detail::RootLength(path));
    fileSlashTerminate(root);
    return root;
}

CString Extension(const CString& path)
{
    return fileGetExtension(Name(path));
}

struct PieceName
{
    const wchar_t* parameter;
    PieceOfPath piece;
};

constexpr PieceName kPieces[] = {
    {L"ext", Extension},       {L"name", Name},           {L"path", Directory}, {L"fullpath", FullPath},
    {L"shortname", ShortName}, {L"topdir", TopDirectory}, {L"root", Root},
};

PieceOfPath FindPiece(const CString& parameter)
{
    for (const PieceName& row : kPieces) {
        if (parameter == row.parameter)
            return row.piece;
    }
    return nullptr;
}

bool Has(const CString& text, wchar_t unit)
{
    return text.Find(unit) >= 0;
}

CString DateText(const CTime& date, const CString& parameter)
{
    return fileGetDateText(date, Has(parameter, L'd'), Has(parameter, L'h'), Has(parameter, L't'));
}

CString KindOfFile(const CString& path)
{
    return vak::system::FileTypeName(Extension(path), fileIsDirectory(path) != 0);
}

} // namespace

void CTagValue::ApplyParameters(const CString& parameters)
{
    vak::detail::ParameterChain chain(parameters);
    CString name;
    while (chain.Next(name) && vak::detail::FindTagParameter(name) != nullptr)
        m_kind = vak::TagKind(HandleParameters(name));
}

_TAGDATA_INFO CTagValue::HandleParameters(const CString& parameter)
{
    if (vak::detail::FindTagParameter(parameter) == nullptr)
        return m_kind;
    if (m_kind == TAGDATA_DATE)
        SetText(DateText(GetDate(), parameter));
    else if (m_kind == TAGDATA_FILENAME)
        return HandleFileParameter(parameter);
    return m_kind;
}

_TAGDATA_INFO CTagValue::HandleFileParameter(const CString& parameter)
{
    const CString path = GetFilename();
    if (const PieceOfPath piece = FindPiece(parameter))
        SetFilename(piece(path));
    else if (parameter == L"kind")
        SetText(KindOfFile(path));
    else if (parameter == L"size")
        return TakeFileSize(path);
    else if (parameter == L"createdate")
        return TakeFileDate(path, fileGetCreationDate);
    else if (parameter == L"lastwritedate")
        return TakeFileDate(path, fileGetLastWriteDate);
    return m_kind;
}

_TAGDATA_INFO CTagValue::TakeFileSize(const CString& path)
{
    if (fileExists(path) == 0)
        return TAGDATA_NONE;
    // The kind is left to the caller.
    m_integer = fileGetSize(path);
    return TAGDATA_FILESIZE;
}

_TAGDATA_INFO CTagValue::TakeFileDate(const CString& path, int (*read)(const CString& path, CTime& date))
{
    CTime date;
    if (read(path, date) == 0)
        return TAGDATA_NONE;
    SetDate(date);
    return m_kind;
}
