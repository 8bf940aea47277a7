// The metadata dialog end to end: run modally over a host's provider and
// driven from inside the run as a user would, with the host's settings kept
// in memory and the user's configuration (template folder, window places) in
// a temporary folder.

#include "../tree/TreeTestSupport.h"

#include "dialogs/MetadataDialog.h"
#include "dialogs/MetadataErrorDialog.h"
#include "dialogs/MetadataTemplateImportOptionsDialog.h"

#include <zephcore/Strings.h>

#include <zephmetadata/Access.h>
#include <zephmetadata/ErrorLog.h>
#include <zephmetadata/FileProvider.h>
#include <zephmetadata/ViewDefinitions.h>
#include <zephmetadata/XmpMeta.h>

#include <zephui/ModalDriver.h>
#include <zephui/NodeWidget.h>
#include <zephui/PrefManager.h>
#include <zephui/UI_RadioGroup.h>

#include <QDir>
#include <QFile>
#include <QLineEdit>
#include <QTemporaryDir>
#include <QTest>

#include <boost/make_shared.hpp>
#include <boost/range/distance.hpp>

#include <map>

namespace
{

using treetest::kAlphaNamespace;
using treetest::MakeProvider;
using zephmetadataui::MetadataDialog;
using zephui::ModalDriver;
using Leaves = std::map<std::string, std::string>;

// The settings a host keeps, in memory.
class MapSettings : public zephmetadataui::MetadataDialogSettings
{
public:
    using Key = std::string const&;
    using List = std::vector<std::string>;
    void GetInt(Key key, int& value) override { Get(ints, key, value); }
    void GetBool(Key key, bool& value) override { Get(bools, key, value); }
    bool GetStringList(Key key, List& value) override { return Get(lists, key, value); }
    void GetString(Key key, std::string& value) override { Get(strings, key, value); }
    void SetInt(Key key, int value) override { ints[key] = value; }
    void SetBool(Key key, bool value) override { bools[key] = value; }
    void SetStringList(Key key, List const& value) override { lists[key] = value; }
    void SetString(Key key, std::string const& value) override { strings[key] = value; }

    std::map<std::string, int> ints;
    std::map<std::string, bool> bools;
    std::map<std::string, List> lists;
    std::map<std::string, std::string> strings;

private:
    template <class Map, class Value> static bool Get(Map const& map, Key key, Value& value)
    {
        auto const found = map.find(key);
        return found != map.end() ? (value = found->second, true) : false;
    }
};

// Every leaf of the host's packet but the date a save stamps, as it must:
// "namespace path" to its value.
Leaves LeavesOf(boost::shared_ptr<zephmetadata::MetaDataProvider> const& provider)
{
    zephmetadata::MetaDataReadAccess const access(provider);
    Leaves leaves;
    for (auto const& [ns, path] : zephmetadata::xmp::TopLevelProperties(*access))
        for (zephmetadata::xmp::Node const& node :
             zephmetadata::xmp::ReadSubtree(*access, ns.c_str(), path.c_str()))
            if (node.path != "xmp:MetadataDate")
                leaves[node.schemaNamespace + " " + node.path] = node.value;
    return leaves;
}

// Runs an action on the dialog itself.
ModalDriver::Action OnDialog(std::function<void(MetadataDialog*)> action)
{
    return [action](QWidget* window)
    { action(dynamic_cast<MetadataDialog*>(zephui::NodeForWidget(window))); };
}

// Types into the first field of the shown page that takes text, and commits.
ModalDriver::Action TypeIntoFirstField(QString const& text)
{
    return OnDialog(
        [text](MetadataDialog* dialog)
        {
            for (QLineEdit* field :
                 dialog->GetCurrentPage()->UI_GetWidget()->findChildren<QLineEdit*>())
                if (field->isEnabled() && !field->isReadOnly())
                {
                    field->setFocus();
                    QTest::keyClick(field, Qt::Key_A, Qt::ControlModifier);
                    zephui::TypeIntoWidget(field, text);
                    return QTest::keyClick(field, Qt::Key_Return);
                }
            ADD_FAILURE() << "no field to type into";
        });
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
        ModalDriver::PressNode("okButtonID")(window);
    };
}

