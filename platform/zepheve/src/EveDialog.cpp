#include "EveDialog.h"

#include "ArrangementLayout.h"

#include <QWidget>

namespace zepheve
{

EveDialog::EveDialog(zephcore::UTF16String const& title, zephui::UI_Node* parentNode)
    : UI_Dialog(title, parentNode)
{
}

QWidget* EveDialog::CreateWidget()
{
    QWidget* widget = UI_Dialog::CreateWidget();
    auto* layout = new ArrangementLayout(QBoxLayout::TopToBottom, this, widget);
    layout->setAlignment(Qt::AlignLeft | Qt::AlignTop);
    return widget;
}

void EveDialog::SetSpacing(float spacing)
{
    UI_GetWidget();
    if (ArrangementLayout* layout = LayoutOf(this))
        layout->setSpacing(int(spacing));
}

void EveDialog::SetMargins(float left, float top, float right, float bottom)
{
    UI_GetWidget();
    if (ArrangementLayout* layout = LayoutOf(this))
        layout->setContentsMargins(int(left), int(top), int(right), int(bottom));
}

void EveDialog::AddChild(zephui::UI_NodePtr const& child, Qt::Orientations grow)
{
    ChildPushBack(child);
    if (ArrangementLayout* layout = LayoutOf(this))
        layout->AddNode(child.get(), grow, Qt::AlignLeft | Qt::AlignTop);
}

void EveDialog::LayOut()
{
    if (ArrangementLayout* layout = LayoutOf(this))
    {
        zephui::RectF const r = UI_GetLocalRectF(false);
        layout->setGeometry(QRect(0, 0, int(r.width), int(r.height)));
    }
}

zephui::PointF EveDialog::GetNaturalSize() const
{
    ArrangementLayout const* layout = LayoutOf(this);
    QSize const s = layout ? layout->sizeHint() : QSize();
    return zephui::PointF(float(s.width()), float(s.height()));
}

zephui::PointF EveDialog::GetMinimumContentSize() const
{
    ArrangementLayout const* layout = LayoutOf(this);
    QSize const s = layout ? layout->minimumSize() : QSize();
    return zephui::PointF(float(s.width()), float(s.height()));
}

void EveDialog::UI_SizeChanged(zephui::RectF const& rect)
{
    UI_Dialog::UI_SizeChanged(rect);
    LayOut();
}

} // namespace zepheve
