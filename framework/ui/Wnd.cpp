#include "framework/ui/Wnd.h"

#include "framework/base/Exception.h"
#include "framework/base/SystemModule.h"
#include "framework/ui/Font.h"
#include "framework/ui/detail/Report.h"

#include <utility>

IMPLEMENT_DYNAMIC(CWnd, CObject)

namespace {

/// The object whose window this thread is making: its first messages come before CreateWindowEx returns.
thread_local CWnd* t_creating = nullptr;

HINSTANCE LibraryModule()
{
    return vak::system::ModuleAt(&CWnd::classCWnd);
}

/// The property of a window that holds its object. Other processes, and other libraries of this one, read
/// the properties of the same windows: the objects of each stand under a name of their own.
LPCTSTR ObjectProperty()
{
    // Never destroyed: windows live until the very end.
    static const CString* const name = [] {
        auto* const made = new CString;
        made->Format(L"VakToolsWindow:%x:%p", GetCurrentProcessId(), &CWnd::classCWnd);
        return made;
    }();
    return *name;
}

/// The property of a window that holds the procedure from before SubclassWindow. It stays until the window
/// goes: where somebody else has put a procedure over ours, ours cannot be taken out from below and only
/// passes on.
LPCTSTR SuperProperty()
{
    static const CString* const name = new CString(CString(ObjectProperty()) + L":super");
    return *name;
}

/// Whether the message is one of those that a window gets first.
bool IsFirstMessage(UINT message)
{
    return message == WM_GETMINMAXINFO || message == WM_NCCREATE;
}

} // namespace

void vak::detail::ReportFromProcedure(CException* exception)
{
    try {
        exception->ReportError();
    } catch (CException* another) {
        another->Delete();
    } catch (...) {
    }
    exception->Delete();
}

void vak::detail::GiveUpPainting(HWND window, UINT message)
{
    if (message == WM_PAINT)
        ValidateRect(window, nullptr);
}

/// The procedure of our window classes.
struct vak::detail::WindowProcedure
{
    static LRESULT CALLBACK Run(HWND window, UINT message, WPARAM wParam, LPARAM lParam);
    static LRESULT WithoutObject(HWND window, UINT message, WPARAM wParam, LPARAM lParam);
};

LRESULT vak::detail::WindowProcedure::WithoutObject(HWND window, UINT message, WPARAM wParam, LPARAM lParam)
{
    const HANDLE super =
        message == WM_NCDESTROY ? RemovePropW(window, SuperProperty()) : GetPropW(window, SuperProperty());
    return super ? CallWindowProc(reinterpret_cast<WNDPROC>(super), window, message, wParam, lParam)
                 : ::DefWindowProc(window, message, wParam, lParam);
}

LRESULT CALLBACK vak::detail::WindowProcedure::Run(HWND window, UINT message, WPARAM wParam, LPARAM lParam)
{
    CWnd* object = CWnd::FromHandlePermanent(window);
    if (!object && t_creating && IsFirstMessage(message) && t_creating->Attach(window))
        object = std::exchange(t_creating, nullptr);
    if (!object)
        return WithoutObject(window, message, wParam, lParam);
    LRESULT result = 0;
    try {
        if (!object->OnWndMsg(message, wParam, lParam, &result))
            result = object->DefWindowProc(message, wParam, lParam);
    } catch (CException* exception) {
        GiveUpPainting(window, message);
        ReportFromProcedure(exception);
    } catch (...) {
        GiveUpPainting(window, message);
    }
    if (message == WM_NCDESTROY) {
        object->Detach();
        RemovePropW(window, SuperProperty());
    }
    return result;
}

