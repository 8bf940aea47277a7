// Renders the display preferences, add-property and panel conversion dialogs
// to PNGs, for a person to look at:
//     tools/screenshots/zeph-preferences-dialogs OUTPUT_FOLDER
// The dialogs run as a user would meet them: a search with mixed boxes, the
// form for a new property of a new schema, and a finished conversion. Custom
// schema files go into a temporary configuration folder.

#include <zephmetadataui/MetadataPreferencesDialog.h>
#include <zephmetadataui/Module.h>
#include <zephmetadataui/PanelConversionDialog.h>

#include <zephmetadata/PathDefinitions.h>

#include <zephui/ModalDriver.h>
#include <zephui/NodeWidget.h>
#include <zephui/UI_Button.h>
#include <zephui/UI_MultiColumnTree.h>
#include <zephui/UI_MultiColumnTreeRow.h>
#include <zephui/UI_Popup.h>

#include <zephcore/QtStrings.h>

#include "ScreenshotSetup.h"

#include <QApplication>
#include <QDir>
#include <QLineEdit>
#include <QTemporaryDir>

#include <cstdio>
#include <cstdlib>

using zephui::ModalDriver;
using zephui::UI_Node;

namespace
{

UI_Node* In(QWidget* window, std::string const& id)
{
    UI_Node const* root = zephui::NodeForWidget(window);
    return root ? root->UI_ChildGetFromID(id) : nullptr;
}

ModalDriver::Action Shoot(QString path)
{
    return [path](QWidget* window)
    {
        QApplication::processEvents();
        if (!window->grab().save(path))
            std::fprintf(stderr, "could not write %s\n", qPrintable(path));
    };
}

// Opens every top row that has children, so that hits and boxes show.
ModalDriver::Action OpenTopRows()
{
    return [](QWidget* window)
    {
        auto* const tree = dynamic_cast<zephui::UI_MultiColumnTree*>(In(window, "properties"));
        for (std::size_t i = 0; tree && i < tree->CountTopRows(); ++i)
            tree->OpenRow(tree->GetTopRow(i));
        if (tree)
            tree->LayoutRows();
    };
}

ModalDriver::Action Search(QString text)
{
    return [text](QWidget* window)
    {
        if (UI_Node* const box = In(window, "search_box"))
            if (auto* const edit = qobject_cast<QLineEdit*>(box->UI_GetWidget()))
                zephui::TypeIntoWidget(edit, text);
    };
}

ModalDriver::Action Click(std::string id)
{
    return [id](QWidget* window)
    {
        if (UI_Node* const node = In(window, id))
            zephui::ClickWidget(node->UI_GetWidget());
    };
}

} // namespace

int main(int argc, char** argv)
{
    screenshots::UseOffscreenUnlessTold();
    QApplication app(argc, argv);
    std::optional<QDir> const output = screenshots::OutputFolder(argc, argv);
    if (!output)
        return 2;
    QDir const& out = *output;
    QTemporaryDir config;
    ::setenv("XDG_CONFIG_HOME", config.path().toUtf8().constData(), 1);
    zephmetadataui::Initialize();
    zephmetadata::LoadDefinitions();

    // Preferences: a saved set, then a search over dates, where a schema
    // with some of its dates shown stands mixed.
    {
        auto const schemas = zephmetadata::CommonSchemaDefinitions();
        auto const path = [](zephmetadata::StandardSchema schema, char const* name)
        {
            return zephmetadata::PathForSchemaNameAndPropertyName(
                zephmetadata::StandardSchemaNamespace(schema),
                zephmetadata::UTF8String(reinterpret_cast<unsigned char const*>(name)));
        };
        std::set<zephmetadata::Path> included{
            path(zephmetadata::kStandardSchemaPhotoshop, "DateCreated"),
            path(zephmetadata::kStandardSchemaEXIF, "DateTimeOriginal")};
        std::set<zephmetadataui::SchemaDefinitionPtr> modified;
        ModalDriver driver;
        driver
            .Then(ModalDriver::Sequence(
                {Click("save_settings_button"), Search(QStringLiteral("date")), OpenTopRows(),
                 Shoot(out.filePath(QStringLiteral("preferences-dialog.png"))),
                 ModalDriver::PressNode("cancelButton")}))
            .Then(ModalDriver::Sequence(
                {ModalDriver::Type(QStringLiteral("Dates")), ModalDriver::PressButton("OK")}));
        zephmetadataui::DoMetadataPreferencesDialog(
            included, nullptr, nullptr, modified,
            zephcore::ToUTF16(config.filePath(QStringLiteral("settings"))),
            {schemas.begin(), schemas.end()}, {}, {}, {}, false);
    }

    // Add property: a new schema, then its link.
    {
        std::set<zephmetadata::Path> included;
        std::set<zephmetadataui::SchemaDefinitionPtr> modified;
        std::vector<zephmetadataui::SchemaDefinitionPtr> none;
        auto const range = zephmetadata::MakeSharedRange(none);
        ModalDriver driver;
        driver
            .Then(ModalDriver::Sequence(
                {Click("new_schema_button"),
                 [](QWidget* window)
                 {
                     auto* const tree =
                         dynamic_cast<zephui::UI_MultiColumnTree*>(In(window, "properties"));
                     auto const row = tree ? tree->GetTopRow(0) : nullptr;
                     auto const cell = row ? row->GetCellView(0) : nullptr;
                     for (std::size_t i = 0; cell && i < cell->ChildCount(); ++i)
                         if (auto* link =
                                 dynamic_cast<zephui::UI_HotTextButton*>(cell->ChildGet(i)))
                             zephui::ClickWidget(link->UI_GetWidget());
                 },
                 ModalDriver::PressNode("cancelButton")}))
            .Then(ModalDriver::Sequence(
                {ModalDriver::Type(QStringLiteral("Field Notes")), ModalDriver::PressButton("OK")}))
            .Then(ModalDriver::Sequence(
                {Shoot(out.filePath(QStringLiteral("add-property-dialog.png"))),
                 ModalDriver::PressNode("cancelButton")}));
        zephmetadataui::DoMetadataPreferencesDialog(included, nullptr, nullptr, modified, {},
                                                    {range.begin(), range.end()}, {}, {}, {},
                                                    false);
    }

    // Panel conversion: a version chosen and converted.
    {
        zephmetadataui::sharedui::PanelConversionDialogPtr const dialog(
            new zephmetadataui::sharedui::PanelConversionDialog(nullptr, nullptr));
        ModalDriver driver;
        driver.Then(ModalDriver::Sequence(
            {[](QWidget* window)
             {
                 if (auto* popup = dynamic_cast<zephui::UI_Popup*>(In(window, "versionPopupID")))
                     popup->ChooseItem(2);
             },
             Click("startButtonID"),
             Shoot(out.filePath(QStringLiteral("panel-conversion-dialog.png"))),
             Click("exitButtonID")}));
        dialog->RunModal();
    }
    zephmetadataui::Terminate();
    return 0;
}
