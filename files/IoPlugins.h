#pragma once

/// The format plug-ins: dynamic libraries in the application's plug-ins folder that declare file kinds and
/// make the parsers for them. docs/plugins.md says how to write one. Windows only, for the user-interface
/// thread.
///
/// A plug-in is known by its file and the name of its entry point, one for each of its families. A pair that
/// failed once is refused for the life of the process and never tried again; why is kept for the host to
/// show.

#include "files/IoPluginMode.h"
#include "framework/base/String.h"

/// Families, as in the properties of a file kind, and the entry points that belong to them.
constexpr unsigned int kIoPluginBitmaps = 0x1000; ///< "InitBitmapParser"
constexpr unsigned int kIoPlugin3D = 0x4000;      ///< "Init3DParser"

/// A plug-in as LoadPlugin finds it; both null until a load succeeds.
struct _DllInfo
{
    HMODULE module = nullptr;
    IoInitCallback entryPoint = nullptr;
};

/// Why a plug-in is refused.
enum class IoPluginRefusalReason : int
{
    NotALibrary,     ///< the file cannot be mapped; `systemError` says why
    NoVersion,       ///< it does not export "GetLibraryVersion"
    WrongVersion,    ///< it was built for another interface version, `version`
    NoEntryPoint,    ///< it does not export the entry point: as a rule a plug-in of the other family
    LoadFailed,      ///< a missing dependency or a failed initialisation; `systemError`, and the plug-in's
                     ///< `message`
    DeclaredNothing, ///< its entry point failed or declared no kind
    EntryPointThrew, ///< its entry point ended with an exception; `message` if that has one
    FreedByHost,     ///< FreePlugin was called with `refuse`
};

struct IoPluginRefusal
{
    CString path;       ///< the plug-in file
    CString entryPoint; ///< the entry point that was wanted
    IoPluginRefusalReason reason = IoPluginRefusalReason::NotALibrary;
    unsigned int version = 0; ///< major in the high 16 bits, minor in the low 16
    DWORD systemError = 0;    ///< the platform's code, 0 when the system had no part in it
    CString message;          ///< the plug-in's own words, empty for none
};

/// A plug-in that is loaded.
struct IoPluginInfo
{
    CString path;
    CString entryPoint;
    HMODULE module = nullptr;
    int count = 0; ///< how often it was loaded and not freed
    int kinds = 0; ///< registered kinds that it handles; 0 when it declared only kinds of another family
};

/// Loads every plug-in of the plug-ins folder that has the entry point of `kind` (kIoPluginBitmaps or
/// kIoPlugin3D; nothing happens for another value) and registers the kinds that it declares for that family.
/// Plug-ins are taken in the alphabetical order of their names, so that of two that claim an extension the
/// first one wins. Each call raises the count of each plug-in by one.
VAK_API void RegisterIOPlugins(unsigned int kind);
/// Frees every plug-in with the entry point of `kind` once.
VAK_API void FreeIOPlugins(unsigned int kind);

/// The folder "Plugins" in the application's folder, lower-cased and slash-terminated. It is worked out by
/// the first call, which with `create` non-zero also makes the folder; later calls return the same and make
/// nothing.
VAK_API CString GetPluginsDirectory(int create);

/// Loads the plug-in file `path` if it was built for this interface and exports `entryName`, and raises its
/// count. Returns 1 with `info` filled, or 0 with `info` null and the pair refused. The user is told of a
/// plug-in for another interface version, and reads the message of a plug-in that explains why it cannot be
/// loaded. Dependencies are looked for beside the plug-in, in the application's folder and in the system's,
/// nowhere else.
VAK_API int LoadPlugin(const CString& path, const CString& entryName, _DllInfo& info);

/// Undoes one LoadPlugin; when the count reaches 0 the plug-in's kinds leave the registry, and with the last
/// of its entry points the library is unloaded: no parser of the plug-in may be alive then. `refuse` non-zero
/// refuses the pair from now on. Nothing happens for a pair that is not loaded.
VAK_API void FreePlugin(HMODULE module, const CString& entryName, int refuse);
/// Calls FreePlugin once for each loaded plug-in with that entry point.
VAK_API void FreePlugins(const CString& entryName);

/// The refused plug-ins in the order of their refusal: fills `refusal` and returns 1, or returns 0 and leaves
/// it alone when `index` is not below their number. Count from 0 until the answer is 0.
VAK_API int GetPluginRefusal(unsigned int index, IoPluginRefusal& refusal);
/// The reason as a sentence for the user, which need not name the file: show `path` with it.
VAK_API CString GetPluginRefusalText(const IoPluginRefusal& refusal);
/// The loaded plug-ins, in the same manner, in no particular order.
VAK_API int GetLoadedPlugin(unsigned int index, IoPluginInfo& info);