LPCTSTR AfxRegisterWndClass(UINT classStyle, HCURSOR cursor, HBRUSH background, HICON icon)
{
    thread_local CString name;
    name.Format(L"VakTools:%x:%p:%p:%p", classStyle, cursor, background, icon);
    WNDCLASSEX known{};
    known.cbSize = sizeof known;
    if (GetClassInfoEx(LibraryModule(), name, &known))
        return name;
    WNDCLASSEX wanted{};
    wanted.cbSize = sizeof wanted;
    wanted.style = classStyle;
    wanted.lpfnWndProc = &vak::detail::WindowProcedure::Run;
    wanted.hInstance = LibraryModule();
    wanted.hCursor = cursor;
    wanted.hbrBackground = background;
    wanted.hIcon = icon;
    wanted.lpszClassName = name;
    return RegisterClassEx(&wanted) ? name.GetString() : nullptr;
}

CWnd::~CWnd()
{
    if (m_isCreated)
        DestroyWindow();
    Detach();
}

BOOL CWnd::CreateEx(DWORD exStyle, LPCTSTR className, LPCTSTR windowName, DWORD style, const RECT& rect,
                    CWnd* parent, UINT id)
{
    if (m_hWnd || !className)
        return FALSE;
    CWnd* const outer = std::exchange(t_creating, this);
    const HWND window =
        CreateWindowEx(exStyle, className, windowName, style, rect.left, rect.top, rect.right - rect.left,
                       rect.bottom - rect.top, parent ? parent->GetSafeHwnd() : nullptr,
                       reinterpret_cast<HMENU>(static_cast<UINT_PTR>(id)), LibraryModule(), nullptr);
    t_creating = outer;
    // A class of the system has not passed WindowProc, which attaches.
    m_isCreated = window && (m_hWnd == window || Attach(window));
    if (window && !m_isCreated)
        ::DestroyWindow(window);
    return m_isCreated;
}

BOOL CWnd::DestroyWindow()
{
    // Without the property the window is gone already, and its handle may be another's by now.
    const bool isThere = FromHandlePermanent(m_hWnd) == this;
    const BOOL isDestroyed = isThere && ::DestroyWindow(m_hWnd);
    if (!isThere || isDestroyed)
        Detach();
    return isDestroyed;
}

CWnd* CWnd::FromHandlePermanent(HWND window)
{
    return window ? static_cast<CWnd*>(GetPropW(window, ObjectProperty())) : nullptr;
}

BOOL CWnd::Attach(HWND window)
{
    if (!window || m_hWnd || FromHandlePermanent(window) || !SetPropW(window, ObjectProperty(), this))
        return FALSE;
    m_hWnd = window;
    return TRUE;
}

BOOL CWnd::SubclassWindow(HWND window)
{
    const auto super = reinterpret_cast<WNDPROC>(GetWindowLongPtr(window, GWLP_WNDPROC));
    if (!super || super == &vak::detail::WindowProcedure::Run || !Attach(window))
        return FALSE;
    if (!SetPropW(window, SuperProperty(), reinterpret_cast<HANDLE>(super))) {
        Detach();
        return FALSE;
    }
    m_super = super;
    SetWindowLongPtr(window, GWLP_WNDPROC, reinterpret_cast<LONG_PTR>(&vak::detail::WindowProcedure::Run));
    return TRUE;
}

HWND CWnd::Detach()
{
    const HWND window = m_hWnd;
    const bool isThere = window && FromHandlePermanent(window) == this;
    if (isThere)
        RemovePropW(window, ObjectProperty());
    const WNDPROC super = std::exchange(m_super, nullptr);
    if (isThere && super &&
        GetWindowLongPtr(window, GWLP_WNDPROC) ==
            reinterpret_cast<LONG_PTR>(&vak::detail::WindowProcedure::Run)) {
        SetWindowLongPtr(window, GWLP_WNDPROC, reinterpret_cast<LONG_PTR>(super));
        RemovePropW(window, SuperProperty());
    }
    m_hWnd = nullptr;
    m_isCreated = false;
    return window;
}

DWORD CWnd::GetStyle() const
{
    return static_cast<DWORD>(GetWindowLongPtr(m_hWnd, GWL_STYLE));
}

