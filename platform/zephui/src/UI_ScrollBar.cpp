#include "zephui/UI_ScrollBar.h"

#include "zephui/NodeWidget.h"

#include <QScrollBar>

#include <algorithm>
#include <cmath>

namespace zephui
{

UI_ScrollBar::UI_ScrollBar(unsigned long flags) : vertical((flags & kScrollBarHorizontal) == 0)
{
    SetWantsKeyboardFocus(false);
}

QWidget* UI_ScrollBar::CreateWidget()
{
    auto* bar = new NodeWidget<QScrollBar>(this, vertical ? Qt::Vertical : Qt::Horizontal);
    bar->setFocusPolicy(Qt::NoFocus);
    QObject::connect(bar, &QScrollBar::valueChanged, bar,
                     [this, bar](int position)
                     {
                         if (!applying)
                             OnWidgetValue(position, bar->isSliderDown());
                     });
    QObject::connect(bar, &QScrollBar::sliderReleased, bar,
                     [this]
                     {
                         NodeEventScope scope(this);
                         SendValueChangedMessage();
                     });
    ApplyTo(bar);
    return bar;
}

UI_ScrollBar::Range UI_ScrollBar::Clamp(Range visible) const
{
    float span = std::max(0.0f, visible.second - visible.first);
    float const whole = extent.second - extent.first;
    span = std::min(span, std::max(0.0f, whole));
    float top = visible.first;
    top = std::min(top, extent.second - span);
    top = std::max(top, extent.first);
    return Range(top, top + span);
}

void UI_ScrollBar::SetValue(Range const& visible)
{
    Range const clamped = Clamp(visible);
    if (clamped == value)
        return;
    value = clamped;
    ApplyToWidget();
}

void UI_ScrollBar::SetExtent(Range const& whole)
{
    Range const normal(whole.first, std::max(whole.first, whole.second));
    if (normal == extent)
        return;
    extent = normal;
    value = Clamp(value);
    ApplyToWidget();
}

bool UI_ScrollBar::IsScrollable() const
{
    return (extent.second - extent.first) - GetValueRange() > 0.5f;
}

void UI_ScrollBar::DoScroll(bool forward, bool byPage, float amount)
{
    float const step = (byPage ? std::max(1.0f, GetValueRange() - lineStep) : lineStep) * amount;
    float const delta = forward ? step : -step;
    Range const before = value;
    SetValue(Range(value.first + delta, value.second + delta));
    if (value != before)
    {
        NodeEventScope scope(this);
        SendValueChangedMessage();
    }
}

void UI_ScrollBar::ApplyToWidget()
{
    if (auto* bar = qobject_cast<QScrollBar*>(UI_GetWidgetIfMade()))
        ApplyTo(bar);
}

void UI_ScrollBar::ApplyTo(QScrollBar* bar)
{
    applying = true;
    int const span = int(std::lround(GetValueRange()));
    int const lo = int(std::floor(extent.first));
    int const hi = std::max(lo, int(std::ceil(extent.second)) - span);
    bar->setRange(lo, hi);
    bar->setPageStep(std::max(1, span));
    bar->setSingleStep(std::max(1, int(lineStep)));
    bar->setValue(int(std::lround(value.first)));
    applying = false;
}

void UI_ScrollBar::OnWidgetValue(int position, bool interactive)
{
    NodeEventScope scope(this);
    float const span = GetValueRange();
    Range const next = Clamp(Range(float(position), float(position) + span));
    if (next == value)
        return;
    value = next;
    if (interactive)
        SendInteractiveValueChangedMessage();
    else
        SendValueChangedMessage();
}

} // namespace zephui
