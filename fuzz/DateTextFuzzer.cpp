// The date a user types: any text is parsed without harm, and a date that
// parses is stored in a form that parses again to the same stored form.

#include "widgets/DateTextParsing.h"

#include <cstddef>
#include <cstdint>

using namespace zephmetadataui;

extern "C" int LLVMFuzzerTestOneInput(std::uint8_t const* data, std::size_t size)
{
    // Two bytes a UTF-16 unit, so any character (and any broken pair) comes in.
    UTF16String text;
    for (std::size_t i = 0; i + 1 < size; i += 2)
        text.push_back(static_cast<unsigned short>(data[i] | (data[i + 1] << 8)));
    XMP_DateTime date{};
    if (!ParseDateText(text, date))
        return 0;
    UTF16String const stored = ToStoredText(date);
    (void)FormatForDisplay(date);
    if (stored.empty())
        return 0;
    XMP_DateTime again{};
    if (!ParseDateText(stored, again) || ToStoredText(again) != stored)
        __builtin_trap();
    return 0;
}
