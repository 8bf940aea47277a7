#include "zephui/NodeHostWidget.h"

#include "zephui/Drawbot.h"

#include <QResizeEvent>

#include <cmath>

namespace zephui
{

NodeHostWidget::NodeHostWidget(UI_NodePtr rootNode, QWidget* parent) : QWidget(parent)
{
    SetRootNode(std::move(rootNode));
}

NodeHostWidget::~NodeHostWidget()
{
    Detach();
}

void NodeHostWidget::Detach()
{
    if (!root)
        return;
    // The node may live on elsewhere: its widget must not die with this one.
    if (QWidget* w = root->UI_GetWidgetIfMade())
        if (w->parentWidget() == this)
            w->setParent(nullptr);
    root.reset();
}

void NodeHostWidget::SetRootNode(UI_NodePtr rootNode)
{
    if (rootNode == root)
        return;
    Detach();
    root = std::move(rootNode);
    if (!root)
        return;
    QWidget* w = root->UI_GetWidget();
    if (!w)
        return;
    w->setParent(this);
    root->UI_SetLocalRectF(RectF(0.0f, 0.0f, float(width()), float(height())));
    root->ApplyGeometry();
    root->UI_Show(true);
    root->ApplyVisibility();
    setFocusProxy(nullptr);
}

QSize NodeHostWidget::sizeHint() const
{
    if (!root)
        return QWidget::sizeHint();
    Drawbot drawbot(root->UI_GetDrawSupplier());
    PointF const size = root->UI_GetRecommendedSize(&drawbot);
    if (size.x <= 0.0f || size.y <= 0.0f)
        return QWidget::sizeHint();
    return QSize(int(std::ceil(size.x)), int(std::ceil(size.y)));
}

void NodeHostWidget::resizeEvent(QResizeEvent* event)
{
    QWidget::resizeEvent(event);
    if (root)
        root->UI_SetLocalRectF(
            RectF(0.0f, 0.0f, float(event->size().width()), float(event->size().height())));
}

} // namespace zephui
