#include "files/detail/KindRegistry.h"

#include "files/FilePath.h"

#include <algorithm>
#include <iterator>

namespace vak::detail {
namespace {

struct BuiltInKind
{
    const wchar_t* description;
    const wchar_t* extensions;
    unsigned int fileClass;
    unsigned int properties;
};

constexpr BuiltInKind kBuiltInKinds[] = {
    {L"Rla files", L".rla|.rpf", 'RLA ', 0x1001},
    {L"RAW image files (Canon, Kodak, Minolta, Leica...)",
     L".crw|.sr2|.cr2|.bay|.nef|.mrw|.orf|.raf|.dcr|.kdc|.kqp|.k25|.srf|.ptx|.pef|.x3f|.dng|.arw|.erf",
     'RAWS', 0x1001},
    {L"Z-Buffer files", L".vak", 'ZFIL', 0x100B},
    {L"Avi files", L".avi", 'AVI ', 0x10113},
    {L"Zpic softimage files", L".zpic", 'ZPIC', 0x1041},
    {L"Pic softimage files", L".pic", 'PIC ', 0x1001},
    {L"Iff files", L".iff", 'IFF ', 0x1011},
    {L"Photoshop files", L".psd|.pdd", 'PHOT', 0x1011},
    {L"Cursor files", L".cur|.ani", 'CURS', 0x1011},
    {L"HDR files", L".hdr", 'HDR ', 0x1001},
    {L"3ds Max files (Dynamic Data Format Exchange)", L".max", '3MAX', 0x4013},
    {L"Maya files (Dynamic Data Format Exchange)", L".mb|.ma", 'MAYA', 0x4013},
    {L"Windows audio files", L".wav", 'AIWV', 0x8011},
    {L"Windows Media audio files", L".wma", 'AIWM', 0x8011},
    {L"MPEG Audio files", L".mp3|.mp2|.mpa", 'AIMG', 0x8011},
    {L"Macintosh audio files", L".aif|.aifc|.aiff", 'AIMC', 0x8011},
    {L"Unix audio files", L".au", 'AIUX', 0x8011},
    {L"Midi files", L".mid|.rmi|.midi", 'MIDI', 0x8011},
    {L"Flash files", L".swf", 'FLAS', 0x23011},
    {L"Html files", L".htm|.html|.htx|.asp|.alx|.stm|.shtml|.aspx", 'IHTM', 0x21011},
    {L"QuickTime files", L".mov", 'MOV ', 0x10001},
    {L"Zip files", L".zip", 'ZIP ', 0x40003},
};

bool AppendOnce(KindRegistry::Classes& classes, unsigned int fileClass)
{
    if (std::find(classes.begin(), classes.end(), fileClass) != classes.end())
        return false;
    classes.push_back(fileClass);
    return true;
}

CString Lowered(CString text)
{
    return text.MakeLower();
}

} // namespace

std::vector<CString> SplitExtensions(const CString& list)
{
    std::vector<CString> pieces;
    int start = 0;
    while (start < list.GetLength()) {
        const int end = list.Find(L'|', start);
        const int length = (end < 0 ? list.GetLength() : end) - start;
        if (length > 0)
            pieces.push_back(list.Mid(start, length));
        start += length + 1;
    }
    return pieces;
}

KindRegistry::KindRegistry()
{
    for (unsigned int i = 0; i < std::size(kBuiltInKinds); ++i)
        RegisterBuiltIn(i);
}

bool KindRegistry::Find(unsigned int fileClass, CFileExt& ext) const
{
    return m_kinds.Find(fileClass, ext) != 0;
}

unsigned int KindRegistry::FindClass(const CString& extension) const
{
    Classes classes;
    return m_classes.Find(Lowered(extension), classes) ? classes.front() : 0;
}

void KindRegistry::Register(CFileExt& ext)
{
    constexpr unsigned int kWritable3d = kFileKind3d | kFileWrite;
    if ((ext.m_properties & kWritable3d) == kWritable3d)
        ext.m_properties |= kFileWriteDialog;
    m_kinds.Insert(ext.m_class, ext);
    AppendOnce(m_order, ext.m_class);
    for (const CString& extension : SplitExtensions(Lowered(ext.m_extension))) {
        Classes classes;
        m_classes.Find(extension, classes);
        if (AppendOnce(classes, ext.m_class))
            m_classes.Insert(extension, classes);
    }
}

bool KindRegistry::Unregister(const CString& extensions, unsigned int fileClass)
{
    CFileExt ext;
    if (!Find(fileClass, ext))
        return false;
    const std::vector<CString> pieces = SplitExtensions(extensions);
    bool removed = pieces.empty();
    for (const CString& piece : pieces) {
        // First as it stands: a plug-in may have declared what no file name can end in.
        removed |=
            RemoveExtension(ext, Lowered(piece)) || RemoveExtension(ext, Lowered(fileGetExtension(piece)));
    }
    if (!removed)
        return false;
    if (pieces.empty() || SplitExtensions(ext.m_extension).empty())
        RemoveKind(ext);
    else
        m_kinds.Insert(fileClass, ext);
    return true;
}

/// A record of the library's own is read and written by the library, as far as its properties say so.
void KindRegistry::RegisterBuiltIn(unsigned int index)
{
    const BuiltInKind& kind = kBuiltInKinds[index];
    const bool isRead = (kind.properties & (kFileRead | kFileReadOther)) != 0;
    const bool isWritten = (kind.properties & (kFileWrite | kFileWriteOther)) != 0;
    CFileExt ext(kind.description, kind.extensions, kind.fileClass, kind.properties,
                 isRead ? kFileCodeLibrary : kFileCodeNone, isWritten ? kFileCodeLibrary : kFileCodeNone);
    Register(ext);
}

/// When a plug-in that took over one of the library's own classes leaves, the library handles it again.
void KindRegistry::RestoreBuiltIn(unsigned int fileClass)
{
    for (unsigned int i = 0; i < std::size(kBuiltInKinds); ++i) {
        if (kBuiltInKinds[i].fileClass == fileClass)
            RegisterBuiltIn(i);
    }
}

/// Takes a lower-cased extension away from the kind, in the record and in the table.
bool KindRegistry::RemoveExtension(CFileExt& ext, const CString& extension)
{
    CString rest;
    for (const CString& piece : SplitExtensions(ext.m_extension)) {
        if (Lowered(piece) != extension)
            rest += rest.IsEmpty() ? piece : L"|" + piece;
    }
    ext.m_extension = rest;
    return RemoveClaim(extension, ext.m_class);
}

bool KindRegistry::RemoveClaim(const CString& extension, unsigned int fileClass)
{
    Classes classes;
    if (!m_classes.Find(extension, classes) || std::erase(classes, fileClass) == 0)
        return false;
    if (classes.empty())
        m_classes.Remove(extension);
    else
        m_classes.Insert(extension, classes);
    return true;
}

/// Removes the kind whole, also from extensions that an earlier record of its class claimed: a claim without
/// a record would hide the claims behind it.
void KindRegistry::RemoveKind(const CFileExt& ext)
{
    std::vector<CString> extensions;
    for (unsigned int slot = m_classes.GetFirst(); slot != 0xFFFFFFFF;) {
        Classes classes;
        extensions.push_back(m_classes.GetNext(slot, classes));
    }
    for (const CString& extension : extensions)
        RemoveClaim(extension, ext.m_class);
    m_kinds.Remove(ext.m_class);
    std::erase(m_order, ext.m_class);
    if (ext.m_initCallback != nullptr)
        RestoreBuiltIn(ext.m_class);
}

KindRegistry& TheKinds()
{
    static KindRegistry& kinds = *new KindRegistry;
    return kinds;
}

} // namespace vak::detail
