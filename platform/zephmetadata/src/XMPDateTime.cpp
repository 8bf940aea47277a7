#include "zephmetadata/XMPDateTime.h"

#include <cstdio>

namespace zephmetadata
{

namespace
{

bool InRange(XMP_DateTime const& d)
{
    return d.year >= -9999 && d.year <= 9999 && d.month >= 0 && d.month <= 12 && d.day >= 0 &&
           d.day <= 31 && d.hour >= 0 && d.hour <= 24 && d.minute >= 0 && d.minute <= 59 &&
           d.second >= 0 && d.second <= 59 && d.nanoSecond >= 0 && d.nanoSecond <= 999999999 &&
           d.tzHour >= 0 && d.tzHour <= 23 && d.tzMinute >= 0 && d.tzMinute <= 59;
}

} // namespace

bool ConvertFromDate(XMP_DateTime const& date, zephcore::UTF8String& text)
{
    text.clear();
    if (!InRange(date))
        return false;

    char buffer[64];
    int length = 0;
    // A date with a time always has a full date in front of it.
    bool const withTime = date.hasTime != 0;
    int const month = withTime && date.month == 0 ? 1 : date.month;
    int const day = withTime && date.day == 0 ? 1 : date.day;
    if (month == 0)
        length = std::snprintf(buffer, sizeof buffer, "%04d", date.year);
    else if (day == 0)
        length = std::snprintf(buffer, sizeof buffer, "%04d-%02d", date.year, month);
    else
        length = std::snprintf(buffer, sizeof buffer, "%04d-%02d-%02d", date.year, month, day);

    if (withTime)
    {
        length += std::snprintf(buffer + length, sizeof buffer - length, "T%02d:%02d", date.hour,
                                date.minute);
        if (date.second != 0 || date.nanoSecond != 0)
        {
            length += std::snprintf(buffer + length, sizeof buffer - length, ":%02d", date.second);
            if (date.nanoSecond != 0)
            {
                char fraction[16];
                std::snprintf(fraction, sizeof fraction, ".%09d", date.nanoSecond);
                int end = 10;
                while (fraction[end - 1] == '0')
                    --end;
                fraction[end] = '\0';
                length += std::snprintf(buffer + length, sizeof buffer - length, "%s", fraction);
            }
        }
        if (date.hasTimeZone)
        {
            if (date.tzSign == 0)
                length += std::snprintf(buffer + length, sizeof buffer - length, "Z");
            else
                length += std::snprintf(buffer + length, sizeof buffer - length, "%c%02d:%02d",
                                        date.tzSign > 0 ? '+' : '-', date.tzHour, date.tzMinute);
        }
    }
    text.assign(reinterpret_cast<unsigned char const*>(buffer), std::size_t(length));
    return true;
}

} // namespace zephmetadata