class MetadataDialogTest : public treetest::TreeTest
{
protected:
    void SetUp() override
    {
        TreeTest::SetUp();
        ASSERT_TRUE(folder.isValid());
        oldConfigHome = qgetenv("XDG_CONFIG_HOME");
        qputenv("XDG_CONFIG_HOME", folder.filePath(QStringLiteral("config")).toUtf8());
        zephui::PrefManager::SetSettingsFile(
            treetest::U16(folder.filePath("places.ini").toStdString()));
    }
    void TearDown() override
    {
        qputenv("XDG_CONFIG_HOME", oldConfigHome);
        TreeTest::TearDown();
    }

    // The provider of a fresh copy of the sample photo.
    boost::shared_ptr<zephmetadata::FileProvider> PhotoProvider()
    {
        QString const path = folder.filePath(QStringLiteral("photo-%1.jpg").arg(++copies));
        QFile::copy(QString::fromStdString(treetest::SourcePath("samples/harbour-first-light.jpg")),
                    path);
        QFile(path).setPermissions(QFile::ReadOwner | QFile::WriteOwner);
        return boost::make_shared<zephmetadata::FileProvider>(treetest::U16(path.toStdString()));
    }
    QString TemplateFolder() const
    {
        return folder.filePath(QStringLiteral("config/Velmora/XMP/Metadata Templates"));
    }

    bool Run(boost::shared_ptr<zephmetadata::MetaDataProvider> const& provider,
             MapSettings* settings = nullptr, std::uint8_t flags = 0)
    {
        return zephmetadataui::DoMetadataDialog(
            provider, nullptr, {treetest::U16("clip.final.mov"), settings, {}, {}, flags});
    }

    QTemporaryDir folder;
    QByteArray oldConfigHome;
    int copies = 0;
};

TEST_F(MetadataDialogTest, PagesFollowTheSavedOrderOrTheDefaultsAndCancelKeepsPlaceAndPage)
{
    std::string const basic = "com.velmora.xmp.view.basic", gps = "com.velmora.xmp.view.gps";
    struct Case
    {
        std::vector<std::string> saved; // empty counts as absent
        std::string active;
        std::vector<std::string> first; // the pages shown first, in order
    };
    Case const cases[] = {{{gps, "gone.view", basic}, basic, {gps, basic}},
                          {{}, "no.such.view", {basic}}};
    for (Case const& c : cases)
    {
        MapSettings settings;
        settings.lists["viewList"] = c.saved;
        settings.strings["activeView"] = c.active;
        std::vector<std::string> order;
        std::string shown;
        auto const look = [&](MetadataDialog* dialog)
        {
            for (auto const& page : dialog->GetPages())
                order.push_back(zephcore::ToStdString(page->GetViewName()));
            shown = zephcore::ToStdString(dialog->GetCurrentPage()->GetViewName());
            EXPECT_FALSE(dialog->GetErrorBox()->UI_IsShown());
        };
        ModalDriver driver;
        driver.Then(ModalDriver::Sequence(
            {OnDialog(look), ClickRow(0), ModalDriver::PressNode("CancelButton")}));
        EXPECT_FALSE(Run(PhotoProvider(), &settings));

        SCOPED_TRACE(c.active);
        ASSERT_EQ(order.size(),
                  std::size_t(boost::distance(zephmetadata::CommonViewDefinitions())) + 1);
        EXPECT_EQ(std::vector<std::string>(order.begin(), order.begin() + c.first.size()), c.first);
        EXPECT_EQ(order.back(), "com.velmora.xmp.view.rawdata");
        EXPECT_EQ(shown, basic);
        // A saved list goes back as read; without one the order shown is written.
        EXPECT_EQ(settings.lists["viewList"], c.saved.empty() ? order : c.saved);
        EXPECT_EQ(settings.strings["activeView"], order[0]);
    }
    zephui::RectF place;
    EXPECT_TRUE(zephui::PrefManager::GetPrefManager()->GetWindowPositionAndSize(
        treetest::U16("MetadataDialog"), place));
    EXPECT_GE(place.width, 640);
}

