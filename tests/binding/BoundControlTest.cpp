// Edits both ways through real controls on real providers: what the user does
// reaches the packet, what changes there reaches every bound control.

#include "BindingTestSupport.h"

#include "zephmetadataui/ControlFactory.h"
#include "zephmetadataui/InlineControlFactory.h"

#include "contracts/Toolkit.h"

#include <zephmetadata/MultiObjectProvider.h>
#include <zephui/NodeHostWidget.h>

#include <QLineEdit>
#include <QTest>

#include <boost/make_shared.hpp>

#include <gtest/gtest.h>

#include <functional>
#include <map>
#include <tuple>
#include <vector>

using namespace zephmetadataui;
using namespace bindingtest;
using Providers = std::vector<boost::shared_ptr<zephmetadata::MetaDataProvider>>;

namespace
{

void TypeAndEnter(QLineEdit* line, char const* text)
{
    ASSERT_NE(nullptr, line);
    line->selectAll();
    QTest::keyClick(line, Qt::Key_Delete);
    QTest::keyClicks(line, QString::fromUtf8(text));
    QTest::keyClick(line, Qt::Key_Return);
}

// The line edit a user types into: the control's own, or the one inside it.
QLineEdit* LineIn(Control& control)
{
    QWidget* const widget = control.view->UI_GetWidget();
    auto* const line = qobject_cast<QLineEdit*>(widget);
    return line ? line : widget->findChild<QLineEdit*>();
}

void ClickBox(Control& control)
{
    QWidget* const box = control.view->UI_GetWidget();
    box->resize(100, 20);
    QTest::mouseClick(box, Qt::LeftButton, {}, QPoint(8, 10));
}

void ClickFifthStar(Control& control)
{
    auto* const stars = dynamic_cast<UI_StarRating*>(control.view.get());
    ASSERT_NE(nullptr, stars);
    stars->UI_SetLocalRectF(RectF(0, 0, 120, 19));
    float const fifth = stars->GetStarLeft(4) + stars->GetStarSide() / 2;
    QTest::mouseClick(stars->UI_GetWidget(), Qt::LeftButton, {}, QPoint(int(fifth), 9));
}

} // namespace

TEST(BoundControlTest, WhatTheUserDoesToEachKindOfControlReachesThePacketOnlyWhenChanged)
{
    // One thing a user does to the control of a value, what the packet holds
    // and the control shows afterwards, and whether the packet was written
    // (its listeners woken). Rows on one value act on one control.
    using Act = std::function<void(Control&)>;
    char const *const march = "2011-03-04T09:15", *const marchShown = "2011-03-04 09:15";
    auto const type = [](char const* text)
    { return Act([text](Control& control) { TypeAndEnter(LineIn(control), text); }); };
    Act const enter = [](Control& control) { QTest::keyClick(LineIn(control), Qt::Key_Return); };
    auto const choose = [](int index)
    { return Act([index](Control& c) { dynamic_cast<UI_Popup&>(*c.view).ChooseItem(index); }); };
    std::vector<std::tuple<char const*, char const*, Act, char const*, char const*, bool>> const
        edits{
            {kXMP, "Label", type("Blue"), "Blue", "Blue", true},
            {kXMP, "Label", enter, "Blue", "Blue", false},
            {kXMP, "Label", type(""), "<absent>", "", true}, // a cleared field removes the property
            {kCRS, "HasCrop", ClickBox, "False", "unchecked", true},
            {kCRS, "HasCrop", ClickBox, "True", "checked", true},
            // Numbers on integer paths are truncated toward zero.
            {kCRS, "Tint", type("3.9"), "3", "3.000000", true},
            {kCRS, "Tint", type("-3.9"), "-3", "-3.000000", true},
            {kCRS, "Exposure2012", type("3.9"), "3.9", "3.900000", true},
            {kCRS, "Exposure2012", type(""), "<absent>", "nan", true},
            // The same star again clears the rating.
            {kXMP, "Rating", ClickFifthStar, "5", "5.000000", true},
            {kXMP, "Rating", ClickFifthStar, "<absent>", "0.000000", true},
            // A popup writes the choice's value, not its label; an open choice
            // takes typed text as it is.
            {kTIFF, "Orientation", choose(2), "3", "Rotated 180°", true},
            {kCRS, "ToneCurveName", type("My Curve"), "My Curve", "My Curve", true},
            // A bad date leaves the stored one, shown again.
            {kXMP, "CreateDate", type("2011/03/04 09:15"), march, marchShown, true},
            {kXMP, "CreateDate", type("the fourth of March"), march, marchShown, false},
            {kXMP, "CreateDate", type(""), "<absent>", "", true},
            {kXMP, "BaseURL", type("https://example.org/keeper"), "https://example.org/keeper",
             "https://example.org/keeper", true},
            {kXMP, "BaseURL", type(""), "<absent>", "", true},
        };
    auto const provider = MakeProvider(EveryKindDescription() + "<crs:Tint>10</crs:Tint>");
    int changes = 0;
    auto const listener = boost::make_shared<boost::function<void(__XMPMeta__*)>>(
        [&changes](__XMPMeta__*) { ++changes; });
    provider->NotifyWhenMetaDataChanged(listener);
    std::map<std::string, boost::shared_ptr<Control>> controls;
    for (auto const& [ns, name, act, stored, shown, writes] : edits)
    {
        SCOPED_TRACE(std::string(name) + " to " + stored);
        Value const value = V(provider, ns, name);
        boost::shared_ptr<Control>& control = controls[name];
        if (!control)
            control = InlineControlFactory(value, nullptr);
        ASSERT_TRUE(control);
        int const before = changes;
        act(*control);
        EXPECT_EQ(stored, Read(value));
        EXPECT_EQ(shown, Shown(control));
        EXPECT_EQ(writes ? before + 1 : before, changes);
    }
    listener->clear();
}