CRect CWnd::GetClientRect() const
{
    CRect area(0, 0, 0, 0);
    ::GetClientRect(m_hWnd, &area);
    return area;
}

CString CWnd::GetWindowText() const
{
    const int length = ::GetWindowTextLength(m_hWnd);
    CString text;
    const int copied = ::GetWindowText(m_hWnd, text.GetBuffer(length), length + 1);
    text.ReleaseBuffer(copied);
    return text;
}

void CWnd::SetWindowText(LPCTSTR text)
{
    ::SetWindowText(m_hWnd, text);
}

HWND CWnd::GetDlgItem(int id) const
{
    return ::GetDlgItem(m_hWnd, id);
}

void CWnd::SetDlgItemText(int id, LPCTSTR text)
{
    ::SetDlgItemText(m_hWnd, id, text);
}

LRESULT CWnd::SendDlgItemMessage(int id, UINT message, WPARAM wParam, LPARAM lParam) const
{
    return ::SendDlgItemMessage(m_hWnd, id, message, wParam, lParam);
}

LRESULT CWnd::SendMessage(UINT message, WPARAM wParam, LPARAM lParam) const
{
    return ::SendMessage(m_hWnd, message, wParam, lParam);
}

void CWnd::SetFont(CFont* font, BOOL redraw)
{
    SendMessage(WM_SETFONT, reinterpret_cast<WPARAM>(font ? font->GetSafeHandle() : nullptr), redraw);
}

BOOL CWnd::ShowWindow(int command)
{
    return ::ShowWindow(m_hWnd, command);
}

void CWnd::MoveWindow(LPCRECT area, BOOL repaint)
{
    ::MoveWindow(m_hWnd, area->left, area->top, area->right - area->left, area->bottom - area->top, repaint);
}

void CWnd::ClientToScreen(LPPOINT point) const
{
    ::ClientToScreen(m_hWnd, point);
}

void CWnd::ScreenToClient(LPPOINT point) const
{
    ::ScreenToClient(m_hWnd, point);
}

void CWnd::MapWindowPoints(CWnd* to, LPRECT rect) const
{
    ::MapWindowPoints(m_hWnd, to ? to->m_hWnd : nullptr, reinterpret_cast<POINT*>(rect), 2);
}

HWND CWnd::SetCapture()
{
    return ::SetCapture(m_hWnd);
}

HWND CWnd::GetCapture()
{
    return ::GetCapture();
}

void CWnd::SetFocus()
{
    ::SetFocus(m_hWnd);
}

void CWnd::Invalidate(BOOL erase)
{
    InvalidateRect(nullptr, erase);
}

void CWnd::InvalidateRect(LPCRECT rect, BOOL erase)
{
    ::InvalidateRect(m_hWnd, rect, erase);
}

void CWnd::UpdateWindow()
{
    ::UpdateWindow(m_hWnd);
}

void CWnd::SetRedraw(BOOL redraw)
{
    SendMessage(WM_SETREDRAW, static_cast<WPARAM>(redraw));
}

UINT_PTR CWnd::SetTimer(UINT_PTR id, UINT milliseconds)
{
    return ::SetTimer(m_hWnd, id, milliseconds, nullptr);
}

BOOL CWnd::KillTimer(UINT_PTR id)
{
    return ::KillTimer(m_hWnd, id);
}

int CWnd::RunModalLoop()
{
    m_loopEnded = false;
    m_loopResult = -1;
    while (!m_loopEnded && m_hWnd) {
        MSG message{};
        const BOOL got = GetMessage(&message, nullptr, 0, 0);
        if (got == 0)
            PostQuitMessage(static_cast<int>(message.wParam));
        if (got <= 0)
            return -1;
        if (PreTranslate(&message))
            continue;
        TranslateMessage(&message);
        DispatchMessage(&message);
    }
    return m_loopResult;
}