TEST_F(MetadataDialogTest, OnlyOkWithAnEditHandsExactlyThatEditToTheHost)
{
    struct Case
    {
        bool edit;
        char const* button;
        bool result;
    };
    for (Case const& c : {Case{true, "CancelButton", false}, Case{false, "OKButton", false},
                          Case{true, "OKButton", true}})
    {
        SCOPED_TRACE(std::string(c.edit ? "edit, " : "") + c.button);
        auto host = PhotoProvider();
        Leaves const before = LeavesOf(host);
        int hostChanges = 0;
        auto listener = boost::make_shared<boost::function<void(__XMPMeta__*)>>([&](__XMPMeta__*)
                                                                                { ++hostChanges; });
        host->NotifyWhenMetaDataChanged(listener);

        ModalDriver::Action const type = TypeIntoFirstField("Keeper's cove");
        ModalDriver driver;
        driver.Then(ModalDriver::Sequence(
            {c.edit ? type : [](QWidget*) {}, ModalDriver::PressNode(c.button)}));
        EXPECT_EQ(Run(host), c.result);
        EXPECT_EQ(hostChanges, c.result ? 1 : 0);
        // The typed value, in whichever leaf the field shows, and nothing else.
        Leaves const after = LeavesOf(host);
        Leaves expected = before;
        for (auto const& [key, value] : after)
            if (value == "Keeper's cove")
                expected[key] = value;
        EXPECT_EQ(after, expected);
        EXPECT_EQ(after != before, c.result);
        listener->clear();
    }
}

TEST_F(MetadataDialogTest, AnExportedTemplateMergesByTheChosenRuleAndTheRuleIsRemembered)
{
    // The template: a host's packet with the dialog's unsaved edit, exported
    // into the template folder.
    QDir().mkpath(TemplateFolder());
    QString const exported = TemplateFolder() + "/Harbour set.xmp";
    QString offered;
    {
        ModalDriver driver;
        driver
            .Then(ModalDriver::Sequence({TypeIntoFirstField("Shared caption"), ChooseTemplateRow(3),
                                         ModalDriver::PressNode("CancelButton")}))
            .Then(ModalDriver::Sequence(
                {[&](QWidget* window)
                 { offered = window->findChild<QLineEdit*>("fileNameEdit")->text(); },
                 ModalDriver::ChooseFile(exported)}));
        EXPECT_FALSE(Run(
            MakeProvider("<ta:title>Template title</ta:title>"
                         "<ta:keywords><rdf:Bag><rdf:li>pier</rdf:li></rdf:Bag></ta:keywords>")));
    }
    EXPECT_EQ(offered, QStringLiteral("clip")) << "the title up to its first dot";

    std::string const ta = std::string(kAlphaNamespace) + " ta:";
    struct Case
    {
        int rule;
        bool fromMenu; // chosen from the menu's list of the folder, or by Import
        char const* title;
        bool countStays;
        char const* firstKeyword;
    };
    Case const cases[] = {{0, true, "Template title", false, "pier"},
                          {1, false, "Template title", true, "pier"},
                          {2, true, "Host title", true, "sea"}};
    for (Case const& c : cases)
    {
        SCOPED_TRACE(c.rule);
        auto host =
            MakeProvider("<ta:title>Host title</ta:title><ta:count>7</ta:count>"
                         "<ta:keywords><rdf:Bag><rdf:li>sea</rdf:li></rdf:Bag></ta:keywords>");
        MapSettings settings;
        ModalDriver driver;
        driver.Then(ModalDriver::Sequence(
            {ChooseTemplateRow(c.fromMenu ? 5 : 2), ModalDriver::PressNode("OKButton")}));
        if (!c.fromMenu)
            driver.Then(ModalDriver::ChooseFile(exported));
        driver.Then(ChooseRule(c.rule));
        EXPECT_TRUE(Run(host, &settings));
        Leaves leaves = LeavesOf(host);
        EXPECT_EQ(leaves[ta + "title"], c.title);
        EXPECT_EQ(leaves.count(ta + "count") == 1, c.countStays);
        EXPECT_EQ(leaves[ta + "keywords[1]"], c.firstKeyword);
        EXPECT_TRUE(std::any_of(leaves.begin(), leaves.end(),
                                [](auto const& leaf) { return leaf.second == "Shared caption"; }));
        EXPECT_EQ(settings.ints["templateImportOptions"], c.rule);
    }
}

