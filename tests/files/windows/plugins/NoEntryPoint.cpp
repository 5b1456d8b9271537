#include "tests/files/windows/plugins/Plugin.h"

PLUGIN_EXPORT unsigned int GetLibraryVersion()
{
    return 0x50000;
}
