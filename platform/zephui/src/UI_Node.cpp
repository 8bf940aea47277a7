#include "zephui/UI_Node.h"

#include "GainFocus.h"

#include "zephui/Drawbot.h"
#include "zephui/NodeWidget.h"
#include "zephui/OSMenu.h"
#include "zephui/QtDrawing.h"
#include "zephui/UI_NodeManager.h"

#include "ToolTipText.h"

#include "zephcore/QtStrings.h"

#include <QAction>
#include <QApplication>
#include <QGraphicsOpacityEffect>
#include <QMenu>
#include <QScreen>
#include <QWidget>

#include <algorithm>
#include <cmath>

namespace zephui
{

namespace
{

Qt::FocusReason QtFocusReason(int reason)
{
    switch (reason)
    {
    case kFocusReasonAdvance:
        return Qt::TabFocusReason;
    case kFocusReasonAdvanceBackward:
        return Qt::BacktabFocusReason;
    case kFocusReasonMouse:
        return Qt::MouseFocusReason;
    default:
        return Qt::OtherFocusReason;
    }
}

// Rounds the edges, not the size, so that neighbouring float rectangles stay flush.
QRect WidgetGeometry(RectF const& frame)
{
    int const left = int(std::lround(frame.left));
    int const top = int(std::lround(frame.top));
    int const right = int(std::lround(frame.left + std::max(0.0f, frame.width)));
    int const bottom = int(std::lround(frame.top + std::max(0.0f, frame.height)));
    return QRect(left, top, right - left, bottom - top);
}

int gainFocusDepth = 0;

} // namespace

char const* const kTopLevelNodeProperty = "zephuiTopLevelNode";

// Tells NodeDispatch::FocusIn that a focus change comes from UI_GainKeyboardFocus itself.
bool IsInsideGainKeyboardFocus()
{
    return gainFocusDepth > 0;
}

Theme const* UI_NodeBase::GetTheme() const
{
    for (UI_NodeBase const* n = this; n; n = n->GetParentNodeBase())
        if (!n->themeName.empty())
            if (Theme const* theme = FindTheme(n->themeName))
                return theme;
    return GetApplicationTheme();
}

SkinSet const* UI_NodeBase::UI_GetCurrentSkinSet() const
{
    for (UI_NodeBase const* n = this; n; n = n->GetParentNodeBase())
        if (n->skinSet)
            return n->skinSet.get();
    return GetApplicationSkinSet().get();
}

UI_Node::UI_Node()
{
    UI_NodeManager::Get();
}

UI_Node::~UI_Node()
{
    UI_NodeManager::Get()->NodeDying(this);
    // Children held elsewhere must keep their widgets: take them out of ours
    // before it goes. Children held only here die with the list, widgets and all.
    std::vector<UI_NodePtr> dying;
    dying.swap(children);
    for (UI_NodePtr const& child : dying)
    {
        child->parent = nullptr;
        if (child->GetRefCount() > 1)
            DetachChildWidget(child.get());
    }
    dying.clear();
    ReleaseWidget();
}

void UI_Node::ReleaseWidget()
{
    QWidget* w = widget.data();
    widget = nullptr;
    if (!w)
        return;
    if (auto* link = dynamic_cast<NodeWidgetInterface*>(w))
        link->DetachNode();
    if (NodeEventScope::IsAnyActive())
    {
        // An event handler of this widget (or an ancestor) may still be on the stack.
        w->hide();
        w->deleteLater();
    }
    else
    {
        delete w;
    }
}

// ---- Widget --------------------------------------------------------------

QWidget* UI_Node::CreateWidget()
{
    return new PlainNodeWidget(this);
}

QWidget* UI_Node::UI_GetWidget()
{
    if (!widget && !widgetMade)
        SetWidget(CreateWidget());
    return widget.data();
}

QWidget* UI_Node::UI_GetWidgetIfMade() const
{
    return widget.data();
}

void UI_Node::SetWidget(QWidget* newWidget)
{
    QWidget* old = widget.data();
    if (old == newWidget)
        return;
    widgetMade = true;
    widget = newWidget;
    if (newWidget)
    {
        if (parent && parent->widget)
            newWidget->setParent(parent->widget.data());
        for (UI_NodePtr const& child : children)
            if (QWidget* cw = child->widget.data())
            {
                cw->setParent(newWidget);
                child->ApplyGeometry();
                child->ApplyVisibility();
            }
        ApplyStateToWidget();
    }
    if (old)
    {
        if (auto* link = dynamic_cast<NodeWidgetInterface*>(old))
            link->DetachNode();
        old->hide();
        old->deleteLater();
    }
}

void UI_Node::ApplyStateToWidget()
{
    if (!widget)
        return;
    ApplyGeometry();
    widget->setEnabled(!disabled);
    ApplyToolTip();
    UpdateFocusPolicy();
    if (opacity < 1.0f)
        UI_SetOpacity(opacity);
    if (dropTarget)
        widget->setAcceptDrops(true);
    ApplyVisibility();
}

void UI_Node::ApplyGeometry()
{
    if (!widget)
        return;
    QRect const g = WidgetGeometry(frame);
    if (widget->geometry() == g)
        return;
    applyingGeometry = true;
    widget->setGeometry(g);
    applyingGeometry = false;
}

void UI_Node::ApplyVisibility()
{
    if (!widget)
        return;
    // A parentless plain widget would become a window of its own: it shows only
    // inside a parent, unless it is a dialog or marked as a window of the toolkit.
    bool const canShow = widget->parentWidget() != nullptr || widget->windowType() == Qt::Dialog ||
                         widget->property(kTopLevelNodeProperty).toBool();
    if (canShow)
        widget->setVisible(shown);
    else if (!shown)
        widget->hide();
}

void UI_Node::ApplyToolTip()
{
    if (widget)
        widget->setToolTip(FormatToolTip(zephcore::ToQString(toolTip), toolTipWidth));
}

void UI_Node::UpdateFocusPolicy()
{
    if (!widget)
        return;
    bool const wants = UI_WantsKeyboardFocus();
    Qt::FocusPolicy const current = widget->focusPolicy();
    if (!wants)
        widget->setFocusPolicy(Qt::NoFocus);
    else if (current == Qt::NoFocus)
        widget->setFocusPolicy(Qt::StrongFocus);
}

void UI_Node::SetWantsKeyboardFocusFlag(bool wants)
{
    wantsKeyboardFocus = wants;
    UpdateFocusPolicy();
}

void UI_Node::WidgetResized(int width, int height)
{
    if (applyingGeometry || !widget)
        return;
    if (WidgetGeometry(frame).size() == QSize(width, height))
        return;
    frame = RectF(float(widget->x()), float(widget->y()), float(width), float(height));
    UI_SizeChanged(UI_GetLocalRectF(false));
}

// ---- Tree ----------------------------------------------------------------

void UI_Node::DetachChildWidget(UI_Node* child)
{
    QWidget* cw = child->widget.data();
    if (cw && widget && cw->parentWidget() == widget.data())
        cw->setParent(nullptr);
}

void UI_Node::AttachChildWidget(UI_Node* child)
{
    QWidget* pw = UI_GetWidget();
    QWidget* cw = child->UI_GetWidget();
    if (!pw || !cw)
        return;
    if (cw->parentWidget() != pw)
        cw->setParent(pw);
    child->ApplyGeometry();
    child->UpdateFocusPolicy();
    child->ApplyVisibility();
    // Qt's Tab order is the order widgets joined the window, not the node order.
    for (auto it = children.rbegin(); it != children.rend(); ++it)
    {
        if (it->get() == child)
            continue;
        if (QWidget* previous = (*it)->widget.data())
        {
            if (previous->parentWidget() == pw)
                QWidget::setTabOrder(previous, cw);
            break;
        }
    }
}

void UI_Node::ChildPushBack(boost::intrusive_ptr<UI_Node> const& child)
{
    if (!child || child.get() == this || UI_IsChildOf(child.get()))
        return;
    // Alive while its old parent lets it go: that parent may hold the last reference.
    UI_NodePtr const keep = child; // NOLINT(performance-unnecessary-copy-initialization)
    if (child->parent)
        child->parent->ChildRequestRemove(child.get());
    children.push_back(child);
    child->UI_SetParent(this);
    AttachChildWidget(child.get());
    ChildAdded(child.get());
    child->UI_NodeChanged();
}

bool UI_Node::ChildRequestRemove(UI_Node* child)
{
    auto it = std::find_if(children.begin(), children.end(),
                           [child](UI_NodePtr const& c) { return c.get() == child; });
    if (it == children.end())
        return false;
    UI_NodePtr const keep = *it;
    children.erase(it);
    DetachChildWidget(child);
    child->UI_SetParent(nullptr);
    ChildRemoved(child);
    child->UI_NodeChanged();
    return true;
}

void UI_Node::UI_SetParent(UI_Node* newParent)
{
    parent = newParent;
}

bool UI_Node::UI_IsChild(UI_Node const* node) const
{
    return node && node->UI_IsChildOf(this);
}

bool UI_Node::UI_IsChildOf(UI_Node const* ancestor) const
{
    if (!ancestor)
        return false;
    for (UI_Node const* p = parent; p; p = p->parent)
        if (p == ancestor)
            return true;
    return false;
}

UI_Node* UI_Node::UI_GetRootNode() const
{
    UI_Node const* n = this;
    while (n->parent)
        n = n->parent;
    return const_cast<UI_Node*>(n);
}

UI_Node* UI_Node::UI_ChildGetFromID(std::string const& id) const
{
    if (id.empty())
        return nullptr; // every node without an id has the empty one
    for (UI_NodePtr const& child : children)
    {
        if (child->nodeID == id)
            return child.get();
        if (UI_Node* found = child->UI_ChildGetFromID(id))
            return found;
    }
    return nullptr;
}

void UI_Node::SetThemeName(std::string const& name)
{
    if (themeName == name)
        return;
    themeName = name;
    if (widget)
        widget->update();
    for (UI_NodePtr const& child : children)
        child->UI_Invalidate();
}

// ---- Rectangle and matrices ----------------------------------------------

ScaleMatrixF UI_Node::UI_GetSelfToParentMatrix() const
{
    return ScaleMatrixF::Translation(frame.left, frame.top);
}

ScaleMatrixF UI_Node::UI_GetMatrix() const
{
    return UI_GetSelfToSpecificParentMatrix(this, nullptr);
}

ScaleMatrixF UI_Node::UI_GetSelfToSpecificParentMatrix(UI_Node const* node, UI_Node const* ancestor)
{
    ScaleMatrixF m;
    for (UI_Node const* n = node; n && n != ancestor; n = n->parent)
        m = n->UI_GetSelfToParentMatrix() * m;
    return m;
}

bool UI_Node::UI_HitTest(PointF const& localPoint) const
{
    return UI_GetLocalRectF(false).Contains(localPoint);
}

RectF UI_Node::UI_GetLocalRectF(bool inParentCoordinates) const
{
    return inParentCoordinates ? frame : RectF(0.0f, 0.0f, frame.width, frame.height);
}

RectT<int> UI_Node::UI_GetLocalRect(bool inParentCoordinates) const
{
    RectF const r = UI_GetLocalRectF(inParentCoordinates);
    int const l = int(std::lround(r.left)), t = int(std::lround(r.top));
    return RectT<int>(l, t, int(std::lround(r.GetRight())) - l,
                      int(std::lround(r.GetBottom())) - t);
}

void UI_Node::UI_SetLocalRect(RectT<int> const& rect)
{
    UI_SetLocalRectF(
        RectF(float(rect.left), float(rect.top), float(rect.width), float(rect.height)));
}

void UI_Node::UI_SetLocalRectF(RectF const& given)
{
    // A rectangle computed from nothing (NaN, infinity) places the node at nothing.
    auto finite = [](float v) { return std::isfinite(v) ? v : 0.0f; };
    RectF const rect(finite(given.left), finite(given.top), finite(given.width),
                     finite(given.height));
    RectF const old = frame;
    if (old == rect)
        return;
    frame = rect;
    ApplyGeometry();
    if (old.width != rect.width || old.height != rect.height)
        UI_SizeChanged(UI_GetLocalRectF(false));
}

void UI_Node::UI_SizeChanged(RectF const& rect)
{
    PointF const newSize(rect.width, rect.height);
    PointF const oldSize = layoutSize;
    layoutSize = newSize;
    if (layoutsChildren && oldSize != newSize)
        UI_LayoutChildren(oldSize, newSize);
}

void UI_Node::UI_SetLayoutsChildren(bool layouts)
{
    layoutsChildren = layouts;
    if (layouts)
        layoutSize = PointF(frame.width, frame.height);
}

void UI_Node::UI_SetLayoutBinding(Flags<unsigned char> binding)
{
    layoutBinding = binding;
}

void UI_Node::UI_LayoutChildren(PointF const& oldSize, PointF const& newSize)
{
    float const dx = newSize.x - oldSize.x;
    float const dy = newSize.y - oldSize.y;
    std::vector<UI_NodePtr> const snapshot = children;
    for (UI_NodePtr const& child : snapshot)
    {
        Flags<unsigned char> const b = child->layoutBinding;
        if (b.IsEmpty())
            continue;
        RectF const r = child->frame;
        float left = r.left, top = r.top, right = r.GetRight(), bottom = r.GetBottom();
        if (b.IsAnySet(kBindLeftEdgeToParentRight))
            left += dx;
        if (b.IsAnySet(kBindRightEdgeToParentRight))
            right += dx;
        if (b.IsAnySet(kBindTopEdgeToParentBottom))
            top += dy;
        if (b.IsAnySet(kBindBottomEdgeToParentBottom))
            bottom += dy;
        RectF placed(left, top, right - left, bottom - top);
        if (b.IsAnySet(kBindCenterHorizontal))
            placed.left = (newSize.x - placed.width) * 0.5f;
        if (b.IsAnySet(kBindCenterVertical))
            placed.top = (newSize.y - placed.height) * 0.5f;
        child->UI_SetLocalRectF(placed);
    }
}

PointF UI_Node::UI_GlobalToLocalF(PointF const& global) const
{
    if (widget)
    {
        QPointF const p = widget->mapFromGlobal(QPointF(global.x, global.y));
        return PointF(float(p.x()), float(p.y()));
    }
    return UI_GetMatrix().Inverse().Transform(global);
}

PointF UI_Node::UI_LocalToGlobalF(PointF const& local) const
{
    if (widget)
    {
        QPointF const p = widget->mapToGlobal(QPointF(local.x, local.y));
        return PointF(float(p.x()), float(p.y()));
    }
    return UI_GetMatrix().Transform(local);
}

// ---- Visibility, state, drawing ------------------------------------------

void UI_Node::UI_Show(bool show)
{
    if (shown == show)
        return;
    shown = show;
    ApplyVisibility();
}

bool UI_Node::UI_AreAllParentsVisible() const
{
    for (UI_Node const* p = parent; p; p = p->parent)
        if (!p->shown)
            return false;
    return true;
}

void UI_Node::UI_SetDisabled(bool disable)
{
    if (disabled == disable)
        return;
    disabled = disable;
    if (widget)
        widget->setEnabled(!disable); // Qt tells every widget below (EnabledChange)
    else
        UI_DisabledStateChanged();
}

bool UI_Node::UI_IsDisabled() const
{
    for (UI_Node const* n = this; n; n = n->parent)
        if (n->disabled)
            return true;
    return false;
}

void UI_Node::UI_Invalidate(RectF const* rect, Flags<unsigned long>)
{
    if (!widget)
        return;
    if (rect)
        widget->update(QRectF(rect->left, rect->top, rect->width, rect->height).toAlignedRect());
    else
        widget->update();
}

void UI_Node::UI_UpdateNow(int)
{
    if (widget && widget->isVisible())
        widget->repaint();
}

void UI_Node::UI_SetOpacity(float value)
{
    opacity = std::clamp(value, 0.0f, 1.0f);
    if (!widget)
        return;
    if (opacity >= 1.0f)
    {
        widget->setGraphicsEffect(nullptr);
        return;
    }
    auto* effect = qobject_cast<QGraphicsOpacityEffect*>(widget->graphicsEffect());
    if (!effect)
    {
        effect = new QGraphicsOpacityEffect(widget.data());
        widget->setGraphicsEffect(effect);
    }
    effect->setOpacity(opacity);
}

void UI_Node::UI_Draw(Drawbot*) {}

SupplierInterface const* UI_Node::UI_GetDrawSupplier() const
{
    float scale = 1.0f;
    if (widget)
        scale = float(widget->devicePixelRatioF());
    else if (QGuiApplication::primaryScreen())
        scale = float(QGuiApplication::primaryScreen()->devicePixelRatio());
    return SharedSupplierForScale(scale);
}

float UI_Node::GetViewScaleFactor() const
{
    return 1.0f;
}

// ---- Focus and capture ---------------------------------------------------

bool UI_Node::UI_IsMouseOver() const
{
    return widget && widget->underMouse();
}

bool UI_Node::UI_GainKeyboardFocus(int reason)
{
    QWidget* w = UI_GetWidget();
    if (!w || !w->isEnabled())
        return false;
    if (w->focusPolicy() == Qt::NoFocus && !w->focusProxy())
    {
        // A view that takes no focus itself hands it to its first child that
        // does (its last, going backward).
        std::vector<UI_NodePtr> const snapshot = children;
        bool const backward = reason == kFocusReasonAdvanceBackward;
        for (std::size_t i = 0; i < snapshot.size(); ++i)
        {
            UI_Node* child = snapshot[backward ? snapshot.size() - 1 - i : i].get();
            if (child->UI_IsShown() && !child->UI_IsDisabled() &&
                child->UI_GainKeyboardFocus(reason))
                return true;
        }
        return false;
    }
    ++gainFocusDepth;
    w->setFocus(QtFocusReason(reason));
    --gainFocusDepth;
    return UI_HasKeyboardFocus(true);
}

void UI_Node::UI_LoseKeyboardFocus()
{
    if (widget && UI_HasKeyboardFocus(true))
    {
        if (QWidget* f = widget->window()->focusWidget())
            f->clearFocus();
    }
}

bool UI_Node::UI_HasKeyboardFocus(bool includeChildren) const
{
    QWidget* w = widget.data();
    if (!w)
        return false;
    QWidget* f = QApplication::focusWidget();
    if (!f && !QApplication::activeWindow())
        f = w->window()->focusWidget(); // no window is active (offscreen): the window's own record
    if (!f)
        return false;
    if (f == w)
        return true;
    if (!w->isAncestorOf(f))
        return false;
    return includeChildren || NodeForWidget(f) == this;
}

bool UI_Node::UI_SetKeyboardFocusWithOS()
{
    return UI_GainKeyboardFocus(kFocusReasonProgram);
}

void UI_Node::UI_ClearKeyboardFocusWithOS()
{
    UI_LoseKeyboardFocus();
}

void UI_Node::UI_SetCapture()
{
    if (QWidget* w = UI_GetWidget())
        w->grabMouse();
}

void UI_Node::UI_ReleaseCapture()
{
    if (widget)
        widget->releaseMouse();
}

// ---- Tool tips, sizes, layout interface -----------------------------------

void UI_Node::UI_SetToolTip(zephcore::UTF16String const& text, float width)
{
    if (toolTip == text && toolTipWidth == width)
        return;
    toolTip = text;
    toolTipWidth = width;
    ApplyToolTip();
}

PointF UI_Node::UI_GetRecommendedSize(Drawbot*)
{
    return PointF(std::max(0.0f, frame.width), std::max(0.0f, frame.height));
}

void UI_Node::UI_SetDropTarget(bool accept)
{
    dropTarget = accept;
    if (widget)
        widget->setAcceptDrops(accept);
}

void UI_Node::measure(LayoutExtents& result)
{
    Drawbot drawbot(UI_GetDrawSupplier());
    PointF const size = UI_GetRecommendedSize(&drawbot);
    result.width = size.x;
    result.height = size.y;
}

void UI_Node::measure_vertical(LayoutExtents& result, LayoutPlace const& placedHorizontal)
{
    measure(result);
    result.width = placedHorizontal.rect.width;
}

void UI_Node::place(LayoutPlace const& placement)
{
    UI_SetLocalRectF(placement.rect);
}

void UI_Node::get_placement(LayoutPlace& placement) const
{
    placement.rect = frame;
}

// ---- Dispatch helpers -----------------------------------------------------

bool UI_Node::UI_DispatchCursor(PointF const& point)
{
    PointF p = point;
    for (UI_Node* n = this; n; n = n->parent)
    {
        if (n->UI_DoCursor(this, p, 0))
            return true;
        p = n->UI_GetSelfToParentMatrix().Transform(p);
    }
    return false;
}

bool UI_Node::UI_DispatchEvent(MouseEvent const& event)
{
    MouseEvent e = event;
    for (UI_Node* n = this; n; n = n->parent)
    {
        if (n->UI_DoMouseEvent(this, e))
            return true;
        e.SetPosition(n->UI_GetSelfToParentMatrix().Transform(e.GetPosition()));
    }
    return false;
}

bool UI_Node::UI_DispatchKeyboardCharEventToParent(KeyboardEvent const& event)
{
    return parent && parent->UI_DoKeyboardEvent(this, event);
}

int UI_Node::UI_DoContextMenu(OSMenu* menu, PointF const& localPoint)
{
    if (!menu)
        return 0;
    QMenu qmenu(widget.data());
    for (OSMenu::Item const& item : menu->GetItems())
    {
        if (item.number == 0)
        {
            qmenu.addSeparator();
            continue;
        }
        QAction* action = qmenu.addAction(zephcore::ToQString(item.text));
        action->setData(item.number);
        action->setEnabled(item.enabled);
    }
    PointF const global = UI_LocalToGlobalF(localPoint);
    QAction* chosen = qmenu.exec(QPoint(int(std::lround(global.x)), int(std::lround(global.y))));
    return chosen ? chosen->data().toInt() : 0;
}

} // namespace zephui
