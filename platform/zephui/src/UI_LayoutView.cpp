#include "zephui/UI_LayoutView.h"

namespace zephui
{

void UI_LayoutView::SetLayoutEnabled(bool enabled)
{
    if (enabled == layoutEnabled)
        return;
    layoutEnabled = enabled;
    Relayout();
}

void UI_LayoutView::SetLayoutMode(LayoutMode newMode)
{
    if (newMode == mode)
        return;
    mode = newMode;
    Relayout();
}

void UI_LayoutView::SetMaintainMargins(bool maintain)
{
    if (maintain == maintainMargins)
        return;
    maintainMargins = maintain;
    Relayout();
}

void UI_LayoutView::SetScaleChildren(bool scale)
{
    if (scale == scaleChildren)
        return;
    scaleChildren = scale;
    Relayout();
}

void UI_LayoutView::SetSpacing(float newSpacing)
{
    if (newSpacing == spacing)
        return;
    spacing = newSpacing;
    Relayout();
}

void UI_LayoutView::Relayout()
{
    if (!layoutEnabled)
        return;
    bool const across = mode == kLayoutHorizontal;
    RectF const area = UI_GetLocalRectF(false);
    float const crossExtent = across ? area.height : area.width;
    float position = 0.0f;
    bool first = true;
    for (std::size_t i = 0; i < ChildCount(); ++i)
    {
        UI_Node* child = ChildGet(i);
        if (!child->UI_IsShown())
            continue;
        RectF const r = child->UI_GetLocalRectF(true);
        // The first child stays where it is, so a second pass changes nothing.
        if (first && maintainMargins)
            position = across ? r.left : r.top;
        first = false;
        float const cross = maintainMargins ? (across ? r.top : r.left) : 0.0f;
        float crossSize = across ? r.height : r.width;
        if (scaleChildren)
            crossSize = crossExtent - 2.0f * cross;
        if (across)
        {
            child->UI_SetLocalRectF(RectF(position, cross, r.width, crossSize));
            position += r.width + spacing;
        }
        else
        {
            child->UI_SetLocalRectF(RectF(cross, position, crossSize, r.height));
            position += r.height + spacing;
        }
    }
}

void UI_LayoutView::UI_LayoutChildren(PointF const& oldSize, PointF const& newSize)
{
    if (layoutEnabled)
        Relayout();
    else
        UI_SubView::UI_LayoutChildren(oldSize, newSize);
}

void UI_LayoutView::ChildAdded(UI_Node* child)
{
    UI_SubView::ChildAdded(child);
    Relayout();
}

void UI_LayoutView::ChildRemoved(UI_Node* child)
{
    UI_SubView::ChildRemoved(child);
    Relayout();
}

} // namespace zephui
