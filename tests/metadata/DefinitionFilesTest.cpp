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

#include <set>
#include <vector>

using namespace zephmetadata;
using namespace modeltest;

namespace
{

using DefinitionFilesTest = LoadedDefinitionTest;
using DefinitionFilesCorpusTest = LoadedDefinitionTest;

TEST_F(DefinitionFilesTest, LoadingTwiceChangesNothing)
{
    auto const first = NamespaceDefinition(U8("http://purl.org/dc/elements/1.1/"));
    std::size_t const count = boost::size(CommonSchemaDefinitions());
    LoadDefinitions();
    EXPECT_EQ(first, NamespaceDefinition(U8("http://purl.org/dc/elements/1.1/")));
    EXPECT_EQ(count, boost::size(CommonSchemaDefinitions()));
    EXPECT_FALSE(HasErrors()) << ErrorLogText();
}

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
