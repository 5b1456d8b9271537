// Its initialisation fails, and it can say why.
#include "tests/files/windows/plugins/Plugin.h"

BOOL WINAPI DllMain(HINSTANCE, DWORD, LPVOID)
{
    return FALSE;
}

PLUGIN_EXPORT int Init3DParser(IoPluginMode mode, void* data)
{
    return DeclareOne(mode, data, PluginKind(L".vtfs", 'VTFS', vak::kFileKind3d));
}

PLUGIN_EXPORT unsigned int GetLoadErrorMsg()
{
    return 4711;
}
