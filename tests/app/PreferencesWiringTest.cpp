// The browser's display preferences and panel conversion, driven through its
// menu items and the dialogs' modal runs, with the configuration folder in a
// temporary folder: the tree follows the chosen properties across windows,
// custom schemas made there are shown, edited and saved into files, and
// panels are converted from the folder the user chooses.

#include "PreferencesWiring.h"
#include "BrowserWindow.h"
#include "FormPanel.h"
#include "PreferencesTestSupport.h"

#include <zephmetadata/Access.h>
#include <zephmetadata/CustomDefinitions.h>
#include <zephmetadata/FileProvider.h>
#include <zephmetadata/PanelConversion.h>
#include <zephmetadata/PathDefinitions.h>
#include <zephmetadata/Values.h>
#include <zephmetadata/ViewDefinitions.h>
#include <zephmetadataui/MetadataView.h>
#include <zephmetadataui/Module.h>
#include <zephui/UI_Popup.h>
#include <zephui/UI_TextEdit.h>

#include <zephcore/QtStrings.h>

#include <boost/make_shared.hpp>

#include <QAction>
#include <QDir>
#include <QFile>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QTemporaryDir>
#include <QTest>

#include <gtest/gtest.h>

#include <cstdlib>
#include <optional>

namespace
{

using prefstest::ModalDriver;
using zephmetadata::Path;

QString const kHeadline = QStringLiteral("Boats head out as the season opens");
Path const kHeadlinePath(zephcore::ToUTF8(QStringLiteral("http://ns.adobe.com/photoshop/1.0/")),
                         zephcore::ToUTF8(QStringLiteral("Headline")));
Path const kCityPath(zephcore::ToUTF8(QStringLiteral("http://ns.adobe.com/photoshop/1.0/")),
                     zephcore::ToUTF8(QStringLiteral("City")));

std::string ValueInFile(QString const& file, Path const& path)
{
    auto provider = boost::make_shared<zephmetadata::FileProvider>(zephcore::ToUTF16(file));
    zephmetadata::MetaDataReadAccess access(provider);
    zephmetadata::UTF8String value;
    zephmetadata::GetValue(*access, path, value, nullptr);
    return zephcore::ToStdString(value);
}

zephmetadataui::SchemaDefinitionPtr SchemaLabelled(std::string const& label)
{
    for (auto const& schema : zephmetadata::CommonSchemaDefinitions())
        if (zephcore::ToStdString(schema->label) == label)
            return schema;
    return {};
}

class PreferencesWiringTest : public testing::Test
{
protected:
    void SetUp() override
    {
        ASSERT_TRUE(folder.isValid());
        if (char const* const old = std::getenv("XDG_CONFIG_HOME"))
            oldConfig = old;
        // The custom definitions and the kept preferences go here; set before
        // the library starts, which loads the custom schemas found there.
        ::setenv("XDG_CONFIG_HOME", folder.filePath("config").toUtf8().constData(), 1);
        zephmetadataui::Initialize();
        window = MakeWindow();
    }
    void TearDown() override
    {
        window.reset();
        zephmetadataui::Terminate();
        if (oldConfig)
            ::setenv("XDG_CONFIG_HOME", oldConfig->c_str(), 1);
        else
            ::unsetenv("XDG_CONFIG_HOME");
    }

    std::unique_ptr<browser::BrowserWindow> MakeWindow()
    {
        auto made = std::make_unique<browser::BrowserWindow>();
        made->SetWarningSink([this](QString const& text) { warnings << text; });
        made->SetCloseQuestion([] { return QMessageBox::Discard; });
        return made;
    }

    QString CopyPhoto()
    {
        QString const target = folder.filePath("photo.jpg");
        QFile::copy(QStringLiteral(ZEPH_SOURCE_DIR "/samples/harbour-first-light.jpg"), target);
        QFile::setPermissions(target, QFile::ReadOwner | QFile::WriteOwner);
        return target;
    }

    static void OpenAndShow(browser::BrowserWindow& shown, QString const& file)
    {
        shown.Open({file});
        shown.Loader().WaitForAll();
        ASSERT_EQ(shown.DocumentCount(), 1);
        shown.SelectFiles({0});
        // Tall enough for every schema row and a found row below the last.
        shown.resize(1280, 1600);
        shown.show();
        ASSERT_TRUE(QTest::qWaitForWindowExposed(&shown));
    }

