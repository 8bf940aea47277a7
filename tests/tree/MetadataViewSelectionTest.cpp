// The tree as a chooser: clicks on boxes, groups, forced and twin paths.

#include "TreeTestSupport.h"

#include <boost/make_shared.hpp>

using namespace treetest;

namespace
{
class MetadataViewSelectionTest : public TreeTest
{
protected:
    // A chooser over both test schemas, without values, in a shown window.
    void MakeChooser(std::set<Path> const& selected, std::set<Path> const& forced = {},
                     float height = 700.0f)
    {
        view = MakeView({Alpha(), Beta()}, MakeProvider(RichAlphaBody()), 500.0f, height);
        view->SetDisplayPropertyValue(false);
        view->SetSelectedPaths(selected);
        view->SetForcedOnPaths(forced);
        view->SetAllowPropertySelection(true);
        window = std::make_unique<Window>(view, 500, int(height));
    }
    void ClickBox(std::string const& label)
    {
        MetadataViewCell* const cell = CellWithLabel(view.get(), label);
        ASSERT_TRUE(cell) << label;
        Click(cell->GetChild_Label().get());
    }

    // The labels of the rows, boxes included, joined by ", ".
    std::string Boxes(std::vector<std::string> const& labels)
    {
        std::string out;
        for (std::string const& label : labels)
        {
            MetadataViewCell* const cell = CellWithLabel(view.get(), label);
            out += (out.empty() ? "" : ", ") +
                   (cell ? ControlText(cell->GetChild_Label().get()) : "<no " + label + ">");
        }
        return out;
    }

    ViewPtr view;
    std::unique_ptr<Window> window;
};

} // namespace

TEST_F(MetadataViewSelectionTest, GroupClicksFillOrClearTheGroupAroundForcedPaths)
{
    Path const author = BetaPath("author");
    std::set<Path> all{author, AlphaPath("contact"), AlphaPath("contact/ta:city"),
                       AlphaPath("contact/ta:phone"), AlphaPath("contact/ta:email")};
    MakeChooser({AlphaPath("contact/ta:city"), author}, {AlphaPath("contact/ta:phone"), author});
    OpenAll(view.get());
    // A mixed structure: all its leaves, the schema above follows. A forced
    // leaf's entry moves with the group; its row and box are left as they were.
    ClickBox("Contact");
    EXPECT_EQ(all, SelectedOf(view.get()));
    EXPECT_EQ("[x] Contact, [ ] Phone, [x] Email, [-] Tree Alpha",
              Boxes({"Contact", "Phone", "Email", "Tree Alpha"}));
    ClickBox("Contact");
    EXPECT_EQ(std::set<Path>{author}, SelectedOf(view.get()));
    EXPECT_EQ("[ ] Contact, [ ] City", Boxes({"Contact", "City"}));

    // A mixed schema: all on; full: all off. After a schema's click every
    // forced path goes straight back, a made row with a normal box.
    ClickBox("Tree Beta");
    all = {BetaPath("headline"), author, BetaPath("title"), AlphaPath("contact/ta:phone")};
    EXPECT_EQ(all, SelectedOf(view.get()));
    EXPECT_EQ("[x] Tree Beta", Boxes({"Tree Beta"}));
    ClickBox("Tree Beta");
    EXPECT_EQ((std::set<Path>{author, AlphaPath("contact/ta:phone")}), SelectedOf(view.get()));
    EXPECT_EQ("[-] Tree Beta, [ ] Headline", Boxes({"Tree Beta", "Headline"}));
    EXPECT_NE(std::string::npos, DumpTree(view.get()).find("\n    [x] Author\n"));
}

TEST_F(MetadataViewSelectionTest, LeafClickMovesItsTwinInAnotherSchemaButNotTheTwinsTwins)
{
    MakeChooser({});
    auto const twins = [](std::set<Path> const& paths)
    { return boost::make_shared<std::set<Path>>(paths); };
    MetadataView::EquivalenceMap map;
    map[AlphaPath("title")] = twins({AlphaPath("title"), BetaPath("headline")});
    map[BetaPath("headline")] = twins({BetaPath("headline"), AlphaPath("count")});
    map[AlphaPath("keywords")] = twins({AlphaPath("keywords"), AlphaPath("approved")});
    view->SetEquivalenceMap(map);
    OpenAll(view.get());

    ClickBox("Keywords");
    ClickBox("Title");
    std::set<Path> expected{AlphaPath("keywords"), AlphaPath("title"), BetaPath("headline")};
    EXPECT_EQ(expected, SelectedOf(view.get()));
    EXPECT_EQ("[x] Headline, [ ] Count, [ ] Approved, [-] Tree Beta",
              Boxes({"Headline", "Count", "Approved", "Tree Beta"}));

    ClickBox("Title");
    EXPECT_EQ(std::set<Path>{AlphaPath("keywords")}, SelectedOf(view.get()));
    EXPECT_EQ("[ ] Headline", Boxes({"Headline"}));
}

TEST_F(MetadataViewSelectionTest, AParentOffScreenDoesNotJoinTheSetUntilItIsUpdated)
{
    // Room for four rows: scrolled so that Contact is above the screen.
    MakeChooser({}, {}, 4 * 22.0f);
    OpenAll(view.get());
    auto* tree = TreeOf(view.get());
    RowPtr const city = RowWithLabel(view.get(), "City");
    tree->ScrollRowIntoView(city, true, 0);
    RowPtr const contact(city->GetParentRow());
    ASSERT_FALSE(tree->IsRowVisible(contact));

    Click(CellOf(view.get(), city)->GetChild_Label().get());
    EXPECT_EQ(std::set<Path>{AlphaPath("contact/ta:city")}, SelectedOf(view.get()));
    // Made again on screen, the parent shows the right state from the set...
    EXPECT_EQ("[-] Contact", ControlText(CellOf(view.get(), contact)->GetChild_Label().get()));
    // ...but joins the set only when a box below it updates it.
    EXPECT_EQ(std::set<Path>{AlphaPath("contact/ta:city")}, SelectedOf(view.get()));
    Click(CellOf(view.get(), contact->GetChildRow(1))->GetChild_Label().get());
    std::set<Path> const expected{AlphaPath("contact"), AlphaPath("contact/ta:city"),
                                  AlphaPath("contact/ta:phone")};
    EXPECT_EQ(expected, SelectedOf(view.get()));
}
