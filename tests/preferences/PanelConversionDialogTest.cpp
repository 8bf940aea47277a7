// The panel conversion dialog: Start waits for a version, each conversion's
// report replaces the last, and the window's place is kept on every close.

#include "PreferencesTestSupport.h"

#include <zephmetadataui/PanelConversionDialog.h>

#include <zephmetadata/PanelConversion.h>
#include <zephui/UI_TextEdit.h>

using namespace prefstest;
using zephmetadataui::sharedui::PanelConversionDialog;

namespace
{

class PanelConversionDialogTest : public PreferencesTest
{
protected:
    // Runs a new dialog with these steps on it; what its run returned.
    static int RunDialog(std::vector<Action> steps)
    {
        zephmetadataui::sharedui::PanelConversionDialogPtr const dialog(
            new PanelConversionDialog(nullptr, nullptr));
        ModalDriver driver;
        driver.Then(ModalDriver::Sequence(std::move(steps)));
        return dialog->RunModal();
    }
};

TEST_F(PanelConversionDialogTest, StartWaitsForAVersionAndEachReportReplacesTheLast)
{
    // One panel of the R5 generation that the converter can't read.
    WriteFile(zephcore::ToQString(zephmetadata::utility::GenericPanelsDirectory(
                  zephmetadata::utility::kSuiteVersionR5)) +
                  "/Broken Panel.xml",
              "<not a panel");

    std::vector<bool> startable;
    std::vector<std::string> reports;
    auto const look = [&](QWidget* window)
    {
        startable.push_back(!NodeIn(window, "startButtonID")->UI_IsDisabled());
        reports.push_back(
            ToStdString(NodeIn<zephui::UI_TextEdit>(window, "resultTextID")->GetValue()));
    };
    auto const version = [](int row) { return ChooseItem("versionPopupID", row); };
    EXPECT_EQ(RunDialog({look, version(2), Press("startButtonID"), look, version(3),
                         Press("startButtonID"), look, version(0), look, Press("exitButtonID")}),
              zephui::kDialogResultOK);
    EXPECT_EQ(startable, (std::vector<bool>{false, true, true, false}));
    ASSERT_EQ(reports.size(), 4u);
    EXPECT_EQ(reports[0], "");
    EXPECT_NE(reports[1].find("No R6 panels found"), std::string::npos) << reports[1];
    EXPECT_EQ(reports[2].find("R6"), std::string::npos) << reports[2];
    EXPECT_NE(reports[2].find("Broken Panel"), std::string::npos) << reports[2];
    EXPECT_EQ(reports[3], reports[2]);
}

TEST_F(PanelConversionDialogTest, EveryWayOfClosingKeepsTheWindowsPlace)
{
    struct Case
    {
        char const* name;
        Action close;
        int result;
    };
    Case const cases[] = {
        {"Exit", Press("exitButtonID"), zephui::kDialogResultOK},
        {"close box", [](QWidget* window) { window->close(); }, zephui::kDialogResultCancel},
    };
    for (Case const& c : cases)
    {
        zephui::RectF moved, shown;
        auto const move = [&moved](QWidget* window)
        {
            auto* const node = zephui::NodeForWidget(window);
            moved = zephui::UI_GetGlobalStructureRect(node);
            moved.left += 37, moved.top += 21, moved.width += 50;
            zephui::UI_SetGlobalStructureRect(node, moved);
            moved = zephui::UI_GetGlobalStructureRect(node); // where the window system put it
        };
        EXPECT_EQ(RunDialog({move, c.close}), c.result) << c.name;
        // A new dialog opens where the last one was left.
        RunDialog({[&shown](QWidget* window)
                   { shown = zephui::UI_GetGlobalStructureRect(zephui::NodeForWidget(window)); },
                   Press("exitButtonID")});
        EXPECT_EQ(shown, moved) << c.name;
    }
}

} // namespace
