#pragma once

/// CStringArray: a growing array of strings; see CArray for its contract.

#include "framework/base/Array.h"
#include "framework/base/String.h"

class VAK_API CStringArray : public CArray<CString>
{
    DECLARE_SERIAL(CStringArray)

public:
    CStringArray() = default;

    /// The archive holds the count and the strings; reading replaces what the array holds. After an
    /// exception it holds the strings read before.
    void Serialize(CArchive& archive) override;
};
