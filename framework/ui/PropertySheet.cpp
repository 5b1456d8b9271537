#include "framework/ui/PropertySheet.h"

#include "framework/base/Application.h"
#include "framework/base/Exception.h"
#include "framework/base/StringTable.h"
#include "framework/base/SystemModule.h"
#include "framework/ui/PropertyPage.h"
#include "framework/ui/detail/Report.h"

#include <prsht.h>

#include <algorithm>
#include <utility>

IMPLEMENT_DYNAMIC(CPropertySheet, CWnd)

/// While the system makes a sheet's window: it becomes the sheet's before its first message, so that
/// OnInitDialog comes before the system has put anything into it.
struct CPropertySheet::Opening
{
    explicit Opening(CPropertySheet* sheet) : m_sheet(sheet), m_outer(std::exchange(t_current, this))
    {
        sheet->m_isOpening = true;
    }
    ~Opening()
    {
        Unhook();
        m_sheet->m_isOpening = false;
        t_current = m_outer;
    }
    Opening(const Opening&) = delete;
    Opening& operator=(const Opening&) = delete;

    HWND Make(const PROPSHEETHEADER& header)
    {
        const INT_PTR made = PropertySheet(&header);
        return made == -1 ? nullptr : reinterpret_cast<HWND>(made);
    }
    static PROPSHEETPAGE TemplateOf(CPropertyPage* page)
    {
        PROPSHEETPAGE made{};
        made.dwSize = sizeof made;
        made.hInstance = page->m_module;
        made.pszTemplate = MAKEINTRESOURCE(page->m_templateId);
        made.pfnDlgProc = &CPropertyPage::PageProc;
        made.lParam = reinterpret_cast<LPARAM>(page);
        return made;
    }
    static bool HasTemplate(const CPropertyPage* page)
    {
        return FindResource(page->m_module, MAKEINTRESOURCE(page->m_templateId), RT_DIALOG) != nullptr;
    }
    /// The system tells of the template that it is going to make the window from.
    static int CALLBACK OnSheet(HWND, UINT message, LPARAM)
    {
        if (message == PSCB_PRECREATE && t_current && !t_current->m_hook)
            t_current->m_hook = SetWindowsHookEx(WH_CBT, &Opening::OnHook, nullptr, GetCurrentThreadId());
        return 0;
    }
    static LRESULT CALLBACK OnHook(int code, WPARAM wParam, LPARAM lParam)
    {
        const auto window = reinterpret_cast<HWND>(wParam);
        // Not a window that the system's input methods make with it.
        if (code == HCBT_CREATEWND && t_current && IsDialog(window)) {
            t_current->Unhook();
            t_current->m_sheet->SubclassWindow(window);
        }
        return CallNextHookEx(nullptr, code, wParam, lParam);
    }

private:
    static bool IsDialog(HWND window)
    {
        return GetClassLongPtr(window, GCW_ATOM) == reinterpret_cast<ULONG_PTR>(WC_DIALOG);
    }
    void Unhook()
    {
        if (m_hook)
            UnhookWindowsHookEx(std::exchange(m_hook, nullptr));
    }

    static thread_local Opening* t_current;

    CPropertySheet* m_sheet;
    Opening* m_outer;
    HHOOK m_hook = nullptr;
};

thread_local CPropertySheet::Opening* CPropertySheet::Opening::t_current = nullptr;

namespace {

/// Disables the top-level window that `owner` lies in; in the end enables it, and then ends the sheet's
/// window: the system makes the owner active in its place only when that is enabled.
class ModalScope
{
public:
    ModalScope(CPropertySheet& sheet, HWND owner)
        : m_sheet(sheet), m_owner(owner ? GetAncestor(owner, GA_ROOT) : nullptr)
    {
        if (m_owner && EnableWindow(m_owner, FALSE))
            m_owner = nullptr;
    }
    ~ModalScope()
    {
        if (m_owner)
            EnableWindow(m_owner, TRUE);
        m_sheet.DestroyWindow();
    }
    ModalScope(const ModalScope&) = delete;
    ModalScope& operator=(const ModalScope&) = delete;

private:
    CPropertySheet& m_sheet;
    HWND m_owner;
};

/// The command of a button that PSM_PRESSBUTTON names; 0 for those that sheets do not have.
UINT CommandOf(WPARAM button)
{
    constexpr UINT kApply = 0x3021;
    switch (button) {
    case PSBTN_OK:
        return IDOK;
    case PSBTN_CANCEL:
        return IDCANCEL;
    case PSBTN_APPLYNOW:
        return kApply;
    default:
        return 0;
    }
}

} // namespace

CPropertySheet::CPropertySheet(UINT captionId, CWnd* parent, UINT firstPage)
    : m_parent(parent), m_firstPage(firstPage)
{
    vak::LoadText(m_caption, captionId);
}

