// The table engine alone, on plain views: label columns measured and shared
// across nested tables, the two columns placed, gaps, margins and collapse.
#include "LayoutTestSupport.h"

#include <boost/make_shared.hpp>

#include <map>

namespace layouttest
{
namespace
{

using zephmetadataui::layout::kLabelColumnGroup;
using zephmetadataui::layout::kLabelColumnOwn;
using zephmetadataui::layout::kLabelColumnShared;
using zephmetadataui::layout::LayoutItemPtr;
using zephmetadataui::layout::RowItemPtr;
using zephui::RectF;
using zephui::UI_SubView;
using zephui::UI_SubViewPtr;

// Labels that measure as wide as they were made; values that keep their height.
class Tables
{
public:
    TableLayoutPtr Table(int alignment = kLabelColumnOwn, float width = 600.0f)
    {
        auto table = boost::make_shared<TableLayout>();
        table->view->UI_SetLocalRectF(RectF(0.0f, 0.0f, width, 0.0f));
        table->alignment = alignment;
        return table;
    }
    LayoutItemPtr Label(float width)
    {
        UI_SubViewPtr const view(new UI_SubView(RectF(0.0f, 0.0f, width, 19.0f)));
        widths[view.get()] = width;
        return boost::make_shared<LayoutItem>(view);
    }
    static LayoutItemPtr Value(float height)
    {
        return boost::make_shared<LayoutItem>(
            UI_SubViewPtr(new UI_SubView(RectF(0.0f, 0.0f, 100.0f, height))));
    }
    RowItemPtr Row(float labelWidth, float valueHeight = 19.0f)
    {
        auto row = boost::make_shared<RowItem>();
        row->SetItem(0, Label(labelWidth));
        row->SetItem(1, Value(valueHeight));
        return row;
    }
    void Measure(TableLayout& table)
    {
        table.CalculateLabelWidths(
            [this](LayoutItem const& item)
            {
                auto const found = widths.find(item.view.get());
                return found == widths.end() ? 0.0f : found->second;
            });
    }
    static float ValueLeft(TableLayout const& table, std::size_t row)
    {
        return table.rows[row]->items[1]->view->UI_GetLocalRectF(true).left;
    }

private:
    std::map<UI_SubView const*, float> widths;
};

TEST(TableLayoutTest, TheLabelColumnIsAtLeast100AndAtMost220Wide)
{
    struct Case
    {
        float label, valueLeft;
    } const cases[] = {{50.0f, 110.0f}, {150.0f, 160.0f}, {300.0f, 230.0f}};
    for (Case const& c : cases)
    {
        SCOPED_TRACE(c.label);
        Tables tables;
        TableLayoutPtr const table = tables.Table();
        table->AddRow(tables.Row(c.label));
        tables.Measure(*table);
        table->DoLayout();
        EXPECT_FLOAT_EQ(Tables::ValueLeft(*table, 0), c.valueLeft);
        EXPECT_FLOAT_EQ(table->rows[0]->items[0]->view->UI_GetLocalRectF(false).width,
                        std::min(std::max(c.label, 100.0f), 220.0f))
            << "the label is cut to the column";
    }

    Tables tables;
    TableLayoutPtr const table = tables.Table();
    table->AddRow(tables.Row(180.0f));
    table->CalculateLabelWidths({});
    EXPECT_FLOAT_EQ(table->labelWidth, 100.0f) << "no measure keeps the default";
}

TEST(TableLayoutTest, NestedTablesShareGroupOrKeepTheirLabelColumn)
{
    Tables tables;
    TableLayoutPtr const root = tables.Table();
    root->AddRow(tables.Row(110.0f));
    TableLayoutPtr const shared = tables.Table(kLabelColumnShared);
    shared->AddRow(tables.Row(180.0f));
    TableLayoutPtr const otherShared = tables.Table(kLabelColumnShared);
    otherShared->AddRow(tables.Row(60.0f));
    root->AddTable(shared);
    root->AddTable(otherShared);
    tables.Measure(*root);
    EXPECT_FLOAT_EQ(root->labelWidth, 180.0f) << "a shared nested label widens the parent";
    EXPECT_FLOAT_EQ(otherShared->labelWidth, 180.0f) << "and every shared sibling with it";

    Tables grouped;
    TableLayoutPtr const parent = grouped.Table();
    parent->AddRow(grouped.Row(90.0f));
    TableLayoutPtr const narrow = grouped.Table(kLabelColumnGroup);
    narrow->AddRow(grouped.Row(120.0f));
    TableLayoutPtr const wide = grouped.Table(kLabelColumnGroup);
    wide->AddRow(grouped.Row(180.0f));
    TableLayoutPtr const own = grouped.Table(kLabelColumnOwn);
    own->AddRow(grouped.Row(140.0f));
    for (auto const& nested : {narrow, wide, own})
        parent->AddTable(nested);
    grouped.Measure(*parent);
    EXPECT_FLOAT_EQ(narrow->labelWidth, 180.0f);
    EXPECT_FLOAT_EQ(wide->labelWidth, 180.0f);
    EXPECT_FLOAT_EQ(parent->labelWidth, 100.0f) << "grouped labels leave the parent alone";
    EXPECT_FLOAT_EQ(own->labelWidth, 140.0f);
}

TEST(TableLayoutTest, RowsStackWithStandardGapsMarginsAndSpacing)
{
    Tables tables;
    TableLayoutPtr const empty = tables.Table();
    EXPECT_FLOAT_EQ(empty->DoLayout(), 20.0f) << "top and bottom margins only";
    empty->SetMargins(0x0);
    EXPECT_FLOAT_EQ(empty->DoLayout(), 0.0f);

    TableLayoutPtr const table = tables.Table();
    table->SetMargins(0x0);
    for (int i = 0; i < 3; ++i)
        table->AddRow(tables.Row(80.0f));
    table->rows[0]->spaceBefore = 50.0f; // no effect on the first row
    table->rows[1]->spaceAfter = -1.0f;  // no gap below, and one up
    table->rows[2]->spaceBefore = 4.0f;
    EXPECT_FLOAT_EQ(table->DoLayout(), 19.0f + 7.0f + 19.0f - 1.0f + 4.0f + 19.0f)
        << "the last row gets no gap";
    EXPECT_FLOAT_EQ(table->rows[0]->view->UI_GetLocalRectF(true).top, 0.0f);
    EXPECT_FLOAT_EQ(table->rows[2]->view->UI_GetLocalRectF(true).top, 48.0f);

    table->collapsed = true;
    RectF const kept = table->rows[2]->view->UI_GetLocalRectF(true);
    EXPECT_FLOAT_EQ(table->DoLayout(), 0.0f);
    EXPECT_EQ(table->rows[2]->view->UI_GetLocalRectF(true), kept);
}

TEST(TableLayoutTest, ItemsAreCentredOnTheRowAndValuesFollowTheRightEdge)
{
    Tables tables;
    TableLayoutPtr const table = tables.Table(kLabelColumnOwn, 500.0f);
    table->AddRow(tables.Row(80.0f, 13.0f));
    table->AddRow(tables.Row(80.0f, 60.0f));
    tables.Measure(*table);
    float const height = table->DoLayout();
    LayoutItemPtr const small = table->rows[0]->items[1];
    EXPECT_FLOAT_EQ(small->view->UI_GetLocalRectF(true).top, 3.0f);
    EXPECT_FLOAT_EQ(small->view->UI_GetLocalRectF(true).GetRight(), 480.0f)
        << "the value column ends at the right margin (the row starts at the left one)";
    EXPECT_FLOAT_EQ(table->rows[1]->view->UI_GetLocalRectF(false).height, 60.0f)
        << "a tall value makes its row tall";
    EXPECT_FLOAT_EQ(height, 10.0f + 19.0f + 7.0f + 60.0f + 10.0f);

    // A resize moves the right edges without a layout.
    table->view->UI_SetLayoutsChildren(true);
    table->rows[0]->view->UI_SetLayoutsChildren(true);
    table->view->UI_SetLocalRectF(RectF(0.0f, 0.0f, 700.0f, height));
    EXPECT_FLOAT_EQ(small->view->UI_GetLocalRectF(true).GetRight(), 680.0f);
    EXPECT_FLOAT_EQ(table->rows[0]->items[0]->view->UI_GetLocalRectF(true).width, 100.0f)
        << "a label keeps its edges";
}

} // namespace
} // namespace layouttest
