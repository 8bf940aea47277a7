#include "zephmetadata/Values.h"

#include "ModelTestSupport.h"
#include "zephmetadata/ErrorLog.h"
#include "zephmetadata/Model.h"
#include "zephmetadata/Templates.h"
#include "zephmetadata/XmpMeta.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <limits>
#include <numeric>
#include <tuple>
#include <variant>

using namespace zephmetadata;
using namespace modeltest;

constexpr char const* kIptcCore = "http://iptc.org/std/Iptc4xmpCore/1.0/xmlns/";
constexpr char const* kPlus = "http://ns.useplus.org/ldf/xmp/1.0/";

namespace
{

class ValuesTest : public ::testing::Test
{
protected:
    std::string T(char const* ns, std::string const& path) { return Text(meta.get(), P(ns, path)); }
    xmp::MetaPtr meta = Parse(EveryKindPacket());
};

// Every function of the family answers "nothing" for the tree and path.
void ExpectEveryFunctionRefuses(__XMPMeta__* meta, Path const& path)
{
    UTF8String text;
    double number = 0;
    bool flag = false;
    GetValueResult result = kGetValueRead;
    EXPECT_FALSE(GetValue(meta, path, text, &result));
    EXPECT_NE(result, kGetValueRead);
    EXPECT_FALSE(GetValue(meta, path, number, nullptr) || GetValue(meta, path, flag, nullptr));
    EXPECT_FALSE(SetValue(meta, path, U8("x")) || SetValue(meta, path, 1.5) ||
                 SetValue(meta, path, 2LL) || SetValue(meta, path, true));
    EXPECT_FALSE(DeleteValue(meta, path) || HasValue(meta, path));
    EXPECT_FALSE(AddArrayItem(meta, path, -1) || DeleteArrayItem(meta, path, 0));
    EXPECT_EQ(CountArrayItems(meta, path), 0);
}

} // namespace

TEST_F(ValuesTest, ReadsEveryKindAsTextOrSaysWhyNot)
{
    // Rows: a path of the every-kind packet, its text or why none came back,
    // and its count of items.
    std::tuple<char const*, char const*, char const*, GetValueResult, int> const cases[] = {
        {kXMP, "Rating", "3", kGetValueRead, 0},
        {kDC, "title", "Harbour", kGetValueRead, 3}, // the x-default item
        {kDC, "creator", "Ann; Bo", kGetValueRead, 2},
        // Separators and escapes inside items are escaped in the one text.
        {kDC, "subject", "sea; a\\;b; back\\\\slash", kGetValueRead, 3},
        {kDC, "subject[2]", "a;b", kGetValueRead, 0},
        {kDC, "creator[3]", "", kGetValueAbsent, 0},
        {kMM, "DerivedFrom/stRef:documentID", "doc-1", kGetValueRead, 0},
        {kMM, "History[2]/stEvt:action", "saved", kGetValueRead, 0},
        {kXMP, "Label", "", kGetValueAbsent, 0},
        {kMM, "DerivedFrom", "", kGetValueNotSimple, 0},
        {kMM, "History", "", kGetValueNotSimple, 3},
        {kPS, "Headline", "Storm; over the bay", kGetValueRead, 0},
    };
    for (auto const& [ns, path, text, expected, items] : cases)
    {
        SCOPED_TRACE(path);
        GetValueResult result = kGetValueMultiple;
        UTF8String value = U8("stale");
        EXPECT_EQ(GetValue(meta.get(), P(ns, path), value, &result), expected == kGetValueRead);
        EXPECT_EQ(S(value), text);
        EXPECT_EQ(result, expected);
        EXPECT_EQ(CountArrayItems(meta.get(), P(ns, path)), items);
        EXPECT_EQ(HasValue(meta.get(), P(ns, path)), expected != kGetValueAbsent);
    }
    // Numbers, rationals among them, and flags; text is neither.
    double number = 0;
    bool flag = false;
    EXPECT_TRUE(GetValue(meta.get(), P(kEXIF, "FNumber"), number, nullptr) &&
                GetValue(meta.get(), P(kDM, "good"), flag, nullptr) && flag);
    EXPECT_DOUBLE_EQ(number, 2.8);
    GetValueResult asNumber = kGetValueRead, asFlag = kGetValueRead;
    EXPECT_FALSE(GetValue(meta.get(), P(kPS, "Headline"), number, &asNumber) ||
                 GetValue(meta.get(), P(kPS, "Headline"), flag, &asFlag));
    EXPECT_EQ(std::pair(asNumber, asFlag), std::pair(kGetValueBadFormat, kGetValueBadFormat));
}

