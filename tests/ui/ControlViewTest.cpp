// The known/unknown state of a control and the shared callables it tells.

#include "zephui/UI_ControlView.h"

#include <boost/make_shared.hpp>

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

Holder Call(std::function<void(Message*)> f)
{
    return boost::make_shared<boost::function<void(Message*)>>(std::move(f));
}

} // namespace

TEST(ControlViewTest, UnknownStateChangesOnlyOnChangeAndTellsNobody)
{
    boost::intrusive_ptr<ProbeControl> control(new ProbeControl);
    int notified = 0;
    control->NotifyWhenChanged(Call([&](Message*) { ++notified; }));
    control->SetValueUnknown();
    control->SetValueUnknown();
    EXPECT_TRUE(control->IsValueUnknown());
    EXPECT_EQ(control->stateChanges, 1);
    control->SetValueKnown();
    control->SetValueKnown();
    EXPECT_EQ(control->stateChanges, 2);
    EXPECT_EQ(notified, 0);
}

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

TEST(ControlViewTest, MnemonicMarksAreRemoved)
{
    boost::intrusive_ptr<ProbeControl> control(new ProbeControl);
    EXPECT_EQ(control->UI_ProcessStringAndSetMnemonic(zephcore::AsciiToUTF16("&Save && Close")),
              zephcore::AsciiToUTF16("Save & Close"));
}
