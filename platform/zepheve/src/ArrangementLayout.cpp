#include "ArrangementLayout.h"

#include "zepheve/DynamicGroup.h"

#include <QWidget>

namespace zepheve
{

ArrangementLayout::ArrangementLayout(Direction direction, zephui::UI_Node* owner, QWidget* widget)
    : QBoxLayout(direction, widget), owner(owner)
{
    setContentsMargins(0, 0, 0, 0);
    setSpacing(0);
}

void ArrangementLayout::AddNode(zephui::UI_Node* child, Qt::Orientations grow,
                                Qt::Alignment alignment)
{
    QWidget* widget = child->UI_GetWidget();
    if (!widget)
        return;
    bool const column = direction() == TopToBottom || direction() == BottomToTop;
    Qt::Orientation const along = column ? Qt::Vertical : Qt::Horizontal;

    // A group stays Preferred where it doesn't grow itself, so that a growing
    // child inside it still makes it grow (Qt's expanding directions).
    bool const isGroup = dynamic_cast<DynamicGroup*>(child) != nullptr;
    QSizePolicy::Policy const still = isGroup ? QSizePolicy::Preferred : QSizePolicy::Fixed;
    QSizePolicy policy = widget->sizePolicy();
    policy.setHorizontalPolicy(grow & Qt::Horizontal ? QSizePolicy::Expanding : still);
    policy.setVerticalPolicy(grow & Qt::Vertical ? QSizePolicy::Expanding : still);
    widget->setSizePolicy(policy);

    this->alignment = alignment;
    placed.push_back({widget, grow});
    addWidget(widget, grow & along ? 1 : 0, ItemAlignment(widget, grow));
}

Qt::Alignment ArrangementLayout::ItemAlignment(QWidget const* widget, Qt::Orientations grow) const
{
    bool const column = direction() == TopToBottom || direction() == BottomToTop;
    Qt::Orientation const across = column ? Qt::Horizontal : Qt::Vertical;
    if (QLayout const* inner = widget->layout())
        grow |= inner->expandingDirections();
    if (grow & across)
        return {};
    return alignment &
           (across == Qt::Horizontal ? Qt::AlignHorizontal_Mask : Qt::AlignVertical_Mask);
}

void ArrangementLayout::RefreshAlignments()
{
    for (Placed const& p : placed)
        if (p.widget && indexOf(p.widget) >= 0)
            setAlignment(p.widget, ItemAlignment(p.widget, p.grow));
}

void ArrangementLayout::setGeometry(QRect const& rect)
{
    QBoxLayout::setGeometry(rect);
    for (std::size_t i = 0; i < owner->ChildCount(); ++i)
    {
        zephui::UI_Node* child = owner->ChildGet(i);
        QWidget const* widget = child->UI_GetWidgetIfMade();
        if (!widget || indexOf(widget) < 0)
            continue;
        QRect const g = widget->geometry();
        child->UI_SetLocalRectF(
            zephui::RectF(float(g.x()), float(g.y()), float(g.width()), float(g.height())));
    }
}

ArrangementLayout* LayoutOf(zephui::UI_Node const* node)
{
    QWidget const* widget = node ? node->UI_GetWidgetIfMade() : nullptr;
    return widget ? dynamic_cast<ArrangementLayout*>(widget->layout()) : nullptr;
}

} // namespace zepheve
