#include "framework/base/SystemMessage.h"

#include "framework/base/Application.h"
#include "framework/base/SystemText.h"
#include "resources/Ids.h"

#include <cstdio>

namespace vak::system {

namespace {

struct Text
{
    UINT id;
    const wchar_t* text;
};

#define VAK_TEXT(identifier, text) {identifier, L##text},
constexpr Text kFrench[] = {
#include "resources/texts.fr.inc"
    {0, nullptr}};
constexpr Text kEnglish[] = {
#include "resources/texts.en.inc"
    {0, nullptr}};
#undef VAK_TEXT

bool FindText(CString& out, const Text* table, UINT id)
{
    while (table->text != nullptr && table->id != id)
        ++table;
    if (table->text == nullptr)
        return false;
    out = table->text;
    return true;
}

void Print(LPCTSTR text)
{
    CStringA bytes;
    const CString wide(text);
    ToNarrow(CP_UTF8, wide.GetString(), std::size_t(wide.GetLength()), bytes);
    std::fwrite(bytes.GetString(), 1, std::size_t(bytes.GetLength()), stderr);
}

} // namespace

int ShowMessage(LPCTSTR text, LPCTSTR caption, UINT type)
{
    if (*caption != 0) {
        Print(caption);
        Print(L": ");
    }
    Print(text);
    Print(L"\n");
    return vak::DefaultAnswer(type);
}

void ShowWaitCursor(bool) {}

CString ErrorText(DWORD errorCode)
{
    static constexpr Text kErrors[] = {
        {2, L"File not found."},     {3, L"Path not found."},
        {5, L"Access denied."},      {32, L"The file is used by another process."},
        {112, L"The disk is full."}, {0, nullptr}};
    CString text;
    if (!FindText(text, kErrors, errorCode))
        text.Format(L"Error %u.", errorCode);
    return text;
}

bool LoadModuleText(CString& out, HMODULE module, UINT id, LANGID language)
{
    if (module != nullptr)
        return false;
    return (language == 1036 && FindText(out, kFrench, id)) ||
           (language == 1033 && FindText(out, kEnglish, id));
}

bool LoadModuleText(CString& out, HMODULE module, UINT id)
{
    return LoadModuleText(out, module, id, 1036);
}

} // namespace vak::system
