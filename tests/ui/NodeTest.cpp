// The node tree and its widget tree: mirroring, ownership, death, geometry,
// tool tips, ids, shown and disabled state, layout bindings, and a Qt
// application hosting a node tree through NodeHostWidget.

#include "ControlTestWindow.h"

#include "zephui/Drawbot.h"

#include "../../platform/zephui/src/ToolTipText.h"

#include <QApplication>
#include <QFontMetricsF>
#include <QPointer>
#include <QToolTip>
#include <QVBoxLayout>

#include <limits>

using namespace zephui;
using zephcore::AsciiToUTF16;

namespace
{

class CountingView : public UI_SubView
{
public:
    explicit CountingView(int* deaths = nullptr) : deaths(deaths) {}
    ~CountingView() override
    {
        if (deaths)
            ++*deaths;
    }
    void UI_DisabledStateChanged() override { ++disabledChanges; }
    PointF UI_GetRecommendedSize(Drawbot*) override { return PointF(320.5f, 140.0f); }
    void UI_Draw(Drawbot* drawbot) override
    {
        drawbot->FillRect(UI_GetLocalRectF(false), ColorRGBA(0, 0, 1, 1));
    }
    int* deaths;
    int disabledChanges = 0;
};

UI_NodePtr Child(UI_Node* parent, RectF rect = RectF(), unsigned char binding = 0)
{
    UI_NodePtr child(new UI_SubView);
    parent->ChildPushBack(child);
    child->UI_SetLocalRectF(rect);
    child->UI_SetLayoutBinding(binding);
    return child;
}

} // namespace

// (A child's widget in its parent's is what every hosted test sees.)
TEST(NodeTreeTest, MovingAChildTakesItOutOfItsFormerParent)
{
    UI_NodePtr parent(new UI_SubView);
    UI_NodePtr a = Child(parent.get());
    Child(parent.get());
    EXPECT_EQ(parent->ChildGet(2), nullptr);
    UI_NodePtr other(new UI_SubView);
    other->ChildPushBack(a);
    EXPECT_EQ(parent->ChildCount(), 1u);
    EXPECT_EQ(a->UI_GetParentNode(), other.get());
    EXPECT_EQ(a->UI_GetWidget()->parentWidget(), other->UI_GetWidget());
}

TEST(NodeTreeTest, NodeDeathDeletesItsWidgetAndAHeldChildSurvivesItsParent)
{
    int deaths = 0;
    UI_NodePtr parent(new UI_SubView);
    boost::intrusive_ptr<CountingView> held(new CountingView(&deaths));
    boost::intrusive_ptr<CountingView> dropped(new CountingView(&deaths));
    boost::intrusive_ptr<CountingView> removed(new CountingView(&deaths));
    for (UI_NodePtr const& child : {UI_NodePtr(held), UI_NodePtr(dropped), UI_NodePtr(removed)})
        parent->ChildPushBack(child);
    QPointer<QWidget> heldWidget = held->UI_GetWidget();
    QPointer<QWidget> droppedWidget = dropped->UI_GetWidget();
    QPointer<QWidget> removedWidget = removed->UI_GetWidget();
    dropped.reset();
    removed.reset();
    EXPECT_EQ(deaths, 0) << "the parent still holds its children";
    EXPECT_TRUE(parent->ChildRequestRemove(parent->ChildGet(2)));
    EXPECT_EQ(deaths, 1);
    EXPECT_TRUE(removedWidget.isNull());

    parent.reset();
    EXPECT_EQ(deaths, 2);
    EXPECT_TRUE(droppedWidget.isNull());
    ASSERT_FALSE(heldWidget.isNull());
    EXPECT_EQ(heldWidget->parentWidget(), nullptr);
    EXPECT_EQ(held->UI_GetParentNode(), nullptr);
    // The survivor is a whole node: it can join a new parent.
    UI_NodePtr newParent(new UI_SubView);
    newParent->ChildPushBack(held);
    EXPECT_EQ(heldWidget->parentWidget(), newParent->UI_GetWidget());
}

