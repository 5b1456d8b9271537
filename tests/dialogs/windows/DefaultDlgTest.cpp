#include "dialogs/DefaultDlg.h"

#include "core/RGBColor.h"
#include "framework/base/StringTable.h"
#include "framework/ui/Dialog.h"
#include "tests/support/DialogDriver.h"
#include "tests/support/MessageRecorder.h"
#include "tests/support/Print.h"

#include <gtest/gtest.h>

#include <array>
#include <cstring>
#include <limits>
#include <utility>
#include <vector>

using vak::FieldBinding;
using vak::FieldKind;
using vak::test::DialogDriver;

namespace {

constexpr UINT kTemplate = 20100;
constexpr unsigned int kOther = 'OTHR';

/// A dialog with a part, forwarding to it what a dialog does.
class ProbeDialog : public CDialog
{
public:
    ProbeDialog() : CDialog(kTemplate)
    {
        part.Bind(this, &store);
        part.SetChangeCallback(
            [](int control, void* user) { static_cast<ProbeDialog*>(user)->changes.push_back(control); },
            this);
    }

    BOOL PreTranslateMessage(MSG* message) override { return part.PreTranslateMessage(message); }

    CCustomData store;
    CDefaultDlg part;
    std::vector<int> changes;

protected:
    BOOL OnInitDialog() override
    {
        constexpr std::pair<int, UINT> kLists[] = {
            {105, CB_ADDSTRING}, {106, CB_ADDSTRING}, {107, LB_ADDSTRING}};
        for (const auto& [list, add] : kLists)
            for (const wchar_t* const item : {L"un", L"deux", L"trois"})
                SendDlgItemMessage(list, add, 0, reinterpret_cast<LPARAM>(item));
        return CDialog::OnInitDialog() && part.OnInitDialog();
    }
    BOOL OnWndMsg(UINT id, WPARAM wParam, LPARAM lParam, LRESULT* result) override
    {
        return part.OnWndMsg(id, wParam, lParam, result) || CDialog::OnWndMsg(id, wParam, lParam, result);
    }
    BOOL OnCmdMsg(UINT id, int code, void* extra, AFX_CMDHANDLERINFO* info) override
    {
        return part.OnCmdMsg(id, code, extra, info) || CDialog::OnCmdMsg(id, code, extra, info);
    }
    void OnSize(UINT type, int cx, int cy) override { part.OnSize(type, cx, cy); }
};

class DefaultDlg : public testing::Test
{
protected:
    DefaultDlg() { vak::SetTextLanguage(1036); }

    /// Shows the dialog, runs `script` in it, and closes it.
    template <class SCRIPT>
    static void Show(ProbeDialog& dialog, SCRIPT script)
    {
        DialogDriver driver([&](HWND window) {
            script();
            dialog.EndDialog(IDOK);
            return window == dialog.GetSafeHwnd();
        });
        dialog.DoModal();
        EXPECT_EQ(driver.Seen(), 1);
    }

    vak::test::MessageRecorder m_recorder;
};

/// A store with that value under the id.
struct Of : CCustomData
{
    Of(unsigned int id, bool value) { SetBool(id, value); }
    Of(unsigned int id, int value) { SetInt(id, value); }
    Of(unsigned int id, unsigned int value) { SetUInt(id, value); }
    Of(unsigned int id, float value) { SetFloat(id, value); }
    Of(unsigned int id, double value) { SetDouble(id, value); }
    Of(unsigned int id, const CString& value) { SetString(id, value); }
    Of(unsigned int id, const wchar_t* value) { SetString(id, value); }
    Of(unsigned int id, const CRGBColor& value) { SetBinary(id, value.ValPtr(), 4); }
};

/// Whether both have the same kind and bytes under the id.
bool AreSame(const CCustomData& a, const CCustomData& b, unsigned int id)
{
    const unsigned int size = a.GetDataSize(id);
    return size == b.GetDataSize(id) && a.GetDataKindOf(id) == b.GetDataKindOf(id) &&
           (size == 0 || std::memcmp(a.GetCustomPtr(id), b.GetCustomPtr(id), size) == 0);
}

/// What the user does in a control: clicks, presses the down key, or types that text.
constexpr wchar_t kClick[] = L"<click>";
constexpr wchar_t kDown[] = L"<down>";

void Do(HWND control, const CString& what)
{
    if (what == kClick)
        SendMessageW(control, BM_CLICK, 0, 0);
    else if (what == kDown)
        SendMessageW(control, WM_KEYDOWN, VK_DOWN, 1);
    else
        SetWindowTextW(control, what);
}

} // namespace

