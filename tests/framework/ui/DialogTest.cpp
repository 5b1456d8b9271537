#include "framework/ui/Dialog.h"

#include "framework/base/Exception.h"
#include "resources/Ids.h"
#include "tests/support/DialogDriver.h"
#include "tests/support/MessageRecorder.h"

#include <gtest/gtest.h>

#include <utility>

using vak::test::DialogDriver;

namespace {

class ProbeDialog : public CDialog
{
public:
    ProbeDialog() : CDialog(IDD_SELECT_FILES) {}

    bool m_hasThrown = false;

protected:
    BOOL OnCommand(UINT id, UINT code) override
    {
        if (id != IDC_SELECT_FILES_ALL)
            return CDialog::OnCommand(id, code);
        if (!std::exchange(m_hasThrown, true))
            AfxThrowNotSupportedException();
        EndDialog(77);
        return TRUE;
    }
};

} // namespace

TEST(Dialog, EndsWithTheResultOfItsButtonsAndOutlivesWhatHooksThrow)
{
    vak::test::MessageRecorder recorder;
    ProbeDialog dialog;
    const auto press = [&](int id) {
        DialogDriver driver([&](HWND window) {
            EXPECT_EQ(CWnd::FromHandlePermanent(window), &dialog);
            if (!dialog.m_hasThrown)
                SendMessageW(window, WM_COMMAND, IDC_SELECT_FILES_ALL, 0);
            DialogDriver::Press(window, id);
            return true;
        });
        const INT_PTR result = dialog.DoModal();
        EXPECT_EQ(dialog.GetSafeHwnd(), nullptr);
        return result;
    };
    EXPECT_EQ(press(IDOK), IDOK);
    EXPECT_EQ(recorder.Boxes().size(), 1u);
    EXPECT_EQ(press(IDCANCEL), IDCANCEL);
    EXPECT_EQ(press(IDC_SELECT_FILES_ALL), 77);
}
