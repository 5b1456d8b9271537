#include "dialogs/DefaultDlg.h"

#include "core/RGBColor.h"
#include "framework/base/Application.h"
#include "framework/base/StringTable.h"
#include "framework/ui/Dialog.h"
#include "tests/support/DialogDriver.h"
#include "tests/support/MessageRecorder.h"
#include "tests/support/Print.h"

#include <gtest/gtest.h>

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
        for (const wchar_t* const item : {L"un", L"deux", L"trois"}) {
            SendDlgItemMessage(105, CB_ADDSTRING, 0, reinterpret_cast<LPARAM>(item));
            SendDlgItemMessage(106, CB_ADDSTRING, 0, reinterpret_cast<LPARAM>(item));
            SendDlgItemMessage(107, LB_ADDSTRING, 0, reinterpret_cast<LPARAM>(item));
        }
        return CDialog::OnInitDialog() && part.OnInitDialog();
    }
    BOOL OnWndMsg(UINT message, WPARAM wParam, LPARAM lParam, LRESULT* result) override
    {
        return part.OnWndMsg(message, wParam, lParam, result) ||
               CDialog::OnWndMsg(message, wParam, lParam, result);
    }
    BOOL OnCommand(UINT id, UINT code) override
    {
        return part.OnCmdMsg(id, static_cast<int>(code), nullptr, nullptr) || CDialog::OnCommand(id, code);
    }
    void OnSize(UINT type, int cx, int cy) override { part.OnSize(type, cx, cy); }
};

class DefaultDlg : public testing::Test
{
protected:
    DefaultDlg()
    {
        LoadLibraryW(L"comctl32.dll");
        AfxSetResourceHandle(GetModuleHandleW(nullptr));
        vak::SetTextLanguage(1036);
    }
    ~DefaultDlg() override { AfxSetResourceHandle(nullptr); }

    /// Shows the dialog, runs `script` in it, and closes it.
    template <class SCRIPT>
    void Show(ProbeDialog& dialog, SCRIPT script)
    {
        DialogDriver driver([&](HWND window) {
            script();
            dialog.EndDialog(IDOK);
            return window == dialog.GetSafeHwnd();
        });
        dialog.DoModal();
        EXPECT_EQ(driver.Seen(), 1);
    }

    static CString TextOf(ProbeDialog& dialog, int id)
    {
        return DialogDriver::TextOf(dialog.GetSafeHwnd(), id);
    }

    vak::test::MessageRecorder m_recorder;
};

bool AreSame(const CCustomData& a, const CCustomData& b, unsigned int id)
{
    CCustomData onlyA;
    CCustomData onlyB;
    onlyA.CopyID(&a, id, 0u);
    onlyB.CopyID(&b, id, 0u);
    return onlyA.HasData() == onlyB.HasData() && onlyA.IsEqual(onlyB) &&
           onlyA.GetDataKindOf(id) == onlyB.GetDataKindOf(id);
}

/// What the user does in a control: types a text, clicks, or presses a key.
void Type(HWND control, const wchar_t* text)
{
    SetWindowTextW(control, text);
}

void Click(HWND control, const wchar_t*)
{
    SendMessageW(control, BM_CLICK, 0, 0);
}

void PressDown(HWND control, const wchar_t*)
{
    SendMessageW(control, WM_KEYDOWN, VK_DOWN, 1);
    SendMessageW(control, WM_KEYUP, VK_DOWN, 1);
}

} // namespace

