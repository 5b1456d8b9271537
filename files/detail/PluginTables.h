#pragma once

/// What the library remembers of its plug-ins: which are loaded and how often, and which are refused and why.

#include "core/HashMap.h"
#include "core/HashTable.h"
#include "files/IoPlugins.h"

#include <vector>

namespace vak::detail {

struct LoadedPluginKey
{
    HMODULE module = nullptr;
    CString entryName;
};

struct LoadedPlugin
{
    int count = 0;
    CString path;
    IoInitCallback entryPoint = nullptr;
};

/// The path is lower-cased: the file system does not tell the cases apart.
struct RefusedPluginKey
{
    CString path;
    CString entryName;
};

} // namespace vak::detail

template <>
struct vak::HashKey<vak::detail::LoadedPluginKey>
{
    static unsigned int Hash(const vak::detail::LoadedPluginKey& key);
    static bool Equal(const vak::detail::LoadedPluginKey& a, const vak::detail::LoadedPluginKey& b);
};

template <>
struct vak::HashKey<vak::detail::RefusedPluginKey>
{
    static unsigned int Hash(const vak::detail::RefusedPluginKey& key);
    static bool Equal(const vak::detail::RefusedPluginKey& a, const vak::detail::RefusedPluginKey& b);
};

namespace vak::detail {

class PluginTables
{
public:
    /// Counts a load; the path and the entry point are those of the first.
    void Raise(const LoadedPluginKey& key, const CString& path, IoInitCallback entryPoint);
    /// Undoes one; `plugin` is the record with its count after that. False when the table does not hold the
    /// pair.
    bool Lower(const LoadedPluginKey& key, LoadedPlugin& plugin);
    std::vector<LoadedPluginKey> Loaded() const;
    bool Find(const LoadedPluginKey& key, LoadedPlugin& plugin) const;

    bool IsRefused(const CString& path, const CString& entryName) const;
    /// The first reason for a pair is the one that is kept.
    void Refuse(const IoPluginRefusal& refusal);
    const std::vector<IoPluginRefusal>& Refusals() const { return m_refusals; }

private:
    CHashMap<LoadedPluginKey, LoadedPlugin, const LoadedPluginKey&> m_loaded;
    CHashTable<RefusedPluginKey> m_refused;
    std::vector<IoPluginRefusal> m_refusals;
};

/// Starts the plug-ins directory anew, as if no one had asked for it yet, for a program in
/// `applicationFolder` (slash-terminated); an empty one is the folder of the program that runs.
VAK_INTERNAL_API void RestartPluginsDirectory(const CString& applicationFolder);

} // namespace vak::detail
