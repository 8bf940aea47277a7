// The built-in definition files: they load without a single problem, and they
// hold the published schemas and the dialog's pages.

#include "Corpus.h"
#include "DefinitionTestSupport.h"

#include <zephmetadata/ViewDefinitions.h>

#include <exempi/xmp.h>

#include <set>
#include <vector>

namespace zephmetadata::test
{
namespace
{

using DefinitionFilesTest = DefinitionTest;
using DefinitionFilesCorpusTest = DefinitionTest;

TEST_F(DefinitionFilesTest, EveryBuiltInFileLoadsWithoutALogEntryAndLoadingTwiceChangesNothing)
{
    LoadDefinitions();
    EXPECT_FALSE(HasErrors()) << ErrorLogText();
    auto const first = NamespaceDefinition(U8("http://purl.org/dc/elements/1.1/"));
    std::size_t const count = boost::size(CommonSchemaDefinitions());
    LoadDefinitions();
    EXPECT_EQ(first, NamespaceDefinition(U8("http://purl.org/dc/elements/1.1/")));
    EXPECT_EQ(count, boost::size(CommonSchemaDefinitions()));
    EXPECT_FALSE(HasErrors()) << ErrorLogText();
}

TEST_F(DefinitionFilesTest, EveryStandardSchemaHasADefinitionExceptThoseNotShown)
{
    LoadDefinitions();
    std::set<StandardSchema> const withoutDefinition = {kStandardSchemaXMPBasicJobTicket,
                                                        kStandardSchemaXMPPagedText};
    for (int i = 0; i < kStandardSchemaCount; ++i)
    {
        auto const schema = static_cast<StandardSchema>(i);
        UTF8String const ns = StandardSchemaNamespace(schema);
        ASSERT_FALSE(ns.empty()) << i;
        if (withoutDefinition.count(schema))
            continue;
        auto const definition = NamespaceDefinition(ns);
        ASSERT_TRUE(definition) << S(ns);
        EXPECT_FALSE(definition->schemaFlag1) << S(ns);
        EXPECT_FALSE(definition->label.empty()) << S(ns);
        EXPECT_FALSE(definition->properties.empty()) << S(ns);
    }
    EXPECT_TRUE(StandardSchemaNamespace(StandardSchema(-1)).empty());
}

TEST_F(DefinitionFilesTest, SchemasComeInDisplayOrderWithDublinCoreFirst)
{
    LoadDefinitions();
    std::vector<std::string> prefixes;
    for (auto const& schema : CommonSchemaDefinitions())
        prefixes.push_back(S(schema->schemaPrefix));
    ASSERT_FALSE(prefixes.empty());
    EXPECT_EQ(prefixes.front(), "dc");
    auto const position = [&](char const* prefix)
    { return std::find(prefixes.begin(), prefixes.end(), prefix) - prefixes.begin(); };
    EXPECT_LT(position("xmp"), position("xmpMM"));
    EXPECT_LT(position("Iptc4xmpCore"), position("Iptc4xmpExt"));
    EXPECT_LT(position("exif"), position("tiff"));
    EXPECT_LT(position("plus"), static_cast<long>(prefixes.size()));
}

TEST_F(DefinitionFilesTest, LabelsComeFromLocaliserKeysWithEnglishDefaults)
{
    LoadDefinitions();
    auto const title = PathEntryDefinition(
        PathForSchemaNameAndPropertyName(U8("http://purl.org/dc/elements/1.1/"), U8("title")));
    ASSERT_TRUE(title);
    EXPECT_EQ(S(title->label), "Title");
    EXPECT_EQ(S(title->labelKey), "$$$/zephmetadata/Schema/dc/title=Title");
    EXPECT_EQ(S(title->descriptionKey).rfind("$$$/zephmetadata/Schema/dc/title/description=", 0),
              0u);
    auto const orientation = TypeIdDefinition(U8("orientation"));
    ASSERT_TRUE(orientation);
    ASSERT_FALSE(orientation->choices.empty());
    EXPECT_EQ(S(orientation->choices.front()->value), "1");
    EXPECT_EQ(S(orientation->choices.front()->label), "Normal");
}

TEST_F(DefinitionFilesTest, TheDialogsPagesHaveLabelsAndItems)
{
    LoadDefinitions();
    ASSERT_FALSE(boost::empty(CommonViewDefinitions()));
    for (auto const& view : CommonViewDefinitions())
    {
        EXPECT_FALSE(view->GetLabel().empty()) << S(view->name);
        EXPECT_FALSE(view->items.empty()) << S(view->name);
        EXPECT_FALSE(view->isRawView) << S(view->name);
    }
    // The raw page is the dialog's own, not a definition.
    EXPECT_FALSE(GetViewDefinitionForName(U8("com.velmora.xmp.view.rawdata")));
}

// Every value item of every page names a property that has a definition, so
// no page has a row that can never be built.
TEST_F(DefinitionFilesTest, EveryPathInEveryPageHasADefinition)
{
    LoadDefinitions();
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
                EXPECT_TRUE(PathEntryDefinition(path)) << S(path.propertyName);
                EXPECT_FALSE(item->GetLabel().empty()) << S(path.propertyName);
            }
            walk(item->items);
        }
    };
    for (auto const& view : CommonViewDefinitions())
        walk(view->items);
    EXPECT_GT(paths, 200);
}

