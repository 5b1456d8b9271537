#include "fuzz/support/Target.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#include <vector>

namespace {

class CorpusReplay : public testing::TestWithParam<vak::fuzz::Target*>
{
};

std::vector<vak::fuzz::Target*> AllTargets()
{
    std::vector<vak::fuzz::Target*> all;
    for (auto* target = vak::fuzz::Target::first; target != nullptr; target = target->next)
        all.push_back(target);
    return all;
}

} // namespace

TEST_P(CorpusReplay, EveryCommittedInputEndsInADocumentedResult)
{
    const auto folder = std::filesystem::path(VAK_SOURCE_DIR) / "fuzz" / "corpus" / GetParam()->name;
    std::size_t inputs = 0;
    for (const auto& entry : std::filesystem::directory_iterator(folder)) {
        SCOPED_TRACE(entry.path().filename().string());
        std::ifstream file(entry.path(), std::ios::binary);
        const std::vector<char> bytes{std::istreambuf_iterator<char>(file), {}};
        GetParam()->run(reinterpret_cast<const std::uint8_t*>(bytes.data()), bytes.size());
        ++inputs;
    }
    EXPECT_GT(inputs, 0u) << "no corpus for this target";
}

INSTANTIATE_TEST_SUITE_P(Fuzz, CorpusReplay, testing::ValuesIn(AllTargets()),
                         [](const auto& target) { return std::string(target.param->name); });
