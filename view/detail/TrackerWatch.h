#pragma once

#include "view/VakTracker.h"

namespace vak::detail {

/// Tells an operation that called a hook whether the tracker still exists. Stands on the stack of the
/// operation; those of nested operations make a chain.
class TrackerWatch
{
public:
    explicit TrackerWatch(CVakTracker& tracker) : m_tracker(&tracker), m_outer(tracker.m_watch)
    {
        tracker.m_watch = this;
    }
    TrackerWatch(const TrackerWatch&) = delete;
    TrackerWatch& operator=(const TrackerWatch&) = delete;
    ~TrackerWatch()
    {
        if (m_tracker)
            m_tracker->m_watch = m_outer;
    }

    bool IsAlive() const { return m_tracker != nullptr; }

    /// The tracker goes: every operation that runs on it gets to know.
    static void Bury(TrackerWatch* innermost)
    {
        for (TrackerWatch* watch = innermost; watch; watch = watch->m_outer)
            watch->m_tracker = nullptr;
    }

private:
    CVakTracker* m_tracker;
    TrackerWatch* m_outer;
};

} // namespace vak::detail
