// Check box, popup, hot-text number, star rating, static text, list box,
// radio group and scroll bar, driven as a user drives them.

#include "ControlTestWindow.h"

#include "zephui/UI_Checkbox.h"
#include "zephui/UI_HotTextNumber.h"
#include "zephui/UI_ListBox.h"
#include "zephui/UI_Popup.h"
#include "zephui/UI_RadioGroup.h"
#include "zephui/UI_ScrollBar.h"
#include "zephui/UI_StarRating.h"
#include "zephui/UI_StaticText.h"

#include "zephcore/QtStrings.h"

#include <QCheckBox>
#include <QComboBox>
#include <QLineEdit>
#include <QWheelEvent>
#include <QtTest/qtestspontaneevent.h>

#include <gtest/gtest.h>

#include <cmath>

using namespace zephui;
using zephcore::AsciiToUTF16;
using zephtest::MessageCounter;

TEST(CheckboxTest, ClickTurnsMixedOnAndReportsOnce)
{
    zephtest::ControlTestWindow window;
    UI_CheckboxPtr box =
        window.Add(UI_CheckboxPtr(new UI_Checkbox(AsciiToUTF16("Box"))), RectF(10, 10, 120, 19));
    MessageCounter changed;
    box->NotifyWhenChanged(changed.callback);
    auto* widget = qobject_cast<QCheckBox*>(box->UI_GetWidget());
    ASSERT_TRUE(widget);

    box->SetValueUnknown();
    EXPECT_TRUE(box->IsValueUnknown());
    EXPECT_FALSE(box->IsChecked());
    EXPECT_EQ(box->GetValue(), kCheckboxMixed);
    EXPECT_EQ(widget->checkState(), Qt::PartiallyChecked);

    widget->click();
    EXPECT_EQ(changed.count, 1);
    EXPECT_EQ(changed.lastControl, box.get());
    EXPECT_TRUE(box->IsChecked());
    EXPECT_FALSE(box->IsValueUnknown());

    widget->click();
    EXPECT_EQ(box->GetValue(), kCheckboxOff);
    box->SetValue(kCheckboxOn); // by program: no message
    EXPECT_EQ(changed.count, 2);
    EXPECT_EQ(widget->checkState(), Qt::Checked);
}

struct PopupFixture : testing::Test
{
    zephtest::ControlTestWindow window;
    UI_PopupPtr popup = window.Add(UI_PopupPtr(new UI_Popup(0, 0)), RectF(10, 10, 150, 22));
    MessageCounter changed;
    QComboBox* combo = nullptr;

    void SetUp() override
    {
        for (char const* item : {"One", "-", "Two", "Three"})
            popup->AddItem(AsciiToUTF16(item));
        popup->DisableItem(3);
        popup->SetValue(0);
        popup->NotifyWhenChanged(changed.callback);
        combo = qobject_cast<QComboBox*>(popup->UI_GetWidget());
        ASSERT_TRUE(combo);
    }
};

TEST_F(PopupFixture, KeyboardChoiceSkipsSeparatorAndDisabledItems)
{
    ASSERT_TRUE(window.ShowActive());
    popup->UI_GainKeyboardFocus(kFocusReasonProgram);
    QTest::keyClick(combo, Qt::Key_Down);
    EXPECT_EQ(popup->GetValue(), 2);
    EXPECT_EQ(popup->GetValueString(), AsciiToUTF16("Two"));
    EXPECT_EQ(changed.count, 1);

    QTest::keyClick(combo, Qt::Key_Down); // "Three" is disabled: nothing to go to
    EXPECT_EQ(popup->GetValue(), 2);
    EXPECT_EQ(changed.count, 1);
    EXPECT_TRUE(popup->IsSeparator(1));
    EXPECT_TRUE(popup->IsItemDisabled(3));
}

TEST_F(PopupFixture, ChoosingTheSameItemNotifiesOnlyWithAlwaysNotify)
{
    popup->ChooseItem(2);
    popup->ChooseItem(2);
    EXPECT_EQ(changed.count, 1);
    popup->SetAlwaysNotify(true);
    popup->ChooseItem(2);
    EXPECT_EQ(changed.count, 2);
    popup->ChooseItem(3); // disabled
    popup->ChooseItem(1); // separator
    EXPECT_EQ(changed.count, 2);
    EXPECT_EQ(popup->GetValue(), 2);
}

