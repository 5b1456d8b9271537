#include "tests/files/windows/plugins/Plugin.h"

PLUGIN_EXPORT int Init3DParser(IoPluginMode mode, void* data)
{
    return DeclareOne(mode, data, PluginKind(L".vtnv", 'VTNV', vak::kFileKind3d));
}
