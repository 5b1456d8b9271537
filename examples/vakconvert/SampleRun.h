#pragma once

#include "examples/vakconvert/Tags.h"

/// A run that never was, for previews. Its largest result is a real file in a temporary folder, which goes
/// with the object, so that tags that ask the disk about it have something to tell.
class SampleRun
{
public:
    SampleRun();
    ~SampleRun();
    SampleRun(const SampleRun&) = delete;
    SampleRun& operator=(const SampleRun&) = delete;

    const RunFacts& Facts() const { return m_facts; }

private:
    RunFacts m_facts;
};
