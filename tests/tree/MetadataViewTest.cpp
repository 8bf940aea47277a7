// Which rows the property tree shows, what a rebuild keeps, edits, the rapid
// find, schemas that exist only for the object shown, and reading a file.

#include "TreeTestSupport.h"

#include <zephmetadataui/ControlFactory.h>

#include <zephmetadata/Values.h>

#include <zephui/UI_ScrollView.h>

#include <boost/make_shared.hpp>

#include <tuple>

#include <QFile>
#include <QTemporaryDir>

using namespace treetest;

namespace
{

using MetadataViewTest = TreeTest;

std::set<Path> IncludedOf(MetadataView* view)
{
    std::set<Path> paths;
    view->GetIncludedPaths(paths);
    return paths;
}

// A provider whose object has a schema of its own, "Live Beta", with the named
// properties of Beta.
class LiveProvider : public zephmetadata::TypicalProviderImpl
{
public:
    explicit LiveProvider(std::vector<std::string> names)
        : names(std::move(names)), shared(boost::make_shared<zephmetadata::SchemaDefinition>())
    {
        shared->label = U16("Live Beta");
        shared->schemaNamespace = Beta()->schemaNamespace;
        shared->schemaPrefix = Beta()->schemaPrefix;
        SetDynamicSchemaDefinitions({shared});
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
    boost::shared_ptr<zephmetadata::SchemaDefinition> shared;
};

using MetadataViewDynamicTest = TreeTest;
using MetadataViewFindTest = TreeTest;

} // namespace

TEST_F(MetadataViewTest, OneSchemaShowsItsPropertiesAsTopRowsAndValuesOnlyFromAProvider)
{
    ViewPtr const view = RichView();
    EXPECT_EQ(kRichAlphaTopRows, DumpTree(view.get()));
    OpenAll(view.get());

    // Items follow the data, their fields the definitions. Structures have no
    // value: edited as text, an array of structures lost every item.
    std::string const place = "    v Place\n        City = \n        Phone = \n        Email = \n";
    EXPECT_EQ("  Title = Harbour at dawn\n  Count = 42\n  Keywords (2 entries) = sea; light\n"
              "v Contact\n    City = Portree\n    Phone = 555-0100\n    Email = \n"
              "v Events (2 entries)\n"
              "  v Events [1]\n      Action = created\n      When = 2024-05-01 10:30\n" +
                  place + "  v Events [2]\n      Action = edited\n      When = \n" + place +
                  "  Approved = [x]\n  Dates = \n",
              DumpTree(view.get()));

    view->SetDisabledPaths({AlphaPath("title")});
    view->RefilterMetadataFieldsForRapidFindString();
    EXPECT_EQ(0u, DumpTree(view.get()).find("  Title = Harbour at dawn (greyed)\n  Count = 42\n"));

    // Without a provider: no values, no items.
    EXPECT_EQ("  Title\n  Count\n  Keywords\n> Contact\n> Events\n  Approved\n  Dates\n",
              DumpTree(MakeView({Alpha()}, nullptr).get()));
}

TEST_F(MetadataViewTest, SchemaRowsShowForSchemasWithIncludedLeavesAndAMemoKeepsThemApart)
{
    ViewPtr const view = MakeView({Alpha(), Beta()}, MakeProvider(RichAlphaBody()));
    EXPECT_EQ("> Tree Alpha\n> Tree Beta\n", DumpTree(view.get()));

    // Beta keeps its place in the display list without a row.
    view->SetIncludedPaths({AlphaPath("title")});
    OpenAll(view.get());
    std::string const alphaOnly = "v Tree Alpha\n    Title = Harbour at dawn\n";
    EXPECT_EQ(alphaOnly, DumpTree(view.get()));

    // Adding leaves keeps Beta's remembered count of 0; replacing the set not.
    view->AppendSchemaPropertiesToIncludedPaths(Beta());
    view->RefilterMetadataFieldsForRapidFindString();
    EXPECT_EQ(4u, IncludedOf(view.get()).size());
    EXPECT_EQ("> Tree Alpha\n", DumpTree(view.get()));
    view->SetIncludedPaths({AlphaPath("title"), BetaPath("author")});
    OpenAll(view.get());
    EXPECT_EQ(alphaOnly + "v Tree Beta\n    Author = \n", DumpTree(view.get()));

    // Removing a schema's properties removes its own leaves only.
    view->RemoveSchemaPropertiesFromIncludedPaths(Beta());
    EXPECT_EQ(std::set<Path>{AlphaPath("title")}, IncludedOf(view.get()));
}

TEST_F(MetadataViewTest, IncludedPathsNameDefinitionLeavesAndBlacklistedItemFieldsHaveNoRow)
{
    zephmetadataui::BlacklistPath(AlphaPath("events[3]/ta:when"));
    ViewPtr const view = MakeView(
        {Alpha()}, MakeProvider(EventsBody(3, 1) + "<ta:contact rdf:parseType=\"Resource\">"
                                                   "<ta:phone>555-0100</ta:phone></ta:contact>"));
    // Never an item's field: an item's simple fields all have rows, Place none.
    view->SetIncludedPaths({AlphaPath("contact/ta:phone"), AlphaPath("events/ta:action")});
    OpenAll(view.get());
    EXPECT_EQ("v Contact\n    Phone = 555-0100\nv Events (3 entries)\n"
              "  v Events [1]\n      Action = step 1\n      When = 2024-05-01 10:30\n"
              "  v Events [2]\n      Action = step 2\n      When = \n"
              "  v Events [3]\n      Action = step 3\n",
              DumpTree(view.get()));

    // The blacklist cleans included paths.
    view->SetIncludedPaths({AlphaPath("title"), AlphaPath("events[3]/ta:when")});
    EXPECT_EQ(std::set<Path>{AlphaPath("title")}, IncludedOf(view.get()));
    EXPECT_EQ("  Title = \n", DumpTree(view.get()));
}

TEST_F(MetadataViewTest, SuspendTreeRebuildCollapsesRequestsIntoOne)
{
    auto const first = MakeProvider("<ta:title>First</ta:title>");
    auto const second = MakeProvider("<ta:title>Second</ta:title>");
    ViewPtr const view = MakeView({Alpha()}, first);
    view->SetIncludedPaths({AlphaPath("title")});
    {
        MetadataView::SuspendTreeRebuild const outer(view.get());
        view->SetProvider(second);
        view->SetIncludedPaths({AlphaPath("title"), AlphaPath("count")});
        // Nothing rebuilt yet: the old rows and values stand.
        EXPECT_EQ("  Title = First\n", DumpTree(view.get()));
        {
            MetadataView::SuspendTreeRebuild const inner(view.get());
            view->SetProvider(first);
        }
        // The nested scope clears the flag at its own end and rebuilds there.
        EXPECT_EQ("  Title = First\n  Count = \xE2\x80\x94\n", DumpTree(view.get()));
        view->SetProvider(second);
        EXPECT_EQ("  Title = Second\n  Count = \xE2\x80\x94\n", DumpTree(view.get()));
    }
}

TEST_F(MetadataViewTest, ItemsOfALongListGetFieldRowsWhenNeededAndARebuildKeepsOpenedRows)
{
    // Markers of the published schema: no other test blacklists their fields.
    char const* const dynamicMedia = "http://ns.adobe.com/xmp/1.0/DynamicMedia/";
    std::string body;
    for (int i = 1; i <= 300; ++i)
        body += "<rdf:li rdf:parseType=\"Resource\"><xmpDM:name>word " + std::to_string(i) +
                "</xmpDM:name></rdf:li>";
    auto const provider = MakeProvider("<xmpDM:markers xmlns:xmpDM=\"" + std::string(dynamicMedia) +
                                       "\"><rdf:Seq>" + body + "</rdf:Seq></xmpDM:markers>");
    ViewPtr const view = MakeView({SchemaFor(dynamicMedia)}, provider, 500.0f, 300.0f);
    auto* tree = TreeOf(view.get());
    RowPtr const markers = RowWithLabel(view.get(), "Markers");
    ASSERT_TRUE(markers);
    tree->ToggleRowByUser(markers.get());
    tree->ScrollRowIntoView(markers, true, 0);
    ASSERT_EQ(markers->CountChildRows(), 300u);

    // Items off screen make their field rows when first looked at.
    EXPECT_FALSE(markers->GetChildRow(0)->HasDeferredChildRows());
    RowPtr const far = markers->GetChildRow(249);
    EXPECT_TRUE(far->HasDeferredChildRows());
    tree->ToggleRowByUser(far.get());
    tree->ScrollRowIntoView(far, true, 0);
    EXPECT_FALSE(far->HasDeferredChildRows());
    std::string const shown = DumpTree(view.get());
    EXPECT_NE(std::string::npos,
              shown.find("  v Markers [250]\n      Name = word 250\n      Start Time = \n"))
        << shown;
    EXPECT_NE(std::string::npos, shown.find("      GUID = \n  > Markers [251]\n"));

    // A rebuild keeps the opened rows and the scroll offset.
    tree->ScrollRowIntoView(far, true, 0);
    float const offset = tree->GetScrollView()->GetScrollPosition().y;
    ASSERT_GT(offset, 0.0f);
    view->SetProvider(provider);
    EXPECT_EQ(offset, tree->GetScrollView()->GetScrollPosition().y);
    EXPECT_EQ(shown, DumpTree(view.get()));
}

// An edit reaches the packet. A host that mirrors it into tied paths after
// their controls heard of the change: their rows are refreshed.
TEST_F(MetadataViewTest, AnEditReachesThePacketAndRefreshesTheRowsOfEquivalentPaths)
{
    auto const provider = MakeProvider(RichAlphaBody() + "<tb:headline>Old</tb:headline>");
    ViewPtr const view = MakeView({Alpha(), Beta()}, provider);
    auto const tied = boost::make_shared<std::set<Path>>(
        std::set<Path>{AlphaPath("title"), BetaPath("headline")});
    view->SetEquivalenceMap({{AlphaPath("title"), tied}, {BetaPath("headline"), tied}});
    OpenAll(view.get());
    MetadataViewCell* const headline = CellWithLabel(view.get(), "Headline");
    ASSERT_TRUE(headline && headline->GetChild_Value());

    auto const mirror = boost::make_shared<boost::function<void(__XMPMeta__*)>>(
        [](__XMPMeta__* meta)
        {
            zephmetadata::UTF8String text;
            if (zephmetadata::GetValue(meta, AlphaPath("title"), text, nullptr))
                zephmetadata::SetValue(meta, BetaPath("headline"), text);
        });
    provider->NotifyWhenMetaDataChanged(mirror);
    TypeIntoValue(CellWithLabel(view.get(), "Title"), "New");
    EXPECT_EQ("New", ControlText(headline->GetChild_Value().get()));
    mirror->clear();

    // An array's count follows the edit without a rebuild.
    MetadataViewCell* const keywords = CellWithLabel(view.get(), "Keywords");
    TypeIntoValue(keywords, "sea; light; dusk");
    EXPECT_EQ("Keywords (3 entries)", ControlText(keywords->GetChild_Label().get()));
    EXPECT_NE(std::string::npos, provider->SerializedPacket().find("dusk</rdf:li>"));
}

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
    std::set<Path> const included = IncludedOf(view.get());
    for (char const* name : {"headline", "author"})
        EXPECT_EQ(1u, included.count(BetaPath(name))) << name;
    EXPECT_EQ(0u, included.count(BetaPath("title")));

