#include "files/ExtensionList.h"
#include "fuzz/support/Target.h"

using vak::fuzz::Require;

namespace {

/// The first byte chooses the mode, the rest are little-endian UTF-16 units.
void Run(const std::uint8_t* data, std::size_t size)
{
    if (size == 0)
        return;
    const int extensionMode = data[0] & 1;
    CString list;
    for (std::size_t i = 1; i + 1 < size; i += 2)
        list.AppendChar(static_cast<wchar_t>(data[i] | data[i + 1] << 8));

    CHashTable<CString> table;
    CString cleaned = list;
    const unsigned int count = fileGetHashFromExtensionList(cleaned, table, extensionMode);
    Require(count == table.GetCount());
    Require((count == 0) == cleaned.IsEmpty());
    Require(cleaned == fileCleanExtensionList(list, extensionMode));
    // Everything was seen: the same table leaves nothing over.
    Require(fileCleanExtensionList(list, extensionMode, &table).IsEmpty() && table.GetCount() == count);
    // Extensions are canonical once cleaned, as long as the list is not cut again.
    if (extensionMode != 0 && cleaned.GetLength() < 259)
        Require(fileCleanExtensionList(cleaned, extensionMode) == cleaned);
}

const vak::fuzz::Target target("ExtensionList", Run);

} // namespace
