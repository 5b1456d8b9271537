#pragma once

#include "files/IoPluginMode.h"
#include "framework/base/Array.h"
#include "framework/base/String.h"

namespace vak {

/// Codes with a meaning of their own among the four-character codes of classes, loaders and savers.
constexpr unsigned int kFileCodeNone = 'UNKN';    ///< no loader, or no saver
constexpr unsigned int kFileCodeLibrary = 'VAKP'; ///< the library itself handles the kind
constexpr unsigned int kFileCodePlugin = 'PLGP';  ///< a plug-in handles the kind
constexpr unsigned int kFileFilterAll = 'ALLF';   ///< as the filter of a file dialog: every registered kind

/// Property bits of a kind. Either read bit makes the library the loader of a built-in kind, either write bit
/// its saver.
constexpr unsigned int kFileRead = 0x1;
constexpr unsigned int kFileWrite = 0x2;
constexpr unsigned int kFileReadOther = 0x4;
constexpr unsigned int kFileWriteOther = 0x8;
constexpr unsigned int kFileReadDialog = 0x20;     ///< reading offers an options dialog
constexpr unsigned int kFileReadMustShow = 0x40;   ///< reading must show its dialog
constexpr unsigned int kFileWriteDialog = 0x80;    ///< writing offers an options dialog
constexpr unsigned int kFileWriteMustShow = 0x100; ///< writing must show its dialog
constexpr unsigned int kFileKindMask = 0xFF000;    ///< the family bits together: the kind of a file
constexpr unsigned int kFileKindBitmap = 0x1000;
constexpr unsigned int kFileKind3d = 0x4000;
constexpr unsigned int kFileKindAudio = 0x8000;
constexpr unsigned int kFileKindVideo = 0x10000;
constexpr unsigned int kFileKindWeb = 0x20000;
constexpr unsigned int kFileKindArchive = 0x40000;

} // namespace vak

/// One kind of file: what it is called, by which extensions it is known, what can be done with it and by
/// whom.
///
/// A plain value; copies share nothing. Format plug-ins fill such records and hand them to the library, so
/// the members and their order are part of the interface.
class VAK_API CFileExt
{
public:
    /// Makes an empty record, as `Init` leaves it.
    CFileExt();
    /// Makes a record of its six values, without an init callback. `extensions` are written with their dots
    /// and separated by "|" (".mp3|.mp2"); `properties` are the kFile... bits; `loader` and `saver` are
    /// codes, vak::kFileCodeNone for none.
    CFileExt(const CString& description, const CString& extensions, unsigned int fileClass,
             unsigned int properties, unsigned int loader, unsigned int saver);

    CString GetDescription() const { return m_description; }
    /// Returns the extension list, separated by "|".
    CString GetExtension() const { return m_extension; }
    unsigned int GetClass() const { return m_class; }
    unsigned int GetProperties() const { return m_properties; }
    /// Returns the family bits of the properties.
    unsigned int GetKindOf() const { return m_properties & vak::kFileKindMask; }
    unsigned int GetLoader() const { return m_loader; }
    unsigned int GetSaver() const { return m_saver; }
    /// Returns the plug-in entry point that creates parsers for this kind, null when there is none.
    IoInitCallback GetInitIoCallback() const { return m_initCallback; }
    /// Hands out the six values at once, in the order in which the constructor takes them.
    void GetContents(CString& description, CString& extensions, unsigned int& fileClass,
                     unsigned int& properties, unsigned int& loader, unsigned int& saver) const;

    /// Empties the record: no texts, class and properties 0, loader and saver vak::kFileCodeNone, no
    /// callback.
    void Init();

    CString m_description;
    CString m_extension;
    unsigned int m_class;
    unsigned int m_properties;
    unsigned int m_loader;
    unsigned int m_saver;
    IoInitCallback m_initCallback;
};

/// What a plug-in's entry point receives in mode IoPluginDeclare and appends its kinds to.
///
/// The array belongs to the library, which destroys it after the call. Its memory comes from the shared C++
/// run-time, so a plug-in may append to it, provided that it is built with that run-time shared, as the
/// library is.
using CFileExtArray = CArray<CFileExt, const CFileExt&>;
