#include "zepheve/DynamicGroup.h"

#include "ArrangementLayout.h"

#include <QWidget>

#include <functional>

namespace zepheve
{

DynamicGroup::DynamicGroup(Placement placement) : placement(placement) {}

DynamicGroup::~DynamicGroup() = default;

QWidget* DynamicGroup::CreateWidget()
{
    QWidget* widget = UI_SubView::CreateWidget();
    auto* layout = new ArrangementLayout(
        placement == kPlaceRow ? QBoxLayout::LeftToRight : QBoxLayout::TopToBottom, this, widget);
    layout->setAlignment(alignment);
    return widget;
}

ArrangementLayout* DynamicGroup::Layout()
{
    UI_GetWidget();
    return LayoutOf(this);
}

void DynamicGroup::SetSpacing(float horizontal, float vertical)
{
    if (ArrangementLayout* layout = Layout())
        layout->setSpacing(int(placement == kPlaceRow ? horizontal : vertical));
}

void DynamicGroup::SetMargins(float left, float top, float right, float bottom)
{
    if (ArrangementLayout* layout = Layout())
        layout->setContentsMargins(int(left), int(top), int(right), int(bottom));
}

void DynamicGroup::SetAlignment(Qt::Alignment value)
{
    // Each direction keeps its default unless given.
    if (!(value & Qt::AlignHorizontal_Mask))
        value |= alignment & Qt::AlignHorizontal_Mask;
    if (!(value & Qt::AlignVertical_Mask))
        value |= alignment & Qt::AlignVertical_Mask;
    alignment = value;
    if (ArrangementLayout* layout = Layout())
        layout->setAlignment(alignment);
}

void DynamicGroup::AddChild(zephui::UI_NodePtr const& child, Qt::Orientations grow)
{
    ChildPushBack(child);
    if (ArrangementLayout* layout = Layout())
        layout->AddNode(child.get(), grow, alignment);
}

void DynamicGroup::InvalidateAll()
{
    // Every cached size below is stale first; then places are given top down,
    // so that each group is laid out in the room its parent just gave it.
    std::vector<DynamicGroup*> groups;
    std::function<void(zephui::UI_Node*)> collect = [&](zephui::UI_Node* node)
    {
        if (auto* group = dynamic_cast<DynamicGroup*>(node))
            groups.push_back(group);
        for (std::size_t i = 0; i < node->ChildCount(); ++i)
            collect(node->ChildGet(i));
    };
    collect(this);
    // Bottom up, so each group sees whether the groups inside it grow.
    for (auto it = groups.rbegin(); it != groups.rend(); ++it)
        if (ArrangementLayout* layout = LayoutOf(*it))
        {
            layout->RefreshAlignments();
            layout->invalidate();
            // Qt refreshes a group's size in its parent only when it shows.
            (*it)->UI_GetWidgetIfMade()->updateGeometry();
        }
    for (DynamicGroup* group : groups)
        if (ArrangementLayout* layout = LayoutOf(group))
        {
            zephui::RectF const r = group->UI_GetLocalRectF(false);
            layout->setGeometry(QRect(0, 0, int(r.width), int(r.height)));
        }
}

zephui::PointF DynamicGroup::GetNaturalSize()
{
    ArrangementLayout const* layout = Layout();
    QSize const s = layout ? layout->sizeHint() : QSize();
    return zephui::PointF(float(s.width()), float(s.height()));
}

zephui::PointF DynamicGroup::GetMinimumSize()
{
    ArrangementLayout const* layout = Layout();
    QSize const s = layout ? layout->minimumSize() : QSize();
    return zephui::PointF(float(s.width()), float(s.height()));
}

void DynamicGroup::UI_SizeChanged(zephui::RectF const& rect)
{
    UI_SubView::UI_SizeChanged(rect);
    if (ArrangementLayout* layout = LayoutOf(this))
        layout->setGeometry(QRect(0, 0, int(rect.width), int(rect.height)));
}

} // namespace zepheve