    // Opens every schema row and narrows the tree to rows holding the text,
    // so that the rows a test wants are on screen.
    static void Find(browser::BrowserWindow& shown, QString const& text)
    {
        auto const schemas = zephmetadata::CommonSchemaDefinitions();
        shown.MetadataPanel()->SetOpenedSchemaRows({schemas.begin(), schemas.end()});
        shown.FindBox()->clear();
        QTest::keyClicks(shown.FindBox(), text);
        QCoreApplication::processEvents();
    }

    // The value fields the tree shows now.
    static std::vector<QLineEdit*> TreeFields(browser::BrowserWindow& shown)
    {
        std::vector<QLineEdit*> fields;
        QWidget* const tree = shown.MetadataPanel()->UI_GetWidget();
        if (!tree)
            return fields;
        for (QLineEdit* edit : tree->findChildren<QLineEdit*>())
            if (edit->isVisible())
                fields.push_back(edit);
        return fields;
    }

    static bool TreeShowsValue(browser::BrowserWindow& shown, QString const& value)
    {
        for (QLineEdit* edit : TreeFields(shown))
            if (edit->text() == value)
                return true;
        return false;
    }

    static bool FormShowsValue(browser::BrowserWindow& shown, QString const& value)
    {
        for (QLineEdit* edit : shown.Forms()->FormWidget()->findChildren<QLineEdit*>())
            if (edit->text() == value)
                return true;
        for (QPlainTextEdit* edit : shown.Forms()->FormWidget()->findChildren<QPlainTextEdit*>())
            if (edit->toPlainText() == value)
                return true;
        return false;
    }

    // Runs a menu item with these actions queued for the modal windows it opens.
    void RunMenuItem(browser::BrowserWindow& shown, QString const& text,
                     std::vector<ModalDriver::Action> actions)
    {
        QAction* item = nullptr;
        for (QAction* action : shown.findChildren<QAction*>())
            if (action->text() == text)
                item = action;
        ASSERT_TRUE(item) << "no menu item " << text.toStdString();
        ModalDriver driver;
        for (ModalDriver::Action& action : actions)
            driver.Then(std::move(action));
        item->trigger();
        EXPECT_EQ(driver.Pending(), 0) << "a window that was to open did not";
        EXPECT_EQ(driver.Unexpected(), 0) << "a window opened that was not expected";
        titles = driver.Titles();
    }

    QTemporaryDir folder;
    std::optional<std::string> oldConfig;
    std::unique_ptr<browser::BrowserWindow> window;
    QStringList warnings;
    std::vector<QString> titles;
};

} // namespace

TEST_F(PreferencesWiringTest, AnUntickedPropertyLeavesTheTreeAlsoInTheNextWindow)
{
    QString const photo = CopyPhoto();
    OpenAndShow(*window, photo);
    Find(*window, "headline");
    ASSERT_TRUE(TreeShowsValue(*window, kHeadline));
    ASSERT_TRUE(window->Forms()->ChoosePage(QStringLiteral("com.velmora.xmp.view.iptccore")));
    ASSERT_TRUE(FormShowsValue(*window, kHeadline));

    RunMenuItem(*window, "Pr&eferences...",
                {ModalDriver::Sequence({ModalDriver::TypeInto("search_box", "Headline"),
                                        prefstest::ClickBox("Headline"),
                                        ModalDriver::PressNode("okButton")})});
    ASSERT_EQ(titles.size(), 1u);
    EXPECT_EQ(titles[0].toStdString(), "Metadata Display");
    Find(*window, "headline");
    EXPECT_FALSE(TreeShowsValue(*window, kHeadline));
    EXPECT_FALSE(FormShowsValue(*window, kHeadline)) << "the forms follow the choice";
    EXPECT_TRUE(QFile::exists(browser::PreferencesWiring::ShownSetFile()));

    // A new window, as at the next start, shows what the user chose.
    window.reset();
    window = MakeWindow();
    window->Preferences().Restore();
    std::set<Path> shown;
    window->MetadataPanel()->GetIncludedPaths(shown);
    EXPECT_EQ(shown.count(kHeadlinePath), 0u);
    EXPECT_EQ(shown.count(kCityPath), 1u) << "only the unticked property is left out";
    OpenAndShow(*window, photo);
    Find(*window, "headline");
    EXPECT_FALSE(TreeShowsValue(*window, kHeadline));
    EXPECT_TRUE(warnings.isEmpty()) << warnings.join('\n').toStdString();
}

