#include "dialogs/DefaultDlg.h"

#include "dialogs/detail/FieldControl.h"
#include "dialogs/detail/FieldText.h"
#include "framework/base/Application.h"
#include "framework/base/StringTable.h"
#include "framework/ui/ColorDialog.h"
#include "resources/Ids.h"

#include <algorithm>
#include <utility>

using vak::detail::FieldFault;
using vak::detail::PropertyOf;

namespace {

/// Comes after the messages that show a page: selecting a field before would put the focus into nothing.
UINT SelectFailedMessage()
{
    static const UINT message = RegisterWindowMessageW(L"VakToolsSelectFailedField");
    return message;
}

void CopyValue(CCustomData& to, const CCustomData& from, unsigned int id)
{
    to.CopyID(&from, id, 0u);
}

/// Sets a flag until the end of the scope.
class SetForNow
{
public:
    explicit SetForNow(bool& flag) : m_flag(flag), m_before(std::exchange(flag, true)) {}
    ~SetForNow() { m_flag = m_before; }
    SetForNow(const SetForNow&) = delete;
    SetForNow& operator=(const SetForNow&) = delete;

private:
    bool& m_flag;
    bool m_before;
};

bool IsControlDown()
{
    // With the Alt key it is AltGr, which types characters.
    return GetKeyState(VK_CONTROL) < 0 && GetKeyState(VK_MENU) >= 0;
}

} // namespace

void CDefaultDlg::AddField(const vak::FieldBinding& field)
{
    m_fields.push_back({field, vak::detail::DefaultText(field), {}, {}, false});
}

void CDefaultDlg::AddFields(std::initializer_list<vak::FieldBinding> fields)
{
    for (const vak::FieldBinding& field : fields)
        AddField(field);
}

void CDefaultDlg::AddAnchor(int control, unsigned int edges)
{
    m_anchors.push_back({control, edges});
}

void CDefaultDlg::SetMinimumSize(CSize client)
{
    m_minimum = client;
}

void CDefaultDlg::SetChangeCallback(ChangeCallback callback, void* user)
{
    m_changeCallback = callback;
    m_changeUser = user;
}

void CDefaultDlg::Bind(CWnd* window, CCustomData* store)
{
    // A page that is added once more keeps what the user has entered.
    if (window == m_window && store == m_store)
        return;
    m_window = window;
    for (Field& field : m_fields)
        field.isShown = false;
    if (store == m_store)
        return;
    m_store = store;
    m_isFilled = false;
    m_showsStore = false;
    m_values.RemoveAll();
    for (Field& field : m_fields)
        field.value = vak::detail::DefaultText(field.binding);
}

int CDefaultDlg::HasWindow() const
{
    return m_window && IsWindow(m_window->GetSafeHwnd());
}

void CDefaultDlg::ReinitDialog(const CCustomData& store)
{
    m_isFilled = true;
    m_showsStore = &store == m_store;
    m_failedControl = 0;
    for (Field& field : m_fields)
        TakeValue(field, store);
    ShowValues();
}

int CDefaultDlg::ValidateData(int save, CCustomData& store)
{
    const CString faults = TellFaults();
    if (!faults.IsEmpty()) {
        AfxMessageBox(faults);
        SelectFailed();
        return 0;
    }
    if (save)
        SaveData(store);
    return 1;
}

void CDefaultDlg::SaveData(CCustomData& store)
{
    m_failedControl = 0;
    // Of two fields that share a value one may be unchanged: what was changed comes last.
    for (const Field& field : m_fields)
        if (!IsSavable(field))
            WriteBack(field, store);
    const bool isOurs = &store == m_store;
    for (Field& field : m_fields) {
        if (!IsSavable(field))
            continue;
        SaveField(field, store);
        if (isOurs)
            KeepSaved(field, store);
    }
    if (!isOurs)
        return;
    m_isFilled = true;
    m_showsStore = true;
    RefreshUnchanged(store, 0, 0);
}

int CDefaultDlg::VerifyData(unsigned int first, unsigned int last)
{
    // The window may still be hidden: the message comes after what shows it.
    if (m_failedControl != 0 && HasWindow())
        PostMessageW(m_window->m_hWnd, SelectFailedMessage(), 0, 0);
    // Other values than those of the bound store are shown because somebody wants it so.
    return m_store && m_showsStore ? RefreshUnchanged(*m_store, first, last) : 0;
}

int CDefaultDlg::IsModified() const
{
    return std::any_of(m_fields.begin(), m_fields.end(),
                       [this](const Field& field) { return IsChanged(field); });
}

HWND CDefaultDlg::ControlOf(const Field& field) const
{
    return HasWindow() ? GetDlgItem(m_window->m_hWnd, field.binding.control) : nullptr;
}

CString CDefaultDlg::ContentOf(const Field& field) const
{
    return vak::detail::ReadControl(field.binding, ControlOf(field));
}

