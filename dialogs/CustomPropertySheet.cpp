#include "dialogs/CustomPropertySheet.h"

#include "dialogs/CustomPropertyPage.h"

#include <algorithm>
#include <utility>

IMPLEMENT_DYNAMIC(CCustomPropertySheet, CPropertySheet)

namespace {

/// The numbers that the system gives the buttons of its sheets.
constexpr int kApplyId = 0x3021;
/// Between a custom button and the one before it, in pixels.
constexpr int kButtonGap = 5;
/// The system's windows are not wider, in pixels.
constexpr unsigned int kWidestButton = 0x7FFF;
/// Between the controls of a dialog and its border, in the dialog's own units.
constexpr int kDialogMargin = 7;

/// The font of the library's dialog templates.
constexpr int kDialogPointSize = 80;
constexpr LPCTSTR kDialogFace = L"MS Shell Dlg";

/// Asks for the style, since nothing is visible in a sheet that is not shown yet.
bool IsShown(HWND control)
{
    return control && (GetWindowLongPtr(control, GWL_STYLE) & WS_VISIBLE);
}

/// What the system's sheets are asked: to apply, and for the control that shows the tabs.
constexpr UINT kApplyMessage = WM_USER + 110;
constexpr UINT kTabControlMessage = WM_USER + 116;

} // namespace

CCustomPropertySheet::CCustomPropertySheet(UINT captionId, CWnd* parent, UINT firstPage)
    : CPropertySheet(captionId, parent, firstPage)
{
}

CCustomPropertySheet::CCustomPropertySheet(LPCTSTR caption, CWnd* parent, UINT firstPage)
    : CPropertySheet(caption, parent, firstPage)
{
}

CCustomPropertySheet::~CCustomPropertySheet()
{
    DestroyWindow();
    DeleteButtons();
    for (int index = 0; index < GetPageCount(); ++index)
        if (CCustomPropertyPage* const page = CustomPage(index))
            page->SetPropertySheet(nullptr);
}

void CCustomPropertySheet::AddPage(CCustomPropertyPage* page)
{
    if (page)
        page->SetPropertySheet(this);
    CPropertySheet::AddPage(page);
    if (GetPageIndex(page) < 0)
        page->SetPropertySheet(nullptr);
}

void CCustomPropertySheet::RemovePage(CPropertyPage* page)
{
    CPropertySheet::RemovePage(page);
    // It may be on its way to another sheet, or to its end, where it is a plain page already.
    if (!page || !page->IsKindOf(RUNTIME_CLASS(CCustomPropertyPage)))
        return;
    auto* const custom = static_cast<CCustomPropertyPage*>(page);
    if (custom->GetPropertySheet() == this)
        custom->SetPropertySheet(nullptr);
}

void CCustomPropertySheet::AddButton(LPCTSTR caption, unsigned int width)
{
    m_customButtons.Add({nullptr, caption, width});
}

void CCustomPropertySheet::SetCustomButtonCallback(CustomButtonCallback callback, void* user)
{
    m_customButtonCallback = callback;
    m_customButtonUser = user;
}

/// Null for a page of another class, which sheets take through their base class.
CCustomPropertyPage* CCustomPropertySheet::CustomPage(int index) const
{
    CPropertyPage* const page = GetPage(index);
    return page->IsKindOf(RUNTIME_CLASS(CCustomPropertyPage)) ? static_cast<CCustomPropertyPage*>(page)
                                                              : nullptr;
}

void CCustomPropertySheet::InitPagesFromData(CCustomData& data)
{
    for (int index = 0; index < GetPageCount(); ++index) {
        CCustomPropertyPage* const page = CustomPage(index);
        if (!page)
            continue;
        page->GetDialogPart().ReinitDialog(data);
        page->SetModified(&data != &m_data);
    }
}

