// Pointer captures: a drag goes to the capture wherever the pointer goes,
// its end comes once, Escape and Cancel end it as cancelled.

#include "ControlTestWindow.h"

#include "zephui/InputCapture.h"
#include "zephui/NodeHostWidget.h"
#include "zephui/ResourceManager.h"
#include "zephui/UI_NodeManager.h"
#include "zephui/UI_SubView.h"

#include <QApplication>
#include <QGuiApplication>
#include <QTest>

#include <gtest/gtest.h>

#include <string>
#include <vector>

using namespace zephui;

namespace
{

struct CaptureLog
{
    std::vector<std::string> calls;
    std::vector<PointF> drags;
};

class DragCapture : public InputCapture
{
public:
    DragCapture(UI_Node* node, MouseEvent const& start, CaptureLog* log)
        : InputCapture(node, start), log(log)
    {
    }
    void CaptureEnded() override
    {
        log->calls.push_back(HasBeenCancelled() ? "end-cancelled" : "end");
    }
    bool DoCursor(PointF const&) override
    {
        UI_NodeManager::Get()->GetResourceManager()->DisplayCursor(
            HasBeenCancelled() ? kCursorArrow : kCursorResizeVertical);
        log->calls.push_back(HasBeenCancelled() ? "cursor-cancelled" : "cursor");
        return true;
    }
    bool DoMouseEvent(MouseEvent const& event) override
    {
        if (event.IsAction(PointerEvent::kActionDrag))
        {
            log->drags.push_back(event.GetPosition());
            log->calls.push_back("drag");
        }
        else if (event.IsAction(PointerEvent::kActionRelease))
            log->calls.push_back("release");
        return false;
    }
    CaptureLog* log;
};

// Begins a capture on a press of the primary button.
class DragView : public UI_SubView
{
public:
    explicit DragView(CaptureLog* log) : log(log) {}
    bool UI_DoMouseEvent(UI_Node*, MouseEvent const& event) override
    {
        if (!event.IsAction(PointerEvent::kActionPress) || !event.IsButton(MouseEvent::kButtonLeft))
        {
            if (event.IsAction(PointerEvent::kActionDrag))
                ++dragsSeenByView;
            return false;
        }
        UI_NodeManager::Get()->BeginInputCapture(
            InputCapturePtr(new DragCapture(this, event, log)));
        return true;
    }
    CaptureLog* log;
    int dragsSeenByView = 0;
};

struct Fixture
{
    CaptureLog log;
    boost::intrusive_ptr<DragView> view{new DragView(&log)};
    zephtest::ActiveTestWindow window{view, 200, 100};
};

} // namespace

TEST(CaptureTest, DragGoesToCaptureAndEndsOnRelease)
{
    Fixture f;
    QWidget* w = f.view->UI_GetWidget();
    QTest::mousePress(w, Qt::LeftButton, Qt::NoModifier, QPoint(10, 10));
    ASSERT_NE(UI_NodeManager::Get()->GetCurrentCapture(), nullptr);
    EXPECT_EQ(QGuiApplication::overrideCursor() ? QGuiApplication::overrideCursor()->shape()
                                                : Qt::BlankCursor,
              Qt::SizeVerCursor);
    QTest::mouseMove(w, QPoint(40, 12));
    QTest::mouseMove(w, QPoint(190, 90));
    QTest::mouseRelease(w, Qt::LeftButton, Qt::NoModifier, QPoint(190, 90));

    EXPECT_EQ(UI_NodeManager::Get()->GetCurrentCapture(), nullptr);
    ASSERT_EQ(f.log.drags.size(), 2u);
    EXPECT_EQ(f.log.drags[0], PointF(40, 12));
    EXPECT_EQ(f.log.drags[1], PointF(190, 90));
    EXPECT_EQ(f.log.calls.back(), "end");
    EXPECT_EQ(std::count(f.log.calls.begin(), f.log.calls.end(), "end"), 1);
    EXPECT_EQ(f.view->dragsSeenByView, 0) << "the node saw none of the captured drag";
    EXPECT_EQ(QGuiApplication::overrideCursor(), nullptr);
}

TEST(CaptureTest, EscapeCancelsAndLaterMovesGoToTheNodeAgain)
{
    Fixture f;
    QWidget* w = f.view->UI_GetWidget();
    QTest::mousePress(w, Qt::LeftButton, Qt::NoModifier, QPoint(10, 10));
    QTest::mouseMove(w, QPoint(30, 10));
    QTest::keyClick(QApplication::focusWidget() ? QApplication::focusWidget() : w, Qt::Key_Escape);

    EXPECT_EQ(UI_NodeManager::Get()->GetCurrentCapture(), nullptr);
    std::vector<std::string> const tail(f.log.calls.end() - 2, f.log.calls.end());
    EXPECT_EQ(tail, (std::vector<std::string>{"cursor-cancelled", "end-cancelled"}));
    EXPECT_EQ(UI_NodeManager::Get()->GetDisplayedCursor(), kCursorArrow);
    QTest::mouseMove(w, QPoint(60, 10));
    EXPECT_EQ(f.log.drags.size(), 1u);
    QTest::mouseRelease(w, Qt::LeftButton, Qt::NoModifier, QPoint(60, 10));
}

TEST(CaptureTest, CancelAndANewCaptureEndTheRunningOne)
{
    Fixture f;
    MouseEvent const start(PointerEvent::kActionPress, PointF(1, 1), PointF(1, 1),
                           MouseEvent::kButtonLeft);
    boost::intrusive_ptr<DragCapture> first(new DragCapture(f.view.get(), start, &f.log));
    UI_NodeManager::Get()->BeginInputCapture(first);
    EXPECT_TRUE(first->IsActive());
    boost::intrusive_ptr<DragCapture> second(new DragCapture(f.view.get(), start, &f.log));
    UI_NodeManager::Get()->BeginInputCapture(second);
    EXPECT_TRUE(first->HasBeenCancelled());
    EXPECT_FALSE(first->IsActive());
    EXPECT_EQ(UI_NodeManager::Get()->GetCurrentCapture(), second.get());

    second->Cancel();
    EXPECT_EQ(UI_NodeManager::Get()->GetCurrentCapture(), nullptr);
    EXPECT_EQ(std::count(f.log.calls.begin(), f.log.calls.end(), "end-cancelled"), 2);
    second->Cancel(); // a second cancel does nothing
    EXPECT_EQ(std::count(f.log.calls.begin(), f.log.calls.end(), "end-cancelled"), 2);
}

TEST(CaptureTest, NodeDyingDuringCaptureEndsItQuietly)
{
    CaptureLog log;
    boost::intrusive_ptr<DragView> view(new DragView(&log));
    MouseEvent const start(PointerEvent::kActionPress, PointF(1, 1), PointF(1, 1),
                           MouseEvent::kButtonLeft);
    boost::intrusive_ptr<DragCapture> capture(new DragCapture(view.get(), start, &log));
    UI_NodeManager::Get()->BeginInputCapture(capture);
    log.calls.clear();
    view.reset();
    EXPECT_EQ(UI_NodeManager::Get()->GetCurrentCapture(), nullptr);
    EXPECT_TRUE(capture->HasBeenCancelled());
    EXPECT_EQ(capture->GetNode(), nullptr);
    EXPECT_TRUE(log.calls.empty()) << "no notification reaches a dying node";
}