TEST(BoundControlTest, ChangesReachEveryBoundControlButNoneReachesADestroyedOne)
{
    auto const provider = MakeProvider(EveryKindDescription());
    Value const label = V(provider, kXMP, "Label");
    std::vector<std::string> seen; // the value each call of the callback finds
    MessageCallback const callback = boost::make_shared<boost::function<void(Message*)>>(
        [&](Message*) { seen.push_back(Read(label)); });
    auto edit = ControlFactory(label, nullptr, false, callback);
    auto const shown = ControlFactory(label, nullptr, true, nullptr);
    WriteElsewhere(label, "Amber");
    EXPECT_EQ("Amber", Shown(edit));
    EXPECT_EQ("Amber", Shown(shown));

    // An edit in one control is seen by the other; the callback runs after
    // the write.
    QLineEdit* const line = LineIn(*edit);
    TypeAndEnter(line, "Teal");
    EXPECT_EQ("Teal", Shown(shown));
    EXPECT_EQ(std::vector<std::string>{"Teal"}, seen);

    // A value removed elsewhere blanks the label and empties the field.
    {
        zephmetadata::MetaDataUpdateAccess access(provider);
        ASSERT_TRUE(DeleteValue(*access, label));
        access.AddChange(label);
    }
    EXPECT_EQ("", Shown(shown));
    EXPECT_EQ("", Shown(edit));

    // A destroyed Control hears nothing more and writes nothing.
    boost::intrusive_ptr<UI_TextEdit> const view(As<UI_TextEdit>(edit));
    edit.reset();
    EXPECT_TRUE(callback->empty());
    WriteElsewhere(label, "Plum");
    EXPECT_EQ("", zephcore::ToStdString(view->GetValue()));
    TypeAndEnter(line, "Grey");
    EXPECT_EQ("Plum", Read(label));
    EXPECT_EQ(1, view->GetRefCount()); // nothing else keeps the view
}

