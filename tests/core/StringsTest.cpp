#include "zephcore/Strings.h"

#include <gtest/gtest.h>

using namespace zephcore;

namespace
{

UTF16String U(std::u16string const& text)
{
    return UTF16String(text.begin(), text.end());
}

std::string Hex(UTF16String const& text)
{
    std::string out;
    char buffer[8];
    for (auto c : text)
    {
        snprintf(buffer, sizeof buffer, "%04X ", unsigned(c));
        out += buffer;
    }
    return out;
}

} // namespace

TEST(StringsTest, EveryEncodingLengthAndPlaneBoundaryRoundTripsThroughUTF16)
{
    std::pair<std::string, std::u16string> const cases[] = {
        {std::string(1, '\0'), std::u16string(1, u'\0')},
        {"A", u"A"},
        {"\x7F", u"\x7F"},
        {"\xC2\x80", u"\x80"},
        {"\xDF\xBF", u"\u07FF"},
        {"\xE0\xA0\x80", u"\u0800"},
        {"\xED\x9F\xBF", u"\uD7FF"},
        {"\xEE\x80\x80", u"\uE000"},
        {"\xEF\xBF\xBF", u"\uFFFF"},
        {"\xF0\x90\x80\x80", u"\U00010000"},
        {"\xF0\x9F\x98\x80", u"\U0001F600"},
        {"\xF3\xA0\x80\x81", u"\U000E0001"},
        {"\xF4\x8F\xBF\xBF", u"\U0010FFFF"},
    };
    for (auto const& [utf8, utf16] : cases)
    {
        EXPECT_EQ(Hex(UTF8to16(std::string_view(utf8))), Hex(U(utf16)));
        EXPECT_EQ(ToStdString(UTF16to8(U(utf16))), utf8) << Hex(U(utf16));
    }
}

TEST(StringsTest, MalformedUTF8BecomesReplacementCharactersAndKeepsTheRest)
{
    std::pair<std::string, std::u16string> const cases[] = {
        {"a\x80z", u"a\uFFFDz"},         // stray continuation
        {"\xFF\xFE", u"\uFFFD\uFFFD"},   // invalid lead
        {"ab\xE2\x82", u"ab\uFFFD"},     // truncated at the end
        {"\xE2\x82x", u"\uFFFDx"},       // truncated before ASCII
        {"\xC0\xAF!", u"\uFFFD!"},       // overlong slash
        {"\xED\xA0\x80", u"\uFFFD"},     // encoded surrogate
        {"\xF4\x90\x80\x80", u"\uFFFD"}, // beyond U+10FFFF
        {"\xE2\x82\xAC", u"\u20AC"}};    // a valid euro among them
    for (auto const& [bytes, expected] : cases)
        EXPECT_EQ(Hex(UTF8to16(std::string_view(bytes))), Hex(U(expected))) << Hex(U(expected));
}

TEST(StringsTest, UnpairedSurrogatesEncodeAsReplacement)
{
    UTF16String const lone = {'a', 0xD800, 'b', 0xDC00};
    EXPECT_EQ(ToStdString(UTF16to8(lone)), "a\xEF\xBF\xBD"
                                           "b\xEF\xBF\xBD");
    EXPECT_EQ(Hex(AsciiToUTF16("ok\xC3")), Hex(U(u"ok\uFFFD")));
    EXPECT_TRUE(AsciiToUTF16(static_cast<char const*>(nullptr)).empty());
}

TEST(StringsTest, FoldingIsFullAndLocaleIndependent)
{
    EXPECT_EQ(FoldCase(U(u"Straße")), U(u"strasse"));
    EXPECT_EQ(FoldCase(U(u"ΣΊΣΥΦΟΣ")), FoldCase(U(u"σίσυφος")));
    EXPECT_EQ(FoldCase(U(u"İstanbul")).substr(0, 1), U(u"i"));
    EXPECT_EQ(LowerCase(U(u"ÉCOLE")), U(u"école"));
}

TEST(StringsTest, SearchFormMatchesComposedDecomposedAndCompatibilityText)
{
    auto const search = [](std::u16string const& text)
    { return NormalizedString(FoldCase(U(text)), kNormalizationFormKC); };
    EXPECT_EQ(search(u"Cafe\u0301"), search(u"CAFÉ")); // decomposed vs composed
    EXPECT_EQ(search(u"\uFB01le"), search(u"FILE"));   // ligature fi
    EXPECT_EQ(search(u"\uFF21\uFF22"), search(u"ab")); // full-width letters
    EXPECT_EQ(NormalizedString(U(u"e\u0301"), kNormalizationFormC), U(u"\u00E9"));
    EXPECT_EQ(NormalizedString(U(u"\u00E9"), kNormalizationFormD), U(u"e\u0301"));
    EXPECT_EQ(NormalizedString(U(u"\uFB01"), kNormalizationFormKD), U(u"fi"));
}

TEST(StringsTest, TruncationNeverSplitsASurrogatePair)
{
    UTF16String const text = U(u"ab\U0001F600cd");
    EXPECT_EQ(TruncateStringToNumChars(text, 3), U(u"ab"));
    EXPECT_EQ(TruncateStringToNumChars(text, 4), U(u"ab\U0001F600"));
    EXPECT_EQ(TruncateStringToNumChars(text, 100), text);
    EXPECT_EQ(TruncateStringToNumChars(text, 0), UTF16String());
}

TEST(StringsTest, NumbersParseWithSpacesAndRejectJunk)
{
    double number = -1;
    EXPECT_TRUE(StringToNumber(U(u" 12.5 "), number));
    EXPECT_DOUBLE_EQ(number, 12.5);
    EXPECT_TRUE(StringToNumber(U(u"-3e2"), number));
    EXPECT_DOUBLE_EQ(number, -300);
    number = 7;
    EXPECT_FALSE(StringToNumber(U(u"12,5"), number));
    EXPECT_FALSE(StringToNumber(U(u""), number));
    EXPECT_FALSE(StringToNumber(U(u"1 2"), number));
    EXPECT_DOUBLE_EQ(number, 7) << "a failed parse leaves the number alone";
    EXPECT_TRUE(IsNumericChar('7'));
    EXPECT_TRUE(IsNumericChar('.'));
    EXPECT_FALSE(IsNumericChar('x'));
    EXPECT_FALSE(IsNumericChar(0x0660)); // Arabic-Indic zero is not typed into our fields
}
