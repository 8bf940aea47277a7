// Mouse and keyboard reach nodes: bubbling up the node tree, filter nodes
// first, focus by Tab, the wheel, context menus, repaint on demand, a node
// that dies inside its own event, pointer captures ending. (A drag through a
// capture, Escape during it and the cursor it asks for are the splitter's
// tests; a view that takes Tab to move the focus itself is the form view's.)

#include "ControlTestWindow.h"

#include "zephui/Drawbot.h"
#include "zephui/InputCapture.h"
#include "zephui/OSMenu.h"
#include "zephui/QtEvents.h"
#include "zephui/UI_NodeManager.h"

#include <QApplication>
#include <QKeyEvent>
#include <QPointer>
#include <QTimer>
#include <QWheelEvent>

using namespace zephui;
using zephcore::AsciiToUTF16;

namespace
{

// Records what reaches it: keys before the focused node and after, focus
// requests, presses (as a filter and itself) with the node under the pointer,
// the wheel, paints; takes or declines what it is told to.
class Probe : public UI_SubView
{
public:
    explicit Probe(std::string name = {}, std::vector<std::string>* log = nullptr)
        : name(std::move(name)), log(log)
    {
    }
    bool UI_WantsKeyboardFocus() const override { return true; }
    bool UI_GainKeyboardFocus(int reason) override
    {
        reasons.push_back(reason);
        if (reason <= kFocusReasonAdvanceBackward && decline)
            return false;
        return UI_SubView::UI_GainKeyboardFocus(reason);
    }
    bool UI_DoKeyboardEvent(UI_Node*, KeyboardEvent const& event) override
    {
        if (log && event.IsActionKeyDown())
            log->push_back(name + ":key" + std::to_string(event.GetCode().Get()));
        return false;
    }
    bool UI_DoPreKeyboardEvent(UI_Node* node, KeyboardEvent const& event) override
    {
        if (!log || !event.IsActionKeyDown())
            return false;
        auto const* focused = dynamic_cast<Probe const*>(node);
        log->push_back(name + ":pre" + std::to_string(event.GetCode().Get()) + "@" +
                       (focused ? focused->name : "?"));
        return takePre;
    }
    bool UI_DoPreMouseEvent(UI_Node* node, MouseEvent const& event) override
    {
        if (!event.IsAction(PointerEvent::kActionPress))
            return false;
        target = node;
        position = event.GetPosition();
        return event.IsButton(MouseEvent::kButtonRight);
    }
    bool UI_DoMouseEvent(UI_Node* node, MouseEvent const& event) override
    {
        if (event.IsAction(PointerEvent::kActionWheel))
        {
            wheel = event.GetMouseWheelDelta();
            axis = event.GetMouseWheelAxis();
            return true;
        }
        if (!event.IsAction(PointerEvent::kActionPress))
            return false;
        if (log)
        {
            auto const* over = dynamic_cast<Probe const*>(node);
            PointF const at = event.GetPosition();
            log->push_back(name + ":press " + std::to_string(int(at.x)) + "," +
                           std::to_string(int(at.y)) + "@" + (over ? over->name : "?"));
        }
        bool const take = takePress; // the press may remove this node
        if (onPress)
            onPress(node);
        return take;
    }
    void UI_Draw(Drawbot*) override { ++paints; }
    std::string name;
    std::vector<std::string>* log;
    bool takePre = false;
    bool takePress = true;
    bool decline = false;
    std::vector<int> reasons;
    UI_Node* target = nullptr;
    PointF position;
    float wheel = 0.0f;
    int axis = 0;
    int paints = 0;
    std::function<void(UI_Node*)> onPress;
};

using ProbePtr = boost::intrusive_ptr<Probe>;

ProbePtr AddProbe(UI_Node* parent, float top)
{
    return zephtest::AddShown(parent, ProbePtr(new Probe), RectF(0, top, 100, 20));
}

// One probe in an active window.
struct OneProbe
{
    UI_NodePtr root{new UI_SubView};
    ProbePtr view = AddProbe(root.get(), 0);
    zephtest::ActiveTestWindow window{root};
};

// Logs its end as "end" or "end-cancelled".
class DragCapture : public InputCapture
{
public:
    DragCapture(UI_Node* node, MouseEvent const& start, std::vector<std::string>* log)
        : InputCapture(node, start), log(log)
    {
    }
    void CaptureEnded() override { log->push_back(HasBeenCancelled() ? "end-cancelled" : "end"); }
    std::vector<std::string>* log;
};

MouseEvent const kPress(PointerEvent::kActionPress, PointF(1, 1), PointF(1, 1),
                        MouseEvent::kButtonLeft);

} // namespace

