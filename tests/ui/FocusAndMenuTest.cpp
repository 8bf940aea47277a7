// Focus brought by Tab, mouse filter nodes, the wheel, context menus, repaint
// on demand, and a node that dies inside its own event.

#include "ControlTestWindow.h"

#include "zephui/Drawbot.h"
#include "zephui/NodeHostWidget.h"
#include "zephui/OSMenu.h"
#include "zephui/UI_NodeManager.h"
#include "zephui/UI_SubView.h"

#include <QApplication>
#include <QMenu>
#include <QPointer>
#include <QTest>
#include <QTimer>
#include <QWheelEvent>

#include <gtest/gtest.h>

using namespace zephui;
using zephcore::AsciiToUTF16;

namespace
{

class FocusView : public UI_SubView
{
public:
    bool UI_WantsKeyboardFocus() const override { return true; }
    bool UI_GainKeyboardFocus(int reason) override
    {
        reasons.push_back(reason);
        if (reason <= kFocusReasonAdvanceBackward && decline)
            return false;
        return UI_SubView::UI_GainKeyboardFocus(reason);
    }
    bool UI_DoMouseEvent(UI_Node* node, MouseEvent const& event) override
    {
        if (event.IsAction(PointerEvent::kActionWheel))
        {
            wheel = event.GetMouseWheelDelta();
            axis = event.GetMouseWheelAxis();
            return true;
        }
        if (event.IsAction(PointerEvent::kActionPress) && onPress)
            onPress(node);
        return event.IsAction(PointerEvent::kActionPress);
    }
    void UI_Draw(Drawbot*) override { ++paints; }
    std::vector<int> reasons;
    bool decline = false;
    float wheel = 0.0f;
    int axis = 0;
    int paints = 0;
    std::function<void(UI_Node*)> onPress;
};

class PreMouseView : public UI_SubView
{
public:
    bool UI_DoPreMouseEvent(UI_Node* node, MouseEvent const& event) override
    {
        if (!event.IsAction(PointerEvent::kActionPress))
            return false;
        target = node;
        position = event.GetPosition();
        return event.IsButton(MouseEvent::kButtonRight);
    }
    UI_Node* target = nullptr;
    PointF position;
};

using Window = zephtest::ActiveTestWindow;

boost::intrusive_ptr<FocusView> AddFocusView(UI_Node* parent, float top)
{
    return zephtest::AddShown(parent, boost::intrusive_ptr<FocusView>(new FocusView),
                              RectF(0, top, 100, 20));
}

} // namespace

TEST(FocusAndMenuTest, TabCallsGainKeyboardFocusAndADeclinePassesItOn)
{
    UI_NodePtr root(new UI_SubView);
    auto a = AddFocusView(root.get(), 0);
    auto b = AddFocusView(root.get(), 30);
    auto c = AddFocusView(root.get(), 60);
    Window window(root);
    ASSERT_TRUE(a->UI_GainKeyboardFocus(kFocusReasonProgram));
    b->decline = true;

    QTest::keyClick(QApplication::focusWidget(), Qt::Key_Tab);

    EXPECT_EQ(b->reasons, (std::vector<int>{kFocusReasonAdvance}));
    EXPECT_TRUE(c->UI_HasKeyboardFocus()) << "b declined, so the focus went on";
    EXPECT_EQ(c->reasons, (std::vector<int>{kFocusReasonAdvance}));
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_Backtab, Qt::ShiftModifier);
    EXPECT_TRUE(a->UI_HasKeyboardFocus());
    EXPECT_EQ(b->reasons.back(), kFocusReasonAdvanceBackward);
}

TEST(FocusAndMenuTest, MouseFilterNodeSeesPressesOfItsSubtreeFirst)
{
    boost::intrusive_ptr<PreMouseView> root(new PreMouseView);
    auto child = AddFocusView(root.get(), 40);
    Window window(root);
    int childPresses = 0;
    child->onPress = [&](UI_Node*) { ++childPresses; };
    auto const click = [&](Qt::MouseButton button)
    { QTest::mouseClick(child->UI_GetWidget(), button, Qt::NoModifier, QPoint(7, 3)); };
    {
        UI_NodeManager::AddAndRemoveMouseEventFilterNode filter(UI_NodeManager::Get(), root.get());
        click(Qt::RightButton);
        EXPECT_EQ(root->target, child.get());
        EXPECT_EQ(root->position, PointF(7, 43));
        EXPECT_EQ(childPresses, 0) << "the filter took the right press";
        click(Qt::LeftButton);
        EXPECT_EQ(childPresses, 1) << "a press the filter leaves goes on";
    }
    root->target = nullptr;
    click(Qt::RightButton);
    EXPECT_EQ(root->target, nullptr);
    EXPECT_EQ(childPresses, 2);
}

