// Renders the metadata browser with its Preferences dialog over it, and the
// browser's tree showing the schema made there, to PNGs for a person to look
// at:
//     tools/screenshots/browser-preferences-screenshots OUTPUT_FOLDER
// The dialog runs as a user meets it: a new schema, then a property added
// through its link. Custom schema files go into a temporary configuration
// folder.

#include "BrowserWindow.h"

#include <zephmetadata/PathDefinitions.h>
#include <zephmetadataui/MetadataSectionView.h>
#include <zephmetadataui/MetadataView.h>
#include <zephmetadataui/Module.h>
#include <zephmetadataui/TriSectionSplitterView.h>

#include <zephui/ModalDriver.h>
#include <zephui/NodeWidget.h>
#include <zephui/UI_Button.h>
#include <zephui/UI_Popup.h>

#include <zephcore/QtStrings.h>

#include "ScreenshotSetup.h"
#include <QAction>

#include <QApplication>
#include <QDir>
#include <QLineEdit>
#include <QPainter>
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

// The first link below the node, with this text, made on screen.
zephui::UI_HotTextButton* Link(UI_Node* node, std::string const& text)
{
    if (!node)
        return nullptr;
    if (auto* const link = dynamic_cast<zephui::UI_HotTextButton*>(node))
        if (zephcore::ToStdString(link->GetText()) == text && link->UI_GetWidget())
            return link;
    for (std::size_t i = 0; i < node->ChildCount(); ++i)
        if (auto* const found = Link(node->ChildGet(i), text))
            return found;
    return nullptr;
}

bool Save(QPixmap const& picture, QString const& path)
{
    if (picture.save(path))
        return true;
    std::fprintf(stderr, "could not write %s\n", qPrintable(path));
    return false;
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
    bool ok = true;
    {
        browser::BrowserWindow window;
        window.resize(1280, 900);
        window.Open({QStringLiteral(ZEPH_SOURCE_DIR "/samples/harbour-first-light.jpg")});
        window.Loader().WaitForAll();
        window.SelectFiles({0});
        window.show();

        QAction* preferences = nullptr;
        for (QAction* action : window.findChildren<QAction*>())
            if (action->text() == QStringLiteral("Pr&eferences..."))
                preferences = action;
        if (!preferences)
            return 1;

        ModalDriver driver;
        auto const shootOverBrowser = [&window, &out, &ok](QWidget* dialog)
        {
            QApplication::processEvents();
            QPixmap picture = window.grab();
            QPixmap const over = dialog->grab();
            QPainter painter(&picture);
            QPoint const corner((picture.width() - over.width()) / 2,
                                (picture.height() - over.height()) / 2);
            painter.fillRect(QRect(corner + QPoint(4, 4), over.size()), QColor(0, 0, 0, 60));
            painter.drawPixmap(corner, over);
            painter.end();
            ok = Save(picture, out.filePath(QStringLiteral("browser-preferences.png"))) && ok;
        };
        driver
            .Then(ModalDriver::Sequence(
                {[](QWidget* dialog)
                 {
                     if (UI_Node* const button = In(dialog, "new_schema_button"))
                         zephui::ClickWidget(button->UI_GetWidget());
                 },
                 [](QWidget* dialog)
                 {
                     if (auto* const link = Link(In(dialog, "properties"), "Add Property"))
                         zephui::ClickWidget(link->UI_GetWidget());
                 },
                 shootOverBrowser, ModalDriver::PressNode("okButton")}))
            .Then(ModalDriver::Sequence(
                {ModalDriver::Type(QStringLiteral("Field Notes")), ModalDriver::PressButton("OK")}))
            .Then(ModalDriver::Sequence(
                {[](QWidget* dialog)
                 {
                     if (auto* popup =
                             dynamic_cast<zephui::UI_Popup*>(In(dialog, "columnTypePopup")))
                         popup->ChooseItem(2);
                 },
                 ModalDriver::TypeInto("nameTextEdit", QStringLiteral("Sky")),
                 ModalDriver::PressNode("okButton")}));
        preferences->trigger();

        // The tree with the new schema open and a value in its property.
        std::set<zephmetadataui::MetadataView::SchemaPtr> opened;
        for (auto const& schema : zephmetadata::CommonSchemaDefinitions())
            if (zephcore::ToStdString(schema->label) == "Field Notes")
                opened.insert(schema);
        window.MetadataPanel()->SetOpenedSchemaRows(opened);
        // The form closed, so the tree has the height for every schema row.
        window.Panels()->GetSectionView(1)->SetOpened(false);
        QApplication::processEvents();
        for (QLineEdit* edit : window.MetadataPanel()->UI_GetWidget()->findChildren<QLineEdit*>())
            if (edit->isVisible())
                edit->setText(QStringLiteral("Drizzle at dawn"));
        ok = Save(window.grab(), out.filePath(QStringLiteral("browser-custom-schema.png"))) && ok;
        window.SetCloseQuestion([] { return QMessageBox::Discard; });
    }
    zephmetadataui::Terminate();
    std::printf("%s %s\n", ok ? "Screenshots written to" : "Could not write screenshots to",
                qPrintable(out.absolutePath()));
    return ok ? 0 : 1;
}