CPropertySheet::CPropertySheet(LPCTSTR caption, CWnd* parent, UINT firstPage)
    : m_caption(caption), m_parent(parent), m_firstPage(firstPage)
{
}

CPropertySheet::~CPropertySheet()
{
    DestroyWindow();
    for (CPropertyPage* const page : m_pages)
        page->m_sheet = nullptr;
}

void CPropertySheet::AddPage(CPropertyPage* page)
{
    if (!page)
        AfxThrowInvalidArgException();
    if (page->m_sheet == this)
        return;
    m_pages.push_back(page);
    if (page->m_sheet)
        page->m_sheet->RemovePage(page);
    page->m_sheet = this;
    // While the window is being made the page waits until the system's sheet is there.
    if (m_hWnd && (m_isInitialized ? !Insert(page) : !Opening::HasTemplate(page))) {
        m_pages.pop_back();
        page->m_sheet = nullptr;
    }
}

bool CPropertySheet::Insert(CPropertyPage* page)
{
    const PROPSHEETPAGE made = Opening::TemplateOf(page);
    const HPROPSHEETPAGE handle = Opening::HasTemplate(page) ? CreatePropertySheetPage(&made) : nullptr;
    if (handle && SendMessage(PSM_ADDPAGE, 0, reinterpret_cast<LPARAM>(handle)))
        return true;
    if (handle)
        DestroyPropertySheetPage(handle);
    return false;
}

void CPropertySheet::RemovePage(CPropertyPage* page)
{
    const int index = GetPageIndex(page);
    if (index < 0)
        return;
    m_pages.erase(m_pages.begin() + index);
    page->m_sheet = nullptr;
    if (!m_hWnd || (!m_isInitialized && static_cast<std::size_t>(index) >= m_madeWith))
        return;
    // The system's sheets have at least one page, and while one is being made it cannot lose any.
    if (m_pages.empty() || !m_isInitialized)
        DestroyWindow();
    else
        SendMessage(PSM_REMOVEPAGE, static_cast<WPARAM>(index));
}

CPropertyPage* CPropertySheet::GetPage(int index) const
{
    if (index < 0 || index >= GetPageCount())
        AfxThrowInvalidArgException();
    return m_pages[static_cast<std::size_t>(index)];
}

int CPropertySheet::GetPageIndex(const CPropertyPage* page) const
{
    const auto found = std::find(m_pages.begin(), m_pages.end(), page);
    return found == m_pages.end() ? -1 : static_cast<int>(found - m_pages.begin());
}

int CPropertySheet::GetActiveIndex() const
{
    if (m_pages.empty())
        return -1;
    const auto shown =
        m_hWnd && m_isInitialized ? reinterpret_cast<HWND>(SendMessage(PSM_GETCURRENTPAGEHWND)) : nullptr;
    const auto isShown = [shown](const CPropertyPage* page) { return page->GetSafeHwnd() == shown; };
    const auto found = shown ? std::find_if(m_pages.begin(), m_pages.end(), isShown) : m_pages.end();
    if (found != m_pages.end())
        return static_cast<int>(found - m_pages.begin());
    return m_firstPage < m_pages.size() ? static_cast<int>(m_firstPage) : 0;
}

CPropertyPage* CPropertySheet::GetActivePage() const
{
    const int index = GetActiveIndex();
    return index < 0 ? nullptr : GetPage(index);
}

BOOL CPropertySheet::SetActivePage(int index)
{
    GetPage(index);
    if (m_hWnd && m_isInitialized)
        SendMessage(PSM_SETCURSEL, static_cast<WPARAM>(index));
    else
        m_firstPage = static_cast<UINT>(index);
    return GetActiveIndex() == index;
}

BOOL CPropertySheet::SetActivePage(CPropertyPage* page)
{
    return SetActivePage(GetPageIndex(page));
}

INT_PTR CPropertySheet::DoModal()
{
    if (m_hWnd)
        return -1;
    CWnd* const parent = m_parent ? m_parent : AfxGetMainWnd();
    const HWND owner = parent ? parent->GetSafeHwnd() : nullptr;
    const ModalScope scope(*this, owner);
    m_isModeless = false;
    if (!MakeWindow(owner))
        return -1;
    if (!m_hasEnded)
        RunModalLoop();
    return m_result;
}

BOOL CPropertySheet::Create(CWnd* parent)
{
    if (m_hWnd)
        return FALSE;
    if (!parent)
        parent = m_parent ? m_parent : AfxGetMainWnd();
    m_isModeless = true;
    if (!MakeWindow(parent ? parent->GetSafeHwnd() : nullptr))
        return FALSE;
    if (m_hasEnded)
        DestroyWindow();
    return m_hWnd != nullptr;
}

