#pragma once

/// What an archive remembers of the classes and objects that went through it. Both count from 1, together, in
/// the order of their first appearance.

#include "framework/base/Object.h"

#include <unordered_map>
#include <vector>

namespace vak::detail {

struct StoreMap
{
    std::unordered_map<const void*, DWORD> indices;
    DWORD next = 1;
    /// The class that was written last and its number: objects of one class stand in rows.
    const CRuntimeClass* lastClass = nullptr;
    DWORD lastClassIndex = 0;
};

struct LoadEntry
{
    /// Null for an object.
    CRuntimeClass* runtimeClass = nullptr;
    /// The schema that the class was stored with.
    UINT schema = 0;
    CObject* object = nullptr;
    /// The object could not be read; references to it are refused.
    bool failed = false;
};

struct LoadMap
{
    /// Entry 0 is not used.
    std::vector<LoadEntry> entries = std::vector<LoadEntry>(1);
    /// How many references to objects were given out.
    ULONGLONG referencesGiven = 0;
};

} // namespace vak::detail