TEST_F(DefaultDlg, ShowsAndSavesEachKindAndTellsWhatTheUserChanges)
{
    struct Row
    {
        FieldBinding field;
        void (*stored)(CCustomData&);
        void (*act)(HWND control, const wchar_t* text);
        int actOn;
        const wchar_t* text;
        void (*expected)(CCustomData&);
    };
    const Row rows[] = {
        {{.control = 101, .property = 'QUAL', .kind = FieldKind::Int},
         [](CCustomData& s) { s.SetInt('QUAL', 90); },
         Type,
         101,
         L"-12",
         [](CCustomData& s) { s.SetInt('QUAL', -12); }},
        {{.control = 101, .kind = FieldKind::ULongLong},
         [](CCustomData& s) { s.SetULongLong(101, 1); },
         Type,
         101,
         L"18446744073709551615",
         [](CCustomData& s) { s.SetULongLong(101, ~0ull); }},
        {{.control = 102, .kind = FieldKind::Float, .decimals = 2},
         [](CCustomData& s) { s.SetFloat(102, 1 / 3.0f); },
         Type,
         102,
         L"2,5",
         [](CCustomData& s) { s.SetFloat(102, 2.5f); }},
        {{.control = 103, .kind = FieldKind::Text},
         [](CCustomData& s) { s.SetString(103, L"avant"); },
         Type,
         103,
         L"après\x4E2D",
         [](CCustomData& s) { s.SetString(103, L"après\x4E2D"); }},
        {{.control = 104, .kind = FieldKind::Bool},
         [](CCustomData& s) { s.SetBool(104, 5); },
         Click,
         104,
         nullptr,
         [](CCustomData& s) { s.SetBool(104, 0); }},
        {{.control = 105, .kind = FieldKind::ComboIndex},
         [](CCustomData& s) { s.SetInt(105, 1); },
         PressDown,
         105,
         nullptr,
         [](CCustomData& s) { s.SetInt(105, 2); }},
        {{.control = 105, .kind = FieldKind::Text},
         [](CCustomData& s) { s.SetString(105, L"un"); },
         PressDown,
         105,
         nullptr,
         [](CCustomData& s) { s.SetString(105, L"deux"); }},
        {{.control = 106, .kind = FieldKind::Text},
         [](CCustomData& s) { s.SetStringA(106, "quatre"); },
         PressDown,
         106,
         nullptr,
         [](CCustomData& s) { s.SetString(106, L"un"); }},
        {{.control = 107, .kind = FieldKind::ListIndex},
         [](CCustomData& s) { s.SetInt(107, 0); },
         PressDown,
         107,
         nullptr,
         [](CCustomData& s) { s.SetInt(107, 1); }},
        {{.control = 108, .kind = FieldKind::RadioIndex},
         [](CCustomData& s) { s.SetInt(108, 0); },
         Click,
         110,
         nullptr,
         [](CCustomData& s) { s.SetInt(108, 2); }},
        {{.control = 111, .kind = FieldKind::Slider, .minimum = -5, .maximum = 5},
         [](CCustomData& s) { s.SetInt(111, -3); },
         PressDown,
         111,
         nullptr,
         [](CCustomData& s) { s.SetInt(111, -2); }},
        {{.control = 113, .kind = FieldKind::Spin, .minimum = 0, .maximum = 500},
         [](CCustomData& s) { s.SetInt(113, 400); },
         PressDown,
         112,
         nullptr,
         [](CCustomData& s) { s.SetInt(113, 399); }},
        {{.control = 113, .kind = FieldKind::Spin, .minimum = 0, .maximum = 500},
         [](CCustomData& s) { s.SetInt(113, 400); },
         Type,
         112,
         L"7",
         [](CCustomData& s) { s.SetInt(113, 7); }},
        {{.control = 115, .kind = FieldKind::Color},
         [](CCustomData& s) { s.SetBinary(115, CRGBColor(BYTE(1), BYTE(2), BYTE(3), BYTE(77)).ValPtr(), 4); },
         Type,
         115,
         L"#FF8000",
         [](CCustomData& s) { s.SetUInt(115, 77u << 24 | 0x0080FF); }},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.field.control);
        const unsigned int id = row.field.property != 0 ? row.field.property : row.field.control;
        CCustomData before;
        row.stored(before);
        CCustomData after;
        row.expected(after);
        ProbeDialog dialog;
        row.stored(dialog.store);
        dialog.store.SetInt(kOther, 1);
        dialog.part.AddField(row.field);
        Show(dialog, [&] {
            EXPECT_TRUE(dialog.changes.empty());
            EXPECT_TRUE(dialog.part.ValidateData(1, dialog.store));
            EXPECT_TRUE(AreSame(dialog.store, before, id));
            row.act(dialog.GetDlgItem(row.actOn), row.text);
            EXPECT_FALSE(dialog.changes.empty());
            EXPECT_TRUE(dialog.part.IsModified());
            EXPECT_TRUE(dialog.part.ValidateData(0, dialog.store));
            EXPECT_TRUE(AreSame(dialog.store, before, id));
            EXPECT_TRUE(dialog.part.ValidateData(1, dialog.store));
            EXPECT_TRUE(AreSame(dialog.store, after, id));
            EXPECT_FALSE(dialog.part.IsModified());
        });
        for (const int control : dialog.changes)
            EXPECT_EQ(control, row.field.control);
        CCustomData only;
        only.SetInt(kOther, 1);
        EXPECT_TRUE(AreSame(dialog.store, only, kOther));
    }
}

