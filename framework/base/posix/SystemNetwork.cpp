#include "framework/base/SystemNetwork.h"

namespace vak::system {

bool UniversalName(const CString&, CString&)
{
    return false;
}

bool ListDiskShares(std::vector<DiskShare>&)
{
    return false;
}

CString NetworkNameOfThisComputer()
{
    return {};
}

} // namespace vak::system