TEST_F(ValuesTest, SetValueAnswersTrueOnlyWhenTheStoredValueChanged)
{
    double const nan = std::nan(""), infinity = std::numeric_limits<double>::infinity();
    // Rows, written in order into one tree: a path, a value, whether the
    // tree changed, and the path's text afterwards.
    using Value = std::variant<char const*, double, long long, bool>;
    std::tuple<char const*, char const*, Value, bool, char const*> const cases[] = {
        {kPS, "Headline", "Storm; over the bay", false, "Storm; over the bay"},
        {kPS, "Headline", "Calm", true, "Calm"},
        // Numbers compare as numbers: "3" and 3.0 are one value.
        {kXMP, "Rating", 3.0, false, "3"},
        {kXMP, "Rating", 3LL, false, "3"},
        {kXMP, "Rating", 4LL, true, "4"},
        {kEXIF, "FNumber", 2.8, false, "28/10"},
        {kEXIF, "FNumber", infinity, false, "28/10"},
        {kEXIF, "FNumber", 0.1, true, "0.1"}, // the shortest text that reads back equal
        {kEXIF, "FNumber", 1.0 / 3.0, true, "0.3333333333333333"},
        {kXMP, "Rating", nan, true, ""}, // NaN removes a number
        {kDM, "good", true, false, "True"},
        {kDM, "good", false, true, "False"},
        // An item path changes only that item.
        {kDC, "creator[2]", "Bea", true, "Bea"},
        // A language alternative writes its default item only. (Three
        // languages: with two, the toolkit keeps the second equal by itself.)
        {kDC, "title", "Harbour", false, "Harbour"},
        {kDC, "title", "Haven", true, "Haven"},
        // A list edited in one cell, as it reads and with spaces and empty items.
        {kDC, "subject", "sea;a\\;b ;  back\\\\slash;;", false, "sea; a\\;b; back\\\\slash"},
        {kDC, "subject", "", true, ""},
        {kDC, "subject", "sea; sky", true, "sea; sky"},
        // Absent properties of published schemas are made in their form.
        {kDC, "rights", "CC-BY", true, "CC-BY"},
        {kDC, "contributor", "Cy; Di", true, "Cy; Di"},
        // ... and so are those known only from the definition files.
        {kIptcCore, "AltTextAccessibility", "A harbour at dawn", true, "A harbour at dawn"},
        {kPlus, "ImageAlterationConstraints", "AL-CRP; AL-FLP", true, "AL-CRP; AL-FLP"},
        {kPlus, "CopyrightOwner", "Ann", false, ""}, // a list of structures has no text form
        // Structures are written field by field.
        {kMM, "DerivedFrom", "text", false, ""},
        {kMM, "DerivedFrom/stRef:documentID", "doc-2", true, "doc-2"},
        {kMM, "History[3]/stEvt:action", "exported", true, "exported"},
    };
    int row = 0;
    for (auto const& [ns, path, value, changed, after] : cases)
    {
        SCOPED_TRACE("row " + std::to_string(row++) + ": " + path);
        Path const at = P(ns, path);
        EXPECT_EQ(std::visit(
                      [&](auto v)
                      {
                          if constexpr (std::is_same_v<decltype(v), char const*>)
                              return SetValue(meta.get(), at, U8(v));
                          else
                              return SetValue(meta.get(), at, v);
                      },
                      value),
                  changed);
        EXPECT_EQ(T(ns, path), after);
    }
    EXPECT_EQ(T(kDC, "title[2]") + T(kDC, "title[3]"), "HafenPort"); // other languages kept
    EXPECT_TRUE(xmp::IsAltText(OptionsOf(meta.get(), kDC, "rights")));
    EXPECT_TRUE(xmp::IsAltText(OptionsOf(meta.get(), kIptcCore, "AltTextAccessibility")));
    EXPECT_EQ(FormOf(meta.get(), kPlus, "ImageAlterationConstraints"), xmp::kArrayBag);
    EXPECT_EQ(FormOf(meta.get(), kDC, "creator"), xmp::kArraySeq);
    EXPECT_EQ(FormOf(meta.get(), kDC, "contributor"), xmp::kArrayBag);
    EXPECT_EQ(T(kMM, "DerivedFrom/stRef:instanceID"), "inst-1");
}

