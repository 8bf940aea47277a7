// The row set of the property tree: which rows exist, their labels, values
// and counts, what a rebuild keeps, and edits that reach the packet.

#include "TreeTestSupport.h"

#include <zephmetadataui/ControlFactory.h>

#include <zephmetadata/Values.h>

#include <zephui/UI_ScrollView.h>

#include <boost/make_shared.hpp>

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

} // namespace

TEST_F(MetadataViewTest, OneSchemaShowsItsPropertiesAsTopRowsThatUnfoldWhenOpened)
{
    ViewPtr const view = RichView();
    EXPECT_EQ(kRichAlphaTopRows, DumpTree(view.get()));
    OpenAll(view.get());

    // Item rows follow the data; their fields come from the definitions,
    // present or not, and so does the structure "Place" inside each item.
    // Structures have no value: an array of structures edited as text lost
    // every item to a typed letter and an emptied field.
    std::string const place = "    v Place\n        City = \n        Phone = \n        Email = \n";
    EXPECT_EQ("  Title = Harbour at dawn\n  Count = 42\n  Keywords (2 entries) = sea; light\n"
              "v Contact\n    City = Portree\n    Phone = 555-0100\n    Email = \n"
              "v Events (2 entries)\n"
              "  v Events [1]\n      Action = created\n      When = 2024-05-01 10:30\n" +
                  place + "  v Events [2]\n      Action = edited\n      When = \n" + place +
                  "  Approved = [x]\n  Dates = \n",
              DumpTree(view.get()));
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

    // Adding Beta's leaves alone leaves its remembered count of 0 in force;
    // replacing the set as a whole forgets it.
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
    // Never an item's field: every simple field of an item has a row, a
    // structure inside one only with an included leaf (Place has none).
    view->SetIncludedPaths({AlphaPath("contact/ta:phone"), AlphaPath("events/ta:action")});
    OpenAll(view.get());
    EXPECT_EQ("v Contact\n    Phone = 555-0100\nv Events (3 entries)\n"
              "  v Events [1]\n      Action = step 1\n      When = 2024-05-01 10:30\n"
              "  v Events [2]\n      Action = step 2\n      When = \n"
              "  v Events [3]\n      Action = step 3\n",
              DumpTree(view.get()));

    // A structure without an included leaf has no row; the blacklist cleans
    // a set of included paths.
    view->SetIncludedPaths({AlphaPath("title"), AlphaPath("events[3]/ta:when")});
    EXPECT_EQ(std::set<Path>{AlphaPath("title")}, IncludedOf(view.get()));
    EXPECT_EQ("  Title = \n", DumpTree(view.get()));
}

TEST_F(MetadataViewTest, RemovingAndAppendingASchemaRow)
{
    ViewPtr const view = MakeView({Alpha(), Beta()}, MakeProvider(RichAlphaBody()));
    view->RemoveSchemaFromPropertiesTree(Beta());
    EXPECT_EQ("> Tree Alpha\n", DumpTree(view.get()));
    // Gone from the display list too: the next rebuild has one schema left,
    // whose properties become the top rows.
    view->RefilterMetadataFieldsForRapidFindString();
    EXPECT_EQ(kRichAlphaTopRows, DumpTree(view.get()));

    view->AppendSchemaToPropertiesTree(Beta(), true);
    std::string const dump = DumpTree(view.get());
    EXPECT_EQ(dump.size() - 60, dump.find("v Tree Beta\n"
                                          "    Headline = \n"
                                          "    Author = \n"
                                          "    Beta Title = \n"));
    EXPECT_EQ(1u, view->GetOpenedSchemaRows().count(Beta()));
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

TEST_F(MetadataViewTest, WithoutAProviderArraysHaveNoItemsAndRowsNoValues)
{
    ViewPtr const view = MakeView({Alpha()}, nullptr);
    EXPECT_EQ("  Title\n  Count\n  Keywords\n> Contact\n> Events\n  Approved\n  Dates\n",
              DumpTree(view.get()));
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

    // Items on screen know their fields (their triangles show); the others
    // wait until someone looks, and then show what any item shows.
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

TEST_F(MetadataViewTest, AnEditOfAnArrayReachesThePacketAndTheArrayCount)
{
    auto const provider = MakeProvider(RichAlphaBody());
    ViewPtr const view = MakeView({Alpha()}, provider);
    MetadataViewCell* const keywords = CellWithLabel(view.get(), "Keywords");
    TypeIntoValue(keywords, "sea; light; dusk");
    // The label's count follows the edit without a rebuild.
    EXPECT_EQ("Keywords (3 entries)", ControlText(keywords->GetChild_Label().get()));
    EXPECT_NE(std::string::npos, provider->SerializedPacket().find("dusk</rdf:li>"));
}

// An edit refreshes the rows of the paths tied to the edited one, so that
// a host that mirrors the value into them, after the rows' own controls
// heard of the change, shows the mirrored value at once.
TEST_F(MetadataViewTest, AnEditRefreshesTheRowsOfEquivalentPaths)
{
    auto const provider = MakeProvider("<ta:title>Old</ta:title><tb:headline>Old</tb:headline>");
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
}
