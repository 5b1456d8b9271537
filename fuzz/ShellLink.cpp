// Shortcut files from arbitrary bytes. Nothing outside them is read, and what ends early is never whole: only
// the block behind everything else says that a file is.
#include "framework/base/detail/ShellLinkFormat.h"
#include "fuzz/support/Target.h"

#include <vector>

namespace {

void Run(const std::uint8_t* data, std::size_t size)
{
    std::vector<BYTE> bytes(data, data + size);
    while (!bytes.empty() && vak::detail::IsShellLink(bytes.data(), bytes.size())) {
        // To the end of that block, and then beyond it: a shorter file must be refused for good.
        bytes.pop_back();
        bytes.shrink_to_fit();
    }
    for (std::size_t length = 0; length < bytes.size(); ++length)
        vak::fuzz::Require(!vak::detail::IsShellLink(bytes.data(), length));
}

const vak::fuzz::Target target("ShellLink", Run);

} // namespace