// Choice kinds must state a simple element type, or the display filter
// would hide them.
TEST_F(DefinitionFilesTest, ChoicePropertiesHaveASimpleElementType)
{
    LoadDefinitions();
    int choices = 0;
    for (auto const& schema : CommonSchemaDefinitions())
    {
        for (Path const& path : DescendantLeafPaths(schema))
        {
            auto const kind = PrimitiveTypeOfPath(path);
            if (!kind || (*kind != kPrimitiveOpenChoice && *kind != kPrimitiveClosedChoice))
                continue;
            ++choices;
            auto const entry = PathEntryDefinition(path);
            auto const element = ElementTypeIdOf(*entry);
            ASSERT_TRUE(element) << S(path.propertyName);
            auto const simple = PrimitiveTypeIdAsPrimitiveType(*element);
            auto const type = TypeIdDefinition(*element);
            EXPECT_TRUE((simple && *simple <= kPrimitiveBoolean) || (type && IsSimpleType(*type)))
                << S(path.propertyName);
        }
    }
    EXPECT_GT(choices, 40);
}

// Real files written by other tools: every property they hold in a published
// schema has a definition, bar a few that no standard defines.
TEST_F(DefinitionFilesCorpusTest, PropertiesOfRealFilesHaveDefinitions)
{
    ZEPH_REQUIRE_CORPUS();
    std::filesystem::path const corpus = zephtest::CorpusDir();
    char const* const files[] = {"frameright-IPTC-PhotometadataRef-Std2021.1.jpg",
                                 "exiftool-XMP5.xmp",
                                 "exiftool-PLUS.xmp",
                                 "digikam-_27A1417.CR2.xmp",
                                 "exiftool-XMP.xmp",
                                 "mei-xmp480qt.mov",
                                 "music-metadata-riff_adobe_audition.wav"};
    LoadDefinitions();
    std::set<std::string> const nonStandard = {
        "plus:Custom1", "exif:SubSecTime", "exif:SubSecTimeOriginal", "exif:SubSecTimeDigitized"};
    int checked = 0;
    for (char const* name : files)
    {
        XmpFilePtr file = xmp_files_open_new((corpus / name).c_str(), XMP_OPEN_READ);
        ASSERT_TRUE(file) << name;
        XmpPtr xmp = xmp_files_get_new_xmp(file);
        xmp_files_close(file, XMP_CLOSE_NOOPTION);
        xmp_files_free(file);
        ASSERT_TRUE(xmp) << name;
        XmpIteratorPtr iterator = xmp_iterator_new(xmp, nullptr, nullptr, XMP_ITER_JUSTLEAFNODES);
        XmpStringPtr ns = xmp_string_new(), path = xmp_string_new(), value = xmp_string_new();
        uint32_t options = 0;
        while (xmp_iterator_next(iterator, ns, path, value, &options))
        {
            std::string const property = xmp_string_cstr(path);
            if ((options & XMP_PROP_IS_QUALIFIER) || property.empty() ||
                !NamespaceDefinition(U8(xmp_string_cstr(ns))))
                continue;
            if (nonStandard.count(property.substr(0, property.find('['))))
                continue;
            ++checked;
            EXPECT_TRUE(PathEntryDefinition(
                PathForSchemaNameAndPropertyName(U8(xmp_string_cstr(ns)), U8(property.c_str()))))
                << name << ": " << property;
        }
        xmp_string_free(ns);
        xmp_string_free(path);
        xmp_string_free(value);
        xmp_iterator_free(iterator);
        xmp_free(xmp);
    }
    EXPECT_GT(checked, 300);
}

} // namespace
} // namespace zephmetadata::test
