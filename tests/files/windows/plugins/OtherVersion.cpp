// Built for version 5.1. Leaves a mark when any of its initialisation runs.
#include "tests/files/windows/plugins/Plugin.h"

BOOL WINAPI DllMain(HINSTANCE, DWORD, LPVOID)
{
    SetEnvironmentVariableW(L"VAK_TEST_PLUGIN_STARTED", L"1");
    return TRUE;
}

PLUGIN_EXPORT unsigned int GetLibraryVersion()
{
    return 0x50001;
}

PLUGIN_EXPORT int Init3DParser(IoPluginMode mode, void* data)
{
    return DeclareOne(mode, data, PluginKind(L".vt51", 'VT51', vak::kFileKind3d));
}
