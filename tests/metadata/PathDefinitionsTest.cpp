// Paths over the published definitions: making them, walking them, and what
// definition and kind stand behind them.

#include "DefinitionTestSupport.h"

#include <set>
#include <vector>

namespace zephmetadata::test
{
namespace
{

char const* const kDC = "http://purl.org/dc/elements/1.1/";
char const* const kMM = "http://ns.adobe.com/xap/1.0/mm/";
char const* const kDM = "http://ns.adobe.com/xmp/1.0/DynamicMedia/";
char const* const kExif = "http://ns.adobe.com/exif/1.0/";
char const* const kExt = "http://iptc.org/std/Iptc4xmpExt/2008-02-29/";

class PathDefinitionsTest : public DefinitionTest
{
protected:
    void SetUp() override
    {
        DefinitionTest::SetUp();
        LoadDefinitions();
        ASSERT_FALSE(HasErrors()) << ErrorLogText();
    }

    static Path P(char const* ns, char const* name)
    {
        return PathForSchemaNameAndPropertyName(U8(ns), U8(name));
    }

    static std::vector<std::string> Names(IteratorRange<Path> const& range)
    {
        std::vector<std::string> names;
        for (Path const& path : range)
            names.push_back(S(path.propertyName));
        return names;
    }
};

TEST_F(PathDefinitionsTest, AnArrayItemAnswersWithTheArraysDefinition)
{
    Path const history = P(kMM, "History");
    Path const item = CreatePathFromArrayItem(history, 3);
    EXPECT_EQ(S(item.propertyName), "History[3]");
    auto const array = PathEntryDefinition(history);
    ASSERT_TRUE(array);
    EXPECT_EQ(PathEntryDefinition(item), array);
    EXPECT_EQ(S(PathEntryDefinition(item)->label), "History");
    // The item's type and kind are those of the element, a structure.
    EXPECT_EQ(S(TypeEntryDefinition(item)->name), "ResourceEvent");
    EXPECT_FALSE(PrimitiveTypeOfPath(item));
    EXPECT_EQ(*PrimitiveTypeOfPath(history), kPrimitiveOrderedArray);
    // An item of a list of simple values has the element's kind.
    Path const creator = CreatePathFromArrayItem(P(kDC, "creator"), 1);
    EXPECT_EQ(*PrimitiveTypeOfPath(creator), kPrimitiveText);
    EXPECT_EQ(S(PathEntryDefinition(creator)->name), "creator");
}

TEST_F(PathDefinitionsTest, AnArrayOfStructuresHasItsItemsFieldsAsChildren)
{
    // Named through the array, the fields are the definitions' paths: they
    // resolve to the field, but name no value.
    Path const tracks = P(kDM, "Tracks");
    EXPECT_EQ(Names(ChildPaths(tracks)),
              (std::vector<std::string>{"Tracks/xmpDM:trackName", "Tracks/xmpDM:trackType",
                                        "Tracks/xmpDM:frameRate", "Tracks/xmpDM:markers"}));
    Path const anyTrackName = *ChildPaths(tracks).begin();
    EXPECT_EQ(S(PathEntryDefinition(anyTrackName)->label), "Track Name");
    EXPECT_TRUE(IsPathOfAnyItem(anyTrackName));
    EXPECT_FALSE(IsPathOfAnyItem(tracks));
    Path const track = CreatePathFromArrayItem(tracks, 2);
    EXPECT_EQ(Names(ChildPaths(track)),
              (std::vector<std::string>{"Tracks[2]/xmpDM:trackName", "Tracks[2]/xmpDM:trackType",
                                        "Tracks[2]/xmpDM:frameRate", "Tracks[2]/xmpDM:markers"}));
    EXPECT_FALSE(IsPathOfAnyItem(*ChildPaths(track).begin()));
    // Markers of a track are an array of structures again.
    Path const markers = *std::prev(ChildPaths(track).end());
    EXPECT_EQ(Names(ChildPaths(markers)).front(), "Tracks[2]/xmpDM:markers/xmpDM:name");
    Path const marker = CreatePathFromArrayItem(markers, 1);
    EXPECT_EQ(S(marker.propertyName), "Tracks[2]/xmpDM:markers[1]");
    EXPECT_EQ(S(PathEntryDefinition(marker)->label), "Markers");
    EXPECT_EQ(Names(ChildPaths(marker)).front(), "Tracks[2]/xmpDM:markers[1]/xmpDM:name");
    // A list of simple values and a leaf have no children.
    EXPECT_TRUE(boost::empty(ChildPaths(P(kDC, "subject"))));
    EXPECT_TRUE(boost::empty(ChildPaths(P(kDC, "format"))));
    EXPECT_TRUE(boost::empty(ChildPaths(P(kDC, "nosuchproperty"))));
}

TEST_F(PathDefinitionsTest, StructureFieldsAreQualifiedWithTheirOwnPrefix)
{
    Path const derived = P(kMM, "DerivedFrom");
    std::vector<std::string> const fields = Names(ChildPaths(derived));
    ASSERT_GE(fields.size(), 3u);
    EXPECT_EQ(fields[0], "DerivedFrom/stRef:documentID");
    EXPECT_EQ(fields[1], "DerivedFrom/stRef:instanceID");
    auto const type = TypeEntryDefinition(derived);
    ASSERT_TRUE(type);
    ASSERT_TRUE(IsStructType(*type));
    Path const field = CreatePathFromStructureField(derived, type->fields[1]);
    EXPECT_EQ(S(field.propertyName), "DerivedFrom/stRef:instanceID");
    EXPECT_EQ(PathEntryDefinition(field), type->fields[1]);
    EXPECT_EQ(*PrimitiveTypeOfPath(field), kPrimitiveText);
    // A field from another namespace keeps that namespace's prefix.
    Path const location = CreatePathFromArrayItem(P(kExt, "LocationShown"), 1);
    std::vector<std::string> const locationFields = Names(ChildPaths(location));
    EXPECT_NE(std::find(locationFields.begin(), locationFields.end(),
                        "LocationShown[1]/exif:GPSLatitude"),
              locationFields.end());
}

TEST_F(PathDefinitionsTest, DescendantLeafPathsFollowDefinitionOrderDepthFirst)
{
    Path const version = CreatePathFromArrayItem(P(kMM, "Versions"), 1);
    std::vector<std::string> const leaves = Names(DescendantLeafPaths(version));
    std::vector<std::string> const expected = {
        "Versions[1]/stVer:version",
        "Versions[1]/stVer:comments",
        "Versions[1]/stVer:modifier",
        "Versions[1]/stVer:modifyDate",
        "Versions[1]/stVer:event/stEvt:action",
        "Versions[1]/stVer:event/stEvt:changed",
        "Versions[1]/stVer:event/stEvt:instanceID",
        "Versions[1]/stVer:event/stEvt:parameters",
        "Versions[1]/stVer:event/stEvt:softwareAgent",
        "Versions[1]/stVer:event/stEvt:when",
    };
    EXPECT_EQ(leaves, expected);
    EXPECT_TRUE(boost::empty(DescendantLeafPaths(P(kDC, "title"))));
}

TEST_F(PathDefinitionsTest, LeavesOfASchemaEnterStructuresAndArraysOfStructures)
{
    auto const mm = NamespaceDefinition(U8(kMM));
    ASSERT_TRUE(mm);
    std::vector<std::string> const leaves = Names(DescendantLeafPaths(mm));
    std::set<std::string> const set(leaves.begin(), leaves.end());
    EXPECT_TRUE(set.count("DocumentID"));
    EXPECT_FALSE(set.count("History"));                     // an array of structures is a group
    EXPECT_TRUE(set.count("History/stEvt:action"));         // of its item's fields
    EXPECT_TRUE(set.count("DerivedFrom/stRef:instanceID")); // a structure is entered
    EXPECT_FALSE(set.count("DerivedFrom"));
    EXPECT_EQ(leaves.front(), "DocumentID");
    // Every path of the schema's children is in declared order.
    std::vector<std::string> const children = Names(ChildPaths(mm));
    ASSERT_EQ(children.size(), mm->properties.size());
    for (std::size_t i = 0; i < children.size(); ++i)
        EXPECT_EQ(children[i], S(mm->properties[i]->name));
}

TEST_F(PathDefinitionsTest, RangesStayValidAfterTheRangeObjectIsGone)
{
    IteratorRange<Path>::iterator begin, end;
    {
        IteratorRange<Path> const range = ChildPaths(CreatePathFromArrayItem(P(kMM, "History"), 1));
        begin = range.begin();
        end = range.end();
    }
    ASSERT_NE(begin, end);
    EXPECT_EQ(S((*begin).propertyName), "History[1]/stEvt:action");
    auto last = end;
    --last;
    EXPECT_EQ(S((*last).propertyName), "History[1]/stEvt:when");
    EXPECT_EQ(std::distance(begin, end), 6);
}

TEST_F(PathDefinitionsTest, IsPathAnArrayTellsUnfoldingArraysFromListsInOneCell)
{
    EXPECT_TRUE(IsPathAnArray(P(kMM, "History"), false));  // structures
    EXPECT_TRUE(IsPathAnArray(P(kDC, "date"), false));     // dates are edited one by one
    EXPECT_FALSE(IsPathAnArray(P(kDC, "subject"), false)); // text, in one cell
    EXPECT_TRUE(IsPathAnArray(P(kDC, "subject"), true));
    EXPECT_FALSE(IsPathAnArray(P(kDC, "title"), false)); // a language alternative
    EXPECT_TRUE(IsPathAnArray(P(kDC, "title"), true));
    EXPECT_FALSE(IsPathAnArray(P(kDC, "format"), true));
    EXPECT_FALSE(IsPathAnArray(CreatePathFromArrayItem(P(kMM, "History"), 1), true));
    EXPECT_FALSE(IsPathAnArray(P(kDC, "nosuchproperty"), true));
}

TEST_F(PathDefinitionsTest, KindsAndTypesOfLeaves)
{
    EXPECT_EQ(*PrimitiveTypeOfPath(P(kDC, "title")), kPrimitiveAlternative);
    EXPECT_EQ(S(*PathEntryDefinition(P(kDC, "title"))->typeId), "langAlt");
    EXPECT_EQ(S(*ElementTypeIdOf(*PathEntryDefinition(P(kDC, "title")))), "text");
    EXPECT_EQ(*PrimitiveTypeOfPath(P(kExif, "ExposureProgram")), kPrimitiveClosedChoice);
    EXPECT_EQ(S(*ElementTypeIdOf(*PathEntryDefinition(P(kExif, "ExposureProgram")))), "integer");
    auto const rating = TypeEntryDefinition(P("http://ns.adobe.com/xap/1.0/", "Rating"));
    ASSERT_TRUE(rating);
    EXPECT_EQ(S(rating->name), "rating");
    EXPECT_EQ(*rating->primitiveType, kPrimitiveReal);
    EXPECT_EQ(*rating->maxValue, 5.0);
    EXPECT_FALSE(PrimitiveTypeOfPath(P(kMM, "DerivedFrom")));
    EXPECT_FALSE(PrimitiveTypeOfPath(P(kDC, "nosuchproperty")));
    EXPECT_FALSE(PrimitiveTypeOfPath(Path()));
    EXPECT_FALSE(PathEntryDefinition(P("http://example.com/unknown/", "title")));
    // A list of choices offers its element's choices.
    auto const constraints =
        PathEntryDefinition(P("http://ns.useplus.org/ldf/xmp/1.0/", "ImageAlterationConstraints"));
    ASSERT_TRUE(constraints);
    EXPECT_FALSE(constraints->choices.empty());
}

TEST_F(PathDefinitionsTest, PrimitiveTypeIdsMapBothWays)
{
    for (int i = kPrimitiveInteger; i <= kPrimitiveAlternative; ++i)
    {
        auto const type = static_cast<PrimitiveType>(i);
        UTF8String const id = PrimitiveTypeAsPrimitiveTypeId(type);
        ASSERT_FALSE(id.empty()) << i;
        EXPECT_EQ(*PrimitiveTypeIdAsPrimitiveType(id), type);
        EXPECT_EQ(PrimitiveTypeIsArray(type), i >= kPrimitiveUnorderedArray) << i;
        ASSERT_TRUE(TypeIdDefinition(id)) << S(id);
    }
    EXPECT_FALSE(PrimitiveTypeIdAsPrimitiveType(U8("date")));
    EXPECT_FALSE(PrimitiveTypeIdAsPrimitiveType(U8("")));
    EXPECT_TRUE(PrimitiveTypeAsPrimitiveTypeId(kPrimitiveStructure).empty());
    EXPECT_TRUE(IsSimpleType(*TypeIdDefinition(U8("date"))));
    EXPECT_FALSE(IsSimpleType(*TypeIdDefinition(U8("bag"))));
    EXPECT_FALSE(IsSimpleType(*TypeIdDefinition(U8("ResourceEvent"))));
    EXPECT_TRUE(IsStructType(*TypeIdDefinition(U8("ResourceEvent"))));
    EXPECT_FALSE(IsStructType(*TypeIdDefinition(U8("text"))));
}

TEST_F(PathDefinitionsTest, PathsOfAnUnregisteredSchemaCanBeLookedUpOnceMade)
{
    // A provider's dynamic schema is a clone with properties of its own.
    auto const clone = boost::make_shared<SchemaDefinition>(*NamespaceDefinition(U8(kDC)));
    auto extra = boost::make_shared<PropertyDefinition>();
    extra->name = U8("extraField");
    extra->label = zephcore::UTF8to16(std::string("Extra"));
    extra->typeId = U8("text");
    extra->primitiveType = kPrimitiveText;
    clone->properties.push_back(extra);
    Path const looked = PathForSchemaNameAndPropertyName(U8(kDC), U8("extraField"));
    EXPECT_FALSE(PathEntryDefinition(looked)); // unknown, and remembered as such
    Path const path = CreatePathFromSchemaProperty(clone, extra);
    EXPECT_EQ(PathEntryDefinition(looked), extra); // the memo learnt of it
    EXPECT_EQ(PathEntryDefinition(path), extra);
    EXPECT_EQ(*PrimitiveTypeOfPath(path), kPrimitiveText);
    // The published properties keep their own definitions.
    Path const title = CreatePathFromSchemaProperty(clone, clone->properties.front());
    EXPECT_EQ(PathEntryDefinition(title), NamespaceDefinition(U8(kDC))->properties.front());
    EXPECT_EQ(boost::size(DescendantLeafPaths(clone)),
              boost::size(DescendantLeafPaths(NamespaceDefinition(U8(kDC)))) + 1);
}

TEST_F(PathDefinitionsTest, ItemsOfAnyIndexShareOneAnswer)
{
    Path const tracks = P(kDM, "Tracks");
    for (int index : {1, 2, 20000})
    {
        Path const marker = CreatePathFromArrayItem(
            PathForSchemaNameAndPropertyName(
                U8(kDM), U8(("Tracks[" + std::to_string(index) + "]/xmpDM:markers").c_str())),
            index);
        EXPECT_EQ(S(PathEntryDefinition(marker)->label), "Markers") << index;
        EXPECT_EQ(S(TypeEntryDefinition(marker)->name), "Marker") << index;
        // An item of something that is no list names nothing.
        EXPECT_FALSE(PathEntryDefinition(
            CreatePathFromArrayItem(CreatePathFromArrayItem(tracks, index), 1)));
    }
    EXPECT_FALSE(PathEntryDefinition(P(kDM, "Tracks[1]/xmpDM:nosuchfield")));
    EXPECT_TRUE(PathEntryDefinition(P(kDM, "Tracks[7]/xmpDM:trackName")));
}

TEST_F(PathDefinitionsTest, QualifiersAndPrefixedFirstStepsResolve)
{
    EXPECT_TRUE(PathEntryDefinition(P(kDC, "dc:title")));
    EXPECT_TRUE(PathEntryDefinition(P(kDC, "title[?xml:lang=\"x-default\"]")));
    EXPECT_TRUE(PathEntryDefinition(P(kMM, "History[last()]/stEvt:when")));
    EXPECT_TRUE(PathEntryDefinition(P(kMM, "History/stEvt:when"))); // the field of any item
    EXPECT_FALSE(PathEntryDefinition(P(kDC, "subject/dc:nosuch"))); // a list of texts has no fields
    EXPECT_FALSE(PathEntryDefinition(P(kDC, "format[1]")));         // no list
    EXPECT_FALSE(PathEntryDefinition(P(kMM, "DerivedFrom/stRef:nosuchfield")));
}

} // namespace
} // namespace zephmetadata::test
