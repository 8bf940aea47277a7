#pragma once
// A view that scrolls a content view inside a viewport, with a vertical scroll
// bar always at its right edge (disabled when nothing scrolls) and, on
// request, a horizontal one. The content view is where children go; its size
// is what SetContentRectF says. A view that lays out its own visible part (the
// multi-column tree) turns SetMovesContent off: the content view then stays
// the size of the viewport and only the scroll position changes.

#include "zephui/UI_ScrollBar.h"
#include "zephui/UI_SubView.h"
#include "zephui/zephui_export.h"

#include <boost/function.hpp>

namespace zephui
{

class ZEPHUI_EXPORT UI_ScrollView : public UI_SubView
{
public:
    enum ScrollFlags : unsigned long
    {
        kScrollHorizontal = 0x1,
        kScrollVertical = 0x2
    };

    explicit UI_ScrollView(unsigned long flags = kScrollVertical);
    ~UI_ScrollView() override;

    boost::intrusive_ptr<UI_SubView> GetContentView() const { return contentView; }
    // The document's size, in the content view's coordinates.
    void SetContentRectF(RectF const& rect);
    RectF GetContentRectF() const { return contentRect; }
    // Re-applies scroll ranges and the content's place.
    void Update();

    // Null if the view does not scroll that way.
    UI_ScrollBarPtr GetScrollBarX() const { return barX; }
    UI_ScrollBarPtr GetScrollBarY() const { return barY; }

    // The document point shown at the viewport's top left.
    PointF GetScrollPosition() const;
    void ScrollTo(PointF const& position);
    void OffsetScroll(float dx, float dy);
    void OffsetScroll(PointF const& delta) { OffsetScroll(delta.x, delta.y); }
    // Scrolls as little as needed to show rect (content coordinates); an
    // empty rectangle at the origin scrolls to the top.
    void ScrollIntoView(RectF const& rect);
    // The visible area, in the scroll view's own coordinates.
    RectF GetViewportRectF() const;

    void SetMovesContent(bool moves);
    // Called after every change of the scroll position.
    void SetScrollChangedCallback(boost::function<void()> const& callback)
    {
        scrollChanged = callback;
    }

    void UI_SizeChanged(RectF const& rect) override;
    bool UI_DoMouseEvent(UI_Node* node, MouseEvent const& event) override;

private:
    void PlaceParts();
    void ApplyScroll();

    boost::intrusive_ptr<UI_SubView> viewport;
    boost::intrusive_ptr<UI_SubView> contentView;
    UI_ScrollBarPtr barX;
    UI_ScrollBarPtr barY;
    MessageCallback barChanged;
    RectF contentRect;
    bool movesContent = true;
    boost::function<void()> scrollChanged;
};

using UI_ScrollViewPtr = boost::intrusive_ptr<UI_ScrollView>;

} // namespace zephui
