#include "files/zip/ZipDates.h"

#include "framework/base/SystemTime.h"

#include <algorithm>

namespace vak::detail::zip {

std::int64_t TimeFromDos(std::uint16_t date, std::uint16_t time)
{
    std::tm components{};
    components.tm_year = (date >> 9) + 80;
    components.tm_mon = std::clamp((date >> 5 & 15) - 1, 0, 11);
    components.tm_mday = std::max(date & 31, 1);
    components.tm_hour = std::min(time >> 11, 23);
    components.tm_min = std::min(time >> 5 & 63, 59);
    components.tm_sec = std::min((time & 31) * 2, 59);
    components.tm_isdst = -1;
    return std::max<std::int64_t>(system::FromLocalTime(components), 0);
}

DosTime DosFromTime(std::int64_t moment)
{
    std::tm components{};
    if (!system::ToLocalTime(moment + (moment & 1), components) || components.tm_year < 80)
        return {};
    if (components.tm_year > 80 + 127)
        return {0xFF9F, 0xBF7D};
    DosTime result;
    result.date = static_cast<std::uint16_t>((components.tm_year - 80) << 9 | (components.tm_mon + 1) << 5 |
                                             components.tm_mday);
    result.time = static_cast<std::uint16_t>(components.tm_hour << 11 | components.tm_min << 5 |
                                             std::min(components.tm_sec, 59) / 2);
    return result;
}

} // namespace vak::detail::zip
