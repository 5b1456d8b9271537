#pragma once

#include "dialogs/CustomPropertyPage.h"
#include "dialogs/CustomPropertySheet.h"
#include "examples/sdk/FormatOptions.h"

#include <memory>

class CFileIo;

/// The page of a property sheet that shows the options which a format declares, one control each: a check box
/// for a boolean, a field for a number, with a tip that explains the option and tells its range.
class FormatPage : public CCustomPropertyPage
{
public:
    explicit FormatPage(const FormatOptions& options);

protected:
    BOOL OnInitDialog() override;
    void OnDestroy() override;

private:
    void MakeControls();
    void MakeOption(const FormatOption& option, int id, const RECT& row);
    HWND MakeControl(const wchar_t* windowClass, const CString& text, DWORD style, int id, const RECT& units);
    void AddTip(HWND control, const FormatOption& option);

    FormatOptions m_options;
    HWND m_tips = nullptr; ///< goes with the page's window
};

/// A sheet over the parameters of a format, with a page for its options. Its store is the parameters: whoever
/// shows it fills GetData() before, and takes them out after IDOK. Host and plug-ins show the same.
///
/// One button shows the values that the format declares, the other keeps what is shown in a file of its own:
/// a preferences file, from which any host takes the options of this format.
class OptionsSheet : public CCustomPropertySheet
{
public:
    /// Shows the options for saving files of that class and extension (with its dot). `parent` may be null.
    OptionsSheet(unsigned int fileClass, const CString& extension, const FormatOptions& options,
                 CWnd* parent);

    enum Buttons
    {
        kDefaults,
        kSaveAs
    };

protected:
    int OnPushCustomButton(int index) override;

    /// What the first button shows. A derived sheet adds the values of its pages.
    virtual void SetDefaults(CCustomData& data) const;
    /// Keeps `data` in the preferences file `path`. Returns an empty text, or what to tell the user.
    virtual CString SaveTo(const CString& path, const CCustomData& data) const;

private:
    void SaveAs();

    unsigned int m_fileClass;
    FormatOptions m_options;
    CCustomData m_defaults; ///< as long as the pages show it
    std::unique_ptr<FormatPage> m_page;
};

/// For a parser that is about to save: shows the sheet when its kind has a dialog for that, or must show it,
/// and the operation is not silent; what the user sets is in the operation's parameters then.
/// Returns false when the user cancels. Without a display, and for a format without options, nothing is
/// asked.
bool AskForOptions(CFileIo& io, const FormatOptions& options);
