// The panel conversion dialog: Start waits for a version, each conversion's
// report replaces the last, and the window's place is kept on every close.

#include "PreferencesTestSupport.h"

#include <zephmetadataui/PanelConversionDialog.h>

#include <zephmetadata/PanelConversion.h>
#include <zephui/NodeWidget.h>
#include <zephui/PrefManager.h>

#include <zephcore/QtStrings.h>

#include <QDir>
#include <QFile>

using namespace prefstest;
using zephmetadataui::sharedui::PanelConversionDialog;

namespace
{

class PanelConversionDialogTest : public PreferencesTest
{
protected:
    void SetUp() override
    {
        PreferencesTest::SetUp();
        zephui::PrefManager::SetSettingsFile(
            zephcore::ToUTF16(temp.filePath(QStringLiteral("places/places.ini"))));
        zephui::PrefManager::GetPrefManager(true);
    }
};

template <class T> T* In(QWidget* window, char const* id)
{
    return dynamic_cast<T*>(NodeIn(window, id));
}

Action ChooseVersion(int row)
{
    return [row](QWidget* window)
    {
        auto* const popup = In<zephui::UI_Popup>(window, "versionPopupID");
        ASSERT_TRUE(popup);
        popup->ChooseItem(row);
    };
}

TEST_F(PanelConversionDialogTest, StartWaitsForAVersionAndEachReportReplacesTheLast)
{
    // One panel of the R5 generation that the converter can't read.
    QString const r5 = zephcore::ToQString(
        zephmetadata::utility::GenericPanelsDirectory(zephmetadata::utility::kSuiteVersionR5));
    ASSERT_TRUE(QDir().mkpath(r5));
    QFile panel(r5 + QStringLiteral("/Broken Panel.xml"));
    ASSERT_TRUE(panel.open(QIODevice::WriteOnly));
    panel.write("<not a panel");
    panel.close();

    std::vector<bool> startable;
    std::vector<std::string> reports;
    auto const look = [&](QWidget* window)
    {
        startable.push_back(!NodeIn(window, "startButtonID")->UI_IsDisabled());
        reports.push_back(ToStd(In<zephui::UI_TextEdit>(window, "resultTextID")->GetValue()));
    };
    zephmetadataui::sharedui::PanelConversionDialogPtr const dialog(
        new PanelConversionDialog(nullptr, nullptr));
    ModalDriver driver;
    driver.Then(ModalDriver::Sequence({look, ChooseVersion(2), Press("startButtonID"), look,
                                       ChooseVersion(3), Press("startButtonID"), look,
                                       ChooseVersion(0), look, Press("exitButtonID")}));
    EXPECT_EQ(dialog->RunModal(), zephui::kDialogResultOK);
    EXPECT_EQ(dialog->GetWindowTitle(), zephcore::AsciiToUTF16("Generic Panel Converter"));
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
        zephui::PrefManager::SetSettingsFile(
            zephcore::ToUTF16(temp.filePath(QString::fromUtf8(c.name) + QStringLiteral(".ini"))));
        zephui::RectF moved;
        {
            zephmetadataui::sharedui::PanelConversionDialogPtr const dialog(
                new PanelConversionDialog(nullptr, nullptr));
            ModalDriver driver;
            driver.Then(ModalDriver::Sequence({[&moved](QWidget* window)
                                               {
                                                   auto* const node = zephui::NodeForWidget(window);
                                                   moved = zephui::UI_GetGlobalStructureRect(node);
                                                   moved.left += 37;
                                                   moved.top += 21;
                                                   moved.width += 50;
                                                   zephui::UI_SetGlobalStructureRect(node, moved);
                                                   // Where the window system put it.
                                                   moved = zephui::UI_GetGlobalStructureRect(node);
                                               },
                                               c.close}));
            EXPECT_EQ(dialog->RunModal(), c.result) << c.name;
        }
        // A new dialog opens where the last one was left.
        zephmetadataui::sharedui::PanelConversionDialogPtr const again(
            new PanelConversionDialog(nullptr, nullptr));
        zephui::RectF shown;
        ModalDriver driver;
        driver.Then(ModalDriver::Sequence(
            {[&shown](QWidget* window)
             { shown = zephui::UI_GetGlobalStructureRect(zephui::NodeForWidget(window)); },
             Press("exitButtonID")}));
        again->RunModal();
        EXPECT_EQ(shown, moved) << c.name;
    }
}

} // namespace
