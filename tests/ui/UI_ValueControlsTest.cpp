// A control's known/unknown state and the callables it tells; check box,
// popup, hot text, stars, static text, list box and section, driven as a user
// drives them. (Radio buttons, scroll bars, links, section sizes and what a
// user does to bound controls are the dialog, script, form and binding tests'.)

#include "ControlTestWindow.h"

#include "zephui/UI_Checkbox.h"
#include "zephui/UI_ControlView.h"
#include "zephui/UI_HotTextNumber.h"
#include "zephui/UI_ListBox.h"
#include "zephui/UI_Popup.h"
#include "zephui/UI_SectionView.h"
#include "zephui/UI_StarRating.h"
#include "zephui/UI_StaticText.h"

#include "zephcore/QtStrings.h"

#include <QCheckBox>
#include <QComboBox>
#include <QWheelEvent>
#include <QtTest/qtestspontaneevent.h>

using namespace zephui;
using zephcore::AsciiToUTF16;
using zephtest::MessageCounter;
using zephtest::OneControl;

namespace
{

using ProbeControl = UI_InteractiveControlView;

using Holder = boost::shared_ptr<boost::function<void(Message*)>>;

Holder Call(std::function<void(Message*)> f)
{
    return boost::make_shared<boost::function<void(Message*)>>(std::move(f));
}

} // namespace

// A holder emptied during the walk, by a callable before it or by the side
// that registered it, is skipped; interactive changes reach their own holders.
TEST(ControlViewTest, ChangeMessageReachesEveryLiveHolderInOrder)
{
    boost::intrusive_ptr<ProbeControl> control(new ProbeControl);
    std::vector<std::string> calls;
    UI_ControlView* seenControl = nullptr;
    Holder second = Call([&](Message*) { calls.push_back("second"); });
    Holder first = Call(
        [&](Message* m)
        {
            calls.push_back("first");
            seenControl = static_cast<UI_ControlMessage*>(m)->GetControl();
        });
    Holder emptier = Call(
        [&](Message*)
        {
            calls.push_back("emptier");
            *second = boost::function<void(Message*)>();
        });
    control->NotifyWhenChanged(first);
    control->NotifyWhenChanged(emptier);
    control->NotifyWhenChanged(second);
    control->NotifyWhenChangedInteractively(Call([&](Message*) { calls.push_back("live"); }));

    control->SendValueChangedMessage();
    EXPECT_EQ(calls, (std::vector<std::string>{"first", "emptier"}));
    EXPECT_EQ(seenControl, control.get());
    calls.clear();
    *first = boost::function<void(Message*)>();
    control->SendInteractiveValueChangedMessage();
    control->SendValueChangedMessage();
    EXPECT_EQ(calls, (std::vector<std::string>{"live", "emptier"}));
}

TEST(ControlViewTest, CallableMayDropTheLastReferenceToItsControl)
{
    boost::intrusive_ptr<ProbeControl> control(new ProbeControl);
    int after = 0;
    control->NotifyWhenChanged(Call([&](Message*) { control.reset(); }));
    control->NotifyWhenChanged(Call([&](Message*) { ++after; }));
    ProbeControl* raw = control.get();
    // The sender keeps itself alive while it sends, as a control does inside a NodeEventScope.
    raw->AddRef();
    raw->SendValueChangedMessage();
    EXPECT_EQ(after, 1);
    EXPECT_FALSE(control);
    raw->Release();
}

TEST(CheckboxTest, ClickTurnsMixedOnAndReportsOnce)
{
    OneControl<UI_Checkbox> box(new UI_Checkbox(AsciiToUTF16("Box")));
    auto* widget = qobject_cast<QCheckBox*>(box.control->UI_GetWidget());
    box.control->SetValueUnknown();
    EXPECT_EQ(widget->checkState(), Qt::PartiallyChecked);

    widget->click();
    EXPECT_EQ(box.changed.count, 1);
    EXPECT_TRUE(box.control->IsChecked());
    EXPECT_FALSE(box.control->IsValueUnknown());
    widget->click();
    EXPECT_EQ(box.control->GetValue(), kCheckboxOff);
    box.control->SetValue(kCheckboxOn); // by program: no message
    EXPECT_EQ(box.changed.count, 2);
    EXPECT_EQ(widget->checkState(), Qt::Checked);
}

