#include "widgets/DateTextParsing.h"

#include "../tree/TreeTestSupport.h"

#include <gtest/gtest.h>

#include <array>

using namespace zephmetadataui;

using treetest::U16;
using zephcore::ToStdString;

TEST(DateTextParsingTest, AcceptsExactlyTheDocumentedForms)
{
    XMP_DateTime date;
    for (char const* text :
         {"2009", "2009/05", "2009-05-12", "2008/02/29", "2000/02/29", "2009/05/12 14:30",
          "2009/05/12T14:30:00", "2009/05/12 14", "2009/05/12 14;30;00", "2009/05/12 24:00:00",
          "2009/05/12 14:30:00.5", "2009/05/12 14:30:00 +02:00", "2009/05/12 14:30:00-05",
          "2009/05/12 14:30:00Z", " \t2009-05-12 \t"})
        EXPECT_TRUE(ParseDateText(U16(text), date)) << '"' << text << '"';
    for (char const* text :
         {"", " \t ", "abcd", "200", "20090", "2009/13", "2009/00", "2009/05-12", "2009/5/12",
          "2009/02/29", "1900/02/29", "2009/04/31", "2009/05/00", "2009/05/12x14:30"})
        EXPECT_FALSE(ParseDateText(U16(text), date)) << '"' << text << '"';
    for (char const* text :
         {"2009/05/12 14,30;00", "2009/05/12 24:00:01", "2009/05/12 25:00:00", "2009/05/12 14:60",
          "2009/05/12 1:30", "2009/05/12 14:30:00.1234567890", "2009/05/12 14:30:00.",
          "2009/05/12 14:30:00+0200", "2009/05/12 14:30:00 +24:00", "2009/05/12 14:30:00Zx",
          "2009/05/12 ab"})
        EXPECT_FALSE(ParseDateText(U16(text), date)) << '"' << text << '"';
}

TEST(DateTextParsingTest, StoredAndDisplayFormsRoundTrip)
{
    using Case = std::array<char const*, 3>; // typed, stored, shown
    for (auto const& [typed, stored, shown] :
         {Case{"2009", "2009", "2009"}, Case{"2009/05", "2009-05", "2009-05"},
          Case{"2009/05/12 14:30:05", "2009-05-12T14:30:05", "2009-05-12 14:30:05"},
          Case{"2009/05/12 14:30:00.25", "2009-05-12T14:30:00.25", "2009-05-12 14:30:00.25"},
          Case{"2009/05/12 14:30:00 +02:00", "2009-05-12T14:30+02:00", "2009-05-12 14:30 +02:00"},
          Case{"2009-05-12T14:30:07-05:00", "2009-05-12T14:30:07-05:00",
               "2009-05-12 14:30:07 -05:00"},
          Case{"2009-05-12 14:30:00 -05:30", "2009-05-12T14:30-05:30", "2009-05-12 14:30 -05:30"},
          // Z stores no zone.
          Case{"2009/05/12 14:30:00Z", "2009-05-12T14:30", "2009-05-12 14:30"}})
    {
        XMP_DateTime date, again;
        ASSERT_TRUE(ParseDateText(U16(typed), date)) << typed;
        EXPECT_EQ(ToStdString(ToStoredText(date)), stored) << typed;
        EXPECT_EQ(ToStdString(FormatForDisplay(date)), shown) << typed;
        // The display form reads back as the same date.
        ASSERT_TRUE(ParseDateText(FormatForDisplay(date), again)) << typed;
        EXPECT_EQ(ToStdString(ToStoredText(again)), stored) << typed;
    }
    EXPECT_EQ(ToStdString(FormatForDisplay(XMP_DateTime())), "") << "no date, no text";
}
