#pragma once

#include "core/HashMap.h"
#include "files/FileExt.h"
#include "framework/base/Platform.h"
#include "framework/base/String.h"

#include <vector>

namespace vak::detail {

/// The non-empty pieces of an extension list.
std::vector<CString> SplitExtensions(const CString& list);

/// Kinds by class and classes by lower-cased extension, and beside them the order in which the classes came.
/// No extension lists a class that has no record.
class KindRegistry
{
public:
    using Classes = std::vector<unsigned int>;

    /// Makes a registry of the library's own kinds.
    KindRegistry();

    bool Find(unsigned int fileClass, CFileExt& ext) const;
    /// Returns the class that claimed the extension first, 0 when none did.
    unsigned int FindClass(const CString& extension) const;
    const Classes& Order() const { return m_order; }

    /// See fileRegisterFile and fileUnregisterFile.
    void Register(CFileExt& ext);
    bool Unregister(const CString& extensions, unsigned int fileClass);

private:
    void RegisterBuiltIn(unsigned int index);
    void RestoreBuiltIn(unsigned int fileClass);
    bool RemoveExtension(CFileExt& ext, const CString& extension);
    bool RemoveClaim(const CString& extension, unsigned int fileClass);
    void RemoveKind(const CFileExt& ext);

    CHashMap<unsigned int, CFileExt, unsigned int> m_kinds;
    CHashMap<CString, Classes, const CString&> m_classes;
    Classes m_order;
};

/// The process-wide registry, made on first use and never destroyed: hosts ask until the very end.
KindRegistry& TheKinds();

} // namespace vak::detail