// "One", a separator, "Two" and a disabled "Three"; "One" chosen.
struct PopupFixture : testing::Test, OneControl<UI_Popup>
{
    PopupFixture() : OneControl<UI_Popup>(new UI_Popup(0, 0))
    {
        for (char const* item : {"One", "-", "Two", "Three"})
            control->AddItem(AsciiToUTF16(item));
        control->DisableItem(3);
        control->SetValue(0);
    }
    QComboBox* combo = qobject_cast<QComboBox*>(control->UI_GetWidget());
};

TEST_F(PopupFixture, KeyboardChoiceSkipsSeparatorAndDisabledItems)
{
    ASSERT_TRUE(window.ShowActive());
    control->UI_GainKeyboardFocus(kFocusReasonProgram);
    QTest::keyClick(combo, Qt::Key_Down);
    EXPECT_EQ(control->GetValueString(), AsciiToUTF16("Two"));
    QTest::keyClick(combo, Qt::Key_Down); // "Three" is disabled: nothing to go to
    EXPECT_EQ(control->GetValue(), 2);
    EXPECT_EQ(changed.count, 1);
}

TEST_F(PopupFixture, ChoosingTheSameItemNotifiesOnlyWithAlwaysNotify)
{
    control->ChooseItem(2);
    control->ChooseItem(2);
    EXPECT_EQ(changed.count, 1);
    control->SetAlwaysNotify(true);
    control->ChooseItem(2);
    EXPECT_EQ(changed.count, 2);
    control->ChooseItem(3); // disabled
    control->ChooseItem(1); // separator
    EXPECT_EQ(changed.count, 2);
    EXPECT_EQ(control->GetValue(), 2);
}

TEST_F(PopupFixture, ValueStringsUnknownStateAndItemRemovalTellNobody)
{
    // (A raw value that is no item is driven through the bound popup's tests.)
    control->SetValueString(AsciiToUTF16("Two"), true);
    EXPECT_EQ(control->GetValue(), 2);
    control->SetValueUnknown();
    EXPECT_TRUE(control->GetValueString().empty());
    control->SetValue(2);
    EXPECT_FALSE(control->IsValueUnknown());
    control->RemoveItem(0);
    EXPECT_EQ(control->GetValue(), 1) << "the chosen item keeps its text";
    EXPECT_EQ(changed.count, 0);
}

TEST_F(PopupFixture, WheelWithoutFocusChangesNothingAndPreShowRuns)
{
    QWheelEvent wheel(QPointF(20, 10), combo->mapToGlobal(QPointF(20, 10)), QPoint(),
                      QPoint(0, -120), Qt::NoButton, Qt::NoModifier, Qt::NoScrollPhase, false);
    QSpontaneKeyEvent::setSpontaneous(&wheel);
    QApplication::instance()->notify(combo, &wheel); // as from the window system
    EXPECT_EQ(control->GetValue(), 0) << "the wheel goes on to what scrolls around the popup";

    control->SetPreShowMenuCallback([this] { control->AddItem(AsciiToUTF16("Late")); });
    ASSERT_TRUE(window.ShowActive());
    combo->showPopup();
    combo->hidePopup();
    EXPECT_EQ(combo->count(), 5);
    EXPECT_EQ(changed.count, 0);
}

