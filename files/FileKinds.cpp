#include "files/FileKinds.h"

#include "core/HashTable.h"
#include "files/FilePath.h"
#include "files/detail/KindRegistry.h"
#include "resources/Ids.h"

#include <vector>

namespace {

using vak::detail::SplitExtensions;
using vak::detail::TheKinds;

CFileExt KindOfClass(unsigned int fileClass)
{
    CFileExt ext;
    fileGetExtensionInfo(fileClass, ext);
    return ext;
}

CFileExt KindOfName(const CString& name)
{
    CFileExt ext;
    fileGetFileExt(name, ext);
    return ext;
}

CString FirstExtension(const CFileExt& ext)
{
    const std::vector<CString> extensions = SplitExtensions(ext.m_extension);
    return extensions.empty() ? CString() : extensions.front();
}

/// Collects extensions, each once whatever its case.
class ExtensionCollector
{
public:
    ExtensionCollector(CStringArray& extensions, bool asPatterns)
        : m_extensions(extensions), m_asPatterns(asPatterns)
    {
        m_extensions.RemoveAll();
    }

    void Add(const CFileExt& ext)
    {
        for (const CString& extension : SplitExtensions(ext.m_extension)) {
            if (m_seen.Insert(CString(extension).MakeLower()))
                m_extensions.Add(m_asPatterns ? L"*" + extension : extension);
        }
    }

    int Count() const { return static_cast<int>(m_extensions.GetSize()); }

private:
    CStringArray& m_extensions;
    CHashTable<CString> m_seen;
    bool m_asPatterns;
};

/// One row of a dialog's filter; `text` is shown with its patterns behind it unless they are many.
CString FilterRow(CString text, const CString& patterns, bool showPatterns)
{
    text.Replace(L'|', L' '); // it separates the rows
    if (showPatterns)
        text += L" (" + patterns + L")";
    return text + L"|" + patterns + L"|";
}

CString JoinedPatterns(const std::vector<CFileExt>& kinds)
{
    CStringArray patterns;
    ExtensionCollector collector(patterns, true);
    for (const CFileExt& ext : kinds)
        collector.Add(ext);
    CString joined;
    for (int i = 0; i < collector.Count(); ++i)
        joined += (i == 0 ? L"" : L";") + patterns[i];
    return joined;
}

/// Returns the kinds that a dialog's filter asks for and that have an extension, in the order of
/// registration.
std::vector<CFileExt> KindsOfFilter(unsigned int filter)
{
    const bool isFamily = (filter & ~vak::kFileKindMask) == 0;
    std::vector<CFileExt> kinds;
    for (unsigned int fileClass : TheKinds().Order()) {
        const CFileExt ext = KindOfClass(fileClass);
        const bool wanted = filter == vak::kFileFilterAll || filter == fileClass ||
                            (isFamily && (ext.m_properties & filter) != 0);
        if (wanted && !FirstExtension(ext).IsEmpty())
            kinds.push_back(ext);
    }
    return kinds;
}

} // namespace

int fileRegisterFile(CFileExt& ext)
{
    if (ext.m_class == 0)
        return 0;
    TheKinds().Register(ext);
    return 1;
}

int fileUnregisterFile(const CString& extensions, unsigned int fileClass)
{
    return TheKinds().Unregister(extensions, fileClass) ? 1 : 0;
}

CFileExt* fileGetRegisteredFiles(unsigned int& count)
{
    const std::vector<unsigned int>& order = TheKinds().Order();
    count = static_cast<unsigned int>(order.size());
    if (order.empty())
        return nullptr;
    CFileExt* files = new CFileExt[order.size()];
    for (std::size_t i = 0; i < order.size(); ++i)
        TheKinds().Find(order[i], files[i]);
    return files;
}

void fileFreeRegisteredFiles(CFileExt* files)
{
    delete[] files;
}

unsigned int fileGetClass(const CString& name)
{
    return KindOfName(name).GetClass();
}

unsigned int fileGetLoader(const CString& name)
{
    return KindOfName(name).GetLoader();
}

unsigned int fileGetSaver(const CString& name)
{
    return KindOfName(name).GetSaver();
}

unsigned int fileGetProperties(const CString& name)
{
    return KindOfName(name).GetProperties();
}

unsigned int fileGetProperties(unsigned int fileClass)
{
    return KindOfClass(fileClass).GetProperties();
}

unsigned int fileGetKindOf(const CString& name)
{
    return KindOfName(name).GetKindOf();
}

unsigned int fileGetKindOf(unsigned int fileClass)
{
    return KindOfClass(fileClass).GetKindOf();
}

int fileGetFileExt(const CString& name, CFileExt& ext)
{
    const CString extension = fileGetExtension(name);
    return fileGetExtensionInfo(extension.IsEmpty() ? 0 : TheKinds().FindClass(extension), ext);
}

int fileGetExtensionInfo(unsigned int fileClass, CFileExt& ext)
{
    if (TheKinds().Find(fileClass, ext))
        return 1;
    ext.Init();
    return 0;
}

CString fileGetMainExtension(unsigned int fileClass)
{
    return FirstExtension(KindOfClass(fileClass));
}

CString fileGetMainExtension(const CString& name)
{
    return FirstExtension(KindOfName(name));
}

int fileGetExtensionArray(unsigned int fileClass, CStringArray& extensions, int asPatterns)
{
    ExtensionCollector collector(extensions, asPatterns != 0);
    collector.Add(KindOfClass(fileClass));
    return collector.Count();
}

int fileGetExtensionArrayByProperty(unsigned int mask, CStringArray& extensions, int asPatterns, int allBits)
{
    ExtensionCollector collector(extensions, asPatterns != 0);
    for (unsigned int fileClass : TheKinds().Order()) {
        const CFileExt ext = KindOfClass(fileClass);
        const unsigned int common = ext.m_properties & mask;
        if (allBits != 0 ? common == mask : common != 0)
            collector.Add(ext);
    }
    return collector.Count();
}

CString fileGetDialogFilter(unsigned int filter)
{
    const std::vector<CFileExt> kinds = KindsOfFilter(filter);
    CString text;
    CString rows;
    if (kinds.size() > 1) {
        text.LoadString(IDS_FILTER_ALL_KINDS);
        rows = FilterRow(text, JoinedPatterns(kinds), false);
    }
    for (const CFileExt& ext : kinds)
        rows += FilterRow(ext.m_description, JoinedPatterns({ext}), true);
    text.LoadString(IDS_FILTER_ALL_FILES);
    rows += FilterRow(text, L"*.*", true) + L"|";
    rows.Replace(L'\0', L' '); // the dialog takes a zero for the end of a row
    return rows;
}
