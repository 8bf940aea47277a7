// Paths over the published definitions: making them, walking them, and what
// definition and kind stand behind them.

#include "ModelTestSupport.h"
#include "zephmetadata/Settings.h"

#include <gtest/gtest.h>

#include <set>
#include <vector>

using namespace zephmetadata;
using namespace modeltest;

namespace
{

class PathDefinitionsTest : public LoadedDefinitionTest
{
protected:
    static Path P(char const* ns, std::string const& name)
    {
        return PathForSchemaNameAndPropertyName(U8(ns), U8(name.c_str()));
    }

    static std::vector<std::string> Names(IteratorRange<Path> const& range)
    {
        std::vector<std::string> names;
        for (Path const& path : range)
            names.push_back(S(path.propertyName));
        return names;
    }
};

TEST_F(PathDefinitionsTest, AnArrayItemAnswersWithTheArraysDefinitionAndTheElementsKind)
{
    Path const history = P(kMM, "History");
    Path const item = CreatePathFromArrayItem(history, 3);
    ASSERT_TRUE(PathEntryDefinition(history));
    EXPECT_EQ(PathEntryDefinition(item), PathEntryDefinition(history));
    // The item's type and kind are those of the element, a structure.
    EXPECT_EQ(S(TypeEntryDefinition(item)->name), "ResourceEvent");
    EXPECT_FALSE(PrimitiveTypeOfPath(item));
    EXPECT_EQ(*PrimitiveTypeOfPath(history), kPrimitiveOrderedArray);
    EXPECT_EQ(*PrimitiveTypeOfPath(CreatePathFromArrayItem(P(kDC, "creator"), 1)), kPrimitiveText);
}

TEST_F(PathDefinitionsTest, AnArrayOfStructuresHasItsItemsFieldsAsChildren)
{
    // Named through the array, the fields are the definitions' paths: they
    // resolve to the field, but name no value.
    Path const tracks = P(kDM, "Tracks");
    std::vector<std::string> const fields = {"trackName", "trackType", "frameRate", "markers"};
    std::vector<std::string> any, second;
    for (std::string const& field : fields)
    {
        any.push_back("Tracks/xmpDM:" + field);
        second.push_back("Tracks[2]/xmpDM:" + field);
    }
    EXPECT_EQ(Names(ChildPaths(tracks)), any);
    Path const anyTrackName = *ChildPaths(tracks).begin();
    EXPECT_EQ(S(PathEntryDefinition(anyTrackName)->label), "Track Name");
    EXPECT_TRUE(IsPathOfAnyItem(anyTrackName));
    EXPECT_FALSE(IsPathOfAnyItem(tracks));
    Path const track = CreatePathFromArrayItem(tracks, 2);
    EXPECT_EQ(Names(ChildPaths(track)), second);
    EXPECT_FALSE(IsPathOfAnyItem(*ChildPaths(track).begin()));
    // Markers of a track are an array of structures again.
    Path const marker = CreatePathFromArrayItem(*std::prev(ChildPaths(track).end()), 1);
    EXPECT_EQ(S(PathEntryDefinition(marker)->label), "Markers");
    EXPECT_EQ(Names(ChildPaths(marker)).front(), "Tracks[2]/xmpDM:markers[1]/xmpDM:name");
    // A list of simple values, a leaf and an unknown name have no children.
    for (char const* name : {"subject", "format", "nosuchproperty"})
        EXPECT_TRUE(boost::empty(ChildPaths(P(kDC, name)))) << name;
}

TEST_F(PathDefinitionsTest, StructureFieldsAreQualifiedWithTheirOwnPrefix)
{
    Path const derived = P(kMM, "DerivedFrom");
    auto const type = TypeEntryDefinition(derived);
    ASSERT_TRUE(type && IsStructType(*type));
    Path const field = CreatePathFromStructureField(derived, type->fields[1]);
    EXPECT_EQ(S(field.propertyName), "DerivedFrom/stRef:instanceID");
    EXPECT_EQ(Names(ChildPaths(derived))[1], S(field.propertyName));
    EXPECT_EQ(PathEntryDefinition(field), type->fields[1]);
    // A field from another namespace keeps that namespace's prefix.
    std::vector<std::string> const location = Names(ChildPaths(CreatePathFromArrayItem(
        P("http://iptc.org/std/Iptc4xmpExt/2008-02-29/", "LocationShown"), 1)));
    EXPECT_EQ(std::count(location.begin(), location.end(), "LocationShown[1]/exif:GPSLatitude"), 1);
}

TEST_F(PathDefinitionsTest, DescendantLeafPathsEnterStructuresDepthFirstInDefinitionOrder)
{
    std::vector<std::string> const version =
        Names(DescendantLeafPaths(CreatePathFromArrayItem(P(kMM, "Versions"), 1)));
    std::vector<std::string> expected;
    for (char const* field : {"version", "comments", "modifier", "modifyDate"})
        expected.push_back(std::string("Versions[1]/stVer:") + field);
    for (char const* field :
         {"action", "changed", "instanceID", "parameters", "softwareAgent", "when"})
        expected.push_back(std::string("Versions[1]/stVer:event/stEvt:") + field);
    EXPECT_EQ(version, expected);
    EXPECT_TRUE(boost::empty(DescendantLeafPaths(P(kDC, "title"))));
    // A schema's leaves: an array of structures is a group of its item's
    // fields, a structure is entered.
    auto const mm = NamespaceDefinition(U8(kMM));
    std::vector<std::string> const leaves = Names(DescendantLeafPaths(mm));
    std::set<std::string> const set(leaves.begin(), leaves.end());
    EXPECT_EQ(leaves.front(), "DocumentID");
    EXPECT_EQ(set.count("History") + set.count("DerivedFrom"), 0u);
    EXPECT_EQ(set.count("History/stEvt:action") + set.count("DerivedFrom/stRef:instanceID"), 2u);
    std::vector<std::string> declared;
    for (auto const& property : mm->properties)
        declared.push_back(S(property->name));
    EXPECT_EQ(Names(ChildPaths(mm)), declared);
}

TEST_F(PathDefinitionsTest, RangesStayValidAfterTheRangeObjectIsGone)
{
    IteratorRange<Path>::iterator begin, end;
    {
        IteratorRange<Path> const range = ChildPaths(CreatePathFromArrayItem(P(kMM, "History"), 1));
        begin = range.begin();
        end = range.end();
    }
    ASSERT_EQ(std::distance(begin, end), 6);
    EXPECT_EQ(S((*begin).propertyName), "History[1]/stEvt:action");
    EXPECT_EQ(S((*std::prev(end)).propertyName), "History[1]/stEvt:when");
}

TEST_F(PathDefinitionsTest, PrimitiveTypeIdsMapBothWaysAndUnknownPathsHaveNoKind)
{
    for (int i = kPrimitiveInteger; i <= kPrimitiveAlternative; ++i)
    {
        auto const type = static_cast<PrimitiveType>(i);
        UTF8String const id = PrimitiveTypeAsPrimitiveTypeId(type);
        EXPECT_EQ(*PrimitiveTypeIdAsPrimitiveType(id), type);
        EXPECT_EQ(PrimitiveTypeIsArray(type), i >= kPrimitiveUnorderedArray) << i;
        EXPECT_TRUE(TypeIdDefinition(id)) << S(id);
    }
    EXPECT_FALSE(PrimitiveTypeIdAsPrimitiveType(U8("date")));
    EXPECT_TRUE(PrimitiveTypeAsPrimitiveTypeId(kPrimitiveStructure).empty());
    EXPECT_TRUE(IsSimpleType(*TypeIdDefinition(U8("date"))));
    EXPECT_FALSE(IsSimpleType(*TypeIdDefinition(U8("bag"))));
    EXPECT_FALSE(PrimitiveTypeOfPath(P(kDC, "nosuchproperty")) || PrimitiveTypeOfPath(Path()));
    EXPECT_FALSE(PathEntryDefinition(P("http://example.com/unknown/", "title")));
}

TEST_F(PathDefinitionsTest, PathsOfAnUnregisteredSchemaCanBeLookedUpOnceMade)
{
    // A provider's dynamic schema is a clone with properties of its own.
    auto const dc = NamespaceDefinition(U8(kDC));
    auto const clone = boost::make_shared<SchemaDefinition>(*dc);
    auto extra = boost::make_shared<PropertyDefinition>();
    extra->name = U8("extraField");
    extra->typeId = U8("text");
    extra->primitiveType = kPrimitiveText;
    clone->properties.push_back(extra);
    Path const looked = P(kDC, "extraField");
    EXPECT_FALSE(PathEntryDefinition(looked)); // unknown, and remembered as such
    Path const path = CreatePathFromSchemaProperty(clone, extra);
    EXPECT_EQ(PathEntryDefinition(looked), extra); // the memo learnt of it
    EXPECT_EQ(*PrimitiveTypeOfPath(path), kPrimitiveText);
    // The published properties keep their own definitions.
    Path const title = CreatePathFromSchemaProperty(clone, clone->properties.front());
    EXPECT_EQ(PathEntryDefinition(title), dc->properties.front());
    EXPECT_EQ(boost::size(DescendantLeafPaths(clone)), boost::size(DescendantLeafPaths(dc)) + 1);
}

TEST_F(PathDefinitionsTest, QualifiersAndPrefixedFirstStepsResolve)
{
    EXPECT_TRUE(PathEntryDefinition(P(kDC, "dc:title")));
    EXPECT_TRUE(PathEntryDefinition(P(kDC, "title[?xml:lang=\"x-default\"]")));
    EXPECT_TRUE(PathEntryDefinition(P(kMM, "History[last()]/stEvt:when")));
    EXPECT_FALSE(PathEntryDefinition(P(kDC, "subject/dc:nosuch"))); // a list of texts has no fields
    EXPECT_FALSE(PathEntryDefinition(P(kDC, "format[1]")));         // no list
    EXPECT_FALSE(PathEntryDefinition(P(kMM, "DerivedFrom/stRef:nosuchfield")));
}

} // namespace