bool CDefaultDlg::IsChanged(const Field& field) const
{
    return field.isShown && ControlOf(field) && ContentOf(field) != field.shown;
}

void CDefaultDlg::TakeValue(Field& field, const CCustomData& store)
{
    const unsigned int id = PropertyOf(field.binding);
    field.value = vak::detail::TextFromStore(field.binding, store);
    if (store.HasData(id))
        CopyValue(m_values, store, id);
    else
        m_values.RemoveCustom(id);
}

void CDefaultDlg::ShowValues()
{
    for (Field& field : m_fields)
        ShowValue(field);
    // When all are: fields may share a control, or one control follow another.
    for (Field& field : m_fields)
        NoteShown(field);
}

void CDefaultDlg::ShowValue(Field& field)
{
    const SetForNow filling(m_isFilling);
    if (const HWND control = ControlOf(field))
        vak::detail::WriteControl(field.binding, control, field.value);
}

void CDefaultDlg::NoteShown(Field& field)
{
    field.isShown = ControlOf(field) != nullptr;
    if (field.isShown)
        field.told = field.shown = ContentOf(field);
}

vak::FieldBinding CDefaultDlg::BindingOf(const Field& field) const
{
    return vak::detail::BindingOf(field.binding, ControlOf(field));
}

bool CDefaultDlg::IsSavable(const Field& field) const
{
    return IsChanged(field) && vak::detail::CheckText(BindingOf(field), ContentOf(field)) == FieldFault::None;
}

void CDefaultDlg::SaveField(const Field& field, CCustomData& store) const
{
    const unsigned int id = PropertyOf(field.binding);
    // What is stored beside the channels of a colour stays.
    if (field.binding.kind == vak::FieldKind::Color && m_values.HasData(id))
        CopyValue(store, m_values, id);
    vak::detail::StoreText(BindingOf(field), ContentOf(field), store);
}

/// The field counts as unchanged from now on; its control keeps what was typed.
void CDefaultDlg::KeepSaved(Field& field, const CCustomData& store)
{
    TakeValue(field, store);
    field.shown = ContentOf(field);
}

/// Puts an unchanged value into a store. In the one that it came from it is already, or something newer is,
/// and a part that was never filled knows no better.
void CDefaultDlg::WriteBack(const Field& field, CCustomData& store) const
{
    const unsigned int id = PropertyOf(field.binding);
    if (store.HasData(id) && (!m_isFilled || (m_showsStore && &store == m_store)))
        return;
    if (m_values.HasData(id))
        CopyValue(store, m_values, id);
    else
        vak::detail::StoreDefault(field.binding, store);
}

int CDefaultDlg::RefreshUnchanged(const CCustomData& store, unsigned int first, unsigned int last)
{
    std::vector<Field*> unchanged;
    for (Field& field : m_fields)
        if (!IsChanged(field))
            unchanged.push_back(&field);
    int count = 0;
    for (Field* const field : unchanged) {
        const auto control = static_cast<unsigned int>(field->binding.control);
        if ((first != 0 || last != 0) && (control < first || control > last))
            continue;
        const CString before = field->value;
        TakeValue(*field, store);
        if (field->value == before)
            continue;
        ShowValue(*field);
        ++count;
    }
    if (count > 0)
        std::for_each(unchanged.begin(), unchanged.end(), [this](Field* field) { NoteShown(*field); });
    return count;
}

/// Returns the message for all fields that failed, and notes the first of them; empty when there is none.
CString CDefaultDlg::TellFaults()
{
    CString message;
    m_failedControl = 0;
    for (const Field& field : m_fields) {
        const CString fault = TellFault(field);
        if (fault.IsEmpty())
            continue;
        if (message.IsEmpty()) {
            m_failedControl = field.binding.control;
            vak::LoadText(message, IDS_FIELDS_WRONG);
        }
        message += L"\n" + fault;
    }
    return message;
}

CString CDefaultDlg::TellFault(const Field& field) const
{
    if (!IsChanged(field))
        return {};
    const vak::FieldBinding binding = BindingOf(field);
    const CString fault = vak::detail::FaultText(binding, vak::detail::CheckText(binding, ContentOf(field)));
    const CString label =
        binding.label.IsEmpty() ? vak::detail::LabelOf(binding, ControlOf(field)) : binding.label;
    if (fault.IsEmpty() || label.IsEmpty())
        return fault;
    CString line;
    AfxFormatString2(line, IDS_FIELD_LINE, label, fault);
    return line;
}

void CDefaultDlg::SelectFailed()
{
    const auto failed = std::find_if(m_fields.begin(), m_fields.end(), [this](const Field& field) {
        return field.binding.control == m_failedControl;
    });
    if (failed == m_fields.end() || !ControlOf(*failed) || !IsWindowVisible(m_window->m_hWnd))
        return;
    m_failedControl = 0;
    vak::detail::SelectControl(failed->binding, ControlOf(*failed));
}