int CCustomPropertySheet::SaveDataFromPages(CCustomData& data)
{
    struct Saving
    {
        bool& flag;
        bool outer;
        ~Saving() { flag = outer; }
    } const saving{m_isSaving, std::exchange(m_isSaving, true)};

    int result = TRUE;
    for (int index = 0; index < GetPageCount(); ++index) {
        CCustomPropertyPage* const page = CustomPage(index);
        if (!page)
            continue;
        if (!page->GetSafeHwnd()) {
            page->GetDialogPart().SaveData(data);
            continue;
        }
        if (page->GetDialogPart().ValidateData(TRUE, data))
            continue;
        result = FALSE;
        if (GetActiveIndex() != index)
            SetActivePage(index);
    }
    return result;
}

int CCustomPropertySheet::OnApplyOrOK(int)
{
    return TRUE;
}

int CCustomPropertySheet::OnPushCustomButton(int)
{
    return 0;
}

BOOL CCustomPropertySheet::OnCmdMsg(UINT id, int code, void* extra, AFX_CMDHANDLERINFO* handlerInfo)
{
    if (code != CN_COMMAND)
        return CPropertySheet::OnCmdMsg(id, code, extra, handlerInfo);
    if (id == IDOK || id == kApplyId) {
        SaveAndEnd(id == IDOK);
        return TRUE;
    }
    if (id < GetFirstCustomID() || id - GetFirstCustomID() >= static_cast<UINT>(m_customButtons.GetSize()))
        return CPropertySheet::OnCmdMsg(id, code, extra, handlerInfo);
    const auto index = static_cast<int>(id - GetFirstCustomID());
    OnPushCustomButton(index);
    if (m_customButtonCallback)
        m_customButtonCallback(index, m_customButtonUser);
    return TRUE;
}

void CCustomPropertySheet::SaveAndEnd(bool isOK)
{
    if (!SendMessage(kApplyMessage) || !SaveDataFromPages(m_data) || !OnApplyOrOK(isOK))
        return;
    if (isOK)
        return EndDialog(IDOK);
    for (int index = 0; index < GetPageCount(); ++index) {
        GetPage(index)->SetModified(FALSE);
        // What another page has saved after it.
        if (CCustomPropertyPage* const page = CustomPage(index))
            page->GetDialogPart().VerifyData(0, 0);
    }
}

BOOL CCustomPropertySheet::OnInitDialog()
{
    InitPagesFromData(m_data);
    const BOOL result = CPropertySheet::OnInitDialog();
    if (m_hidesApply)
        HideApplyButton();
    CreateCustomButtons();
    return result;
}

HWND CCustomPropertySheet::ReferenceButton() const
{
    const HWND apply = GetDlgItem(kApplyId);
    return IsShown(apply) ? apply : GetDlgItem(IDCANCEL);
}

CRect CCustomPropertySheet::ClientAreaOf(HWND control) const
{
    CRect area(0, 0, 0, 0);
    ::GetWindowRect(control, &area);
    ::MapWindowPoints(nullptr, m_hWnd, reinterpret_cast<POINT*>(&area), 2);
    return area;
}

void CCustomPropertySheet::CreateCustomButtons()
{
    DeleteButtons();
    const HWND reference = ReferenceButton();
    if (!reference || m_customButtons.IsEmpty())
        return;
    m_buttonFont.CreatePointFont(kDialogPointSize, kDialogFace);
    CRect area = ClientAreaOf(reference);
    const auto usualWidth = static_cast<unsigned int>(area.Width());
    HWND before = reference;
    for (int index = 0; index < m_customButtons.GetSize(); ++index) {
        CustomButton& button = m_customButtons[index];
        area.left = area.right + kButtonGap;
        area.right =
            area.left + static_cast<LONG>(std::min(button.width ? button.width : usualWidth, kWidestButton));
        before = MakeButton(button, index, area, before);
    }
    UpdateSheetSize();
}

