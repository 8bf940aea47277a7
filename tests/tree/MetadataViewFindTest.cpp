// The rapid find: narrowing by folded and normalised text over labels and
// values, and the memory of opened rows across searches and providers.

#include "TreeTestSupport.h"

#include <zephmetadata/Access.h>
#include <zephmetadata/Values.h>

#include <QLineEdit>
#include <QObject>
#include <QTest>

using namespace treetest;

namespace
{

class MetadataViewFindTest : public TreeTest
{
};

} // namespace

TEST_F(MetadataViewFindTest, TypingNarrowsToMatchesAndClearingRestoresTheUsersRows)
{
    ViewPtr const view = RichView();
    Toggle(view.get(), "Events");
    std::string const before = DumpTree(view.get());

    // The host's search box hands each keystroke's text to the view.
    QLineEdit search;
    QObject::connect(&search, &QLineEdit::textChanged,
                     [&](QString const& text)
                     { view->SetRapidFindString(U16(text.toStdString())); });
    QTest::keyClicks(&search, "PORT");
    EXPECT_EQ("v Contact\n"
              "    City = Portree\n",
              DumpTree(view.get()));

    search.clear();
    EXPECT_EQ(before, DumpTree(view.get()));
    EXPECT_NE(std::string::npos, before.find("v Events (2 entries)\n  > Events [1]\n"));
}

TEST_F(MetadataViewFindTest, MatchingFoldsCaseAndCompatibilityForms)
{
    ViewPtr const view =
        MakeView({Alpha()}, MakeProvider("<ta:title>Stra\xC3\x9F"
                                         "e</ta:title>"
                                         "<ta:contact rdf:parseType=\"Resource\">"
                                         "<ta:city>\xEF\xAC\x81sh market</ta:city></ta:contact>"));
    view->SetRapidFindString(U16("STRASSE"));
    EXPECT_EQ("  Title = Stra\xC3\x9F"
              "e\n",
              DumpTree(view.get()));
    // The ligature "fi" is found by its two letters.
    view->SetRapidFindString(U16("FISH"));
    EXPECT_EQ("v Contact\n    City = \xEF\xAC\x81sh market\n", DumpTree(view.get()));
}

TEST_F(MetadataViewFindTest, AChangeOfCaseAloneDoesNotRebuild)
{
    ViewPtr const view = RichView();
    view->SetRapidFindString(U16("har"));
    MetadataViewCell* const cell = CellWithLabel(view.get(), "Title");
    ASSERT_TRUE(cell);
    unsigned long const layouts = TreeOf(view.get())->GetLayoutCount();
    view->SetRapidFindString(U16("HAR"));
    view->SetRapidFindString(U16("Har"));
    EXPECT_EQ(layouts, TreeOf(view.get())->GetLayoutCount());
    EXPECT_EQ(cell, CellWithLabel(view.get(), "Title"));
}

TEST_F(MetadataViewFindTest, WhiteSpaceIsARealSearch)
{
    ViewPtr const view = RichView();
    view->SetRapidFindString(U16(" "));
    EXPECT_EQ("  Title = Harbour at dawn\n"
              "  Keywords (2 entries) = sea; light\n",
              DumpTree(view.get()));
}

TEST_F(MetadataViewFindTest, AStructureLabelAloneDoesNotKeepItsRow)
{
    ViewPtr const view = RichView();
    view->SetRapidFindString(U16("contact"));
    EXPECT_EQ("", DumpTree(view.get()));
    // An array of structures is a group too: it stays through a field of
    // its definition, with all its items, and their fields are filtered.
    view->SetRapidFindString(U16("phone"));
    EXPECT_EQ("v Contact\n"
              "    Phone = 555-0100\n"
              "v Events (2 entries)\n"
              "  v Events [1]\n"
              "    v Place\n"
              "        Phone = \n"
              "  v Events [2]\n"
              "    v Place\n"
              "        Phone = \n",
              DumpTree(view.get()));
    view->SetRapidFindString(U16("vents"));
    EXPECT_EQ("", DumpTree(view.get()));
}