CDefaultDlg::Field* CDefaultDlg::FieldShownBy(HWND control)
{
    const auto found = std::find_if(m_fields.begin(), m_fields.end(), [this, control](const Field& field) {
        return vak::detail::BelongsToField(field.binding, ControlOf(field), control);
    });
    return found == m_fields.end() ? nullptr : &*found;
}

void CDefaultDlg::OnControlChange(HWND control, UINT code)
{
    Field* const field = FieldShownBy(control);
    if (field && vak::detail::IsChangeCode(field->binding.kind, code))
        TellChange(*field);
}

void CDefaultDlg::OnScroll(HWND control)
{
    if (Field* const field = FieldShownBy(control))
        TellChange(*field);
}

void CDefaultDlg::TellChange(Field& field)
{
    if (m_isFilling || !field.isShown)
        return;
    const CString content = ContentOf(field);
    // A combo box tells a selection before its text has followed.
    const bool isText = field.binding.kind == vak::FieldKind::Text;
    if (!isText && content == field.told)
        return;
    field.told = content;
    if (m_changeCallback)
        m_changeCallback(field.binding.control, m_changeUser);
}

BOOL CDefaultDlg::PreTranslateMessage(MSG* message)
{
    if (message->message != WM_KEYDOWN || message->wParam != 'A' || !IsControlDown())
        return FALSE;
    const Field* const field = FieldShownBy(message->hwnd);
    if (!field || !(SendMessageW(message->hwnd, WM_GETDLGCODE, 0, 0) & DLGC_HASSETSEL))
        return FALSE;
    SendMessageW(message->hwnd, EM_SETSEL, 0, -1);
    return TRUE;
}

BOOL CDefaultDlg::OnWndMsg(UINT message, WPARAM wParam, LPARAM lParam, LRESULT* result)
{
    switch (message) {
    case WM_COMMAND:
        OnControlChange(reinterpret_cast<HWND>(lParam), HIWORD(wParam));
        return FALSE;
    case WM_HSCROLL:
    case WM_VSCROLL:
        OnScroll(reinterpret_cast<HWND>(lParam));
        return FALSE;
    case WM_DRAWITEM:
        return OnDrawItem(*reinterpret_cast<const DRAWITEMSTRUCT*>(lParam), result);
    case WM_GETMINMAXINFO:
        m_layout.Limit(reinterpret_cast<MINMAXINFO*>(lParam));
        return FALSE;
    default:
        if (message == SelectFailedMessage())
            SelectFailed();
        return FALSE;
    }
}

BOOL CDefaultDlg::OnDrawItem(const DRAWITEMSTRUCT& item, LRESULT* result)
{
    const Field* const field = FieldShownBy(item.hwndItem);
    if (!field || !vak::detail::IsColorButton(field->binding, item.hwndItem))
        return FALSE;
    vak::detail::DrawColorButton(item);
    *result = TRUE;
    return TRUE;
}

BOOL CDefaultDlg::OnCmdMsg(UINT id, int code, void*, AFX_CMDHANDLERINFO*)
{
    const HWND control = HasWindow() ? GetDlgItem(m_window->m_hWnd, static_cast<int>(id)) : nullptr;
    Field* const field = FieldShownBy(control);
    if (code != BN_CLICKED || !field || !vak::detail::IsColorButton(field->binding, control))
        return FALSE;
    ChooseColor(*field);
    return TRUE;
}

void CDefaultDlg::ChooseColor(Field& field)
{
    const HWND control = ControlOf(field);
    DWORD color = 0;
    vak::detail::ParseColor(ContentOf(field), color);
    CColorDialog dialog(color, 0, m_window);
    if (dialog.DoModal() != IDOK || !IsWindow(control))
        return;
    vak::detail::WriteControl(field.binding, control, vak::detail::FormatColor(dialog.GetColor()));
    InvalidateRect(control, nullptr, TRUE);
    TellChange(field);
}

void CDefaultDlg::OnSize(UINT type, int cx, int cy)
{
    m_layout.Arrange(type, cx, cy);
}

BOOL CDefaultDlg::OnInitDialog()
{
    if (!HasWindow())
        return TRUE;
    m_layout.Start(m_window->m_hWnd);
    if (m_minimum != CSize(0, 0))
        m_layout.SetMinimum(m_minimum);
    for (const AnchoredControl& anchored : m_anchors)
        m_layout.Anchor(anchored.control, anchored.edges);
    for (const Field& field : m_fields)
        vak::detail::PrepareControl(field.binding, ControlOf(field));
    if (m_store && !m_isFilled)
        ReinitDialog(*m_store);
    ShowValues();
    return TRUE;
}
