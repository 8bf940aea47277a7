// The library's dialog archives, read from its own resources: each builds at
// its size, every node its dialog looks up is there with the class the dialog
// casts it to, and a dialog made of one runs and closes by its buttons.

#include "module/ModuleResources.h"
#include "zephmetadataui/Module.h"

#include <zephui/ModalDriver.h>
#include <zephui/UI_ArchivedDialog.h>
#include <zephui/UI_Checkbox.h>
#include <zephui/UI_ListBox.h>
#include <zephui/UI_MultiColumnTree.h>
#include <zephui/UI_OutlineBox.h>
#include <zephui/UI_Popup.h>
#include <zephui/UI_RadioGroup.h>
#include <zephui/UI_StaticImage.h>
#include <zephui/UI_StaticText.h>
#include <zephui/UI_TextEdit.h>

#include <QDir>
#include <QImage>
#include <QPixmap>
#include <QWidget>

#include <gtest/gtest.h>

#include <functional>

using namespace zephui;

namespace
{

class DialogArchivesTest : public ::testing::Test
{
protected:
    void SetUp() override { zephmetadataui::Initialize(); }
    void TearDown() override { zephmetadataui::Terminate(); }

    static UI_ArchivedDialogPtr Open(std::string const& name)
    {
        // The panel conversion dialog's creator: its result box scrolls.
        ArchivedNodeCreator const creator = [](zephcore::UTF16String const& className) -> UI_NodePtr
        {
            if (className != zephcore::AsciiToUTF16("TextEditMultilineWithVerticalScrollbar"))
                return nullptr;
            return new UI_TextEdit(69, 0);
        };
        return new UI_ArchivedDialog(nullptr, zephmetadataui::ModuleResourceManager(), name,
                                     zephcore::AsciiToUTF16(name.c_str()), HWND(nullptr), 0,
                                     creator);
    }
};

using Lookup = std::function<void(UI_ArchivedDialog const&, std::string const&)>;

// What the dialog's code does with the node: finds it as this class.
template <class T> Lookup As()
{
    return [](UI_ArchivedDialog const& dialog, std::string const& id)
    { EXPECT_TRUE(dialog.GetNodeForID<T>(id)); };
}

} // namespace

TEST_F(DialogArchivesTest, EachArchiveBuildsAtItsSizeWithEveryNodeItsDialogLooksUp)
{
    struct Archive
    {
        char const* name;
        float width, height;
        std::vector<std::pair<char const*, Lookup>> lookups;
        QSize opened; // the size its dialog opens at, for the screenshot
    };
    Archive const archives[] = {
        {"MetadataDialog",
         550,
         400,
         {{"OKButton", As<UI_Button>()},
          {"CancelButton", As<UI_Button>()},
          {"PreferencesButton", As<UI_Button>()},
          {"TemplatePopup", As<UI_Popup>()},
          {"error_image", As<UI_PictureTextButton>()},
          {"error_box", As<UI_OutlineBox>()},
          {"PageChooserList", As<UI_ListBox>()},
          {"PageSubView", As<UI_SubView>()},
          {"logo_image", As<UI_StaticImage>()}},
         QSize(640, 480)},
        {"MetadataDialogPreferences",
         300,
         180,
         {{"OKButton", As<UI_Button>()},
          {"CancelButton", As<UI_Button>()},
          {"DebugModeCheckbox", As<UI_Checkbox>()}},
         QSize(300, 180)},
        {"MetadataErrorDialog",
         500,
         400,
         {{"okButtonID", As<UI_Button>()},
          {"errorListID", As<UI_MultiColumnTree>()},
          {"errorLinkID", As<UI_StaticText>()}},
         QSize(600, 280)},
        {"MetadataTemplateImportOptionsDialog",
         500,
         168,
         {{"optionsGroupID", As<UI_RadioGroup>()},
          {"okButtonID", As<UI_Button>()},
          {"cancelButtonID", As<UI_Button>()}},
         QSize(500, 168)},
        {"MetadataPanelConversionDialog",
         500,
         350,
         {{"versionPopupID", As<UI_Popup>()},
          {"resultTextID", As<UI_TextEdit>()},
          {"startButtonID", As<UI_Button>()},
          {"exitButtonID", As<UI_Button>()}},
         QSize(500, 350)},
    };
    QString const shots = QStringLiteral(ZEPH_BINARY_DIR "/screenshots");
    QDir().mkpath(shots);
    for (Archive const& archive : archives)
    {
        UI_ArchivedDialogPtr dialog;
        ASSERT_NO_THROW(dialog = Open(archive.name)) << archive.name;
        EXPECT_EQ(dialog->UI_GetLocalRectF(false), RectF(0, 0, archive.width, archive.height))
            << archive.name;
        for (auto const& [id, lookup] : archive.lookups)
            EXPECT_NO_THROW(lookup(*dialog, id)) << archive.name << " " << id;
        // The bindings carry the content to the size the dialog opens at.
        dialog->SetContentSize(float(archive.opened.width()), float(archive.opened.height()));
        QImage const shot = dialog->UI_GetWidget()->grab().toImage();
        EXPECT_EQ(shot.size(), archive.opened) << archive.name;
        shot.save(shots + QStringLiteral("/archive-%1.png").arg(QLatin1String(archive.name)));
    }
}

TEST_F(DialogArchivesTest, ArchivedStatesTheDialogsStartFrom)
{
    UI_ArchivedDialogPtr const options = Open("MetadataTemplateImportOptionsDialog");
    EXPECT_EQ(options->GetNodeForID<UI_RadioGroup>("optionsGroupID")->CountButtons(), 3)
        << "one button for each import option";
    UI_ArchivedDialogPtr const conversion = Open("MetadataPanelConversionDialog");
    EXPECT_TRUE(conversion->GetNodeForID("startButtonID")->UI_IsDisabled())
        << "Start waits for a version";
    EXPECT_TRUE(conversion->GetNodeForID<UI_TextEdit>("resultTextID")->IsMultiLine());
    UI_ArchivedDialogPtr const metadata = Open("MetadataDialog");
    EXPECT_TRUE(metadata->GetNodeForID("error_box")->UI_IsShown())
        << "the first refresh hides the box when debug mode is off";
}

TEST_F(DialogArchivesTest, ADialogOfAnArchiveClosesByItsButtons)
{
    struct Case
    {
        char const* press;
        int result;
    };
    for (Case const c :
         {Case{"OKButton", kDialogResultOK}, Case{"CancelButton", kDialogResultCancel}})
    {
        UI_ArchivedDialogPtr const dialog = Open("MetadataDialogPreferences");
        dialog->SetButtons(dialog->GetNodeForID<UI_Button>("OKButton"),
                           dialog->GetNodeForID<UI_Button>("CancelButton"));
        ModalDriver driver;
        driver.Then(ModalDriver::PressNode(c.press));
        EXPECT_EQ(dialog->RunModal(), c.result) << c.press;
        EXPECT_EQ(driver.Pending(), 0) << c.press;
        EXPECT_EQ(driver.Unexpected(), 0) << c.press;
    }
}
