#include "examples/vakconvert/TemplateWindow.h"

#include "examples/vakconvert/Expansion.h"
#include "files/FilePath.h"
#include "framework/base/Application.h"

#include <algorithm>
#include <numeric>

namespace {

constexpr UINT kTemplateId = 1;
constexpr UINT kPreviewId = 2;
constexpr UINT_PTR kPreviewTimer = 1;
/// How long the typing pauses before the preview follows, in milliseconds.
constexpr UINT kPause = 250;

/// Pixels.
constexpr int kGap = 10;
constexpr int kLine = 20;
constexpr int kTextMargin = 8;
constexpr COLORREF kPreviewColor = RGB(0xF6, 0xF6, 0xF2);

constexpr const wchar_t* kHint =
    L"Right button or menu key: insert a tag      Ctrl+S: save      F6: other text";

/// The font of the system's message boxes.
HFONT MakeFont()
{
    NONCLIENTMETRICSW metrics{};
    metrics.cbSize = sizeof metrics;
    SystemParametersInfoW(SPI_GETNONCLIENTMETRICS, metrics.cbSize, &metrics, 0);
    return CreateFontIndirectW(&metrics.lfMessageFont);
}

bool IsPressed(int key)
{
    return GetKeyState(key) < 0;
}

void MovePane(CRichEditCtrl& pane, const CRect& area)
{
    pane.MoveWindow(area);
    CRect text = pane.GetClientRect();
    InflateRect(&text, -kTextMargin, -kTextMargin);
    pane.SendMessage(EM_SETRECT, 0, reinterpret_cast<LPARAM>(&text));
    pane.Invalidate(); // the control leaves what it drew where the margin is now
}

/// Keeps the place in a text that changes below the user's eyes.
class KeepScrollPosition
{
public:
    explicit KeepScrollPosition(CRichEditCtrl& control) : m_control(control)
    {
        m_control.SendMessage(EM_GETSCROLLPOS, 0, reinterpret_cast<LPARAM>(&m_position));
        m_control.SetRedraw(FALSE);
    }
    ~KeepScrollPosition()
    {
        m_control.SetSel(0, 0);
        m_control.SendMessage(EM_SETSCROLLPOS, 0, reinterpret_cast<LPARAM>(&m_position));
        m_control.SetRedraw();
        m_control.Invalidate();
    }
    KeepScrollPosition(const KeepScrollPosition&) = delete;
    KeepScrollPosition& operator=(const KeepScrollPosition&) = delete;

private:
    CRichEditCtrl& m_control;
    POINT m_position{};
};

} // namespace

TemplateWindow::TemplateWindow(const TemplateFile& file)
    : m_file(file), m_tags(ConditionalTags()), m_font(MakeFont())
{
    RegisterReportTags(m_tags, m_sample.Facts());
}

TemplateWindow::~TemplateWindow()
{
    // The controls use the font.
    DestroyWindow();
    DeleteObject(m_font);
}

bool TemplateWindow::Open()
{
    const LPCTSTR windowClass =
        AfxRegisterWndClass(0, LoadCursorW(nullptr, IDC_ARROW), GetSysColorBrush(COLOR_3DFACE), nullptr);
    if (!CreateEx(0, windowClass, L"", WS_OVERLAPPEDWINDOW | WS_CLIPCHILDREN, CRect(60, 60, 960, 600),
                  nullptr, 0))
        return false;
    ShowTitle();
    ShowPreview();
    ShowWindow(SW_SHOW);
    SetForegroundWindow(GetSafeHwnd());
    m_template.SetFocus();
    return true;
}

int TemplateWindow::OnCreate(CREATESTRUCT* create)
{
    return CWnd::OnCreate(create) == 0 && MakeControls() && LoadTemplate() ? 0 : -1;
}

