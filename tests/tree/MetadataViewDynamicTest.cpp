// Schemas that exist only for the object shown, and the display of a file.

#include "TreeTestSupport.h"

#include <boost/make_shared.hpp>

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
        if (schemaNamespace != Beta()->schemaNamespace)
            return;
        for (auto const& property : Beta()->properties)
            for (std::string const& name : names)
                if (property->name == zephmetadata::UTF8String(name.begin(), name.end()))
                    properties.push_back(property);
    }

    std::vector<std::string> names;
    SchemaPtr shared;
};

using MetadataViewDynamicTest = TreeTest;

} // namespace

TEST_F(MetadataViewDynamicTest, ADynamicSchemaComesUpOpenAfterTheStaticRows)
{
    auto const provider =
        boost::make_shared<LiveProvider>(std::vector<std::string>{"author", "headline"});
    ViewPtr const view = MakeView({Alpha()}, provider);
    // The first rebuild shows the one static schema without a row.
    EXPECT_EQ("  Title\n  Count\n  Keywords\n> Contact\n> Events\n  Approved\n  Dates\n"
              "v Live Beta\n    Headline\n    Author\n",
              DumpTree(view.get(), false));
    // The clone took the properties; the shared definition did not.
    EXPECT_TRUE(provider->shared->properties.empty());
    std::set<Path> included;
    view->GetIncludedPaths(included);
    for (char const* name : {"headline", "author"})
        EXPECT_EQ(1u, included.count(BetaPath(name))) << name;
    EXPECT_EQ(0u, included.count(BetaPath("title")));

    // At the next rebuild the last clone stands among the display schemas
    // when the static ones are laid down, so the static schema gets a row;
    // the new clone opens again, also after a search.
    view->SetRapidFindString(U16("e"));
    view->SetRapidFindString(zephcore::UTF16String());
    EXPECT_EQ("> Tree Alpha\nv Live Beta\n    Headline\n    Author\n", DumpTree(view.get(), false));
}

TEST_F(MetadataViewDynamicTest, WithoutAProviderTheClonesGoUnlessDynamicSchemasAreDisabled)
{
    for (bool const disabled : {false, true})
    {
        SCOPED_TRACE(disabled);
        auto const provider = boost::make_shared<LiveProvider>(std::vector<std::string>{"author"});
        ViewPtr const view = MakeView({Alpha()}, provider);
        view->SetIncludedPaths({AlphaPath("title")});
        view->SetDisableDynamicSchema(disabled);
        view->SetProvider(nullptr);
        // The last clone was still listed when the rows were laid down:
        // Alpha got a schema row.
        EXPECT_EQ(disabled ? "> Tree Alpha\nv Live Beta\n    Author\n" : "> Tree Alpha\n",
                  DumpTree(view.get(), false));
        view->SetProvider(nullptr);
        EXPECT_EQ(disabled ? "> Tree Alpha\nv Live Beta\n    Author\n" : "  Title\n",
                  DumpTree(view.get(), false));
    }
}

TEST_F(MetadataViewDynamicTest, ShowMetadataForFilePathReadsTheFileAndKeepsOpenedRows)
{
    QTemporaryDir folder;
    ASSERT_TRUE(folder.isValid());
    QFile file(folder.filePath("clip.xmp"));
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    file.write(Packet(RichAlphaBody()).c_str());
    file.close();
    ViewPtr const view = MakeView({Alpha()}, MakeProvider("<ta:title>Before</ta:title>"));
    view->SetIncludedPaths({AlphaPath("title"), AlphaPath("contact/ta:city")});
    Toggle(view.get(), "Contact");
    unsigned long const layouts = TreeOf(view.get())->GetLayoutCount();

    // No path: nothing changes.
    view->ShowMetadataForFilePath(zephcore::UTF16String());
    EXPECT_EQ(layouts, TreeOf(view.get())->GetLayoutCount());
    EXPECT_EQ("  Title = Before\nv Contact\n    City = \n", DumpTree(view.get()));

    view->ShowMetadataForFilePath(U16(file.fileName().toStdString()));
    EXPECT_EQ("  Title = Harbour at dawn\nv Contact\n    City = Portree\n", DumpTree(view.get()));
    // A file that cannot be read shows the rows without metadata.
    view->ShowMetadataForFilePath(U16("/nonexistent/folder/clip.jpg"));
    EXPECT_EQ("  Title = \nv Contact\n    City = \n", DumpTree(view.get()));
}
