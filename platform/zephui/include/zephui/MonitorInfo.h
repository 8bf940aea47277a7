#pragma once
// The monitors a window can be on, and the rule that brings a remembered
// window rectangle back onto one of them when its monitor has gone or the
// monitors were rearranged since it was stored.

#include "zephui/Geometry.h"
#include "zephui/zephui_export.h"

#include <vector>

namespace zephui
{

struct ZEPHUI_EXPORT Monitor
{
    RectF bounds;   // the whole screen
    RectF workArea; // without panels and task bars
    bool primary = false;
};

class ZEPHUI_EXPORT MonitorInfo
{
public:
    explicit MonitorInfo(std::vector<Monitor> monitors) : monitors(std::move(monitors)) {}
    virtual ~MonitorInfo() = default;

    std::vector<Monitor> const& GetMonitors() const { return monitors; }
    // The primary monitor's work area; an empty rectangle without monitors.
    RectF GetPrimaryWorkArea() const;
    // Leaves a rectangle whose title strip (its top 30 units, at least 50
    // wide) lies on a work area as it is. Any other is moved onto the work
    // area it overlaps most, or the primary one, shrunk to fit it if it is
    // larger, and kept as close to its old place as that allows. True if the
    // rectangle changed.
    bool EnsureRectIsVisible(RectF& rect) const;

private:
    std::vector<Monitor> monitors;
};

// The monitors of this session, as the window system reports them now.
class ZEPHUI_EXPORT OS_MonitorInfo : public MonitorInfo
{
public:
    OS_MonitorInfo();
};

} // namespace zephui
