#pragma once

#include "files/FileExt.h"
#include "framework/base/Platform.h"
#include "framework/base/String.h"
#include "framework/base/StringArray.h"

/// The process-wide registry of file kinds.
///
/// It holds the library's own kinds from the first call on, and those that format plug-ins declare while they
/// are loaded. Nothing here locks: the registry belongs to the user-interface thread. What is handed out are
/// copies.
///
/// An extension may be claimed by several classes; a file name is then of the class that claimed it first.

/// Adds a kind, or replaces the record of its class; extensions that the class claimed before stay claimed.
///
/// A 3-D kind that can be written gets vak::kFileWriteDialog added, in `ext` as well. Returns 0, and
/// registers nothing, for class 0.
VAK_API int fileRegisterFile(CFileExt& ext);

/// Takes extensions away from a class: each "|"-separated piece of `extensions` is an extension with its dot,
/// or a file name whose extension is meant; an empty list means all that the class has. A kind without
/// extensions leaves the registry. Returns 1 if anything was removed.
VAK_API int fileUnregisterFile(const CString& extensions, unsigned int fileClass);

/// Returns an array of all kinds, in the order in which they were registered, and their count; null when
/// there are none. The caller hands it to `fileFreeRegisteredFiles`.
VAK_API CFileExt* fileGetRegisteredFiles(unsigned int& count);
/// Frees such an array; null is allowed.
VAK_API void fileFreeRegisteredFiles(CFileExt* files);

/// Returns the class of the name's extension, 0 when it has none.
VAK_API unsigned int fileGetClass(const CString& name);
/// Returns the code of what reads the file, vak::kFileCodeNone when nothing does.
VAK_API unsigned int fileGetLoader(const CString& name);
/// Returns the code of what writes the file, vak::kFileCodeNone when nothing does.
VAK_API unsigned int fileGetSaver(const CString& name);
/// Returns the property bits of the file's kind, 0 when it has none.
VAK_API unsigned int fileGetProperties(const CString& name);
VAK_API unsigned int fileGetProperties(unsigned int fileClass);
/// Returns the family bits of the file's kind, 0 when it has none.
VAK_API unsigned int fileGetKindOf(const CString& name);
VAK_API unsigned int fileGetKindOf(unsigned int fileClass);

/// Copies the record of the file's kind. Returns 0 when it has none; `ext` is then as CFileExt::Init leaves
/// it.
VAK_API int fileGetFileExt(const CString& name, CFileExt& ext);
/// Copies the record of a class. Returns 0 when it is unknown; `ext` is then as CFileExt::Init leaves it.
VAK_API int fileGetExtensionInfo(unsigned int fileClass, CFileExt& ext);

/// Returns the first extension of the kind's list, with its dot; empty when there is none.
VAK_API CString fileGetMainExtension(unsigned int fileClass);
VAK_API CString fileGetMainExtension(const CString& name);

/// Replaces `extensions` by those of a class, each once, in its order: with their dots, or as patterns
/// ("*.obj") when `asPatterns` is non-zero. Returns their number.
VAK_API int fileGetExtensionArray(unsigned int fileClass, CStringArray& extensions, int asPatterns = 0);
/// Replaces `extensions` by those of every kind that has any bit of `mask`, or every bit of it when `allBits`
/// is non-zero; each once, in the order of registration. Returns their number.
VAK_API int fileGetExtensionArrayByProperty(unsigned int mask, CStringArray& extensions, int asPatterns = 0,
                                            int allBits = 0);

/// Returns the filter of a file dialog, in the form that the dialog's constructor takes: rows of a text and
/// its ";"-separated patterns, everything closed by "|", the whole by another.
///
/// `filter` is vak::kFileFilterAll, family bits, or a class. Several kinds are preceded by a row that shows
/// them all together; a last row shows every file.
VAK_API CString fileGetDialogFilter(unsigned int filter);
