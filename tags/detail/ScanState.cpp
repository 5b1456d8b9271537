#include "tags/detail/ScanState.h"

#include "framework/base/SystemThread.h"

#include <memory>
#include <new>

namespace vak::detail {

ScanState::ScanState(unsigned int thread) : threadId(thread)
{
    constexpr std::size_t kUsualDepth = 5;
    conditionals.reserve(kUsualDepth);
}

void ScanState::Reset()
{
    position = 0;
    conditionalStart = 0;
    emptyTag = false;
    conditionals.clear();
}

ScanStates::~ScanStates()
{
    ScanState* state = nullptr;
    for (unsigned int pos = m_states.GetFirst(); pos != 0xFFFFFFFF;) {
        m_states.GetNext(pos, state);
        delete state;
    }
}

ScanState* ScanStates::Find() const
{
    const unsigned int threadId = system::CurrentThreadId();
    std::atomic<ScanState*>& recent = RecentOf(threadId);
    // States are only freed together with this object, so what stands here is alive.
    ScanState* state = recent.load(std::memory_order_acquire);
    if (state != nullptr && state->threadId == threadId)
        return state;
    state = FindLocked(threadId);
    if (state != nullptr)
        recent.store(state, std::memory_order_release);
    return state;
}

ScanState& ScanStates::Obtain()
{
    if (ScanState* const state = Find())
        return *state;
    const unsigned int threadId = system::CurrentThreadId();
    std::unique_ptr<ScanState> made(new (std::nothrow) ScanState(threadId));
    if (made == nullptr)
        ThrowMemory();
    const std::scoped_lock lock(m_lock);
    if (m_states.Insert(threadId, made.get()) == 0)
        ThrowMemory();
    return *made.release();
}

std::atomic<ScanState*>& ScanStates::RecentOf(unsigned int threadId) const
{
    // Spreads the neighbouring numbers that systems hand out.
    return m_recent[threadId * 0x9E3779B1u >> (32 - kRecentBits)];
}

ScanState* ScanStates::FindLocked(unsigned int threadId) const
{
    ScanState* state = nullptr;
    const std::scoped_lock lock(m_lock);
    return m_states.Find(threadId, state) != 0 ? state : nullptr;
}

} // namespace vak::detail