/// Returns the button, which comes behind `before` in the order of the tab key.
HWND CCustomPropertySheet::MakeButton(CustomButton& button, int index, const CRect& area, HWND before)
{
    button.window = new CButton;
    // A tab stop, or the keyboard would not reach it.
    if (!button.window->Create(button.caption, WS_CHILD | WS_VISIBLE | WS_TABSTOP, area, this,
                               GetFirstCustomID() + static_cast<UINT>(index)))
        return before;
    button.window->SetFont(&m_buttonFont, TRUE);
    const HWND made = button.window->GetSafeHwnd();
    SetWindowPos(made, before, 0, 0, 0, 0, SWP_NOMOVE | SWP_NOSIZE | SWP_NOACTIVATE);
    return made;
}

void CCustomPropertySheet::UpdateSheetSize()
{
    LONG right = 0;
    for (INT_PTR index = 0; index < m_customButtons.GetSize(); ++index)
        if (const CButton* const button = m_customButtons[index].window)
            right = std::max(right, ClientAreaOf(button->GetSafeHwnd()).right);
    CRect margin(0, 0, kDialogMargin, kDialogMargin);
    MapDialogRect(m_hWnd, &margin);
    const LONG missing = right + margin.Width() - GetClientRect().Width();
    if (right > 0 && missing > 0)
        Widen(missing);
}

/// The frame behind the tabs keeps its distance from the border; the pages stay as large as they are.
void CCustomPropertySheet::Widen(LONG pixels)
{
    constexpr UINT kFlags = SWP_NOZORDER | SWP_NOACTIVATE;
    if (const auto tabs = reinterpret_cast<HWND>(SendMessage(kTabControlMessage))) {
        const CRect area = ClientAreaOf(tabs);
        SetWindowPos(tabs, nullptr, 0, 0, area.Width() + pixels, area.Height(), kFlags | SWP_NOMOVE);
    }
    CRect window(0, 0, 0, 0);
    ::GetWindowRect(m_hWnd, &window);
    window.right += pixels;
    MONITORINFO monitor{};
    monitor.cbSize = sizeof monitor;
    if (GetMonitorInfo(MonitorFromWindow(m_hWnd, MONITOR_DEFAULTTONEAREST), &monitor)) {
        const LONG outside = std::max(window.right - monitor.rcWork.right, 0L);
        const LONG inside = std::max(window.left - monitor.rcWork.left, 0L);
        window.OffsetRect(-static_cast<int>(std::min(outside, inside)), 0);
    }
    SetWindowPos(m_hWnd, nullptr, window.left, window.top, window.Width(), window.Height(), kFlags);
}

void CCustomPropertySheet::RemoveApplyButton()
{
    m_hidesApply = true;
    if (m_hWnd)
        HideApplyButton();
}

void CCustomPropertySheet::HideApplyButton()
{
    const HWND apply = GetDlgItem(kApplyId);
    const HWND cancel = GetDlgItem(IDCANCEL);
    if (!IsShown(apply) || !cancel)
        return;
    const LONG distance = ClientAreaOf(apply).right - ClientAreaOf(cancel).right;
    for (const HWND button : {GetDlgItem(IDOK), cancel}) {
        const CRect area = ClientAreaOf(button);
        SetWindowPos(button, nullptr, area.left + distance, area.top, 0, 0,
                     SWP_NOSIZE | SWP_NOZORDER | SWP_NOACTIVATE);
    }
    if (GetFocus() == apply)
        ::SetFocus(GetDlgItem(IDOK));
    ::ShowWindow(apply, SW_HIDE);
}

void CCustomPropertySheet::DeleteButtons()
{
    for (INT_PTR index = 0; index < m_customButtons.GetSize(); ++index)
        delete std::exchange(m_customButtons[index].window, nullptr);
    m_buttonFont.DeleteObject();
}

void CCustomPropertySheet::OnDestroy()
{
    DeleteButtons();
    CPropertySheet::OnDestroy();
}