TEST_F(PopupFixture, ValueStringsUnknownStateAndItemRemoval)
{
    popup->SetValueString(AsciiToUTF16("Two"), true);
    EXPECT_EQ(popup->GetValue(), 2);
    popup->SetValueString(AsciiToUTF16("Raw value"), true);
    EXPECT_EQ(popup->GetValue(), -1) << "a text that is no item";
    EXPECT_EQ(popup->GetValueString(), AsciiToUTF16("Raw value"));
    EXPECT_EQ(combo->currentText(), QString()) << "a list-only popup shows it as its label";
    EXPECT_EQ(combo->placeholderText(), QStringLiteral("Raw value"));

    popup->SetValueUnknown();
    EXPECT_EQ(popup->GetValue(), -1);
    EXPECT_TRUE(popup->GetValueString().empty());
    popup->SetValue(2);
    EXPECT_FALSE(popup->IsValueUnknown());
    popup->RemoveItem(0);
    EXPECT_EQ(popup->GetValue(), 1) << "the chosen item keeps its text";
    popup->DeleteAllItems();
    EXPECT_EQ(popup->CountItems(), 0);
    EXPECT_EQ(combo->count(), 0);
    EXPECT_EQ(changed.count, 0);
}

TEST_F(PopupFixture, EditablePopupCommitsTypedTextOnce)
{
    popup->SetPopupType(UI_Popup::kPopupEditable);
    popup->SetEmptyStringsAllowed(true);
    ASSERT_TRUE(window.ShowActive());
    popup->UI_GainKeyboardFocus(kFocusReasonProgram);
    ASSERT_TRUE(combo->lineEdit());
    combo->lineEdit()->selectAll();
    QTest::keyClicks(combo->lineEdit(), "Custom");
    QTest::keyClick(combo->lineEdit(), Qt::Key_Return);
    EXPECT_EQ(changed.count, 1);
    EXPECT_EQ(popup->GetValue(), -1);
    EXPECT_EQ(popup->GetValueString(), AsciiToUTF16("Custom"));
    QTest::keyClick(combo->lineEdit(), Qt::Key_Return);
    EXPECT_EQ(changed.count, 1);
    EXPECT_EQ(combo->count(), 4) << "typed text is not added as an item";
}

TEST_F(PopupFixture, WheelWithoutFocusChangesNothingAndPreShowRuns)
{
    QWheelEvent wheel(QPointF(20, 10), combo->mapToGlobal(QPointF(20, 10)), QPoint(),
                      QPoint(0, -120), Qt::NoButton, Qt::NoModifier, Qt::NoScrollPhase, false);
    QSpontaneKeyEvent::setSpontaneous(&wheel);
    QApplication::instance()->notify(combo, &wheel); // as from the window system
    EXPECT_EQ(popup->GetValue(), 0) << "the wheel goes on to what scrolls around the popup";
    EXPECT_EQ(changed.count, 0);

    int shown = 0;
    popup->SetPreShowMenuCallback(
        [&shown, this]
        {
            ++shown;
            popup->AddItem(AsciiToUTF16("Late"));
        });
    ASSERT_TRUE(window.ShowActive());
    combo->showPopup();
    combo->hidePopup();
    EXPECT_EQ(shown, 1);
    EXPECT_EQ(combo->count(), 5);
}

struct HotTextFixture : testing::Test
{
    zephtest::ControlTestWindow window;
    UI_HotTextNumberPtr number =
        window.Add(UI_HotTextNumberPtr(new UI_HotTextNumber), RectF(10, 10, 80, 21));
    UI_HotTextNumberPtr other =
        window.Add(UI_HotTextNumberPtr(new UI_HotTextNumber), RectF(10, 40, 80, 21));
    MessageCounter changed;
    MessageCounter live;
    QWidget* widget = nullptr;

