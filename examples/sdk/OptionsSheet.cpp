#include "examples/sdk/OptionsSheet.h"

#include "examples/sdk/OptionsIds.h"
#include "files/FileIo.h"
#include "framework/base/Application.h"
#include "framework/ui/FileDialog.h"

#include <commctrl.h>

#include <algorithm>

namespace {

/// A grid in dialog units.
constexpr int kRows = 6;
constexpr int kRowHeight = 18;
constexpr int kMargin = 7;
constexpr int kFieldWidth = 60;

/// While it lives, templates are looked for in this module first: in a plug-in the program's come otherwise.
class OwnResources
{
public:
    OwnResources() : m_before(AfxGetResourceHandle())
    {
        static const int s_here = 0;
        HMODULE module = nullptr;
        GetModuleHandleExW(GET_MODULE_HANDLE_EX_FLAG_FROM_ADDRESS |
                               GET_MODULE_HANDLE_EX_FLAG_UNCHANGED_REFCOUNT,
                           reinterpret_cast<LPCWSTR>(&s_here), &module);
        AfxSetResourceHandle(module);
    }
    ~OwnResources() { AfxSetResourceHandle(m_before); }
    OwnResources(const OwnResources&) = delete;
    OwnResources& operator=(const OwnResources&) = delete;

private:
    const HINSTANCE m_before;
};

/// While it lives, the library keeps preferences in another file.
class OtherPreferences
{
public:
    OtherPreferences(const CFileIo& io, const CString& path) : m_before(io.GetPreferencesFilePath())
    {
        CFileIo::SetPreferencesFilePath(path);
    }
    ~OtherPreferences() { CFileIo::SetPreferencesFilePath(m_before); }
    OtherPreferences(const OtherPreferences&) = delete;
    OtherPreferences& operator=(const OtherPreferences&) = delete;

private:
    const CString m_before;
};

CString LabelOf(const FormatOption& option)
{
    return option.label != nullptr ? option.label : option.name;
}

vak::FieldBinding FieldOf(const FormatOption& option, int control)
{
    vak::FieldBinding field;
    field.control = control;
    field.property = option.id;
    field.minimum = option.minimum;
    field.maximum = option.maximum;
    field.number = option.defaultValue;
    field.label = LabelOf(option);
    field.label.Remove(L'&');
    if (option.kind == FormatOption::Kind::Boolean)
        field.kind = vak::FieldKind::Bool;
    else if (option.kind == FormatOption::Kind::Float)
        field.kind = vak::FieldKind::Float;
    return field;
}

} // namespace

FormatPage::FormatPage(const FormatOptions& options)
    : CCustomPropertyPage(IDD_FORMAT_OPTIONS), m_options(options)
{
    int control = IDC_FIRST_OPTION;
    for (const FormatOption& option : m_options)
        GetDialogPart().AddField(FieldOf(option, control++));
}

BOOL FormatPage::OnInitDialog()
{
    MakeControls();
    return CCustomPropertyPage::OnInitDialog();
}

void FormatPage::OnDestroy()
{
    if (m_tips != nullptr)
        ::DestroyWindow(m_tips);
    m_tips = nullptr;
    CCustomPropertyPage::OnDestroy();
}

void FormatPage::MakeControls()
{
    m_tips = CreateWindowExW(WS_EX_TOPMOST, TOOLTIPS_CLASSW, nullptr, WS_POPUP | TTS_ALWAYSTIP | TTS_NOPREFIX,
                             0, 0, 0, 0, m_hWnd, nullptr, nullptr, nullptr);
    if (m_options.empty())
        ::ShowWindow(GetDlgItem(IDC_NO_OPTIONS), SW_SHOWNA);
    RECT page{0, 0, 4, 4};
    MapDialogRect(m_hWnd, &page);
    const int unitsWide = MulDiv(GetClientRect().Width(), 4, page.right);
    const int count = static_cast<int>(m_options.size());
    const int columns = (count + kRows - 1) / kRows;
    for (int i = 0; i < count; ++i) {
        const int width = (unitsWide - kMargin) / columns;
        const int left = kMargin + i / kRows * width;
        const int top = kMargin + i % kRows * kRowHeight;
        MakeOption(m_options[static_cast<std::size_t>(i)], IDC_FIRST_OPTION + i,
                   {left, top, left + width - kMargin, top + 12});
    }
}

void FormatPage::MakeOption(const FormatOption& option, int id, const RECT& row)
{
    if (option.kind == FormatOption::Kind::Boolean) {
        AddTip(MakeControl(L"BUTTON", LabelOf(option), BS_AUTOCHECKBOX | WS_TABSTOP, id, row), option);
        return;
    }
    const LONG edge = std::max(row.right - kFieldWidth, (row.left + row.right) / 2);
    // The label goes in front, so that its key leads to the field.
    MakeControl(L"STATIC", LabelOf(option) + L" :", SS_LEFT, -1, {row.left, row.top + 2, edge, row.bottom});
    AddTip(MakeControl(L"EDIT", L"", ES_AUTOHSCROLL | WS_TABSTOP, id, {edge, row.top, row.right, row.bottom}),
           option);
}