// A node keeps working when Qt deleted its widget, and takes a rectangle of
// nothing, a null child or itself as a child without a crash.
TEST(NodeTreeTest, DeletedWidgetsAndNonsenseLeaveTheNodeWorking)
{
    UI_NodePtr parent(new UI_SubView);
    UI_NodePtr child = Child(parent.get());
    delete parent->UI_GetWidget(); // as a window closed with WA_DeleteOnClose would
    EXPECT_EQ(child->UI_GetWidget(), nullptr);
    child->UI_SetLocalRectF(RectF(1, 2, 30, 40));
    child->UI_Show(true);
    child->UI_SetToolTip(AsciiToUTF16("still here"), 400.0f);
    EXPECT_EQ(child->UI_GetLocalRectF(true), RectF(1, 2, 30, 40));

    UI_NodePtr node(new UI_SubView);
    float const nan = std::numeric_limits<float>::quiet_NaN();
    node->UI_SetLocalRectF(RectF(nan, 5, std::numeric_limits<float>::infinity(), 10));
    EXPECT_EQ(node->UI_GetLocalRectF(true), RectF(0, 5, 0, 10));
    EXPECT_EQ(node->UI_GetWidget()->geometry(), QRect(0, 5, 0, 10));
    node->ChildPushBack(nullptr);
    EXPECT_FALSE(node->ChildRequestRemove(nullptr));
    node->ChildPushBack(node); // a node is never its own child
    EXPECT_EQ(node->ChildCount(), 0u);
}

TEST(NodeStateTest, ToolTipWrapsAtTheGivenWidthWithoutLosingAWord)
{
    UI_NodePtr node(new UI_SubView);
    std::string const text =
        "The date and time when the resource was created, as the creator's device recorded it, "
        "in the local time of the place <where> it was made.";
    node->UI_SetToolTip(AsciiToUTF16(text), 400.0f);
    QString const shown = node->UI_GetWidget()->toolTip();
    EXPECT_TRUE(shown.contains(QStringLiteral("<br/>"))) << shown.toStdString();
    EXPECT_TRUE(shown.contains(QStringLiteral("&lt;where&gt;")))
        << "text is escaped, not read as markup";
    QFontMetricsF const fm(QToolTip::font());
    QStringList const lines = WrapToolTipLines(QString::fromStdString(text), 400.0f);
    for (QString const& line : lines)
        EXPECT_LE(fm.horizontalAdvance(line), 400.0);
    EXPECT_EQ(lines.join(QLatin1Char(' ')), QString::fromStdString(text)) << "no word is lost";
    // A word wider than the width is broken too.
    QStringList const broken =
        WrapToolTipLines(QStringLiteral("x") + QString(200, QLatin1Char('w')), 100.0f);
    ASSERT_GE(broken.size(), 3);
    for (QString const& line : broken)
        EXPECT_LE(fm.horizontalAdvance(line), 100.0);
}

TEST(NodeStateTest, ShowAndDisableFollowTheTree)
{
    UI_NodePtr root(new UI_SubView);
    boost::intrusive_ptr<CountingView> child(new CountingView);
    root->ChildPushBack(child);
    EXPECT_FALSE(child->UI_IsShown()) << "nodes start hidden";
    child->UI_Show(true);
    EXPECT_TRUE(child->UI_GetWidget()->isVisibleTo(root->UI_GetWidget()));
    EXPECT_FALSE(child->UI_AreAllParentsVisible());
    root->UI_Show(true);
    EXPECT_TRUE(child->UI_AreAllParentsVisible());
    EXPECT_FALSE(root->UI_GetWidget()->isVisible())
        << "a parentless plain view never becomes a window";

    root->UI_SetDisabled(true);
    root->UI_SetDisabled(true); // no change, no second notification
    EXPECT_TRUE(child->UI_IsDisabled());
    EXPECT_FALSE(child->UI_IsOwnDisabled());
    EXPECT_FALSE(child->UI_GetWidget()->isEnabled());
    EXPECT_EQ(child->disabledChanges, 1);
    root->UI_SetEnabled(true);
    EXPECT_TRUE(child->UI_GetWidget()->isEnabled());
}