TEST_F(MetadataDialogTest, TheTemplateMenuListsTheFolderAfreshAndHonoursReadOnly)
{
    // Each row as "text" or "(text)" when disabled.
    auto const rowsOf = [](zephui::UI_Popup* popup)
    {
        popup->BeforeShowMenu();
        std::vector<std::string> rows;
        for (int i = 0; i < popup->CountItems(); ++i)
        {
            std::string const text = treetest::ToStd(popup->GetItemText(i));
            rows.push_back(popup->IsItemDisabled(i) ? "(" + text + ")" : text);
        }
        return rows;
    };
    std::vector<std::string> empty, listed;
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
    Run(PhotoProvider(), nullptr, zephmetadataui::kMetadataDialogReadOnly);

    EXPECT_EQ(empty, (std::vector<std::string>{"Template Folder", "", "(Import...)", "Export...",
                                               "", "(No Templates Found)"}));
    ASSERT_EQ(listed.size(), 7u);
    EXPECT_EQ((std::set<std::string>{listed[5], listed[6]}),
              (std::set<std::string>{"(a.b)", "(A)"}));
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
    auto const measure = [](float& height, bool boxShown)
    {
        return OnDialog(
            [&height, boxShown](MetadataDialog* dialog)
            {
                EXPECT_EQ(dialog->GetErrorBox()->UI_IsShown(), boxShown);
                height = dialog->GetPageList()->UI_GetLocalRectF(true).height;
            });
    };
    std::vector<std::string> cells;
    auto const readLog = [&cells](QWidget* window)
    {
        auto* log =
            dynamic_cast<zephmetadataui::MetadataErrorDialog*>(zephui::NodeForWidget(window));
        ASSERT_NE(log, nullptr);
        for (std::size_t i = 0; i < log->GetErrorList()->CountTopRows(); ++i)
            for (int column : {0, 1})
                cells.push_back(treetest::ToStd(
                    log->CellText(log->GetErrorList()->GetTopRow(i).get(), column)));
    };
    ModalDriver driver;
    driver
        .Then(ModalDriver::Sequence(
            {measure(listShown, true), ModalDriver::PressNode("error_image"),
             ModalDriver::PressNode("PreferencesButton"), measure(listHidden, false),
             ModalDriver::PressNode("CancelButton")}))
        .Then(ModalDriver::Sequence({readLog, ModalDriver::PressNode("okButtonID")}))
        .Then(ModalDriver::Sequence(
            {ModalDriver::PressNode("DebugModeCheckbox"), ModalDriver::PressNode("OKButton")}));
    Run(PhotoProvider(), &settings);

    EXPECT_EQ(cells, (std::vector<std::string>{"first", "photo.jpg", "second", "photo.jpg", "third",
                                               "photo.jpg"}));
    EXPECT_GT(listHidden, listShown + 20) << "the list takes the box's room";
    EXPECT_FALSE(settings.bools["enableDebugMode"]);
    zephmetadata::ClearErrors();
}

} // namespace
