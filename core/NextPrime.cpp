#include "core/NextPrime.h"

#include <cstdint>

namespace {

bool HasOddDivisor(std::uint64_t candidate)
{
    // 64 bits: the square of a divisor near 65536 does not fit into 32.
    for (std::uint64_t divisor = 3; divisor * divisor <= candidate; divisor += 2)
        if (candidate % divisor == 0)
            return true;
    return false;
}

} // namespace

unsigned int NextPrime(unsigned int n)
{
    if (n == 1 || n == 2)
        return 2;
    std::uint64_t candidate = n | 1u;
    if (n < 9)
        return static_cast<unsigned int>(candidate);
    while (HasOddDivisor(candidate))
        candidate += 2;
    return candidate <= UINT32_MAX ? static_cast<unsigned int>(candidate) : 0;
}
