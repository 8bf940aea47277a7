#include "PreferencesTestSupport.h"

#include <zephmetadataui/Module.h>

#include <zephmetadata/CustomDefinitions.h>
#include <zephmetadata/PathDefinitions.h>

#include <zephui/NodeWidget.h>
#include <zephui/UI_Button.h>
#include <zephui/UI_Checkbox.h>
#include <zephui/UI_MultiColumnTree.h>
#include <zephui/UI_MultiColumnTreeRow.h>
#include <zephui/UI_Popup.h>

#include <zephcore/QtStrings.h>

#include <QCheckBox>
#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QLineEdit>
#include <QPointer>
#include <QTest>

#include <cstdlib>

namespace prefstest
{

using zephui::UI_Node;

namespace
{
char const* const kAlpha = "http://ns.zeph.test/tree/alpha/";
char const* const kBeta = "http://ns.zeph.test/tree/beta/";

zephmetadata::UTF8String U8(std::string const& text)
{
    return zephmetadata::UTF8String(text.begin(), text.end());
}

UI_Node* FindNode(UI_Node* node, std::string const& id)
{
    if (!node)
        return nullptr;
    if (node->UI_GetNodeID() == id)
        return node;
    for (std::size_t i = 0; i < node->ChildCount(); ++i)
        if (UI_Node* const found = FindNode(node->ChildGet(i), id))
            return found;
    return nullptr;
}

zephui::UI_MultiColumnTree* TreeIn(QWidget* window)
{
    return dynamic_cast<zephui::UI_MultiColumnTree*>(NodeIn(window, "properties"));
}

// The controls of a row's cell, scrolled on screen first so that it is made.
template <class T> T* InCell(zephui::UI_MultiColumnTree* tree, zephui::UI_MultiColumnTreeRow* row)
{
    tree->ScrollRowIntoView(row, false, 0);
    tree->LayoutRows();
    auto const cell = row->GetCellView(0);
    if (!cell)
        return nullptr;
    for (std::size_t i = 0; i < cell->ChildCount(); ++i)
        if (auto* const found = dynamic_cast<T*>(cell->ChildGet(i)))
            return found;
    return nullptr;
}

zephui::UI_MultiColumnTree::RowPtr RowWithLabel(QWidget* window, std::string const& label)
{
    auto* const tree = TreeIn(window);
    if (!tree)
        return {};
    std::vector<zephui::UI_MultiColumnTree::RowPtr> const rows(tree->GetOpenedRows().begin(),
                                                               tree->GetOpenedRows().end());
    for (auto const& row : rows)
        if (auto* const box = InCell<zephui::UI_Checkbox>(tree, row.get()))
            if (ToStd(box->GetText()) == label)
                return row;
    ADD_FAILURE() << "no row " << label << " in\n" << Dump(window);
    return {};
}

void ClickAt(QWidget* widget, QPoint const& point)
{
    QPointer<QWidget> const guarded(widget);
    QTest::mousePress(widget, Qt::LeftButton, Qt::NoModifier, point);
    if (guarded)
        QTest::mouseRelease(guarded, Qt::LeftButton, Qt::NoModifier, point);
}
} // namespace

SchemaDefinitionPtr Alpha()
{
    return zephmetadata::NamespaceDefinition(U8(kAlpha));
}
SchemaDefinitionPtr Beta()
{
    return zephmetadata::NamespaceDefinition(U8(kBeta));
}
Path AlphaPath(std::string const& propertyName)
{
    return Path(U8(kAlpha), U8(propertyName));
}
Path BetaPath(std::string const& propertyName)
{
    return Path(U8(kBeta), U8(propertyName));
}
std::string ToStd(zephcore::UTF16String const& text)
{
    return zephcore::ToStdString(text);
}
zephcore::UTF16String U16(std::string const& text)
{
    return zephcore::UTF8to16(std::string_view(text));
}

void PreferencesTest::SetUpTestSuite()
{
    static bool started = false;
    if (started)
        return;
    started = true;
    zephmetadataui::Initialize();
    ASSERT_EQ(1, zephmetadata::LoadDefinitionFiles(
                     {U16(ZEPH_SOURCE_DIR "/tests/tree/data/tree-test-schemas.xml")}));
}

void PreferencesTest::SetUp()
{
    ASSERT_TRUE(Alpha() && Beta()) << "test schemas did not load";
    ASSERT_TRUE(temp.isValid());
    // Custom schema files go below the configuration folder.
    ::setenv("XDG_CONFIG_HOME", temp.filePath(QStringLiteral("config")).toUtf8().constData(), 1);
    settingsFolder = zephcore::ToUTF16(SettingsFolder());
}

void PreferencesTest::TearDown()
{
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
}

QString PreferencesTest::CustomFolder() const
{
    return zephcore::ToQString(zephmetadata::CustomDefinitionsUserDirectory());
}

bool PreferencesTest::Run(std::vector<Action> steps, std::vector<Action> nested,
                          std::set<Path> const& mandatory)
{
    auto const range =
        zephmetadata::MakeSharedRange(std::vector<SchemaDefinitionPtr>{Alpha(), Beta()});
    steps.push_back(ModalDriver::PressNode("okButton"));
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

UI_Node* NodeIn(QWidget* window, std::string const& id)
{
    UI_Node* node = zephui::NodeForWidget(window);
    while (node && node->UI_GetParentNode())
        node = node->UI_GetParentNode();
    return FindNode(node, id);
}

std::string Dump(QWidget* window)
{
    auto* const tree = TreeIn(window);
    if (!tree)
        return "<no tree>";
    std::string out;
    std::vector<zephui::UI_MultiColumnTree::RowPtr> const rows(tree->GetOpenedRows().begin(),
                                                               tree->GetOpenedRows().end());
    for (auto const& row : rows)
    {
        out.append(std::size_t(row->GetDepth()) * 2, ' ');
        out += row->CountChildRows() == 0 ? "  " : tree->IsRowOpen(row) ? "v " : "> ";
        auto* const box = InCell<zephui::UI_Checkbox>(tree, row.get());
        if (!box)
        {
            out += "<no cell>\n";
            continue;
        }
        char const* const marks[] = {"[ ] ", "[x] ", "[-] "};
        out += marks[box->GetValue()] + ToStd(box->GetText());
        if (box->UI_IsOwnDisabled())
            out += " (fixed)";
        if (auto* const link = InCell<zephui::UI_HotTextButton>(tree, row.get()))
            out += " <" + ToStd(link->GetText()) + ">";
        out += "\n";
    }
    return out;
}

Action ClickBox(std::string label)
{
    return [label](QWidget* window)
    {
        auto const row = RowWithLabel(window, label);
        ASSERT_TRUE(row);
        auto* const box = InCell<zephui::UI_Checkbox>(TreeIn(window), row.get());
        ASSERT_TRUE(box && box->UI_GetWidget());
        // A check box takes clicks on its box and text only: aim at the box.
        ClickAt(box->UI_GetWidget(), QPoint(8, box->UI_GetWidget()->height() / 2));
    };
}

Action OpenRow(std::string label)
{
    return [label](QWidget* window)
    {
        auto const row = RowWithLabel(window, label);
        ASSERT_TRUE(row);
        TreeIn(window)->ToggleRowByUser(row.get());
    };
}

Action ClickLink(std::string label)
{
    return [label](QWidget* window)
    {
        auto const row = RowWithLabel(window, label);
        ASSERT_TRUE(row);
        auto* const link = InCell<zephui::UI_HotTextButton>(TreeIn(window), row.get());
        ASSERT_TRUE(link && link->UI_GetWidget()) << label << " has no link";
        ClickAt(link->UI_GetWidget(), link->UI_GetWidget()->rect().center());
    };
}

Action Search(QString text)
{
    return [text](QWidget* window)
    {
        UI_Node* const box = NodeIn(window, "search_box");
        ASSERT_TRUE(box);
        auto* edit = qobject_cast<QLineEdit*>(box->UI_GetWidget());
        if (!edit && box->UI_GetWidget())
            edit = box->UI_GetWidget()->findChild<QLineEdit*>();
        ASSERT_TRUE(edit);
        edit->selectAll();
        QTest::keyClick(edit, Qt::Key_Delete);
        QTest::keyClicks(edit, text);
    };
}

Action Press(std::string id)
{
    return [id](QWidget* window)
    {
        UI_Node* const node = NodeIn(window, id);
        ASSERT_TRUE(node && node->UI_GetWidget()) << id;
        zephui::ClickWidget(node->UI_GetWidget());
    };
}

Action Choose(std::string text)
{
    return [text](QWidget* window)
    {
        auto* const popup =
            dynamic_cast<zephui::UI_Popup*>(NodeIn(window, "previous_settings_popup"));
        ASSERT_TRUE(popup);
        for (int i = 0; i < popup->CountItems(); ++i)
            if (ToStd(popup->GetItemText(i)) == text)
                return popup->ChooseItem(i);
        ADD_FAILURE() << "no item " << text << " in " << PopupItems(window);
    };
}

std::string PopupText(QWidget* window)
{
    auto* const popup = dynamic_cast<zephui::UI_Popup*>(NodeIn(window, "previous_settings_popup"));
    return popup ? ToStd(popup->GetValueString()) : "<no popup>";
}

std::string PopupItems(QWidget* window)
{
    auto* const popup = dynamic_cast<zephui::UI_Popup*>(NodeIn(window, "previous_settings_popup"));
    if (!popup)
        return "<no popup>";
    std::string out;
    for (int i = 0; i < popup->CountItems(); ++i)
        out += (i ? "|" : "") +
               (popup->IsSeparator(i) ? std::string("-") : ToStd(popup->GetItemText(i)));
    return out;
}

bool IsEnabled(QWidget* window, std::string const& id)
{
    UI_Node* const node = NodeIn(window, id);
    return node && !node->UI_IsDisabled();
}

std::string FilesIn(QString const& folder)
{
    return QDir(folder).entryList(QDir::Files, QDir::Name).join(QLatin1Char('|')).toStdString();
}

} // namespace prefstest
