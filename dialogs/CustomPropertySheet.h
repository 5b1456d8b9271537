#pragma once

/// A property sheet over one store: it fills all its pages when it opens, and saves them all on OK and Apply.
/// Windows only; UI thread.
///
/// Pages and parent are the caller's; either side may go first. What OK and Apply do: the pages are asked as
/// by any sheet (PSM_APPLY), then SaveDataFromPages validates and saves them, then OnApplyOrOK is called.
/// When one of them refuses, the ones after it do not happen and the sheet stays open.

#include "core/CustomData.h"
#include "framework/base/Array.h"
#include "framework/ui/Button.h"
#include "framework/ui/Font.h"
#include "framework/ui/PropertySheet.h"

class CCustomPropertyPage;

class VAK_API CCustomPropertySheet : public CPropertySheet
{
    DECLARE_DYNAMIC(CCustomPropertySheet)

public:
    /// Told that custom button `index` was pressed; the result is not used.
    using CustomButtonCallback = int (*)(int index, void* user);

    CCustomPropertySheet() = default;
    /// As those of CPropertySheet. The store and the list of buttons are empty.
    explicit CCustomPropertySheet(UINT captionId, CWnd* parent = nullptr, UINT firstPage = 0);
    explicit CCustomPropertySheet(LPCTSTR caption, CWnd* parent = nullptr, UINT firstPage = 0);
    ~CCustomPropertySheet() override;

    /// The command of the first custom button; those after it have the numbers that follow.
    static constexpr UINT GetFirstCustomID() { return 53280; }
    /// What the pages show and save. Belongs to the sheet.
    CCustomData& GetData() { return m_data; }
    /// Whether SaveDataFromPages is at work.
    bool IsSaving() const { return m_isSaving; }

    /// Gives the page this sheet (CCustomPropertyPage::SetPropertySheet), then adds it as CPropertySheet
    /// does; takes it back when that fails.
    void AddPage(CCustomPropertyPage* page);
    /// Takes the page out, and its sheet from it.
    void RemovePage(CPropertyPage* page) override;
    /// Adds a button to the right of the standard ones and of the custom ones before it, `width` pixels wide,
    /// 0 for the width of the standard ones. It is made when the sheet opens.
    void AddButton(LPCTSTR caption, unsigned int width);
    /// Null for none. Called after OnPushCustomButton.
    void SetCustomButtonCallback(CustomButtonCallback callback, void* user);
    /// Hides Apply, and moves OK and Cancel to the right, into its place. Before the sheet opens or while it
    /// is open.
    void RemoveApplyButton();

    /// Fills every page from `data`, which may be another store than the sheet's: what is then shown counts
    /// as changed by the user. Called with the sheet's own before any page's window exists.
    virtual void InitPagesFromData(CCustomData& data);
    /// Saves every page into `data`: a page that was never shown as it was filled, one with a window after
    /// validating it. The last page that fails is the active one in the end. Returns 0 when a page has
    /// failed.
    virtual int SaveDataFromPages(CCustomData& data);
    /// Everything was saved, by OK if `isOK` is non-zero, else by Apply. Zero keeps the sheet open, and Apply
    /// available. Returns 1.
    virtual int OnApplyOrOK(int isOK);
    /// Custom button `index` was pressed; the result is not used. Does nothing.
    virtual int OnPushCustomButton(int index);
    /// Makes the custom buttons; called when the sheet's window has its standard ones.
    virtual void CreateCustomButtons();

    BOOL OnCmdMsg(UINT id, int code, void* extra, AFX_CMDHANDLERINFO* handlerInfo) override;

protected:
    /// Widens the sheet until its last custom button keeps the margin of a dialog from its border.
    void UpdateSheetSize();
    BOOL OnInitDialog() override;
    void OnDestroy() override;

private:
    struct CustomButton
    {
        CButton* window; ///< owned; null while there is none
        CString caption;
        unsigned int width;
    };

    CCustomPropertyPage* CustomPage(int index) const;
    void SaveAndEnd(bool isOK);
    HWND ReferenceButton() const;
    CRect ClientAreaOf(HWND control) const;
    HWND MakeButton(CustomButton& button, int index, const CRect& area, HWND before);
    void Widen(LONG pixels);
    void HideApplyButton();
    void DeleteButtons();

    CCustomData m_data;
    CArray<CustomButton> m_customButtons;
    CustomButtonCallback m_customButtonCallback = nullptr;
    void* m_customButtonUser = nullptr;
    CFont m_buttonFont;
    bool m_hidesApply = false;
    bool m_isSaving = false;
};
