// What a node keeps: tool tips, ids, shown and disabled state,
// and the children it moves by their layout bindings.

#include "zephui/NodeWidget.h"
#include "zephui/UI_SubView.h"

#include "../../platform/zephui/src/ToolTipText.h"

#include <QFontMetricsF>
#include <QToolTip>
#include <QWidget>

#include <limits>

#include <gtest/gtest.h>

using namespace zephui;
using zephcore::AsciiToUTF16;

namespace
{

UI_NodePtr ChildWithBinding(UI_Node* parent, RectF rect, unsigned char binding)
{
    UI_NodePtr child(new UI_SubView);
    parent->ChildPushBack(child);
    child->UI_SetLocalRectF(rect);
    child->UI_SetLayoutBinding(binding);
    return child;
}

class DisabledCounter : public UI_SubView
{
public:
    void UI_DisabledStateChanged() override { ++changes; }
    int changes = 0;
};

} // namespace

TEST(NodeStateTest, ToolTipWrapsAtTheGivenWidthWithoutLosingAWord)
{
    UI_NodePtr node(new UI_SubView);
    std::string const text =
        "The date and time when the resource was created, as the creator's device recorded it, "
        "in the local time of the place <where> it was made.";
    node->UI_SetToolTip(AsciiToUTF16(text), 400.0f);

    EXPECT_EQ(node->UI_GetToolTip(), AsciiToUTF16(text));
    EXPECT_EQ(node->UI_GetToolTipWidth(), 400.0f);
    QString const shown = node->UI_GetWidget()->toolTip();
    EXPECT_TRUE(shown.contains(QStringLiteral("<br/>"))) << shown.toStdString();
    EXPECT_TRUE(shown.contains(QStringLiteral("&lt;where&gt;")))
        << "text is escaped, not read as markup";
    QFontMetricsF const fm(QToolTip::font());
    QStringList const lines = WrapToolTipLines(QString::fromStdString(text), 400.0f);
    ASSERT_GE(lines.size(), 2);
    for (QString const& line : lines)
        EXPECT_LE(fm.horizontalAdvance(line), 400.0);
    EXPECT_EQ(lines.join(QLatin1Char(' ')), QString::fromStdString(text)) << "no word is lost";

    node->UI_SetToolTip(AsciiToUTF16("short"), 0.0f);
    EXPECT_EQ(node->UI_GetWidget()->toolTip(), QStringLiteral("short"));

    // A word wider than the width is broken too.
    QStringList const broken =
        WrapToolTipLines(QStringLiteral("x") + QString(200, QLatin1Char('w')), 100.0f);
    ASSERT_GE(broken.size(), 3);
    for (QString const& line : broken)
        EXPECT_LE(fm.horizontalAdvance(line), 100.0);
}

TEST(NodeStateTest, NodesAreFoundByTheirIdAtAnyDepth)
{
    UI_NodePtr root(new UI_SubView);
    UI_NodePtr box(new UI_SubView);
    UI_NodePtr deep(new UI_SubView);
    root->ChildPushBack(box);
    box->ChildPushBack(deep);
    box->UI_SetNodeID("box");
    deep->UI_SetNodeID("note_message");

    EXPECT_EQ(root->UI_ChildGetFromID("note_message"), deep.get());
    EXPECT_EQ(root->UI_ChildGetFromID("box"), box.get());
    EXPECT_EQ(root->UI_ChildGetFromID("missing"), nullptr);
    EXPECT_EQ(root->UI_ChildGetFromID(""), nullptr) << "nodes without an id are not found by it";
    EXPECT_TRUE(deep->UI_IsChildOf(root.get()));
    EXPECT_FALSE(root->UI_IsChildOf(deep.get()));
    EXPECT_TRUE(root->UI_IsChild(deep.get()));
}

