// XML names for custom schemas and properties: what passes, and what any
// typed text becomes, over tricky Unicode.

#include <zephmetadataui/XMLNames.h>

#include <gtest/gtest.h>

#include <string>

// Each text, the name made of it one unit for one, and whether the text itself
// is a valid name; every name made of a text that is not empty is valid.
TEST(XMLNamesTest, GeneratesAValidNameOneUnitForOne)
{
    struct Case
    {
        std::u16string text, generated;
        bool valid;
    };
    using C = Case;
    Case const cases[] = {
        C{u"title", u"title", true}, C{u"My Field", u"My_Field", false}, C{u"2nd", u"_nd", false},
        C{u"   ", u"___", false}, C{u"", u"", false},
        // Names that begin with "xml" in any case, and the ones that do not.
        C{u"xmlData", u"_xmlData", false}, C{u"XML", u"_XML", false}, C{u"xMl-2", u"_xMl-2", false},
        C{u"xm", u"xm", true}, C{u"_xml", u"_xml", true}, C{u"x:ml", u"x_ml", false},
        C{u"dc:title", u"dc_title", false},
        // Characters allowed only after the first.
        C{u"a-b.c9", u"a-b.c9", true}, C{u"-a", u"_a", false},
        C{u"\u00B7a\u00B7", u"_a\u00B7", false}, C{u"e\u0301t\u00E9", u"e\u0301t\u00E9", true},
        C{u"\u0301e", u"_e", false}, C{u"\u203Fa\u2040", u"_a\u2040", false},
        // Other scripts, the signs between their letters, joiners.
        C{u"\u540D\u524D", u"\u540D\u524D", true},
        C{u"\u00C0\u00D7\u00F7\u00FF", u"\u00C0__\u00FF", false},
        C{u"\u037Ea\u037E", u"_a_", false}, C{u"\u200Ca\u200D", u"\u200Ca\u200D", true},
        // Narrower than XML 1.0: U+FDCF is the last, U+FDF0 to U+FFFD are out.
        C{u"a\uFDCF", u"a\uFDCF", true}, C{u"a\uFDF0\uFFFD", u"a__", false},
        // Outside the basic plane: one "_" for each surrogate.
        C{u"a\U0001F600b", u"a__b", false}, C{u"\U0001F600", u"__", false}};
    for (Case const& c : cases)
    {
        zephcore::UTF16String const text(c.text.begin(), c.text.end());
        zephcore::UTF16String const name = zephmetadataui::GenerateXMLNameFromUnicodeString(text);
        EXPECT_EQ(std::u16string(name.begin(), name.end()), c.generated);
        EXPECT_EQ(zephmetadataui::VerifySimpleXMLName(text), c.valid);
        EXPECT_EQ(zephmetadataui::VerifySimpleXMLName(name), !c.text.empty());
    }
}
