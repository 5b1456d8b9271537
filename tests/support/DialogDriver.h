#pragma once

/// Drives modal dialogs from a timer, on the thread that shows them. For the product build.

#include "framework/base/String.h"

#include <gtest/gtest.h>

#include <functional>

namespace vak::test {

/// The control of that number anywhere in the dialog: the platform's file dialogs nest theirs.
inline HWND FindControl(HWND dialog, int id)
{
    for (HWND child = GetWindow(dialog, GW_CHILD); child; child = GetWindow(child, GW_HWNDNEXT)) {
        if (GetDlgCtrlID(child) == id && IsWindowVisible(child))
            return child;
        if (const HWND found = FindControl(child, id))
            return found;
    }
    return nullptr;
}

/// Types a name into the platform's file dialog.
inline bool TypeName(HWND dialog, const CString& name)
{
    constexpr int kNameEdit = 0x480;
    constexpr int kNameCombo = 0x47C;
    HWND control = FindControl(dialog, kNameCombo);
    if (!control)
        control = FindControl(dialog, kNameEdit);
    return control &&
           SendMessageW(control, WM_SETTEXT, 0, reinterpret_cast<LPARAM>(name.GetString())) != FALSE;
}

/// While it lives, the next dialog that this thread shows is handed to `action` until that returns true; the
/// action ends the dialog itself (Press). A dialog that is still there after ten seconds is ended and fails
/// the test.
class DialogDriver
{
public:
    using Action = std::function<bool(HWND dialog)>;

    explicit DialogDriver(Action action) : m_action(std::move(action))
    {
        s_current = this;
        m_timer = SetTimer(nullptr, 0, kPeriod, &DialogDriver::OnTimer);
    }
    ~DialogDriver()
    {
        KillTimer(nullptr, m_timer);
        s_current = nullptr;
    }
    DialogDriver(const DialogDriver&) = delete;
    DialogDriver& operator=(const DialogDriver&) = delete;

    /// How many times a dialog was seen; 0: none was shown.
    int Seen() const { return m_seen; }

    static void Press(HWND dialog, int id)
    {
        PostMessageW(dialog, WM_COMMAND, MAKEWPARAM(id, BN_CLICKED),
                     reinterpret_cast<LPARAM>(GetDlgItem(dialog, id)));
    }
    static CString TextOf(HWND window)
    {
        CString text;
        const auto length = static_cast<int>(SendMessageW(window, WM_GETTEXTLENGTH, 0, 0));
        SendMessageW(window, WM_GETTEXT, static_cast<WPARAM>(length) + 1,
                     reinterpret_cast<LPARAM>(text.GetBuffer(length)));
        text.ReleaseBuffer(length);
        return text;
    }
    static CString TextOf(HWND dialog, int id) { return TextOf(GetDlgItem(dialog, id)); }
    static RECT AreaOf(HWND window)
    {
        RECT area{};
        GetWindowRect(window, &area);
        return area;
    }

private:
    static constexpr UINT kPeriod = 50;
    static constexpr int kPatience = 200;

    static BOOL CALLBACK OnWindow(HWND window, LPARAM found)
    {
        wchar_t name[32] = {};
        GetClassNameW(window, name, 32);
        if (!IsWindowVisible(window) || CString(name) != L"#32770")
            return TRUE;
        *reinterpret_cast<HWND*>(found) = window;
        return FALSE;
    }

    static void CALLBACK OnTimer(HWND, UINT, UINT_PTR, DWORD)
    {
        HWND dialog = nullptr;
        EnumThreadWindows(GetCurrentThreadId(), &DialogDriver::OnWindow, reinterpret_cast<LPARAM>(&dialog));
        DialogDriver* const driver = s_current;
        if (!dialog || !driver || driver->m_done)
            return;
        ++driver->m_seen;
        driver->m_done = driver->m_action(dialog);
        if (driver->m_done || driver->m_seen < kPatience)
            return;
        ADD_FAILURE() << "the dialog stays open";
        driver->m_done = true;
        EndDialog(dialog, IDCANCEL);
        PostMessageW(dialog, WM_CLOSE, 0, 0); // a property sheet ends in its own way
    }

    static inline DialogDriver* s_current = nullptr;

    Action m_action;
    UINT_PTR m_timer = 0;
    int m_seen = 0;
    bool m_done = false;
};

} // namespace vak::test
