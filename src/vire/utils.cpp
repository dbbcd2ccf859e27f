#include "vire/utils.h"

#include <algorithm>
#include <cstdio>
#include <ctime>
#include <limits>
#include <locale.h>
#include <time.h>

#include "vire/clock.h"

namespace vire {

std::string Bytes2String(std::span<const std::byte> field) {
    std::string text;
    text.reserve(field.size());
    for (std::byte b : field) {
        if (b == std::byte{0}) break;
        text.push_back(static_cast<char>(b));
    }
    return text;
}

std::vector<std::byte> String2Bytes(const std::string& text, size_t width) {
    if (width == 0) width = text.size() + 1;
    std::vector<std::byte> field(width, std::byte{0});
    const size_t length = std::min(text.size(), width);
    for (size_t i = 0; i < length; ++i) field[i] = static_cast<std::byte>(text[i]);
    return field;
}

int32_t UNIXTIME() {
    // Floor division: a clock set before 1970 still rounds towards the past.
    const int64_t ms = NowMilliseconds();
    const int64_t seconds = ms >= 0 ? ms / 1000 : -((-ms + 999) / 1000);
    return static_cast<int32_t>(std::clamp<int64_t>(seconds, std::numeric_limits<int32_t>::min(),
                                                    std::numeric_limits<int32_t>::max()));
}

int32_t MKTIME(int year, int month, int day, int hour, int minute, int second) {
    std::tm parts{};
    parts.tm_year = year - 1900;
    parts.tm_mon = month - 1;
    parts.tm_mday = day;
    parts.tm_hour = hour;
    parts.tm_min = minute;
    parts.tm_sec = second;
    parts.tm_isdst = -1;  // the zone's own rule decides
    const std::time_t t = std::mktime(&parts);
    if (t == static_cast<std::time_t>(-1) || t < 0 || t > std::numeric_limits<int32_t>::max())
        return -1;
    return static_cast<int32_t>(t);
}

std::string CTIME(int64_t seconds) {
    if (seconds < 0) return "";
    const std::time_t t = static_cast<std::time_t>(seconds);
    std::tm parts{};
    if (localtime_r(&t, &parts) == nullptr) return "";
    // C's ctime layout in the C locale, whatever the environment's: the
    // day and month names never follow a language setting.
    static const locale_t cLocale = newlocale(LC_ALL_MASK, "C", static_cast<locale_t>(nullptr));
    char text[64];
    if (cLocale == static_cast<locale_t>(nullptr) ||
        strftime_l(text, sizeof text, "%a %b %e %H:%M:%S %Y", &parts, cLocale) == 0)
        return "";
    return std::string(text).substr(0, 24);
}

}  // namespace vire
