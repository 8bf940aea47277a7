// Pointer captures: a drag goes to the capture wherever the pointer goes, its
// end comes once, a new capture or Cancel ends the running one as cancelled.
// (Escape is driven through the splitter's tests.)

#include "ControlTestWindow.h"

#include "zephui/InputCapture.h"
#include "zephui/ResourceManager.h"
#include "zephui/UI_NodeManager.h"

#include <QGuiApplication>

using namespace zephui;

namespace
{

// Logs "drag", "release", and the end as "end" or "end-cancelled"; shows the
// resize cursor while it runs.
class DragCapture : public InputCapture
{
public:
    DragCapture(UI_Node* node, MouseEvent const& start, std::vector<std::string>* log)
        : InputCapture(node, start), log(log)
    {
    }
    void CaptureEnded() override { log->push_back(HasBeenCancelled() ? "end-cancelled" : "end"); }
    bool DoCursor(PointF const&) override
    {
        UI_NodeManager::Get()->GetResourceManager()->DisplayCursor(kCursorResizeVertical);
        return true;
    }
    bool DoMouseEvent(MouseEvent const& event) override
    {
        if (event.IsAction(PointerEvent::kActionDrag))
            drags.push_back(event.GetPosition());
        return false;
    }
    std::vector<std::string>* log;
    std::vector<PointF> drags;
};

// Begins a capture on a press of the primary button; counts the drags it sees.
struct DragView : UI_SubView
{
    bool UI_DoMouseEvent(UI_Node*, MouseEvent const& event) override
    {
        dragsSeenByView += event.IsAction(PointerEvent::kActionDrag);
        if (!event.IsAction(PointerEvent::kActionPress) || !event.IsButton(MouseEvent::kButtonLeft))
            return false;
        capture = new DragCapture(this, event, &log);
        UI_NodeManager::Get()->BeginInputCapture(capture);
        return true;
    }
    std::vector<std::string> log;
    boost::intrusive_ptr<DragCapture> capture;
    int dragsSeenByView = 0;
};

MouseEvent const kPress(PointerEvent::kActionPress, PointF(1, 1), PointF(1, 1),
                        MouseEvent::kButtonLeft);

} // namespace

TEST(CaptureTest, DragGoesToCaptureAndEndsOnRelease)
{
    boost::intrusive_ptr<DragView> view(new DragView);
    zephtest::ActiveTestWindow window(view, 200, 100);
    QWidget* w = view->UI_GetWidget();
    QTest::mousePress(w, Qt::LeftButton, Qt::NoModifier, QPoint(10, 10));
    ASSERT_NE(UI_NodeManager::Get()->GetCurrentCapture(), nullptr);
    ASSERT_TRUE(QGuiApplication::overrideCursor());
    EXPECT_EQ(QGuiApplication::overrideCursor()->shape(), Qt::SizeVerCursor);
    QTest::mouseMove(w, QPoint(40, 12));
    QTest::mouseMove(w, QPoint(190, 90));
    QTest::mouseRelease(w, Qt::LeftButton, Qt::NoModifier, QPoint(190, 90));

    EXPECT_EQ(UI_NodeManager::Get()->GetCurrentCapture(), nullptr);
    EXPECT_EQ(view->capture->drags, (std::vector<PointF>{PointF(40, 12), PointF(190, 90)}));
    EXPECT_EQ(view->log, (std::vector<std::string>{"end"}));
    EXPECT_EQ(view->dragsSeenByView, 0) << "the node saw none of the captured drag";
    EXPECT_EQ(QGuiApplication::overrideCursor(), nullptr);
}

TEST(CaptureTest, CancelAndANewCaptureEndTheRunningOne)
{
    boost::intrusive_ptr<DragView> view(new DragView);
    boost::intrusive_ptr<DragCapture> first(new DragCapture(view.get(), kPress, &view->log));
    UI_NodeManager::Get()->BeginInputCapture(first);
    boost::intrusive_ptr<DragCapture> second(new DragCapture(view.get(), kPress, &view->log));
    UI_NodeManager::Get()->BeginInputCapture(second);
    EXPECT_FALSE(first->IsActive());
    EXPECT_EQ(UI_NodeManager::Get()->GetCurrentCapture(), second.get());
    second->Cancel();
    second->Cancel(); // a second cancel does nothing
    EXPECT_EQ(UI_NodeManager::Get()->GetCurrentCapture(), nullptr);
    EXPECT_EQ(view->log, (std::vector<std::string>{"end-cancelled", "end-cancelled"}));
}

TEST(CaptureTest, NodeDyingDuringCaptureEndsItQuietly)
{
    boost::intrusive_ptr<DragView> view(new DragView);
    std::vector<std::string> log;
    boost::intrusive_ptr<DragCapture> capture(new DragCapture(view.get(), kPress, &log));
    UI_NodeManager::Get()->BeginInputCapture(capture);
    view.reset();
    EXPECT_EQ(UI_NodeManager::Get()->GetCurrentCapture(), nullptr);
    EXPECT_TRUE(capture->HasBeenCancelled());
    EXPECT_EQ(capture->GetNode(), nullptr);
    EXPECT_TRUE(log.empty()) << "no notification reaches a dying node";
}
