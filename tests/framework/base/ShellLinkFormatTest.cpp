#include "framework/base/detail/ShellLinkFormat.h"

#include "tests/support/ArchiveBytes.h"

TEST(ShellLinkFormat, TakesEveryPartOfTheFormatAndNothingThatReachesBeyondItsEnd)
{
    const auto isTaken = [](const CStringA& name) {
        const std::string bytes = vak::test::Data(CStringA("../../fuzz/corpus/ShellLink/") + name);
        return vak::detail::IsShellLink(reinterpret_cast<const BYTE*>(bytes.data()), bytes.size());
    };
    for (const char* name : {"by-shell", "local", "local-wide", "network", "network-wide-device", "items",
                             "texts-ansi", "texts-wide", "blocks"})
        EXPECT_TRUE(isTaken(name)) << name;
    for (const char* name : {"items-beyond", "no-end", "label-beyond", "volume-beyond"})
        EXPECT_FALSE(isTaken(name)) << name;
}
