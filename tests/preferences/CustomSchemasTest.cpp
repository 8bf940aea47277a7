// Schemas and properties of the user's own, made and removed through the
// preferences dialog: files in the custom definitions folder, the checks
// on names, and the keys their texts are stored under.

#include "PreferencesTestSupport.h"

#include "preferences/PreferencesPrivate.h"

#include <zephmetadataui/XMLNames.h>

#include <zephmetadata/PathDefinitions.h>

#include <zephcore/QtStrings.h>

#include <QDir>
#include <QFile>
#include <QInputDialog>
#include <QMessageBox>

using namespace prefstest;

namespace
{

class CustomSchemasTest : public PreferencesTest
{
protected:
    // The schema made in this test's configuration folder, by its label.
    SchemaDefinitionPtr Made(std::string const& label) const
    {
        for (SchemaDefinitionPtr const& schema : modified)
            if (ToStd(schema->label) == label)
                return schema;
        return {};
    }
};

// Types a name into an input box, after noting the value it offered.
Action Answer(std::vector<std::string>& offered, QString const& name)
{
    return [&offered, name](QWidget* window)
    {
        if (auto* const input = qobject_cast<QInputDialog*>(window))
            offered.push_back(input->textValue().toStdString());
        ModalDriver::Sequence({ModalDriver::Type(name), ModalDriver::PressButton("OK")})(window);
    };
}

// Notes a message box's text and closes it.
Action Note(std::vector<std::string>& texts)
{
    return [&texts](QWidget* window)
    {
        if (auto* const box = qobject_cast<QMessageBox*>(window))
            texts.push_back(box->text().toStdString());
        ModalDriver::PressButton("OK")(window);
    };
}

TEST_F(CustomSchemasTest, TextKeysEscapeEveryByteOutsidePlainAscii)
{
    struct Case
    {
        char const* schema;
        char const* kind;
        char const* text;
        char const* key;
    };
    Case const cases[] = {
        {"MyData", "schema_label", "MyData",
         "$$$/custom_xmp_schemas/MyData/schema_label/MyData=MyData"},
        {"My Data", "property_name", "Due Date",
         "$$$/custom_xmp_schemas/My20Data/property_name/Due20Date=Due Date"},
        {"S", "schema_description", "a=\"b\"\nc",
         "$$$/custom_xmp_schemas/S/schema_description/a3d22b22ac=a=\"b\"\nc"},
        {"Café", "schema_label", "~!", "$$$/custom_xmp_schemas/Cafc3a9/schema_label/~!=~!"},
    };
    for (Case const& c : cases)
        EXPECT_EQ(
            ToStd(zephmetadataui::preferences::CustomTextKey(U16(c.schema), c.kind, U16(c.text))),
            c.key);
}

TEST_F(CustomSchemasTest, ANewSchemaIsWrittenRegisteredAndShownEmptyWithItsLink)
{
    std::vector<std::string> offered;
    std::string rows;
    EXPECT_TRUE(Run({Press("new_schema_button"), [&rows](QWidget* w) { rows = Dump(w); }},
                    {Answer(offered, QStringLiteral("Field Notes"))}));
    SchemaDefinitionPtr const schema = Made("Field Notes");
    ASSERT_TRUE(schema);
    EXPECT_NE(rows.find("  [ ] Field Notes <Add Property>\n"), std::string::npos) << rows;
    EXPECT_TRUE(schema->schemaFlag1);
    EXPECT_EQ(ToStd(zephcore::UTF8to16(schema->schemaPrefix)), "Field_Notes");
    // The namespace is an XML name made from a new GUID, not the name and no URI.
    std::string const space(schema->schemaNamespace.begin(), schema->schemaNamespace.end());
    EXPECT_EQ(space.size(), 32u);
    EXPECT_EQ(space.find_first_not_of("0123456789abcdef_"), std::string::npos) << space;
    EXPECT_TRUE(zephmetadataui::VerifySimpleXMLName(U16(space)));
    EXPECT_EQ(zephmetadata::NamespaceDefinition(schema->schemaNamespace), schema);
    EXPECT_EQ(FilesIn(CustomFolder()), "Field Notes.xml");
}

TEST_F(CustomSchemasTest, ANameInUseIsRefusedAndAskedAgainCleaned)
{
    ASSERT_TRUE(QDir().mkpath(CustomFolder()));
    QFile taken(CustomFolder() + QStringLiteral("/Ta-ken.xml"));
    ASSERT_TRUE(taken.open(QIODevice::WriteOnly));
    taken.write("any schema, or none");
    taken.close();

    std::vector<std::string> offered;
    std::vector<std::string> errors;
    EXPECT_TRUE(
        Run({Press("new_schema_button")}, {Answer(offered, QStringLiteral("Ta/ken")), Note(errors),
                                           Answer(offered, QStringLiteral("Ta:ken?2"))}));
    EXPECT_EQ(offered, (std::vector<std::string>{"", "Ta-ken"}));
    EXPECT_EQ(errors, (std::vector<std::string>{
                          "The name 'Ta-ken' is already used. Please use a different name."}));
    ASSERT_EQ(titles.size(), 4u);
    EXPECT_EQ(titles[2].toStdString(), "Invalid Name");
    // Illegal characters of a file name become "-", in the file and the label.
    EXPECT_TRUE(Made("Ta-ken-2"));
    EXPECT_EQ(FilesIn(CustomFolder()), "Ta-ken-2.xml|Ta-ken.xml");
}

TEST_F(CustomSchemasTest, APropertyIsAddedTickedAndDeletedAgain)
{
    std::vector<std::string> offered;
    std::vector<std::string> rows;
    std::string question;
    auto const look = [&rows](QWidget* window) { rows.push_back(Dump(window)); };
    auto const confirm = [&question](QWidget* window)
    {
        question = qobject_cast<QMessageBox*>(window)->text().toStdString();
        ModalDriver::PressButton(QStringLiteral("Delete"))(window);
    };
    std::string key;
    auto const readKey = [this, &key](QWidget*)
    {
        SchemaDefinitionPtr const diary = Made("Diary");
        ASSERT_TRUE(diary && diary->properties.size() == 1u);
        auto const& property = *diary->properties[0];
        key = std::string(property.labelKey.begin(), property.labelKey.end()) + " " +
              std::string(property.name.begin(), property.name.end()) + " " + ToStd(property.label);
    };
    EXPECT_TRUE(Run({Press("new_schema_button"), ClickLink("Diary"), look, readKey,
                     ClickLink("Due Date"), look},
                    {Answer(offered, QStringLiteral("Diary")),
                     ModalDriver::Sequence({ModalDriver::TypeInto("nameTextEdit", "Due Date"),
                                            ModalDriver::PressNode("okButton")}),
                     confirm}));
    // Blanks stay in the label, become "_" in the XML name and 20 in the key.
    EXPECT_EQ(key,
              "$$$/custom_xmp_schemas/Diary/property_name/Due20Date=Due Date Due_Date Due Date");
    ASSERT_EQ(rows.size(), 2u);
    EXPECT_NE(rows[0].find("v [x] Diary <Add Property>\n    [x] Due Date <Delete>\n"),
              std::string::npos)
        << rows[0];
    EXPECT_EQ(question,
              "Are you sure you want to delete the property 'Due Date' from the schema 'Diary'?");
    // The schema stays, empty, with its link.
    EXPECT_NE(rows[1].find("[ ] Diary <Add Property>\n"), std::string::npos) << rows[1];
    EXPECT_EQ(rows[1].find("Due Date"), std::string::npos) << rows[1];
    SchemaDefinitionPtr const schema = Made("Diary");
    ASSERT_TRUE(schema);
    EXPECT_TRUE(schema->properties.empty());
    EXPECT_TRUE(included.empty());
}

TEST_F(CustomSchemasTest, ThePropertyNameMustBeGivenAndNewAsTyped)
{
    std::vector<std::string> offered;
    std::vector<std::string> stops;
    auto const name = [](char const* text)
    {
        return ModalDriver::Sequence(
            {ModalDriver::TypeInto("nameTextEdit", QString::fromUtf8(text)),
             ModalDriver::PressNode("okButton")});
    };
    auto const boolean = [](QWidget* window)
    {
        auto* const popup = dynamic_cast<zephui::UI_Popup*>(NodeIn(window, "columnTypePopup"));
        ASSERT_TRUE(popup);
        popup->ChooseItem(3);
    };
    EXPECT_TRUE(Run({Press("new_schema_button"), ClickLink("Log"), ClickLink("Log")},
                    {Answer(offered, QStringLiteral("Log")),
                     // Empty: refused; the dialog stays for another name.
                     ModalDriver::Sequence({boolean, name(""), name("Seen")}), Note(stops),
                     // Taken: refused; then given up.
                     ModalDriver::Sequence({name("Seen"), ModalDriver::PressNode("cancelButton")}),
                     Note(stops)}));
    EXPECT_EQ(stops, (std::vector<std::string>{
                         "The property must have a name. Please enter a unique name",
                         "The name Seen is already being used in the schema. Please re-enter a "
                         "unique property name"}));
    ASSERT_GE(titles.size(), 6u);
    EXPECT_EQ(titles[3].toStdString(), "Missing Property Name");
    EXPECT_EQ(titles[5].toStdString(), "Duplicate Property Name");
    SchemaDefinitionPtr const schema = Made("Log");
    ASSERT_TRUE(schema);
    ASSERT_EQ(schema->properties.size(), 1u);
    EXPECT_TRUE(schema->properties[0]->primitiveType == zephmetadata::kPrimitiveBoolean);
    EXPECT_EQ(unexpected, 0);
}

} // namespace
