#pragma once

/// Changes of an archive in which a test makes something fail, and what may then be found.

#include "tests/support/ZipContents.h"

#include <algorithm>
#include <filesystem>
#include <vector>

namespace vak::test {

class ZipChanges
{
public:
    ZipChanges()
    {
        CZip zip;
        zip.Open(m_path, CZip::zipCreate);
        for (LPCWSTR const name : {L"a", L"b", L"c"})
            zip.AddNewFile(m_old, name);
        zip.Close();
        m_bytes = m_folder.Read("pack.zip");
    }

    /// Puts the first archive back, alone.
    void Reset()
    {
        // A removal that failed has left a temporary.
        for (const char* const name : {"pack.zip.1.tmp", "pack.zip.2.tmp"})
            std::filesystem::remove(m_folder.Host(name));
        m_folder.Write("pack.zip", m_bytes);
    }
    /// Adds, deletes, adds in place, and renames.
    void Act(CZip& zip)
    {
        ZipNames from({L"c"});
        ZipNames to({L"cc"});
        zip.Open(m_path);
        zip.AddNewFile(m_new, L"b");
        zip.DeleteFiles(ZipNames({L"a"}));
        zip.AddNewFile(m_new, L"d");
        zip.AddNewFile(m_old, L"d");
        zip.RenameFiles(from, to);
        zip.AddNewFile(m_new, L"e");
        zip.AddNewFile(m_old, L"e");
        zip.Close();
    }
    /// What the archive holds now: 0 is the first contents, 3 the last; -1 something that nobody has made.
    std::ptrdiff_t Stage() const
    {
        const Contents now = ContentsOf(m_path);
        const auto found = std::find(m_stages.begin(), m_stages.end(), now);
        return found == m_stages.end() ? -1 : found - m_stages.begin();
    }

private:
    TempFolder m_folder;
    const CString m_path = m_folder.Path("pack.zip");
    const std::string m_first = Words(150000);
    const std::string m_second = Noise(140000);
    const CString m_old = m_folder.Write("in/old", m_first);
    const CString m_new = m_folder.Write("in/new", m_second);
    std::string m_bytes;
    const std::vector<Contents> m_stages = {
        {{"a", m_first}, {"b", m_first}, {"c", m_first}},
        {{"b", m_second}, {"c", m_first}},
        {{"b", m_second}, {"cc", m_first}, {"d", m_first}},
        {{"b", m_second}, {"cc", m_first}, {"d", m_first}, {"e", m_first}},
    };
};

} // namespace vak::test
