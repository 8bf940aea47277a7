// The metadata dialog end to end: run modally over a host's provider and
// driven from inside the run as a user would.

#include "DialogTestSupport.h"

#include "dialogs/MetadataDialog.h"
#include "dialogs/MetadataErrorDialog.h"
#include "dialogs/MetadataTemplateImportOptionsDialog.h"

#include <zephmetadata/ErrorLog.h>
#include <zephmetadata/ViewDefinitions.h>

#include <zephui/ModalDriver.h>
#include <zephui/NodeWidget.h>
#include <zephui/PrefManager.h>
#include <zephui/UI_Checkbox.h>
#include <zephui/UI_RadioGroup.h>

#include <QDir>
#include <QFile>
#include <QFileDialog>
#include <QLineEdit>

#include <boost/make_shared.hpp>
#include <boost/range/distance.hpp>

namespace dialogtest
{
namespace
{

using treetest::kAlphaNamespace;
using treetest::MakeProvider;
using zephmetadataui::DoMetadataDialog;
using zephmetadataui::MetadataDialog;
using zephmetadataui::MetadataDialogParameters;
using zephui::ModalDriver;

std::string Id(zephmetadataui::MetadataLayoutView const* page)
{
    auto const name = page->GetViewName();
    return std::string(name.begin(), name.end());
}

// Runs an action on the dialog itself.
ModalDriver::Action OnDialog(std::function<void(MetadataDialog*)> action)
{
    return [action](QWidget* window) { action(DialogOf(window)); };
}

ModalDriver::Action ClickRow(int row)
{
    return OnDialog([row](MetadataDialog* dialog)
                    { zephui::ClickWidget(dialog->GetPageList()->GetItem(row)->UI_GetWidget()); });
}

// Opens the template menu (its rows are listed afresh) and chooses a row.
ModalDriver::Action ChooseTemplateRow(int row)
{
    return OnDialog(
        [row](MetadataDialog* dialog)
        {
            dialog->GetTemplatePopup()->BeforeShowMenu();
            dialog->GetTemplatePopup()->ChooseItem(row);
        });
}

// Picks a rule in the import options and presses OK.
ModalDriver::Action ChooseRule(int index)
{
    return [index](QWidget* window)
    {
        auto* options = dynamic_cast<zephmetadataui::MetadataTemplateImportOptionsDialog*>(
            zephui::NodeForWidget(window));
        ASSERT_NE(options, nullptr);
        zephui::ClickWidget(
            options->GetOptionsGroup()->ChildGet(std::size_t(index))->UI_GetWidget());
        zephui::ClickWidget(options->GetNodeForID("okButtonID")->UI_GetWidget());
    };
}

void WriteTemplate(QString const& path, std::string const& body)
{
    QDir().mkpath(QFileInfo(path).path());
    QFile file(path);
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    file.write(QByteArray::fromStdString(treetest::Packet(body)));
}

class MetadataDialogTest : public DialogTest
{
protected:
    bool Run(boost::shared_ptr<zephmetadata::MetaDataProvider> const& provider,
             MapSettings* settings = nullptr, std::uint8_t flags = 0,
             char const* title = "clip.final.mov")
    {
        MetadataDialogParameters parameters;
        parameters.title = treetest::U16(title);
        parameters.settings = settings;
        parameters.flags = flags;
        return DoMetadataDialog(provider, nullptr, parameters);
    }
};

TEST_F(MetadataDialogTest, PagesFollowTheSavedOrderAndCancelStillKeepsPlaceAndPage)
{
    MapSettings settings;
    settings.lists["viewList"] = {"com.velmora.xmp.view.gps", "gone.view",
                                  "com.velmora.xmp.view.basic"};
    settings.strings["activeView"] = "com.velmora.xmp.view.basic";
    std::vector<std::string> order;
    std::string shownFirst;
    ModalDriver driver;
    driver.Then(ModalDriver::Sequence({OnDialog(
                                           [&](MetadataDialog* dialog)
                                           {
                                               for (auto const& page : dialog->GetPages())
                                                   order.push_back(Id(page.get()));
                                               shownFirst = Id(dialog->GetCurrentPage());
                                               EXPECT_FALSE(dialog->GetErrorBox()->UI_IsShown());
                                           }),
                                       ClickRow(0), ModalDriver::PressNode("CancelButton")}));
    EXPECT_FALSE(Run(MakeProviderOf(), &settings));

    ASSERT_GE(order.size(), 3u);
    EXPECT_EQ(order[0], "com.velmora.xmp.view.gps");
    EXPECT_EQ(order[1], "com.velmora.xmp.view.basic");
    EXPECT_EQ(order.back(), "com.velmora.xmp.view.rawdata");
    EXPECT_EQ(order.size(),
              std::size_t(boost::distance(zephmetadata::CommonViewDefinitions())) + 1);
    EXPECT_EQ(shownFirst, "com.velmora.xmp.view.basic");
    EXPECT_EQ(settings.lists["viewList"][1], "gone.view") << "the saved list goes back as read";
    EXPECT_EQ(settings.strings["activeView"], "com.velmora.xmp.view.gps");
    zephui::RectF place;
    EXPECT_TRUE(zephui::PrefManager::GetPrefManager()->GetWindowPositionAndSize(
        treetest::U16("MetadataDialog"), place));
    EXPECT_GE(place.width, 640);
}

TEST_F(MetadataDialogTest, WithoutSavedChoicesTheDefaultsApplyAndAreWrittenBack)
{
    MapSettings settings;
    settings.lists["viewList"] = {}; // empty counts as absent
    settings.strings["activeView"] = "no.such.view";
    std::string shown;
    ModalDriver driver;
    driver.Then(ModalDriver::Sequence(
        {OnDialog([&](MetadataDialog* dialog) { shown = Id(dialog->GetCurrentPage()); }),
         ModalDriver::Escape()}));
    Run(MakeProviderOf(), &settings);
    EXPECT_EQ(shown, "com.velmora.xmp.view.basic");
    ASSERT_EQ(settings.lists["viewList"].size(), 11u);
    EXPECT_EQ(settings.lists["viewList"].back(), "com.velmora.xmp.view.rawdata");
}

TEST_F(MetadataDialogTest, OnlyOkWithAnEditHandsExactlyThatEditToTheHost)
{
    struct Case
    {
        char const* name;
        bool edit;
        char const* button;
        bool result;
    };
    Case const cases[] = {
        {"edit then Cancel", true, "CancelButton", false},
        {"OK without edit", false, "OKButton", false},
        {"edit then OK", true, "OKButton", true},
    };
    for (Case const& c : cases)
    {
        QString const path = CopyPhoto(QString::fromLatin1(c.name) + ".jpg");
        auto const bytes = [&path]
        {
            QFile f(path);
            f.open(QIODevice::ReadOnly);
            return f.readAll();
        };
        QByteArray const bytesBefore = bytes();
        auto host =
            boost::make_shared<zephmetadata::FileProvider>(treetest::U16(path.toStdString()));
        auto const before = LeavesOf(host);
        int hostChanges = 0;
        auto listener = boost::make_shared<boost::function<void(__XMPMeta__*)>>([&](__XMPMeta__*)
                                                                                { ++hostChanges; });
        host->NotifyWhenMetaDataChanged(listener);

        ModalDriver driver;
        std::vector<ModalDriver::Action> steps;
        if (c.edit)
            steps.push_back(
                OnDialog([](MetadataDialog* d) { TypeIntoFirstField(d, "Keeper's cove"); }));
        steps.push_back(ModalDriver::PressNode(c.button));
        driver.Then(ModalDriver::Sequence(steps));
        EXPECT_EQ(Run(host), c.result) << c.name;
        EXPECT_EQ(hostChanges, c.result ? 1 : 0) << c.name;

        auto const after = LeavesOf(host);
        std::vector<std::string> changed;
        for (auto const& [key, value] : after)
            if (before.count(key) == 0 || before.at(key) != value)
                changed.push_back(key + " = " + value);
        for (auto const& [key, value] : before)
            if (after.count(key) == 0)
                changed.push_back(key + " removed");
        if (c.result)
        {
            ASSERT_EQ(changed.size(), 1u) << c.name;
            EXPECT_NE(changed[0].find("= Keeper's cove"), std::string::npos) << changed[0];
            ASSERT_EQ(host->Save(), zephmetadata::kMetadataSavedIntoFile);
            // Saving stamps the metadata's date, as it must; all else reads back as edited.
            auto reread = LeavesOfFile(path);
            auto expected = after;
            for (auto* leaves : {&reread, &expected})
                for (auto it = leaves->begin(); it != leaves->end();)
                    it = it->first.find(" xmp:MetadataDate") != std::string::npos
                             ? leaves->erase(it)
                             : std::next(it);
            EXPECT_EQ(reread, expected);
        }
        else
        {
            EXPECT_TRUE(changed.empty()) << c.name;
            EXPECT_EQ(bytes(), bytesBefore) << c.name;
        }
        listener->clear();
    }
}

TEST_F(MetadataDialogTest, ATemplateMergesByTheChosenRuleAndTheRuleIsRemembered)
{
    WriteTemplate(TemplateFolder() + "/Harbour set.xmp",
                  "<ta:title>Template title</ta:title>"
                  "<ta:keywords><rdf:Bag><rdf:li>pier</rdf:li></rdf:Bag></ta:keywords>");
    std::string const title = std::string(kAlphaNamespace) + " ta:title";
    std::string const count = std::string(kAlphaNamespace) + " ta:count";
    struct Case
    {
        int rule;
        char const* title;
        bool countStays;
        char const* firstKeyword;
    };
    Case const cases[] = {{0, "Template title", false, "pier"},
                          {1, "Template title", true, "pier"},
                          {2, "Host title", true, "sea"}};
    for (Case const& c : cases)
    {
        auto host =
            MakeProvider("<ta:title>Host title</ta:title><ta:count>7</ta:count>"
                         "<ta:keywords><rdf:Bag><rdf:li>sea</rdf:li></rdf:Bag></ta:keywords>");
        MapSettings settings;
        ModalDriver driver;
        driver
            .Then(ModalDriver::Sequence({ChooseTemplateRow(5), ModalDriver::PressNode("OKButton")}))
            .Then(ChooseRule(c.rule));
        EXPECT_TRUE(Run(host, &settings)) << c.rule;
        auto const leaves = LeavesOf(host);
        EXPECT_EQ(leaves.count(title) ? leaves.at(title) : "", c.title) << c.rule;
        EXPECT_EQ(leaves.count(count) == 1, c.countStays) << c.rule;
        EXPECT_EQ(leaves.at(std::string(kAlphaNamespace) + " ta:keywords[1]"), c.firstKeyword);
        EXPECT_EQ(settings.ints["templateImportOptions"], c.rule);
    }

    // Applied, then cancelled: the host keeps its own.
    auto host = MakeProvider("<ta:title>Host title</ta:title>");
    auto const before = LeavesOf(host);
    ModalDriver driver;
    driver
        .Then(ModalDriver::Sequence({ChooseTemplateRow(5), ModalDriver::PressNode("CancelButton")}))
        .Then(ChooseRule(0));
    EXPECT_FALSE(Run(host));
    EXPECT_EQ(LeavesOf(host), before);
}

TEST_F(MetadataDialogTest, ExportedTemplateImportsIntoAnotherFile)
{
    QString const exported = folder.filePath(QStringLiteral("exported.xmp"));
    QString offered;
    {
        ModalDriver driver;
        driver
            .Then(ModalDriver::Sequence(
                {OnDialog([](MetadataDialog* d) { TypeIntoFirstField(d, "Shared caption"); }),
                 ChooseTemplateRow(3), ModalDriver::PressNode("CancelButton")}))
            .Then(ModalDriver::Sequence(
                {[&](QWidget* window)
                 { offered = window->findChild<QLineEdit*>("fileNameEdit")->text(); },
                 ModalDriver::ChooseFile(exported)}));
        Run(MakeProviderOf());
    }
    EXPECT_EQ(offered, QStringLiteral("clip")) << "the title up to its first dot";
    ASSERT_TRUE(QFile::exists(exported));
    auto const template_ = LeavesOfFile(exported);

    auto other = boost::make_shared<zephmetadata::FileProvider>(
        treetest::U16(CopyPhoto(QStringLiteral("other.jpg")).toStdString()));
    ModalDriver driver;
    driver.Then(ModalDriver::Sequence({ChooseTemplateRow(2), ModalDriver::PressNode("OKButton")}))
        .Then(ModalDriver::ChooseFile(exported))
        .Then(ChooseRule(1));
    EXPECT_TRUE(Run(other));
    auto const leaves = LeavesOf(other);
    bool found = false;
    for (auto const& [key, value] : leaves)
        found = found || value == "Shared caption";
    EXPECT_TRUE(found);
    EXPECT_GE(leaves.size(), template_.size());
}

TEST_F(MetadataDialogTest, TheTemplateMenuListsTheFolderAfreshAndHonoursReadOnly)
{
    struct Row
    {
        std::string text;
        bool disabled;
    };
    auto const rowsOf = [](zephui::UI_Popup* popup)
    {
        popup->BeforeShowMenu();
        std::vector<Row> rows;
        for (int i = 0; i < popup->CountItems(); ++i)
            rows.push_back({treetest::ToStd(popup->GetItemText(i)), popup->IsItemDisabled(i)});
        return rows;
    };
    std::vector<Row> empty, listed;
    ModalDriver driver;
    driver.Then(ModalDriver::Sequence(
        {OnDialog(
             [&](MetadataDialog* dialog)
             {
                 empty = rowsOf(dialog->GetTemplatePopup());
                 for (char const* name : {"a.b.xmp", "A.XMP", "a.xmpx", "notes.txt"})
                     QFile(TemplateFolder() + "/" + name).open(QIODevice::WriteOnly);
                 listed = rowsOf(dialog->GetTemplatePopup());
             }),
         ModalDriver::Escape()}));
    Run(MakeProviderOf(), nullptr, zephmetadataui::kMetadataDialogReadOnly);

    ASSERT_EQ(empty.size(), 6u);
    EXPECT_EQ(empty[5].text, "No Templates Found");
    EXPECT_TRUE(empty[5].disabled);
    EXPECT_FALSE(empty[0].disabled) << "Template Folder";
    EXPECT_TRUE(empty[2].disabled) << "Import";
    EXPECT_FALSE(empty[3].disabled) << "Export";
    ASSERT_EQ(listed.size(), 7u);
    std::set<std::string> names{listed[5].text, listed[6].text};
    EXPECT_EQ(names, (std::set<std::string>{"a.b", "A"}));
    EXPECT_TRUE(listed[5].disabled && listed[6].disabled);
}

TEST_F(MetadataDialogTest, DebugModeShowsTheErrorLogAndPreferencesSwitchItOff)
{
    zephmetadata::ClearErrors();
    for (char const* message : {"first", "second", "third"})
        zephmetadata::AddError(zephmetadata::kErrorMetadataRead, treetest::U16("photo.jpg"),
                               treetest::U16(message));
    MapSettings settings;
    settings.bools["enableDebugMode"] = true;
    float listShown = 0, listHidden = 0;
    std::vector<std::string> rows;
    ModalDriver driver;
    driver
        .Then(ModalDriver::Sequence(
            {OnDialog(
                 [&](MetadataDialog* dialog)
                 {
                     EXPECT_TRUE(dialog->GetErrorBox()->UI_IsShown());
                     listShown = dialog->GetPageList()->UI_GetLocalRectF(true).height;
                 }),
             ModalDriver::PressNode("error_image"), ModalDriver::PressNode("PreferencesButton"),
             OnDialog(
                 [&](MetadataDialog* dialog)
                 {
                     EXPECT_FALSE(dialog->GetErrorBox()->UI_IsShown());
                     listHidden = dialog->GetPageList()->UI_GetLocalRectF(true).height;
                 }),
             ModalDriver::PressNode("CancelButton")}))
        .Then(ModalDriver::Sequence(
            {[&](QWidget* window)
             {
                 auto* errors = dynamic_cast<zephmetadataui::MetadataErrorDialog*>(
                     zephui::NodeForWidget(window));
                 ASSERT_NE(errors, nullptr);
                 zephui::UI_MultiColumnTree* list = errors->GetErrorList();
                 for (std::size_t i = 0; i < list->CountTopRows(); ++i)
                     rows.push_back(treetest::ToStd(errors->CellText(list->GetTopRow(i).get(), 0)) +
                                    "|" +
                                    treetest::ToStd(errors->CellText(list->GetTopRow(i).get(), 1)));
             },
             ModalDriver::PressNode("okButtonID")}))
        .Then(ModalDriver::Sequence(
            {ModalDriver::PressNode("DebugModeCheckbox"), ModalDriver::PressNode("OKButton")}));
    Run(MakeProviderOf(), &settings);

    EXPECT_EQ(rows,
              (std::vector<std::string>{"first|photo.jpg", "second|photo.jpg", "third|photo.jpg"}));
    EXPECT_GT(listHidden, listShown + 20) << "the list takes the box's room";
    EXPECT_FALSE(settings.bools["enableDebugMode"]);
    zephmetadata::ClearErrors();
}

} // namespace
} // namespace dialogtest
