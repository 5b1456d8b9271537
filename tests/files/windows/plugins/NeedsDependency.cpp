// Loads only where VakTestDependency.dll is found.
#include "tests/files/windows/plugins/Plugin.h"

extern "C" __declspec(dllimport) unsigned int DependencyClass();

PLUGIN_EXPORT int Init3DParser(IoPluginMode mode, void* data)
{
    return DeclareOne(mode, data, PluginKind(L".vtnd", DependencyClass(), vak::kFileKind3d));
}