TEST_F(DefaultDlg, GivesBackWhatItCannotShowBitForBit)
{
    struct Row
    {
        FieldBinding field;
        void (*put)(CCustomData&);
    };
    const Row rows[] = {
        {{.control = 101, .kind = FieldKind::Int, .minimum = 0, .maximum = 9},
         [](CCustomData& s) { s.SetInt(101, 1000); }},
        {{.control = 101, .kind = FieldKind::Int}, [](CCustomData& s) { s.SetString(101, L"douze"); }},
        {{.control = 102, .kind = FieldKind::Float, .decimals = 2},
         [](CCustomData& s) { s.SetFloat(102, 1.23456f); }},
        {{.control = 102, .kind = FieldKind::Double, .decimals = 0},
         [](CCustomData& s) { s.SetDouble(102, std::numeric_limits<double>::quiet_NaN()); }},
        {{.control = 103, .kind = FieldKind::Text, .maximum = 3},
         [](CCustomData& s) { s.SetString(103, CString(L'x', 1 << 18)); }},
        {{.control = 103, .kind = FieldKind::Text},
         [](CCustomData& s) { s.SetString(103, CString(L"a\nb\0c\xD800", 6)); }},
        {{.control = 103, .kind = FieldKind::Text}, [](CCustomData& s) { s.SetBinary(103, "\1\2\3", 3); }},
        {{.control = 104, .kind = FieldKind::Bool}, [](CCustomData& s) { s.SetBool(104, 2); }},
        {{.control = 105, .kind = FieldKind::ComboIndex}, [](CCustomData& s) { s.SetInt(105, 99); }},
        {{.control = 105, .kind = FieldKind::Text}, [](CCustomData& s) { s.SetString(105, L"dix"); }},
        {{.control = 107, .kind = FieldKind::ListIndex}, [](CCustomData& s) { s.SetInt(107, -9); }},
        {{.control = 108, .kind = FieldKind::RadioIndex}, [](CCustomData& s) { s.SetInt(108, 3); }},
        {{.control = 111, .kind = FieldKind::Slider, .minimum = 0, .maximum = 9},
         [](CCustomData& s) { s.SetInt(111, 10); }},
        {{.control = 113, .kind = FieldKind::Spin, .minimum = 0, .maximum = 9},
         [](CCustomData& s) { s.SetDouble(113, 10); }},
        {{.control = 114, .kind = FieldKind::Color}, [](CCustomData& s) { s.SetUInt(114, 0x80112233); }},
        {{.control = 999, .kind = FieldKind::Int}, [](CCustomData& s) { s.SetInt(999, 1); }},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.field.control);
        const auto id = static_cast<unsigned int>(row.field.control);
        ProbeDialog dialog;
        row.put(dialog.store);
        dialog.part.AddField(row.field);
        dialog.part.ReinitDialog(dialog.store);
        CCustomData unopened;
        dialog.part.SaveData(unopened);
        EXPECT_TRUE(AreSame(unopened, dialog.store, id));
        Show(dialog, [&] {
            CCustomData saved;
            saved.SetInt(id, 4711);
            EXPECT_FALSE(dialog.part.IsModified());
            EXPECT_TRUE(dialog.part.ValidateData(1, saved));
            EXPECT_TRUE(AreSame(saved, dialog.store, id));
        });
    }
}

