#pragma once

#include <cstdint>

/// The format's dates: local time of 1980 to 2107 in steps of two seconds.
namespace vak::detail::zip {

/// The moment as seconds since 1970. Components outside their range (tools write zeros for "unknown") are
/// taken for the nearest inside; 0 when the system knows no such moment.
std::int64_t TimeFromDos(std::uint16_t date, std::uint16_t time);

struct DosTime
{
    std::uint16_t date = 0x0021; ///< 1 January 1980
    std::uint16_t time = 0;
};
/// The moment rounded up to the next even second, as archives have it; outside the range its nearest end.
DosTime DosFromTime(std::int64_t moment);

} // namespace vak::detail::zip
