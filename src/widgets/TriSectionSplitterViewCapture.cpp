#include "widgets/TriSectionSplitterViewCapture.h"

#include "zephmetadataui/TriSectionSplitterView.h"

#include <algorithm>
#include <cmath>

namespace zephmetadataui
{

namespace
{

// Unlike std::clamp, defined when a percentage set by the host makes the
// upper limit negative: the result is then the lower limit.
float Clamp(float value, float low, float high)
{
    return std::max(low, std::min(value, high));
}

} // namespace

TriSectionSplitterViewCapture::TriSectionSplitterViewCapture(TriSectionSplitterView* splitter,
                                                             MouseEvent const& event, bool first)
    : InputCapture(splitter, event), view(splitter), lastY(event.GetPosition().y),
      savedFirstPercentage(splitter->firstPercentage),
      savedSecondPercentage(splitter->secondPercentage), isFirstSplitter(first)
{
}

bool TriSectionSplitterViewCapture::DoMouseEvent(MouseEvent const& event)
{
    if (!event.IsAction(PointerEvent::kActionDrag))
        return false;
    RectF const local = view->UI_GetLocalRectF(false);
    float const y = Clamp(event.GetPosition().y, local.top, local.GetBottom());
    float const delta = y - lastY;
    float const available = view->Available();
    // lastY stays, so that small moves add up.
    if (std::abs(delta) <= 1.0f || available == 0.0f)
        return true;

    float const total = view->OpenFraction();
    float const d = delta / available * total;
    bool const open0 = view->IsOpen(0);
    bool const open1 = view->IsOpen(1);
    float& first = view->firstPercentage;
    float& second = view->secondPercentage;
    if (isFirstSplitter)
    {
        first = Clamp(first + d, 0.0f, total);
        if (open1)
            second = Clamp(second - d, 0.0f, total);
    }
    else if (!open1)
        first = Clamp(first + d, 0.0f, total);
    else
    {
        second += d;
        // Past the top of panel 1 the bar pushes panel 0 up. Past the bottom
        // it only stops: growing panel 0 there would let it jump to the
        // whole height when it is small.
        if (open0 && second < 0.0f)
            first = Clamp(second + first, 0.0f, total);
        second = Clamp(second, 0.0f, total);
    }
    if (open0 && open1)
    {
        float const rest = 1.0f - first - second;
        if (rest < 0.0f)
            (first <= second ? second : first) += rest;
    }

    lastY = y;
    view->Relayout(isFirstSplitter);
    view->UI_UpdateNow(-1);
    return true;
}

bool TriSectionSplitterViewCapture::DoCursor(PointF const&)
{
    UI_NodeManager::Get()->GetResourceManager()->DisplayCursor(
        HasBeenCancelled() ? zephui::kCursorArrow : zephui::kCursorResizeVertical);
    return true;
}

void TriSectionSplitterViewCapture::CaptureEnded()
{
    if (!HasBeenCancelled())
        return;
    view->firstPercentage = savedFirstPercentage;
    view->secondPercentage = savedSecondPercentage;
    view->Relayout(isFirstSplitter);
}

} // namespace zephmetadataui