// A press goes to a mouse filter node first, then to the node under the
// pointer, then to its parent in the parent's coordinates, until one takes it.
TEST(EventDispatchTest, APressGoesToTheFilterThenBubblesUpUntilANodeTakesIt)
{
    std::vector<std::string> log;
    ProbePtr root(new Probe("root", &log));
    ProbePtr child =
        zephtest::AddShown(root.get(), ProbePtr(new Probe("child", &log)), RectF(10, 20, 100, 50));
    zephtest::ActiveTestWindow window(root);
    auto const click = [&](Qt::MouseButton button)
    {
        log.clear();
        QTest::mouseClick(child->UI_GetWidget(), button, Qt::NoModifier, QPoint(5, 6));
    };
    child->takePress = false;
    click(Qt::LeftButton);
    EXPECT_EQ(log, (std::vector<std::string>{"child:press 5,6@child", "root:press 15,26@child"}));
    child->takePress = true;
    click(Qt::RightButton);
    EXPECT_EQ(log, (std::vector<std::string>{"child:press 5,6@child"}));
    EXPECT_EQ(root->target, nullptr) << "no filter, no pre-event";
    {
        UI_NodeManager::AddAndRemoveMouseEventFilterNode filter(UI_NodeManager::Get(), root.get());
        click(Qt::RightButton); // the filter takes right presses
        EXPECT_EQ(root->target, child.get());
        EXPECT_EQ(root->position, PointF(15, 26));
        EXPECT_TRUE(log.empty());
        click(Qt::LeftButton);
        EXPECT_EQ(log, (std::vector<std::string>{"child:press 5,6@child"}))
            << "a press the filter leaves goes on";
    }
}

TEST(EventDispatchTest, FilterNodeSeesTabBeforeFocusMoves)
{
    std::vector<std::string> log;
    ProbePtr root(new Probe("root", &log));
    ProbePtr a =
        zephtest::AddShown(root.get(), ProbePtr(new Probe("a", &log)), RectF(0, 0, 50, 20));
    ProbePtr b =
        zephtest::AddShown(root.get(), ProbePtr(new Probe("b", &log)), RectF(0, 30, 50, 20));
    zephtest::ActiveTestWindow window(root);
    ASSERT_TRUE(a->UI_GainKeyboardFocus(kFocusReasonProgram));
    {
        UI_NodeManager::AddAndRemoveKeyboardEventFilterNode filter(UI_NodeManager::Get(),
                                                                   root.get());
        root->takePre = true;
        QTest::keyClick(QApplication::focusWidget(), Qt::Key_Tab);
        EXPECT_TRUE(a->UI_HasKeyboardFocus()) << "a filter that takes Tab keeps the focus";
        EXPECT_EQ(log, (std::vector<std::string>{"root:pre3@a"})) << "nothing else saw it";
    }
    log.clear();
    // Without the filter, Tab goes up the nodes first, then Qt moves the focus.
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_Tab);
    EXPECT_TRUE(b->UI_HasKeyboardFocus());
    EXPECT_EQ(log, (std::vector<std::string>{"a:key3", "root:key3"}));
}

