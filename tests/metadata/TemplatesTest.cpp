#include "zephmetadata/Templates.h"

#include "zephmetadata/Values.h"

#include "ModelTestSupport.h"

#include <gtest/gtest.h>

using namespace zephmetadata;
using namespace modeltest;

namespace
{

std::string Text(__XMPMeta__* meta, char const* ns, char const* name)
{
    UTF8String value;
    GetValue(meta, P(ns, name), value, nullptr);
    return S(value);
}

xmp::MetaPtr Destination()
{
    return Parse(Packet(
        "<xmp:Label>Red</xmp:Label><xmp:Rating>2</xmp:Rating>"
        "<xmpMM:DocumentID>xmp.did:1</xmpMM:DocumentID>"
        "<dc:subject><rdf:Bag><rdf:li>sea</rdf:li><rdf:li>harbour</rdf:li></rdf:Bag></dc:subject>"
        "<xmpMM:DerivedFrom rdf:parseType=\"Resource\"><stRef:documentID>a</stRef:documentID>"
        "</xmpMM:DerivedFrom>"
        "<xmpDM:shotLocation>Pier</xmpDM:shotLocation>"));
}

xmp::MetaPtr Template()
{
    return Parse(Packet(
        "<xmp:Label>Blue</xmp:Label><dc:rights><rdf:Alt><rdf:li xml:lang=\"x-default\">CC</rdf:li>"
        "</rdf:Alt></dc:rights>"
        "<xmpMM:DocumentID>xmp.did:template</xmpMM:DocumentID>"
        "<dc:subject><rdf:Bag><rdf:li>harbour</rdf:li><rdf:li>storm</rdf:li></rdf:Bag></"
        "dc:subject>"));
}

} // namespace

TEST(ApplyTemplateTest, ClearAndReplaceLeavesTheTemplatesPropertiesAndTheDocumentsIdentity)
{
    xmp::MetaPtr destination = Destination();
    xmp::MetaPtr source = Template();
    EXPECT_TRUE(ApplyTemplate(destination.get(), source.get(), kTemplateImportClearAndReplace));
    EXPECT_EQ(Text(destination.get(), kXMP, "Label"), "Blue");
    EXPECT_EQ(Text(destination.get(), kDC, "rights"), "CC");
    EXPECT_EQ(Text(destination.get(), kDC, "subject"), "harbour; storm");
    EXPECT_FALSE(HasValue(destination.get(), P(kXMP, "Rating")));
    EXPECT_FALSE(HasValue(destination.get(), P(kDM, "shotLocation")));
    EXPECT_EQ(Text(destination.get(), kMM, "DocumentID"), "xmp.did:1");
    EXPECT_TRUE(HasValue(destination.get(), P(kMM, "DerivedFrom/stRef:documentID")));
    // Applying it again changes nothing.
    EXPECT_FALSE(ApplyTemplate(destination.get(), source.get(), kTemplateImportClearAndReplace));
}

TEST(ApplyTemplateTest, KeepAndReplaceOverwritesMatchingPropertiesWhole)
{
    xmp::MetaPtr destination = Destination();
    xmp::MetaPtr source = Template();
    EXPECT_TRUE(ApplyTemplate(destination.get(), source.get(), kTemplateImportKeepAndReplace));
    EXPECT_EQ(Text(destination.get(), kXMP, "Label"), "Blue");
    EXPECT_EQ(Text(destination.get(), kXMP, "Rating"), "2");
    EXPECT_EQ(Text(destination.get(), kDC, "subject"), "harbour; storm");
    EXPECT_EQ(Text(destination.get(), kDC, "rights"), "CC");
    EXPECT_EQ(Text(destination.get(), kDM, "shotLocation"), "Pier");
    EXPECT_EQ(Text(destination.get(), kMM, "DocumentID"), "xmp.did:1");
    EXPECT_FALSE(ApplyTemplate(destination.get(), source.get(), kTemplateImportKeepAndReplace));
}

TEST(ApplyTemplateTest, KeepAndAppendAddsMissingItemsAndKeepsSimpleValues)
{
    xmp::MetaPtr destination = Destination();
    xmp::MetaPtr source = Template();
    EXPECT_TRUE(ApplyTemplate(destination.get(), source.get(), kTemplateImportKeepAndAppend));
    EXPECT_EQ(Text(destination.get(), kXMP, "Label"), "Red");
    EXPECT_EQ(Text(destination.get(), kDC, "subject"), "sea; harbour; storm");
    EXPECT_EQ(Text(destination.get(), kDC, "rights"), "CC");
    EXPECT_EQ(Text(destination.get(), kMM, "DocumentID"), "xmp.did:1");
    EXPECT_FALSE(ApplyTemplate(destination.get(), source.get(), kTemplateImportKeepAndAppend));
}

TEST(ApplyTemplateTest, AppendMergesStructuresAndListsOfStructures)
{
    xmp::MetaPtr destination =
        Parse(Packet("<xmpDM:Tracks><rdf:Bag><rdf:li "
                     "rdf:parseType=\"Resource\"><xmpDM:trackName>A</xmpDM:trackName>"
                     "</rdf:li></rdf:Bag></xmpDM:Tracks>"
                     "<xmpDM:projectRef "
                     "rdf:parseType=\"Resource\"><xmpDM:path>p</xmpDM:path></xmpDM:projectRef>"));
    xmp::MetaPtr source = Parse(
        Packet("<xmpDM:Tracks><rdf:Bag><rdf:li "
               "rdf:parseType=\"Resource\"><xmpDM:trackName>A</xmpDM:trackName>"
               "</rdf:li><rdf:li rdf:parseType=\"Resource\"><xmpDM:trackName>B</xmpDM:trackName>"
               "<xmpDM:trackType>Speech</xmpDM:trackType></rdf:li></rdf:Bag></xmpDM:Tracks>"
               "<xmpDM:projectRef "
               "rdf:parseType=\"Resource\"><xmpDM:path>q</xmpDM:path><xmpDM:type>movie</xmpDM:type>"
               "</xmpDM:projectRef>"));
    EXPECT_TRUE(ApplyTemplate(destination.get(), source.get(), kTemplateImportKeepAndAppend));
    EXPECT_EQ(CountArrayItems(destination.get(), P(kDM, "Tracks")), 2);
    EXPECT_EQ(Text(destination.get(), kDM, "Tracks[2]/xmpDM:trackName"), "B");
    EXPECT_EQ(Text(destination.get(), kDM, "Tracks[2]/xmpDM:trackType"), "Speech");
    EXPECT_EQ(Text(destination.get(), kDM, "projectRef/xmpDM:path"), "p");
    EXPECT_EQ(Text(destination.get(), kDM, "projectRef/xmpDM:type"), "movie");
}

TEST(ApplyTemplateTest, NullHandlesChangeNothing)
{
    xmp::MetaPtr destination = Destination();
    std::string const before = Serialized(destination.get());
    EXPECT_FALSE(ApplyTemplate(nullptr, destination.get(), kTemplateImportKeepAndAppend));
    EXPECT_FALSE(ApplyTemplate(destination.get(), nullptr, kTemplateImportClearAndReplace));
    EXPECT_FALSE(
        ApplyTemplate(destination.get(), destination.get(), kTemplateImportClearAndReplace));
    EXPECT_EQ(Serialized(destination.get()), before);
}
