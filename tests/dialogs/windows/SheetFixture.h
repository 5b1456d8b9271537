#pragma once

#include "dialogs/CustomPropertyPage.h"
#include "dialogs/CustomPropertySheet.h"
#include "framework/base/Exception.h"
#include "tests/support/DialogDriver.h"
#include "tests/support/MessageRecorder.h"
#include "tests/support/Print.h"

#include <gtest/gtest.h>

#include <vector>

namespace vak::test {

constexpr UINT kQualityPage = 4000;
constexpr UINT kSizePage = 4001;
constexpr int kNumber = 101;
constexpr int kDetails = 103;
constexpr int kSeveralLines = 104;
constexpr int kApply = 0x3021;
constexpr int kFirstCustom = 53280;

/// Shows the number `property`, of which 1 to 100 is valid, and appends to a log what happens to it.
class NumberPage : public CCustomPropertyPage
{
public:
    explicit NumberPage(unsigned int property, CString* log = nullptr, UINT templateId = kSizePage)
        : CCustomPropertyPage(templateId), m_log(log)
    {
        vak::FieldBinding number;
        number.control = kNumber;
        number.property = property;
        number.minimum = 1;
        number.maximum = 100;
        GetDialogPart().AddField(number);
    }
    void Type(const wchar_t* text) { SetDlgItemText(kNumber, text); }
    CString Shown() const { return DialogDriver::TextOf(GetSafeHwnd(), kNumber); }

    BOOL OnApply() override
    {
        if (m_log)
            *m_log += L"page applies;";
        return CCustomPropertyPage::OnApply();
    }
    BOOL OnCmdMsg(UINT id, int code, void* extra, AFX_CMDHANDLERINFO* info) override
    {
        if (id == kDetails && code == CN_COMMAND && m_details)
            m_details();
        return CCustomPropertyPage::OnCmdMsg(id, code, extra, info);
    }

    std::function<void()> m_details;

private:
    CString* m_log;
};

class ProbeSheet : public CCustomPropertySheet
{
public:
    explicit ProbeSheet(CWnd* parent = nullptr) : CCustomPropertySheet(L"Options", parent) {}

    void InitPagesFromData(CCustomData& data) override
    {
        m_log += &data == &GetData() && !GetPage(0)->GetSafeHwnd() ? L"init;" : L"init again;";
        if (m_initThrows)
            AfxThrowNotSupportedException();
        CCustomPropertySheet::InitPagesFromData(data);
    }
    int SaveDataFromPages(CCustomData& data) override
    {
        m_log += L"save;";
        return CCustomPropertySheet::SaveDataFromPages(data);
    }
    int OnApplyOrOK(int isOK) override
    {
        m_log += isOK ? L"ok;" : L"apply;";
        return m_accepts && CCustomPropertySheet::OnApplyOrOK(isOK);
    }
    int OnPushCustomButton(int index) override
    {
        m_log.AppendFormat(L"button %d;", index);
        return CCustomPropertySheet::OnPushCustomButton(index);
    }
    void CreateCustomButtons() override
    {
        if (m_applyArea.Width())
            ::MoveWindow(GetDlgItem(kApply), m_applyArea.left, m_applyArea.top, m_applyArea.Width(),
                         m_applyArea.Height(), FALSE);
        CCustomPropertySheet::CreateCustomButtons();
    }
    int Stored(unsigned int property)
    {
        int value = 0;
        GetData().GetInt(property, value, -1);
        return value;
    }
    CRect AreaOf(int id) const
    {
        CRect area(DialogDriver::AreaOf(GetDlgItem(id)));
        ::MapWindowPoints(nullptr, GetSafeHwnd(), reinterpret_cast<POINT*>(&area), 2);
        return area;
    }
    bool CanApply() const { return IsWindowEnabled(GetDlgItem(kApply)); }
    void Press(int id) { DialogDriver::Press(GetSafeHwnd(), id); }

    CString m_log;
    CRect m_applyArea;
    bool m_accepts = true;
    bool m_initThrows = false;
};

/// A sheet with two pages, and a user who takes one step a tick.
class SheetTest : public testing::Test
{
protected:
    using Step = std::function<void()>;
    using Steps = std::vector<Step>;

    SheetTest()
    {
        m_sheet.AddPage(&m_quality);
        m_sheet.AddPage(&m_size);
        m_sheet.GetData().SetInt('QUAL', 50);
        m_sheet.GetData().SetInt('SIZE', 5);
    }

    /// Takes the steps while `show` runs and returns its result; the last one has it return.
    template <class Show>
    static auto Take(const Steps& steps, Show show)
    {
        std::size_t taken = 0;
        DialogDriver driver([&](HWND window) {
            SetForegroundWindow(window);
            steps[taken]();
            return ++taken == steps.size();
        });
        const auto result = show();
        EXPECT_EQ(taken, steps.size());
        return result;
    }
    INT_PTR Run(const Steps& steps)
    {
        return Take(steps, [this] { return m_sheet.DoModal(); });
    }
    /// Presses a key, with another one held.
    static Step Key(WORD key, WORD held = 0, WORD alsoHeld = 0)
    {
        return [=] {
            for (const auto& [code, flags] : {std::pair<WORD, DWORD>{held, 0},
                                              {alsoHeld, 0},
                                              {key, 0},
                                              {key, KEYEVENTF_KEYUP},
                                              {alsoHeld, KEYEVENTF_KEYUP},
                                              {held, KEYEVENTF_KEYUP}}) {
                INPUT input{};
                input.type = INPUT_KEYBOARD;
                input.ki.wVk = code;
                input.ki.dwFlags = flags;
                if (code)
                    SendInput(1, &input, sizeof input);
            }
        };
    }

    MessageRecorder m_boxes;
    ProbeSheet m_sheet;
    NumberPage m_quality{'QUAL', &m_sheet.m_log, kQualityPage};
    NumberPage m_size{'SIZE', &m_sheet.m_log};
};

} // namespace vak::test
