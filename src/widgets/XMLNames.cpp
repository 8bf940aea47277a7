#include "zephmetadataui/XMLNames.h"

#include "contracts/Core.h"

namespace zephmetadataui
{

namespace
{

struct UnitRange
{
    unsigned short first;
    unsigned short last;
};

// Narrower than XML 1.0 on purpose: U+F900 to U+FDCF ends the last range.
UnitRange const kNameStartRanges[] = {
    {'A', 'Z'},       {'_', '_'},       {'a', 'z'},       {0x00C0, 0x00D6}, {0x00D8, 0x00F6},
    {0x00F8, 0x02FF}, {0x0370, 0x037D}, {0x037F, 0x1FFF}, {0x200C, 0x200D}, {0x2070, 0x218F},
    {0x2C00, 0x2FEF}, {0x3001, 0xD7FF}, {0xF900, 0xFDCF},
};

UnitRange const kNameOnlyRanges[] = {
    {'-', '.'}, {'0', '9'}, {0x00B7, 0x00B7}, {0x0300, 0x036F}, {0x203F, 0x2040},
};

template <std::size_t N> bool InRanges(unsigned short unit, UnitRange const (&ranges)[N])
{
    for (UnitRange const& range : ranges)
        if (unit >= range.first && unit <= range.last)
            return true;
    return false;
}

bool IsNameStartChar(unsigned short unit)
{
    return InRanges(unit, kNameStartRanges);
}

bool IsNameChar(unsigned short unit)
{
    return IsNameStartChar(unit) || InRanges(unit, kNameOnlyRanges);
}

bool StartsWithXML(UTF16String const& name)
{
    auto const is = [&name](std::size_t i, char lower)
    { return name[i] == lower || name[i] == lower - 'a' + 'A'; };
    return name.size() >= 3 && is(0, 'x') && is(1, 'm') && is(2, 'l');
}

} // namespace

bool VerifySimpleXMLName(UTF16String const& name)
{
    if (name.empty() || !IsNameStartChar(name[0]))
        return false;
    for (std::size_t i = 1; i < name.size(); ++i)
        if (!IsNameChar(name[i]))
            return false;
    return !StartsWithXML(name);
}

UTF16String GenerateXMLNameFromUnicodeString(UTF16String const& text)
{
    UTF16String name;
    name.reserve(text.size() + 1);
    for (std::size_t i = 0; i < text.size(); ++i)
    {
        bool const valid = i == 0 ? IsNameStartChar(text[i]) : IsNameChar(text[i]);
        name.push_back(valid ? text[i] : u'_');
    }
    if (StartsWithXML(name))
        name.insert(name.begin(), u'_');
    return name;
}

} // namespace zephmetadataui
