#include "framework/base/SystemMessage.h"

extern "C" IMAGE_DOS_HEADER __ImageBase;

namespace vak::system {

namespace {

/// Entry `id` of a block of sixteen counted strings. Modules can be anything, so the block's size is believed
/// and its counts are not.
bool ReadEntry(CString& out, HMODULE module, HRSRC block, UINT id)
{
    const DWORD units = SizeofResource(module, block) / sizeof(wchar_t);
    const auto* text = static_cast<const wchar_t*>(LockResource(LoadResource(module, block)));
    if (text == nullptr)
        return false;
    DWORD at = 0;
    for (UINT skipped = 0; skipped < (id & 15) && at < units; ++skipped)
        at += 1u + WORD(text[at]);
    if (at >= units || text[at] == 0 || WORD(text[at]) > units - at - 1)
        return false;
    out.SetString(text + at + 1, WORD(text[at]));
    return true;
}

LPCWSTR BlockName(UINT id)
{
    return MAKEINTRESOURCEW((id >> 4) + 1);
}

struct Search
{
    CString* out;
    UINT id;
    bool found;
};

BOOL CALLBACK ReadInLanguage(HMODULE module, LPCWSTR, LPCWSTR, WORD language, LONG_PTR parameter)
{
    auto* search = reinterpret_cast<Search*>(parameter);
    search->found = LoadModuleText(*search->out, module, search->id, language);
    return !search->found;
}

bool IsText(UINT id)
{
    return id <= 0xFFFF;
}

} // namespace

int ShowMessage(LPCTSTR text, LPCTSTR caption, UINT type)
{
    HWND owner = GetActiveWindow();
    if (owner != nullptr)
        owner = GetLastActivePopup(owner);
    else
        type |= MB_TASKMODAL;
    return MessageBoxW(owner, text, caption, type);
}

void ShowWaitCursor(bool show)
{
    SetCursor(LoadCursorW(nullptr, show ? IDC_WAIT : IDC_ARROW));
}

CString ErrorText(DWORD errorCode)
{
    wchar_t* message = nullptr;
    const DWORD length = FormatMessageW(
        FORMAT_MESSAGE_ALLOCATE_BUFFER | FORMAT_MESSAGE_FROM_SYSTEM | FORMAT_MESSAGE_IGNORE_INSERTS, nullptr,
        errorCode, 0, reinterpret_cast<LPWSTR>(&message), 0, nullptr);
    CString text(message, int(length));
    LocalFree(message);
    text.TrimRight();
    if (text.IsEmpty())
        text.Format(L"Error %lu.", errorCode);
    return text;
}

bool LoadModuleText(CString& out, HMODULE module, UINT id, LANGID language)
{
    if (module == nullptr)
        module = reinterpret_cast<HMODULE>(&__ImageBase);
    const HRSRC block = IsText(id) ? FindResourceExW(module, RT_STRING, BlockName(id), language) : nullptr;
    return block != nullptr && ReadEntry(out, module, block, id);
}

bool LoadModuleText(CString& out, HMODULE module, UINT id)
{
    if (!IsText(id))
        return false;
    if (module == nullptr)
        module = reinterpret_cast<HMODULE>(&__ImageBase);
    const HRSRC block = FindResourceW(module, BlockName(id), RT_STRING);
    if (block != nullptr && ReadEntry(out, module, block, id))
        return true;
    // The language that suits the user best may lack the block or the entry while another has it. The
    // enumeration stops at the first that does.
    Search search{&out, id, false};
    EnumResourceLanguagesW(module, RT_STRING, BlockName(id), ReadInLanguage,
                           reinterpret_cast<LONG_PTR>(&search));
    return search.found;
}

} // namespace vak::system
