// Forms built from view definitions over the test schemas: each kind of item
// gives the row a user expects, or none.
#include "LayoutTestSupport.h"

#include <zephmetadataui/ArrayControl.h>

#include <zephui/Drawbot.h>
#include <zephui/UI_Divider.h>
#include <zephui/UI_OutlineBox.h>
#include <zephui/UI_Popup.h>
#include <zephui/UI_SectionView.h>
#include <zephui/UI_StaticText.h>
#include <zephui/UI_TextEdit.h>

#include <QTest>

#include <cmath>

namespace layouttest
{
namespace
{

using treetest::MakeProvider;
using treetest::RichAlphaBody;
using zephmetadataui::layout::ArrayControl;

int RowsOfKind(TableLayout const& table, std::function<bool(RowItem const&)> const& is)
{
    int count = 0;
    ForEachRow(table, [&](RowItem const& row) { count += is(row) ? 1 : 0; });
    return count;
}

template <class View> View* ItemView(RowItem const& row, std::size_t column)
{
    return row.items[column] ? dynamic_cast<View*>(row.items[column]->view.get()) : nullptr;
}

using MetadataViewBuilderTest = LayoutTest;

TEST_F(MetadataViewBuilderTest, ValueRowsHaveColonLabelsControlsAndFormattedReadOnlyText)
{
    auto labelled = AlphaItem("title");
    labelled->label = zephcore::ToUTF8("Name: given");
    Form form(Definition({AlphaItem("title"), labelled,
                          AlphaItem("count", {{"readOnly", "true"}, {"format", "@0 units"}}),
                          AlphaItem("approved", {{"format", "@0 units"}})}),
              MakeProvider(RichAlphaBody()));
    // A label with a colon keeps it; a read-only value shows through its
    // format; a writable one ignores it and gets its control.
    EXPECT_EQ("Title: | Harbour at dawn | Name: given | Harbour at dawn | Count: | 42 units | "
              "Approved: | [x]",
              ShownTexts(*form.Table()));
}

TEST_F(MetadataViewBuilderTest, EmptyReadOnlyValuesAreHiddenOnlyWhenTheViewSaysSo)
{
    auto const provider = MakeProvider("<ta:title>Only this</ta:title>");
    for (bool const hide : {true, false})
    {
        Form form(Definition({AlphaItem("title", {{"readOnly", "true"}}),
                              AlphaItem("count", {{"readOnly", "true"}}), AlphaItem("approved")},
                             hide),
                  provider);
        EXPECT_EQ(hide ? 2u : 3u, form.Table()->RowCount());
    }
}

TEST_F(MetadataViewBuilderTest, APopupKeepsItsMeasuredWidthOfAtLeast100)
{
    auto marked = boost::make_shared<zephmetadata::ViewItem>(
        Path(zephcore::ToUTF8("http://ns.adobe.com/xap/1.0/rights/"), zephcore::ToUTF8("Marked")));
    Form form(Definition({marked}), MakeProvider(RichAlphaBody()), 700);
    auto const& item = form.Table()->rows.at(0)->items[1];
    auto* popup = item ? dynamic_cast<zephui::UI_Popup*>(item->view.get()) : nullptr;
    ASSERT_TRUE(popup);
    zephui::Drawbot measure(popup->UI_GetDrawSupplier());
    EXPECT_FLOAT_EQ(item->fixedWidth,
                    std::max(std::ceil(popup->UI_GetRecommendedSize(&measure).x), 100.0f));
    EXPECT_FLOAT_EQ(popup->UI_GetLocalRectF(false).width, item->fixedWidth)
        << "the popup does not stretch with the row";
}

TEST_F(MetadataViewBuilderTest, ListsOfSimpleValuesAreOneTextOthersGetTheArrayEditor)
{
    auto const provider = MakeProvider(RichAlphaBody());
    ItemPtr forced = AlphaItem("keywords");
    forced->format = zephcore::ToUTF8("array");
    for (auto const& [item, arrayEditor] :
         std::vector<std::pair<ItemPtr, bool>>{{AlphaItem("keywords"), false},
                                               {forced, true},
                                               {AlphaItem("dates"), true},
                                               {AlphaItem("events"), true}})
    {
        SCOPED_TRACE(zephcore::ToStdString(item->path.propertyName));
        Form form(Definition({item}), provider);
        ASSERT_EQ(form.Table()->RowCount(), 1u);
        RowItem const& row = *form.Table()->rows[0];
        EXPECT_EQ(ItemView<ArrayControl>(row, 0) != nullptr, arrayEditor);
        EXPECT_EQ(row.items[1] ? treetest::ControlText(row.items[1]->view.get()) : "",
                  arrayEditor ? "" : "sea; light");
    }
}

TEST_F(MetadataViewBuilderTest, AStructureBecomesABoxWithOneRowPerField)
{
    auto const provider = MakeProvider(RichAlphaBody());
    Form boxed(Definition({AlphaItem("contact")}), provider);
    EXPECT_EQ(1, RowsOfKind(*boxed.Table(), [](RowItem const& row)
                            { return ItemView<zephui::UI_OutlineBox>(row, 0); }));
    // Fields without a value too; no header when the style says so.
    EXPECT_EQ("Contact | City: | Portree | Phone: | 555-0100 | Email:", ShownTexts(*boxed.Table()));
    Form bare(Definition({AlphaItem("contact", {{"style", "noHeader"}})}), provider);
    EXPECT_EQ("City: | Portree | Phone: | 555-0100 | Email:", ShownTexts(*bare.Table()));
}

TEST_F(MetadataViewBuilderTest, SectionsGiveARowOnlyWithRowsInsideAndOfAKnownType)
{
    auto const provider = MakeProvider(RichAlphaBody());
    struct Case
    {
        char const* type;
        std::vector<ItemPtr> children;
        std::string label;
        std::size_t rows;
    } const cases[] = {
        {"simple", {AlphaItem("title")}, "", 1},
        {"labeled", {AlphaItem("title")}, "Group", 1},
        {"labelled", {AlphaItem("title")}, "Group", 1},
        {"collapsable", {AlphaItem("title")}, "Group", 1},
        {"header", {AlphaItem("title")}, "Group", 1},
        {"header", {}, "Group", 0},
        {"header", {FormatItem("nothing")}, "Group", 0},
        {"tabbed", {AlphaItem("title")}, "Group", 0},
    };
    for (Case const& c : cases)
    {
        SCOPED_TRACE(std::string(c.type) + " " + std::to_string(c.children.size()));
        Form form(Definition({FormatItem("section", {{"type", c.type}}, c.children, c.label)}),
                  provider);
        EXPECT_EQ(form.Table() ? form.Table()->RowCount() : 0u, c.rows);
        if (c.rows && std::string(c.type).rfind("label", 0) == 0)
        {
            EXPECT_TRUE(ValueOfLabel(*form.Table(), "Group:")) << "labeled and labelled alike";
        }
    }
}

TEST_F(MetadataViewBuilderTest, RulesSetSectionsApartButNeverOpenAForm)
{
    auto const provider = MakeProvider(RichAlphaBody());
    auto section = [] { return FormatItem("section", {}, {AlphaItem("title")}); };
    Form form(Definition({section(), section()}), provider);
    ASSERT_EQ(form.Table()->RowCount(), 2u);
    auto opensWithRule = [](RowItem const& row)
    { return ItemView<zephui::UI_Divider>(*row.items[0]->table->rows[0], 0) != nullptr; };
    EXPECT_FALSE(opensWithRule(*form.Table()->rows[0]));
    EXPECT_TRUE(opensWithRule(*form.Table()->rows[1]));

    auto isRule = [](RowItem const& row) { return ItemView<zephui::UI_Divider>(row, 0); };
    auto separated = [&](bool hideEmpty)
    {
        Form separated(Definition({FormatItem("separator"), AlphaItem("title"),
                                   FormatItem("separator"), AlphaItem("count")},
                                  hideEmpty),
                       provider);
        return RowsOfKind(*separated.Table(), isRule);
    };
    EXPECT_EQ(separated(true), 1) << "no leading separator when empty values are hidden";
    EXPECT_EQ(separated(false), 2);
}

TEST_F(MetadataViewBuilderTest, ClosingACollapsableSectionMovesWhatFollowsUp)
{
    auto const provider = MakeProvider(RichAlphaBody());
    Form form(Definition({FormatItem("section", {{"type", "collapsable"}},
                                     {AlphaItem("title"), AlphaItem("count")}, "More"),
                          AlphaItem("approved")}),
              provider);
    auto* section =
        dynamic_cast<zephui::UI_SectionView*>(form.Table()->rows[0]->items[0]->view.get());
    ASSERT_TRUE(section);
    auto below = [&form] { return form.Table()->rows[1]->view->UI_GetLocalRectF(true).top; };
    float const open = below();
    auto clickHeader = [section]
    { QTest::mouseClick(section->UI_GetWidget(), Qt::LeftButton, Qt::NoModifier, QPoint(30, 10)); };
    clickHeader();
    EXPECT_FALSE(section->GetOpened());
    EXPECT_TRUE(form.Table()->rows[0]->items[0]->table->collapsed);
    EXPECT_LT(below(), open - 40.0f);
    clickHeader();
    EXPECT_FLOAT_EQ(below(), open);
}

TEST_F(MetadataViewBuilderTest, FormattersJoinTheirValuesUnlessAFalseValueGatesThem)
{
    auto gate = [](char const* approved)
    {
        return MakeProvider(std::string("<ta:title>Dawn</ta:title><ta:count>7</ta:count>"
                                        "<ta:approved>") +
                            approved + "</ta:approved>");
    };
    auto formatter = [](std::vector<std::pair<char const*, char const*>> hints)
    {
        return FormatItem(
            "formatter", hints,
            {AlphaItem("approved"), AlphaItem("title"), AlphaItem("count", {{"format", "#@0"}})},
            "Joined");
    };
    std::vector<std::pair<char const*, char const*>> const gated{
        {"required_path_uri", treetest::kAlphaNamespace}, {"required_path_name", "approved"}};
    struct Case
    {
        char const* approved;
        std::vector<std::pair<char const*, char const*>> hints;
        char const* text;
    } const cases[] = {
        {"True", {}, "True;   Dawn;   #7"},
        {"True", gated, "True;   Dawn;   #7"},
        {"False", gated, "False"},
        {"False", {{"separator", " | "}}, "False | Dawn | #7"},
        {"True", {{"format", "@1 (@0) @3."}}, "Dawn (True) ."},
    };
    for (Case const& c : cases)
    {
        SCOPED_TRACE(c.text);
        Form form(Definition({formatter(c.hints)}), gate(c.approved));
        EXPECT_EQ(treetest::ControlText(ValueOfLabel(*form.Table(), "Joined:")), c.text);
    }
}

TEST_F(MetadataViewBuilderTest, AHintStandsUnderItsValueOtherNotesSpanTheRow)
{
    auto const provider = MakeProvider(RichAlphaBody());
    Form form(Definition({AlphaItem("title", {{"hint", "Keep it short."}}),
                          FormatItem("note", {{"message", "Read me."}, {"fontSize", "large"}})}),
              provider, 400);
    RowItem const& pair = *form.Table()->rows[0];
    ASSERT_TRUE(pair.items[0] && pair.items[0]->table);
    RowItem const& hintRow = *pair.items[0]->table->rows[1];
    ASSERT_TRUE(hintRow.items[1]) << "the hint stands in the value column";
    zephui::UI_Node* hint = hintRow.items[1]->view.get();
    auto* hintText = dynamic_cast<zephui::UI_StaticText*>(hint->UI_ChildGetFromID("note_message"));
    ASSERT_TRUE(hintText);
    EXPECT_EQ(zephcore::ToStdString(hintText->GetValue()), "Keep it short.");
    EXPECT_LT(hintText->GetFontSize(), zephui::UI_StaticText().GetFontSize());
    EXPECT_EQ(hint->ChildCount(), 2u) << "with the info icon";

    RowItem const& noteRow = *form.Table()->rows[1];
    ASSERT_TRUE(noteRow.items[0]);
    EXPECT_EQ(noteRow.items[0]->kind, 2) << "a note spans the row";
    auto* noteText = dynamic_cast<zephui::UI_StaticText*>(
        noteRow.items[0]->view->UI_ChildGetFromID("note_message"));
    ASSERT_TRUE(noteText);
    EXPECT_FLOAT_EQ(noteText->GetFontSize(), zephui::UI_StaticText().GetFontSize() + 2.0f);
    EXPECT_EQ(noteRow.items[0]->view->ChildCount(), 1u) << "no icon unless asked";
}

TEST_F(MetadataViewBuilderTest, ASchemaItemShowsEveryPropertyOfTheSchema)
{
    auto const provider = MakeProvider(RichAlphaBody());
    Form form(Definition({FormatItem(
                  "schema", {{"namespace", treetest::kAlphaNamespace}, {"readOnly", "true"}})}),
              provider);
    for (char const* label : {"Title:", "Count:", "Keywords:", "Approved:"})
        EXPECT_TRUE(ValueOfLabel(*form.Table(), label)) << label;
    EXPECT_NE(std::string::npos, ShownTexts(*form.Table()).find("Tree Alpha"))
        << "headed by the schema's label";
    auto* title = dynamic_cast<zephui::UI_TextEdit*>(ValueOfLabel(*form.Table(), "Title:"));
    ASSERT_TRUE(title);
    EXPECT_TRUE(title->GetReadOnlyMode());

    Form unknown(Definition({FormatItem("schema", {{"namespace", "http://ns.zeph.test/none/"}})}),
                 provider);
    EXPECT_EQ(unknown.Table()->RowCount(), 0u);
}

} // namespace
} // namespace layouttest
