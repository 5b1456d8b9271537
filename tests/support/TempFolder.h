#pragma once

#include "framework/base/String.h"

#include <filesystem>
#include <string>
#include <string_view>
#include <vector>

namespace vak::test {

/// A folder of its own for one test, removed with everything in it when the object goes.
class TempFolder
{
public:
    TempFolder();
    /// A folder of that name in the current one, for a test that starts itself anew and must find it again.
    explicit TempFolder(const std::string& name);
    ~TempFolder();
    TempFolder(const TempFolder&) = delete;
    TempFolder& operator=(const TempFolder&) = delete;

    /// The folder as the library names it: absolute, with backslashes, ending in one.
    CString Path() const;
    /// The library's path of `name` inside the folder; `name` is UTF-8 and may hold backslashes.
    CString Path(std::string_view name) const;
    /// The same place for the standard library.
    std::filesystem::path Host(std::string_view name = {}) const;

    /// Writes `bytes` to `name` (parents are created) and returns its library path.
    CString Write(std::string_view name, std::string_view bytes) const;
    /// The bytes of `name`; fails the test when it cannot be read.
    std::string Read(std::string_view name) const;
    bool Has(std::string_view name) const;
    /// The names of everything below the folder, relative, with slashes, sorted.
    std::vector<std::string> Names() const;

private:
    std::filesystem::path m_host;
};

} // namespace vak::test
