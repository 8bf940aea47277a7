// Forms built from view definitions over the test schemas: each kind of item
// gives the row a user expects, or none.
#include "LayoutTestSupport.h"

#include <zephmetadataui/ArrayControl.h>

#include <zephui/UI_Divider.h>
#include <zephui/UI_OutlineBox.h>
#include <zephui/UI_SectionView.h>
#include <zephui/UI_StaticText.h>
#include <zephui/UI_TextEdit.h>

#include <QTest>

#include <tuple>

namespace layouttest
{
namespace
{

using treetest::MakeProvider;
using treetest::RichAlphaBody;
using zephmetadataui::layout::ArrayControl;

template <class View> int RowsOf(TableLayout const& table)
{
    int count = 0;
    ForEachRow(table, [&](RowItem const& row)
               { count += row.items[0] && dynamic_cast<View*>(row.items[0]->view.get()); });
    return count;
}

using MetadataViewBuilderTest = LayoutTest;

TEST_F(MetadataViewBuilderTest, ValueRowsAndStructuresShowWhatAUserExpects)
{
    auto labelled = AlphaItem("title");
    labelled->label = zephcore::ToUTF8("Name: given");
    Form form(Definition({AlphaItem("title"), labelled,
                          AlphaItem("count", {{"readOnly", "true"}, {"format", "@0 units"}}),
                          AlphaItem("approved", {{"format", "@0 units"}}), AlphaItem("contact"),
                          AlphaItem("contact", {{"style", "noHeader"}})}),
              MakeProvider(RichAlphaBody()));
    // A label with a colon keeps it; a read-only value shows through its
    // format, a writable one ignores it and gets its control. A structure is a
    // box with a row per field, with or without a value, headed unless its
    // style says not.
    EXPECT_EQ("Title: | Harbour at dawn | Name: given | Harbour at dawn | Count: | 42 units | "
              "Approved: | [x] | Contact | City: | Portree | Phone: | 555-0100 | Email: | City: | "
              "Portree | Phone: | 555-0100 | Email:",
              ShownTexts(*form.Table()));
    EXPECT_EQ(1, RowsOf<zephui::UI_OutlineBox>(*form.Table()));
}

TEST_F(MetadataViewBuilderTest, ListsOfSimpleValuesAreOneTextOthersGetTheArrayEditor)
{
    auto const provider = MakeProvider(RichAlphaBody());
    // An item, whether it gets the array editor, and what the form shows.
    for (auto const& [item, arrayEditor, shown] :
         std::vector<std::tuple<ItemPtr, bool, char const*>>{
             {AlphaItem("keywords"), false, "Keywords: | sea; light"},
             {AlphaItem("keywords", {}, "array"), true, "Keywords:"},
             {AlphaItem("dates"), true, "Dates:"},
             {AlphaItem("events"), true, "Events:"}})
    {
        SCOPED_TRACE(shown);
        Form form(Definition({item}), provider);
        ASSERT_EQ(form.Table()->RowCount(), 1u);
        EXPECT_EQ(arrayEditor ? 1 : 0, RowsOf<ArrayControl>(*form.Table()));
        EXPECT_EQ(shown, ShownTexts(*form.Table()));
    }
}

TEST_F(MetadataViewBuilderTest, SectionsGiveARowOnlyWithRowsInsideAndOfAKnownType)
{
    auto const provider = MakeProvider(RichAlphaBody());
    // A section's type and children, and the rows it makes.
    using Case = std::tuple<char const*, std::vector<ItemPtr>, std::size_t>;
    std::vector<Case> cases{{"header", {}, 0}, {"header", {FormatItem("nothing")}, 0}};
    for (char const* type : {"simple", "labeled", "labelled", "collapsable", "header", "tabbed"})
        cases.emplace_back(type, std::vector<ItemPtr>{AlphaItem("title")}, type[0] == 't' ? 0 : 1);
    for (auto const& [type, children, rows] : cases)
    {
        SCOPED_TRACE(std::string(type) + " " + std::to_string(children.size()));
        Form form(Definition({FormatItem("section", {{"type", type}}, children, "Group")}),
                  provider);
        EXPECT_EQ(form.Table() ? form.Table()->RowCount() : 0u, rows);
        bool const labelled = rows && std::string(type).rfind("label", 0) == 0;
        EXPECT_EQ(labelled, ValueOfLabel(*form.Table(), "Group:") != nullptr); // either spelling
    }
}

TEST_F(MetadataViewBuilderTest, RulesSetSectionsApartAndAClosedSectionMovesWhatFollowsUp)
{
    auto const provider = MakeProvider(RichAlphaBody());
    Form form(Definition({FormatItem("section", {{"type", "collapsable"}},
                                     {AlphaItem("title"), AlphaItem("count")}, "More"),
                          FormatItem("section", {}, {AlphaItem("title")})}),
              provider);
    ASSERT_EQ(form.Table()->RowCount(), 2u);
    // A rule opens every section but the first.
    EXPECT_EQ(1, RowsOf<zephui::UI_Divider>(*form.Table()));
    EXPECT_EQ(1, RowsOf<zephui::UI_Divider>(*form.Table()->rows[1]->items[0]->table));

    auto* section =
        dynamic_cast<zephui::UI_SectionView*>(form.Table()->rows[0]->items[0]->view.get());
    ASSERT_TRUE(section);
    auto below = [&form] { return form.Table()->rows[1]->view->UI_GetLocalRectF(true).top; };
    float const open = below();
    auto clickHeader = [section]
    { QTest::mouseClick(section->UI_GetWidget(), Qt::LeftButton, Qt::NoModifier, QPoint(30, 10)); };
    clickHeader();
    EXPECT_FALSE(section->GetOpened());
    EXPECT_LT(below(), open - 40.0f);
    clickHeader();
    EXPECT_FLOAT_EQ(below(), open);

    // Separators too, but none leads a form whose empty values are hidden.
    for (bool const hideEmpty : {true, false})
    {
        Form separated(Definition({FormatItem("separator"), AlphaItem("title"),
                                   FormatItem("separator"), AlphaItem("count")},
                                  hideEmpty),
                       provider);
        EXPECT_EQ(hideEmpty ? 1 : 2, RowsOf<zephui::UI_Divider>(*separated.Table()));
    }
}

TEST_F(MetadataViewBuilderTest, FormattersJoinTheirValuesUnlessAFalseValueGatesThem)
{
    Hints const gated{{"required_path_uri", treetest::kAlphaNamespace},
                      {"required_path_name", "approved"}};
    // The gating value, the formatter's hints, and what it shows.
    for (auto const& [approved, hints, text] :
         std::vector<std::tuple<char const*, Hints, char const*>>{
             {"True", {}, "True;   Dawn;   #7"},
             {"True", gated, "True;   Dawn;   #7"},
             {"False", gated, "False"},
             {"False", {{"separator", " | "}}, "False | Dawn | #7"},
             {"True", {{"format", "@1 (@0) @3."}}, "Dawn (True) ."},
         })
    {
        SCOPED_TRACE(text);
        Form form(Definition({FormatItem("formatter", hints,
                                         {AlphaItem("approved"), AlphaItem("title"),
                                          AlphaItem("count", {{"format", "#@0"}})},
                                         "Joined")}),
                  MakeProvider("<ta:title>Dawn</ta:title><ta:count>7</ta:count><ta:approved>" +
                               std::string(approved) + "</ta:approved>"));
        EXPECT_EQ(treetest::ControlText(ValueOfLabel(*form.Table(), "Joined:")), text);
    }
}

TEST_F(MetadataViewBuilderTest, AHintStandsUnderItsValueOtherNotesSpanTheRow)
{
    Form form(Definition({AlphaItem("title", {{"hint", "Keep it short."}}),
                          FormatItem("note", {{"message", "Read me."}})}),
              MakeProvider(RichAlphaBody()), 400);
    EXPECT_EQ("Title: | Harbour at dawn | Keep it short. | Read me.", ShownTexts(*form.Table()));
    RowItem const& pair = *form.Table()->rows[0];
    ASSERT_TRUE(pair.items[0] && pair.items[0]->table);
    EXPECT_TRUE(pair.items[0]->table->rows[1]->items[1]) << "the hint in the value column";
    ASSERT_TRUE(form.Table()->rows[1]->items[0]);
    EXPECT_EQ(form.Table()->rows[1]->items[0]->kind, 2) << "a note spans the row";
}

TEST_F(MetadataViewBuilderTest, ASchemaItemShowsEveryPropertyOfTheSchema)
{
    auto const provider = MakeProvider(RichAlphaBody());
    Form form(Definition({FormatItem(
                  "schema", {{"namespace", treetest::kAlphaNamespace}, {"readOnly", "true"}})}),
              provider);
    for (char const* label : {"Title:", "Count:", "Keywords:", "Approved:"})
        EXPECT_TRUE(ValueOfLabel(*form.Table(), label)) << label;
    EXPECT_NE(std::string::npos, ShownTexts(*form.Table()).find("Tree Alpha")) << "its heading";
    auto* title = dynamic_cast<zephui::UI_TextEdit*>(ValueOfLabel(*form.Table(), "Title:"));
    ASSERT_TRUE(title);
    EXPECT_TRUE(title->GetReadOnlyMode());

    Form unknown(Definition({FormatItem("schema", {{"namespace", "http://ns.zeph.test/none/"}})}),
                 provider);
    EXPECT_EQ(unknown.Table()->RowCount(), 0u);
}

} // namespace
} // namespace layouttest