    // Later rebuilds find the last clone among the display schemas, so the
    // static schema gets a row; the new clone opens again, also after a search.
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
        // The last clone was still listed when the rows were laid down.
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
    QFile file(folder.filePath("clip.xmp"));
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    file.write(Packet(RichAlphaBody()).c_str());
    file.close();
    ViewPtr const view = MakeView({Alpha()}, MakeProvider("<ta:title>Before</ta:title>"));
    view->SetIncludedPaths({AlphaPath("title"), AlphaPath("contact/ta:city")});
    Toggle(view.get(), "Contact");
    unsigned long const layouts = TreeOf(view.get())->GetLayoutCount();

    view->ShowMetadataForFilePath(zephcore::UTF16String());
    EXPECT_EQ(layouts, TreeOf(view.get())->GetLayoutCount());
    EXPECT_EQ("  Title = Before\nv Contact\n    City = \n", DumpTree(view.get()));

    view->ShowMetadataForFilePath(U16(file.fileName().toStdString()));
    EXPECT_EQ("  Title = Harbour at dawn\nv Contact\n    City = Portree\n", DumpTree(view.get()));
    // A file that cannot be read shows the rows without metadata.
    view->ShowMetadataForFilePath(U16("/nonexistent/folder/clip.jpg"));
    EXPECT_EQ("  Title = \nv Contact\n    City = \n", DumpTree(view.get()));
}

