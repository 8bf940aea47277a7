#include "zephmetadata/Templates.h"

#include "zephmetadata/Values.h"

#include "ModelTestSupport.h"

#include <gtest/gtest.h>

using namespace zephmetadata;
using namespace modeltest;

namespace
{

// The values a template touches, flattened so one comparison shows them all.
std::string Summary(__XMPMeta__* meta)
{
    return "Label=" + Text(meta, P(kXMP, "Label")) + " Rating=" + Text(meta, P(kXMP, "Rating")) +
           " subject=" + Text(meta, P(kDC, "subject")) + " rights=" + Text(meta, P(kDC, "rights")) +
           " shot=" + Text(meta, P(kDM, "shotLocation")) +
           " id=" + Text(meta, P(kMM, "DocumentID")) +
           " derived=" + Text(meta, P(kMM, "DerivedFrom/stRef:documentID"));
}

xmp::MetaPtr Destination()
{
    return Parse(Packet(R"(<xmp:Label>Red</xmp:Label><xmp:Rating>2</xmp:Rating>
<xmpMM:DocumentID>xmp.did:1</xmpMM:DocumentID>
<dc:subject><rdf:Bag><rdf:li>sea</rdf:li><rdf:li>harbour</rdf:li></rdf:Bag></dc:subject>
<xmpMM:DerivedFrom rdf:parseType="Resource"><stRef:documentID>a</stRef:documentID>
</xmpMM:DerivedFrom>
<xmpDM:shotLocation>Pier</xmpDM:shotLocation>)"));
}

} // namespace

// Rows: an option, and the destination after the template is applied by it.
// The document's identity is never taken from a template.
TEST(ApplyTemplateTest, EachOptionAppliesOnceAndAgainChangesNothing)
{
    std::pair<TemplateImportOptions, char const*> const cases[] = {
        // The template's properties replace all but the document's identity.
        {kTemplateImportClearAndReplace,
         "Label=Blue Rating= subject=harbour; storm rights=CC shot= id=xmp.did:1 derived=a"},
        // Matching properties are overwritten whole, the others kept.
        {kTemplateImportKeepAndReplace,
         "Label=Blue Rating=2 subject=harbour; storm rights=CC shot=Pier id=xmp.did:1 derived=a"},
        // Missing items are added, simple values kept.
        {kTemplateImportKeepAndAppend, "Label=Red Rating=2 subject=sea; harbour; storm rights=CC "
                                       "shot=Pier id=xmp.did:1 derived=a"}};
    xmp::MetaPtr const source = Parse(Packet(R"(<xmp:Label>Blue</xmp:Label>
<dc:rights><rdf:Alt><rdf:li xml:lang="x-default">CC</rdf:li></rdf:Alt></dc:rights>
<xmpMM:DocumentID>xmp.did:template</xmpMM:DocumentID>
<dc:subject><rdf:Bag><rdf:li>harbour</rdf:li><rdf:li>storm</rdf:li></rdf:Bag></dc:subject>)"));
    for (auto const& [option, after] : cases)
    {
        SCOPED_TRACE(option);
        xmp::MetaPtr destination = Destination();
        EXPECT_TRUE(ApplyTemplate(destination.get(), source.get(), option));
        EXPECT_EQ(Summary(destination.get()), after);
        EXPECT_FALSE(ApplyTemplate(destination.get(), source.get(), option));
    }
}

TEST(ApplyTemplateTest, AppendMergesStructuresAndListsOfStructures)
{
    xmp::MetaPtr destination = Parse(Packet(R"(<xmpDM:Tracks><rdf:Bag>
<rdf:li rdf:parseType="Resource"><xmpDM:trackName>A</xmpDM:trackName></rdf:li>
</rdf:Bag></xmpDM:Tracks>
<xmpDM:projectRef rdf:parseType="Resource"><xmpDM:path>p</xmpDM:path></xmpDM:projectRef>)"));
    xmp::MetaPtr source = Parse(Packet(R"(<xmpDM:Tracks><rdf:Bag>
<rdf:li rdf:parseType="Resource"><xmpDM:trackName>A</xmpDM:trackName></rdf:li>
<rdf:li rdf:parseType="Resource"><xmpDM:trackName>B</xmpDM:trackName>
 <xmpDM:trackType>Speech</xmpDM:trackType></rdf:li>
</rdf:Bag></xmpDM:Tracks>
<xmpDM:projectRef rdf:parseType="Resource"><xmpDM:path>q</xmpDM:path><xmpDM:type>movie</xmpDM:type>
</xmpDM:projectRef>)"));
    EXPECT_TRUE(ApplyTemplate(destination.get(), source.get(), kTemplateImportKeepAndAppend));
    EXPECT_EQ(CountArrayItems(destination.get(), P(kDM, "Tracks")), 2);
    EXPECT_EQ(Text(destination.get(), P(kDM, "Tracks[2]/xmpDM:trackName")), "B");
    EXPECT_EQ(Text(destination.get(), P(kDM, "Tracks[2]/xmpDM:trackType")), "Speech");
    EXPECT_EQ(Text(destination.get(), P(kDM, "projectRef/xmpDM:path")), "p");
    EXPECT_EQ(Text(destination.get(), P(kDM, "projectRef/xmpDM:type")), "movie");
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