TEST_F(MetadataViewFindTest, AnArrayThatMatchesKeepsAllItsItems)
{
    ViewPtr const view = MakeView(
        {Alpha()}, MakeProvider("<ta:dates><rdf:Seq><rdf:li>2024-01-02</rdf:li><rdf:li>2024-03-04</"
                                "rdf:li></rdf:Seq></ta:dates>"));
    // An array that is a leaf of the definitions stays by its label, and
    // its items are never filtered.
    view->SetRapidFindString(U16("ates"));
    EXPECT_EQ("v Dates (2 entries)\n"
              "    Dates [1]\n"
              "    Dates [2]\n",
              DumpTree(view.get(), false));
    // A value of the second item keeps the first one too.
    view->SetRapidFindString(U16("03-04"));
    EXPECT_EQ("v Dates (2 entries)\n"
              "    Dates [1]\n"
              "    Dates [2]\n",
              DumpTree(view.get(), false));
    view->SetRapidFindString(U16("1999"));
    EXPECT_EQ("", DumpTree(view.get()));
}

TEST_F(MetadataViewFindTest, OpenedSchemasSetDuringASearchShowAfterIt)
{
    ViewPtr const view = MakeView({Alpha(), Beta()}, MakeProvider(RichAlphaBody()));
    view->SetRapidFindString(U16("title"));
    EXPECT_EQ("v Tree Alpha\n"
              "    Title = Harbour at dawn\n"
              "v Tree Beta\n"
              "    Beta Title = \n",
              DumpTree(view.get()));
    view->SetOpenedSchemaRows({Beta()});
    EXPECT_EQ("v Tree Alpha\n"
              "    Title = Harbour at dawn\n"
              "v Tree Beta\n"
              "    Beta Title = \n",
              DumpTree(view.get()));

    view->SetRapidFindString(zephcore::UTF16String());
    EXPECT_EQ("> Tree Alpha\n"
              "v Tree Beta\n"
              "    Headline = \n"
              "    Author = \n"
              "    Beta Title = \n",
              DumpTree(view.get()));
}

TEST_F(MetadataViewFindTest, DisclosureDuringASearchLeavesTheMemoryAlone)
{
    ViewPtr const view = MakeView({Alpha(), Beta()}, MakeProvider(RichAlphaBody()));
    Toggle(view.get(), "Tree Alpha");
    std::string const before = DumpTree(view.get());

    view->SetRapidFindString(U16("a"));
    Toggle(view.get(), "Tree Alpha");
    Toggle(view.get(), "Tree Beta");
    EXPECT_EQ((std::set<SchemaPtr>{Alpha()}), view->GetOpenedSchemaRows());

    view->SetRapidFindString(zephcore::UTF16String());
    EXPECT_EQ(before, DumpTree(view.get()));
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
    EXPECT_EQ("v Events (1 entries)\n"
              "  > Events [1]\n",
              DumpTree(view.get()));

    view->SetProvider(three);
    EXPECT_EQ(withThree, DumpTree(view.get()));
}

TEST_F(MetadataViewFindTest, AValueChangedInThePacketIsFoundByItsNewText)
{
    auto const provider = MakeProvider("<ta:title>Harbour</ta:title>");
    ViewPtr const view = MakeView({Alpha()}, provider);
    view->SetRapidFindString(U16("harb"));
    EXPECT_EQ("  Title = Harbour\n", DumpTree(view.get()));

    // The view read the value for the first search; a change reported by the
    // packet must not leave the old text in its place.
    ASSERT_NO_FATAL_FAILURE(WriteValue(provider, AlphaPath("title"), "Lighthouse", true));
    view->RefilterMetadataFieldsForRapidFindString();
    EXPECT_EQ("", DumpTree(view.get()));
    view->SetRapidFindString(U16("light"));
    EXPECT_EQ("  Title = Lighthouse\n", DumpTree(view.get()));

    // A host that changed values without a report asks for a refilter: it
    // reads the values as they are now.
    ASSERT_NO_FATAL_FAILURE(WriteValue(provider, AlphaPath("title"), "Harbour", false));
    view->RefilterMetadataFieldsForRapidFindString();
    EXPECT_EQ("", DumpTree(view.get()));
    view->SetRapidFindString(U16("harb"));
    EXPECT_EQ("  Title = Harbour\n", DumpTree(view.get()));

    // Another provider is read afresh.
    view->SetProvider(MakeProvider("<ta:title>Lightship</ta:title>"));
    view->SetRapidFindString(U16("light"));
    EXPECT_EQ("  Title = Lightship\n", DumpTree(view.get()));
}

TEST_F(MetadataViewFindTest, ARowThatStaysThroughAKeystrokeKeepsALiveValue)
{
    auto const provider = MakeProvider(RichAlphaBody());
    ViewPtr const view = MakeView({Alpha()}, provider);
    view->SetRapidFindString(U16("h"));
    MetadataViewCell* const before = CellWithLabel(view.get(), "Title");
    ASSERT_TRUE(before && before->GetChild_Value());

    // The row comes back on the next keystroke with the cell it had.
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
