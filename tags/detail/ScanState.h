#pragma once

/// The scans of one engine, one a thread.

#include "core/HashMap.h"
#include "framework/base/String.h"
#include "framework/base/detail/Allocator.h"

#include <array>
#include <atomic>
#include <mutex>
#include <vector>

namespace vak::detail {

/// A stretch of a template in UTF-16 units; `end` is exclusive.
struct TagRange
{
    unsigned int start;
    unsigned int end;
};

/// How far a thread has come in its template. Belongs to the engine; nobody but the thread looks at it.
struct ScanState
{
    explicit ScanState(unsigned int thread);

    /// Begins a scan: position 0, no conditional open, no empty tag met. The text is the caller's to set.
    void Reset();

    /// The template of a plain scan.
    CString text;
    /// Where the scan goes on, in units of the text.
    unsigned int position = 0;
    /// Where the conditional that was opened last begins, in a rich text.
    unsigned int conditionalStart = 0;
    /// A tag without a value was met since the last marker of a conditional.
    bool emptyTag = false;
    /// The opening markers of the conditionals that are still open, the innermost last.
    std::vector<TagRange, Allocator<TagRange>> conditionals;

    /// Buffer for the name of the tag at hand.
    CString name;
    const unsigned int threadId;
};

/// The states of all threads, made when a thread begins its first scan and kept until the engine goes.
///
/// Any number of threads may call Find and Obtain at once; each gets its own state. Never copied: a copied
/// engine has scans of its own.
class ScanStates
{
public:
    ScanStates() = default;
    ScanStates(const ScanStates&) = delete;
    ScanStates& operator=(const ScanStates&) = delete;
    ~ScanStates();

    /// The state of the calling thread, or null when it never began a scan.
    ScanState* Find() const;
    /// The same, made when it is missing. Throws CMemoryException (by pointer), nothing is then added.
    ScanState& Obtain();

private:
    static constexpr unsigned int kRecentBits = 6;

    std::atomic<ScanState*>& RecentOf(unsigned int threadId) const;
    ScanState* FindLocked(unsigned int threadId) const;

    CHashMap<unsigned int, ScanState*, unsigned int> m_states;
    mutable std::mutex m_lock;
    /// States that were found lately, by a hash of their thread: scanning threads do without the lock.
    mutable std::array<std::atomic<ScanState*>, 1u << kRecentBits> m_recent{};
};

} // namespace vak::detail
