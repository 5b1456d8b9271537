#include "tests/dialogs/windows/SheetFixture.h"

using namespace vak::test;

namespace {

/// What the process holds. The last sixteen bits of a handle are its number: all are tried.
struct Holdings
{
    Holdings()
    {
        for (UINT_PTR number = 1; number <= 0xFFFF; ++number) {
            gdiObjects += GetObjectType(reinterpret_cast<HGDIOBJ>(number)) != 0;
            windowsAndMenus += IsWindow(reinterpret_cast<HWND>(number)) != 0;
            windowsAndMenus += IsMenu(reinterpret_cast<HMENU>(number)) != 0;
        }
        PROCESS_HEAP_ENTRY entry{};
        while (HeapWalk(GetProcessHeap(), &entry))
            blocks += (entry.wFlags & PROCESS_HEAP_ENTRY_BUSY) != 0;
    }

    int gdiObjects = 0;
    int windowsAndMenus = 0;
    int blocks = 0;
};

/// Presses OK as soon as it is shown.
class ShortPage : public NumberPage
{
public:
    using NumberPage::NumberPage;

    BOOL OnSetActive() override
    {
        PostMessage(GetParent(GetSafeHwnd()), WM_COMMAND, IDOK, 0);
        return NumberPage::OnSetActive();
    }
};

void ShowShortSheet()
{
    ProbeSheet sheet;
    ShortPage first('QUAL', nullptr, kQualityPage);
    ShortPage second('SIZE');
    sheet.GetData().SetInt('QUAL', 5);
    sheet.AddPage(&first);
    sheet.AddPage(&second);
    sheet.AddButton(L"Défaut", 0);
    ASSERT_EQ(sheet.DoModal(), IDOK);
}

} // namespace

TEST(Sheets, AThousandOfThemLeaveNothingBehind)
{
    wchar_t path[MAX_PATH] = {};
    GetModuleFileNameW(GetModuleHandleW(L"comctl32.dll"), path, MAX_PATH);
    EXPECT_EQ(CString(path).Find(L"common-controls_6595b64144ccf1df_6.") >= 0, VAK_COMMON_CONTROLS == 6)
        << "the program runs with the version that it is built for";

    constexpr int kWarmUp = 10;
    constexpr int kCount = 1000;
    for (int count = 0; count < kWarmUp; ++count)
        ShowShortSheet();
    const Holdings before;
    for (int count = 0; count < kCount; ++count)
        ShowShortSheet();
    const Holdings after;
    EXPECT_GT(before.gdiObjects, 0);
    EXPECT_LE(after.gdiObjects, before.gdiObjects);
    EXPECT_LE(after.windowsAndMenus, before.windowsAndMenus);
    // The newer system library keeps one small block a sheet.
    EXPECT_LE(after.blocks, before.blocks + (VAK_COMMON_CONTROLS > 5 ? kCount : 0));
}
