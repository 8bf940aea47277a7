#pragma once
// The XMP date record and its ISO 8601 text form, as XMP stores dates.

#include "zephmetadata/zephmetadata_export.h"
#include <zephcore/Strings.h>

#include <cstdint>

namespace zephmetadata
{

struct ZEPHMETADATA_EXPORT XMP_DateTime
{
    std::int32_t year = 0;
    std::int32_t month = 0; // 1 to 12, 0 if absent
    std::int32_t day = 0;   // 1 to 31, 0 if absent
    std::int32_t hour = 0;
    std::int32_t minute = 0;
    std::int32_t second = 0;
    std::uint8_t hasDate = 0;
    std::uint8_t hasTime = 0;
    std::uint8_t hasTimeZone = 0;
    std::int8_t tzSign = 0; // +1 east, -1 west, 0 UTC
    std::int32_t tzHour = 0;
    std::int32_t tzMinute = 0;
    std::int32_t nanoSecond = 0;
};

// The ISO text of a date: "2009", "2009-05", "2009-05-12",
// "2009-05-12T14:30", "2009-05-12T14:30:05", "2009-05-12T14:30:05.25",
// with "Z" or "+02:00" behind a time that has a zone. Seconds are written
// only when they or the fraction are not zero. False, and the text left
// empty, for a record out of range (month above 12, minute above 59, ...).
ZEPHMETADATA_EXPORT bool ConvertFromDate(XMP_DateTime const& date, zephcore::UTF8String& text);

} // namespace zephmetadata