TEST_F(DefaultDlg, KeepsValuesBitForBitUntilTheUserChangesThem)
{
    struct Row
    {
        FieldBinding field;
        CCustomData before;
        int actOn = 0;
        CString act{};
        CCustomData after{};
    };
    const FieldBinding spin{.control = 113, .kind = FieldKind::Spin, .minimum = 0, .maximum = 500};
    const FieldBinding cents{.control = 102, .kind = FieldKind::Float, .decimals = 2};
    const CRGBColor color(BYTE(1), BYTE(2), BYTE(3), BYTE(77));
    using enum FieldKind;
    const Row rows[] = {
        {{.control = 101, .property = 'QU'}, Of('QU', 90), 101, L"-12", Of('QU', -12)},
        {cents, Of(102, 1 / 3.0f), 102, L"2,5", Of(102, 2.5f)},
        {{103, 0, Text}, Of(103, L"avant"), 103, L"apr\xE8s\x4E2D", Of(103, L"apr\xE8s\x4E2D")},
        {{104, 0, Bool}, Of(104, true), 104, kClick, Of(104, false)},
        {{105, 0, ComboIndex}, Of(105, 1), 105, kDown, Of(105, 2)},
        {{105, 0, Text}, Of(105, L"un"), 105, kDown, Of(105, L"deux")},
        {{106, 0, Text}, Of(106, L"quatre"), 106, kDown, Of(106, L"un")},
        {{107, 0, ListIndex}, Of(107, 0), 107, kDown, Of(107, 1)},
        {{108, 0, RadioIndex}, Of(108, 0), 110, kClick, Of(108, 2)},
        {{111, 0, Slider, -5, 5}, Of(111, -3), 111, kDown, Of(111, -2)},
        {spin, Of(113, 400), 112, kDown, Of(113, 399)},
        {spin, Of(113, 400), 112, L"7", Of(113, 7)},
        {{115, 0, Color}, Of(115, color), 115, L"#FF8000", Of(115, 77u << 24 | 0x0080FF)},
        // What the control, the range or the kind of the field does not fit.
        {{101, 0, Int, 0, 9}, Of(101, 1000)},
        {{101, 0, Int}, Of(101, L"douze"), 101, L"12", Of(101, 12)},
        {{102, 0, Double}, Of(102, std::numeric_limits<double>::quiet_NaN())},
        {{103, 0, Text, 0, 3}, Of(103, CString(L'x', 1 << 18)), 103, L"abc", Of(103, L"abc")},
        {{103, 0, Text}, Of(103, CString(L"a\nb\0c\xD800", 6))},
        {{104, 0, Bool}, Of(104, 2)},
        {{105, 0, ComboIndex}, Of(105, 99)},
        {{105, 0, Text}, Of(105, L"dix")},
        {{107, 0, ListIndex}, Of(107, -9)},
        {{108, 0, RadioIndex}, Of(108, 3)},
        {spin, Of(113, 10.0)},
        {{999, 0, Int}, Of(999, 1)},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.field.control);
        const unsigned int id = row.field.property != 0 ? row.field.property : row.field.control;
        ProbeDialog dialog;
        CDefaultDlg& part = dialog.part;
        dialog.store = row.before;
        dialog.store.SetInt(kOther, 1);
        part.AddField(row.field);
        part.ReinitDialog(dialog.store);
        CCustomData other;
        part.SaveData(other);
        EXPECT_TRUE(AreSame(other, row.before, id)) << "without a window";
        Show(dialog, [&] {
            other = Of(id, 4711);
            EXPECT_TRUE(!part.IsModified() && part.ValidateData(1, other) && AreSame(other, row.before, id));
            EXPECT_TRUE(part.ValidateData(1, dialog.store) && AreSame(dialog.store, row.before, id));
            EXPECT_TRUE(dialog.changes.empty());
            if (row.actOn == 0)
                return;
            Do(dialog.GetDlgItem(row.actOn), row.act);
            EXPECT_EQ(dialog.changes, std::vector{row.field.control});
            EXPECT_TRUE(part.ValidateData(0, dialog.store) && AreSame(dialog.store, row.before, id));
            EXPECT_TRUE(part.IsModified() && part.ValidateData(1, dialog.store) && !part.IsModified());
            EXPECT_TRUE(AreSame(dialog.store, row.after, id));
        });
        EXPECT_TRUE(AreSame(dialog.store, Of(kOther, 1), kOther));
    }
}

