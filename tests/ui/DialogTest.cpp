// Dialogs run modally and are driven from inside their run, as a user would.

#include "ControlTestWindow.h"

#include "zephui/ModalDriver.h"
#include "zephui/MonitorInfo.h"
#include "zephui/UI_Dialog.h"
#include "zephui/UI_TextEdit.h"

#include "zephcore/QtStrings.h"

#include <QApplication>
#include <QWidget>

#include <gtest/gtest.h>

using namespace zephui;
using zephcore::ToUTF16;

namespace
{

// A small dialog: a text field, OK and Cancel, that counts its closings.
class CountingDialog : public UI_Dialog
{
public:
    explicit CountingDialog(HWND parent = nullptr) : UI_Dialog(ToUTF16("Counting"), parent)
    {
        UI_SetLocalRectF(RectF(100, 100, 300, 120));
        content->UI_SetLayoutBinding(kBindRightEdgeToParentRight | kBindBottomEdgeToParentBottom);
        zephtest::AddShown(this, content, RectF(0, 0, 300, 120));
        SetButtons(Add(new UI_TextButton(ToUTF16("OK")), RectF(120, 90, 80, 19), "ok"),
                   Add(new UI_TextButton(ToUTF16("Cancel")), RectF(210, 90, 80, 19), "cancel"));
    }
    void DefaultCloseOk() override
    {
        ++okCloses;
        typed = field->GetValue();
        UI_Dialog::DefaultCloseOk();
    }
    void DefaultCloseCancel() override
    {
        ++cancelCloses;
        UI_Dialog::DefaultCloseCancel();
    }
    template <class Node>
    boost::intrusive_ptr<Node> Add(Node* node, RectF const& rect, std::string const& id)
    {
        node->UI_SetNodeID(id);
        return zephtest::AddShown(content.get(), boost::intrusive_ptr<Node>(node), rect);
    }

    UI_SubViewPtr content{new UI_SubView};
    boost::intrusive_ptr<UI_TextEdit> field = Add(new UI_TextEdit, RectF(10, 10, 280, 22), "field");
    int okCloses = 0;
    int cancelCloses = 0;
    zephcore::UTF16String typed;
};

} // namespace

TEST(DialogTest, EachWayOfClosingGivesItsResultThroughTheOverridableCloses)
{
    struct Case
    {
        char const* name;
        ModalDriver::Action action;
        int result, oks, cancels;
        char const* typed; // what the dialog took on OK
    };
    Case const cases[] = {
        {"typed, then OK",
         ModalDriver::Sequence({ModalDriver::TypeInto("field", QStringLiteral("Keeper 2")),
                                ModalDriver::PressNode("ok")}),
         kDialogResultOK, 1, 0, "Keeper 2"},
        {"Cancel button", ModalDriver::PressNode("cancel"), kDialogResultCancel, 0, 1, ""},
        {"Return presses the default button", ModalDriver::Return(), kDialogResultOK, 1, 0, ""},
        {"Escape", ModalDriver::Escape(), kDialogResultCancel, 0, 1, ""},
        {"close box", [](QWidget* window) { window->close(); }, kDialogResultCancel, 0, 1, ""},
    };
    for (Case const& c : cases)
    {
        boost::intrusive_ptr<CountingDialog> dialog(new CountingDialog);
        ModalDriver driver;
        driver.Then(c.action);
        EXPECT_EQ(dialog->RunModal(), c.result) << c.name;
        EXPECT_EQ(dialog->okCloses, c.oks) << c.name;
        EXPECT_EQ(dialog->cancelCloses, c.cancels) << c.name;
        EXPECT_EQ(dialog->typed, ToUTF16(c.typed)) << c.name;
        EXPECT_FALSE(dialog->UI_IsShown()) << c.name;
        EXPECT_EQ(driver.Unexpected(), 0) << c.name;
    }
}

TEST(DialogTest, AModalWithNoActionLeftIsCancelledAndCounted)
{
    boost::intrusive_ptr<CountingDialog> dialog(new CountingDialog);
    ModalDriver driver;
    EXPECT_EQ(dialog->RunModal(), kDialogResultCancel);
    EXPECT_EQ(driver.Unexpected(), 1);
    ASSERT_EQ(driver.Titles().size(), 1u);
    EXPECT_EQ(driver.Titles()[0], QStringLiteral("Counting"));
}

TEST(DialogTest, SizeLimitsHoldForTheContentAndTheUserResize)
{
    boost::intrusive_ptr<CountingDialog> dialog(new CountingDialog);
    dialog->SetMinimumSize(400, 200);
    EXPECT_EQ(dialog->UI_GetLocalRectF(false), RectF(0, 0, 400, 200));
    // The content grows with the window by its binding.
    EXPECT_EQ(dialog->content->UI_GetLocalRectF(true), RectF(0, 0, 400, 200));
    dialog->SetMaximumSize(400, 10000);
    dialog->SetContentSize(900, 500);
    dialog->UI_GetWidget()->resize(900, 500); // as the user would drag it
    EXPECT_EQ(dialog->UI_GetWidget()->size(), QSize(400, 500));
}

TEST(DialogTest, StructureRectRoundTripsAndCentringUsesTheScreen)
{
    boost::intrusive_ptr<CountingDialog> dialog(new CountingDialog);
    UI_SetGlobalStructureRect(dialog.get(), RectF(40, 50, 320, 240));
    EXPECT_EQ(UI_GetGlobalStructureRect(dialog->field.get()), RectF(40, 50, 320, 240));
    dialog->Center();
    RectF const screen = OS_MonitorInfo().GetPrimaryWorkArea();
    RectF const r = UI_GetGlobalStructureRect(dialog.get());
    EXPECT_FLOAT_EQ(r.left + r.width / 2, screen.left + screen.width / 2);
    EXPECT_FLOAT_EQ(r.top + r.height / 2, screen.top + screen.height / 2);
}

TEST(MonitorInfoTest, RectanglesOffEveryMonitorComeBackOnScreen)
{
    MonitorInfo const monitors({{RectF(0, 0, 1920, 1080), RectF(0, 0, 1920, 1040), true},
                                {RectF(1920, 0, 1280, 1024), RectF(1920, 0, 1280, 1024), false}});
    struct Case
    {
        RectF stored, expected;
    };
    Case const cases[] = {
        // On a monitor: unchanged.
        {RectF(100, 100, 600, 400), RectF(100, 100, 600, 400)},
        {RectF(2000, 500, 600, 400), RectF(2000, 500, 600, 400)},
        // Partly off the right monitor, title still grabbable: unchanged.
        {RectF(3100, 100, 600, 400), RectF(3100, 100, 600, 400)},
        // On a third monitor that is gone: onto the primary one.
        {RectF(5000, 300, 600, 400), RectF(1320, 300, 600, 400)},
        // Above every monitor: pulled down so its title can be grabbed.
        {RectF(200, -300, 600, 400), RectF(200, 0, 600, 400)},
        // Larger than its monitor: shrunk to the work area.
        {RectF(-4000, 0, 2500, 1500), RectF(0, 0, 1920, 1040)},
    };
    for (Case const& c : cases)
    {
        RectF r = c.stored;
        monitors.EnsureRectIsVisible(r);
        EXPECT_EQ(r, c.expected) << c.stored.left << "," << c.stored.top;
    }
}