// Shortcuts ignore the keypad bit but no other; releases and a modifier alone
// are no key down; typed text comes along.
TEST(EventsTest, QtKeysBecomeKeyDownsAndShortcutsIgnoreOnlyTheKeypad)
{
    auto const key =
        [](QEvent::Type type, int qtKey, Qt::KeyboardModifiers mods, QString const& text = {})
    { return KeyboardEventFromQt(QKeyEvent(type, qtKey, mods, text)); };
    KeyboardEvent const enter = key(QEvent::KeyPress, Qt::Key_Enter, Qt::KeypadModifier);
    EXPECT_EQ(enter.GetModKey().Get(), kModifierKeypad);
    EXPECT_TRUE(enter.CompareShortcut(KeyboardCode(KeyboardCode::kKeyEnter), 0));
    EXPECT_FALSE(enter.CompareShortcut(KeyboardCode(KeyboardCode::kKeyReturn), 0));
    EXPECT_FALSE(key(QEvent::KeyPress, Qt::Key_Tab, Qt::ShiftModifier)
                     .CompareShortcut(KeyboardCode(KeyboardCode::kKeyTab), 0));
    EXPECT_FALSE(key(QEvent::KeyRelease, Qt::Key_Tab, Qt::NoModifier).IsActionKeyDown());
    EXPECT_FALSE(key(QEvent::KeyPress, Qt::Key_Shift, Qt::ShiftModifier).IsActionKeyDown());
    EXPECT_EQ(key(QEvent::KeyPress, Qt::Key_A, Qt::NoModifier, QStringLiteral("a")).GetText(),
              zephcore::AsciiToUTF16("a"));
}

// Tab asks each node in turn and a decline passes the focus on; a view that
// takes no focus itself hands it to its first or last shown child, and to
// none while disabled.
TEST(FocusAndMenuTest, TabAndContainersHandTheFocusToTheNodesThatTakeIt)
{
    UI_NodePtr root(new UI_SubView);
    auto a = AddProbe(root.get(), 0);
    auto b = AddProbe(root.get(), 30);
    UI_NodePtr const box =
        zephtest::AddShown(root.get(), UI_NodePtr(new UI_SubView), RectF(0, 60, 200, 100));
    AddProbe(box.get(), 0)->UI_Show(false);
    auto first = AddProbe(box.get(), 30);
    auto last = AddProbe(box.get(), 60);
    zephtest::ActiveTestWindow window(root);
    ASSERT_TRUE(a->UI_GainKeyboardFocus(kFocusReasonProgram));
    b->decline = true;
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_Tab);
    EXPECT_EQ(b->reasons, (std::vector<int>{kFocusReasonAdvance}));
    EXPECT_TRUE(first->UI_HasKeyboardFocus()) << "b declined, so the focus went on";
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_Backtab, Qt::ShiftModifier);
    EXPECT_TRUE(a->UI_HasKeyboardFocus());
    EXPECT_EQ(b->reasons.back(), kFocusReasonAdvanceBackward);

    EXPECT_TRUE(box->UI_GainKeyboardFocus(kFocusReasonAdvance));
    EXPECT_TRUE(first->UI_HasKeyboardFocus());
    EXPECT_TRUE(box->UI_HasKeyboardFocus(true));
    EXPECT_FALSE(box->UI_HasKeyboardFocus(false));
    EXPECT_TRUE(box->UI_GainKeyboardFocus(kFocusReasonAdvanceBackward));
    EXPECT_TRUE(last->UI_HasKeyboardFocus());
    box->UI_SetDisabled(true);
    EXPECT_FALSE(box->UI_GainKeyboardFocus(kFocusReasonProgram));
}

