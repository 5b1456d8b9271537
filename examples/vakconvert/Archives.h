#pragma once

#include "examples/vakconvert/Sources.h"
#include "examples/vakconvert/WorkFolder.h"

#include <memory>
#include <optional>
#include <vector>

/// The archives that sources run through. What is asked of them is extracted to a temporary folder, which
/// goes with the object.
class Archives
{
public:
    Archives();
    ~Archives();
    Archives(const Archives&) = delete;
    Archives& operator=(const Archives&) = delete;

    /// Splits a path at the first of its files that is an archive: "C:\pack.zip\models" becomes "C:\pack.zip"
    /// and `inner` "models"; the first of an archive's plain pieces, "pack.zip.001", is one. False, and both
    /// as they were, when it runs through none; a folder named x.zip is no archive.
    static bool Split(CString& path, CString& inner);

    /// Appends what `inner` stands for in the archive, in its order: a file, a folder, or a pattern, as on
    /// the disk. The other files of their folders are extracted too, since models name some of them; a
    /// plug-in looks nowhere else for them on the disk either. Each entry that cannot be extracted becomes a
    /// source with a failure. Returns why the archive cannot be read; empty when it can.
    CString Find(const CString& archive, const CString& inner, bool recurse, std::vector<Source>& found);

private:
    class Opened;

    Opened& Open(const CString& path);

    std::optional<WorkFolder> m_work;
    std::vector<std::unique_ptr<Opened>> m_opened;
};

/// The system's folder for temporary files, slash-terminated.
CString TemporaryFolder();
