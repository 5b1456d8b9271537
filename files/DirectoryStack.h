#pragma once

/// The process's current directory and a stack of earlier ones, for work that changes it and puts it back.
/// The stack is one for the whole process and lives as long as it; used from the user-interface thread only.

#include "framework/base/Platform.h"
#include "framework/base/String.h"

/// Returns the current directory, slash-terminated; "\" if the platform gives none or one of 260 characters
/// or more.
VAK_API CString fileGetCurrentDirectory();
/// Puts the current directory on the stack, makes `directory` current and returns the one that was, also when
/// `directory` could not be entered.
VAK_API CString filePushCurrentDirectory(const CString& directory);
/// Takes the directory pushed last off the stack, makes it current and returns it. Throws
/// CInvalidArgException when the stack is empty.
VAK_API CString filePopCurrentDirectory();
