#include "framework/ui/Dialog.h"

#include "framework/base/Exception.h"
#include "resources/Ids.h"
#include "tests/support/DialogDriver.h"
#include "tests/support/MessageRecorder.h"

#include <gtest/gtest.h>

using vak::test::DialogDriver;
using vak::test::MessageRecorder;

namespace {

class ProbeDialog : public CDialog
{
public:
    ProbeDialog() : CDialog(IDD_SELECT_FILES) {}

    bool m_throws = false;
    int m_commands = 0;

protected:
    BOOL OnCommand(UINT id, UINT code) override
    {
        if (id != IDC_SELECT_FILES_ALL)
            return CDialog::OnCommand(id, code);
        if (m_throws)
            AfxThrowNotSupportedException();
        ++m_commands;
        EndDialog(77);
        return TRUE;
    }
};

} // namespace

TEST(Dialog, EndsWithTheResultOfItsButtonsAndOfItsHooks)
{
    ProbeDialog dialog;
    const auto press = [&](int id) {
        DialogDriver driver([&](HWND window) {
            EXPECT_EQ(CWnd::FromHandlePermanent(window), &dialog);
            DialogDriver::Press(window, id);
            return true;
        });
        const INT_PTR result = dialog.DoModal();
        EXPECT_EQ(dialog.GetSafeHwnd(), nullptr);
        return result;
    };
    EXPECT_EQ(press(IDOK), IDOK);
    EXPECT_EQ(press(IDCANCEL), IDCANCEL);
    EXPECT_EQ(press(IDC_SELECT_FILES_ALL), 77);
    EXPECT_EQ(dialog.m_commands, 1);
}

TEST(Dialog, ReportsAnExceptionOfAHookAndStaysOpen)
{
    MessageRecorder recorder;
    ProbeDialog dialog;
    dialog.m_throws = true;
    DialogDriver driver([&](HWND window) {
        SendMessageW(window, WM_COMMAND, MAKEWPARAM(IDC_SELECT_FILES_ALL, BN_CLICKED), 0);
        EXPECT_EQ(recorder.Boxes().size(), 1u);
        DialogDriver::Press(window, IDCANCEL);
        return true;
    });
    EXPECT_EQ(dialog.DoModal(), IDCANCEL);
}

TEST(Wnd, IsAttachedToOneWindowAtATime)
{
    const HWND window = CreateWindowW(L"STATIC", L"", 0, 0, 0, 10, 10, nullptr, nullptr, nullptr, nullptr);
    {
        CWnd first;
        CWnd second;
        EXPECT_TRUE(first.Attach(window));
        EXPECT_FALSE(second.Attach(window));
    }
    EXPECT_EQ(CWnd::FromHandlePermanent(window), nullptr);
    DestroyWindow(window);
}
