#include "zephui/NodeWidget.h"

#include "GainFocus.h"

#include "zephui/QtDrawing.h"
#include "zephui/QtEvents.h"
#include "zephui/UI_NodeManager.h"

#include <QDragEnterEvent>
#include <QDragMoveEvent>
#include <QDropEvent>
#include <QMimeData>
#include <QPainter>

namespace zephui
{

namespace
{

int activeScopes = 0;
char const* const kSuppressContextMenu = "zephuiSuppressContextMenu";

std::vector<std::string> MimeFormats(QMimeData const* data)
{
    std::vector<std::string> formats;
    if (data)
        for (QString const& f : data->formats())
            formats.push_back(f.toStdString());
    return formats;
}

// The deepest node under a point of self, at or below node.
UI_Node* TargetAt(QWidget* self, UI_Node* node, QPointF const& pos)
{
    QWidget* deepest = self->childAt(pos.toPoint());
    if (!deepest)
        return node;
    UI_Node* found = NodeForWidget(deepest);
    return (found && (found == node || found->UI_IsChildOf(node))) ? found : node;
}

} // namespace

// The next widget of the focus chain that takes Tab focus, or null.
QWidget* NextTabStop(QWidget* from, bool forward)
{
    QWidget* w = from;
    for (int guard = 0; guard < 10000; ++guard)
    {
        w = forward ? w->nextInFocusChain() : w->previousInFocusChain();
        if (!w || w == from)
            return nullptr;
        if ((w->focusPolicy() & Qt::TabFocus) && w->isEnabled() && w->isVisibleTo(w->window()) &&
            w->window() == from->window())
            return w;
    }
    return nullptr;
}

UI_Node* NodeForWidget(QWidget const* widget)
{
    for (QWidget const* w = widget; w; w = w->parentWidget())
        if (auto const* link = dynamic_cast<NodeWidgetInterface const*>(w))
            if (link->GetNode())
                return link->GetNode();
    return nullptr;
}

NodeEventScope::NodeEventScope(UI_Node* node)
{
    ++activeScopes;
    // A node with a count of zero is not owned by a pointer (a test's local,
    // say): holding it would delete it at the end of the scope.
    if (node && node->GetRefCount() > 0)
        keep = node;
}

NodeEventScope::~NodeEventScope()
{
    keep.reset(); // may delete the node while widgets are still marked busy
    --activeScopes;
}

bool NodeEventScope::IsAnyActive()
{
    return activeScopes > 0;
}

void NodeDispatch::Setup(QWidget* widget, UI_Node*)
{
    widget->setMouseTracking(true);
}

bool NodeDispatch::OSEvent(UI_Node* node, QEvent* event)
{
    NodeEventScope scope(node);
    if (node->UI_HandleOSEvent(event))
        return true;
    switch (event->type())
    {
    case QEvent::DragEnter:
    {
        auto* e = static_cast<QDragEnterEvent*>(event);
        if (node->UI_DragEnter(PointF(float(e->position().x()), float(e->position().y())),
                               MimeFormats(e->mimeData())))
        {
            e->acceptProposedAction();
            return true;
        }
        return false;
    }
    case QEvent::DragMove:
    {
        auto* e = static_cast<QDragMoveEvent*>(event);
        if (node->UI_DragMove(PointF(float(e->position().x()), float(e->position().y()))))
        {
            e->acceptProposedAction();
            return true;
        }
        return false;
    }
    case QEvent::DragLeave:
        node->UI_DragLeave();
        return false;
    case QEvent::Drop:
    {
        auto* e = static_cast<QDropEvent*>(event);
        if (node->UI_Drop(PointF(float(e->position().x()), float(e->position().y())),
                          MimeFormats(e->mimeData())))
        {
            e->acceptProposedAction();
            return true;
        }
        return false;
    }
    default:
        return false;
    }
}

void NodeDispatch::Paint(QWidget* device, UI_Node* node, QPaintEvent*)
{
    NodeEventScope scope(node);
    QPainter painter(device);
    Drawbot drawbot(SharedSupplierForScale(PainterDeviceScale(&painter)), &painter);
    node->UI_Draw(&drawbot);
}

bool NodeDispatch::Mouse(QWidget* self, QWidget* eventWidget, UI_Node* node, QMouseEvent* event)
{
    NodeEventScope scope(node);
    QPointF pos = event->position();
    if (eventWidget != self)
        pos = eventWidget->mapTo(self, pos);
    UI_Node* target = TargetAt(self, node, pos);
    MouseEvent const me = MouseEventFromQt(*event, pos);
    PointF const point(float(pos.x()), float(pos.y()));
    UI_NodeManager* manager = UI_NodeManager::Get();

    if (event->type() == QEvent::MouseMove)
    {
        // The pointer shape: the deepest node first, then up the tree.
        if (target == node)
            manager->BeginCursorDispatch(self);
        if (!manager->IsCursorTaken() && node->UI_DoCursor(target, point, 0))
            manager->EndCursorDispatch(true);
    }
    if (!node->UI_DoMouseEvent(target, me))
        return false;
    if (event->type() == QEvent::MouseButtonPress && event->button() == Qt::RightButton)
        self->setProperty(kSuppressContextMenu, true);
    event->accept();
    return true;
}

bool NodeDispatch::Wheel(QWidget* self, QWidget* eventWidget, UI_Node* node, QWheelEvent* event)
{
    NodeEventScope scope(node);
    QPointF pos = event->position();
    if (eventWidget != self)
        pos = eventWidget->mapTo(self, pos);
    UI_Node* target = TargetAt(self, node, pos);
    if (!node->UI_DoMouseEvent(target, MouseEventFromQt(*event, pos)))
        return false;
    event->accept();
    return true;
}

bool NodeDispatch::ContextMenu(QWidget* self, UI_Node*, QContextMenuEvent* event)
{
    // A right press that a node took opens no menu of the Qt control.
    if (!self->property(kSuppressContextMenu).toBool())
        return false;
    self->setProperty(kSuppressContextMenu, false);
    event->accept();
    return true;
}

void NodeDispatch::FocusIn(QWidget* self, UI_Node* node, QFocusEvent* event)
{
    NodeEventScope scope(node);
    node->UI_FocusChanged(true);
    if (node->UI_InvalidateOnKeyboardFocusChange())
        node->UI_Invalidate();
    bool const byTab =
        event->reason() == Qt::TabFocusReason || event->reason() == Qt::BacktabFocusReason;
    if (!byTab || IsInsideGainKeyboardFocus())
        return;
    bool const forward = event->reason() == Qt::TabFocusReason;
    QPointer<QWidget> guard(self);
    if (node->UI_GainKeyboardFocus(forward ? kFocusReasonAdvance : kFocusReasonAdvanceBackward))
        return;
    // The node declined the focus that Tab brought: pass it on.
    if (guard && guard->hasFocus())
        if (QWidget* next = NextTabStop(guard, forward))
            next->setFocus(forward ? Qt::TabFocusReason : Qt::BacktabFocusReason);
}

void NodeDispatch::FocusOut(QWidget*, UI_Node* node, QFocusEvent*)
{
    NodeEventScope scope(node);
    node->UI_FocusChanged(false);
    if (node->UI_InvalidateOnKeyboardFocusChange())
        node->UI_Invalidate();
}

void NodeDispatch::Resized(QWidget*, UI_Node* node, QResizeEvent* event)
{
    NodeEventScope scope(node);
    node->WidgetResized(event->size().width(), event->size().height());
}

void NodeDispatch::Changed(QWidget* self, UI_Node* node, QEvent* event)
{
    NodeEventScope scope(node);
    if (event->type() == QEvent::EnabledChange)
        node->UI_DisabledStateChanged();
    else if (event->type() == QEvent::ActivationChange)
        node->UI_ActivationChanged(self->isActiveWindow());
}

void NodeDispatch::Hover(UI_Node* node, bool entered)
{
    NodeEventScope scope(node);
    node->UI_MouseOverChanged(entered);
    if (node->UI_InvalidateOnMouseOverChange())
        node->UI_Invalidate();
}

} // namespace zephui
