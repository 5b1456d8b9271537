#pragma once

#include "framework/base/String.h"

#include <cstddef>
#include <vector>

/// Output in UTF-8, and what only a terminal gets.
class Console
{
public:
    Console();

    void Print(const CString& text) const;
    void PrintError(const CString& text) const;

    /// Prints rows below a header, columns as wide as their longest cell; columns of `rightAligned` (by
    /// index) end flush.
    void PrintTable(const std::vector<std::vector<CString>>& rows,
                    const std::vector<std::size_t>& rightAligned = {}) const;

    /// Shows how far a run has come, in one line that the next call overwrites; nothing when the output is no
    /// terminal.
    void ShowProgress(std::size_t done, std::size_t total, const CString& name) const;
    void EndProgress() const;

private:
    bool m_isTerminal;
};
