#include "timedtext/TimedTextScroll.h"

#include <algorithm>
#include <cmath>

namespace zephmetadataui::timedtext
{

namespace
{

// A position this close below the top of the view counts as out of sight.
constexpr float kTopMargin = 11.0f;

} // namespace

void PlaceScrollBar(UI_ScrollBar& bar, RectF const& rect)
{
    float const size = UI_ScrollBar::GetDefaultSize();
    bar.UI_SetLocalRectF(
        RectF(std::max(0.0f, rect.left + rect.width - size), 0.0f, size, rect.height));
}

bool ScrollToPosition(UI_ScrollBar& bar, float position)
{
    UI_ScrollBar::Range const extent = bar.GetExtent();
    float const lo = extent.first;
    float const hi = extent.second;
    float const shown = bar.UI_GetLocalRectF(false).height - 2.0f;
    float const target = std::clamp(position, lo, hi);
    float top = std::clamp(position - shown * 0.5f, lo, hi);
    float bottom = top + std::clamp(shown, lo, hi);
    if (bottom > hi)
    {
        top -= bottom - hi;
        bottom = hi;
    }
    UI_ScrollBar::Range const value = bar.GetValue();
    if (std::fabs((value.second - value.first) - (bottom - top)) <= 0.001f &&
        value.first <= target - kTopMargin && target <= value.second)
        return false;
    bar.SetValue(UI_ScrollBar::Range(top, bottom));
    return bar.GetValue() != value;
}

bool ScrollByWheel(UI_ScrollBar& bar, MouseEvent const& event)
{
    float const delta = event.GetMouseWheelDelta();
    if (!event.IsAction(MouseEvent::kActionWheel) || delta == 0.0f ||
        event.GetMouseWheelAxis() != MouseEvent::kAxisVertical)
        return false;
    if (!bar.UI_IsDisabled())
        bar.DoScroll(delta >= 1.0f, false, std::fabs(delta));
    return true;
}

} // namespace zephmetadataui::timedtext