// A number from 0 to 15 in steps of 0.5, at 10; the focus on another field,
// as a hot text is dragged while unfocused.
struct HotTextFixture : testing::Test, OneControl<UI_HotTextNumber>
{
    HotTextFixture() : OneControl<UI_HotTextNumber>(new UI_HotTextNumber, RectF(10, 10, 80, 21)) {}
    UI_HotTextNumberPtr other =
        window.Add(UI_HotTextNumberPtr(new UI_HotTextNumber), RectF(10, 40, 80, 21));
    MessageCounter live;
    QWidget* widget = control->UI_GetWidget();

    void SetUp() override
    {
        control->SetIncrement(0.5);
        control->SetMinValue(0.0);
        control->SetMaxValue(15.0);
        control->SetDecimalPlaces(1);
        control->SetValue(10.0);
        control->NotifyWhenChangedInteractively(live.callback);
        ASSERT_TRUE(window.ShowActive());
        ASSERT_TRUE(other->UI_GainKeyboardFocus(kFocusReasonProgram));
    }
    void Drag(int fromX, int toX)
    {
        QTest::mousePress(widget, Qt::LeftButton, Qt::NoModifier, QPoint(fromX, 10));
        QTest::mouseMove(widget, QPoint((fromX + toX) / 2, 10));
        QTest::mouseMove(widget, QPoint(toX, 10));
        QTest::mouseRelease(widget, Qt::LeftButton, Qt::NoModifier, QPoint(toX, 10));
    }
};

TEST_F(HotTextFixture, DragChangesByIncrementWithinLimits)
{
    // As status updates do: out of the focus chain and back in.
    control->SetWantsKeyboardFocus(false);
    control->SetWantsKeyboardFocus(true);
    Drag(20, 26); // 6 pixels: 3.0 more
    EXPECT_EQ(control->GetDisplayedText(), AsciiToUTF16("13.0"));
    EXPECT_EQ(changed.count, 1);
    EXPECT_GE(live.count, 1);
    Drag(20, 70); // far past the maximum
    EXPECT_DOUBLE_EQ(control->GetValue(), 15.0);
    Drag(70, 2); // far below the minimum
    EXPECT_DOUBLE_EQ(control->GetValue(), 0.0);
    EXPECT_FALSE(widget->hasFocus()) << "a drag does not start typing";
}

// (An empty field reading NaN is driven through the bound number's tests.)
TEST_F(HotTextFixture, ClickStartsTypingWithinTheLimits)
{
    QTest::mouseClick(widget, Qt::LeftButton, Qt::NoModifier, QPoint(20, 10));
    ASSERT_TRUE(widget->hasFocus());
    auto* line = qobject_cast<QLineEdit*>(widget);
    line->selectAll();
    QTest::keyClicks(line, "99");
    QTest::keyClick(line, Qt::Key_Return);
    EXPECT_DOUBLE_EQ(control->GetValue(), 15.0) << "typed numbers are kept within the limits too";
    EXPECT_EQ(changed.count, 1);
    EXPECT_EQ(live.count, 0) << "typing is not a live change";
}

TEST_F(HotTextFixture, UnknownStateShowsItsTextAndDragLeavesIt)
{
    control->SetUnknownStateText(AsciiToUTF16("--"));
    control->SetValueUnknown();
    EXPECT_EQ(qobject_cast<QLineEdit*>(widget)->text(), QStringLiteral("--"));
    Drag(20, 24);
    EXPECT_FALSE(control->IsValueUnknown());
    EXPECT_DOUBLE_EQ(control->GetValue(), 2.0) << "an unknown value drags from 0";
}

// (Clicks on the stars are driven through the bound rating's tests.)
TEST(StarRatingTest, KeysSetTheStarsWithinFive)
{
    OneControl<UI_StarRating> stars(new UI_StarRating, RectF(10, 10, 100, 19));
    ASSERT_TRUE(stars.window.ShowActive());
    QWidget* widget = stars.control->UI_GetWidget();
    QTest::keyClick(widget, Qt::Key_5);
    EXPECT_DOUBLE_EQ(stars.control->GetValue(), 5.0);
    QTest::keyClick(widget, Qt::Key_Right); // already at the top
    EXPECT_EQ(stars.changed.count, 1);
    stars.control->SetValue(7.0);
    EXPECT_DOUBLE_EQ(stars.control->GetValue(), 5.0);
}