TEST_F(MetadataViewFindTest, ASearchKeepsTheRowsWhoseLabelOrValueMatches)
{
    std::string const folding = "<ta:title>Stra\xC3\x9F"
                                "e</ta:title><ta:contact rdf:parseType=\"Resource\">"
                                "<ta:city>\xEF\xAC\x81sh market</ta:city></ta:contact>";
    std::string const dates = "<ta:dates><rdf:Seq><rdf:li>2024-01-02</rdf:li>"
                              "<rdf:li>2024-03-04</rdf:li></rdf:Seq></ta:dates>";
    std::string const datesKept = "v Dates (2 entries) = 2024-01-02; 2024-03-04\n"
                                  "    Dates [1] = 2024-01-02\n"
                                  "    Dates [2] = 2024-03-04\n";
    // A packet, a search, and the rows it keeps.
    for (auto const& [body, search, kept] :
         std::vector<std::tuple<std::string, char const*, std::string>>{
             // Case and compatibility forms fold ("fi" finds the ligature).
             {folding, "STRASSE",
              "  Title = Stra\xC3\x9F"
              "e\n"},
             {folding, "FISH", "v Contact\n    City = \xEF\xAC\x81sh market\n"},
             // White space is a real search.
             {RichAlphaBody(), " ",
              "  Title = Harbour at dawn\n  Keywords (2 entries) = sea; light\n"},
             // A group's label alone does not keep its row; an array of
             // structures stays by a field, with all its items, fields filtered.
             {RichAlphaBody(), "contact", ""},
             {RichAlphaBody(), "vents", ""},
             {RichAlphaBody(), "phone",
              "v Contact\n    Phone = 555-0100\nv Events (2 entries)\n"
              "  v Events [1]\n    v Place\n        Phone = \n"
              "  v Events [2]\n    v Place\n        Phone = \n"},
             // An array leaf stays by its label or any item, with all items.
             {dates, "ates", datesKept},
             {dates, "03-04", datesKept},
             {dates, "1999", ""},
         })
    {
        SCOPED_TRACE(search);
        ViewPtr const view = MakeView({Alpha()}, MakeProvider(body));
        view->SetRapidFindString(U16(search));
        EXPECT_EQ(kept, DumpTree(view.get()));
    }
}

