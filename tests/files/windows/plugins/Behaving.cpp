// Does what the name of its file says, so that one library gives many plug-ins.
#include "tests/files/windows/plugins/Plugin.h"

#include "framework/base/Exception.h"

#include <algorithm>
#include <stdexcept>

namespace {

class PluginException : public CException
{
public:
    BOOL GetErrorMessage(LPTSTR error, UINT maxError, PUINT) const override
    {
        const CString text(L"no licence");
        if (maxError <= static_cast<UINT>(text.GetLength()))
            return FALSE;
        std::copy_n(text.GetString(), text.GetLength() + 1, error);
        return TRUE;
    }
};

class PluginParser : public CFileParser
{
public:
    explicit PluginParser(CFileIo* fileIo) : CFileParser(fileIo) {}
};

/// The name of this copy of the library, without folder and extension.
CString OwnName()
{
    HMODULE self = nullptr;
    GetModuleHandleExW(GET_MODULE_HANDLE_EX_FLAG_FROM_ADDRESS | GET_MODULE_HANDLE_EX_FLAG_UNCHANGED_REFCOUNT,
                       reinterpret_cast<LPCWSTR>(&OwnName), &self);
    wchar_t path[MAX_PATH] = {};
    GetModuleFileNameW(self, path, MAX_PATH);
    CString name(path);
    name = name.Mid(name.ReverseFind(L'\\') + 1);
    return name.Left(name.ReverseFind(L'.')).MakeLower();
}

int Declare(CFileExtArray& kinds)
{
    const CString name = OwnName();
    if (name == L"throws-exception")
        throw new PluginException;
    if (name == L"throws-number")
        throw 7;
    if (name == L"throws-standard")
        throw std::runtime_error("out of paper");
    if (name == L"empty")
        return 1;
    kinds.Add(PluginKind(L".vt3", 'VTM3', vak::kFileKind3d));
    if (name == L"fails")
        return 0;
    kinds.Add(PluginKind(L".vt2|.vt4", 'VTB2', vak::kFileKindBitmap));
    return 1;
}

int Run(IoPluginMode mode, void* data)
{
    if (mode == IoPluginDeclare)
        return Declare(*static_cast<CFileExtArray*>(data));
    auto* const request = static_cast<IoParserRequest*>(data);
    request->parser = new PluginParser(request->fileIo);
    return 1;
}

} // namespace

PLUGIN_EXPORT int InitBitmapParser(IoPluginMode mode, void* data)
{
    return Run(mode, data);
}

PLUGIN_EXPORT int Init3DParser(IoPluginMode mode, void* data)
{
    return Run(mode, data);
}
