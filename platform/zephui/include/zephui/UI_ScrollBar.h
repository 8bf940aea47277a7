#pragma once
// A scroll bar over a QScrollBar. Its value is the visible part of a document
// as a pair of floats (top, bottom); its extent is the whole document (lo, hi).
// Changes by the user send NotifyWhenChanged (and, while the thumb is dragged,
// NotifyWhenChangedInteractively); SetValue by program sends nothing.

#include "zephui/UI_ControlView.h"
#include "zephui/zephui_export.h"

#include <utility>

class QScrollBar;

namespace zephui
{

class ZEPHUI_EXPORT UI_ScrollBar : public UI_InteractiveControlView
{
public:
    using Range = std::pair<float, float>;

    enum Flags_ : unsigned long
    {
        kScrollBarHorizontal = 0x1,
        kScrollBarVertical = 0x4, // what the text views pass
    };

    explicit UI_ScrollBar(unsigned long flags = kScrollBarVertical);

    // The breadth of a scroll bar: the width of a vertical one.
    static float GetDefaultSize() { return 15.0f; }

    Range GetValue() const { return value; }
    // Clamped into the extent, keeping the span where it fits.
    void SetValue(Range const& visible);
    Range GetExtent() const { return extent; }
    void SetExtent(Range const& whole);
    // The visible span, bottom minus top.
    float GetValueRange() const { return value.second - value.first; }
    // True if the document is longer than the visible span.
    bool IsScrollable() const;
    // Scrolls towards the end (forward) or the start by lines or pages;
    // amount counts them. Tells the change callables.
    void DoScroll(bool forward, bool byPage, float amount);
    void SetLineStep(float step) { lineStep = step; }
    float GetLineStep() const { return lineStep; }
    bool IsVertical() const { return vertical; }

protected:
    QWidget* CreateWidget() override;

private:
    void ApplyToWidget();
    void ApplyTo(QScrollBar* bar);
    void OnWidgetValue(int position, bool interactive);
    Range Clamp(Range visible) const;

    Range value{0.0f, 0.0f};
    Range extent{0.0f, 0.0f};
    float lineStep = 16.0f;
    bool vertical = true;
    bool applying = false;
};

using UI_ScrollBarPtr = boost::intrusive_ptr<UI_ScrollBar>;

} // namespace zephui
