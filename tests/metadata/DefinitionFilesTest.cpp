// The built-in definition files: they load without a single problem (the
// fixture checks it), and they hold the published schemas and the dialog's
// pages.

#include "Corpus.h"
#include "ModelTestSupport.h"

#include <zephmetadata/Access.h>
#include <zephmetadata/FileProvider.h>
#include <zephmetadata/ViewDefinitions.h>
#include <zephmetadata/XmpMeta.h>

#include <boost/make_shared.hpp>

#include <algorithm>
#include <set>
#include <vector>

using namespace zephmetadata;
using namespace modeltest;

namespace
{

using DefinitionFilesTest = LoadedDefinitionTest;
using DefinitionFilesCorpusTest = LoadedDefinitionTest;

TEST_F(DefinitionFilesTest, EveryStandardSchemaHasADefinitionExceptThoseNotShown)
{
    std::set<StandardSchema> const withoutDefinition = {kStandardSchemaXMPBasicJobTicket,
                                                        kStandardSchemaXMPPagedText};
    for (int i = 0; i < kStandardSchemaCount; ++i)
    {
        UTF8String const ns = StandardSchemaNamespace(static_cast<StandardSchema>(i));
        ASSERT_FALSE(ns.empty()) << i;
        if (withoutDefinition.count(static_cast<StandardSchema>(i)))
            continue;
        auto const definition = NamespaceDefinition(ns);
        ASSERT_TRUE(definition) << S(ns);
        EXPECT_FALSE(definition->schemaFlag1 || definition->label.empty() ||
                     definition->properties.empty())
            << S(ns);
    }
}

// Every page has a label, and every value item of it names a property with a
// definition, so no page has a row that can never be built.
TEST_F(DefinitionFilesTest, EveryPageHasALabelAndEveryPathInItADefinition)
{
    int paths = 0;
    std::function<void(std::vector<boost::shared_ptr<ViewItem>> const&)> walk =
        [&](std::vector<boost::shared_ptr<ViewItem>> const& items)
    {
        for (auto const& item : items)
        {
            Path const& path = item->GetPath();
            if (!path.schemaNamespace.empty())
            {
                ++paths;
                EXPECT_TRUE(PathEntryDefinition(path) && !item->GetLabel().empty())
                    << S(path.propertyName);
            }
            walk(item->items);
        }
    };
    for (auto const& view : CommonViewDefinitions())
    {
        EXPECT_FALSE(view->GetLabel().empty() || view->items.empty()) << S(view->name);
        walk(view->items);
    }
    EXPECT_GT(paths, 200);
}

// Choice kinds must state a simple element type, or the display filter
// would hide them.
TEST_F(DefinitionFilesTest, ChoicePropertiesHaveASimpleElementType)
{
    int choices = 0;
    for (auto const& schema : CommonSchemaDefinitions())
        for (Path const& path : DescendantLeafPaths(schema))
        {
            auto const kind = PrimitiveTypeOfPath(path);
            if (!kind || (*kind != kPrimitiveOpenChoice && *kind != kPrimitiveClosedChoice))
                continue;
            ++choices;
            auto const element = ElementTypeIdOf(*PathEntryDefinition(path));
            ASSERT_TRUE(element) << S(path.propertyName);
            auto const simple = PrimitiveTypeIdAsPrimitiveType(*element);
            auto const type = TypeIdDefinition(*element);
            EXPECT_TRUE((simple && *simple <= kPrimitiveBoolean) || (type && IsSimpleType(*type)))
                << S(path.propertyName);
        }
    EXPECT_GT(choices, 40);
}

// Real files written by other tools: every property they hold in a published
// schema has a definition, bar a few that no standard defines.
TEST_F(DefinitionFilesCorpusTest, PropertiesOfRealFilesHaveDefinitions)
{
    ZEPH_REQUIRE_CORPUS();
    std::set<std::string> const nonStandard = {
        "plus:Custom1", "exif:SubSecTime", "exif:SubSecTimeOriginal", "exif:SubSecTimeDigitized"};
    int checked = 0;
    for (char const* name : {"frameright-IPTC-PhotometadataRef-Std2021.1.jpg", "exiftool-XMP5.xmp",
                             "exiftool-PLUS.xmp", "digikam-_27A1417.CR2.xmp", "exiftool-XMP.xmp",
                             "mei-xmp480qt.mov", "music-metadata-riff_adobe_audition.wav"})
    {
        auto const provider =
            boost::make_shared<FileProvider>(zephcore::UTF8to16(zephtest::CorpusFile(name)));
        MetaDataReadAccess access(provider);
        ASSERT_TRUE(*access) << name;
        xmp::Iterator iterator(*access, nullptr, nullptr, xmp::Iterator::kJustLeafNodes);
        for (xmp::Node node; iterator.Next(node);)
        {
            if ((node.options & xmp::kOptionIsQualifier) || node.path.empty() ||
                !NamespaceDefinition(U8(node.schemaNamespace.c_str())) ||
                nonStandard.count(node.path.substr(0, node.path.find('['))))
                continue;
            ++checked;
            EXPECT_TRUE(PathEntryDefinition(PathForSchemaNameAndPropertyName(
                U8(node.schemaNamespace.c_str()), U8(node.path.c_str()))))
                << name << ": " << node.path;
        }
    }
    EXPECT_GT(checked, 300);
}

} // namespace

