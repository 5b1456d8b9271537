#pragma once

#include "framework/base/Platform.h"

class CCustomData;

/// An object that keeps itself in a property store (core/CustomData.h). The order of the three operations is
/// part of the interface; objects are never destroyed through it.
class CCustomDataClass
{
public:
    /// Sets the object to its defaults: called when there is nothing to read.
    virtual void InitDefaults() = 0;
    /// Writes the object's fields into `out`, which is empty.
    virtual void SaveToCustomData(CCustomData& out) const = 0;
    /// Reads the fields back; the result is that of CCustomData::GetCustomClass.
    virtual int LoadFromCustomData(const CCustomData& in) = 0;

protected:
    ~CCustomDataClass() = default;
};