TEST(BoundControlTest, PopupShowsRawValuesAndAnEmptyChoiceClearsWhereAStrayIndexDoesNot)
{
    // A value that matches no choice shows as it is; an absent one, without
    // an empty choice, shows the unknown state.
    auto const raw = InlineControlFactory(
        V(MakeProvider("<tiff:Orientation>42</tiff:Orientation>"), kTIFF, "Orientation"), nullptr);
    ASSERT_NE(nullptr, As<UI_Popup>(raw));
    EXPECT_EQ("42", Shown(raw));
    EXPECT_EQ(-1, As<UI_Popup>(raw)->GetValue());
    EXPECT_FALSE(As<UI_Popup>(raw)->IsValueUnknown());
    auto const absent = InlineControlFactory(V(MakeProvider(""), kTIFF, "Orientation"), nullptr);
    EXPECT_TRUE(As<UI_Popup>(absent)->IsValueUnknown());

    auto const provider = MakeProvider(EveryKindDescription());
    Value const label = V(provider, kXMP, "Label");
    auto const item = Item(label, "dropdown||=(none),Red,Blue");
    auto const control = ControlFactory(label, item, nullptr, false, nullptr);
    auto* const popup = As<UI_Popup>(control);
    ASSERT_NE(nullptr, popup);
    EXPECT_EQ(1, popup->GetValue());
    popup->ChooseItem(0);
    EXPECT_EQ("<absent>", Read(label));
    EXPECT_EQ("(none)", Shown(control)); // the absent value has a label

    popup->SetUserData(boost::any(ChoiceList(item->choices.begin(), item->choices.begin() + 2)));
    popup->ChooseItem(2); // beyond the stored list
    EXPECT_EQ("<absent>", Read(label));
}

TEST(BoundControlTest, SelectionOfSeveralObjectsShowsMultipleValues)
{
    auto const a = MakeProvider(EveryKindDescription());
    auto const b =
        MakeProvider("<xmp:Label>Green</xmp:Label><crs:HasCrop>False</crs:HasCrop>"
                     "<tiff:Orientation>3</tiff:Orientation><crs:Temperature>3200</crs:Temperature>"
                     "<xmp:CreateDate>2010-01-01</xmp:CreateDate>");
    auto const both = boost::make_shared<zephmetadata::MultiObjectProvider>(Providers{a, b});
    auto const text = InlineControlFactory(V(both, kXMP, "Label"), nullptr);
    auto const label = ControlFactory(V(both, kXMP, "Label"), nullptr, true, nullptr);
    auto const box = InlineControlFactory(V(both, kCRS, "HasCrop"), nullptr);
    auto const popup = InlineControlFactory(V(both, kTIFF, "Orientation"), nullptr);
    auto const number = InlineControlFactory(V(both, kCRS, "Temperature"), nullptr);
    auto const date = InlineControlFactory(V(both, kXMP, "CreateDate"), nullptr);

    for (auto const& control : {text, box, popup, number, date})
    {
        auto* const view = As<zephui::UI_ControlView>(control);
        EXPECT_TRUE(view->IsValueUnknown() && view->UI_IsShown() && !view->UI_IsDisabled())
            << KindOf(control);
    }
    EXPECT_EQ("<Multiple Values>",
              zephcore::ToStdString(As<UI_TextEdit>(text)->GetUnknownStateText()));
    EXPECT_EQ("", Shown(text));
    EXPECT_EQ("<Multiple Values>", Shown(label));

    // A value typed over "<Multiple Values>" goes to every object.
    TypeAndEnter(LineIn(*text), "Violet");
    EXPECT_EQ("Violet", Read(V(a, kXMP, "Label")));
    EXPECT_EQ("Violet", Read(V(b, kXMP, "Label")));
    EXPECT_FALSE(As<UI_TextEdit>(text)->IsValueUnknown());
    EXPECT_EQ("Violet", Shown(label));

    // An unknown control that reports a change removes the value everywhere.
    As<UI_HotTextNumber>(number)->SendValueChangedMessage();
    EXPECT_EQ("<absent>", Read(V(a, kCRS, "Temperature")));
    EXPECT_EQ("<absent>", Read(V(b, kCRS, "Temperature")));
}