    void SetUp() override
    {
        number->SetIncrement(0.5);
        number->SetMinValue(0.0);
        number->SetMaxValue(15.0);
        number->SetDecimalPlaces(1);
        number->SetValue(10.0);
        number->NotifyWhenChanged(changed.callback);
        number->NotifyWhenChangedInteractively(live.callback);
        ASSERT_TRUE(window.ShowActive());
        // The window gives its first field the focus; a hot text is dragged while unfocused.
        ASSERT_TRUE(other->UI_GainKeyboardFocus(kFocusReasonProgram));
        widget = number->UI_GetWidget();
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
    number->SetWantsKeyboardFocus(false);
    number->SetWantsKeyboardFocus(true);
    Drag(20, 26); // 6 pixels: 3.0 more
    EXPECT_DOUBLE_EQ(number->GetValue(), 13.0);
    EXPECT_EQ(changed.count, 1);
    EXPECT_GE(live.count, 1);
    EXPECT_EQ(number->GetDisplayedText(), AsciiToUTF16("13.0"));

    Drag(20, 70); // far past the maximum
    EXPECT_DOUBLE_EQ(number->GetValue(), 15.0);
    Drag(70, 2); // far below the minimum
    EXPECT_DOUBLE_EQ(number->GetValue(), 0.0);
    EXPECT_EQ(changed.count, 3);
    EXPECT_FALSE(widget->hasFocus()) << "a drag does not start typing";
}

TEST_F(HotTextFixture, ClickStartsTypingAndEmptyFieldReadsNaN)
{
    number->SetAllowEmptyNumberField(true);
    QTest::mouseClick(widget, Qt::LeftButton, Qt::NoModifier, QPoint(20, 10));
    ASSERT_TRUE(widget->hasFocus());
    auto* line = qobject_cast<QLineEdit*>(widget);
    line->selectAll();
    QTest::keyClicks(line, "99");
    QTest::keyClick(line, Qt::Key_Return);
    EXPECT_DOUBLE_EQ(number->GetValue(), 15.0) << "typed numbers are kept within the limits too";
    EXPECT_EQ(changed.count, 1);

    line->selectAll();
    QTest::keyClick(line, Qt::Key_Backspace);
    other->UI_GainKeyboardFocus(kFocusReasonProgram);
    EXPECT_TRUE(std::isnan(number->GetValue()));
    EXPECT_EQ(changed.count, 2);
    EXPECT_EQ(live.count, 0) << "typing is not a live change";
}

TEST_F(HotTextFixture, UnknownStateShowsItsTextAndDragLeavesIt)
{
    number->SetUnknownStateText(AsciiToUTF16("--"));
    number->SetValueUnknown();
    EXPECT_EQ(number->GetDisplayedText(), AsciiToUTF16("--"));
    EXPECT_EQ(qobject_cast<QLineEdit*>(widget)->text(), QStringLiteral("--"));
    Drag(20, 24);
    EXPECT_FALSE(number->IsValueUnknown());
    EXPECT_DOUBLE_EQ(number->GetValue(), 2.0) << "an unknown value drags from 0";
}

TEST(StarRatingTest, ClickSetsStarsAndClickOnTheSameStarClears)
{
    zephtest::ControlTestWindow window;
    UI_StarRatingPtr stars =
        window.Add(UI_StarRatingPtr(new UI_StarRating), RectF(10, 10, 100, 19));
    MessageCounter changed;
    stars->NotifyWhenChanged(changed.callback);
    ASSERT_TRUE(window.ShowActive());
    QWidget* widget = stars->UI_GetWidget();
    auto centreOf = [&](int index)
    { return QPoint(int(stars->GetStarLeft(index) + stars->GetStarSide() / 2), 9); };

    QTest::mouseClick(widget, Qt::LeftButton, Qt::NoModifier, centreOf(2));
    EXPECT_DOUBLE_EQ(stars->GetValue(), 3.0);
    EXPECT_EQ(changed.count, 1);
    QTest::mouseClick(widget, Qt::LeftButton, Qt::NoModifier, centreOf(2));
    EXPECT_DOUBLE_EQ(stars->GetValue(), 0.0);
    EXPECT_EQ(changed.count, 2);

    QTest::keyClick(widget, Qt::Key_5);
    EXPECT_DOUBLE_EQ(stars->GetValue(), 5.0);
    QTest::keyClick(widget, Qt::Key_Right); // already at the top
    EXPECT_EQ(changed.count, 3);
    stars->SetValue(7.0);
    EXPECT_DOUBLE_EQ(stars->GetValue(), 5.0);
}

TEST(StarRatingTest, SizeFollowsTheHeight)
{
    UI_StarRatingPtr stars(new UI_StarRating);
    for (auto const& [height, size] : {std::pair(19.0f, UI_StarRating::kStarSizeSmall),
                                       std::pair(25.0f, UI_StarRating::kStarSizeMedium),
                                       std::pair(31.0f, UI_StarRating::kStarSizeLarge)})
    {
        stars->UI_SetLocalRectF(RectF(0, 0, 0, height));
        EXPECT_EQ(stars->GetStarSize(), size) << height;
    }
    EXPECT_GT(stars->GetStarSide(), 20.0f);
}

TEST(StaticTextTest, TruncationModesAndWrappedMeasure)
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
    text->SetTextTruncation(kTruncationClip);
    EXPECT_EQ(text->GetDisplayedText(), text->GetValue())
        << "clipping cuts at the edge, not in the text";

