#pragma once

#include "framework/base/Platform.h"
#include "framework/base/StdioFile.h"

#include <cstddef>

namespace vak::detail {

/// The characters of a text file, one at a time, for a reader that must be able to leave the next one where
/// it is: a character is read from the stream only when it is taken.
class ScanSource
{
public:
    /// How the file's bytes are to be read.
    struct Form
    {
        UINT codePage;
        bool isUnicode;
        bool isText; ///< CR LF is one LF, Ctrl-Z is the end
    };
    static constexpr int kEnd = -1;

    ScanSource(CStdioFile& file, const Form& form);

    /// The next UTF-16 unit, or kEnd. Of a character outside the first plane it is the high surrogate.
    int Peek();
    /// Units of the next character: 1 or 2, 0 at the end.
    int Units();
    /// Puts the units of the next character there.
    void Look(wchar_t (&units)[2]);
    /// The same, and reads past it.
    void Take(wchar_t (&units)[2]);
    /// Units taken so far.
    int Taken() const { return m_taken; }

private:
    void Load();
    std::size_t LookAhead(unsigned char* bytes, std::size_t wanted);
    void LoadUnicode(const unsigned char* bytes, std::size_t count);
    void LoadAnsi(const unsigned char* bytes, std::size_t count);

    CStdioFile& m_file;
    Form m_form;
    bool m_loaded = false;
    int m_units = 0; ///< of the next character
    wchar_t m_next[2] = {};
    std::size_t m_length = 0; ///< its bytes in the file
    int m_taken = 0;
};

} // namespace vak::detail