TEST_F(PreferencesWiringTest, ACustomPropertyMadeInPreferencesIsShownEditedAndSaved)
{
    QString const photo = CopyPhoto();
    OpenAndShow(*window, photo);
    auto const chooseText = [](QWidget* dialog)
    {
        auto* const popup =
            dynamic_cast<zephui::UI_Popup*>(prefstest::NodeIn(dialog, "columnTypePopup"));
        ASSERT_TRUE(popup);
        popup->ChooseItem(2);
    };
    RunMenuItem(
        *window, "Pr&eferences...",
        {ModalDriver::Sequence({prefstest::Press("new_schema_button"),
                                prefstest::ClickLink("Field Notes"),
                                ModalDriver::PressNode("okButton")}),
         ModalDriver::Sequence({ModalDriver::Type("Field Notes"), ModalDriver::PressButton("OK")}),
         ModalDriver::Sequence({chooseText, ModalDriver::TypeInto("nameTextEdit", "Sky"),
                                ModalDriver::PressNode("okButton")})});
    auto const schema = SchemaLabelled("Field Notes");
    ASSERT_TRUE(schema);
    Path const sky(schema->schemaNamespace, zephcore::ToUTF8(QStringLiteral("Sky")));

    Find(*window, "sky");
    std::vector<QLineEdit*> const fields = TreeFields(*window);
    ASSERT_EQ(fields.size(), 1u) << "the new property's row shows its field";
    QTest::keyClicks(fields[0], "Drizzle at dawn");
    QTest::keyClick(fields[0], Qt::Key_Return);
    ASSERT_TRUE(window->SaveAll()) << window->LastWarning().toStdString();
    EXPECT_EQ(ValueInFile(photo, sky), "Drizzle at dawn");

    // At the next start the schema file holds the property, and the value
    // reads back through it.
    window.reset();
    zephmetadataui::Terminate();
    zephmetadataui::Initialize();
    auto const reloaded = SchemaLabelled("Field Notes");
    ASSERT_TRUE(reloaded);
    ASSERT_EQ(reloaded->properties.size(), 1u);
    EXPECT_EQ(zephcore::ToStdString(reloaded->properties[0]->label), "Sky");
    EXPECT_EQ(ValueInFile(photo, sky), "Drizzle at dawn");
    window = MakeWindow();
    OpenAndShow(*window, photo);
    Find(*window, "sky");
    EXPECT_TRUE(TreeShowsValue(*window, "Drizzle at dawn"));
    EXPECT_TRUE(warnings.isEmpty()) << warnings.join('\n').toStdString();
}

TEST_F(PreferencesWiringTest, ConvertPanelsConvertsThePanelsOfTheChosenFolder)
{
    QString const panels = folder.filePath("my panels");
    ASSERT_TRUE(QDir().mkpath(panels));
    QFile panel(panels + "/notes.xml");
    ASSERT_TRUE(panel.open(QIODevice::WriteOnly));
    panel.write(R"(<panel id="notes" title="Notes" version="5">)"
                R"(<field namespace="http://purl.org/dc/elements/1.1/" name="title"/></panel>)");
    panel.close();

    std::string report;
    auto const readReport = [&report](QWidget* dialog)
    {
        auto* const text =
            dynamic_cast<zephui::UI_TextEdit*>(prefstest::NodeIn(dialog, "resultTextID"));
        ASSERT_TRUE(text);
        report = zephcore::ToStdString(text->GetValue());
    };
    auto const chooseR5 = [](QWidget* dialog)
    {
        auto* const popup =
            dynamic_cast<zephui::UI_Popup*>(prefstest::NodeIn(dialog, "versionPopupID"));
        ASSERT_TRUE(popup);
        popup->ChooseItem(3);
    };
    RunMenuItem(*window, "Con&vert Panels...",
                {ModalDriver::ChooseFile(panels),
                 ModalDriver::Sequence({chooseR5, prefstest::Press("startButtonID"), readReport,
                                        ModalDriver::PressNode("exitButtonID")})});
    EXPECT_EQ(report.rfind("Converted \"notes.xml\"", 0), 0u) << report;
    EXPECT_TRUE(zephmetadata::GetViewDefinitionForName(
        zephcore::ToUTF8(QStringLiteral("com.velmora.xmp.view.panel.notes"))));
    // Later conversions look in the usual folders again.
    EXPECT_NE(zephcore::ToQString(zephmetadata::utility::GenericPanelsDirectory(
                                      zephmetadata::utility::kSuiteVersionR5))
                  .toStdString(),
              panels.toStdString());
}
