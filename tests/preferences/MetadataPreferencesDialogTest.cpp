// The display preferences dialog, run modally and driven from inside its
// run: the search, ticking with tri-state groups and mandatory paths, and
// the saved sets in a real settings folder.

#include "PreferencesTestSupport.h"
#include "ReadOnlyFolder.h"

#include <zephmetadata/PathDefinitions.h>
#include <zephmetadata/Settings.h>

#include <zephcore/QtStrings.h>

#include <QDir>
#include <QFile>
#include <QMessageBox>

using namespace prefstest;

namespace
{

// The text of a message box, read before the action that answers it.
Action ReadBox(std::string& text, Action answer)
{
    return [&text, answer](QWidget* window)
    {
        if (auto* const box = qobject_cast<QMessageBox*>(window))
            text = box->text().toStdString();
        answer(window);
    };
}

Action SaveAs(QString name)
{
    return ModalDriver::Sequence({ModalDriver::Type(name), ModalDriver::PressButton("OK")});
}

void WriteSet(QString const& path, std::set<Path> const& paths)
{
    zephmetadata::UTF8String xml;
    zephmetadata::IncludedLeafPathsAsXMLString(paths, xml);
    QFile file(path);
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    file.write(reinterpret_cast<char const*>(xml.data()), qint64(xml.size()));
}

class MetadataPreferencesDialogTest : public PreferencesTest
{
};

TEST_F(MetadataPreferencesDialogTest, SearchKeepsOnlyMatchingLeavesUnderOpenSchemas)
{
    struct Case
    {
        char const* query;
        char const* rows;
    };
    Case const cases[] = {
        {"ti", "v [ ] Tree Alpha\n"
               "    [ ] Title\n"
               "v [ ] Tree Beta\n"
               "    [ ] Beta Title\n"},
        {"HEAD", "v [ ] Tree Beta\n"
                 "    [ ] Headline\n"},
        // A hit inside a structure keeps the structure, closed.
        {"city", "v [ ] Tree Alpha\n"
                 "  > [ ] Contact\n"},
        {"nothing like it", ""},
        {"", "> [ ] Tree Alpha\n"
             "> [ ] Tree Beta\n"},
    };
    std::vector<Action> steps;
    std::vector<std::string> seen(std::size(cases));
    for (std::size_t i = 0; i < std::size(cases); ++i)
    {
        steps.push_back(Search(QString::fromUtf8(cases[i].query)));
        steps.push_back([&seen, i](QWidget* window) { seen[i] = Dump(window); });
    }
    EXPECT_TRUE(Run(steps));
    for (std::size_t i = 0; i < std::size(cases); ++i)
        EXPECT_EQ(seen[i], cases[i].rows) << "search for \"" << cases[i].query << "\"";
}

TEST_F(MetadataPreferencesDialogTest, TickingLeavesAndGroupsKeepsParentsInThreeStates)
{
    std::vector<std::string> seen;
    auto const look = [&seen](QWidget* window) { seen.push_back(Dump(window)); };
    EXPECT_TRUE(Run({OpenRow("Tree Alpha"), OpenRow("Contact"), ClickBox("City"), look,
                     // A mixed group fills up, a full one empties.
                     ClickBox("Contact"), look, ClickBox("Contact"), look, ClickBox("Title")}));
    ASSERT_EQ(seen.size(), 3u);
    EXPECT_EQ(seen[0], "v [-] Tree Alpha\n"
                       "    [ ] Approved\n"
                       "  v [-] Contact\n"
                       "      [x] City\n"
                       "      [ ] Email\n"
                       "      [ ] Phone\n"
                       "    [ ] Count\n"
                       "    [ ] Keywords\n"
                       "    [ ] Title\n"
                       "> [ ] Tree Beta\n");
    EXPECT_NE(seen[1].find("  v [x] Contact\n      [x] City\n      [x] Email\n      [x] Phone\n"),
              std::string::npos)
        << seen[1];
    EXPECT_NE(seen[2].find("  v [ ] Contact\n      [ ] City\n      [ ] Email\n      [ ] Phone\n"),
              std::string::npos)
        << seen[2];
    EXPECT_EQ(included, (std::set<Path>{AlphaPath("title")}));
}

TEST_F(MetadataPreferencesDialogTest, AMandatoryLeafStaysOnWhenItsSchemaIsSwitchedOff)
{
    included = {AlphaPath("title")};
    std::vector<std::string> seen;
    auto const look = [&seen](QWidget* window) { seen.push_back(Dump(window)); };
    EXPECT_TRUE(
        Run({OpenRow("Tree Alpha"), look, ClickBox("Tree Alpha"), ClickBox("Tree Alpha"), look}, {},
            {AlphaPath("title")}));
    ASSERT_EQ(seen.size(), 2u);
    EXPECT_NE(seen[0].find("v [-] Tree Alpha\n"), std::string::npos) << seen[0];
    for (std::string const& rows : seen)
        EXPECT_NE(rows.find("    [x] Title (fixed)\n"), std::string::npos) << rows;
    EXPECT_NE(seen[1].find("v [-] Tree Alpha\n    [ ] Approved\n"), std::string::npos) << seen[1];
    EXPECT_EQ(included, (std::set<Path>{AlphaPath("title")}));
}

TEST_F(MetadataPreferencesDialogTest, CancelLeavesTheUsersChangesInTheHostsSet)
{
    ModalDriver driver;
    driver.Then(ModalDriver::Sequence(
        {OpenRow("Tree Beta"), ClickBox("Author"), ModalDriver::PressNode("cancelButton")}));
    auto const range = zephmetadata::MakeSharedRange(std::vector<SchemaDefinitionPtr>{Beta()});
    EXPECT_FALSE(zephmetadataui::DoMetadataPreferencesDialog(
        included, nullptr, nullptr, modified, {}, {range.begin(), range.end()}, {}, {}, {}, false));
    EXPECT_EQ(included, (std::set<Path>{BetaPath("author")}));
}

TEST_F(MetadataPreferencesDialogTest, ASavedSetIsListedLoadedAndDeleted)
{
    ASSERT_TRUE(QDir().mkpath(SettingsFolder()));
    included = {AlphaPath("title")};
    std::string question;
    struct State
    {
        std::string items, text, rows;
        bool deletable = false;
    };
    std::vector<State> seen;
    auto const look = [&seen](QWidget* window)
    {
        seen.push_back({PopupItems(window), PopupText(window), Dump(window),
                        IsEnabled(window, "delete_settings_button")});
    };
    EXPECT_TRUE(Run({Press("save_settings_button"), look, OpenRow("Tree Alpha"), ClickBox("Count"),
                     look, Choose("Mine"), look, Press("delete_settings_button"), look},
                    {SaveAs(QStringLiteral("Mine")),
                     ReadBox(question, ModalDriver::PressButton(QStringLiteral("Delete")))}));
    ASSERT_EQ(seen.size(), 4u);
    // Saved: listed and chosen.
    EXPECT_EQ(seen[0].items, "(Custom)|-|Mine");
    EXPECT_EQ(seen[0].text, "Mine");
    EXPECT_TRUE(seen[0].deletable);
    // Changed: no saved set any more.
    EXPECT_EQ(seen[1].text, "(Custom)");
    EXPECT_FALSE(seen[1].deletable);
    EXPECT_NE(seen[1].rows.find("[x] Count"), std::string::npos);
    // Loaded: the boxes follow.
    EXPECT_EQ(seen[2].text, "Mine");
    EXPECT_TRUE(seen[2].deletable);
    EXPECT_NE(seen[2].rows.find("[ ] Count"), std::string::npos) << seen[2].rows;
    EXPECT_NE(seen[2].rows.find("[x] Title"), std::string::npos) << seen[2].rows;
    // Deleted, after the question.
    EXPECT_EQ(question, "Are you sure you want to delete the setting 'Mine'?");
    EXPECT_EQ(seen[3].items, "(Custom)|-");
    EXPECT_EQ(seen[3].text, "(Custom)");
    EXPECT_FALSE(seen[3].deletable);
    EXPECT_EQ(FilesIn(SettingsFolder()), "");
    EXPECT_EQ(included, (std::set<Path>{AlphaPath("title")}));
    EXPECT_EQ(unexpected, 0);
}

TEST_F(MetadataPreferencesDialogTest, TheFirstSaveMakesAMissingFolderWithItsParents)
{
    QString const deep = temp.filePath(QStringLiteral("settings/deep/er"));
    settingsFolder = zephcore::ToUTF16(deep);
    included = {BetaPath("headline")};
    std::vector<std::string> items;
    std::vector<bool> usable;
    auto const look = [&](QWidget* window)
    {
        items.push_back(PopupItems(window));
        usable.push_back(IsEnabled(window, "previous_settings_popup"));
    };
    EXPECT_TRUE(
        Run({look, Press("save_settings_button"), look}, {SaveAs(QStringLiteral("First"))}));
    EXPECT_EQ(items, (std::vector<std::string>{"(Custom)|-", "(Custom)|-|First"}));
    EXPECT_EQ(usable, (std::vector<bool>{false, true}));
    EXPECT_EQ(FilesIn(deep), "First.xmp_view_settings.xml");
    std::set<Path> back;
    EXPECT_TRUE(zephmetadata::ReadIncludedLeafPathsAsXMLFile(
        back, zephcore::ToUTF16(deep + QStringLiteral("/First.xmp_view_settings.xml"))));
    EXPECT_EQ(back, included);
}

TEST_F(MetadataPreferencesDialogTest, WithoutASettingsFolderSavedSetsCannotBeUsed)
{
    settingsFolder.clear();
    std::vector<bool> states;
    auto const look = [&states](QWidget* window)
    {
        for (char const* id :
             {"previous_settings_popup", "save_settings_button", "delete_settings_button"})
            states.push_back(IsEnabled(window, id));
    };
    EXPECT_TRUE(Run({look, OpenRow("Tree Beta"), ClickBox("Author"), look}));
    // Delete stays as the script made it until the first toggle.
    EXPECT_EQ(states, (std::vector<bool>{false, false, true, false, false, false}));
}

TEST_F(MetadataPreferencesDialogTest, DamagedFilesAndAReadOnlyFolderCostNothing)
{
    QString const folder = SettingsFolder();
    ASSERT_TRUE(QDir().mkpath(folder));
    WriteSet(folder + QStringLiteral("/Good.xmp_view_settings.xml"), {BetaPath("headline")});
    for (auto const& [name, content] :
         {std::pair{"Broken.xmp_view_settings.xml", "<xmpViewSettings version=\"1\"><path"},
          std::pair{"Empty.xmp_view_settings.xml", ""},
          std::pair{"Wrong.XMP_VIEW_SETTINGS.XML", "<xmpViewSettings version=\"1\"/>"},
          std::pair{"notes.txt", "not a set"}})
    {
        QFile file(folder + QLatin1Char('/') + QLatin1String(name));
        ASSERT_TRUE(file.open(QIODevice::WriteOnly));
        file.write(content);
    }
    std::string const before = FilesIn(folder);
    if (!zephtest::SetFolderWritable(folder.toStdString(), false))
        GTEST_SKIP() << "this file system lets every write through";

    included = {AlphaPath("title")};
    std::vector<std::string> items;
    std::vector<std::string> texts;
    auto const look = [&](QWidget* window)
    {
        items.push_back(PopupItems(window));
        texts.push_back(PopupText(window));
    };
    bool const ok = Run({look, Press("save_settings_button"), look, Choose("Good"), look},
                        {SaveAs(QStringLiteral("Other"))});
    zephtest::SetFolderWritable(folder.toStdString(), true);

    EXPECT_TRUE(ok);
    EXPECT_EQ(items, (std::vector<std::string>(3, "(Custom)|-|Good")));
    EXPECT_EQ(texts, (std::vector<std::string>{"(Custom)", "(Custom)", "Good"}));
    EXPECT_EQ(FilesIn(folder), before);
    EXPECT_EQ(included, (std::set<Path>{BetaPath("headline")}));
    EXPECT_EQ(unexpected, 0);
}

} // namespace