TEST_F(DefaultDlg, TellsAllFailingFieldsAndSelectsTheFirst)
{
    ProbeDialog dialog;
    dialog.store.SetInt(101, 90);
    dialog.part.AddFields({
        {.control = 103, .kind = FieldKind::Text, .minimum = 1, .text = L"nom"},
        {.control = 101, .minimum = 0, .maximum = 100},
        {.control = 102, .kind = FieldKind::Double},
        {.control = 113, .kind = FieldKind::Spin, .minimum = 0, .maximum = 9, .label = L"Nombre"},
    });
    Show(dialog, [&] {
        dialog.SetDlgItemText(103, L"autre");
        dialog.SetDlgItemText(101, L"123");
        dialog.SetDlgItemText(102, L"beaucoup");
        dialog.SetDlgItemText(112, L"12");
        EXPECT_FALSE(dialog.part.ValidateData(1, dialog.store));
        EXPECT_EQ(GetFocus(), dialog.GetDlgItem(101));
        EXPECT_EQ(dialog.SendDlgItemMessage(101, EM_GETSEL), MAKELPARAM(0, 3));
        EXPECT_EQ(TextOf(dialog, 101), L"123");
        EXPECT_EQ(dialog.store.HasData(103), 0) << "a page is saved whole or not at all";
        CCustomData some;
        dialog.part.SaveData(some);
        CCustomData expected;
        expected.SetString(103, L"autre");
        expected.SetInt(101, 90);
        EXPECT_TRUE(AreSame(some, expected, 103) && AreSame(some, expected, 101)) << "what is valid";

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
    });
    ASSERT_EQ(m_recorder.Boxes().size(), 2u);
    EXPECT_EQ(m_recorder.Boxes()[0].text, L"Certaines valeurs ne sont pas valides :\n"
                                          L"Qualité : la valeur doit être comprise entre 0 et 100.\n"
                                          L"Échelle : un nombre est attendu.\n"
                                          L"Nombre : la valeur doit être comprise entre 0 et 9.");
    int number = 0;
    EXPECT_TRUE(dialog.store.GetInt(113, number, 0) && number == 8);
}

TEST_F(DefaultDlg, KeepsChangesForItsStoreAndFollowsIt)
{
    ProbeDialog dialog;
    dialog.part.AddFields({
        {.control = 101, .property = 'QUAL', .number = 75},
        {.control = 111,
         .property = 'QUAL',
         .kind = FieldKind::Slider,
         .minimum = 0,
         .maximum = 100,
         .number = 75},
        {.control = 102, .kind = FieldKind::Double, .decimals = 1, .number = 0.25},
    });
    CCustomData found;
    found.SetInt('QUAL', 1);
    dialog.part.SaveData(found);
    int number = 0;
    EXPECT_TRUE(found.GetInt('QUAL', number, 0) && number == 1) << "what was never filled knows no better";
    double share = 0;
    EXPECT_TRUE(found.GetDouble(102, share, 0) && share == 0.25) << "the default in full";
    Show(dialog, [&] {
        dialog.SetDlgItemText(101, L"40");
        CCustomData copy;
        EXPECT_TRUE(dialog.part.ValidateData(1, copy));
        EXPECT_TRUE(copy.GetInt('QUAL', number, 0) && number == 40);
        EXPECT_TRUE(dialog.part.IsModified()) << "the bound store has not got it";
        EXPECT_TRUE(dialog.part.ValidateData(1, dialog.store));
        EXPECT_FALSE(dialog.part.IsModified());
        EXPECT_TRUE(dialog.store.GetInt('QUAL', number, 0) && number == 40);
        EXPECT_EQ(dialog.SendDlgItemMessage(111, WM_USER), 40) << "the field that shares the value follows";

        dialog.store.SetInt('QUAL', 20);
        dialog.store.SetDouble(102, 3);
        dialog.SetDlgItemText(102, L"9");
        EXPECT_EQ(dialog.part.VerifyData(101, 101), 1);
        EXPECT_EQ(TextOf(dialog, 101), L"20");
        EXPECT_EQ(dialog.part.VerifyData(0, 0), 1);
        EXPECT_EQ(TextOf(dialog, 102), L"9") << "what the user entered stays";

        CCustomData defaults;
        defaults.SetInt('QUAL', 60);
        dialog.changes.clear();
        dialog.part.ReinitDialog(defaults);
        EXPECT_EQ(dialog.part.VerifyData(0, 0), 0);
        EXPECT_EQ(TextOf(dialog, 101), L"60");
        EXPECT_EQ(TextOf(dialog, 102), L"0,2");
        EXPECT_TRUE(dialog.changes.empty());
    });
    dialog.part.SaveData(dialog.store);
    EXPECT_TRUE(dialog.store.GetInt('QUAL', number, 0) && number == 60)
        << "the window is gone, its values are not";
}

