#include "zephui/UI_ScrollView.h"

#include <boost/make_shared.hpp>

#include <algorithm>
#include <cmath>

namespace zephui
{

UI_ScrollView::UI_ScrollView(unsigned long flags)
    : viewport(new UI_SubView), contentView(new UI_SubView)
{
    viewport->UI_Show(true);
    contentView->UI_Show(true);
    viewport->ChildPushBack(contentView);
    ChildPushBack(viewport);
    // Bars hold a callable back into this view; the view empties it when it dies.
    barChanged =
        boost::make_shared<boost::function<void(Message*)>>([this](Message*) { ApplyScroll(); });
    barY = new UI_ScrollBar(UI_ScrollBar::kScrollBarVertical);
    barY->UI_Show(true);
    barY->NotifyWhenChanged(barChanged);
    barY->NotifyWhenChangedInteractively(barChanged);
    ChildPushBack(barY);
    if (flags & kScrollHorizontal)
    {
        barX = new UI_ScrollBar(UI_ScrollBar::kScrollBarHorizontal);
        barX->UI_Show(true);
        barX->NotifyWhenChanged(barChanged);
        barX->NotifyWhenChangedInteractively(barChanged);
        ChildPushBack(barX);
    }
    PlaceParts();
}

UI_ScrollView::~UI_ScrollView()
{
    if (barChanged)
        barChanged->clear();
}

RectF UI_ScrollView::GetViewportRectF() const
{
    RectF const local = UI_GetLocalRectF(false);
    float const bar = UI_ScrollBar::GetDefaultSize();
    return RectF(0.0f, 0.0f, std::max(0.0f, local.width - bar),
                 std::max(0.0f, local.height - (barX ? bar : 0.0f)));
}

void UI_ScrollView::PlaceParts()
{
    RectF const local = UI_GetLocalRectF(false);
    RectF const port = GetViewportRectF();
    float const bar = UI_ScrollBar::GetDefaultSize();
    viewport->UI_SetLocalRectF(port);
    barY->UI_SetLocalRectF(RectF(std::max(0.0f, local.width - bar), 0.0f, bar, port.height));
    barY->SetExtent(UI_ScrollBar::Range(
        contentRect.top, contentRect.top + std::max(contentRect.height, port.height)));
    barY->SetValue(
        UI_ScrollBar::Range(barY->GetValue().first, barY->GetValue().first + port.height));
    barY->UI_SetDisabled(!barY->IsScrollable());
    if (barX)
    {
        barX->UI_SetLocalRectF(RectF(0.0f, port.height, port.width, bar));
        barX->SetExtent(UI_ScrollBar::Range(
            contentRect.left, contentRect.left + std::max(contentRect.width, port.width)));
        barX->SetValue(
            UI_ScrollBar::Range(barX->GetValue().first, barX->GetValue().first + port.width));
        barX->UI_SetDisabled(!barX->IsScrollable());
    }
    ApplyScroll();
}

void UI_ScrollView::ApplyScroll()
{
    RectF const port = GetViewportRectF();
    if (movesContent)
    {
        PointF const at = GetScrollPosition();
        float const width = barX ? std::max(contentRect.width, port.width) : port.width;
        contentView->UI_SetLocalRectF(RectF(-(at.x - contentRect.left), -(at.y - contentRect.top),
                                            width, std::max(contentRect.height, 0.0f)));
    }
    else
        contentView->UI_SetLocalRectF(RectF(0.0f, 0.0f, port.width, port.height));
    if (scrollChanged)
        scrollChanged();
}

void UI_ScrollView::SetContentRectF(RectF const& rect)
{
    if (rect == contentRect)
        return;
    contentRect = rect;
    PlaceParts();
}

void UI_ScrollView::Update()
{
    PlaceParts();
}

PointF UI_ScrollView::GetScrollPosition() const
{
    return PointF(barX ? barX->GetValue().first : contentRect.left, barY->GetValue().first);
}

void UI_ScrollView::ScrollTo(PointF const& position)
{
    PointF const before = GetScrollPosition();
    float const spanY = barY->GetValueRange();
    barY->SetValue(UI_ScrollBar::Range(position.y, position.y + spanY));
    if (barX)
    {
        float const spanX = barX->GetValueRange();
        barX->SetValue(UI_ScrollBar::Range(position.x, position.x + spanX));
    }
    if (GetScrollPosition() != before)
        ApplyScroll();
}

void UI_ScrollView::OffsetScroll(float dx, float dy)
{
    PointF const at = GetScrollPosition();
    ScrollTo(PointF(at.x + dx, at.y + dy));
}

void UI_ScrollView::ScrollIntoView(RectF const& rect)
{
    PointF at = GetScrollPosition();
    RectF const port = GetViewportRectF();
    if (rect.width <= 0.0f && rect.height <= 0.0f && rect.left == 0.0f && rect.top == 0.0f)
    {
        ScrollTo(PointF(contentRect.left, contentRect.top));
        return;
    }
    if (rect.GetBottom() > at.y + port.height)
        at.y = rect.GetBottom() - port.height;
    if (rect.top < at.y)
        at.y = rect.top;
    if (barX)
    {
        if (rect.GetRight() > at.x + port.width)
            at.x = rect.GetRight() - port.width;
        if (rect.left < at.x)
            at.x = rect.left;
    }
    ScrollTo(at);
}

void UI_ScrollView::SetMovesContent(bool moves)
{
    if (moves == movesContent)
        return;
    movesContent = moves;
    ApplyScroll();
}

void UI_ScrollView::UI_SizeChanged(RectF const& rect)
{
    UI_SubView::UI_SizeChanged(rect);
    PlaceParts();
}

bool UI_ScrollView::UI_DoMouseEvent(UI_Node* /*node*/, MouseEvent const& event)
{
    if (!event.IsAction(MouseEvent::kActionWheel) || event.GetMouseWheelDelta() == 0.0f)
        return false;
    UI_ScrollBar* bar =
        event.GetMouseWheelAxis() == MouseEvent::kAxisHorizontal ? barX.get() : barY.get();
    if (!bar || !bar->IsScrollable())
        return false; // let an outer scroll view have it
    float const delta = event.GetMouseWheelDelta();
    bar->DoScroll(delta > 0.0f, false, std::fabs(delta) * 3.0f);
    return true;
}

} // namespace zephui