void CWnd::EndModalLoop(int result)
{
    m_loopEnded = true;
    m_loopResult = result;
    PostMessage(m_hWnd, WM_NULL, 0, 0);
}

bool CWnd::PreTranslate(MSG* message)
{
    for (HWND window = message->hwnd; window; window = GetParent(window)) {
        CWnd* const object = FromHandlePermanent(window);
        if (object && object->PreTranslateMessage(message))
            return true;
        if (object == this)
            return false;
    }
    return false;
}

BOOL CWnd::PreTranslateMessage(MSG*)
{
    return FALSE;
}

BOOL CWnd::IsDialogMessage(MSG* message)
{
    return ::IsDialogMessage(m_hWnd, message);
}

BOOL CWnd::OnWndMsg(UINT message, WPARAM wParam, LPARAM lParam, LRESULT* result)
{
    // Hooks send messages to their own window too.
    const bool outer = std::exchange(m_wantsDefault, false);
    const bool isHandled = CallHook(message, wParam, lParam, result);
    return !std::exchange(m_wantsDefault, outer) && isHandled;
}

bool CWnd::CallHook(UINT message, WPARAM wParam, LPARAM lParam, LRESULT* result)
{
    // A window whose making throws is given up.
    *result = message == WM_CREATE ? -1 : 0;
    switch (message) {
    case WM_COMMAND:
        return OnCommand(LOWORD(wParam), HIWORD(wParam));
    case WM_NOTIFY:
        return OnNotify(reinterpret_cast<NMHDR*>(lParam), result);
    case WM_CREATE:
        *result = OnCreate(reinterpret_cast<CREATESTRUCT*>(lParam));
        return true;
    case WM_DESTROY:
        OnDestroy();
        return true;
    case WM_CLOSE:
        OnClose();
        return true;
    case WM_SETFOCUS:
        OnSetFocus(reinterpret_cast<HWND>(wParam));
        return true;
    case WM_TIMER:
        OnTimer(wParam);
        return true;
    case WM_CONTEXTMENU:
        OnContextMenu(reinterpret_cast<HWND>(wParam),
                      CPoint(static_cast<short>(LOWORD(lParam)), static_cast<short>(HIWORD(lParam))));
        return true;
    case WM_SIZE:
        OnSize(static_cast<UINT>(wParam), LOWORD(lParam), HIWORD(lParam));
        return true;
    case WM_GETMINMAXINFO:
        OnGetMinMaxInfo(reinterpret_cast<MINMAXINFO*>(lParam));
        return true;
    default:
        return CallDrawingHook(message, wParam, lParam, result);
    }
}

LRESULT CWnd::DefWindowProc(UINT message, WPARAM wParam, LPARAM lParam)
{
    return m_super ? CallWindowProc(m_super, m_hWnd, message, wParam, lParam)
                   : ::DefWindowProc(m_hWnd, message, wParam, lParam);
}

BOOL CWnd::OnCommand(UINT id, UINT code)
{
    return OnCmdMsg(id, static_cast<int>(code), nullptr, nullptr);
}

BOOL CWnd::OnCmdMsg(UINT, int, void*, AFX_CMDHANDLERINFO*)
{
    return FALSE;
}

void CWnd::OnSize(UINT, int, int)
{
    Default();
}

void CWnd::OnGetMinMaxInfo(MINMAXINFO*)
{
    Default();
}

int CWnd::OnCreate(CREATESTRUCT*)
{
    return 0;
}

void CWnd::OnDestroy()
{
    Default();
}

void CWnd::OnClose()
{
    Default();
}

void CWnd::OnSetFocus(HWND)
{
    Default();
}

void CWnd::OnTimer(UINT_PTR)
{
    Default();
}

void CWnd::OnContextMenu(HWND, CPoint)
{
    Default();
}

BOOL CWnd::OnNotify(NMHDR*, LRESULT*)
{
    return FALSE;
}
