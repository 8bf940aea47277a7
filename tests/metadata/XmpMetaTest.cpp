#include "zephmetadata/XmpMeta.h"
#include "Corpus.h"

#include "zephmetadata/Templates.h"
#include "zephmetadata/Values.h"

#include "ModelTestSupport.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <numeric>

using namespace zephmetadata;
using namespace modeltest;

namespace
{

// Every node of a tree as text, one comparison for the whole tree; sorted,
// it survives a serialiser that puts a schema's properties in another order
// (item paths carry their index, so the order of items is still compared).
std::string Flat(__XMPMeta__* meta, bool sorted = false)
{
    std::vector<std::string> lines;
    xmp::Iterator iterator(meta, nullptr, nullptr);
    for (xmp::Node node; iterator.Next(node);)
        lines.push_back(node.schemaNamespace + " " + node.path + "=" + node.value + " " +
                        std::to_string(node.options) + "\n");
    if (sorted)
        std::sort(lines.begin(), lines.end());
    return std::accumulate(lines.begin(), lines.end(), std::string());
}

} // namespace

TEST(XmpMetaTest, ClonesAndSerialisedFormsGiveTheSameTree)
{
    xmp::MetaPtr meta = Parse(EveryKindPacket());
    xmp::MetaPtr copy = xmp::Clone(meta.get());
    EXPECT_EQ(Flat(copy.get()), Flat(meta.get()));
    SetValue(copy.get(), P(kXMP, "Rating"), U8("1"));
    EXPECT_NE(Flat(copy.get()), Flat(meta.get())); // independent
    for (auto form : {xmp::kSerializeCompact, xmp::kSerializeReadable, xmp::kSerializeNoWrapper})
    {
        std::string packet;
        ASSERT_TRUE(xmp::SerializeToBuffer(meta.get(), packet, form));
        EXPECT_EQ(packet.find("<?xpacket") != std::string::npos, form != xmp::kSerializeNoWrapper);
        xmp::MetaPtr again = xmp::ParseMeta(packet.data(), packet.size());
        ASSERT_TRUE(again);
        EXPECT_EQ(Flat(again.get(), true), Flat(meta.get(), true));
    }
    EXPECT_FALSE(xmp::Clone(nullptr));
    std::string buffer = "stale";
    EXPECT_FALSE(xmp::SerializeToBuffer(nullptr, buffer) || !buffer.empty());
}

TEST(XmpMetaTest, UnknownNamespaceIsRegisteredOnFirstWrite)
{
    xmp::MetaPtr meta = xmp::NewMeta();
    char const* ns = "http://example.com/ns/zeph-test-own/";
    EXPECT_TRUE(SetValue(meta.get(), P(ns, "colour"), U8("teal")));
    EXPECT_FALSE(xmp::NamespacePrefix(ns).empty());
    EXPECT_EQ(Text(meta.get(), P(ns, "colour")), "teal");
}

TEST(XmpMetaTest, ReadSubtreeReturnsTheNodeAndEverythingBelowInOrder)
{
    xmp::MetaPtr meta = Parse(EveryKindPacket());
    std::vector<xmp::Node> const nodes = xmp::ReadSubtree(meta.get(), kMM, "History");
    ASSERT_EQ(nodes.size(), 7u); // the array, three items, three fields
    EXPECT_TRUE(xmp::IsArray(nodes[0].options));
    EXPECT_EQ(nodes[2].path, "xmpMM:History[1]/stEvt:action");
    EXPECT_EQ(nodes[6].value, "converted");
    EXPECT_TRUE(xmp::ReadSubtree(meta.get(), kMM, "Absent").empty() &&
                xmp::ReadSubtree(nullptr, kMM, "History").empty());
    // Language qualifiers come along.
    std::vector<xmp::Node> const title = xmp::ReadSubtree(meta.get(), kDC, "title");
    ASSERT_GE(title.size(), 3u);
    EXPECT_EQ(title[2].path + "=" + title[2].value, "dc:title[1]/?xml:lang=x-default");
}

