#include "files/detail/PluginTables.h"

#include <cstdint>

namespace vak {

unsigned int HashKey<detail::LoadedPluginKey>::Hash(const detail::LoadedPluginKey& key)
{
    // Modules begin on 64 KiB boundaries: the low 16 bits say nothing.
    const auto address = reinterpret_cast<std::uintptr_t>(key.module);
    return static_cast<unsigned int>(address >> 16) ^ HashKey<CString>::Hash(key.entryName);
}

bool HashKey<detail::LoadedPluginKey>::Equal(const detail::LoadedPluginKey& a,
                                             const detail::LoadedPluginKey& b)
{
    return a.module == b.module && a.entryName == b.entryName;
}

unsigned int HashKey<detail::RefusedPluginKey>::Hash(const detail::RefusedPluginKey& key)
{
    return HashKey<CString>::Hash(key.path) ^ (HashKey<CString>::Hash(key.entryName) << 1);
}

bool HashKey<detail::RefusedPluginKey>::Equal(const detail::RefusedPluginKey& a,
                                              const detail::RefusedPluginKey& b)
{
    return a.path == b.path && a.entryName == b.entryName;
}

} // namespace vak

namespace vak::detail {

namespace {

RefusedPluginKey RefusedKey(const CString& path, const CString& entryName)
{
    RefusedPluginKey key{path, entryName};
    key.path.MakeLower();
    return key;
}

} // namespace

void PluginTables::Raise(const LoadedPluginKey& key, const CString& path, IoInitCallback entryPoint)
{
    LoadedPlugin plugin{0, path, entryPoint};
    m_loaded.Find(key, plugin);
    ++plugin.count;
    m_loaded.Insert(key, plugin);
}

bool PluginTables::Lower(const LoadedPluginKey& key, LoadedPlugin& plugin)
{
    if (!m_loaded.Find(key, plugin))
        return false;
    if (--plugin.count == 0)
        m_loaded.Remove(key);
    else
        m_loaded.Insert(key, plugin);
    return true;
}

std::vector<LoadedPluginKey> PluginTables::Loaded() const
{
    std::vector<LoadedPluginKey> keys;
    for (unsigned int position = m_loaded.GetFirst(); position != 0xFFFFFFFF;) {
        LoadedPluginKey key;
        LoadedPlugin plugin;
        m_loaded.GetNext(position, key, plugin);
        keys.push_back(key);
    }
    return keys;
}

bool PluginTables::Find(const LoadedPluginKey& key, LoadedPlugin& plugin) const
{
    return m_loaded.Find(key, plugin) != 0;
}

bool PluginTables::IsRefused(const CString& path, const CString& entryName) const
{
    return m_refused.IsFound(RefusedKey(path, entryName)) != 0;
}

void PluginTables::Refuse(const IoPluginRefusal& refusal)
{
    if (m_refused.Insert(RefusedKey(refusal.path, refusal.entryPoint)))
        m_refusals.push_back(refusal);
}

} // namespace vak::detail
