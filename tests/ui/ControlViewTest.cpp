// The known/unknown state of a control and the shared callables it tells.

#include "zephui/UI_ControlView.h"

#include <boost/bind/bind.hpp>
#include <boost/make_shared.hpp>

#include <QWidget>

#include <gtest/gtest.h>

using namespace zephui;

namespace
{

class ProbeControl : public UI_InteractiveControlView
{
public:
    void KnownValueStateChanged() override { ++stateChanges; }
    int stateChanges = 0;
};

using Holder = boost::shared_ptr<boost::function<void(Message*)>>;

} // namespace

TEST(ControlViewTest, UnknownStateChangesOnlyOnChange)
{
    boost::intrusive_ptr<ProbeControl> control(new ProbeControl);
    int notified = 0;
    control->NotifyWhenChanged(
        boost::make_shared<boost::function<void(Message*)>>([&](Message*) { ++notified; }));

    EXPECT_TRUE(control->IsValueKnown());
    control->SetValueUnknown();
    control->SetValueUnknown();
    EXPECT_TRUE(control->IsValueUnknown());
    EXPECT_EQ(control->stateChanges, 1);
    control->SetValueKnown();
    control->SetValueKnown();
    EXPECT_FALSE(control->IsValueUnknown());
    EXPECT_EQ(control->stateChanges, 2);
    EXPECT_EQ(notified, 0) << "programmatic state changes tell nobody";
}

TEST(ControlViewTest, ChangeMessageReachesEveryLiveHolderInOrder)
{
    boost::intrusive_ptr<ProbeControl> control(new ProbeControl);
    std::vector<std::string> calls;
    UI_ControlView* seenControl = nullptr;
    Holder first = boost::make_shared<boost::function<void(Message*)>>(
        [&](Message* m)
        {
            calls.push_back("first");
            seenControl = static_cast<UI_ControlMessage*>(m)->GetControl();
        });
    Holder second;
    // The first callable empties the second during the walk: it must be skipped.
    Holder emptier = boost::make_shared<boost::function<void(Message*)>>(
        [&](Message*)
        {
            calls.push_back("emptier");
            *second = boost::function<void(Message*)>();
        });
    second = boost::make_shared<boost::function<void(Message*)>>([&](Message*)
                                                                 { calls.push_back("second"); });
    Holder interactive = boost::make_shared<boost::function<void(Message*)>>(
        [&](Message*) { calls.push_back("live"); });
    control->NotifyWhenChanged(first);
    control->NotifyWhenChanged(emptier);
    control->NotifyWhenChanged(second);
    control->NotifyWhenChangedInteractively(interactive);

    control->SendValueChangedMessage();
    EXPECT_EQ(calls, (std::vector<std::string>{"first", "emptier"}));
    EXPECT_EQ(seenControl, control.get());

    calls.clear();
    *first = boost::function<void(Message*)>(); // the registering side leaves
    control->SendInteractiveValueChangedMessage();
    control->SendValueChangedMessage();
    EXPECT_EQ(calls, (std::vector<std::string>{"live", "emptier"}));
}

TEST(ControlViewTest, CallableMayDropTheLastReferenceToItsControl)
{
    boost::intrusive_ptr<ProbeControl> control(new ProbeControl);
    int after = 0;
    control->NotifyWhenChanged(
        boost::make_shared<boost::function<void(Message*)>>([&](Message*) { control.reset(); }));
    control->NotifyWhenChanged(
        boost::make_shared<boost::function<void(Message*)>>([&](Message*) { ++after; }));
    ProbeControl* raw = control.get();
    raw->AddRef(); // the sender keeps itself alive while it sends, as a control does inside a
                   // NodeEventScope
    raw->SendValueChangedMessage();
    EXPECT_EQ(after, 1);
    EXPECT_FALSE(control);
    raw->Release();
}

TEST(ControlViewTest, MnemonicMarksAreRemoved)
{
    boost::intrusive_ptr<ProbeControl> control(new ProbeControl);
    EXPECT_EQ(control->UI_ProcessStringAndSetMnemonic(zephcore::AsciiToUTF16("&Save && Close")),
              zephcore::AsciiToUTF16("Save & Close"));
    control->SetWantsKeyboardFocus(false);
    EXPECT_FALSE(control->UI_WantsKeyboardFocus());
    EXPECT_EQ(control->UI_GetWidget()->focusPolicy(), Qt::NoFocus);
    control->SetWantsKeyboardFocus(true);
    EXPECT_NE(control->UI_GetWidget()->focusPolicy(), Qt::NoFocus);
}
