// XML names for custom schemas and properties: what passes, and what any
// typed text becomes, over tricky Unicode.

#include <zephmetadataui/XMLNames.h>

#include <gtest/gtest.h>

#include <string>

namespace
{

struct NameCase
{
    std::u16string text;
    std::u16string generated;
    bool valid; // whether the text itself is a valid name
};

class XMLNamesTest : public ::testing::TestWithParam<NameCase>
{
};

TEST_P(XMLNamesTest, GeneratesAValidNameOneUnitForOne)
{
    NameCase const& c = GetParam();
    zephcore::UTF16String const text(c.text.begin(), c.text.end());
    zephcore::UTF16String const name = zephmetadataui::GenerateXMLNameFromUnicodeString(text);
    EXPECT_EQ(std::u16string(name.begin(), name.end()), c.generated);
    EXPECT_EQ(zephmetadataui::VerifySimpleXMLName(text), c.valid);
    EXPECT_EQ(zephmetadataui::VerifySimpleXMLName(name), !c.text.empty());
}

INSTANTIATE_TEST_SUITE_P(
    Names, XMLNamesTest,
    ::testing::Values(
        NameCase{u"title", u"title", true}, NameCase{u"My Field", u"My_Field", false},
        NameCase{u"2nd", u"_nd", false}, NameCase{u"   ", u"___", false}, NameCase{u"", u"", false},
        // Names that begin with "xml" in any case, and the ones that do not.
        NameCase{u"xmlData", u"_xmlData", false}, NameCase{u"XML", u"_XML", false},
        NameCase{u"xMl-2", u"_xMl-2", false}, NameCase{u"xm", u"xm", true},
        NameCase{u"_xml", u"_xml", true}, NameCase{u"x:ml", u"x_ml", false},
        NameCase{u"dc:title", u"dc_title", false},
        // Characters allowed only after the first.
        NameCase{u"a-b.c9", u"a-b.c9", true}, NameCase{u"-a", u"_a", false},
        NameCase{u"\u00B7a\u00B7", u"_a\u00B7", false},
        NameCase{u"e\u0301t\u00E9", u"e\u0301t\u00E9", true}, NameCase{u"\u0301e", u"_e", false},
        NameCase{u"\u203Fa\u2040", u"_a\u2040", false},
        // Other scripts, the signs between their letters, joiners.
        NameCase{u"\u540D\u524D", u"\u540D\u524D", true},
        NameCase{u"\u00C0\u00D7\u00F7\u00FF", u"\u00C0__\u00FF", false},
        NameCase{u"\u037Ea\u037E", u"_a_", false},
        NameCase{u"\u200Ca\u200D", u"\u200Ca\u200D", true},
        // Narrower than XML 1.0: U+FDCF is the last, U+FDF0 to U+FFFD are out.
        NameCase{u"a\uFDCF", u"a\uFDCF", true}, NameCase{u"a\uFDF0\uFFFD", u"a__", false},
        // Outside the basic plane: one "_" for each surrogate.
        NameCase{u"a\U0001F600b", u"a__b", false}, NameCase{u"\U0001F600", u"__", false}));

} // namespace