TEST(BoundControlTest, FieldWithFocusKeepsWhatTheUserTypesUntilFocusLeaves)
{
    auto const a = MakeProvider("<xmp:Label>Red</xmp:Label>");
    auto const b = MakeProvider("<xmp:Label>Red</xmp:Label>");
    auto const both = boost::make_shared<zephmetadata::MultiObjectProvider>(Providers{a, b});
    boost::intrusive_ptr<UI_SubView> const root(new UI_SubView(RectF(0, 0, 400, 200)));
    root->UI_Show(true);
    zephui::NodeHostWidget window(root);
    window.resize(400, 200);
    window.show();
    window.activateWindow();
    ASSERT_TRUE(QTest::qWaitForWindowActive(&window));
    auto const control = InlineControlFactory(V(both, kXMP, "Label"), root);
    auto const next = InlineControlFactory(V(both, kXMP, "Nickname"), root);
    control->view->UI_SetLocalRectF(RectF(10, 10, 200, 22));
    next->view->UI_SetLocalRectF(RectF(10, 40, 200, 22));
    QLineEdit* const line = LineIn(*control);
    line->setFocus();
    ASSERT_TRUE(control->view->UI_HasKeyboardFocus(false));
    QTest::keyClicks(line, QStringLiteral("dish"));
    EXPECT_EQ("Red", Read(V(a, kXMP, "Label"))); // typing alone commits nothing

    // Another object changes while the user types: the selection now differs.
    WriteElsewhere(V(b, kXMP, "Label"), "Green");
    EXPECT_EQ("<multiple>", Read(V(both, kXMP, "Label")));
    EXPECT_EQ("Reddish", Shown(control));
    EXPECT_FALSE(As<UI_TextEdit>(control)->IsValueUnknown());

    // Focus leaving commits the text to every object.
    LineIn(*next)->setFocus();
    EXPECT_EQ("Reddish", Read(V(a, kXMP, "Label")));
    EXPECT_EQ("Reddish", Read(V(b, kXMP, "Label")));
}

TEST(BoundControlTest, ControlsFollowTheWritingSwitchAndWhetherTheirValueApplies)
{
    auto const provider = MakeProvider(EveryKindDescription());
    auto const box = InlineControlFactory(V(provider, kCRS, "HasCrop"), nullptr);
    auto const date = InlineControlFactory(V(provider, kXMP, "CreateDate"), nullptr);
    auto const text = ControlFactory(V(provider, kXMP, "Label"), Item(P(kXMP, "Label"), ""),
                                     nullptr, false, nullptr);
    auto const fixed =
        ControlFactory(V(provider, kXMP, "Label"), Item(P(kXMP, "Label"), "|readOnly=true"),
                       nullptr, false, nullptr);
    ASSERT_FALSE(box->view->UI_IsDisabled() || date->view->UI_IsDisabled());
    zephmetadata::DisableXMPWriting(true);
    EXPECT_TRUE(box->view->UI_IsDisabled());
    EXPECT_TRUE(date->view->UI_IsDisabled());
    // A text field of a metadata view (its node id says so) stays active,
    // read-only.
    EXPECT_FALSE(text->view->UI_IsDisabled());
    EXPECT_TRUE(As<UI_TextEdit>(text)->GetReadOnlyMode());
    zephmetadata::DisableXMPWriting(false);
    EXPECT_FALSE(box->view->UI_IsDisabled() || date->view->UI_IsDisabled());
    EXPECT_FALSE(As<UI_TextEdit>(text)->GetReadOnlyMode());
    EXPECT_TRUE(As<UI_TextEdit>(fixed)->GetReadOnlyMode());

    // A value that does not apply hides its control once it is gone; static
    // text has no status.
    auto const other =
        boost::make_shared<NothingApplicableProvider>(Packet("<xmp:Label>Red</xmp:Label>"));
    Value const label = V(other, kXMP, "Label");
    auto const edit = InlineControlFactory(label, nullptr);
    auto const shown = ControlFactory(label, nullptr, true, nullptr);
    EXPECT_TRUE(edit->view->UI_IsShown());
    TypeAndEnter(LineIn(*edit), "");
    EXPECT_EQ("<absent>", Read(label));
    EXPECT_FALSE(edit->view->UI_IsShown());
    EXPECT_TRUE(shown->view->UI_IsShown());
    EXPECT_EQ("", Shown(shown));
    WriteElsewhere(label, "Back");
    EXPECT_TRUE(edit->view->UI_IsShown());
}
