// The table engine alone, on plain views: label columns measured and shared
// across nested tables, gaps and margins.
#include "LayoutTestSupport.h"

#include <boost/make_shared.hpp>

namespace layouttest
{
namespace
{

using namespace zephmetadataui::layout;
using zephui::RectF;
using zephui::UI_SubView;
using zephui::UI_SubViewPtr;

// Rows of a label as wide as its text needs and a value, as plain views.
TableLayoutPtr Table(int alignment, std::vector<float> const& labels, float width = 600.0f)
{
    auto const view = [](float w, float h)
    { return boost::make_shared<LayoutItem>(UI_SubViewPtr(new UI_SubView(RectF(0, 0, w, h)))); };
    auto table = boost::make_shared<TableLayout>();
    table->view->UI_SetLocalRectF(RectF(0.0f, 0.0f, width, 0.0f));
    table->alignment = alignment;
    for (float const label : labels)
    {
        auto row = boost::make_shared<RowItem>();
        row->SetItem(0, view(label, 19.0f));
        row->SetItem(1, view(100.0f, 19.0f));
        table->AddRow(row);
    }
    return table;
}
// Labels measure as wide as they were made.
void Measure(TableLayout& table)
{
    table.CalculateLabelWidths([](LayoutItem const& item)
                               { return item.view->UI_GetLocalRectF(false).width; });
}

TEST(TableLayoutTest, TheLabelColumnIsAtLeast100AndAtMost220Wide)
{
    // A label's width, and where the value then starts.
    for (auto const& [label, valueLeft] :
         std::vector<std::pair<float, float>>{{50.0f, 110.0f}, {150.0f, 160.0f}, {300.0f, 230.0f}})
    {
        SCOPED_TRACE(label);
        TableLayoutPtr const table = Table(kLabelColumnOwn, {label});
        Measure(*table);
        table->DoLayout();
        EXPECT_FLOAT_EQ(table->rows[0]->items[1]->view->UI_GetLocalRectF(true).left, valueLeft);
        EXPECT_FLOAT_EQ(table->rows[0]->items[0]->view->UI_GetLocalRectF(false).width,
                        std::min(std::max(label, 100.0f), 220.0f))
            << "the label is cut to the column";
    }
}

TEST(TableLayoutTest, NestedTablesShareGroupOrKeepTheirLabelColumn)
{
    TableLayoutPtr const root = Table(kLabelColumnOwn, {110.0f});
    TableLayoutPtr const otherShared = Table(kLabelColumnShared, {60.0f});
    root->AddTable(Table(kLabelColumnShared, {180.0f}));
    root->AddTable(otherShared);
    Measure(*root);
    EXPECT_FLOAT_EQ(root->labelWidth, 180.0f) << "a shared nested label widens the parent";
    EXPECT_FLOAT_EQ(otherShared->labelWidth, 180.0f) << "and every shared sibling with it";

    TableLayoutPtr const parent = Table(kLabelColumnOwn, {90.0f});
    TableLayoutPtr const narrow = Table(kLabelColumnGroup, {120.0f});
    TableLayoutPtr const own = Table(kLabelColumnOwn, {140.0f});
    for (auto const& nested : {narrow, Table(kLabelColumnGroup, {180.0f}), own})
        parent->AddTable(nested);
    Measure(*parent);
    EXPECT_FLOAT_EQ(narrow->labelWidth, 180.0f) << "grouped tables take the widest label";
    EXPECT_FLOAT_EQ(parent->labelWidth, 100.0f) << "grouped labels leave the parent alone";
    EXPECT_FLOAT_EQ(own->labelWidth, 140.0f);
}

TEST(TableLayoutTest, RowsStackWithStandardGapsMarginsAndSpacing)
{
    TableLayoutPtr const empty = Table(kLabelColumnOwn, {});
    EXPECT_FLOAT_EQ(empty->DoLayout(), 20.0f) << "top and bottom margins only";
    empty->SetMargins(0x0);
    EXPECT_FLOAT_EQ(empty->DoLayout(), 0.0f);

    TableLayoutPtr const table = Table(kLabelColumnOwn, {80.0f, 80.0f, 80.0f});
    table->SetMargins(0x0);
    table->rows[0]->spaceBefore = 50.0f; // no effect on the first row
    table->rows[1]->spaceAfter = -1.0f;  // no gap below, and one up
    table->rows[2]->spaceBefore = 4.0f;
    EXPECT_FLOAT_EQ(table->DoLayout(), 19.0f + 7.0f + 19.0f - 1.0f + 4.0f + 19.0f)
        << "the last row gets no gap";
    EXPECT_FLOAT_EQ(table->rows[2]->view->UI_GetLocalRectF(true).top, 48.0f);
}

} // namespace
} // namespace layouttest