TEST(NodeStateTest, ShowAndDisableFollowTheTree)
{
    UI_NodePtr root(new UI_SubView);
    boost::intrusive_ptr<DisabledCounter> child(new DisabledCounter);
    root->ChildPushBack(child);
    root->UI_SetLocalRectF(RectF(0, 0, 100, 100));
    child->UI_SetLocalRectF(RectF(0, 0, 10, 10));

    EXPECT_FALSE(child->UI_IsShown()) << "nodes start hidden";
    child->UI_Show(true);
    EXPECT_TRUE(child->UI_GetWidget()->isVisibleTo(root->UI_GetWidget()));
    EXPECT_FALSE(child->UI_AreAllParentsVisible());
    root->UI_Show(true);
    EXPECT_TRUE(child->UI_AreAllParentsVisible());
    EXPECT_FALSE(root->UI_GetWidget()->isVisible())
        << "a parentless plain view never becomes a window";

    root->UI_SetDisabled(true);
    EXPECT_TRUE(child->UI_IsDisabled());
    EXPECT_FALSE(child->UI_IsOwnDisabled());
    EXPECT_FALSE(child->UI_GetWidget()->isEnabled());
    EXPECT_EQ(child->changes, 1);
    root->UI_SetDisabled(true); // no change, no notification
    EXPECT_EQ(child->changes, 1);
    root->UI_SetEnabled(true);
    EXPECT_FALSE(child->UI_IsDisabled());
    EXPECT_TRUE(child->UI_GetWidget()->isEnabled());
    child->UI_Hide();
    EXPECT_FALSE(child->UI_GetWidget()->isVisibleTo(root->UI_GetWidget()));
}

TEST(NodeStateTest, BindingsMoveChildrenWhenParentResizes)
{
    UI_NodePtr parent(new UI_SubView);
    parent->UI_SetLayoutsChildren(true);
    // Made while the parent is empty: sizes taken from the far edge are negative.
    UI_NodePtr stretch = ChildWithBinding(parent.get(), RectF(160, 0, -160, 70), 4);
    UI_NodePtr button = ChildWithBinding(parent.get(), RectF(-85, 0, 75, 21), 5);
    UI_NodePtr fill = ChildWithBinding(parent.get(), RectF(0, 0, 0, -30), 0xc);
    UI_NodePtr bar = ChildWithBinding(parent.get(), RectF(0, -30, 0, 30), 14);
    UI_NodePtr centred = ChildWithBinding(parent.get(), RectF(0, 0, 40, 10), 0x30);
    UI_NodePtr fixed = ChildWithBinding(parent.get(), RectF(3, 4, 5, 6), 0);
    EXPECT_EQ(stretch->UI_GetWidget()->size(), QSize(0, 70)) << "a negative width shows as none";

    parent->UI_SetLocalRectF(RectF(0, 0, 500, 200));

    EXPECT_EQ(stretch->UI_GetLocalRectF(true), RectF(160, 0, 340, 70));
    EXPECT_EQ(button->UI_GetLocalRectF(true), RectF(415, 0, 75, 21));
    EXPECT_EQ(fill->UI_GetLocalRectF(true), RectF(0, 0, 500, 170));
    EXPECT_EQ(bar->UI_GetLocalRectF(true), RectF(0, 170, 500, 30));
    EXPECT_EQ(centred->UI_GetLocalRectF(true), RectF(230, 95, 40, 10));
    EXPECT_EQ(fixed->UI_GetLocalRectF(true), RectF(3, 4, 5, 6));

    parent->UI_SetLocalRectF(RectF(0, 0, 400, 200)); // shrink: the deltas go back
    EXPECT_EQ(stretch->UI_GetLocalRectF(true), RectF(160, 0, 240, 70));
    EXPECT_EQ(button->UI_GetLocalRectF(true), RectF(315, 0, 75, 21));
}

TEST(NodeStateTest, NoLayoutWithoutLayoutsChildren)
{
    UI_NodePtr parent(new UI_SubView);
    UI_NodePtr stretch = ChildWithBinding(parent.get(), RectF(0, 0, 10, 10), 0xc);
    parent->UI_SetLocalRectF(RectF(0, 0, 100, 100));
    EXPECT_EQ(stretch->UI_GetLocalRectF(true), RectF(0, 0, 10, 10));
    // Turned on later, layout counts from the size the parent has then.
    parent->UI_SetLayoutsChildren(true);
    EXPECT_TRUE(parent->UI_GetLayoutsChildren());
    parent->UI_SetLocalRectF(RectF(0, 0, 150, 120));
    EXPECT_EQ(stretch->UI_GetLocalRectF(true), RectF(0, 0, 60, 30));
}

TEST(NodeStateTest, RectangleOfNothingIsNoCrash)
{
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
