#include "files/FileIo.h"
#include "files/FileKinds.h"
#include "framework/ui/Wnd.h"
#include "resources/Ids.h"
#include "tests/support/DialogDriver.h"
#include "tests/support/MessageRecorder.h"
#include "tests/support/Print.h"
#include "tests/support/TempFolder.h"

#include <gtest/gtest.h>

using vak::test::DialogDriver;
using vak::test::MessageRecorder;
using vak::test::TempFolder;
using vak::test::TypeName;

namespace {

/// A host with a main window.
class IoDialogs : public testing::Test
{
protected:
    IoDialogs()
    {
        m_window.Attach(CreateWindowW(L"STATIC", L"host", WS_OVERLAPPEDWINDOW | WS_VISIBLE, 0, 0, 300, 200,
                                      nullptr, nullptr, nullptr, nullptr));
        m_recorder.m_pMainWnd = &m_window;
        CFileExt kind(L"Test", L".dgmo", 'DGMO', 0x4003, vak::kFileCodePlugin, vak::kFileCodePlugin);
        fileRegisterFile(kind);
    }
    ~IoDialogs() override
    {
        fileUnregisterFile(CString(), 'DGMO');
        DestroyWindow(m_window.Detach());
    }

    CFileIo Named(const char* name, unsigned int flags)
    {
        return CFileIo(CFileNameSpec(m_folder.Path(name)), flags, &m_window);
    }

    MessageRecorder m_recorder;
    TempFolder m_folder;
    CWnd m_window;
};

} // namespace

TEST_F(IoDialogs, TheLogShowsItsLinesInAWindowThatCanBeResized)
{
    CIoOptions log(1);
    log.AddLogInfo(IoLogInfo::info, L"12 faces");
    log.AddLogInfo(IoLogInfo::warning, L"first\nsecond");
    log.AddLogInfo(IoLogInfo::error, CString(L'x', 40000));
    DialogDriver driver([&](HWND dialog) {
        EXPECT_FALSE(IsWindowEnabled(m_window.m_hWnd));
        EXPECT_EQ(DialogDriver::TextOf(dialog), L"Journal de lecture");
        EXPECT_EQ(DialogDriver::TextOf(dialog, IDC_IO_LOG_TEXT),
                  L"12 faces\r\nAttention : first\r\nsecond\r\nErreur : " + CString(L'x', 40000));

        const HWND text = GetDlgItem(dialog, IDC_IO_LOG_TEXT), button = GetDlgItem(dialog, IDOK);
        const CRect window = DialogDriver::AreaOf(dialog);
        const CRect textBefore = DialogDriver::AreaOf(text), buttonBefore = DialogDriver::AreaOf(button);
        MoveWindow(dialog, window.left, window.top, window.Width() + 70, window.Height() + 30, TRUE);
        EXPECT_EQ(CRect(DialogDriver::AreaOf(text)), textBefore + CRect(0, 0, 70, 30));
        EXPECT_EQ(CRect(DialogDriver::AreaOf(button)), buttonBefore + CPoint(70, 30));
        MoveWindow(dialog, window.left, window.top, 10, 10, TRUE);
        EXPECT_EQ(DialogDriver::AreaOf(dialog).right, window.right);
        DialogDriver::Press(dialog, IDOK);
        return true;
    });
    CIoOptions(1).DisplayLog(0); // nothing to show: the driver would not find its lines
    log.DisplayLog(0);
    EXPECT_EQ(driver.Seen(), 1);
    EXPECT_TRUE(IsWindowEnabled(m_window.m_hWnd));
}

TEST_F(IoDialogs, AFailureIsReportedByItsLogOrElseByItsText)
{
    CFileIo io = Named("a.dgmo", 0);
    CIoOptions log(0);
    io.ReportIoError(&log, 0); // a success is not reported
    io.SetIoError(IO_FILE_DISK_FULL);
    io.ReportIoError(&log, 0);
    ASSERT_EQ(m_recorder.Boxes().size(), 1u);
    EXPECT_EQ(m_recorder.Boxes()[0].text, L"Disque plein");

    log.AddLogInfo(IoLogInfo::error, L"why");
    DialogDriver driver([](HWND dialog) {
        EXPECT_EQ(DialogDriver::TextOf(dialog), L"Journal d'enregistrement");
        DialogDriver::Press(dialog, IDOK);
        return true;
    });
    io.ReportIoError(&log, MB_ICONHAND);
    io.SetSilentMode(1);
    io.ReportIoError(&log, MB_ICONHAND);
    EXPECT_EQ(driver.Seen(), 1);
    EXPECT_EQ(m_recorder.Boxes().size(), 1u);
}

