#pragma once
// A shown, active window holding a root view, for tests of focus and typing,
// and a counter of the messages a control sends.

#include "zephui/Messages.h"
#include "zephui/NodeHostWidget.h"
#include "zephui/UI_SubView.h"

#include <QTest>
#include <QWidget>

#include <boost/make_shared.hpp>

#include <memory>

namespace zephtest
{

struct ControlTestWindow
{
    boost::intrusive_ptr<zephui::UI_SubView> root =
        new zephui::UI_SubView(zephui::RectF(0, 0, 400, 300));
    std::unique_ptr<zephui::NodeHostWidget> host;

    ControlTestWindow()
    {
        root->UI_Show(true);
        host = std::make_unique<zephui::NodeHostWidget>(root);
        host->resize(400, 300);
    }
    ~ControlTestWindow()
    {
        host->close();
        host.reset();
    }
    // Adds a node at rect, shown.
    template <class Node>
    boost::intrusive_ptr<Node> Add(boost::intrusive_ptr<Node> node, zephui::RectF const& rect)
    {
        node->UI_SetLocalRectF(rect);
        node->UI_Show(true);
        root->ChildPushBack(node);
        return node;
    }
    bool ShowActive()
    {
        host->show();
        host->activateWindow();
        return QTest::qWaitForWindowActive(host.get());
    }
};

// Counts the messages sent to it; keep it alive as long as the control.
struct MessageCounter
{
    int count = 0;
    // The sender of the last message (messages live only during the call).
    zephui::UI_ControlView* lastControl = nullptr;
    zephui::MessageCallback callback = boost::make_shared<boost::function<void(zephui::Message*)>>(
        [this](zephui::Message* message)
        {
            ++count;
            auto* control = dynamic_cast<zephui::UI_ControlMessage*>(message);
            lastControl = control ? control->GetControl() : nullptr;
        });
    ~MessageCounter() { callback->clear(); }
};

} // namespace zephtest
