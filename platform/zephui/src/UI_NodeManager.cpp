#include "zephui/UI_NodeManager.h"

#include "zephui/DrawbotImageResourceCache.h"
#include "zephui/NodeWidget.h"
#include "zephui/QtEvents.h"
#include "zephui/ResourceManager.h"
#include "zephui/UI_Node.h"

#include <QApplication>
#include <QCursor>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QPointer>
#include <QWheelEvent>
#include <QWidget>

#include <algorithm>

namespace zephui
{

namespace
{

Qt::CursorShape QtCursorShape(int shape)
{
    switch (shape)
    {
    case kCursorIBeam:
        return Qt::IBeamCursor;
    case kCursorWait:
        return Qt::WaitCursor;
    case kCursorCross:
        return Qt::CrossCursor;
    case kCursorPointingHand:
        return Qt::PointingHandCursor;
    case kCursorForbidden:
        return Qt::ForbiddenCursor;
    case kCursorOpenHand:
        return Qt::OpenHandCursor;
    case kCursorClosedHand:
        return Qt::ClosedHandCursor;
    case kCursorMove:
        return Qt::SizeAllCursor;
    case kCursorHelp:
        return Qt::WhatsThisCursor;
    case kCursorResizeHorizontal:
        return Qt::SizeHorCursor;
    case kCursorResizeVertical:
        return Qt::SizeVerCursor;
    default:
        return Qt::ArrowCursor;
    }
}

bool IsMouseEvent(QEvent::Type t)
{
    return t == QEvent::MouseButtonPress || t == QEvent::MouseButtonRelease ||
           t == QEvent::MouseButtonDblClick || t == QEvent::MouseMove || t == QEvent::Wheel;
}

// Qt hands an ignored event on to the receiver's parent widget, the same
// object each time: an event is new unless it comes back to an ancestor of
// its last receiver.
struct PropagationTracker
{
    QEvent const* last = nullptr;
    QPointer<QWidget> lastReceiver;