TEST_F(IoDialogs, TheListGivesBackWhatTheUserLeavesSelected)
{
    const CFileIo io = Named("any.dgmo", FILE_PARSER_LOADING);
    CStringArray files;
    for (const char* const name : {"a.dgmo", "sub\\b.dgmo", "c.dgmo"})
        files.Add(m_folder.Path(name));
    CStringArray selected;
    {
        DialogDriver driver([](HWND dialog) {
            const HWND list = GetDlgItem(dialog, IDC_SELECT_FILES_LIST);
            EXPECT_EQ(SendMessageW(list, LB_GETSELCOUNT, 0, 0), 3);
            wchar_t name[64] = {};
            SendMessageW(list, LB_GETTEXT, 1, reinterpret_cast<LPARAM>(name));
            EXPECT_EQ(CString(name), L"sub\\b.dgmo");
            SendMessageW(list, LB_SETSEL, FALSE, -1);
            SendMessageW(dialog, WM_COMMAND, MAKEWPARAM(IDC_SELECT_FILES_LIST, LBN_SELCHANGE), 0);
            EXPECT_FALSE(IsWindowEnabled(GetDlgItem(dialog, IDOK))) << "nothing can be chosen";
            SendMessageW(dialog, WM_COMMAND, MAKEWPARAM(IDC_SELECT_FILES_ALL, BN_CLICKED), 0);
            SendMessageW(list, LB_SETSEL, FALSE, 0);
            SendMessageW(dialog, WM_COMMAND, MAKEWPARAM(IDC_SELECT_FILES_LIST, LBN_SELCHANGE), 0);
            EXPECT_EQ(DialogDriver::TextOf(dialog, IDC_SELECT_FILES_COUNT), L"2 fichiers sélectionnés sur 3");
            DialogDriver::Press(dialog, IDOK);
            return true;
        });
        EXPECT_EQ(io.SelectFilesFromList(files, selected), 2);
        EXPECT_EQ(driver.Seen(), 1);
    }
    EXPECT_EQ(selected[0], files[1]);
    EXPECT_EQ(selected[1], files[2]);

    CFileIo silent = io;
    silent.SetSilentMode(1);
    DialogDriver driver([](HWND dialog) {
        DialogDriver::Press(dialog, IDCANCEL);
        return true;
    });
    EXPECT_EQ(silent.SelectFilesFromList(files, selected), 3);
    EXPECT_EQ(driver.Seen(), 0);
    EXPECT_EQ(io.SelectFilesFromList(selected, selected), 0);
    EXPECT_EQ(driver.Seen(), 1);
}

TEST_F(IoDialogs, TheFileDialogRenamesTheFileWhenTheUserConfirms)
{
    m_folder.Write("old.dgmo", "1");
    m_folder.Write("new.zip", "2");
    CFileIo io = Named("old.dgmo", FILE_PARSER_LOADING);
    const auto answer = [&](const CString& typed, int button) {
        bool isTyped = false;
        DialogDriver driver([&](HWND dialog) {
            if (!isTyped)
                isTyped = TypeName(dialog, typed);
            if (isTyped)
                DialogDriver::Press(dialog, button);
            return isTyped;
        });
        return io.FileDialogBox(0);
    };
    EXPECT_EQ(answer(m_folder.Path("new.zip"), IDCANCEL), IDCANCEL);
    EXPECT_EQ(io.GetClass(), unsigned{'DGMO'});
    EXPECT_EQ(answer(m_folder.Path("new.zip"), IDOK), IDOK);
    EXPECT_EQ(io.GetCompleteName().CompareNoCase(m_folder.Path("new.zip")), 0)
        << CStringA(io.GetCompleteName()).GetString();
    EXPECT_EQ(io.GetClass(), unsigned{'ZIP '});

    io = Named("old.dgmo", 0);
    EXPECT_EQ(answer(m_folder.Path("not there yet"), IDOK), IDOK);
    EXPECT_EQ(io.GetNameWithoutExt(), L"not there yet");
    io.SetSilentMode(1);
    DialogDriver none([](HWND) { return false; });
    EXPECT_EQ(io.FileDialogBox(0), IDCANCEL);
    EXPECT_EQ(none.Seen(), 0);
}