TEST_F(MetadataViewFindTest, SchemasOpenedByTheHostDuringASearchShowAfterItTheUsersClicksDoNot)
{
    ViewPtr const view = MakeView({Alpha(), Beta()}, MakeProvider(RichAlphaBody()));
    view->SetRapidFindString(U16("title"));
    std::string const found = DumpTree(view.get());
    EXPECT_EQ("v Tree Alpha\n    Title = Harbour at dawn\nv Tree Beta\n    Beta Title = \n", found);
    view->SetOpenedSchemaRows({Beta()});
    EXPECT_EQ(found, DumpTree(view.get()));
    Toggle(view.get(), "Tree Alpha");
    Toggle(view.get(), "Tree Beta");
    EXPECT_EQ((std::set<SchemaPtr>{Beta()}), view->GetOpenedSchemaRows());

    view->SetRapidFindString(zephcore::UTF16String());
    EXPECT_EQ("> Tree Alpha\nv Tree Beta\n    Headline = \n    Author = \n    Beta Title = \n",
              DumpTree(view.get()));
}

TEST_F(MetadataViewFindTest, OpenedItemsSurviveAProviderWithFewerItems)
{
    auto const three = MakeProvider(EventsBody(3));
    ViewPtr const view = MakeView({Alpha()}, three);
    view->SetIncludedPaths({AlphaPath("events/ta:action")});
    Toggle(view.get(), "Events");
    Toggle(view.get(), "Events [3]");
    std::string const withThree = DumpTree(view.get());
    EXPECT_NE(std::string::npos, withThree.find("  v Events [3]\n      Action = step 3\n"));

    view->SetProvider(MakeProvider(EventsBody(1)));
    EXPECT_EQ("v Events (1 entries)\n  > Events [1]\n", DumpTree(view.get()));

    view->SetProvider(three);
    EXPECT_EQ(withThree, DumpTree(view.get()));
}