HWND FormatPage::MakeControl(const wchar_t* windowClass, const CString& text, DWORD style, int id,
                             const RECT& units)
{
    RECT area = units;
    MapDialogRect(m_hWnd, &area);
    const DWORD edge = CString(windowClass) == L"EDIT" ? WS_EX_CLIENTEDGE : 0;
    const HWND control = CreateWindowExW(edge, windowClass, text, WS_CHILD | WS_VISIBLE | style, area.left,
                                         area.top, area.right - area.left, area.bottom - area.top, m_hWnd,
                                         reinterpret_cast<HMENU>(static_cast<INT_PTR>(id)), nullptr, nullptr);
    ::SendMessageW(control, WM_SETFONT, static_cast<WPARAM>(SendMessage(WM_GETFONT)), FALSE);
    return control;
}

void FormatPage::AddTip(HWND control, const FormatOption& option)
{
    CString text = option.tip != nullptr ? option.tip : option.description;
    if (option.kind != FormatOption::Kind::Boolean)
        text.AppendFormat(L" (%g - %g)", option.minimum, option.maximum);
    TOOLINFOW tool{};
    tool.cbSize = TTTOOLINFOW_V2_SIZE; // the oldest common controls take no more
    tool.uFlags = TTF_IDISHWND | TTF_SUBCLASS;
    tool.hwnd = m_hWnd;
    tool.uId = reinterpret_cast<UINT_PTR>(control);
    tool.lpszText = text.GetBuffer(0);
    ::SendMessageW(m_tips, TTM_ADDTOOLW, 0, reinterpret_cast<LPARAM>(&tool));
}

OptionsSheet::OptionsSheet(unsigned int fileClass, const CString& extension, const FormatOptions& options,
                           CWnd* parent)
    : CCustomPropertySheet(L"Options d'enregistrement (" + extension + L")", parent), m_fileClass(fileClass),
      m_options(options)
{
    const OwnResources here;
    m_page = std::make_unique<FormatPage>(m_options);
    AddPage(m_page.get());
    AddButton(L"&Valeurs par défaut", 120);
    AddButton(L"&Enregistrer comme…", 130);
}

int OptionsSheet::OnPushCustomButton(int index)
{
    if (index == kDefaults) {
        m_defaults.RemoveAll();
        SetDefaults(m_defaults);
        InitPagesFromData(m_defaults);
    }
    if (index == kSaveAs)
        SaveAs();
    return 0;
}

void OptionsSheet::SetDefaults(CCustomData& data) const
{
    for (const FormatOption& option : m_options)
        SetFormatOption(data, option, option.defaultValue);
}

CString OptionsSheet::SaveTo(const CString& path, const CCustomData& data) const
{
    const CFileIo io(m_fileClass, FILE_PARSER_SILENT, nullptr);
    const OtherPreferences there(io, path);
    return io.SaveIoParameters(0, data, m_fileClass) != 0 ? CString()
                                                          : L"Impossible d'écrire le fichier " + path;
}

void OptionsSheet::SaveAs()
{
    constexpr DWORD kKeepFolder = 0x8; // OFN_NOCHANGEDIR
    CCustomData data(GetData());
    if (SaveDataFromPages(data) == 0)
        return;
    CFileDialog dialog(FALSE, L"dat", L"options.dat", CFileDialog::kDefaultFlags | kKeepFolder,
                       L"Préférences (*.dat)|*.dat||", this);
    if (dialog.DoModal() != IDOK)
        return;
    const CString problem = SaveTo(dialog.GetPathName(), data);
    if (!problem.IsEmpty())
        AfxMessageBox(problem);
}

bool AskForOptions(CFileIo& io, const FormatOptions& options)
{
    const CFileParser* const parser = io.GetCurrentParser();
    if (parser == nullptr || parser->IsSilentMode() || options.empty())
        return true;
    if (parser->MustShowDialog() == IoShowDialogNone &&
        CFileIo::HasDialog(io.GetClass(), 0) == IoShowDialogNone)
        return true;
    OptionsSheet sheet(io.GetClass(), io.GetExtension(), options, parser->GetParentWnd());
    // There is nothing that could apply them before the file is written.
    sheet.RemoveApplyButton();
    sheet.GetData() = io.GetCustomData();
    const INT_PTR answer = sheet.DoModal();
    if (answer == IDOK)
        io.GetCustomData() = sheet.GetData();
    return answer != IDCANCEL;
}
