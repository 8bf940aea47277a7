// A Qt application shows a node tree through NodeHostWidget.

#include "ControlTestWindow.h"

#include "zephui/Drawbot.h"
#include "zephui/NodeHostWidget.h"
#include "zephui/NodeWidget.h"
#include "zephui/UI_SubView.h"

#include <QApplication>
#include <QLineEdit>
#include <QPointer>
#include <QTest>
#include <QVBoxLayout>

#include <gtest/gtest.h>

using namespace zephui;

namespace
{

class SizedView : public UI_SubView
{
public:
    PointF UI_GetRecommendedSize(Drawbot*) override { return PointF(320.5f, 140.0f); }
    void UI_Draw(Drawbot* drawbot) override
    {
        ++paints;
        drawbot->FillRect(UI_GetLocalRectF(false), ColorRGBA(0, 0, 1, 1));
    }
    int paints = 0;
};

} // namespace

TEST(NodeHostWidgetTest, HostsShowsAndSizesTheRoot)
{
    boost::intrusive_ptr<SizedView> root(new SizedView);
    root->UI_SetLayoutsChildren(true);
    UI_NodePtr stretched(new UI_SubView);
    root->ChildPushBack(stretched);
    stretched->UI_SetLocalRectF(RectF(10, 10, -20, -20));
    stretched->UI_SetLayoutBinding(0xc);
    stretched->UI_Show(true);

    QWidget window;
    auto* layout = new QVBoxLayout(&window);
    layout->setContentsMargins(0, 0, 0, 0);
    auto* host = new NodeHostWidget(root, &window);
    layout->addWidget(host);
    EXPECT_EQ(host->sizeHint(), QSize(321, 140));
    window.resize(400, 300);
    window.show();
    ASSERT_TRUE(QTest::qWaitForWindowExposed(&window));

    EXPECT_TRUE(root->UI_IsShown());
    EXPECT_EQ(root->UI_GetLocalRectF(true), RectF(0, 0, 400, 300));
    EXPECT_EQ(stretched->UI_GetLocalRectF(true), RectF(10, 10, 380, 280))
        << "bindings follow the host's size";
    EXPECT_TRUE(stretched->UI_GetWidget()->isVisible());
    EXPECT_GT(root->paints, 0);

    window.resize(500, 300);
    EXPECT_EQ(root->UI_GetLocalRectF(true), RectF(0, 0, 500, 300));
    EXPECT_EQ(stretched->UI_GetLocalRectF(true), RectF(10, 10, 480, 280));

    QImage const shot = window.grab().toImage();
    EXPECT_EQ(shot.pixelColor(5, 5), QColor(Qt::blue)) << "the root's drawing shows in the host";
}

TEST(NodeHostWidgetTest, HostDyingLeavesAHeldNodeItsWidget)
{
    boost::intrusive_ptr<SizedView> root(new SizedView);
    QPointer<QWidget> nodeWidget;
    {
        NodeHostWidget host(root);
        nodeWidget = root->UI_GetWidget();
        EXPECT_EQ(nodeWidget->parentWidget(), &host);
    }
    ASSERT_FALSE(nodeWidget.isNull());
    EXPECT_EQ(nodeWidget->parentWidget(), nullptr);
    EXPECT_FALSE(nodeWidget->isVisible());

    // Replacing the root hands the old one back the same way.
    NodeHostWidget host(root);
    UI_NodePtr other(new UI_SubView);
    host.SetRootNode(other);
    EXPECT_EQ(host.GetRootNode(), other.get());
    EXPECT_EQ(root->UI_GetWidget()->parentWidget(), nullptr);
    EXPECT_EQ(other->UI_GetWidget()->parentWidget(), &host);
}

TEST(NodeHostWidgetTest, HostedControlTakesTypingAndTabOrderFollowsNodes)
{
    struct EditNode : UI_SubView
    {
        QWidget* CreateWidget() override { return new NodeWidget<QLineEdit>(this); }
        bool UI_WantsKeyboardFocus() const override { return true; }
    };
    UI_NodePtr root(new UI_SubView);
    UI_NodePtr first(new EditNode);
    UI_NodePtr second(new EditNode);
    // Widgets made in reverse order: the Tab order must still be the node order.
    second->UI_GetWidget();
    first->UI_GetWidget();
    zephtest::AddShown(root.get(), first, RectF(0, 0, 100, 24));
    zephtest::AddShown(root.get(), second, RectF(0, 30, 100, 24));
    zephtest::ActiveTestWindow window(root, 200, 100);
    ASSERT_TRUE(first->UI_GainKeyboardFocus(3));

    QTest::keyClicks(QApplication::focusWidget(), "hi");
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_Tab);
    QTest::keyClicks(QApplication::focusWidget(), "yo");

    EXPECT_EQ(static_cast<QLineEdit*>(first->UI_GetWidget())->text(), QStringLiteral("hi"));
    EXPECT_EQ(static_cast<QLineEdit*>(second->UI_GetWidget())->text(), QStringLiteral("yo"));
    EXPECT_TRUE(second->UI_HasKeyboardFocus());
}