TEST_F(ValuesTest, TextThatIsNotUTF8IsRefusedWithAnErrorLogEntry)
{
    ClearErrors();
    for (char const* bad : {"\xFF", "caf\xC3", "\xC0\xAF", "\xED\xA0\x80", "\xF4\x90\x80\x80"})
    {
        EXPECT_FALSE(SetValue(meta.get(), P(kPS, "Headline"), U8(bad))) << bad;
        EXPECT_EQ(T(kPS, "Headline"), "Storm; over the bay");
    }
    std::vector<ErrorInfo> const errors = GetErrorInfos();
    ASSERT_EQ(errors.size(), 5u);
    EXPECT_EQ(errors[0].code, kErrorMetadataWrite);
    EXPECT_NE(zephcore::ToStdString(errors[0].source).find("Headline"), std::string::npos);
    // Every Unicode character is written, up to the last plane.
    EXPECT_TRUE(
        SetValue(meta.get(), P(kPS, "Headline"), U8("caf\xC3\xA9 \xE2\x82\xAC \xF4\x8F\xBF\xBD")));
    ClearErrors();
}

// DeleteValue answers true only when something went away.
TEST_F(ValuesTest, DeleteValueRemovesFieldsAndWholeProperties)
{
    EXPECT_TRUE(DeleteValue(meta.get(), P(kMM, "DerivedFrom/stRef:instanceID")));
    EXPECT_FALSE(DeleteValue(meta.get(), P(kMM, "DerivedFrom/stRef:instanceID")));
    EXPECT_TRUE(HasValue(meta.get(), P(kMM, "DerivedFrom")));
    EXPECT_TRUE(DeleteValue(meta.get(), P(kDC, "title")));
    EXPECT_FALSE(DeleteValue(meta.get(), P(kDC, "title")));
    EXPECT_FALSE(DeleteValue(meta.get(), Path()));
}

TEST(AddArrayItemTest, AddsAnEmptyItemAtTheZeroBasedPlaceOrRefusesPlacesOutside)
{
    // Rows: a place in dc:creator ("Ann; Bo"), and the list once the empty
    // item added there holds "_", or null when refused.
    std::pair<int, char const*> const cases[] = {{0, "_; Ann; Bo"}, {1, "Ann; _; Bo"},
                                                 {2, "Ann; Bo; _"}, {-1, "Ann; Bo; _"},
                                                 {3, nullptr},      {-2, nullptr}};
    for (auto const& [place, expected] : cases)
    {
        SCOPED_TRACE(place);
        xmp::MetaPtr meta = Parse(EveryKindPacket());
        ASSERT_EQ(AddArrayItem(meta.get(), P(kDC, "creator"), place), expected != nullptr);
        Path const added = P(kDC, "creator[" + std::to_string(place < 0 ? 3 : place + 1) + "]");
        EXPECT_EQ(Text(meta.get(), added), "");
        if (expected)
            SetValue(meta.get(), added, U8("_"));
        EXPECT_EQ(Text(meta.get(), P(kDC, "creator")), expected ? expected : "Ann; Bo");
    }
}

