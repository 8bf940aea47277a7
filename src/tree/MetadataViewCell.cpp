// MetadataViewCell: geometry of a row's label, value and link button, the
// divider at the shared label width, and its drag.

#include "zephmetadataui/MetadataViewCell.h"

#include "zephmetadataui/MetadataView.h"

#include "tree/TreeToolkit.h"

#include <algorithm>
#include <cmath>

namespace zephmetadataui
{

namespace
{

constexpr float kLinkColumnWidth = 21.0f;
constexpr float kValueGap = 5.0f;
constexpr float kMinimumLabelWidth = 80.0f;
constexpr float kMinimumValueWidth = 100.0f;
constexpr float kDividerGrip = 2.0f;
constexpr int kCursorArrow = 0;
constexpr int kCursorResizeHorizontal = 10;

void DisplayCursor(int shape)
{
    if (ResourceManager const* resources = UI_NodeManager::Get(false)->GetResourceManager())
        resources->DisplayCursor(shape);
}

} // namespace

MetadataViewCell::MetadataViewCell(boost::intrusive_ptr<UI_SubView> const& parent,
                                   UI_MultiColumnTree* tree, bool usesSharedWidth)
    : tree(tree), usesSharedWidth(usesSharedWidth)
{
    if (parent)
        parent->ChildPushBack(UI_NodePtr(this));
    UI_SetLayoutsChildren(true);
}

MetadataViewCell::~MetadataViewCell() = default;

float MetadataViewCell::GetLabelWidth() const
{
    if (!usesSharedWidth)
        return UI_GetLocalRectF(false).width;
    ScaleMatrixF const toTree = UI_Node::UI_GetSelfToSpecificParentMatrix(this, tree);
    return toTree.Inverse().Transform(PointF(MetadataView::GetSharedLabelWidth(), 0.0f)).x;
}

void MetadataViewCell::SetLabelWidth(float width)
{
    float const cellWidth = UI_GetLocalRectF(false).width;
    width = std::min(width, cellWidth - kMinimumValueWidth);
    width = std::max(width, kMinimumLabelWidth);
    ScaleMatrixF const toTree = UI_Node::UI_GetSelfToSpecificParentMatrix(this, tree);
    float const shared = toTree.Transform(PointF(width, 0.0f)).x;
    if (shared == MetadataView::GetSharedLabelWidth())
        return;
    MetadataView::SetSharedLabelWidth(shared);
    PlaceChildren();
    // Other cells move their children when they next draw.
    if (tree)
        for (auto const& row : tree->GetVisibleRows())
            if (UI_SubViewPtr const cellView = row->GetCellView(0))
                if (UI_Node* const first = cellView->ChildGet(0))
                    first->UI_Invalidate(nullptr, 0);
}

void MetadataViewCell::PlaceChildren() const
{
    RectF const bounds = UI_GetLocalRectF(false);
    float const left = bounds.left, top = bounds.top, width = bounds.width, height = bounds.height;
    float const divider = GetLabelWidth();

    if (labelChild)
    {
        RectF rect = bounds;
        if (valueChild || linkChild)
            rect.width = divider;
        labelChild->UI_SetLocalRectF(rect);
    }
    if (valueChild)
    {
        float const x = left + divider + kValueGap;
        float valueWidth = left + width - x;
        if (reservesLinkColumn && x + valueWidth - kLinkColumnWidth > x)
            valueWidth -= kLinkColumnWidth;
        RectF rect(x, top, valueWidth, height);
        if (dynamic_cast<UI_Checkbox*>(valueChild.get()))
        {
            rect.top += 2.0f;
            rect.height -= 2.0f;
        }
        valueChild->UI_SetLocalRectF(rect);
    }
    if (linkChild)
    {
        float const x = std::max(left + width - kLinkColumnWidth + 2.0f, 1.0f);
        linkChild->UI_SetLocalRectF(RectF(x, top, left + width - x, height));
        // A link button never sits on top of the label.
        linkChild->UI_Show(width > divider + kLinkColumnWidth);
    }
}

void MetadataViewCell::UI_Draw(Drawbot* drawbot)
{
    float const shared = MetadataView::GetSharedLabelWidth();
    if (lastSharedWidth != shared)
    {
        lastSharedWidth = shared;
        PlaceChildren();
    }
    if (!valueChild && !linkChild)
    {
        UI_SubView::UI_Draw(drawbot);
        return;
    }

    ColorRGBA color = GetColor(kColor_ListBoxContentDivider);
    if (SkinSet const* skins = UI_GetCurrentSkinSet())
        if (auto const skin = skins->GetSkinWithMap("UI_ListBox"))
            if (auto const* listBox = dynamic_cast<ListBoxSkin const*>(skin.get()))
                color = listBox->GetDividerColor(UI_GetThemeProvider());

    RectF const bounds = UI_GetLocalRectF(false);
    utils::DrawLineRect(drawbot, RectF(GetLabelWidth(), bounds.top, 1.0f, bounds.height), color);
    UI_SubView::UI_Draw(drawbot);
}

bool MetadataViewCell::IsNearDivider(float x) const
{
    return usesSharedWidth && std::fabs(GetLabelWidth() - x) < kDividerGrip;
}

bool MetadataViewCell::UI_DoCursor(UI_Node* /*node*/, PointF const& point,
                                   Flags<unsigned long> /*flags*/)
{
    if (!IsNearDivider(point.x))
        return false;
    DisplayCursor(kCursorResizeHorizontal);
    return true;
}

bool MetadataViewCell::UI_DoMouseEvent(UI_Node* /*node*/, MouseEvent const& event)
{
    if (!event.IsAction(MouseEvent::kActionPress) || !event.IsButton(MouseEvent::kButtonLeft))
        return false;
    // The event's position is in the coordinates of the node it is offered
    // to, which is this cell when it bubbles up from a child.
    if (!IsNearDivider(event.GetPosition().x))
        return false;
    UI_NodeManager::Get(false)->BeginInputCapture(
        boost::intrusive_ptr<InputCapture>(new ColumnWidthCapture(this, event, GetLabelWidth())));
    return true;
}

bool MetadataViewCell::ForceBoundsToBeIdenticalToParent()
{
    auto* const parent = dynamic_cast<UI_SubView*>(UI_GetParentNode());
    if (!parent)
        return false;
    RectF const current = UI_GetLocalRectF(true);
    RectF const wanted(current.left, current.top, parent->UI_GetLocalRectF(false).width,
                       current.height);
    if (wanted == current)
        return false;
    if (lastWidth != -1.0f && lastWidth != wanted.width)
        // The value column keeps its width; the label takes the difference.
        SetLabelWidth(wanted.width + GetLabelWidth() - lastWidth);
    lastWidth = wanted.width;
    UI_SetLocalRectF(wanted);
    return true;
}

void MetadataViewCell::UI_SizeChanged(RectF const& rect)
{
    UI_SubView::UI_SizeChanged(rect);
    ForceBoundsToBeIdenticalToParent();
    PlaceChildren();
}

void MetadataViewCell::UI_LayoutChildren(PointF const& oldSize, PointF const& newSize)
{
    bool const changed = ForceBoundsToBeIdenticalToParent();
    if (changed && !(oldSize.x == 0.0f && oldSize.y == 0.0f))
    {
        SetLabelWidth(GetLabelWidth() + newSize.x - oldSize.x);
        PlaceChildren();
    }
}

ColumnWidthCapture::ColumnWidthCapture(MetadataViewCell* cell, MouseEvent const& event,
                                       float startWidth)
    : InputCapture(cell, event), cell(cell), startWidth(startWidth)
{
}

bool ColumnWidthCapture::DoMouseEvent(MouseEvent const& event)
{
    if (event.IsAction(MouseEvent::kActionDrag) && cell)
        cell->SetLabelWidth(event.GetPosition().x);
    return false;
}

bool ColumnWidthCapture::DoCursor(PointF const& /*position*/)
{
    DisplayCursor(HasBeenCancelled() ? kCursorArrow : kCursorResizeHorizontal);
    return true;
}

void ColumnWidthCapture::CaptureEnded()
{
    if (HasBeenCancelled() && cell)
        cell->SetLabelWidth(startWidth);
}

} // namespace zephmetadataui
