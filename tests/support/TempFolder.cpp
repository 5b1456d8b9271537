#include "tests/support/TempFolder.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <atomic>
#include <fstream>
#include <iterator>
#include <random>

namespace fs = std::filesystem;

namespace vak::test {

namespace {

fs::path FromName(std::string_view name)
{
    std::u8string portable(name.begin(), name.end());
    std::replace(portable.begin(), portable.end(), u8'\\', u8'/');
    return fs::path(portable);
}

} // namespace

TempFolder::TempFolder()
{
    static std::atomic<unsigned> serial{0};
    const std::string name =
        "vaktest-" + std::to_string(std::random_device()()) + "-" + std::to_string(serial++);
    m_host = fs::canonical(fs::temp_directory_path()) / name;
    fs::create_directories(m_host);
}

TempFolder::TempFolder(const std::string& name) : m_host(fs::current_path() / name)
{
    fs::create_directories(m_host);
}

TempFolder::~TempFolder()
{
    std::error_code ignored;
    fs::remove_all(m_host, ignored);
}

CString TempFolder::Path() const
{
    return Path({});
}

CString TempFolder::Path(std::string_view name) const
{
    // Natively a host path is what drive Z: shows, as Wine maps it.
    std::u16string text = m_host.u16string() + u'/' + FromName(name).u16string();
    if (text[0] == u'/')
        text.insert(0, u"Z:");
    CString path;
    for (const char16_t unit : text)
        path += unit == u'/' ? L'\\' : static_cast<wchar_t>(unit);
    return path;
}

fs::path TempFolder::Host(std::string_view name) const
{
    return name.empty() ? m_host : m_host / FromName(name);
}

CString TempFolder::Write(std::string_view name, std::string_view bytes) const
{
    fs::create_directories(Host(name).parent_path());
    std::ofstream file(Host(name), std::ios::binary);
    file.write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
    EXPECT_TRUE(file.good()) << "cannot write " << name;
    return Path(name);
}

std::string TempFolder::Read(std::string_view name) const
{
    std::ifstream file(Host(name), std::ios::binary);
    EXPECT_TRUE(file.good()) << "cannot read " << name;
    return {std::istreambuf_iterator<char>(file), {}};
}

bool TempFolder::Has(std::string_view name) const
{
    return fs::exists(Host(name));
}

std::vector<std::string> TempFolder::Names() const
{
    std::vector<std::string> names;
    for (const auto& entry : fs::recursive_directory_iterator(m_host)) {
        const std::u8string name = fs::relative(entry.path(), m_host).generic_u8string();
        names.emplace_back(name.begin(), name.end());
    }
    std::sort(names.begin(), names.end());
    return names;
}

} // namespace vak::test
