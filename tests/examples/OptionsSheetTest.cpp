#include "examples/sdk/OptionsIds.h"
#include "examples/vakconvert/Conversion.h"
#include "examples/vakconvert/options/Names.h"
#include "examples/vakconvert/options/NamesIds.h"
#include "examples/vakconvert/options/TargetSheet.h"
#include "files/FileIo.h"
#include "files/IoPlugins.h"
#include "tests/examples/Vakconvert.h"
#include "tests/support/DialogDriver.h"
#include "tests/support/MessageRecorder.h"
#include "tests/support/Print.h"

#include <prsht.h>

using vak::test::DialogDriver;
using vak::test::kTriangle;

namespace {

constexpr int kScale = IDC_FIRST_OPTION, kBinary = IDC_FIRST_OPTION + 1;

/// The sheets of this process, driven from a timer; the conversions after them run in another one.
class OptionsSheetTest : public vak::test::Vakconvert
{
protected:
    void SetUp() override
    {
        RegisterIOPlugins(kIoPlugin3D);
        CFileIo::SetPreferencesFilePath(m_folder.Path("prefs.dat"));
        m_folder.Write("in\\a.obj", kTriangle);
        m_folder.Write("in\\b.obj", kTriangle);
        ASSERT_EQ(PrepareTarget(L".stl", m_target), CString());
    }
    void TearDown() override
    {
        CFileIo::SetPreferencesFilePath(L"");
        FreeIOPlugins(kIoPlugin3D);
    }

    static HWND Control(HWND sheet, int id)
    {
        return GetDlgItem(reinterpret_cast<HWND>(SendMessageW(sheet, PSM_GETCURRENTPAGEHWND, 0, 0)), id);
    }
    static void Click(HWND sheet, int id) { SendMessageW(Control(sheet, id), BM_CLICK, 0, 0); }
    static void Type(HWND sheet, int id, const CString& text)
    {
        SendMessageW(Control(sheet, id), WM_SETTEXT, 0, reinterpret_cast<LPARAM>(text.GetString()));
    }
    /// Whether a model was written as text.
    bool IsText(const char* name) const { return m_folder.Read(name).substr(0, 5) == "solid"; }

    Target m_target;
};

} // namespace

TEST_F(OptionsSheetTest, WhatItKeepsHoldsForTheNextRunThatDoesNotSayOtherwise)
{
    const vak::test::MessageRecorder boxes;
    int step = 0;
    const DialogDriver driver([&](HWND sheet) {
        DialogDriver::Press(sheet, IDOK);
        if (++step == 1) {
            Click(sheet, kBinary);
            SendMessageW(sheet, PSM_SETCURSEL, 1, 0);
            Type(sheet, IDC_NAME, L"<file(shortname)>-x");
            Click(sheet, IDC_PLACE + kInSubfolder);
            Type(sheet, IDC_SUBFOLDER, L".."); // no folder below the source's
            SendMessageW(sheet, PSM_SETCURSEL, 0, 0);
        } else if (step == 2) {
            Type(sheet, IDC_SUBFOLDER, L"made");
            CFileIo::SetPreferencesFilePath(m_folder.Path("in\\a.obj\\prefs.dat"));
        } else {
            CFileIo::SetPreferencesFilePath(m_folder.Path("prefs.dat"));
        }
        return step == 3;
    });
    TargetSheet sheet(m_target);
    EXPECT_EQ(sheet.DoModal(), IDOK);
    ASSERT_EQ(boxes.Boxes().size(), 2u);
    EXPECT_EQ(boxes.Boxes()[0].text.Left(15), CString(L"Le sous-dossier"));
    EXPECT_EQ(boxes.Boxes()[1].text.Left(20), CString(L"Impossible d'écrire "));
    EXPECT_EQ(Run(L"--to .stl @in\\a.obj"), 0u);
    EXPECT_TRUE(IsText("in/made/a-x.stl"));
    EXPECT_EQ(Run(L"--to .stl --beside --name \"\" -o binary=1 @in\\a.obj"), 0u);
    EXPECT_FALSE(IsText("in/a.stl"));

    // What is kept is a file: it may say anything.
    CCustomData names = LoadNames();
    names.SetString(kNameSubfolder, L"a:b");
    KeepNames(names, m_folder.Path("prefs.dat"));
    EXPECT_EQ(Run(L"--to .stl @in\\b.obj"), 0u);
    EXPECT_TRUE(Says("is not used") && IsText("in/b.stl")) << m_output;
}

TEST_F(OptionsSheetTest, ItsButtonsShowTheDefaultsAndSaveToAFileForOtherRuns)
{
    const auto first = static_cast<int>(CCustomPropertySheet::GetFirstCustomID());
    const int presses[] = {first + OptionsSheet::kSaveAs, IDOK, first + OptionsSheet::kDefaults, IDOK};
    int step = 0;
    const DialogDriver driver([&](HWND sheet) {
        const HWND scale = Control(sheet, kScale);
        if ((scale != nullptr) == (step == 1))
            return false; // the other dialog is still to come
        if (step == 0) {
            Type(sheet, kScale, L"2,5");
            Click(sheet, kBinary);
        }
        EXPECT_TRUE(step != 1 || vak::test::TypeName(sheet, m_folder.Path("mine.dat")));
        EXPECT_TRUE(step != 2 || !m_folder.Has("prefs.dat"));
        EXPECT_TRUE(step != 3 || DialogDriver::TextOf(scale) == L"1");
        DialogDriver::Press(sheet, presses[step]);
        return ++step == 4;
    });
    m_target.parameters.SetFloat('SCAL', 4);
    TargetSheet sheet(m_target);
    EXPECT_EQ(sheet.DoModal(), IDOK);
    EXPECT_EQ(Run(L"--preferences @mine.dat --to .stl @in\\a.obj"), 0u) << m_output;
    EXPECT_NE(m_folder.Read("in/a.stl").find("2.5 0 0"), std::string::npos);
    EXPECT_EQ(Run(L"--to .stl -o binary=0 @in\\b.obj"), 0u) << m_output;
    EXPECT_NE(m_folder.Read("in/b.stl").find("1 0 0"), std::string::npos);
}

TEST_F(OptionsSheetTest, APlugInAsksOnceARunUnlessItIsSilent)
{
    NameTemplate stems(L"", CTime::GetCurrentTime());
    std::vector<Source> sources(2);
    sources[0].path = m_folder.Path("in\\a.obj");
    sources[1].path = m_folder.Path("in\\b.obj");
    ResultNames names(sources, false);
    const auto convert = [&](const Source& source) {
        return Convert(source, m_target, m_folder.Path("in\\"), stems, names).failure;
    };
    for (const int answer : {IDOK, IDCANCEL}) {
        const DialogDriver driver([&](HWND sheet) {
            EXPECT_FALSE(IsWindowVisible(GetDlgItem(sheet, 12321))) << "there is nothing to apply to";
            Click(sheet, kBinary);
            DialogDriver::Press(sheet, answer);
            return true;
        });
        m_target.asks = true;
        EXPECT_EQ(convert(sources[0]), CString(answer == IDOK ? L"" : L"Opération interrompue"));
        EXPECT_EQ(m_target.isGivenUp, answer == IDCANCEL);
        EXPECT_TRUE(answer == IDCANCEL || convert(sources[1]).IsEmpty());
        EXPECT_EQ(driver.Seen(), 1);
    }
    EXPECT_TRUE(IsText("in/a.stl") && IsText("in/b.stl"));
    EXPECT_EQ(Made(".stl"), (vak::test::Names{"in/a.stl", "in/b.stl"}));
}
