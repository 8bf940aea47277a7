// Schemas that exist only for the object shown, and the display of a file.

#include "TreeTestSupport.h"

#include <zephmetadata/XmpMeta.h>

#include <boost/make_shared.hpp>

#include <QDir>
#include <QFile>
#include <QTemporaryDir>

using namespace treetest;

namespace
{

// A provider whose object has a schema of its own: "Live Beta", in Beta's
// namespace, holding the properties named at construction.
class LiveProvider : public zephmetadata::TypicalProviderImpl
{
public:
    explicit LiveProvider(std::vector<std::string> names) : names(std::move(names))
    {
        auto schema = boost::make_shared<zephmetadata::SchemaDefinition>();
        schema->label = U16("Live Beta");
        schema->schemaNamespace = Beta()->schemaNamespace;
        schema->schemaPrefix = Beta()->schemaPrefix;
        shared = schema;
        SetDynamicSchemaDefinitions({schema});
    }
    void GetAllPathsForDynamicSchema(
        zephmetadata::UTF8String const& schemaNamespace,
        std::vector<boost::shared_ptr<zephmetadata::PropertyDefinition>>& properties) override
    {
        ++asked;
        if (schemaNamespace != Beta()->schemaNamespace)
            return;
        for (auto const& property : Beta()->properties)
            for (std::string const& name : names)
                if (property->name == zephmetadata::UTF8String(name.begin(), name.end()))
                    properties.push_back(property);
    }

    std::vector<std::string> names;
    SchemaPtr shared;
    int asked = 0;
};

class MetadataViewDynamicTest : public TreeTest
{
};

} // namespace

TEST_F(MetadataViewDynamicTest, ADynamicSchemaComesUpOpenAfterTheStaticRows)
{
    auto const provider =
        boost::make_shared<LiveProvider>(std::vector<std::string>{"author", "headline"});
    ViewPtr const view = MakeView({Alpha()}, provider);
    // The first rebuild shows the one static schema without a row.
    EXPECT_EQ("  Title\n"
              "  Count\n"
              "  Keywords\n"
              "> Contact\n"
              "> Events\n"
              "  Approved\n"
              "  Dates\n"
              "v Live Beta\n"
              "    Headline\n"
              "    Author\n",
              DumpTree(view.get(), false));
    // The clone took the properties; the shared definition did not.
    EXPECT_TRUE(provider->shared->properties.empty());
    std::set<Path> included;
    view->GetIncludedPaths(included);
    EXPECT_EQ(15u, included.size());
    EXPECT_EQ(1u, included.count(BetaPath("headline")));
    EXPECT_EQ(1u, included.count(BetaPath("author")));
    EXPECT_EQ(0u, included.count(BetaPath("title")));

    // At the next rebuild the last clone stands among the display schemas
    // when the static ones are laid down, so the static schema gets a row;
    // the new clone opens again, also after a search.
    view->SetRapidFindString(U16("e"));
    view->SetRapidFindString(zephcore::UTF16String());
    EXPECT_EQ("> Tree Alpha\n"
              "v Live Beta\n"
              "    Headline\n"
              "    Author\n",
              DumpTree(view.get(), false));
}

TEST_F(MetadataViewDynamicTest, ASchemaWithoutPropertiesAddsNothing)
{
    auto const provider = boost::make_shared<LiveProvider>(std::vector<std::string>{});
    ViewPtr const view = MakeView({Alpha()}, provider);
    view->SetIncludedPaths({AlphaPath("title")});
    EXPECT_LE(1, provider->asked);
    EXPECT_EQ("  Title\n", DumpTree(view.get(), false));
    std::set<Path> included;
    view->GetIncludedPaths(included);
    EXPECT_EQ(std::set<Path>{AlphaPath("title")}, included);
}

TEST_F(MetadataViewDynamicTest, AnEmptyProviderTakesTheClonesAway)
{
    auto const provider = boost::make_shared<LiveProvider>(std::vector<std::string>{"author"});
    ViewPtr const view = MakeView({Alpha()}, provider);
    view->SetIncludedPaths({AlphaPath("title")});
    ASSERT_NE(std::string::npos, DumpTree(view.get(), false).find("Live Beta"));
    view->SetProvider(nullptr);
    // The last clone was still listed when the rows were laid down: Alpha
    // got a schema row; the clone itself is gone.
    EXPECT_EQ("> Tree Alpha\n", DumpTree(view.get(), false));
    view->SetProvider(nullptr);
    EXPECT_EQ("  Title\n", DumpTree(view.get(), false));
}

TEST_F(MetadataViewDynamicTest, DisablingDynamicSchemasKeepsTheLastClonesAsPlainSchemas)
{
    auto const provider = boost::make_shared<LiveProvider>(std::vector<std::string>{"author"});
    ViewPtr const view = MakeView({Alpha()}, provider);
    view->SetIncludedPaths({AlphaPath("title")});
    view->SetDisableDynamicSchema(true);
    EXPECT_TRUE(view->GetDisableDynamicSchema());
    view->SetProvider(nullptr);
    view->SetProvider(nullptr);
    EXPECT_EQ("> Tree Alpha\n"
              "v Live Beta\n"
              "    Author\n",
              DumpTree(view.get(), false));
    view->SetDisplaySchemas(zephmetadata::MakeSharedRange(std::vector<SchemaPtr>{Alpha()}));
    EXPECT_EQ(std::string::npos, DumpTree(view.get(), false).find("Live Beta"));
}

TEST_F(MetadataViewDynamicTest, ShowMetadataForFilePathReadsTheFileAndKeepsOpenedRows)
{
    QTemporaryDir folder;
    ASSERT_TRUE(folder.isValid());
    std::string const path = folder.filePath("clip.xmp").toStdString();
    {
        QFile file(QString::fromStdString(path));
        ASSERT_TRUE(file.open(QIODevice::WriteOnly));
        file.write(Packet(RichAlphaBody()).c_str());
    }
    ViewPtr const view = MakeView({Alpha()}, MakeProvider("<ta:title>Before</ta:title>"));
    Toggle(view.get(), "Contact");
    unsigned long const layouts = TreeOf(view.get())->GetLayoutCount();

    view->ShowMetadataForFilePath(zephcore::UTF16String());
    EXPECT_EQ(layouts, TreeOf(view.get())->GetLayoutCount());
    EXPECT_EQ("  Title = Before\n", DumpTree(view.get()).substr(0, 17));

    view->ShowMetadataForFilePath(U16(path));
    std::string const dump = DumpTree(view.get());
    EXPECT_EQ(0u, dump.find("  Title = Harbour at dawn\n"));
    EXPECT_NE(std::string::npos, dump.find("v Contact\n    City = Portree\n"));
}

TEST_F(MetadataViewDynamicTest, AFileThatCannotBeReadShowsRowsWithoutMetadata)
{
    ViewPtr const view = RichView();
    view->SetIncludedPaths({AlphaPath("title"), AlphaPath("events/ta:action")});
    view->ShowMetadataForFilePath(U16("/nonexistent/folder/clip.jpg"));
    EXPECT_EQ("  Title = \n> Events\n", DumpTree(view.get()));
}