TEST(XmpMetaTest, CopiesReplaceOrAddPropertiesInOrderAndAgainChangeNothing)
{
    xmp::MetaPtr const every = Parse(EveryKindPacket());
    auto const old = [] { return Parse(LabelPacket("Old")); };
    // Remove all then append all (the dialog's commit), and a copy of the
    // whole tree, leave the source's tree in its order.
    xmp::MetaPtr rebuilt = old();
    xmp::RemoveProperties(rebuilt.get());
    EXPECT_TRUE(xmp::AppendProperties(every.get(), rebuilt.get(), xmp::kAppendReplaceExisting));
    EXPECT_EQ(Flat(rebuilt.get()), Flat(every.get()));
    EXPECT_FALSE(xmp::AppendProperties(every.get(), rebuilt.get(), xmp::kAppendReplaceExisting));
    xmp::MetaPtr copied = old();
    EXPECT_TRUE(xmp::CopyTree(every.get(), copied.get()));
    EXPECT_EQ(Flat(copied.get()), Flat(every.get()));
    EXPECT_FALSE(xmp::CopyTree(nullptr, copied.get()));
    // Replacing overwrites the destination's own value, adding keeps it.
    std::string const rated = "<xmp:Label>New</xmp:Label><xmp:Rating>4</xmp:Rating>";
    for (auto const& [mode, label] :
         {std::pair(xmp::kAppendReplaceExisting, "New"), std::pair(xmp::kAppendAddMissing, "Old")})
    {
        xmp::MetaPtr destination = old();
        xmp::MetaPtr const source = Parse(Packet(rated));
        EXPECT_TRUE(xmp::AppendProperties(source.get(), destination.get(), mode));
        xmp::MetaPtr const expected = Parse(LabelPacket(label));
        SetValue(expected.get(), P(kXMP, "Rating"), U8("4"));
        EXPECT_EQ(Flat(destination.get()), Flat(expected.get())) << label;
        EXPECT_FALSE(xmp::AppendProperties(source.get(), destination.get(), mode));
    }
    xmp::RemoveProperties(nullptr); // harmless
}

// Serialising them is the round-trip test's part.
TEST(XmpMetaCorpusTest, EverySidecarIsClonedAndCopiedWithoutLoss)
{
    namespace fs = std::filesystem;
    ZEPH_REQUIRE_CORPUS();
    int checked = 0;
    for (auto const& entry : fs::directory_iterator(zephtest::CorpusDir()))
    {
        auto const extension = entry.path().extension();
        std::string const packet = ReadFile(entry.path().string());
        xmp::MetaPtr meta = xmp::ParseMeta(packet.data(), packet.size());
        if ((extension != ".xmp" && extension != ".XMP") || !meta)
            continue;
        EXPECT_EQ(Flat(xmp::Clone(meta.get()).get()), Flat(meta.get())) << entry.path();
        // Remove all plus append all (the dialog's commit) loses nothing either.
        xmp::MetaPtr rebuilt = xmp::NewMeta();
        xmp::AppendProperties(meta.get(), rebuilt.get(), xmp::kAppendReplaceExisting);
        EXPECT_EQ(Flat(rebuilt.get()), Flat(meta.get())) << entry.path();
        ++checked;
    }
    EXPECT_GT(checked, 10);
}

TEST(XmpMetaTest, DamagedPacketsParseOrAreRefusedButNeverCrash)
{
    std::string const packet = EveryKindPacket();
    std::uint32_t seed = 12345;
    auto next = [&seed] { return seed = seed * 1664525u + 1013904223u; };
    int parsed = 0, refused = 0;
    for (int round = 0; round < 300; ++round)
    {
        std::string damaged = packet;
        for (int flips = 1 + static_cast<int>(next() % 4); flips > 0; --flips)
            damaged[next() % damaged.size()] = static_cast<char>(next() >> 24);
        if (round % 7 == 0)
            damaged.resize(next() % damaged.size()); // cut short
        xmp::MetaPtr meta = xmp::ParseMeta(damaged.data(), damaged.size());
        if (!meta)
        {
            ++refused;
            continue;
        }
        ++parsed;
        UTF8String text;
        GetValue(meta.get(), P(kDC, "subject"), text, nullptr);
        GetValue(meta.get(), P(kMM, "History[2]/stEvt:action"), text, nullptr);
        SetValue(meta.get(), P(kDC, "title"), U8("x"));
        AddArrayItem(meta.get(), P(kMM, "History"), 0);
        std::string out;
        EXPECT_TRUE(xmp::SerializeToBuffer(meta.get(), out));
    }
    EXPECT_GT(parsed, 0);
    EXPECT_GT(refused, 0);
}