    text->SetValue(AsciiToUTF16("several words that will not fit on one line of this width"));
    UI_TextLayout const narrow = text->GetTextLayout(80.0f);
    UI_TextLayout const wide = text->GetTextLayout(2000.0f);
    EXPECT_TRUE(narrow.GetIsMultiline());
    EXPECT_FALSE(wide.GetIsMultiline());
    EXPECT_GT(narrow.GetInitialSize().y, 2.5f * wide.GetInitialSize().y);
    EXPECT_LE(narrow.GetInitialSize().x, 80.0f);
    text->SetCustomFontSize(20.0f);
    EXPECT_FLOAT_EQ(text->GetFontSize(), 20.0f);
    EXPECT_GT(text->GetTextLayout(2000.0f).GetInitialSize().y, wide.GetInitialSize().y);
}

TEST(StaticTextTest, AClickTellsTheListenersAsALinkWould)
{
    zephtest::ControlTestWindow window;
    UI_StaticTextPtr link =
        window.Add(UI_StaticTextPtr(new UI_StaticText(AsciiToUTF16("https://example.org"))),
                   RectF(10, 10, 200, 19));
    MessageCounter clicked;
    link->NotifyWhenChanged(clicked.callback);
    QTest::mouseClick(link->UI_GetWidget(), Qt::LeftButton, Qt::NoModifier, QPoint(20, 8));
    EXPECT_EQ(clicked.count, 1);
    EXPECT_EQ(clicked.lastControl, link.get());
}

TEST(ListBoxTest, ClickSelectsAndTellsTheCallbackProgramSelectionDoesNot)
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
    selected.count = 0;
    QWidget* second = list->GetItem(1)->UI_GetWidget();
    QTest::mouseClick(second, Qt::LeftButton, Qt::NoModifier, QPoint(20, 8));
    EXPECT_EQ(selected.count, 1);
    EXPECT_EQ(list->GetSelectedItems(), std::set<int>({1}));
    QTest::keyClick(list->UI_GetWidget(), Qt::Key_Down);
    EXPECT_EQ(list->GetSelectedItems(), std::set<int>({2}));
    EXPECT_EQ(selected.count, 2);

    list->GetItem(2)->GetItemLabel()->SetValue(AsciiToUTF16("GAMMA"));
    list->RemoveItem(0);
    EXPECT_EQ(list->CountItems(), 2);
    EXPECT_EQ(list->GetItem(1)->GetItemLabel()->GetValue(), AsciiToUTF16("GAMMA"));
    EXPECT_EQ(list->GetSelectedItems(), std::set<int>({1}));
    list->ClearItems();
    EXPECT_TRUE(list->GetSelectedItems().empty());
    EXPECT_FALSE(list->GetItem(0));
}

TEST(RadioGroupTest, OneButtonOnAndIndexFollowsClicks)
{
    zephtest::ControlTestWindow window;
    UI_RadioGroupPtr group =
        window.Add(UI_RadioGroupPtr(new UI_RadioGroup), RectF(10, 10, 200, 60));
    for (char const* label : {"Keep", "Replace", "Append"})
        group->AddButton(AsciiToUTF16(label));
    MessageCounter changed;
    group->NotifyWhenChanged(changed.callback);
    group->SetIndex(0);
    EXPECT_EQ(group->GetIndex(), 0);

    group->GetButton(2)->Click();
    EXPECT_EQ(group->GetIndex(), 2);
    EXPECT_EQ(group->GetButton(0)->GetValue(), 0);
    EXPECT_EQ(changed.count, 1);
    group->GetButton(2)->Click();
    EXPECT_EQ(changed.count, 1) << "the button that is on, clicked again, changes nothing";
    group->SetIndex(-1);
    EXPECT_EQ(group->GetIndex(), -1);
}

TEST(ScrollBarTest, ValueStaysInExtentAndScrollingNotifies)
{
    UI_ScrollBarPtr bar(new UI_ScrollBar(UI_ScrollBar::kScrollBarVertical));
    MessageCounter changed;
    bar->NotifyWhenChanged(changed.callback);
    bar->SetExtent({0.0f, 1000.0f});
    bar->SetValue({900.0f, 1100.0f});
    EXPECT_EQ(bar->GetValue(), UI_ScrollBar::Range(800.0f, 1000.0f))
        << "kept inside, with its span";
    EXPECT_TRUE(bar->IsScrollable());
    EXPECT_FLOAT_EQ(bar->GetValueRange(), 200.0f);

    bar->DoScroll(false, true, 1.0f);
    EXPECT_LT(bar->GetValue().first, 800.0f);
    EXPECT_EQ(changed.count, 1);
    bar->SetValue({0.0f, 200.0f});
    bar->DoScroll(false, false, 3.0f); // already at the top
    EXPECT_EQ(changed.count, 1);
    bar->SetExtent({0.0f, 100.0f});
    EXPECT_FALSE(bar->IsScrollable());
}