namespace
{

// Reads the file written with `xml`.
bool ReadText(std::set<Path>& paths, std::string const& xml)
{
    TempFolder folder;
    WriteFile(folder.File("a.xmp_view_settings.xml"), xml);
    return ReadIncludedLeafPathsAsXMLFile(paths, U16(folder.File("a.xmp_view_settings.xml")));
}

} // namespace

TEST(SettingsTest, IncludedPathsReadBackEqual)
{
    // Markup, accents, control characters, line ends and bytes that are not
    // UTF-8 all come back as they were.
    std::set<Path> paths = {P(kDC, "title"),
                            P(kDC, "subject"),
                            P(kMM, "History[1]/stEvt:action"),
                            P("urn:x-own:<&\">", "name \xC3\xA9"),
                            P("urn:x-own:", "bell\x07and\x01"),
                            P("urn:x-own:", "two\nlines\ttab"),
                            P("urn:x-own:\xFF\xFE", "latin \xE9")};
    Path flagged = P(kXMP, "Rating");
    flagged.readOnly = true;
    flagged.pathExtra1 = U8("one");
    flagged.pathExtra2 = U8("\x1F"
                            "extra");
    paths.insert(flagged);
    UTF8String xml;
    IncludedLeafPathsAsXMLString(paths, xml);
    std::set<Path> read;
    ASSERT_TRUE(ReadText(read, S(xml)));
    EXPECT_EQ(read, paths);
    auto const rating = read.find(flagged);
    ASSERT_NE(rating, read.end());
    EXPECT_TRUE(rating->readOnly && rating->pathExtra1 == flagged.pathExtra1 &&
                rating->pathExtra2 == flagged.pathExtra2);
    // An empty set is a valid file too, and replaces what was read before.
    IncludedLeafPathsAsXMLString({}, xml);
    EXPECT_TRUE(ReadText(read, S(xml)));
    EXPECT_TRUE(read.empty());
}

TEST(SettingsTest, MissingOrMalformedFilesAreRefusedAndLeaveTheSetAlone)
{
    std::set<Path> const original = {P(kDC, "title")};
    std::set<Path> read = original;
    EXPECT_FALSE(ReadIncludedLeafPathsAsXMLFile(read, U16(TempFolder().File("absent.xml"))));
    EXPECT_FALSE(ReadIncludedLeafPathsAsXMLFile(read, UTF16String()));
    EXPECT_FALSE(ReadText(read, ""));
    EXPECT_FALSE(ReadText(read, "<xmpViewSettings><path namespace=\"a\" property=\"b\">"));
    EXPECT_FALSE(ReadText(read, "<other/>"));
    EXPECT_FALSE(ReadText(read, "<xmpViewSettings><path property=\"b\"/></xmpViewSettings>"));
    EXPECT_FALSE(ReadText(read, "<xmpViewSettings><folder/></xmpViewSettings>"));
    EXPECT_FALSE(ReadText(
        read, "<xmpViewSettings><path namespace=\"a\" propertyHex=\"6g\"/></xmpViewSettings>"));
    EXPECT_FALSE(ReadText(read, "\x89PNG\r\n\x1a\n binary"));
    EXPECT_EQ(read, original);
}
