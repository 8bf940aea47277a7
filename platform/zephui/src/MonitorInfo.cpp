#include "zephui/MonitorInfo.h"

#include <QGuiApplication>
#include <QScreen>

#include <algorithm>

namespace zephui
{

namespace
{

// How much of the title strip must be on a monitor for the user to grab it.
constexpr float kGrabHeight = 30.0f;
constexpr float kGrabWidth = 50.0f;

float Area(RectF const& r)
{
    return std::max(0.0f, r.width) * std::max(0.0f, r.height);
}

std::vector<Monitor> CurrentMonitors()
{
    std::vector<Monitor> result;
    QScreen const* primary = QGuiApplication::primaryScreen();
    for (QScreen const* screen : QGuiApplication::screens())
    {
        QRect const b = screen->geometry();
        QRect const w = screen->availableGeometry();
        result.push_back({RectF(float(b.x()), float(b.y()), float(b.width()), float(b.height())),
                          RectF(float(w.x()), float(w.y()), float(w.width()), float(w.height())),
                          screen == primary});
    }
    return result;
}

} // namespace

RectF MonitorInfo::GetPrimaryWorkArea() const
{
    for (Monitor const& m : monitors)
        if (m.primary)
            return m.workArea;
    return monitors.empty() ? RectF() : monitors.front().workArea;
}

bool MonitorInfo::EnsureRectIsVisible(RectF& rect) const
{
    if (monitors.empty())
        return false;
    RectF const titleStrip(rect.left, rect.top, rect.width, std::min(rect.height, kGrabHeight));
    Monitor const* best = nullptr;
    float bestArea = 0.0f;
    for (Monitor const& m : monitors)
    {
        RectF const onIt = titleStrip.Intersect(m.workArea);
        if (onIt.width >= std::min(kGrabWidth, rect.width) && onIt.height > 0.0f &&
            rect.top >= m.workArea.top)
            return false;
        float const area = Area(rect.Intersect(m.workArea));
        if (area > bestArea)
        {
            bestArea = area;
            best = &m;
        }
    }
    RectF const area = best ? best->workArea : GetPrimaryWorkArea();
    RectF moved = rect;
    moved.width = std::min(rect.width, area.width);
    moved.height = std::min(rect.height, area.height);
    moved.left = std::clamp(rect.left, area.left, area.left + area.width - moved.width);
    moved.top = std::clamp(rect.top, area.top, area.top + area.height - moved.height);
    bool const changed = moved != rect;
    rect = moved;
    return changed;
}

OS_MonitorInfo::OS_MonitorInfo() : MonitorInfo(CurrentMonitors()) {}

} // namespace zephui