bool TemplateWindow::MakeControls()
{
    const CRect nowhere;
    const struct
    {
        CWnd& label;
        const wchar_t* text;
    } labels[] = {{m_templateLabel, L"Template"}, {m_previewLabel, L"Preview"}, {m_status, L""}};
    for (const auto& [label, text] : labels) {
        if (!label.CreateEx(0, L"STATIC", text, WS_CHILD | WS_VISIBLE | SS_NOPREFIX | SS_ENDELLIPSIS, nowhere,
                            this, 0))
            return false;
        label.SendMessage(WM_SETFONT, reinterpret_cast<WPARAM>(m_font), FALSE);
    }
    if (!MakePane(m_template, kTemplateId, ES_NOHIDESEL) || !MakePane(m_preview, kPreviewId, ES_READONLY))
        return false;
    m_preview.SendMessage(EM_SETBKGNDCOLOR, 0, static_cast<LPARAM>(kPreviewColor));
    return true;
}

bool TemplateWindow::MakePane(CRichEditCtrl& pane, UINT id, DWORD style)
{
    constexpr DWORD kStyle =
        WS_CHILD | WS_VISIBLE | WS_BORDER | WS_TABSTOP | WS_VSCROLL | ES_MULTILINE | ES_AUTOVSCROLL;
    if (!pane.Create(kStyle | style, CRect(), this, id))
        return false;
    pane.LimitText(0x7FFFFFFE);
    pane.SendMessage(WM_SETFONT, reinterpret_cast<WPARAM>(m_font), FALSE);
    // What is pasted into plain text is to look like it.
    if (!m_file.isRich)
        pane.SendMessage(EM_SETTEXTMODE, TM_PLAINTEXT);
    return true;
}

bool TemplateWindow::LoadTemplate()
{
    const bool isLoaded = m_file.isRich ? SetDocument(m_template, m_file.document)
                                        : (m_template.SetWindowText(m_file.text), true);
    m_template.SetModify(FALSE);
    m_template.SetEventMask(ENM_CHANGE);
    return isLoaded;
}

void TemplateWindow::OnSize(UINT type, int cx, int cy)
{
    CWnd::OnSize(type, cx, cy);
    const int half = (cx - 3 * kGap) / 2;
    const int top = kGap + kLine;
    const int bottom = cy - 2 * kGap - kLine;
    const int right = 2 * kGap + half;
    m_templateLabel.MoveWindow(CRect(kGap, kGap, kGap + half, top));
    m_previewLabel.MoveWindow(CRect(right, kGap, right + half, top));
    MovePane(m_template, CRect(kGap, top, kGap + half, bottom));
    MovePane(m_preview, CRect(right, top, right + half, bottom));
    m_status.MoveWindow(CRect(kGap, bottom + kGap, cx - kGap, bottom + kGap + kLine));
}

void TemplateWindow::OnGetMinMaxInfo(MINMAXINFO* info)
{
    info->ptMinTrackSize = {420, 240};
}

void TemplateWindow::OnSetFocus(HWND)
{
    m_template.SetFocus();
}

BOOL TemplateWindow::PreTranslateMessage(MSG* message)
{
    if (message->message != WM_KEYDOWN)
        return CWnd::PreTranslateMessage(message);
    const bool isControl = IsPressed(VK_CONTROL) && !IsPressed(VK_MENU);
    if (message->wParam == 'S' && isControl) {
        Save();
        return TRUE;
    }
    if (message->wParam == VK_F6) {
        (GetFocus() == m_template.GetSafeHwnd() ? m_preview : m_template).SetFocus();
        return TRUE;
    }
    return CWnd::PreTranslateMessage(message);
}

BOOL TemplateWindow::OnCommand(UINT id, UINT code)
{
    if (id != kTemplateId || code != EN_CHANGE)
        return CWnd::OnCommand(id, code);
    ShowTitle();
    SetTimer(kPreviewTimer, kPause);
    return TRUE;
}

void TemplateWindow::OnTimer(UINT_PTR id)
{
    KillTimer(id);
    ShowPreview();
}

void TemplateWindow::ShowTitle()
{
    const CString star = m_template.GetModify() ? L"*" : L"";
    SetWindowText(star + fileStripPath(m_file.path) + L" - vakconvert");
}

