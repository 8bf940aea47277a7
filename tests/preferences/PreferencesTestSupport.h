#pragma once
// Shared ground of the display preferences' tests: the library started with
// two small test schemas, a temporary configuration folder (where custom
// schema files go) and settings folder for each test, and reading and
// acting on the dialog from inside its modal run as a user would.

#include <zephmetadataui/MetadataPreferencesDialog.h>

#include <zephmetadata/Path.h>
#include <zephui/ModalDriver.h>

#include <QString>
#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <memory>
#include <set>
#include <string>
#include <vector>

class QWidget;

namespace zephui
{
class UI_Node;
}

namespace prefstest
{

using zephmetadata::Path;
using zephmetadataui::SchemaDefinitionPtr;
using zephui::ModalDriver;
using Action = ModalDriver::Action;

SchemaDefinitionPtr Alpha();
SchemaDefinitionPtr Beta();
Path AlphaPath(std::string const& propertyName);
Path BetaPath(std::string const& propertyName);
std::string ToStd(zephcore::UTF16String const& text);
zephcore::UTF16String U16(std::string const& text);

class PreferencesTest : public ::testing::Test
{
protected:
    static void SetUpTestSuite();
    void SetUp() override;
    void TearDown() override;

    // Runs the dialog over the two test schemas (and the custom ones made),
    // with these steps on it, then OK; later actions go to nested windows.
    // Returns what DoMetadataPreferencesDialog returned.
    bool Run(std::vector<Action> steps, std::vector<Action> nested = {},
             std::set<Path> const& mandatory = {});

    QString SettingsFolder() const { return temp.filePath(QStringLiteral("settings")); }
    QString CustomFolder() const;

    QTemporaryDir temp;
    std::set<Path> included;
    std::set<SchemaDefinitionPtr> modified;
    zephcore::UTF16String settingsFolder;
    std::vector<QString> titles;
    int unexpected = 0;
};

// The node with this id below the window's dialog.
zephui::UI_Node* NodeIn(QWidget* window, std::string const& id);
// The reachable rows, one a line: two blanks per depth, "> " closed with
// children, "v " open, then "[x]", "[ ]" or "[-]", the label, " (fixed)" for
// a disabled box and " <link>" for a link's text.
std::string Dump(QWidget* window);

// Steps on the dialog.
Action ClickBox(std::string label);
Action OpenRow(std::string label);
Action ClickLink(std::string label);
Action Search(QString text);
Action Press(std::string id);
Action Choose(std::string text);
// The popup's text, the texts of its items ("(Custom)|-|Mine") and whether
// the popup and a button can be used.
std::string PopupText(QWidget* window);
std::string PopupItems(QWidget* window);
bool IsEnabled(QWidget* window, std::string const& id);

// The file names of a folder, sorted, joined by "|".
std::string FilesIn(QString const& folder);

} // namespace prefstest