namespace
{

// The values a template touches, flattened so one comparison shows them all.
std::string Summary(__XMPMeta__* meta)
{
    std::pair<char const*, char const*> const paths[] = {{kXMP, "Label"},
                                                         {kXMP, "Rating"},
                                                         {kDC, "subject"},
                                                         {kDC, "rights"},
                                                         {kDM, "shotLocation"},
                                                         {kMM, "DocumentID"},
                                                         {kMM, "DerivedFrom/stRef:documentID"},
                                                         {kDM, "Tracks"},
                                                         {kDM, "Tracks[2]/xmpDM:trackType"},
                                                         {kDM, "projectRef/xmpDM:path"},
                                                         {kDM, "projectRef/xmpDM:type"}};
    std::string text;
    for (auto const& [ns, path] : paths)
        text += Text(meta, P(ns, path)) + "|";
    return text + std::to_string(CountArrayItems(meta, P(kDM, "Tracks")));
}

std::string const kTracks = R"(<xmpDM:Tracks><rdf:Bag><rdf:li rdf:parseType="Resource">
<xmpDM:trackName>A</xmpDM:trackName></rdf:li>)";

} // namespace

// Rows: an option, and the destination after the template is applied by it.
// The document's identity is never taken from a template.
TEST(ApplyTemplateTest, EachOptionAppliesOnceAndAgainChangesNothing)
{
    std::pair<TemplateImportOptions, char const*> const cases[] = {
        // The template's properties replace all but the document's identity.
        {kTemplateImportClearAndReplace, "Blue||harbour; storm|CC||xmp.did:1|a||Speech|q|movie|2"},
        // Matching properties are overwritten whole, the others kept.
        {kTemplateImportKeepAndReplace,
         "Blue|2|harbour; storm|CC|Pier|xmp.did:1|a||Speech|q|movie|2"},
        // Missing items and fields are added, simple values kept.
        {kTemplateImportKeepAndAppend,
         "Red|2|sea; harbour; storm|CC|Pier|xmp.did:1|a||Speech|p|movie|2"}};
    xmp::MetaPtr const source = Parse(Packet(kTracks + R"(<rdf:li rdf:parseType="Resource">
<xmpDM:trackName>B</xmpDM:trackName><xmpDM:trackType>Speech</xmpDM:trackType></rdf:li></rdf:Bag>
</xmpDM:Tracks><xmpDM:projectRef rdf:parseType="Resource"><xmpDM:path>q</xmpDM:path>
<xmpDM:type>movie</xmpDM:type></xmpDM:projectRef><xmp:Label>Blue</xmp:Label>
<dc:rights><rdf:Alt><rdf:li xml:lang="x-default">CC</rdf:li></rdf:Alt></dc:rights>
<xmpMM:DocumentID>xmp.did:template</xmpMM:DocumentID>
<dc:subject><rdf:Bag><rdf:li>harbour</rdf:li><rdf:li>storm</rdf:li></rdf:Bag></dc:subject>)"));
    for (auto const& [option, after] : cases)
    {
        SCOPED_TRACE(option);
        xmp::MetaPtr destination = Parse(Packet(kTracks + R"(</rdf:Bag></xmpDM:Tracks>
<xmpDM:projectRef rdf:parseType="Resource"><xmpDM:path>p</xmpDM:path></xmpDM:projectRef>
<xmp:Label>Red</xmp:Label><xmp:Rating>2</xmp:Rating><xmpMM:DocumentID>xmp.did:1</xmpMM:DocumentID>
<dc:subject><rdf:Bag><rdf:li>sea</rdf:li><rdf:li>harbour</rdf:li></rdf:Bag></dc:subject>
<xmpMM:DerivedFrom rdf:parseType="Resource"><stRef:documentID>a</stRef:documentID>
</xmpMM:DerivedFrom><xmpDM:shotLocation>Pier</xmpDM:shotLocation>)"));
        EXPECT_TRUE(ApplyTemplate(destination.get(), source.get(), option));
        EXPECT_EQ(Summary(destination.get()), after);
        EXPECT_FALSE(ApplyTemplate(destination.get(), source.get(), option));
        // Null handles and the tree itself change nothing.
        std::string const before = Serialized(destination.get());
        EXPECT_FALSE(ApplyTemplate(nullptr, destination.get(), option) ||
                     ApplyTemplate(destination.get(), nullptr, option) ||
                     ApplyTemplate(destination.get(), destination.get(), option));
        EXPECT_EQ(Serialized(destination.get()), before);
    }
}
