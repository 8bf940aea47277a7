#include "widgets/DateTextParsing.h"

#include <boost/lexical_cast.hpp>

#include <cmath>
#include <string>
#include <vector>

namespace zephmetadataui
{

namespace
{

using Text = UTF16String;

Text Trim(Text const& text)
{
    auto const isBlank = [](unsigned short c) { return c == ' ' || c == '\t'; };
    std::size_t begin = 0, end = text.size();
    while (begin < end && isBlank(text[begin]))
        ++begin;
    while (end > begin && isBlank(text[end - 1]))
        --end;
    return text.substr(begin, end - begin);
}

bool IsDigit(unsigned short c)
{
    return c >= '0' && c <= '9';
}

bool IsTimeSeparator(unsigned short c)
{
    return c == ':' || c == ',' || c == ';';
}

// Digits only, as a number; the caller has checked every character.
int DigitsValue(Text const& text, std::size_t from, std::size_t count)
{
    int value = 0;
    for (std::size_t i = from; i < from + count; ++i)
        value = value * 10 + (text[i] - '0');
    return value;
}

// Each piece between separators must read as a decimal integer.
bool PiecesAreIntegers(Text const& text, unsigned short separator, std::vector<int>& pieces)
{
    std::string const narrow = zephcore::ToStdString(text);
    std::size_t start = 0;
    while (true)
    {
        std::size_t const end = narrow.find(char(separator), start);
        std::string const piece =
            narrow.substr(start, end == std::string::npos ? std::string::npos : end - start);
        try
        {
            pieces.push_back(boost::lexical_cast<int>(piece));
        }
        catch (boost::bad_lexical_cast const&)
        {
            return false;
        }
        if (end == std::string::npos || separator == 0)
            return true;
        start = end + 1;
    }
}

int DaysInMonth(int year, int month)
{
    static int const days[] = {31, 28, 31, 30, 31, 30, 31, 31, 30, 31, 30, 31};
    bool const leap = (year % 4 == 0 && year % 100 != 0) || year % 400 == 0;
    return month == 2 && leap ? 29 : days[month - 1];
}

bool ParseDatePart(Text const& text, XMP_DateTime& date)
{
    std::size_t const n = text.size();
    if (n < 10 && n != 4 && n != 7)
        return false;
    for (std::size_t i = 0; i < 4; ++i)
        if (!IsDigit(text[i]))
            return false;
    date.year = DigitsValue(text, 0, 4);
    bool const hasMonth = n >= 7;
    bool const hasDay = n >= 10;
    if (hasMonth)
    {
        if (text[4] != '/' && text[4] != '-')
            return false;
        if (!IsDigit(text[5]) || !IsDigit(text[6]))
            return false;
        date.month = DigitsValue(text, 5, 2);
    }
    if (hasDay)
    {
        if (text[7] != text[4] || !IsDigit(text[8]) || !IsDigit(text[9]))
            return false;
        date.day = DigitsValue(text, 8, 2);
    }
    date.hasDate = 1;
    if (date.year > 9999)
        return false;
    if (hasMonth && (date.month < 1 || date.month > 12))
        return false;
    if (hasDay && (date.day < 1 || date.day > DaysInMonth(date.year, date.month)))
        return false;
    return true;
}

// Minutes and seconds below 60, but exactly 0 after hour 24.
bool SubHourFieldOk(int hour, int value)
{
    return hour == 24 ? value == 0 : value >= 0 && value < 60;
}

bool ParseClock(Text const& text, XMP_DateTime& date)
{
    std::size_t const n = text.size();
    if (n != 2 && n != 5 && n != 8)
        return false;
    unsigned short separator = 0;
    if (n >= 5)
    {
        separator = text[2];
        if (!IsTimeSeparator(separator) || (n == 8 && text[5] != separator))
            return false;
    }
    std::vector<int> pieces;
    if (!PiecesAreIntegers(text, separator, pieces))
        return false;
    // Fields come from fixed places, so "1:23" style pieces never sneak in.
    for (std::size_t i : {0u, 1u, 3u, 4u, 6u, 7u})
        if (i < n && !IsDigit(text[i]))
            return false;
    date.hour = DigitsValue(text, 0, 2);
    if (date.hour > 24)
        return false;
    if (pieces.size() >= 2)
    {
        date.minute = DigitsValue(text, 3, 2);
        if (!SubHourFieldOk(date.hour, date.minute))
            return false;
    }
    if (pieces.size() >= 3)
    {
        date.second = DigitsValue(text, 6, 2);
        if (!SubHourFieldOk(date.hour, date.second))
            return false;
    }
    date.hasTime = 1;
    return true;
}

bool ParseFraction(Text const& raw, XMP_DateTime& date)
{
    Text const text = Trim(raw);
    if (text.size() == 1 || text.size() > 10)
        return false;
    Text const digits = text.substr(1);
    for (auto c : digits)
        if (!IsDigit(c))
            return false;
    double const number = digits.empty() ? 0.0 : DigitsValue(digits, 0, digits.size());
    date.nanoSecond =
        static_cast<std::int32_t>(number * std::pow(10.0, 9.0 - double(digits.size())));
    return true;
}

bool ParseZone(Text const& raw, XMP_DateTime& date)
{
    Text const text = Trim(raw);
    if (!text.empty() && text[0] == 'Z')
        return text.size() == 1;
    if (text.size() != 3 && !(text.size() == 6 && IsTimeSeparator(text[3])))
        return false;
    if (text[0] != '+' && text[0] != '-')
        return false;
    Text const rest = text.substr(1);
    std::vector<int> pieces;
    if (!PiecesAreIntegers(rest, rest.size() == 5 ? rest[2] : 0, pieces))
        return false;
    for (std::size_t i : {0u, 1u, 3u, 4u})
        if (i < rest.size() && !IsDigit(rest[i]))
            return false;
    date.tzHour = DigitsValue(rest, 0, 2);
    if (date.tzHour >= 24)
        return false;
    if (pieces.size() >= 2)
    {
        date.tzMinute = DigitsValue(rest, 3, 2);
        if (date.tzMinute >= 60)
            return false;
    }
    date.hasTimeZone = 1;
    date.tzSign = text[0] == '+' ? 1 : -1;
    return true;
}

bool ParseTimePart(Text text, XMP_DateTime& date)
{
    if (text.empty() || (text[0] != ' ' && text[0] != 'T'))
        return false;
    text.erase(0, 1);

    std::size_t zoneAt = text.find('Z');
    if (zoneAt == Text::npos)
        zoneAt = text.find('+');
    if (zoneAt == Text::npos)
        zoneAt = text.find('-');
    Text zone;
    if (zoneAt != Text::npos)
    {
        zone = text.substr(zoneAt);
        text.erase(zoneAt);
    }
    Text fraction;
    std::size_t const point = text.find('.');
    if (point != Text::npos)
    {
        fraction = text.substr(point);
        text.erase(point);
    }
    if (!ParseClock(Trim(text), date))
        return false;
    if (!fraction.empty() && !ParseFraction(fraction, date))
        return false;
    if (!zone.empty())
        return ParseZone(zone, date);
    return true;
}

} // namespace

bool ParseDateText(UTF16String const& raw, XMP_DateTime& date)
{
    Text const text = Trim(raw);
    if (text.empty())
        return false;
    bool const dateOk = ParseDatePart(text, date);
    if (!dateOk || text.size() < 11)
        return dateOk;
    return ParseTimePart(text.substr(10), date);
}

UTF16String ToStoredText(XMP_DateTime const& date)
{
    UTF8String text;
    if (!zephmetadata::ConvertFromDate(date, text))
        return UTF16String();
    return zephcore::UTF8to16(text);
}

UTF16String FormatForDisplay(XMP_DateTime const& date)
{
    if (!date.hasDate)
        return UTF16String();
    UTF16String text = ToStoredText(date);
    for (auto& c : text)
        if (c == 'T')
            c = ' ';
    if (date.hasTimeZone)
    {
        unsigned short const sign = static_cast<unsigned char>(date.tzSign > 0 ? '+' : '-');
        std::size_t const at = text.rfind(sign);
        if (at != UTF16String::npos)
            text.insert(at, 1, ' ');
    }
    return text;
}

} // namespace zephmetadataui
