#pragma once

#include "examples/sdk/OptionsSheet.h"
#include "examples/vakconvert/Target.h"

/// How results are named and where they go.
class NamesPage : public CCustomPropertyPage
{
public:
    NamesPage();
};

/// The options of a target, and the names of results, as they are kept in the preferences: OK and Apply keep
/// what is shown there, and the next conversion uses it.
class TargetSheet : public OptionsSheet
{
public:
    explicit TargetSheet(const Target& target);

    /// Refuses names that lead nowhere, too, on the page that has them.
    int SaveDataFromPages(CCustomData& data) override;
    int OnApplyOrOK(int isOK) override;

protected:
    void SetDefaults(CCustomData& data) const override;
    CString SaveTo(const CString& path, const CCustomData& data) const override;

private:
    NamesPage m_names;
};