// Bad definition files: each problem gives an error-log entry naming the file,
// and everything else in the files still loads.

namespace
{

using DefinitionLoaderTest = LoadedDefinitionTest;

char const* const kNamespace = "http://example.com/ns/test/1.0/";

Path TestPath(char const* name)
{
    return PathForSchemaNameAndPropertyName(U8(kNamespace), U8(name));
}

int EntriesFrom(std::filesystem::path const& file)
{
    std::vector<ErrorInfo> const infos = GetErrorInfos();
    return std::count_if(infos.begin(), infos.end(),
                         [&](ErrorInfo const& info) { return S(info.source) == file.string(); });
}

// Malformed, binary, empty, foreign and missing files: one entry each, no
// crash, and the good file beside them loads.
TEST_F(DefinitionLoaderTest, EachFileThatIsNoDefinitionsIsReportedAndTheOtherFilesLoad)
{
    std::filesystem::path const bad[] = {
        WriteFile("broken.xml", "<definitions><schema namespace=\"x\" prefix=\"x\">"),
        WriteFile("binary.xml", std::string("\x00\xff\xfe<\x01\x02", 6)),
        WriteFile("empty.xml", ""), WriteFile("other.xml", "<panel><item/></panel>"),
        folder / "missing.xml"};
    auto const good =
        WriteFile("good.xml", std::string("<definitions><schema namespace=\"") + kNamespace +
                                  "\" prefix=\"tst\"><property name=\"a\" type=\"text\"/>"
                                  "</schema></definitions>");
    std::vector<UTF16String> files = {U16(good)};
    for (auto const& file : bad)
        files.push_back(U16(file));
    EXPECT_EQ(LoadDefinitionFiles(files), 1);
    for (auto const& file : bad)
        EXPECT_EQ(EntriesFrom(file), 1) << file << "\n" << ErrorLogText();
    EXPECT_EQ(EntriesFrom(good), 0) << ErrorLogText();
    EXPECT_EQ(GetErrorInfos().front().code, kErrorDefinitionFile);
    EXPECT_FALSE(NamespaceDefinition(U8("x")));
    EXPECT_TRUE(PathEntryDefinition(TestPath("a")));
}

TEST_F(DefinitionLoaderTest, EachBadEntryIsReportedAndTheRestOfItsSchemaLoads)
{
    auto const dc = NamespaceDefinition(U8("http://purl.org/dc/elements/1.1/"));
    auto const file = WriteFile("entries.xml", std::string(R"(<definitions>
  <schema namespace=")") + kNamespace + R"(" prefix="tst" label="Test">
    <property name="good" type="text" label="Good"/> <property name="unknownType" type="nosuchtype"/>
    <property name="listWithoutElement" type="bag"/> <property name="good" type="integer"/>
    <property name="noType"/> <property type="text"/> <widget name="x"/>
    <property name="badNumber" type="integer" min="low"/>
    <property name="list" type="seq" elementType="nosuchelement"/>
    <property name="size" type="tstSize"/> <property name="loop" type="tstLoop"/>
    <property name="shape" type="tstShape"/>
  </schema>
  <type id="tstSize" base="integer" min="0" max="10"/> <type id="tstLoop" base="tstLoop"/>
  <type id="orientation" base="text"/>
  <struct id="tstShape" prefix="tstS"><field name="w" type="real"/></struct>
  <schema namespace="http://purl.org/dc/elements/1.1/" prefix="dc"><property name="x" type="text"/></schema>
</definitions>)");
    EXPECT_EQ(LoadDefinitionFiles({U16(file)}), 1);
    EXPECT_EQ(EntriesFrom(file), 14) << ErrorLogText();
    auto const schema = NamespaceDefinition(U8(kNamespace));
    ASSERT_TRUE(schema);
    std::vector<std::string> names;
    for (auto const& property : schema->properties)
        names.push_back(S(property->name));
    EXPECT_EQ(names, (std::vector<std::string>{"good", "size"}));
    auto const size = TypeIdDefinition(U8("tstSize"));
    ASSERT_TRUE(size);
    EXPECT_EQ(*size->primitiveType, kPrimitiveInteger);
    EXPECT_EQ(*size->maxValue, 10.0);
    // The published type and schema of those ids are kept, not replaced.
    EXPECT_EQ(*TypeIdDefinition(U8("orientation"))->primitiveType, kPrimitiveClosedChoice);
    EXPECT_EQ(NamespaceDefinition(U8("http://purl.org/dc/elements/1.1/")), dc);
}

TEST_F(DefinitionLoaderTest, TypesMayBeUsedBeforeTheyAreDeclaredInAnotherFile)
{
    UnloadDefinitions(); // the basic types too come from the second file
    auto const user =
        WriteFile("a.xml", std::string("<definitions><schema namespace=\"") + kNamespace +
                               "\" prefix=\"tst\"><property name=\"p\" type=\"later\"/>"
                               "<property name=\"s\" type=\"Later\"/></schema></definitions>");
    auto const types = WriteFile("b.xml", R"(<definitions>
  <type id="text" primitive="text"/> <type id="later" base="text"/>
  <struct id="Later" namespace="http://example.com/ns/later/" prefix="tstL"><field name="f" type="later"/></struct>
</definitions>)");
    EXPECT_EQ(LoadDefinitionFiles({U16(user), U16(types)}), 2);
    EXPECT_FALSE(HasErrors()) << ErrorLogText();
    EXPECT_EQ(*PrimitiveTypeOfPath(TestPath("p")), kPrimitiveText);
    std::vector<Path> const fields(ChildPaths(TestPath("s")).begin(),
                                   ChildPaths(TestPath("s")).end());
    ASSERT_EQ(fields.size(), 1u);
    EXPECT_EQ(S(fields[0].propertyName), "s/tstL:f");
}

TEST_F(DefinitionLoaderTest, ViewItemsWithUnknownPathsAreLeftOutAndReported)
{
    auto const file = WriteFile("view.xml", R"(<definitions><view id="test.view" label="Test">
  <item property="dc:title"/> <item property="nosuchprefix:title"/> <item property="title"/>
  <item property="dc:nosuchproperty"/> <gadget/>
  <section label="Group"><item property="dc:creator"/><item property="dc:alsoMissing"/></section>
</view></definitions>)");
    EXPECT_EQ(LoadDefinitionFiles({U16(file)}), 1);
    EXPECT_EQ(EntriesFrom(file), 5) << ErrorLogText();
    auto const view = GetViewDefinitionForName(U8("test.view"));
    ASSERT_TRUE(view);
    ASSERT_EQ(view->items.size(), 2u);
    EXPECT_EQ(S(view->items[0]->GetPath().propertyName), "title");
    ASSERT_EQ(view->items[1]->items.size(), 1u); // the section
    EXPECT_EQ(S(view->items[1]->items[0]->GetPath().propertyName), "creator");
}

// Hostile files: nesting and chains of derivation deep enough to exhaust the
// stack of a naive reader are refused with a report.
TEST_F(DefinitionLoaderTest, DeepNestingAndLongTypeChainsAreRefusedWithoutCrashing)
{
    std::string view =
        R"(<definitions><view id="test.deep" label="Deep"><item property="dc:title"/>)";
    for (int i = 0; i < 5000; ++i)
        view += "<section>";
    for (int i = 0; i < 5000; ++i)
        view += "</section>";
    view += "</view>";
    for (int i = 0; i < 300; ++i)
        view += "<type id=\"chain" + std::to_string(i) + "\" base=\"chain" + std::to_string(i + 1) +
                "\"/>";
    view += "<type id=\"chain300\" base=\"text\"/></definitions>";
    auto const file = WriteFile("deep.xml", view);
    EXPECT_EQ(LoadDefinitionFiles({U16(file)}), 1);
    EXPECT_GE(EntriesFrom(file), 2) << ErrorLogText();
    EXPECT_NE(ErrorLogText().find("nested deeper"), std::string::npos);
    EXPECT_NE(ErrorLogText().find("derives through more than"), std::string::npos);
    auto const deep = GetViewDefinitionForName(U8("test.deep"));
    ASSERT_TRUE(deep);
    EXPECT_EQ(S(deep->items.front()->GetPath().propertyName), "title");
    // The end of the chain is near enough to its base to load.
    ASSERT_TRUE(TypeIdDefinition(U8("chain299")));
    EXPECT_EQ(*TypeIdDefinition(U8("chain299"))->primitiveType, kPrimitiveText);
}

} // namespace