TEST(FocusAndMenuTest, ASidewaysWheelIsInStepsOnItsOwnAxis)
{
    OneProbe one;
    ProbePtr const view = one.view;
    QWidget* w = view->UI_GetWidget();
    auto const turn = [w](QPoint angle)
    {
        QWheelEvent wheel(QPointF(10, 10), w->mapToGlobal(QPointF(10, 10)), QPoint(), angle,
                          Qt::NoButton, Qt::NoModifier, Qt::NoScrollPhase, false);
        QApplication::sendEvent(w, &wheel);
    };
    // (Vertical steps are the script view's wheel test.)
    turn(QPoint(120, 0));
    EXPECT_FLOAT_EQ(view->wheel, -1.0f);
    EXPECT_EQ(view->axis, MouseEvent::kAxisHorizontal);
}

// A dismissed menu, or none, chooses nothing. (Choosing an item by its number
// is the transcript editor's word menu test.)
TEST(FocusAndMenuTest, ADismissedOrMissingContextMenuChoosesNothing)
{
    OneProbe one;
    std::unique_ptr<OSMenu> menu = CreateOSMenu();
    menu->AddItem(AsciiToUTF16("Delete Word"), 5);
    QTimer::singleShot(0,
                       []
                       {
                           QWidget* popup = QApplication::activePopupWidget();
                           ASSERT_NE(popup, nullptr);
                           QTest::keyClick(popup, Qt::Key_Escape);
                       });
    EXPECT_EQ(one.view->UI_DoContextMenu(menu.get(), PointF(5, 5)), 0);
    EXPECT_EQ(one.view->UI_DoContextMenu(nullptr, PointF(5, 5)), 0);
}

TEST(FocusAndMenuTest, UpdateNowPaintsAtOnceAndInvalidateLater)
{
    OneProbe one;
    ProbePtr const view = one.view;
    ASSERT_TRUE(QTest::qWaitForWindowExposed(one.window.host.get()));
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
    ProbePtr view = AddProbe(root.get(), 0);
    zephtest::ActiveTestWindow window(root);
    QPointer<QWidget> widget = view->UI_GetWidget();
    Probe* raw = view.get();
    view->onPress = [raw, root](UI_Node*) { root->ChildRequestRemove(raw); };
    view.reset();

    QTest::mousePress(widget.data(), Qt::LeftButton, Qt::NoModifier, QPoint(5, 5));
    if (widget)
        QTest::mouseRelease(widget.data(), Qt::LeftButton, Qt::NoModifier, QPoint(5, 5));
    EXPECT_EQ(root->ChildCount(), 0u);
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    EXPECT_TRUE(widget.isNull()) << "the widget goes once its event is over";
}

// A new capture or Cancel ends the running one as cancelled, once; a node
// dying during its capture ends it quietly.
TEST(CaptureTest, CancelANewCaptureOrTheNodesDeathEndTheRunningOne)
{
    UI_NodePtr view(new UI_SubView);
    std::vector<std::string> ends;
    boost::intrusive_ptr<DragCapture> first(new DragCapture(view.get(), kPress, &ends));
    UI_NodeManager::Get()->BeginInputCapture(first);
    boost::intrusive_ptr<DragCapture> second(new DragCapture(view.get(), kPress, &ends));
    UI_NodeManager::Get()->BeginInputCapture(second);
    EXPECT_FALSE(first->IsActive());
    EXPECT_EQ(UI_NodeManager::Get()->GetCurrentCapture(), second.get());
    second->Cancel();
    second->Cancel(); // a second cancel does nothing
    EXPECT_EQ(UI_NodeManager::Get()->GetCurrentCapture(), nullptr);
    EXPECT_EQ(ends, (std::vector<std::string>{"end-cancelled", "end-cancelled"}));

    std::vector<std::string> log;
    boost::intrusive_ptr<DragCapture> third(new DragCapture(view.get(), kPress, &log));
    UI_NodeManager::Get()->BeginInputCapture(third);
    view.reset();
    EXPECT_EQ(UI_NodeManager::Get()->GetCurrentCapture(), nullptr);
    EXPECT_TRUE(third->HasBeenCancelled());
    EXPECT_EQ(third->GetNode(), nullptr);
    EXPECT_TRUE(log.empty()) << "no notification reaches a dying node";
}
