#include "framework/base/SystemTime.h"

namespace vak::system {

bool ToLocalTime(std::int64_t moment, std::tm& components)
{
    const std::time_t time = moment;
    return localtime_r(&time, &components) != nullptr;
}

bool ToUtcTime(std::int64_t moment, std::tm& components)
{
    const std::time_t time = moment;
    return gmtime_r(&time, &components) != nullptr;
}

std::int64_t FromLocalTime(std::tm components)
{
    return std::mktime(&components);
}

} // namespace vak::system
