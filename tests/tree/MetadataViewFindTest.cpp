// The rapid find over labels and values, and opened rows across searches.

#include "TreeTestSupport.h"

using namespace treetest;

using MetadataViewFindTest = TreeTest;

TEST_F(MetadataViewFindTest, TypingNarrowsToMatchesAndClearingRestoresTheUsersRows)
{
    ViewPtr const view = RichView();
    Toggle(view.get(), "Events");
    std::string const before = DumpTree(view.get());
    EXPECT_NE(std::string::npos, before.find("v Events (2 entries)\n  > Events [1]\n"));
    for (char const* typed : {"P", "PO", "POR", "PORT"})
        view->SetRapidFindString(U16(typed));
    EXPECT_EQ("v Contact\n    City = Portree\n", DumpTree(view.get()));
    view->SetRapidFindString(zephcore::UTF16String());
    EXPECT_EQ(before, DumpTree(view.get()));
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
    struct Case
    {
        std::string body;
        char const* search;
        std::string kept;
    };
    for (Case const& c : std::vector<Case>{
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
        SCOPED_TRACE(c.search);
        ViewPtr const view = MakeView({Alpha()}, MakeProvider(c.body));
        view->SetRapidFindString(U16(c.search));
        EXPECT_EQ(c.kept, DumpTree(view.get()));
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

TEST_F(MetadataViewFindTest, ARowThatStaysThroughAKeystrokeKeepsALiveValue)
{
    auto const provider = MakeProvider(RichAlphaBody());
    ViewPtr const view = MakeView({Alpha()}, provider);
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

    // With other read-only paths the cell is made again, as a static value.
    view->SetReadOnlyPaths({AlphaPath("title")});
    view->SetRapidFindString(U16("har"));
    MetadataViewCell* const remade = CellWithLabel(view.get(), "Title");
    ASSERT_TRUE(remade && remade->GetChild_Value());
    EXPECT_FALSE(remade->GetChild_Value()->UI_WantsKeyboardFocus());
    EXPECT_EQ("Harbour at dusk", ControlText(remade->GetChild_Value().get()));
}
