#include "widgets/DateTextParsing.h"

#include <gtest/gtest.h>

using namespace zephmetadataui;

namespace
{

UTF16String U(std::string const& text)
{
    return zephcore::UTF8to16(std::string_view(text));
}
std::string S(UTF16String const& text)
{
    return zephcore::ToStdString(text);
}

struct DateCase
{
    char const* text;
    bool valid;
};

class DateTextValidityTest : public testing::TestWithParam<DateCase>
{
};

} // namespace

TEST_P(DateTextValidityTest, AcceptsExactlyTheDocumentedForms)
{
    XMP_DateTime date;
    EXPECT_EQ(ParseDateText(U(GetParam().text), date), GetParam().valid)
        << "\"" << GetParam().text << "\"";
}

INSTANTIATE_TEST_SUITE_P(
    Forms, DateTextValidityTest,
    testing::Values(
        DateCase{"2009", true}, DateCase{"2009/05", true}, DateCase{"2009-05-12", true},
        DateCase{"2009/05-12", false}, DateCase{"2009/5/12", false}, DateCase{"200", false},
        DateCase{"20090", false}, DateCase{"2009/13", false}, DateCase{"2009/00", false},
        DateCase{"2009/02/29", false}, DateCase{"2008/02/29", true}, DateCase{"1900/02/29", false},
        DateCase{"2000/02/29", true}, DateCase{"2009/04/31", false}, DateCase{"2009/05/00", false},
        DateCase{"2009/05/12 14:30", true}, DateCase{"2009/05/12T14:30:00", true},
        DateCase{"2009/05/12 14", true}, DateCase{"2009/05/12 14,30;00", false},
        DateCase{"2009/05/12 14;30;00", true}, DateCase{"2009/05/12 24:00:00", true},
        DateCase{"2009/05/12 24:00:01", false}, DateCase{"2009/05/12 25:00:00", false},
        DateCase{"2009/05/12 14:60", false}, DateCase{"2009/05/12 14:30:00.5", true},
        DateCase{"2009/05/12 14:30:00.1234567890", false}, DateCase{"2009/05/12 14:30:00.", false},
        DateCase{"2009/05/12 14:30:00 +02:00", true}, DateCase{"2009/05/12 14:30:00+0200", false},
        DateCase{"2009/05/12 14:30:00-05", true}, DateCase{"2009/05/12 14:30:00 +24:00", false},
        DateCase{"2009/05/12 14:30:00Z", true}, DateCase{"2009/05/12 14:30:00Zx", false},
        DateCase{"2009/05/12x14:30", false}, DateCase{"2009/05/12 1:30", false},
        DateCase{"", false}, DateCase{" \t ", false}, DateCase{" \t2009-05-12 \t", true},
        DateCase{"abcd", false}, DateCase{"2009/05/12 ab", false}));

TEST(DateTextParsingTest, StoredAndDisplayFormsRoundTrip)
{
    struct Case
    {
        char const* typed;
        char const* stored;
        char const* shown;
    };
    for (Case const c :
         {Case{"2009", "2009", "2009"}, Case{"2009/05", "2009-05", "2009-05"},
          Case{"2009/05/12", "2009-05-12", "2009-05-12"},
          Case{"2009/05/12 14:30", "2009-05-12T14:30", "2009-05-12 14:30"},
          Case{"2009/05/12 14:30:05", "2009-05-12T14:30:05", "2009-05-12 14:30:05"},
          Case{"2009/05/12 14:30:00.25", "2009-05-12T14:30:00.25", "2009-05-12 14:30:00.25"},
          Case{"2009/05/12 14:30:00 +02:00", "2009-05-12T14:30+02:00", "2009-05-12 14:30 +02:00"},
          Case{"2009-05-12T14:30:07-05:00", "2009-05-12T14:30:07-05:00",
               "2009-05-12 14:30:07 -05:00"},
          Case{"2009-05-12 14:30:00 -05:30", "2009-05-12T14:30-05:30", "2009-05-12 14:30 -05:30"},
          // Z stores no zone.
          Case{"2009/05/12 14:30:00Z", "2009-05-12T14:30", "2009-05-12 14:30"}})
    {
        XMP_DateTime date;
        ASSERT_TRUE(ParseDateText(U(c.typed), date)) << c.typed;
        EXPECT_EQ(S(ToStoredText(date)), c.stored) << c.typed;
        EXPECT_EQ(S(FormatForDisplay(date)), c.shown) << c.typed;
        XMP_DateTime again;
        EXPECT_TRUE(ParseDateText(FormatForDisplay(date), again))
            << "display form reads back: " << c.typed;
        EXPECT_EQ(S(ToStoredText(again)), c.stored);
    }
    EXPECT_EQ(S(FormatForDisplay(XMP_DateTime())), "") << "no date, no text";
}
