#pragma once

/// What the library asks of the system about dynamic libraries. Natively there are none: every address is in
/// no module, and the other functions do not exist.

#include "framework/base/String.h"

namespace vak::system {

/// Maps the library at `path` without running any of its code and without its dependencies, so that its
/// exports can be looked at. Null with the system's code in `error` on failure. A library that is loaded
/// already is only counted once more.
HMODULE MapModule(const CString& path, DWORD& error);

/// Loads the library at `path` with its initialisation. Its dependencies are found in its own folder, in the
/// application's and in the system's; never in the current directory, nor on the search path. Null with the
/// system's code in `error` on failure. Unmap a mapped library before: the system would return it as it is.
HMODULE LoadModule(const CString& path, DWORD& error);

/// Undoes one MapModule or LoadModule.
void UnloadModule(HMODULE module);

/// The address of an exported name, or null.
void* FindSymbol(HMODULE module, const CStringA& name);

/// The module that `address` lies in, not counted; null for none.
HMODULE ModuleAt(const void* address);

/// What a program or library says that it is, in the first language of its version information; empty when it
/// says nothing. None of its code is run.
VAK_INTERNAL_API CString ModuleDescription(const CString& path);

} // namespace vak::system