bool CPropertySheet::MakeWindow(HWND owner)
{
    m_isInitialized = false;
    m_hasEnded = false;
    m_result = -1;
    if (m_pages.empty() || !std::all_of(m_pages.begin(), m_pages.end(), &Opening::HasTemplate))
        return false;
    std::vector<PROPSHEETPAGE> pages;
    std::transform(m_pages.begin(), m_pages.end(), std::back_inserter(pages), &Opening::TemplateOf);

    PROPSHEETHEADER header{};
    header.dwSize = sizeof header;
    // Modal sheets too: their loop is ours, so that PreTranslateMessage sees the messages.
    header.dwFlags = PSH_PROPSHEETPAGE | PSH_MODELESS | PSH_USECALLBACK | PSH_NOCONTEXTHELP;
    header.hwndParent = owner;
    header.hInstance = vak::system::ModuleAt(&CPropertySheet::classCPropertySheet);
    header.pszCaption = m_caption;
    header.nPages = static_cast<UINT>(pages.size());
    m_madeWith = pages.size();
    m_madeAt = GetActiveIndex();
    header.nStartPage = static_cast<UINT>(m_madeAt);
    header.ppsp = pages.data();
    header.pfnCallback = &Opening::OnSheet;
    const HWND made = Opening(this).Make(header);
    if (m_hWnd && m_isInitialized && SendMessage(PSM_GETCURRENTPAGEHWND)) {
        ShowWindow(SW_SHOW);
        return true;
    }
    if (!DestroyWindow() && made)
        ::DestroyWindow(made);
    return false;
}

void CPropertySheet::EndDialog(int result)
{
    m_hasEnded = true;
    m_result = result;
    // While the system makes the window, whoever opens the sheet looks after that.
    if (m_isOpening || !m_hWnd)
        return;
    if (m_isModeless)
        DestroyWindow();
    else
        EndModalLoop(result);
}

BOOL CPropertySheet::PreTranslateMessage(MSG* message)
{
    if (CWnd::PreTranslateMessage(message))
        return TRUE;
    // Sheets that this one owns are asked themselves.
    if (message->hwnd != m_hWnd && !IsChild(m_hWnd, message->hwnd))
        return FALSE;
    return static_cast<BOOL>(SendMessage(PSM_ISDIALOGMESSAGE, 0, reinterpret_cast<LPARAM>(message)));
}

BOOL CPropertySheet::OnInitDialog()
{
    if (!m_hWnd)
        return FALSE;
    const std::vector<CPropertyPage*> waiting(m_pages.begin() + static_cast<std::ptrdiff_t>(m_madeWith),
                                              m_pages.end());
    const int wanted = GetActiveIndex();
    m_isInitialized = true;
    const auto result = static_cast<BOOL>(DefWindowProc(WM_INITDIALOG, m_initFocus, m_initParameter));
    for (CPropertyPage* const page : waiting)
        if (m_hWnd && GetPageIndex(page) >= 0)
            Insert(page);
    if (m_hWnd && wanted != m_madeAt)
        SendMessage(PSM_SETCURSEL, static_cast<WPARAM>(wanted));
    return result;
}

void CPropertySheet::InitDialog(WPARAM wParam, LPARAM lParam, LRESULT* result)
{
    m_initFocus = wParam;
    m_initParameter = lParam;
    try {
        *result = OnInitDialog();
    } catch (CException* exception) {
        vak::detail::ReportFromProcedure(exception);
    } catch (...) {
    }
    // The system cannot do without.
    if (m_hWnd && !m_isInitialized)
        *result = CPropertySheet::OnInitDialog();
}

BOOL CPropertySheet::OnWndMsg(UINT message, WPARAM wParam, LPARAM lParam, LRESULT* result)
{
    if (message == WM_INITDIALOG) {
        InitDialog(wParam, lParam, result);
        return TRUE;
    }
    // The system would press the button without a command.
    if (message == PSM_PRESSBUTTON && CommandOf(wParam)) {
        *result = SendMessage(WM_COMMAND, CommandOf(wParam));
        return TRUE;
    }
    if (CWnd::OnWndMsg(message, wParam, lParam, result))
        return TRUE;
    if (message != WM_COMMAND && message != WM_SYSCOMMAND && message != WM_CLOSE)
        return FALSE;
    *result = DefWindowProc(message, wParam, lParam);
    CloseWhenDone(message == WM_COMMAND ? LOWORD(wParam) : IDCANCEL);
    return TRUE;
}

void CPropertySheet::CloseWhenDone(UINT command)
{
    // So a sheet of its own loop says that OK or Cancel has gone through.
    if (m_hWnd && m_isInitialized && !m_hasEnded && !SendMessage(PSM_GETCURRENTPAGEHWND))
        EndDialog(command == IDOK ? IDOK : IDCANCEL);
}

void CPropertySheet::OnDestroy()
{
    // The loop may be waiting for a message while its window is taken away from outside.
    if (!m_isModeless)
        PostMessage(nullptr, WM_NULL, 0, 0);
    CWnd::OnDestroy();
}
