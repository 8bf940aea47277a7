#include "zephmetadataui/TableLayout.h"

#include "zephmetadataui/Control.h"

#include <zephui/UI_ScrollView.h>
#include <zephui/UI_SectionView.h>

#include <boost/make_shared.hpp>

#include <algorithm>
#include <cmath>
#include <stdexcept>

namespace zephmetadataui::layout
{

using zephui::PointF;
using zephui::RectF;
using zephui::UI_SubView;
using zephui::UI_SubViewPtr;

void SetRectWithoutChildLayout(zephui::UI_Node* view, RectF const& rect)
{
    bool const layouts = view->UI_GetLayoutsChildren();
    view->UI_SetLayoutsChildren(false);
    view->UI_SetLocalRectF(rect);
    view->UI_SetLayoutsChildren(layouts);
}

namespace
{

// A nested table takes its height from its rows, and its parent's row from it.
void PlaceNestedTable(TableLayout* table, UI_SubView* view, RectF& rect)
{
    SetRectWithoutChildLayout(view, rect);
    rect.height = table->DoLayout();
}

float PlaceItem(LayoutItem& item, RectF rect)
{
    if (item.fixedWidth != 0.0f)
        rect.width = item.fixedWidth;
    if (item.placeFunction)
        item.placeFunction(item.view.get(), rect);
    else
    {
        RectF const now = item.view->UI_GetLocalRectF(true);
        rect.top = now.top;
        rect.height = now.height;
    }
    item.view->UI_SetLocalRectF(rect);
    return rect.GetBottom();
}

} // namespace

LayoutItem::LayoutItem(boost::intrusive_ptr<UI_SubView> const& view) : view(view) {}

LayoutItem::LayoutItem(boost::shared_ptr<Control> const& control)
    : view(control ? control->view : UI_SubViewPtr()), control(control)
{
}

LayoutItem::LayoutItem(TableLayoutPtr const& table)
    : view(table ? table->view : UI_SubViewPtr()), kind(2), table(table)
{
    // The item holds the table, so the function never outlives it.
    if (TableLayout* const nestedTable = table.get())
        placeFunction = [nestedTable](UI_SubView* nested, RectF& rect)
        { PlaceNestedTable(nestedTable, nested, rect); };
}

RowItem::RowItem() : view(new UI_SubView(RectF(0.0f, 0.0f, 0.0f, kStandardRowHeight))), items(2)
{
    view->UI_SetLayoutsChildren(true);
    view->UI_SetLayoutBinding(zephui::kBindRightEdgeToParentRight);
    view->UI_Show(true);
}

void RowItem::SetItem(int column, LayoutItemPtr const& item)
{
    if (!item)
        return;
    LayoutItemPtr& slot = items.at(std::size_t(column));
    if (slot && slot->view)
        view->ChildRequestRemove(slot->view.get());
    slot = item;
    if (!item->view)
        return;
    // A label keeps its edges; everything else follows the row's right edge.
    if (item->fixedWidth == 0.0f && !(item->kind == 1 && column == 0))
        item->view->UI_SetLayoutBinding(zephui::kBindRightEdgeToParentRight);
    RectF rect = item->view->UI_GetLocalRectF(true);
    if (rect.height == 0.0f)
        rect.height = kStandardRowHeight;
    if (rect.height < kStandardRowHeight)
        rect.top = std::floor((kStandardRowHeight - rect.height) / 2.0f);
    item->view->UI_SetLocalRectF(rect);
    item->view->UI_Show(true);
    view->ChildPushBack(item->view);
}

LayoutItemPtr RowItem::GetItem(int column) const
{
    return items.at(std::size_t(column));
}

boost::shared_ptr<TableLayoutDelegate> ScrollViewLayoutDelegate::Shared()
{
    static boost::shared_ptr<TableLayoutDelegate> const shared =
        boost::make_shared<ScrollViewLayoutDelegate>();
    return shared;
}

UI_SubViewPtr ScrollViewLayoutDelegate::GetContentView(TableLayout const& table)
{
    if (auto* scroll = dynamic_cast<zephui::UI_ScrollView*>(table.view.get()))
        return scroll->GetContentView();
    return table.view;
}

void ScrollViewLayoutDelegate::SetContentSize(TableLayout const& table, PointF const& size)
{
    if (auto* scroll = dynamic_cast<zephui::UI_ScrollView*>(table.view.get()))
    {
        scroll->SetContentRectF(RectF(0.0f, 0.0f, size.x, size.y));
        scroll->Update();
    }
}

boost::shared_ptr<TableLayoutDelegate> SectionViewLayoutDelegate::Shared()
{
    static boost::shared_ptr<TableLayoutDelegate> const shared =
        boost::make_shared<SectionViewLayoutDelegate>();
    return shared;
}

UI_SubViewPtr SectionViewLayoutDelegate::GetContentView(TableLayout const& table)
{
    if (auto* section = dynamic_cast<zephui::UI_SectionView*>(table.view.get()))
        return section->GetContentView();
    return table.view;
}

void SectionViewLayoutDelegate::SetContentSize(TableLayout const& table, PointF const& size)
{
    if (auto* section = dynamic_cast<zephui::UI_SectionView*>(table.view.get()))
    {
        RectF const now = section->UI_GetLocalRectF(true);
        PointF const whole = section->GetSizeFromContentSize(size);
        section->UI_SetLocalRectF(RectF(now.left, now.top, whole.x, whole.y));
    }
}

TableLayout::TableLayout() : TableLayout(UI_SubViewPtr(new UI_SubView)) {}

TableLayout::TableLayout(UI_SubViewPtr const& view) : view(view) {}

UI_SubViewPtr TableLayout::ContentView() const
{
    return delegate ? delegate->GetContentView(*this) : view;
}

void TableLayout::AddRow(RowItemPtr const& row)
{
    if (!row)
        return;
    rows.push_back(row);
    if (UI_SubViewPtr const content = ContentView())
        content->ChildPushBack(row->view);
}

void TableLayout::AddItem(int column, LayoutItemPtr const& item)
{
    auto row = boost::make_shared<RowItem>();
    row->SetItem(column, item);
    AddRow(row);
}

void TableLayout::AddTable(TableLayoutPtr const& table)
{
    if (table)
        AddItem(0, boost::make_shared<LayoutItem>(table));
}

void TableLayout::SetMargins(unsigned char flags)
{
    auto margin = [flags](unsigned char bit) { return (flags & bit) ? kTableMargin : 0.0f; };
    marginLeft = margin(1);
    marginTop = margin(2);
    marginRight = margin(4);
    marginBottom = margin(8);
}

float TableLayout::ContentWidth() const
{
    UI_SubViewPtr const content = ContentView();
    if (!content)
        return 0.0f;
    return content->UI_GetLocalRectF(false).width - marginLeft - marginRight;
}

void TableLayout::CalculateLabelWidths(boost::function<float(LayoutItem const&)> const& measure)
{
    HandDownLabelWidth(MeasureLabels(measure));
}

float TableLayout::MeasureLabels(boost::function<float(LayoutItem const&)> const& measure)
{
    labelWidth = kDefaultLabelWidth;
    widestNestedLabel = 0.0f;
    if (!measure)
        return labelWidth;
    for (RowItemPtr const& row : rows)
    {
        if (LayoutItemPtr const& label = row->items[0])
        {
            float width = 0.0f;
            if (label->table)
            {
                float const nested = label->table->MeasureLabels(measure);
                if (label->table->alignment == kLabelColumnShared)
                    width = nested;
                widestNestedLabel = std::max(widestNestedLabel, nested);
            }
            else
                width = measure(*label);
            if (width > labelWidth && labelWidth < kMaximumLabelWidth)
                labelWidth = std::min(width, kMaximumLabelWidth);
        }
        if (LayoutItemPtr const& value = row->items[1]; value && value->table)
            value->table->MeasureLabels(measure);
    }
    return labelWidth;
}

void TableLayout::HandDownLabelWidth(float offered)
{
    if (alignment != kLabelColumnOwn && offered > labelWidth && labelWidth < kMaximumLabelWidth)
        labelWidth = std::min(offered, kMaximumLabelWidth);
    for (RowItemPtr const& row : rows)
    {
        LayoutItemPtr const& label = row->items[0];
        if (!label || !label->table)
            continue;
        label->table->HandDownLabelWidth(
            label->table->alignment == kLabelColumnGroup ? widestNestedLabel : labelWidth);
    }
}

float TableLayout::DoLayout()
{
    UI_SubViewPtr const content = ContentView();
    float const width = content ? content->UI_GetLocalRectF(false).width : 0.0f;
    float height = 0.0f;
    if (!collapsed)
    {
        float y = marginTop;
        for (std::size_t i = 0; i < rows.size(); ++i)
        {
            RowItem& row = *rows[i];
            if (i > 0)
                y += row.spaceBefore;
            float const rowHeight = LayoutRow(row, RectF(marginLeft, y, ContentWidth(), 0.0f));
            y += row.spaceAfter + rowHeight;
            if (i + 1 < rows.size() && row.spaceAfter != -1.0f)
                y += kStandardRowGap;
        }
        height = y + marginBottom;
    }

    bool const layouts = view->UI_GetLayoutsChildren();
    view->UI_SetLayoutsChildren(false);
    if (delegate)
        delegate->SetContentSize(*this, PointF(width, height));
    else
    {
        RectF const now = view->UI_GetLocalRectF(true);
        view->UI_SetLocalRectF(RectF(now.left, now.top, width, height));
    }
    float const finalHeight = view->UI_GetLocalRectF(false).height;
    view->UI_SetLayoutsChildren(layouts);
    return finalHeight;
}

float TableLayout::LayoutRow(RowItem& row, RectF const& rect)
{
    if (!row.view)
        return rect.height;
    float const rowHeight = row.view->UI_GetLocalRectF(false).height;
    float height = rect.height;
    if (LayoutItemPtr const& label = row.items[0])
    {
        float const offered = label->kind == 2 ? ContentWidth() : labelWidth;
        if (label->view)
            height = std::max(height, PlaceItem(*label, RectF(0.0f, 0.0f, offered, rowHeight)));
        else
            height = std::max(height, rowHeight);
        if (label->labelWidthChanged)
            label->labelWidthChanged(labelWidth);
    }
    if (LayoutItemPtr const& value = row.items[1]; value && value->view)
    {
        float const x = labelWidth + kColumnGap;
        height = std::max(height, PlaceItem(*value, RectF(x, 0.0f, ContentWidth() - x, rowHeight)));
    }
    SetRectWithoutChildLayout(row.view.get(), RectF(rect.left, rect.top, rect.width, height));
    return height;
}

} // namespace zephmetadataui::layout