void TemplateWindow::ShowPreview()
{
    const KeepScrollPosition keep(m_preview);
    m_preview.SetReadOnly(FALSE);
    if (!m_file.isRich) {
        m_preview.SetWindowText(ExpandText(m_tags, PlainTextOf(m_template)));
    } else if (SetDocument(m_preview, DocumentOf(m_template))) {
        ExpandRichText(m_tags, m_preview);
    }
    m_preview.SetReadOnly();
    ShowStatus();
}

void TemplateWindow::ShowStatus()
{
    const std::vector<TagProblem> problems = FindTagProblems(m_tags, PlainTextOf(m_template));
    CString status = problems.empty() ? CString(kHint) : TextOf(problems.front());
    if (problems.size() > 1)
        status.AppendFormat(L" (and %d more)", static_cast<int>(problems.size()) - 1);
    m_status.SetWindowText(status);
}

void TemplateWindow::OnContextMenu(HWND window, CPoint point)
{
    if (window != m_template.GetSafeHwnd())
        return;
    if (point.x == -1 && point.y == -1) {
        POINT caret{};
        GetCaretPos(&caret);
        ::ClientToScreen(window, &caret);
        point = CPoint(caret.x, caret.y + kLine);
    }
    InsertTag(point);
}

void TemplateWindow::InsertTag(CPoint point)
{
    const CString chosen = m_tags.DoPopupMenu(point, vak::tagmenu::AllTags, nullptr, nullptr);
    if (!chosen.IsEmpty())
        m_template.ReplaceSel(TagsToInsert(chosen), TRUE);
    m_template.SetFocus();
}

CString TemplateWindow::TagsToInsert(const CString& chosen) const
{
    if (chosen != L"<alltags>" && chosen != L"<allwritabletags>")
        return chosen;
    // What can be compared can be read back, lists and markers cannot.
    std::vector<CString> lines;
    CString name;
    CTagInfo tag;
    for (POSITION position = m_tags.GetFirstTag(); position != nullptr;) {
        m_tags.GetNextTag(position, name, tag);
        const bool isMarker = tag.GetTagClass() == kConditionalClass;
        if (!isMarker && (chosen == L"<alltags>" || m_tags.CanCompareTag(name)))
            lines.push_back(tag.GetTagFriendlyName() + L": " + name + L"\r");
    }
    std::sort(lines.begin(), lines.end());
    return std::accumulate(lines.begin(), lines.end(), CString());
}

CString TemplateWindow::TextToSave() const
{
    CString text = PlainTextOf(m_template);
    text.Replace(L"\n", m_file.lineBreak);
    return text;
}

bool TemplateWindow::Save()
{
    const std::string bytes =
        m_file.isRich ? DocumentOf(m_template) : EncodeText(TextToSave(), m_file.encoding);
    const bool isMade = !m_file.isRich || !bytes.empty();
    const CString problem =
        isMade ? WriteWholeFile(m_file.path, bytes) : CString(L"There is not enough memory.");
    if (!problem.IsEmpty()) {
        AfxMessageBox(problem, MB_OK | MB_ICONERROR);
        return false;
    }
    m_template.SetModify(FALSE);
    ShowTitle();
    return true;
}

bool TemplateWindow::MayClose()
{
    if (!m_template.GetModify())
        return true;
    const CString question = L"Save the changes to " + fileStripPath(m_file.path) + L"?";
    const int answer = AfxMessageBox(question, MB_YESNOCANCEL | MB_ICONQUESTION);
    return answer == IDNO || (answer == IDYES && Save());
}

void TemplateWindow::OnClose()
{
    if (MayClose())
        DestroyWindow();
}

BOOL TemplateWindow::OnWndMsg(UINT message, WPARAM wParam, LPARAM lParam, LRESULT* result)
{
    if (message != WM_QUERYENDSESSION)
        return CWnd::OnWndMsg(message, wParam, lParam, result);
    *result = MayClose();
    return TRUE;
}
