#pragma once

#include "core/HashMap.h"

/// The map from integers to integers. The top four bits of a key do not help to spread it: keys that differ
/// only there share their first slot.
class VAK_API CIntMap : public CHashMap<int, int, int>
{
public:
    explicit CIntMap(unsigned int n = 101);
    CIntMap(const CIntMap& other);
    CIntMap& operator=(const CIntMap& other);
    ~CIntMap() override;
};
