#pragma once
// Shared ground of the display preferences' tests (and the browser's): the
// library started with two small test schemas, temporary configuration and
// settings folders, and acting on the dialogs inside their modal runs.

#include "../tree/TreeTestSupport.h"

#include <zephmetadataui/MetadataPreferencesDialog.h>
#include <zephmetadataui/Module.h>

#include <zephmetadata/CustomDefinitions.h>
#include <zephmetadata/Path.h>
#include <zephmetadata/PathDefinitions.h>

#include <zephui/ModalDriver.h>
#include <zephui/NodeWidget.h>
#include <zephui/PrefManager.h>
#include <zephui/UI_Button.h>
#include <zephui/UI_Checkbox.h>
#include <zephui/UI_MultiColumnTree.h>
#include <zephui/UI_MultiColumnTreeRow.h>
#include <zephui/UI_Popup.h>

#include <zephcore/QtStrings.h>
#include <zephcore/Strings.h>

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QInputDialog>
#include <QLineEdit>
#include <QMessageBox>
#include <QPointer>
#include <QString>
#include <QTemporaryDir>
#include <QTest>

#include <gtest/gtest.h>

#include <cstdlib>
#include <set>
#include <string>
#include <utility>
#include <vector>

namespace prefstest
{

using treetest::Alpha;
using treetest::AlphaPath;
using treetest::Beta;
using treetest::BetaPath;
using zephcore::ToStdString;
using zephmetadata::Path;
using zephmetadataui::SchemaDefinitionPtr;
using zephui::ModalDriver;
using Action = ModalDriver::Action;
using Tree = zephui::UI_MultiColumnTree;

class PreferencesTest : public treetest::TreeTest
{
protected:
    void SetUp() override
    {
        TreeTest::SetUp();
        ASSERT_TRUE(Alpha() && Beta()) << "test schemas did not load";
        ASSERT_TRUE(temp.isValid());
        // Custom schema files go below the configuration folder.
        ::setenv("XDG_CONFIG_HOME", temp.filePath("config").toUtf8().constData(), 1);
        settingsFolder = zephcore::ToUTF16(SettingsFolder());
        // Windows keep their places here.
        zephui::PrefManager::SetSettingsFile(zephcore::ToUTF16(temp.filePath("places.ini")));
        zephui::PrefManager::GetPrefManager(true);
    }

    QString SettingsFolder() const { return temp.filePath(QStringLiteral("settings")); }
    static QString CustomFolder()
    {
        return zephcore::ToQString(zephmetadata::CustomDefinitionsUserDirectory());
    }

    // Runs the dialog over the two test schemas (and the custom ones made),
    // with these steps on it, then presses OK or the given button; later
    // actions go to nested windows. Returns what the dialog's run returned.
    bool Run(std::vector<Action> steps, std::vector<Action> nested = {},
             std::set<Path> const& mandatory = {}, char const* close = "okButton")
    {
        auto const range =
            zephmetadata::MakeSharedRange(std::vector<SchemaDefinitionPtr>{Alpha(), Beta()});
        steps.push_back(ModalDriver::PressNode(close));
        ModalDriver driver;
        driver.Then(ModalDriver::Sequence(std::move(steps)));
        for (Action& action : nested)
            driver.Then(std::move(action));
        bool const ok = zephmetadataui::DoMetadataPreferencesDialog(
            included, nullptr, nullptr, modified, settingsFolder, {range.begin(), range.end()},
            mandatory, {}, {}, false);
        titles = driver.Titles();
        unexpected = driver.Unexpected();
        return ok;
    }

