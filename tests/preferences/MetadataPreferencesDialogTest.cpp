// The display preferences dialog, run modally and driven from inside its
// run: the search, ticking with tri-state groups and mandatory paths, and
// the saved sets in a real settings folder.

#include "PreferencesTestSupport.h"
#include "ReadOnlyFolder.h"

#include <zephmetadata/Settings.h>

using namespace prefstest;

namespace
{

class MetadataPreferencesDialogTest : public PreferencesTest
{
protected:
    // Notes the rows of the tree each time it runs.
    Action Look()
    {
        return [this](QWidget* window) { seen.push_back(Dump(window)); };
    }
    // Notes the saved-set controls each time it runs: the popup's items, its
    // text and which of the popup, Save and Delete can be used, as
    // "(Custom)|-|Mine > Mine +previous +save +delete".
    Action LookAtSets()
    {
        return [this](QWidget* window)
        {
            auto* const sets = NodeIn<zephui::UI_Popup>(window, "previous_settings_popup");
            ASSERT_TRUE(sets);
            std::string shown;
            for (int i = 0; i < sets->CountItems(); ++i)
                shown += (i ? "|" : "") +
                         (sets->IsSeparator(i) ? "-" : ToStdString(sets->GetItemText(i)));
            shown += " > " + ToStdString(sets->GetValueString());
            for (std::string const id :
                 {"previous_settings_popup", "save_settings_button", "delete_settings_button"})
                shown +=
                    NodeIn(window, id)->UI_IsDisabled() ? "" : " +" + id.substr(0, id.find('_'));
            seen.push_back(shown);
        };
    }
    std::vector<std::string> seen;
};

TEST_F(MetadataPreferencesDialogTest, SearchKeepsOnlyMatchingLeavesUnderOpenSchemas)
{
    struct Case
    {
        char const* query;
        char const* rows;
    };
    Case const cases[] = {
        {"ti", "v [ ] Tree Alpha\n    [ ] Title\nv [ ] Tree Beta\n    [ ] Beta Title\n"},
        {"HEAD", "v [ ] Tree Beta\n    [ ] Headline\n"},
        // A hit inside a structure keeps the structure, closed.
        {"city", "v [ ] Tree Alpha\n  > [ ] Contact\n"},
        {"nothing like it", ""},
        {"", "> [ ] Tree Alpha\n> [ ] Tree Beta\n"},
    };
    std::vector<Action> steps;
    for (Case const& c : cases)
        steps.insert(steps.end(), {ModalDriver::TypeInto("search_box", c.query), Look()});
    EXPECT_TRUE(Run(steps));
    ASSERT_EQ(seen.size(), std::size(cases));
    for (std::size_t i = 0; i < std::size(cases); ++i)
        EXPECT_EQ(seen[i], cases[i].rows) << "search for \"" << cases[i].query << "\"";
}

TEST_F(MetadataPreferencesDialogTest, TickingLeavesAndGroupsKeepsParentsInThreeStates)
{
    EXPECT_TRUE(Run({OpenRow("Tree Alpha"), OpenRow("Contact"), ClickBox("City"), Look(),
                     // A mixed group fills up, a full one empties.
                     ClickBox("Contact"), Look(), ClickBox("Contact"), Look(), ClickBox("Title")}));
    ASSERT_EQ(seen.size(), 3u);
    EXPECT_EQ(seen[0], "v [-] Tree Alpha\n    [ ] Approved\n  v [-] Contact\n      [x] City\n"
                       "      [ ] Email\n      [ ] Phone\n    [ ] Count\n    [ ] Keywords\n"
                       "    [ ] Title\n> [ ] Tree Beta\n");
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
    EXPECT_TRUE(
        Run({OpenRow("Tree Alpha"), Look(), ClickBox("Tree Alpha"), ClickBox("Tree Alpha"), Look()},
            {}, {AlphaPath("title")}));
    ASSERT_EQ(seen.size(), 2u);
    for (std::string const& rows : seen)
    {
        EXPECT_NE(rows.find("v [-] Tree Alpha\n    [ ] Approved\n"), std::string::npos) << rows;
        EXPECT_NE(rows.find("    [x] Title (fixed)\n"), std::string::npos) << rows;
    }
    EXPECT_EQ(included, (std::set<Path>{AlphaPath("title")}));
}

TEST_F(MetadataPreferencesDialogTest, CancelLeavesTheUsersChangesInTheHostsSet)
{
    EXPECT_FALSE(Run({OpenRow("Tree Beta"), ClickBox("Author")}, {}, {}, "cancelButton"));
    EXPECT_EQ(included, (std::set<Path>{BetaPath("author")}));
}

TEST_F(MetadataPreferencesDialogTest, ASavedSetIsWrittenIntoAMissingFolderListedLoadedAndDeleted)
{
    QString const deep = temp.filePath(QStringLiteral("settings/deep/er"));
    settingsFolder = zephcore::ToUTF16(deep);
    included = {AlphaPath("title")};
    std::set<Path> saved;
    auto const readSaved = [&](QWidget*)
    {
        EXPECT_EQ(FilesIn(deep), "Mine.xmp_view_settings.xml");
        EXPECT_TRUE(zephmetadata::ReadIncludedLeafPathsAsXMLFile(
            saved, zephcore::ToUTF16(deep + QStringLiteral("/Mine.xmp_view_settings.xml"))));
    };
    std::vector<std::string> questions;
    EXPECT_TRUE(Run({LookAtSets(), Press("save_settings_button"), LookAtSets(), readSaved,
                     OpenRow("Tree Alpha"), ClickBox("Count"), LookAtSets(), Look(),
                     ChooseItem("previous_settings_popup", 2), LookAtSets(), Look(),
                     Press("delete_settings_button"), LookAtSets()},
                    {Answer(QStringLiteral("Mine")), Note(questions, QStringLiteral("Delete"))}));
    EXPECT_EQ(saved, (std::set<Path>{AlphaPath("title")}));
    ASSERT_EQ(seen.size(), 7u);
    // None yet; saved: listed and chosen; changed: no saved set any more;
    // loaded: the boxes follow; deleted, after the question.
    EXPECT_EQ(seen[0], "(Custom)|- > (Custom) +save");
    EXPECT_EQ(seen[1], "(Custom)|-|Mine > Mine +previous +save +delete");
    EXPECT_EQ(seen[2], "(Custom)|-|Mine > (Custom) +previous +save");
    EXPECT_NE(seen[3].find("[x] Count"), std::string::npos) << seen[3];
    EXPECT_EQ(seen[4], seen[1]);
    EXPECT_NE(seen[5].find("[ ] Count"), std::string::npos) << seen[5];
    EXPECT_NE(seen[5].find("[x] Title"), std::string::npos) << seen[5];
    EXPECT_EQ(questions,
              std::vector<std::string>{"Are you sure you want to delete the setting 'Mine'?"});
    EXPECT_EQ(seen[6], seen[0]);
    EXPECT_EQ(FilesIn(deep), "");
    EXPECT_EQ(included, (std::set<Path>{AlphaPath("title")}));
    EXPECT_EQ(unexpected, 0);
}

TEST_F(MetadataPreferencesDialogTest, WithoutASettingsFolderSavedSetsCannotBeUsed)
{
    settingsFolder.clear();
    EXPECT_TRUE(Run({LookAtSets(), OpenRow("Tree Beta"), ClickBox("Author"), LookAtSets()}));
    // An empty popup; Delete stays as the script made it until the first toggle.
    EXPECT_EQ(seen, (std::vector<std::string>{" >  +delete", " > "}));
}

TEST_F(MetadataPreferencesDialogTest, DamagedFilesAndAReadOnlyFolderCostNothing)
{
    QString const folder = SettingsFolder();
    ASSERT_TRUE(QDir().mkpath(folder));
    zephmetadata::UTF8String good;
    zephmetadata::IncludedLeafPathsAsXMLString({BetaPath("headline")}, good);
    std::pair<char const*, std::string> const files[] = {
        {"Good.xmp_view_settings.xml", ToStdString(good)},
        {"Broken.xmp_view_settings.xml", "<xmpViewSettings version=\"1\"><path"},
        {"Empty.xmp_view_settings.xml", ""},
        {"Wrong.XMP_VIEW_SETTINGS.XML", "<xmpViewSettings version=\"1\"/>"},
        {"notes.txt", "not a set"}};
    for (auto const& [name, content] : files)
        WriteFile(folder + "/" + name, content.c_str());
    std::string const before = FilesIn(folder);
    if (!zephtest::SetFolderWritable(folder.toStdString(), false))
        GTEST_SKIP() << "this file system lets every write through";

    included = {AlphaPath("title")};
    bool const ok = Run({LookAtSets(), Press("save_settings_button"), LookAtSets(),
                         ChooseItem("previous_settings_popup", 2), LookAtSets()},
                        {Answer(QStringLiteral("Other"))});
    zephtest::SetFolderWritable(folder.toStdString(), true);

    EXPECT_TRUE(ok);
    EXPECT_EQ(seen, (std::vector<std::string>{"(Custom)|-|Good > (Custom) +previous +save",
                                              "(Custom)|-|Good > (Custom) +previous +save",
                                              "(Custom)|-|Good > Good +previous +save +delete"}));
    EXPECT_EQ(FilesIn(folder), before);
    EXPECT_EQ(included, (std::set<Path>{BetaPath("headline")}));
    EXPECT_EQ(unexpected, 0);
}

} // namespace
