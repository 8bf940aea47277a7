// The browser's display preferences, driven through its menu item and the
// dialogs' modal runs, with the configuration folder in a temporary folder:
// the tree follows the chosen properties across windows, and custom schemas
// made there are shown, edited and saved into files. (Panel conversion: the
// metadata tests convert, the preferences tests drive its dialog. A custom
// schema written and loaded again: the metadata tests.)

#include "PreferencesWiring.h"
#include "BrowserFixture.h"
#include "PreferencesTestSupport.h"

namespace
{

using namespace browsertest;

class PreferencesWiringTest : public BrowserFixture
{
protected:
    // Opens the photo, selected, with the tree narrowed to rows holding the text.
    void OpenAndFind(QString const& photo, QString const& text)
    {
        Open({photo});
        window->SelectFiles({0});
        Find(text);
    }
    // Runs a menu item with these actions queued for the modal windows it opens.
    void RunMenuItem(QString const& text, std::vector<ModalDriver::Action> actions)
    {
        ModalDriver driver;
        for (ModalDriver::Action& action : actions)
            driver.Then(std::move(action));
        Trigger(text);
        EXPECT_EQ(driver.Pending(), 0) << "a window that was to open did not";
        EXPECT_EQ(driver.Unexpected(), 0) << "a window opened that was not expected";
    }
};

TEST_F(PreferencesWiringTest, AnUntickedPropertyLeavesTheTreeAlsoInTheNextWindow)
{
    QString const photo = CopySample("harbour-first-light.jpg");
    OpenAndFind(photo, "headline");
    ASSERT_TRUE(TreeField(kHeadline));
    ASSERT_TRUE(window->Forms()->ChoosePage(QStringLiteral("com.velmora.xmp.view.iptccore")));
    ASSERT_TRUE(FormField(kHeadline));

    RunMenuItem("Pr&eferences...",
                {ModalDriver::Sequence({ModalDriver::TypeInto("search_box", "Headline"),
                                        prefstest::ClickBox("Headline"),
                                        ModalDriver::PressNode("okButton")})});
    Find("headline");
    EXPECT_FALSE(TreeField(kHeadline));
    EXPECT_FALSE(FormField(kHeadline)) << "the forms follow the choice";
    EXPECT_TRUE(QFile::exists(browser::PreferencesWiring::ShownSetFile()));

    // A new window, as at the next start, shows what the user chose.
    window = MakeWindow();
    window->Preferences().Restore();
    std::set<Path> shown;
    window->MetadataPanel()->GetIncludedPaths(shown);
    EXPECT_EQ(shown.count(kHeadlinePath), 0u);
    EXPECT_EQ(shown.count(Path(U8("http://ns.adobe.com/photoshop/1.0/"), U8("City"))), 1u)
        << "only the unticked property is left out";
    EXPECT_TRUE(warnings.isEmpty()) << warnings.join('\n').toStdString();
}

TEST_F(PreferencesWiringTest, ACustomPropertyMadeInPreferencesIsShownEditedAndSaved)
{
    QString const photo = CopySample("harbour-first-light.jpg");
    OpenAndFind(photo, "");
    RunMenuItem("Pr&eferences...",
                {ModalDriver::Sequence({prefstest::Press("new_schema_button"),
                                        prefstest::ClickLink("Field Notes"),
                                        ModalDriver::PressNode("okButton")}),
                 prefstest::Answer("Field Notes"),
                 ModalDriver::Sequence({prefstest::ChooseItem("columnTypePopup", 2), // text
                                        prefstest::NameProperty("Sky")})});
    zephmetadataui::SchemaDefinitionPtr schema;
    for (auto const& made : zephmetadata::CommonSchemaDefinitions())
        schema = zephcore::ToStdString(made->label) == "Field Notes" ? made : schema;
    ASSERT_TRUE(schema) << "the new schema is registered";
    Path const sky(schema->schemaNamespace, U8("Sky"));

    Find("sky");
    QLineEdit* const field = TreeField("");
    ASSERT_TRUE(field) << "the new property's row shows its field";
    TypeOver(field, "Drizzle at dawn");
    ASSERT_TRUE(window->SaveAll()) << window->LastWarning().toStdString();
    EXPECT_EQ(ValueInFile(photo, sky), "Drizzle at dawn");

    EXPECT_TRUE(warnings.isEmpty()) << warnings.join('\n').toStdString();
}

} // namespace