TEST(FocusAndMenuTest, WheelDeltaIsInStepsTowardsTheEnd)
{
    UI_NodePtr root(new UI_SubView);
    auto view = AddFocusView(root.get(), 0);
    Window window(root);
    QWidget* w = view->UI_GetWidget();
    auto const turn = [w](QPoint angle)
    {
        QWheelEvent wheel(QPointF(10, 10), w->mapToGlobal(QPointF(10, 10)), QPoint(), angle,
                          Qt::NoButton, Qt::NoModifier, Qt::NoScrollPhase, false);
        QApplication::sendEvent(w, &wheel);
    };
    turn(QPoint(0, -240));
    EXPECT_FLOAT_EQ(view->wheel, 2.0f);
    EXPECT_EQ(view->axis, MouseEvent::kAxisVertical);
    turn(QPoint(120, 0));
    EXPECT_FLOAT_EQ(view->wheel, -1.0f);
    EXPECT_EQ(view->axis, MouseEvent::kAxisHorizontal);
}

TEST(FocusAndMenuTest, ContextMenuReturnsTheChosenNumber)
{
    UI_NodePtr root(new UI_SubView);
    auto view = AddFocusView(root.get(), 0);
    Window window(root);
    std::unique_ptr<OSMenu> menu = CreateOSMenu();
    menu->AddItem(AsciiToUTF16("Insert Word Before"), 3);
    menu->AddSeparator();
    menu->AddItem(AsciiToUTF16("Delete Word"), 5);
    menu->AddItem(AsciiToUTF16("Copy All"), 11);
    menu->EnableItem(3, false);

    // Down twice skips the disabled item and the separator: "Delete Word", then "Copy All".
    QTimer::singleShot(0,
                       []
                       {
                           QWidget* popup = QApplication::activePopupWidget();
                           ASSERT_NE(popup, nullptr);
                           QTest::keyClick(popup, Qt::Key_Down);
                           QTest::keyClick(popup, Qt::Key_Down);
                           QTest::keyClick(popup, Qt::Key_Return);
                       });
    EXPECT_EQ(view->UI_DoContextMenu(menu.get(), PointF(5, 5)), 11);

    QTimer::singleShot(0,
                       []
                       {
                           if (QWidget* popup = QApplication::activePopupWidget())
                               QTest::keyClick(popup, Qt::Key_Escape);
                       });
    EXPECT_EQ(view->UI_DoContextMenu(menu.get(), PointF(5, 5)), 0)
        << "a dismissed menu chooses nothing";
    EXPECT_EQ(view->UI_DoContextMenu(nullptr, PointF(5, 5)), 0);
}

TEST(FocusAndMenuTest, UpdateNowPaintsAtOnceAndInvalidateLater)
{
    UI_NodePtr root(new UI_SubView);
    auto view = AddFocusView(root.get(), 0);
    Window window(root);
    ASSERT_TRUE(QTest::qWaitForWindowExposed(window.host.get()));
    QCoreApplication::processEvents();
    int const before = view->paints;
    view->UI_Invalidate();
    EXPECT_EQ(view->paints, before) << "invalidation paints later";
    view->UI_UpdateNow(-1);
    EXPECT_EQ(view->paints, before + 1);
}

TEST(FocusAndMenuTest, NodeRemovedByItsOwnPressDiesSafely)
{
    UI_NodePtr root(new UI_SubView);
    auto view = AddFocusView(root.get(), 0);
    Window window(root);
    QPointer<QWidget> widget = view->UI_GetWidget();
    FocusView* raw = view.get();
    view->onPress = [raw, root](UI_Node*) { root->ChildRequestRemove(raw); };
    view.reset();

    QTest::mousePress(widget.data(), Qt::LeftButton, Qt::NoModifier, QPoint(5, 5));
    if (widget)
        QTest::mouseRelease(widget.data(), Qt::LeftButton, Qt::NoModifier, QPoint(5, 5));
    EXPECT_EQ(root->ChildCount(), 0u);
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    EXPECT_TRUE(widget.isNull()) << "the widget goes once its event is over";
}

TEST(FocusAndMenuTest, ViewWithoutFocusHandsItToAChild)
{
    UI_NodePtr root(new UI_SubView);
    UI_NodePtr const box =
        zephtest::AddShown(root.get(), UI_NodePtr(new UI_SubView), RectF(0, 0, 200, 100));
    auto hidden = AddFocusView(box.get(), 0);
    hidden->UI_Show(false);
    auto first = AddFocusView(box.get(), 30);
    auto last = AddFocusView(box.get(), 60);
    Window window(root);

    EXPECT_TRUE(box->UI_GainKeyboardFocus(kFocusReasonAdvance));
    EXPECT_TRUE(first->UI_HasKeyboardFocus());
    EXPECT_TRUE(box->UI_HasKeyboardFocus(true));
    EXPECT_FALSE(box->UI_HasKeyboardFocus(false));
    EXPECT_TRUE(box->UI_GainKeyboardFocus(kFocusReasonAdvanceBackward));
    EXPECT_TRUE(last->UI_HasKeyboardFocus());
    box->UI_SetDisabled(true);
    EXPECT_FALSE(box->UI_GainKeyboardFocus(kFocusReasonProgram));
}