TEST_F(DefaultDlg, TellsAllFailingFieldsAndSelectsTheFirstAsControlADoes)
{
    ProbeDialog dialog;
    dialog.store.SetInt(101, 90);
    dialog.part.AddFields({
        {.control = 103, .kind = FieldKind::Text, .minimum = 1, .text = L"nom"},
        {.control = 101, .minimum = 0, .maximum = 100},
        {.control = 102, .kind = FieldKind::Double, .label = L"Facteur"},
        {.control = 113, .kind = FieldKind::Spin, .minimum = 0, .maximum = 9},
    });
    Show(dialog, [&] {
        dialog.SetDlgItemText(103, L"autre");
        dialog.SetDlgItemText(101, L"123");
        dialog.SetDlgItemText(102, L"beaucoup");
        dialog.SetDlgItemText(112, L"12");
        EXPECT_FALSE(dialog.part.ValidateData(1, dialog.store));
        EXPECT_EQ(GetFocus(), dialog.GetDlgItem(101));
        EXPECT_EQ(dialog.SendDlgItemMessage(101, EM_GETSEL), MAKELPARAM(0, 3));
        EXPECT_EQ(DialogDriver::TextOf(dialog.GetSafeHwnd(), 101), L"123");
        EXPECT_EQ(dialog.store.HasData(103), 0) << "a page is saved whole or not at all";
        CCustomData valid;
        dialog.part.SaveData(valid);
        EXPECT_TRUE(AreSame(valid, Of(103, L"autre"), 103) && AreSame(valid, Of(101, 90), 101));

        // The page of a sheet fails while another is in front of it.
        dialog.SetDlgItemText(101, L"12");
        dialog.SetDlgItemText(102, L"1");
        ::SetFocus(dialog.GetDlgItem(103));
        dialog.ShowWindow(SW_HIDE);
        EXPECT_FALSE(dialog.part.ValidateData(0, dialog.store));
        dialog.part.VerifyData(0, 0);
        dialog.ShowWindow(SW_SHOW);
        MSG message{};
        while (PeekMessage(&message, dialog.GetSafeHwnd(), 0xC000, 0xFFFF, PM_REMOVE))
            DispatchMessage(&message);
        EXPECT_EQ(GetFocus(), dialog.GetDlgItem(112));

        dialog.SetDlgItemText(112, L"8");
        EXPECT_TRUE(dialog.part.ValidateData(1, dialog.store));

        MSG controlA{dialog.GetDlgItem(103), WM_KEYDOWN, 'A', 1, 0, {}};
        for (const BYTE alt : {0x80, 0}) {
            std::array<BYTE, 256> keys{};
            keys[VK_CONTROL] = 0x80;
            keys[VK_MENU] = alt;
            SetKeyboardState(keys.data());
            EXPECT_NE(dialog.PreTranslateMessage(&controlA), alt != 0) << "AltGr types a character";
        }
        EXPECT_EQ(dialog.SendDlgItemMessage(103, EM_GETSEL), MAKELPARAM(0, 5));
        SetKeyboardState(std::array<BYTE, 256>{}.data());
    });
    ASSERT_EQ(m_recorder.Boxes().size(), 2u);
    EXPECT_EQ(m_recorder.Boxes()[0].text, L"Certaines valeurs ne sont pas valides :\n"
                                          L"Qualité : la valeur doit être comprise entre 0 et 100.\n"
                                          L"Facteur : un nombre est attendu.\n"
                                          L"Nombre : la valeur doit être comprise entre 0 et 9.");
    EXPECT_TRUE(AreSame(dialog.store, Of(113, 8), 113));
}

