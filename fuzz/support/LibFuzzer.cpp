#include "fuzz/support/Target.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    vak::fuzz::Target::first->run(data, size);
    return 0;
}