TEST(NodeStateTest, BindingsMoveChildrenWhenParentResizesOnceLayoutIsOn)
{
    UI_NodePtr parent(new UI_SubView);
    UI_NodePtr late = Child(parent.get(), RectF(0, 0, 10, 10), 0xc);
    parent->UI_SetLocalRectF(RectF(0, 0, 100, 100));
    EXPECT_EQ(late->UI_GetLocalRectF(true), RectF(0, 0, 10, 10)) << "no layout while off";
    parent->UI_SetLayoutsChildren(true);
    parent->UI_SetLocalRectF(RectF(0, 0, 0, 0));
    // Made while the parent is empty: sizes taken from the far edge are negative.
    UI_NodePtr stretch = Child(parent.get(), RectF(160, 0, -160, 70), 4);
    UI_NodePtr button = Child(parent.get(), RectF(-85, 0, 75, 21), 5);
    UI_NodePtr bar = Child(parent.get(), RectF(0, -30, 0, 30), 14);
    UI_NodePtr centred = Child(parent.get(), RectF(0, 0, 40, 10), 0x30);
    UI_NodePtr fixed = Child(parent.get(), RectF(3, 4, 5, 6), 0);
    EXPECT_EQ(stretch->UI_GetWidget()->size(), QSize(0, 70)) << "a negative width shows as none";

    parent->UI_SetLocalRectF(RectF(0, 0, 500, 200));
    EXPECT_EQ(late->UI_GetLocalRectF(true), RectF(0, 0, 410, 110)) << "from the size it had then";
    EXPECT_EQ(stretch->UI_GetLocalRectF(true), RectF(160, 0, 340, 70));
    EXPECT_EQ(button->UI_GetLocalRectF(true), RectF(415, 0, 75, 21));
    EXPECT_EQ(bar->UI_GetLocalRectF(true), RectF(0, 170, 500, 30));
    EXPECT_EQ(centred->UI_GetLocalRectF(true), RectF(230, 95, 40, 10));
    EXPECT_EQ(fixed->UI_GetLocalRectF(true), RectF(3, 4, 5, 6));
    parent->UI_SetLocalRectF(RectF(0, 0, 400, 200)); // shrink: the deltas go back
    EXPECT_EQ(button->UI_GetLocalRectF(true), RectF(315, 0, 75, 21));
}

TEST(NodeHostWidgetTest, HostsShowsAndSizesTheRootAndItsDrawing)
{
    boost::intrusive_ptr<CountingView> root(new CountingView);
    root->UI_SetLayoutsChildren(true);
    UI_NodePtr stretched = Child(root.get(), RectF(10, 10, -20, -20), 0xc);
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
    EXPECT_EQ(stretched->UI_GetLocalRectF(true), RectF(10, 10, 380, 280));
    EXPECT_TRUE(stretched->UI_GetWidget()->isVisible());
    window.resize(500, 300);
    EXPECT_EQ(root->UI_GetLocalRectF(true), RectF(0, 0, 500, 300));
    EXPECT_EQ(window.grab().toImage().pixelColor(5, 5), QColor(Qt::blue))
        << "the root's drawing shows in the host";
}

TEST(NodeHostWidgetTest, HostDyingOrANewRootLeavesAHeldNodeItsWidget)
{
    boost::intrusive_ptr<CountingView> root(new CountingView);
    QPointer<QWidget> nodeWidget;
    {
        NodeHostWidget host(root);
        nodeWidget = root->UI_GetWidget();
    }
    ASSERT_FALSE(nodeWidget.isNull());
    EXPECT_EQ(nodeWidget->parentWidget(), nullptr);
    EXPECT_FALSE(nodeWidget->isVisible());

    NodeHostWidget host(root);
    UI_NodePtr other(new UI_SubView);
    host.SetRootNode(other);
    EXPECT_EQ(root->UI_GetWidget()->parentWidget(), nullptr);
    EXPECT_EQ(other->UI_GetWidget()->parentWidget(), &host);
}

TEST(NodeHostWidgetTest, HostedControlTakesTypingAndTabOrderFollowsNodes)
{
    UI_NodePtr root(new UI_SubView);
    UI_NodePtr first(new zephtest::LineEditNode);
    UI_NodePtr second(new zephtest::LineEditNode);
    // Widgets made in reverse order: the Tab order must still be the node order.
    second->UI_GetWidget();
    first->UI_GetWidget();
    zephtest::AddShown(root.get(), first, RectF(0, 0, 100, 24));
    zephtest::AddShown(root.get(), second, RectF(0, 30, 100, 24));
    zephtest::ActiveTestWindow window(root, 200, 100);
    ASSERT_TRUE(first->UI_GainKeyboardFocus(kFocusReasonProgram));
    QTest::keyClicks(QApplication::focusWidget(), "hi");
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_Tab);
    QTest::keyClicks(QApplication::focusWidget(), "yo");
    EXPECT_EQ(static_cast<QLineEdit*>(first->UI_GetWidget())->text(), QStringLiteral("hi"));
    EXPECT_EQ(static_cast<QLineEdit*>(second->UI_GetWidget())->text(), QStringLiteral("yo"));
}
