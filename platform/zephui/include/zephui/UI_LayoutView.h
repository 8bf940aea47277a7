#pragma once
// A subview that, with its layout on, stacks its shown children one after
// another, across (horizontal) or down (vertical), in child order. With its
// layout off it is a plain subview that moves its children by their bindings.

#include "zephui/UI_SubView.h"
#include "zephui/zephui_export.h"

namespace zephui
{

class ZEPHUI_EXPORT UI_LayoutView : public UI_SubView
{
public:
    enum LayoutMode
    {
        kLayoutHorizontal = 0,
        kLayoutVertical = 1
    };

    UI_LayoutView() = default;
    explicit UI_LayoutView(RectF const& rect) : UI_SubView(rect) {}

    void SetLayoutEnabled(bool enabled);
    bool IsLayoutEnabled() const { return layoutEnabled; }
    void SetLayoutMode(LayoutMode mode);
    LayoutMode GetLayoutMode() const { return mode; }
    // Keeps the first child's distance from the start and each child's
    // distance from the cross edge; without, the stack starts at 0, 0.
    void SetMaintainMargins(bool maintain);
    bool GetMaintainMargins() const { return maintainMargins; }
    // Stretches each child across the view, less its margin on both sides.
    void SetScaleChildren(bool scale);
    bool GetScaleChildren() const { return scaleChildren; }
    // The gap between neighbouring children.
    void SetSpacing(float spacing);
    float GetSpacing() const { return spacing; }

    // Stacks the children now; call it after showing or hiding one.
    void Relayout();

    void UI_LayoutChildren(PointF const& oldSize, PointF const& newSize) override;
    void ChildAdded(UI_Node* child) override;
    void ChildRemoved(UI_Node* child) override;

private:
    bool layoutEnabled = false;
    LayoutMode mode = kLayoutHorizontal;
    bool maintainMargins = false;
    bool scaleChildren = false;
    float spacing = 8.0f;
};

using UI_LayoutViewPtr = boost::intrusive_ptr<UI_LayoutView>;

} // namespace zephui
