// The node tree and its widget tree: mirroring, ownership, death, geometry.

#include "zephui/NodeWidget.h"
#include "zephui/UI_SubView.h"

#include <QApplication>
#include <QPointer>
#include <QWidget>

#include <gtest/gtest.h>

using namespace zephui;

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
    void UI_SizeChanged(RectF const& rect) override
    {
        ++sizeChanges;
        lastSize = rect;
        UI_SubView::UI_SizeChanged(rect);
    }
    int* deaths;
    int sizeChanges = 0;
    RectF lastSize;
};

} // namespace

TEST(NodeTreeTest, ChildPushBackMirrorsWidgetTree)
{
    UI_NodePtr parent(new UI_SubView);
    UI_NodePtr a(new UI_SubView);
    UI_NodePtr b(new UI_SubView);
    parent->ChildPushBack(a);
    parent->ChildPushBack(b);

    EXPECT_EQ(parent->ChildCount(), 2u);
    EXPECT_EQ(parent->ChildGet(0), a.get());
    EXPECT_EQ(parent->ChildGet(2), nullptr);
    EXPECT_EQ(a->UI_GetParentNode(), parent.get());
    EXPECT_EQ(a->UI_GetWidget()->parentWidget(), parent->UI_GetWidget());
    EXPECT_EQ(NodeForWidget(b->UI_GetWidget()), b.get());

    // Moving a child to another parent takes it out of the first.
    UI_NodePtr other(new UI_SubView);
    other->ChildPushBack(a);
    EXPECT_EQ(parent->ChildCount(), 1u);
    EXPECT_EQ(a->UI_GetParentNode(), other.get());
    EXPECT_EQ(a->UI_GetWidget()->parentWidget(), other->UI_GetWidget());
}

TEST(NodeTreeTest, NodeDeathDeletesItsWidget)
{
    int deaths = 0;
    UI_NodePtr parent(new UI_SubView);
    boost::intrusive_ptr<CountingView> child(new CountingView(&deaths));
    parent->ChildPushBack(child);
    QPointer<QWidget> childWidget = child->UI_GetWidget();
    child.reset();
    EXPECT_EQ(deaths, 0) << "the parent still holds the child";

    EXPECT_TRUE(parent->ChildRequestRemove(parent->ChildGet(0)));
    EXPECT_EQ(deaths, 1);
    EXPECT_TRUE(childWidget.isNull());
}

TEST(NodeTreeTest, ParentDyingFirstLeavesHeldChildWithItsWidget)
{
    int deaths = 0;
    UI_NodePtr parent(new UI_SubView);
    boost::intrusive_ptr<CountingView> held(new CountingView(&deaths));
    boost::intrusive_ptr<CountingView> onlyInParent(new CountingView(&deaths));
    parent->ChildPushBack(held);
    parent->ChildPushBack(onlyInParent);
    QPointer<QWidget> heldWidget = held->UI_GetWidget();
    QPointer<QWidget> droppedWidget = onlyInParent->UI_GetWidget();
    onlyInParent.reset();

    parent.reset();

    EXPECT_EQ(deaths, 1);
    EXPECT_TRUE(droppedWidget.isNull());
    ASSERT_FALSE(heldWidget.isNull());
    EXPECT_EQ(heldWidget->parentWidget(), nullptr);
    EXPECT_EQ(held->UI_GetParentNode(), nullptr);
    // The survivor is a whole node: it can join a new parent.
    UI_NodePtr newParent(new UI_SubView);
    newParent->ChildPushBack(held);
    EXPECT_EQ(heldWidget->parentWidget(), newParent->UI_GetWidget());
}

TEST(NodeTreeTest, WidgetDeletedByQtLeavesNodeWorking)
{
    UI_NodePtr parent(new UI_SubView);
    UI_NodePtr child(new UI_SubView);
    parent->ChildPushBack(child);
    delete parent->UI_GetWidget(); // as a window closed with WA_DeleteOnClose would

    EXPECT_EQ(parent->UI_GetWidget(), nullptr);
    EXPECT_EQ(child->UI_GetWidget(), nullptr);
    child->UI_SetLocalRectF(RectF(1, 2, 30, 40));
    child->UI_Show(true);
    child->UI_SetToolTip(zephcore::AsciiToUTF16("still here"), 400.0f);
    EXPECT_EQ(child->UI_GetLocalRectF(true), RectF(1, 2, 30, 40));
    EXPECT_TRUE(child->UI_IsShown());
}

TEST(NodeTreeTest, RectangleIsLocalAndAppliedToWidget)
{
    boost::intrusive_ptr<CountingView> parent(new CountingView);
    UI_NodePtr child(new UI_SubView);
    parent->ChildPushBack(child);
    parent->UI_SetLocalRectF(RectF(0, 0, 200, 100));
    child->UI_SetLocalRectF(RectF(10.4f, 20.6f, 50.2f, 30.0f));

    EXPECT_EQ(child->UI_GetLocalRectF(false), RectF(0, 0, 50.2f, 30.0f));
    EXPECT_EQ(child->UI_GetLocalRectF(true), RectF(10.4f, 20.6f, 50.2f, 30.0f));
    EXPECT_EQ(child->UI_GetWidget()->geometry(), QRect(10, 21, 51, 30));
    EXPECT_EQ(parent->sizeChanges, 1);
    parent->UI_SetLocalRectF(RectF(5, 5, 200, 100)); // a move alone is no size change
    EXPECT_EQ(parent->sizeChanges, 1);

    ScaleMatrixF const m = UI_Node::UI_GetSelfToSpecificParentMatrix(child.get(), parent.get());
    EXPECT_EQ(m.Transform(PointF(1, 1)), PointF(11.4f, 21.6f));
    EXPECT_EQ(m.Inverse().Transform(PointF(11.4f, 21.6f)), PointF(1, 1));
}
