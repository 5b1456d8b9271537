#pragma once

#include "files/FileExt.h"
#include "files/FileParser.h"

#define PLUGIN_EXPORT extern "C" __declspec(dllexport)

/// A kind that a plug-in handles in both directions.
inline CFileExt PluginKind(const wchar_t* extension, unsigned int fileClass, unsigned int family)
{
    return {L"Test files",        extension,           fileClass, family | vak::kFileRead | vak::kFileWrite,
            vak::kFileCodePlugin, vak::kFileCodePlugin};
}

inline int DeclareOne(IoPluginMode mode, void* data, const CFileExt& kind)
{
    if (mode != IoPluginDeclare)
        return 0;
    static_cast<CFileExtArray*>(data)->Add(kind);
    return 1;
}