TEST_F(DefaultDlg, LaysAnchoredControlsOutAboveTheMinimum)
{
    ProbeDialog dialog;
    dialog.part.AddAnchor(101, vak::AnchorLeft | vak::AnchorTop | vak::AnchorRight);
    dialog.part.AddAnchor(IDOK, vak::AnchorRight | vak::AnchorBottom);
    dialog.part.AddAnchor(999, vak::AnchorAll);
    Show(dialog, [&] {
        const CRect edit = DialogDriver::AreaOf(dialog.GetDlgItem(101));
        const CRect button = DialogDriver::AreaOf(dialog.GetDlgItem(IDOK));
        const CRect frame = DialogDriver::AreaOf(dialog.GetSafeHwnd());
        const auto resize = [&](int cx, int cy) { dialog.MoveWindow(CRect(frame.TopLeft(), CSize(cx, cy))); };
        resize(frame.Width() + 30, frame.Height() + 20);
        EXPECT_EQ(CRect(DialogDriver::AreaOf(dialog.GetDlgItem(101))), edit + CRect(0, 0, 30, 0));
        EXPECT_EQ(CRect(DialogDriver::AreaOf(dialog.GetDlgItem(IDOK))), button + CPoint(30, 20));
        resize(10, 10);
        EXPECT_EQ(CRect(DialogDriver::AreaOf(dialog.GetSafeHwnd())), frame);
        EXPECT_EQ(CRect(DialogDriver::AreaOf(dialog.GetDlgItem(IDOK))), button);
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
        EXPECT_TRUE(dialog.part.ValidateData(1, dialog.store));
        UpdateWindow(button);
        const HDC context = GetDC(button);
        EXPECT_EQ(GetPixel(context, 10, 10), 0x3020FFu);
        ReleaseDC(button, context);
        dialog.EndDialog(IDOK);
        return true;
    });
    dialog.DoModal();
    unsigned int color = 0;
    EXPECT_TRUE(dialog.store.GetUInt(114, color, 0) && color == 0x803020FF);
    EXPECT_EQ(dialog.changes, std::vector<int>{114});
}

TEST_F(DefaultDlg, SelectsAllOfAnEditAtControlA)
{
    ProbeDialog dialog;
    dialog.store.SetString(103, L"texte");
    dialog.part.AddField({.control = 103, .kind = FieldKind::Text});
    Show(dialog, [&] {
        BYTE keys[256] = {};
        keys[VK_CONTROL] = 0x80;
        SetKeyboardState(keys);
        MSG message{dialog.GetDlgItem(103), WM_KEYDOWN, 'A', 1, 0, {}};
        EXPECT_TRUE(dialog.PreTranslateMessage(&message));
        EXPECT_EQ(dialog.SendDlgItemMessage(103, EM_GETSEL), MAKELPARAM(0, 5));
        keys[VK_MENU] = 0x80;
        SetKeyboardState(keys);
        EXPECT_FALSE(dialog.PreTranslateMessage(&message)) << "AltGr types a character";
        keys[VK_MENU] = keys[VK_CONTROL] = 0;
        SetKeyboardState(keys);
        message.hwnd = dialog.GetDlgItem(101);
        EXPECT_FALSE(dialog.PreTranslateMessage(&message));
    });
}
