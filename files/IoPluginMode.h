#pragma once

#include "framework/base/Platform.h"

/// What a format plug-in's entry point is asked to do; its first argument.
enum IoPluginMode : unsigned int
{
    IoPluginDeclare = 0, ///< append one record for each file kind that the plug-in handles to a CFileExtArray
    IoPluginCreate = 1,  ///< create the parser that the request record asks for
};

/// A format plug-in's entry point; what `data` is depends on the mode. Returns non-zero for success.
using IoInitCallback = int (*)(IoPluginMode mode, void* data);