    bool IsFirstDelivery(QEvent const* event, QWidget* receiver)
    {
        bool const propagated = event == last && lastReceiver && receiver != lastReceiver.data() &&
                                receiver->isAncestorOf(lastReceiver.data());
        last = event;
        lastReceiver = receiver;
        return !propagated;
    }
};

} // namespace

class UI_NodeManager::EventFilter : public QObject
{
public:
    explicit EventFilter(UI_NodeManager* manager) : manager(manager) {}
    bool eventFilter(QObject* receiver, QEvent* event) override
    {
        return manager->FilterEvent(receiver, event);
    }

private:
    UI_NodeManager* manager;
};

struct UI_NodeManager::Private
{
    QPointer<QObject> filter;
    std::vector<UI_Node*> keyFilters;
    std::vector<UI_Node*> mouseFilters;
    boost::intrusive_ptr<PointerCapture> capture;
    PointF captureLastPosition;
    bool overrideCursorSet = false;
    std::unique_ptr<OS_ResourceManager> resources;
    std::unique_ptr<DrawbotImageResourceCache> images;
    QPointer<QWidget> cursorWidget;
    bool cursorTaken = false;
    std::vector<QPointer<QWidget>> cursorSetOn;
    PropagationTracker keyTracker;
    PropagationTracker mouseTracker;
    UI_Node* keyFocusNode = nullptr; // the focused node of the key event being delivered
};

UI_NodeManager::UI_NodeManager() : d(new Private) {}

UI_NodeManager::~UI_NodeManager() = default;

UI_NodeManager* UI_NodeManager::Get(bool)
{
    static UI_NodeManager* manager = new UI_NodeManager; // lives for the process
    manager->EnsureFilterInstalled();
    return manager;
}

void UI_NodeManager::EnsureFilterInstalled()
{
    if (d->filter || !QCoreApplication::instance())
        return;
    auto* filter = new EventFilter(this);
    filter->setParent(QCoreApplication::instance()); // goes with the application
    QCoreApplication::instance()->installEventFilter(filter);
    d->filter = filter;
}

ResourceManager const* UI_NodeManager::GetResourceManager() const
{
    if (!d->resources)
        d->resources.reset(new OS_ResourceManager(std::string(":/zephui")));
    return d->resources.get();
}

boost::intrusive_ptr<ImageInterface> UI_NodeManager::GetImage(SupplierInterface const* supplier,
                                                              std::string const& name,
                                                              int fileType) const
{
    if (!d->images)
        d->images.reset(new DrawbotImageResourceCache);
    return d->images->GetImage(GetResourceManager(), supplier, name, fileType,
                               zephcore::ImmutableString::sNullString);
}

ScaleMatrixF UI_NodeManager::GetScaleMatrix() const
{
    return ScaleMatrixF();
}

UI_Node* UI_NodeManager::GetFocusNode() const
{
    return NodeForWidget(QApplication::focusWidget());
}

bool UI_NodeManager::AdvanceKeyboardFocus(bool forward)
{
    QWidget* focus = QApplication::focusWidget();
    if (!focus)
        return false;
    QWidget* next = NextTabStop(focus, forward);
    if (!next)
        return false;
    next->setFocus(forward ? Qt::TabFocusReason : Qt::BacktabFocusReason);
    return true;
}

// ---- Filters ----------------------------------------------------------------

UI_NodeManager::AddAndRemoveKeyboardEventFilterNode::AddAndRemoveKeyboardEventFilterNode(
    UI_NodeManager* manager, UI_Node* node)
    : manager(manager ? manager : UI_NodeManager::Get()), node(node)
{
    if (node)
        this->manager->d->keyFilters.push_back(node);
}

UI_NodeManager::AddAndRemoveKeyboardEventFilterNode::~AddAndRemoveKeyboardEventFilterNode()
{
    auto& list = manager->d->keyFilters;
    auto it = std::find(list.rbegin(), list.rend(), node);
    if (it != list.rend())
        list.erase(std::next(it).base());
}

UI_NodeManager::AddAndRemoveMouseEventFilterNode::AddAndRemoveMouseEventFilterNode(
    UI_NodeManager* manager, UI_Node* node)
    : manager(manager ? manager : UI_NodeManager::Get()), node(node)
{
    if (node)
        this->manager->d->mouseFilters.push_back(node);
}

UI_NodeManager::AddAndRemoveMouseEventFilterNode::~AddAndRemoveMouseEventFilterNode()
{
    auto& list = manager->d->mouseFilters;
    auto it = std::find(list.rbegin(), list.rend(), node);
    if (it != list.rend())
        list.erase(std::next(it).base());
}

void UI_NodeManager::NodeDying(UI_Node* node)
{
    // A filter scope that outlives its node must not call it.
    auto drop = [node](std::vector<UI_Node*>& list)
    { list.erase(std::remove(list.begin(), list.end(), node), list.end()); };
    drop(d->keyFilters);
    drop(d->mouseFilters);
    if (d->keyFocusNode == node)
        d->keyFocusNode = nullptr;
    // The node is half destroyed: its capture ends without notifications.
    if (d->capture && d->capture->node == node)
    {
        boost::intrusive_ptr<PointerCapture> capture;
        capture.swap(d->capture);
        capture->node = nullptr;
        capture->cancelled = true;
        capture->active = false;
        capture->ended = true;
        if (d->overrideCursorSet)
        {
            QGuiApplication::restoreOverrideCursor();
            d->overrideCursorSet = false;
        }
    }
}

bool UI_NodeManager::FilterEvent(QObject* receiver, QEvent* event)
{
    QEvent::Type const type = event->type();
    if (type == QEvent::ApplicationDeactivate && d->capture)
    {
        CancelCapture(); // the release will never come to us
        return false;
    }
    if (type == QEvent::KeyPress || type == QEvent::KeyRelease)
        return FilterKey(receiver, event);
    if (IsMouseEvent(type))
    {
        if (d->capture)
            return FilterCaptureMouse(receiver, event);
        return FilterMouse(receiver, event);
    }
    return false;
}

bool UI_NodeManager::FilterKey(QObject* receiver, QEvent* event)
{
    auto* rw = qobject_cast<QWidget*>(receiver);
    if (!rw || rw->window()->windowType() == Qt::Popup)
        return false; // keys of an open menu or list are the popup's alone
    auto* ke = static_cast<QKeyEvent*>(event);
    KeyboardEvent const kev = KeyboardEventFromQt(*ke);
    bool const first =
        rw == QApplication::focusWidget() || d->keyTracker.IsFirstDelivery(event, rw);
    if (rw == QApplication::focusWidget())
        d->keyTracker.IsFirstDelivery(event, rw); // keep the tracker's record
    bool const tab = ke->key() == Qt::Key_Tab || ke->key() == Qt::Key_Backtab;

    if (!first)
    {
        // The key came back up unused: offer it to the node of this widget.
        auto const* link = dynamic_cast<NodeWidgetInterface const*>(rw);
        UI_Node* n = link ? link->GetNode() : nullptr;
        if (!n || tab || n == d->keyFocusNode)
            return false;
        NodeEventScope scope(n);
        if (n->UI_DoKeyboardEvent(d->keyFocusNode, kev))
        {
            ke->accept();
            return true;
        }
        return false;
    }

    UI_Node* focusNode = NodeForWidget(rw);
    d->keyFocusNode = focusNode;
    NodeEventScope scope(focusNode);

    if (boost::intrusive_ptr<PointerCapture> capture = d->capture)
    {
        if (!capture->ShouldIgnoreKeyboardEvents() && capture->DoKeyboardEvent(kev))
        {
            ke->accept();
            return true;
        }
    }
    std::vector<UI_Node*> const filters(d->keyFilters.rbegin(), d->keyFilters.rend());
    for (UI_Node* filter : filters)
    {
        if (std::find(d->keyFilters.begin(), d->keyFilters.end(), filter) == d->keyFilters.end())
            continue; // removed by an earlier filter
        NodeEventScope keep(filter);
        if (filter->UI_DoPreKeyboardEvent(focusNode, kev))
        {
            ke->accept();
            return true;
        }
    }
    if (tab)
    {
        // Tab goes up the tree before Qt moves the focus.
        UI_NodePtr hold;
        for (UI_Node* n = focusNode; n; n = n->UI_GetParentNode())
        {
            if (n->GetRefCount() > 0)
                hold = n;
            if (n->UI_DoKeyboardEvent(focusNode, kev))
            {
                ke->accept();
                return true;
            }
        }
        return false;
    }
    if (focusNode && focusNode->UI_DoKeyboardEvent(focusNode, kev))
    {
        ke->accept();
        return true;
    }
    return false;
}

bool UI_NodeManager::FilterMouse(QObject* receiver, QEvent* event)
{
    if (d->mouseFilters.empty())
        return false;
    auto* rw = qobject_cast<QWidget*>(receiver);
    if (!rw || !d->mouseTracker.IsFirstDelivery(event, rw))
        return false;
    UI_Node* target = NodeForWidget(rw);
    if (!target)
        return false;
    QPointF global;
    if (event->type() == QEvent::Wheel)
        global = static_cast<QWheelEvent*>(event)->globalPosition();
    else
        global = static_cast<QMouseEvent*>(event)->globalPosition();
    NodeEventScope scope(target);
    std::vector<UI_Node*> const filters(d->mouseFilters.rbegin(), d->mouseFilters.rend());
    for (UI_Node* filter : filters)
    {
        if (std::find(d->mouseFilters.begin(), d->mouseFilters.end(), filter) ==
            d->mouseFilters.end())
            continue;
        if (target != filter && !target->UI_IsChildOf(filter))
            continue;
        PointF const local =
            filter->UI_GlobalToLocalF(PointF(float(global.x()), float(global.y())));
        QPointF const localQ(local.x, local.y);
        MouseEvent const me = event->type() == QEvent::Wheel
                                  ? MouseEventFromQt(*static_cast<QWheelEvent*>(event), localQ)
                                  : MouseEventFromQt(*static_cast<QMouseEvent*>(event), localQ);
        NodeEventScope keep(filter);
        if (filter->UI_DoPreMouseEvent(target, me))
        {
            event->accept();
            return true;
        }
    }
    return false;
}

// ---- Captures -----------------------------------------------------------------

void UI_NodeManager::BeginInputCapture(boost::intrusive_ptr<InputCapture> const& capture)
{
    BeginPointerCapture(capture);
}

void UI_NodeManager::BeginPointerCapture(boost::intrusive_ptr<PointerCapture> const& capture)
{
    if (!capture || capture->ended)
        return;
    if (d->capture)
        CancelCapture();
    d->capture = capture;
    capture->active = true;
    QPoint const global = QCursor::pos();
    UI_Node* node = capture->GetNode();
    d->captureLastPosition =
        node ? node->UI_GlobalToLocalF(PointF(float(global.x()), float(global.y())))
             : PointF(float(global.x()), float(global.y()));
    capture->Begin();
    if (d->capture == capture)
        ApplyCaptureCursor(d->captureLastPosition);
}

PointerCapture* UI_NodeManager::GetCurrentCapture() const
{
    return d->capture.get();
}

void UI_NodeManager::CancelCapture()
{
    if (boost::intrusive_ptr<PointerCapture> capture = d->capture)
        capture->Cancel();
}

void UI_NodeManager::CaptureCancelled(PointerCapture* capture)
{
    if (d->capture.get() != capture)
        return;
    ApplyCaptureCursor(d->captureLastPosition);
    EndCapture();
}

void UI_NodeManager::ApplyCaptureCursor(PointF const& position)
{
    if (boost::intrusive_ptr<PointerCapture> capture = d->capture)
        capture->DoCursor(position);
}

void UI_NodeManager::EndCapture()
{
    boost::intrusive_ptr<PointerCapture> capture;
    capture.swap(d->capture);
    if (!capture)
        return;
    capture->active = false;
    capture->ended = true;
    if (d->overrideCursorSet)
    {
        QGuiApplication::restoreOverrideCursor();
        d->overrideCursorSet = false;
    }
    capture->CaptureEnded();
}

bool UI_NodeManager::FilterCaptureMouse(QObject* receiver, QEvent* event)
{
    // Every pointer event belongs to the capture; deliver each once.
    auto* rw = qobject_cast<QWidget*>(receiver);
    if (!rw)
        return false;
    if (!d->mouseTracker.IsFirstDelivery(event, rw))
        return true;

    boost::intrusive_ptr<PointerCapture> capture = d->capture;
    UI_Node* node = capture->GetNode();
    QPointF global;
    if (event->type() == QEvent::Wheel)
        global = static_cast<QWheelEvent*>(event)->globalPosition();
    else
        global = static_cast<QMouseEvent*>(event)->globalPosition();
    PointF const gp(float(global.x()), float(global.y()));
    PointF const local = node ? node->UI_GlobalToLocalF(gp) : gp;
    QPointF const localQ(local.x, local.y);
    d->captureLastPosition = local;
    bool endNow = false;
    if (event->type() == QEvent::Wheel)
    {
        if (!capture->HasBeenCancelled())
            capture->DoMouseEvent(MouseEventFromQt(*static_cast<QWheelEvent*>(event), localQ));
    }
    else
    {
        auto* me = static_cast<QMouseEvent*>(event);
        if (!capture->HasBeenCancelled())
            capture->DoMouseEvent(MouseEventFromQt(*me, localQ));
        endNow = event->type() == QEvent::MouseButtonRelease && me->buttons() == Qt::NoButton;
    }
    event->accept();
    if (d->capture != capture)
        return true; // ended or replaced by the notification
    ApplyCaptureCursor(local);
    if (endNow)
        EndCapture();
    return true;
}

// ---- Cursors --------------------------------------------------------------------

void UI_NodeManager::DisplayCursor(int shape)
{
    displayedCursor = shape;
    if (d->capture)
    {
        QCursor const cursor(QtCursorShape(shape));
        if (d->overrideCursorSet)
            QGuiApplication::changeOverrideCursor(cursor);
        else
            QGuiApplication::setOverrideCursor(cursor);
        d->overrideCursorSet = true;
        return;
    }
    if (QWidget* w = d->cursorWidget.data())
    {
        w->setCursor(QtCursorShape(shape));
        d->cursorTaken = true;
        auto const known = std::find(d->cursorSetOn.begin(), d->cursorSetOn.end(), d->cursorWidget);
        if (known == d->cursorSetOn.end())
            d->cursorSetOn.push_back(d->cursorWidget);
    }
}

void UI_NodeManager::BeginCursorDispatch(QWidget* widget)
{
    d->cursorTaken = false;
    d->cursorWidget = widget;
    // Undo a shape that a node set earlier; the nodes set it again if they still want it.
    d->cursorSetOn.erase(std::remove_if(d->cursorSetOn.begin(), d->cursorSetOn.end(),
                                        [widget](QPointer<QWidget> const& w)
                                        {
                                            if (!w)
                                                return true;
                                            if (w.data() != widget)
                                                return false;
                                            w->unsetCursor();
                                            return true;
                                        }),
                         d->cursorSetOn.end());
}

void UI_NodeManager::EndCursorDispatch(bool taken)
{
    d->cursorTaken = d->cursorTaken || taken;
}

bool UI_NodeManager::IsCursorTaken() const
{
    return d->cursorTaken;
}

} // namespace zephui