TEST_F(ValuesTest, ItemsAreInsertedAsStructuresAndDeletedAnywhere)
{
    // A structure inserted between two is the nested values' part.
    EXPECT_FALSE(AddArrayItem(meta.get(), P(kPS, "Headline"), 0)); // no array
    // An absent array of structures of a published schema starts with one,
    // in its form.
    for (auto const& [ns, path] : {std::pair(kDM, "Tracks"), std::pair(kPlus, "CopyrightOwner")})
    {
        ASSERT_TRUE(AddArrayItem(meta.get(), P(ns, path), -1));
        EXPECT_TRUE(xmp::IsStruct(OptionsOf(meta.get(), ns, path + std::string("[1]"))));
    }
    EXPECT_EQ(FormOf(meta.get(), kPlus, "CopyrightOwner"), xmp::kArraySeq);
    // Front, middle and end; nothing past the end.
    ASSERT_TRUE(SetValue(meta.get(), P(kDC, "subject"), U8("a; b; c; d; e")));
    std::pair<int, char const*> const deletions[] = {
        {0, "b; c; d; e"}, {1, "b; d; e"}, {2, "b; d"}};
    for (auto const& [place, after] : deletions)
    {
        EXPECT_TRUE(DeleteArrayItem(meta.get(), P(kDC, "subject"), place));
        EXPECT_EQ(T(kDC, "subject"), after);
    }
    EXPECT_FALSE(DeleteArrayItem(meta.get(), P(kDC, "subject"), 2) ||
                 DeleteArrayItem(meta.get(), P(kDC, "subject"), -1));
    EXPECT_EQ(T(kDC, "subject"), "b; d");
}

TEST(CountArrayItemsTest, CountsLongArraysExactly)
{
    xmp::MetaPtr meta = xmp::NewMeta();
    for (int count : {1, 2, 3, 7, 8, 9, 1000, 1025})
    {
        xmp::RemoveProperties(meta.get());
        for (int i = 0; i < count; ++i)
            ASSERT_TRUE(AddArrayItem(meta.get(), P(kDC, "subject"), -1));
        EXPECT_EQ(CountArrayItems(meta.get(), P(kDC, "subject")), count);
    }
}

