// What every plug-in of this version has.
#include "tests/files/windows/plugins/Plugin.h"

PLUGIN_EXPORT unsigned int GetLibraryVersion()
{
    return 0x50000;
}