    QTemporaryDir temp;
    std::set<Path> included;
    std::set<SchemaDefinitionPtr> modified;
    zephcore::UTF16String settingsFolder;
    std::vector<QString> titles;
    int unexpected = 0;
};

// The node with this id below the window's dialog, as this class.
template <class T = zephui::UI_Node> T* NodeIn(QWidget* window, std::string const& id)
{
    zephui::UI_Node const* const dialog = zephui::NodeForWidget(window);
    return dynamic_cast<T*>(dialog ? dialog->UI_ChildGetFromID(id) : nullptr);
}

// The control of this class in a row's cell, scrolled on screen first so that
// it is made.
template <class T> T* InCell(Tree* tree, Tree::RowPtr const& row)
{
    tree->ScrollRowIntoView(row.get(), false, 0);
    tree->LayoutRows();
    auto const cell = row->GetCellView(0);
    for (std::size_t i = 0; cell && i < cell->ChildCount(); ++i)
        if (auto* const found = dynamic_cast<T*>(cell->ChildGet(i)))
            return found;
    return nullptr;
}

// The reachable rows, one a line: two blanks per depth, "> " closed with
// children, "v " open, then "[x]", "[ ]" or "[-]", the label, " (fixed)" for
// a disabled box and " <link>" for a link's text.
inline std::string Dump(QWidget* window)
{
    std::string out;
    Tree* const tree = NodeIn<Tree>(window, "properties");
    for (Tree::RowPtr const& row : tree ? tree->GetOpenedRows() : Tree::OpenedRowList())
    {
        out.append(std::size_t(row->GetDepth()) * 2, ' ');
        out += row->CountChildRows() == 0 ? "  " : tree->IsRowOpen(row) ? "v " : "> ";
        auto* const box = InCell<zephui::UI_Checkbox>(tree, row);
        char const* const marks[] = {"[ ] ", "[x] ", "[-] "};
        out += box ? marks[box->GetValue()] + ToStdString(box->GetText()) : "<no cell>";
        if (box && box->UI_IsOwnDisabled())
            out += " (fixed)";
        if (auto* const link = InCell<zephui::UI_HotTextButton>(tree, row))
            out += " <" + ToStdString(link->GetText()) + ">";
        out += "\n";
    }
    return out;
}

// An action on the row of the tree with this label: on the tree, the row and
// the control of this class in the row's cell.
template <class T, class Act> Action OnRow(std::string label, Act act)
{
    return [label, act](QWidget* window)
    {
        Tree* const tree = NodeIn<Tree>(window, "properties");
        ASSERT_TRUE(tree);
        for (Tree::RowPtr const& row : Tree::OpenedRowList(tree->GetOpenedRows()))
            if (auto* const box = InCell<zephui::UI_Checkbox>(tree, row);
                box && ToStdString(box->GetText()) == label)
            {
                auto* const control = InCell<T>(tree, row);
                ASSERT_TRUE(control && control->UI_GetWidget()) << label;
                return act(tree, row, control->UI_GetWidget());
            }
        ADD_FAILURE() << "no row " << label << " in\n" << Dump(window);
    };
}

// A click at this point of a widget that the press may delete.
inline void ClickAt(QWidget* widget, QPoint const& point)
{
    QPointer<QWidget> const guarded(widget);
    QTest::mousePress(widget, Qt::LeftButton, Qt::NoModifier, point);
    if (guarded)
        QTest::mouseRelease(guarded, Qt::LeftButton, Qt::NoModifier, point);
}

// A check box takes clicks on its box and text only: aim at the box.
inline Action ClickBox(std::string label)
{
    return OnRow<zephui::UI_Checkbox>(label, [](Tree*, Tree::RowPtr const&, QWidget* box)
                                      { ClickAt(box, QPoint(8, box->height() / 2)); });
}

inline Action OpenRow(std::string label)
{
    return OnRow<zephui::UI_Checkbox>(label, [](Tree* tree, Tree::RowPtr const& row, QWidget*)
                                      { tree->ToggleRowByUser(row.get()); });
}

inline Action ClickLink(std::string label)
{
    return OnRow<zephui::UI_HotTextButton>(label, [](Tree*, Tree::RowPtr const&, QWidget* link)
                                           { ClickAt(link, link->rect().center()); });
}

inline Action Press(std::string id)
{
    return [id](QWidget* window)
    {
        auto* const node = NodeIn(window, id);
        ASSERT_TRUE(node && node->UI_GetWidget()) << id;
        zephui::ClickWidget(node->UI_GetWidget());
    };
}

// Chooses the item at this row of the popup with this id.
inline Action ChooseItem(std::string id, int row)
{
    return [id, row](QWidget* window)
    {
        auto* const popup = NodeIn<zephui::UI_Popup>(window, id);
        ASSERT_TRUE(popup) << id;
        popup->ChooseItem(row);
    };
}

// Types a name into an input box and presses OK, after noting the value it
// offered.
inline Action Answer(QString const& name, std::vector<std::string>* offered = nullptr)
{
    return [offered, name](QWidget* window)
    {
        if (auto* const input = qobject_cast<QInputDialog*>(window); input && offered)
            offered->push_back(input->textValue().toStdString());
        ModalDriver::Sequence({ModalDriver::Type(name), ModalDriver::PressButton("OK")})(window);
    };
}

// Names the property in the dialog that adds one to a custom schema, and
// presses OK.
inline Action NameProperty(QString const& name)
{
    return ModalDriver::Sequence(
        {ModalDriver::TypeInto("nameTextEdit", name), ModalDriver::PressNode("okButton")});
}

// Notes a message box's text and answers it with this button.
inline Action Note(std::vector<std::string>& texts, QString const& button = QStringLiteral("OK"))
{
    return [&texts, button](QWidget* window)
    {
        if (auto* const box = qobject_cast<QMessageBox*>(window))
            texts.push_back(box->text().toStdString());
        ModalDriver::PressButton(button)(window);
    };
}

inline void WriteFile(QString const& path, QByteArray const& content)
{
    ASSERT_TRUE(QDir().mkpath(QFileInfo(path).path()));
    QFile file(path);
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    file.write(content);
}

// The file names of a folder, sorted, joined by "|".
inline std::string FilesIn(QString const& folder)
{
    return QDir(folder).entryList(QDir::Files, QDir::Name).join(QLatin1Char('|')).toStdString();
}

} // namespace prefstest
