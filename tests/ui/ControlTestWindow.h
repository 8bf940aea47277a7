#pragma once
// Windows hosting nodes, shown and made active for tests of focus and typing,
// and counters of the messages a control sends.

#include "zephui/Messages.h"
#include "zephui/NodeHostWidget.h"
#include "zephui/NodeWidget.h"
#include "zephui/UI_SubView.h"

#include <QLineEdit>
#include <QTest>
#include <QWidget>

#include <gtest/gtest.h>

#include <boost/make_shared.hpp>

#include <memory>

namespace zephtest
{

// Adds a node to parent at rect, shown.
template <class Node>
boost::intrusive_ptr<Node> AddShown(zephui::UI_Node* parent, boost::intrusive_ptr<Node> node,
                                    zephui::RectF const& rect)
{
    node->UI_SetLocalRectF(rect);
    node->UI_Show(true);
    parent->ChildPushBack(node);
    return node;
}

// A node whose widget is a plain Qt line edit, for keys Qt handles itself.
struct LineEditNode : zephui::UI_SubView
{
    QWidget* CreateWidget() override { return new zephui::NodeWidget<QLineEdit>(this); }
    bool UI_WantsKeyboardFocus() const override { return true; }
};

struct ControlTestWindow
{
    zephui::UI_NodePtr root;
    std::unique_ptr<zephui::NodeHostWidget> host;

    explicit ControlTestWindow(
        zephui::UI_NodePtr hosted = new zephui::UI_SubView(zephui::RectF(0, 0, 400, 300)),
        int width = 400, int height = 300)
        : root(std::move(hosted))
    {
        root->UI_Show(true);
        host = std::make_unique<zephui::NodeHostWidget>(root);
        host->resize(width, height);
    }
    ~ControlTestWindow()
    {
        host->close();
        host.reset();
    }
    // Adds a node to the root at rect, shown.
    template <class Node>
    boost::intrusive_ptr<Node> Add(boost::intrusive_ptr<Node> node, zephui::RectF const& rect)
    {
        return AddShown(root.get(), node, rect);
    }
    bool ShowActive()
    {
        host->show();
        host->activateWindow();
        return QTest::qWaitForWindowActive(host.get());
    }
};

// A window as above, shown and active from the start.
struct ActiveTestWindow : ControlTestWindow
{
    explicit ActiveTestWindow(zephui::UI_NodePtr hosted, int width = 300, int height = 200)
        : ControlTestWindow(std::move(hosted), width, height)
    {
        EXPECT_TRUE(ShowActive());
    }
};

// Counts the messages sent to it; keep it alive as long as the control.
struct MessageCounter
{
    int count = 0;
    zephui::MessageCallback callback = boost::make_shared<boost::function<void(zephui::Message*)>>(
        [this](zephui::Message*) { ++count; });
    ~MessageCounter() { callback->clear(); }
};

// One control in a window (shown only when a test asks), with a counter of
// the changes it reports.
template <class Control> struct OneControl
{
    explicit OneControl(Control* made, zephui::RectF const& rect = zephui::RectF(10, 10, 200, 22))
        : control(window.Add(boost::intrusive_ptr<Control>(made), rect))
    {
        control->NotifyWhenChanged(changed.callback);
    }
    ControlTestWindow window;
    boost::intrusive_ptr<Control> control;
    MessageCounter changed;
};

} // namespace zephtest
