#pragma once

/// A dialog whose pages lie behind tabs. Windows only; UI thread.
///
/// The sheet does not own its pages, and either may go first. Its window exists while DoModal runs, or from
/// Create until the sheet ends, its owner goes or this object does.

#include "framework/ui/Wnd.h"

#include <vector>

class CPropertyPage;

class VAK_API CPropertySheet : public CWnd
{
    DECLARE_DYNAMIC(CPropertySheet)

public:
    CPropertySheet() = default;
    /// A sheet with text `captionId` of the string table, which belongs to `parent` (not owned; null takes
    /// the application's main window, if there is one) and opens with page `firstPage`.
    explicit CPropertySheet(UINT captionId, CWnd* parent = nullptr, UINT firstPage = 0);
    explicit CPropertySheet(LPCTSTR caption, CWnd* parent = nullptr, UINT firstPage = 0);
    ~CPropertySheet() override;

    /// Adds a page at the end, also while the sheet is open. A page of another sheet leaves that one; one
    /// that is here already stays where it is. Null throws CInvalidArgException.
    void AddPage(CPropertyPage* page);
    /// Takes the page out; its window goes, with the last page the sheet's, as with any page before the
    /// base's OnInitDialog. Does nothing when it is not here.
    virtual void RemovePage(CPropertyPage* page);
    int GetPageCount() const { return static_cast<int>(m_pages.size()); }
    /// An index outside the pages throws CInvalidArgException; so for SetActivePage.
    CPropertyPage* GetPage(int index) const;
    /// The page's index, or -1.
    int GetPageIndex(const CPropertyPage* page) const;
    /// The page shown, or while the sheet is closed the one that it opens with; -1 and null when there is
    /// none.
    int GetActiveIndex() const;
    CPropertyPage* GetActivePage() const;
    /// Shows the page, unless the one shown refuses to be left (CPropertyPage::OnKillActive); returns whether
    /// it is shown. Of a closed sheet, sets the page that it opens with.
    BOOL SetActivePage(int index);
    BOOL SetActivePage(CPropertyPage* page);

    /// Shows the sheet, the owner disabled, until it ends, and returns the result: IDOK, IDCANCEL, the
    /// argument of EndDialog, or -1 when it cannot be shown (it has no page, a template is missing, it is
    /// open) or its window went otherwise.
    virtual INT_PTR DoModal();
    /// Shows the sheet and returns at once, 0 when it cannot be shown. Keys work when the thread's loop lets
    /// PreTranslateMessage see them, as CWnd::RunModalLoop of the owner does. When the sheet ends its window
    /// is destroyed.
    BOOL Create(CWnd* parent = nullptr);
    /// Whether the sheet was last shown by Create.
    BOOL IsModeless() const { return m_isModeless; }
    /// Ends the sheet with that result, without asking the pages.
    void EndDialog(int result);

    BOOL PreTranslateMessage(MSG* message) override;

protected:
    /// The window is there with nothing in it; the base makes the tabs, the buttons and the first page. The
    /// result is non-zero to leave the focus to the sheet.
    virtual BOOL OnInitDialog();
    BOOL OnWndMsg(UINT message, WPARAM wParam, LPARAM lParam, LRESULT* result) override;
    void OnDestroy() override;

private:
    struct Opening;

    bool MakeWindow(HWND owner);
    bool Insert(CPropertyPage* page);
    void InitDialog(WPARAM wParam, LPARAM lParam, LRESULT* result);
    void CloseWhenDone(UINT command);

    std::vector<CPropertyPage*> m_pages;
    CString m_caption;
    CWnd* m_parent = nullptr;
    UINT m_firstPage = 0;
    /// How many of the pages the system's sheet was made with, and which one it was to show.
    std::size_t m_madeWith = 0;
    int m_madeAt = 0;
    WPARAM m_initFocus = 0;
    LPARAM m_initParameter = 0;
    bool m_isModeless = false;
    bool m_isOpening = false;
    bool m_isInitialized = false;
    bool m_hasEnded = false;
    INT_PTR m_result = -1;
};
