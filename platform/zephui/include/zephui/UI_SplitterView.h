#pragma once
// Two views divided by a bar that the user drags: side by side (a vertical
// bar, the default) or one above the other. The split position is the first
// view's size in pixels; a drag that is cancelled (Escape) puts it back.
// Draw paints a bar, for views that draw splitter bars of their own; a
// SplitterViewSkin in the node's skin set paints it instead.

#include "zephui/UI_SubView.h"
#include "zephui/zephui_export.h"

#include <boost/function.hpp>

namespace zephui
{

class ZEPHUI_EXPORT UI_SplitterView : public UI_SubView
{
public:
    static constexpr float kBarThickness = 6.0f;

    explicit UI_SplitterView(bool sideBySide = true);

    void SetViews(UI_SubViewPtr const& first, UI_SubViewPtr const& second);
    void SetSplitPosition(float position);
    float GetSplitPosition() const { return split; }
    void SetMinimumPaneSize(float size) { minimumPane = size; }
    // Called with the new position after every change by the user.
    void SetSplitChangedCallback(boost::function<void(float)> const& callback)
    {
        splitChanged = callback;
    }
    RectF GetBarRect() const;
    bool IsSideBySide() const { return sideBySide; }

    // Paints a splitter bar into rect: a flat face with a grip in the middle.
    static void Draw(RectF const& rect, Drawbot* drawbot);

    void UI_Draw(Drawbot* drawbot) override;
    bool UI_DoCursor(UI_Node* node, PointF const& point, Flags<unsigned long> flags) override;
    bool UI_DoMouseEvent(UI_Node* node, MouseEvent const& event) override;
    void UI_SizeChanged(RectF const& rect) override;

    // Internal, for the drag: moves the bar so it lies under the pointer.
    void DragTo(float position, bool finished);

private:
    float Clamp(float position) const;
    void Place();

    bool sideBySide = true;
    float split = 150.0f;
    float minimumPane = 20.0f;
    UI_SubViewPtr firstView;
    UI_SubViewPtr secondView;
    boost::function<void(float)> splitChanged;
};

using UI_SplitterViewPtr = boost::intrusive_ptr<UI_SplitterView>;

} // namespace zephui