// (Wrapping at a narrower width is the form's read-only text test.)
TEST(StaticTextTest, AMiddleTruncationKeepsBothEndsWithAnEllipsis)
{
    UI_StaticTextPtr text(
        new UI_StaticText(AsciiToUTF16("http://ns.example.org/a/rather/long/path")));
    text->UI_SetLocalRectF(RectF(0, 0, 90, 19));
    EXPECT_EQ(text->GetDisplayedText(), text->GetValue()) << "no truncation by default";
    text->SetTextTruncation(kTruncationMiddle);
    zephcore::UTF16String const middle = text->GetDisplayedText();
    EXPECT_LT(middle.size(), text->GetValue().size());
    EXPECT_NE(middle.find(u'\u2026'), zephcore::UTF16String::npos);
    EXPECT_EQ(middle.substr(0, 4), AsciiToUTF16("http"));
}

// (Clicks on the items are the metadata dialog's page list tests.)
TEST(ListBoxTest, KeysSelectAndTellTheCallbackProgramSelectionDoesNot)
{
    zephtest::ControlTestWindow window;
    UI_ListBoxPtr list = window.Add(UI_ListBoxPtr(new UI_ListBox), RectF(10, 10, 200, 80));
    for (char const* word : {"alpha", "beta", "gamma"})
        list->AppendItem(AsciiToUTF16(word));
    MessageCounter selected;
    list->SetItemSelectedCallback(selected.callback);
    ASSERT_TRUE(window.ShowActive());

    list->SelectItem(0, true);
    EXPECT_EQ(selected.count, 0);
    list->SelectItem(2, true, true); // as a user's choice
    EXPECT_EQ(selected.count, 1);
    list->SelectItem(1, true);
    QTest::keyClick(list->UI_GetWidget(), Qt::Key_Down);
    EXPECT_EQ(list->GetSelectedItems(), std::set<int>({2}));
    EXPECT_EQ(selected.count, 2);
    list->RemoveItem(0);
    EXPECT_EQ(list->GetItem(1)->GetItemLabel()->GetValue(), AsciiToUTF16("gamma"));
    EXPECT_EQ(list->GetSelectedItems(), std::set<int>({1}));
    list->ClearItems();
    EXPECT_TRUE(list->GetSelectedItems().empty());
}

// (A click on the header, which opens and closes it, is the splitter's test.)
TEST(SectionViewTest, SpaceTogglesAClickBelowTheHeaderDoesNotAndCallbacksRunOncePerChange)
{
    zephtest::ControlTestWindow window;
    UI_SectionViewPtr section =
        window.Add(UI_SectionViewPtr(new UI_SectionView(zephcore::AsciiToUTF16("Camera"), true)),
                   RectF(10, 10, 300, 120));
    std::vector<bool> seen; // the state each call finds
    section->AddOpenedStateChangedCallback([&] { seen.push_back(section->GetOpened()); });
    section->SetDisclosureTriangleWantsFocus(true);
    ASSERT_TRUE(window.ShowActive());
    QWidget* widget = section->UI_GetWidget();
    QTest::mouseClick(widget, Qt::LeftButton, Qt::NoModifier, QPoint(50, 60));
    section->UI_GainKeyboardFocus(kFocusReasonProgram);
    QTest::keyClick(widget, Qt::Key_Space);
    EXPECT_FALSE(section->GetOpened());
    EXPECT_FALSE(section->GetContentView()->UI_IsShown());
    section->SetOpened(false); // no change, no call
    EXPECT_EQ(seen, std::vector<bool>{false}) << "one call, after the state changed";
}
