#include "framework/base/SystemTime.h"

namespace vak::system {

bool ToLocalTime(std::int64_t moment, std::tm& components)
{
    const __time64_t time = moment;
    return _localtime64_s(&components, &time) == 0;
}

bool ToUtcTime(std::int64_t moment, std::tm& components)
{
    const __time64_t time = moment;
    return _gmtime64_s(&components, &time) == 0;
}

std::int64_t FromLocalTime(std::tm components)
{
    return _mktime64(&components);
}

} // namespace vak::system