TEST(NestedValuesTest, DeepPathsReadWriteAndGrowAtEveryLevel)
{
    xmp::MetaPtr meta = Parse(Packet(R"(<xmpDM:Tracks><rdf:Bag><rdf:li rdf:parseType="Resource">
 <xmpDM:markers><rdf:Seq><rdf:li rdf:parseType="Resource"><xmpDM:name>hello</xmpDM:name>
  <xmpDM:cuePointParams><rdf:Seq><rdf:li rdf:parseType="Resource"><xmpDM:value>Ann</xmpDM:value>
  </rdf:li></rdf:Seq></xmpDM:cuePointParams></rdf:li>
  <rdf:li rdf:parseType="Resource"><xmpDM:name>world</xmpDM:name></rdf:li>
 </rdf:Seq></xmpDM:markers></rdf:li></rdf:Bag></xmpDM:Tracks>)"));
    std::string const marker = "Tracks[1]/xmpDM:markers";
    auto const text = [&](std::string const& path) { return Text(meta.get(), P(kDM, path)); };
    EXPECT_EQ(text(marker + "[1]/xmpDM:cuePointParams[1]/xmpDM:value"), "Ann");
    // A marker inserted between the two, and filled.
    ASSERT_TRUE(AddArrayItem(meta.get(), P(kDM, marker), 1));
    EXPECT_TRUE(SetValue(meta.get(), P(kDM, marker + "[2]/xmpDM:name"), U8("brave")));
    EXPECT_EQ(text(marker + "[3]/xmpDM:name"), "world");
    // A cue point added to the new marker's own, absent, list.
    ASSERT_TRUE(AddArrayItem(meta.get(), P(kDM, marker + "[2]/xmpDM:cuePointParams"), -1));
    EXPECT_TRUE(
        SetValue(meta.get(), P(kDM, marker + "[2]/xmpDM:cuePointParams[1]/xmpDM:key"), U8("mood")));
    // Deleting the middle marker closes the gap.
    EXPECT_TRUE(DeleteArrayItem(meta.get(), P(kDM, marker), 1));
    EXPECT_EQ(text(marker + "[2]/xmpDM:name"), "world");
    EXPECT_EQ(CountArrayItems(meta.get(), P(kDM, marker)), 2);
}

// Paths that are no valid XMP paths, and no tree: every function answers
// "nothing" and leaves the tree as it was.
TEST_F(ValuesTest, EveryFunctionRefusesABadPathOrNoTreeWithoutHarm)
{
    std::string const before = Serialized(meta.get());
    for (char const* bad :
         {"subject[", "subject[0]", "subject[x]", "[1]", "/title", "title/", "unknownprefix:field",
          "subject[1]/?", "title[?xml:lang=]", "a b", "subject[-1]", "subject[99999999999]"})
    {
        SCOPED_TRACE(bad);
        ExpectEveryFunctionRefuses(meta.get(), P(kDC, bad));
        EXPECT_EQ(Serialized(meta.get()), before);
    }
    UTF8String value;
    EXPECT_FALSE(GetValue(meta.get(), Path(), value, nullptr)); // null result word is fine
    // No tree at all: the same.
    ExpectEveryFunctionRefuses(nullptr, P(kDC, "subject"));
    GetValueResult result = kGetValueRead;
    EXPECT_EQ(Text(nullptr, P(kXMP, "Rating"), &result), "");
    EXPECT_EQ(result, kGetValueNoMetadata);
}

TEST(ModelTest, StartAndStopAreCountedAndAFullRestartKnowsTheSchemasAgain)
{
    ASSERT_TRUE(IsInitialized()); // the test program started the model once
    Initialize();
    Terminate();
    EXPECT_TRUE(IsInitialized()); // the outer start still holds
    while (IsInitialized())
        Terminate();
    Terminate(); // a stray extra stop is ignored once the count is spent
    Initialize();
    ASSERT_TRUE(IsInitialized());
    // Field paths need the prefixes the definitions register.
    xmp::MetaPtr meta = xmp::NewMeta();
    ASSERT_TRUE(AddArrayItem(meta.get(), P(kPlus, "CopyrightOwner"), -1));
    EXPECT_TRUE(
        SetValue(meta.get(), P(kPlus, "CopyrightOwner[1]/plus:CopyrightOwnerName"), U8("Ann")));
}

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

// Replacing a destination's own value is the templates' part.
TEST(XmpMetaTest, CopiesKeepTheSourcesOrderAndAgainChangeNothing)
{
    xmp::MetaPtr const every = Parse(EveryKindPacket());
    auto const old = [] { return Parse(LabelPacket("Old")); };
    // Remove all then append all (the dialog's commit), and a copy of the
    // whole tree, leave the source's tree in its order. On real packets the
    // dialog's commit and the corpus round trip check the same.
    xmp::MetaPtr rebuilt = old();
    xmp::RemoveProperties(rebuilt.get());
    EXPECT_TRUE(xmp::AppendProperties(every.get(), rebuilt.get(), xmp::kAppendReplaceExisting));
    EXPECT_EQ(Flat(rebuilt.get()), Flat(every.get()));
    EXPECT_FALSE(xmp::AppendProperties(every.get(), rebuilt.get(), xmp::kAppendReplaceExisting));
    xmp::MetaPtr copied = old();
    EXPECT_TRUE(xmp::CopyTree(every.get(), copied.get()));
    EXPECT_EQ(Flat(copied.get()), Flat(every.get()));
    EXPECT_FALSE(xmp::CopyTree(nullptr, copied.get()));
    xmp::RemoveProperties(nullptr); // harmless
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
        // The tree as its own template changes nothing (the dialog never
        // passes a null tree).
        std::string const before = Serialized(destination.get());
        EXPECT_FALSE(ApplyTemplate(destination.get(), destination.get(), option));
        EXPECT_EQ(Serialized(destination.get()), before);
    }
}
