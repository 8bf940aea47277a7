#pragma once
// The widget side of a node. NodeWidget<Base> is any QWidget class (QWidget,
// QLineEdit, QComboBox, QDialog, ...) subclassed so that its events reach the
// node first: paint (UI_Draw, over what Base painted), mouse (UI_DoMouseEvent,
// UI_DoCursor), focus, resize (UI_SizeChanged, UI_LayoutChildren), enabled
// state. What the node does not take goes on to Base's own handler, so a Qt
// control keeps all of its behaviour.
//
// A control makes its widget in an override of UI_Node::CreateWidget:
//
//     QWidget* UI_TextEdit::CreateWidget() { return new NodeWidget<QLineEdit>(this); }
//
// or installs one from its constructor with SetWidget(new NodeWidget<QLineEdit>(this)).
// Code that runs from a Qt signal of a node's widget (QLineEdit::editingFinished,
// QComboBox::activated, ...) and may drop nodes holds a NodeEventScope, which
// keeps the node alive and defers widget deletion until the handler is done.

#include "zephui/UI_Node.h"
#include "zephui/zephui_export.h"

#include <QAbstractScrollArea>
#include <QContextMenuEvent>
#include <QEvent>
#include <QFocusEvent>
#include <QMouseEvent>
#include <QPaintEvent>
#include <QResizeEvent>
#include <QWheelEvent>
#include <QWidget>

#include <type_traits>
#include <utility>

namespace zephui
{

// Lets the toolkit find the node behind a widget.
class ZEPHUI_EXPORT NodeWidgetInterface
{
public:
    explicit NodeWidgetInterface(UI_Node* node) : node(node) {}
    virtual ~NodeWidgetInterface() = default;
    UI_Node* GetNode() const { return node; }
    void DetachNode() { node = nullptr; }

private:
    UI_Node* node = nullptr;
};

// The node that owns the widget, or that of its nearest ancestor widget.
ZEPHUI_EXPORT UI_Node* NodeForWidget(QWidget const* widget);
// The next widget of from's window, in the focus chain, that takes Tab focus; null if none.
ZEPHUI_EXPORT QWidget* NextTabStop(QWidget* from, bool forward);

// Keeps a node alive and marks the node tree as busy with an event, so that
// widgets of nodes dying meanwhile are deleted only after it (deleteLater).
class ZEPHUI_EXPORT NodeEventScope
{
public:
    explicit NodeEventScope(UI_Node* node);
    ~NodeEventScope();
    NodeEventScope(NodeEventScope const&) = delete;
    NodeEventScope& operator=(NodeEventScope const&) = delete;
    static bool IsAnyActive();

private:
    UI_NodePtr keep;
};

// The event plumbing shared by every NodeWidget. Each handler returns true if
// the node took the event (Base's handler is then skipped).
struct ZEPHUI_EXPORT NodeDispatch
{
    static void Setup(QWidget* widget, UI_Node* node);
    static bool OSEvent(UI_Node* node, QEvent* event);
    static void Paint(QWidget* device, UI_Node* node, QPaintEvent* event);
    // eventWidget: where the event's position is measured (a viewport, say).
    static bool Mouse(QWidget* self, QWidget* eventWidget, UI_Node* node, QMouseEvent* event);
    static bool Wheel(QWidget* self, QWidget* eventWidget, UI_Node* node, QWheelEvent* event);
    static bool ContextMenu(QWidget* self, UI_Node* node, QContextMenuEvent* event);
    static void FocusIn(QWidget* self, UI_Node* node, QFocusEvent* event);
    static void FocusOut(QWidget* self, UI_Node* node, QFocusEvent* event);
    static void Resized(QWidget* self, UI_Node* node, QResizeEvent* event);
    static void Changed(QWidget* self, UI_Node* node, QEvent* event);
    static void Hover(UI_Node* node, bool entered);
};

template <class Base> class NodeWidget : public Base, public NodeWidgetInterface
{
public:
    template <class... Args>
    explicit NodeWidget(UI_Node* node, Args&&... args)
        : Base(std::forward<Args>(args)...), NodeWidgetInterface(node)
    {
        NodeDispatch::Setup(this, node);
    }

protected:
    static constexpr bool kScrollArea = std::is_base_of<QAbstractScrollArea, Base>::value;

    QWidget* EventWidget()
    {
        if constexpr (kScrollArea)
            return this->viewport();
        else
            return this;
    }

    bool event(QEvent* e) override
    {
        if (GetNode() && NodeDispatch::OSEvent(GetNode(), e))
            return true;
        return Base::event(e);
    }
    void paintEvent(QPaintEvent* e) override
    {
        Base::paintEvent(e);
        if (GetNode())
            NodeDispatch::Paint(EventWidget(), GetNode(), e);
    }
    void mousePressEvent(QMouseEvent* e) override
    {
        if (!GetNode() || !NodeDispatch::Mouse(this, EventWidget(), GetNode(), e))
            Base::mousePressEvent(e);
    }
    void mouseReleaseEvent(QMouseEvent* e) override
    {
        if (!GetNode() || !NodeDispatch::Mouse(this, EventWidget(), GetNode(), e))
            Base::mouseReleaseEvent(e);
    }
    void mouseDoubleClickEvent(QMouseEvent* e) override
    {
        if (!GetNode() || !NodeDispatch::Mouse(this, EventWidget(), GetNode(), e))
            Base::mouseDoubleClickEvent(e);
    }
    void mouseMoveEvent(QMouseEvent* e) override
    {
        if (!GetNode() || !NodeDispatch::Mouse(this, EventWidget(), GetNode(), e))
            Base::mouseMoveEvent(e);
    }
    void wheelEvent(QWheelEvent* e) override
    {
        if (!GetNode() || !NodeDispatch::Wheel(this, EventWidget(), GetNode(), e))
            Base::wheelEvent(e);
    }
    void contextMenuEvent(QContextMenuEvent* e) override
    {
        if (!GetNode() || !NodeDispatch::ContextMenu(this, GetNode(), e))
            Base::contextMenuEvent(e);
    }
    void focusInEvent(QFocusEvent* e) override
    {
        Base::focusInEvent(e);
        if (GetNode())
            NodeDispatch::FocusIn(this, GetNode(), e);
    }
    void focusOutEvent(QFocusEvent* e) override
    {
        Base::focusOutEvent(e);
        if (GetNode())
            NodeDispatch::FocusOut(this, GetNode(), e);
    }
    void resizeEvent(QResizeEvent* e) override
    {
        Base::resizeEvent(e);
        if (GetNode())
            NodeDispatch::Resized(this, GetNode(), e);
    }
    void changeEvent(QEvent* e) override
    {
        Base::changeEvent(e);
        if (GetNode())
            NodeDispatch::Changed(this, GetNode(), e);
    }
    void enterEvent(QEnterEvent* e) override
    {
        Base::enterEvent(e);
        if (GetNode())
            NodeDispatch::Hover(GetNode(), true);
    }
    void leaveEvent(QEvent* e) override
    {
        Base::leaveEvent(e);
        if (GetNode())
            NodeDispatch::Hover(GetNode(), false);
    }
};

// The widget of a plain view.
using PlainNodeWidget = NodeWidget<QWidget>;

} // namespace zephui