TEST_F(DefaultDlg, KeepsChangesForItsStoreAndFollowsIt)
{
    ProbeDialog dialog;
    dialog.part.AddFields({
        {.control = 101, .property = 'SAME', .number = 8},
        {.control = 101, .property = 'QUAL', .number = 75},
        {111, 'QUAL', FieldKind::Slider, 0, 100, -1, {}, 75},
        {.control = 102, .kind = FieldKind::Double, .decimals = 1, .number = 0.25},
        {.control = 108, .kind = FieldKind::RadioIndex, .number = -1},
    });
    CCustomData found = Of('QUAL', 1);
    dialog.part.SaveData(found);
    EXPECT_TRUE(AreSame(found, Of('QUAL', 1), 'QUAL')) << "what was never filled knows no better";
    EXPECT_TRUE(AreSame(found, Of(102, 0.25), 102)) << "the default in full";
    Show(dialog, [&] {
        EXPECT_FALSE(dialog.part.IsModified()) << "fields of one control";
        EXPECT_TRUE(GetWindowLongPtr(dialog.GetDlgItem(108), GWL_STYLE) & WS_TABSTOP) << "none is checked";
        dialog.SetDlgItemText(101, L"40");
        dialog.part.Bind(&dialog, &dialog.store);
        CCustomData copy;
        EXPECT_TRUE(dialog.part.ValidateData(1, copy) && AreSame(copy, Of('QUAL', 40), 'QUAL'));
        EXPECT_TRUE(dialog.part.IsModified()) << "the bound store has not got it";
        EXPECT_TRUE(dialog.part.ValidateData(1, dialog.store) && !dialog.part.IsModified());
        EXPECT_EQ(dialog.SendDlgItemMessage(111, WM_USER), 40) << "the field that shares the value follows";

        dialog.store.SetInt('QUAL', 20);
        dialog.store.SetDouble(102, 3);
        dialog.SetDlgItemText(102, L"9");
        EXPECT_EQ(dialog.part.VerifyData(101, 101), 1);
        EXPECT_EQ(DialogDriver::TextOf(dialog.GetSafeHwnd(), 101), L"20");
        EXPECT_EQ(dialog.part.VerifyData(0, 0), 1);
        EXPECT_EQ(DialogDriver::TextOf(dialog.GetSafeHwnd(), 102), L"9") << "what the user entered stays";

        dialog.store.SetInt('QUAL', 21);
        dialog.part.SaveData(dialog.store);
        EXPECT_TRUE(AreSame(dialog.store, Of('QUAL', 21), 'QUAL'))
            << "another page's value, not ours of before";

        const CCustomData defaults = Of('QUAL', 60);
        dialog.changes.clear();
        dialog.part.ReinitDialog(defaults);
        EXPECT_EQ(dialog.part.VerifyData(0, 0), 0);
        EXPECT_EQ(DialogDriver::TextOf(dialog.GetSafeHwnd(), 101), L"60");
        EXPECT_TRUE(dialog.changes.empty());
    });
    dialog.part.SaveData(dialog.store);
    EXPECT_TRUE(AreSame(dialog.store, Of(102, 0.25), 102)) << "the default was shown";
    EXPECT_TRUE(AreSame(dialog.store, Of('QUAL', 60), 'QUAL')) << "the window is gone, its values are not";
    dialog.part.Bind(&dialog, &found);
    dialog.part.SaveData(found);
    EXPECT_TRUE(AreSame(found, Of('QUAL', 1), 'QUAL')) << "the values of a store do not come to another";
}

TEST_F(DefaultDlg, LaysAnchoredControlsOutAboveTheMinimum)
{
    ProbeDialog dialog;
    dialog.part.AddAnchor(101, vak::AnchorLeft | vak::AnchorTop | vak::AnchorRight);
    dialog.part.AddAnchor(IDOK, vak::AnchorRight | vak::AnchorBottom);
    dialog.part.AddAnchor(999, vak::AnchorAll);
    dialog.part.SetMinimumSize(CSize(200, 150));
    Show(dialog, [&] {
        const auto areaOf = [&](int id) { return CRect(DialogDriver::AreaOf(dialog.GetDlgItem(id))); };
        const CRect edit = areaOf(101);
        const CRect button = areaOf(IDOK);
        const CRect frame = DialogDriver::AreaOf(dialog.GetSafeHwnd());
        const CSize client = dialog.GetClientRect().Size();
        dialog.MoveWindow(frame + CRect(0, 0, 30, 20));
        EXPECT_EQ(areaOf(101), edit + CRect(0, 0, 30, 0));
        EXPECT_EQ(areaOf(IDOK), button + CPoint(30, 20));
        dialog.MoveWindow(CRect(frame.TopLeft(), CSize(10, 10)));
        EXPECT_EQ(dialog.GetClientRect().Size(), CSize(200, 150));
        dialog.SendMessage(WM_SIZE, SIZE_RESTORED, MAKELPARAM(9, 9)); // a page is made as small as its sheet
        EXPECT_EQ(areaOf(IDOK), button + CPoint(200 - client.cx, 150 - client.cy));
    });
}

TEST_F(DefaultDlg, DrawsAColourAndLetsTheUserChooseAnother)
{
    constexpr int kChooserRed = 706;
    ProbeDialog dialog;
    dialog.store.SetUInt(114, 0x80302010);
    dialog.part.AddField({.control = 114, .kind = FieldKind::Color});
    bool isAsked = false;
    DialogDriver driver([&](HWND window) {
        const HWND button = dialog.GetDlgItem(114);
        if (window != dialog.GetSafeHwnd()) {
            SetDlgItemInt(window, kChooserRed, 255, FALSE);
            DialogDriver::Press(window, IDOK);
        } else if (!std::exchange(isAsked, true)) {
            PostMessageW(button, BM_CLICK, 0, 0);
        }
        if (dialog.changes.empty())
            return false;
        CCustomData copy;
        EXPECT_TRUE(dialog.part.ValidateData(1, copy) && AreSame(copy, Of(114, 0x803020FFu), 114));
        UpdateWindow(button);
        const HDC context = GetDC(button);
        EXPECT_EQ(GetPixel(context, 10, 10), 0x3020FFu);
        ReleaseDC(button, context);
        dialog.EndDialog(IDOK);
        return true;
    });
    dialog.DoModal();
    EXPECT_EQ(dialog.changes, std::vector<int>{114});
}
