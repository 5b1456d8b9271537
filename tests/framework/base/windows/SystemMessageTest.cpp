#include "framework/base/SystemMessage.h"

#include "resources/Ids.h"
#include "tests/support/Print.h"

#include <gtest/gtest.h>

#include <thread>

namespace {

/// Presses `button` in the first box titled `caption` that appears; gives up after a minute.
bool PressInBox(LPCWSTR caption, int button)
{
    for (int attempt = 0; attempt < 1200; ++attempt) {
        const HWND box = FindWindowW(nullptr, caption);
        if (box != nullptr && IsWindowVisible(box))
            return PostMessageW(box, WM_COMMAND, WPARAM(button), 0) != 0;
        Sleep(50);
    }
    return false;
}

} // namespace

TEST(SystemMessage, TheBoxReturnsTheButtonThatWasPressed)
{
    bool pressed = false;
    // The caption is this process's own: others may show the same box on the same display.
    CString caption;
    caption.Format(L"Vak test box %lu", GetCurrentProcessId());
    std::thread user([&] { pressed = PressInBox(caption, IDNO); });
    EXPECT_EQ(vak::system::ShowMessage(L"?", caption, MB_YESNO), IDNO);
    user.join();
    EXPECT_TRUE(pressed);
}

TEST(SystemMessage, StringsOfAnyModuleAreReadInAnyLanguageItHas)
{
    const HMODULE library = GetModuleHandleW(L"vaktools.dll");
    ASSERT_NE(library, nullptr);
    CString text;
    EXPECT_FALSE(vak::system::LoadModuleText(text, library, IDS_OUT_OF_MEMORY, 1033));
    // The user's language may have the block without the entry.
    EXPECT_TRUE(vak::system::LoadModuleText(text, library, IDS_OUT_OF_MEMORY));
    EXPECT_EQ(text, CString(L"Mémoire insuffisante."));
    EXPECT_FALSE(vak::system::LoadModuleText(text, GetModuleHandleW(nullptr), IDS_OUT_OF_MEMORY));
}