TEST_F(MetadataViewFindTest, AValueChangedInThePacketIsFoundByItsNewText)
{
    auto const provider = MakeProvider("<ta:title>Harbour</ta:title>");
    ViewPtr const view = MakeView({Alpha()}, provider);
    view->SetRapidFindString(U16("harb"));
    EXPECT_EQ("  Title = Harbour\n", DumpTree(view.get()));

    // A refilter reads values anew, even changed without a report.
    ASSERT_NO_FATAL_FAILURE(WriteValue(provider, AlphaPath("title"), "Lighthouse", false));
    view->RefilterMetadataFieldsForRapidFindString();
    EXPECT_EQ("", DumpTree(view.get()));
    view->SetRapidFindString(U16("light"));
    EXPECT_EQ("  Title = Lighthouse\n", DumpTree(view.get()));

    // Another provider is read afresh.
    view->SetProvider(MakeProvider("<ta:title>Lightship</ta:title>"));
    EXPECT_EQ("  Title = Lightship\n", DumpTree(view.get()));
}

TEST_F(MetadataViewFindTest, ARowThatStaysThroughAKeystrokeKeepsALiveValueAndClearingRestores)
{
    auto const provider = MakeProvider(RichAlphaBody());
    ViewPtr const view = MakeView({Alpha()}, provider);
    Toggle(view.get(), "Events");
    std::string const opened = "v Events (2 entries)\n  > Events [1]\n";
    ASSERT_NE(std::string::npos, DumpTree(view.get()).find(opened));
    view->SetRapidFindString(U16("h"));
    MetadataViewCell* const before = CellWithLabel(view.get(), "Title");
    ASSERT_TRUE(before && before->GetChild_Value());

    // A change of case does not rebuild; a kept row keeps its cell.
    unsigned long const layouts = TreeOf(view.get())->GetLayoutCount();
    view->SetRapidFindString(U16("H"));
    EXPECT_EQ(layouts, TreeOf(view.get())->GetLayoutCount());
    view->SetRapidFindString(U16("ha"));
    EXPECT_EQ("  Title = Harbour at dawn\n", DumpTree(view.get()));
    MetadataViewCell* const after = CellWithLabel(view.get(), "Title");
    EXPECT_EQ(before, after);

    // Its control still follows the packet.
    ASSERT_NO_FATAL_FAILURE(WriteValue(provider, AlphaPath("title"), "Harbour at dusk", true));
    ASSERT_TRUE(after && after->GetChild_Value());
    EXPECT_EQ("Harbour at dusk", ControlText(after->GetChild_Value().get()));

    // Clearing the search brings back the rows the user had opened.
    view->SetRapidFindString(zephcore::UTF16String());
    EXPECT_NE(std::string::npos, DumpTree(view.get()).find(opened));
}
