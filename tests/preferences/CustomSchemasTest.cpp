// Schemas and properties of the user's own, made and removed through the
// preferences dialog: files in the custom definitions folder, the checks
// on names, and the keys their texts are stored under.

#include "PreferencesTestSupport.h"

#include "preferences/PreferencesPrivate.h"

#include <zephmetadataui/XMLNames.h>

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
            if (ToStdString(schema->label) == label)
                return schema;
        return {};
    }
};

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
        {"S", "schema_description", "a=\"b\"\nc",
         "$$$/custom_xmp_schemas/S/schema_description/a3d22b22ac=a=\"b\"\nc"},
        {"Café", "schema_label", "~!", "$$$/custom_xmp_schemas/Cafc3a9/schema_label/~!=~!"},
    };
    for (Case const& c : cases)
        EXPECT_EQ(ToStdString(zephmetadataui::preferences::CustomTextKey(
                      zephcore::UTF8to16(c.schema), c.kind, zephcore::UTF8to16(c.text))),
                  c.key);
}

TEST_F(CustomSchemasTest, ANewSchemaIsWrittenAndRegisteredAndTakesAndLosesAProperty)
{
    std::vector<std::string> rows, questions;
    auto const look = [&rows](QWidget* window) { rows.push_back(Dump(window)); };
    std::string key;
    auto const readKey = [this, &key](QWidget*)
    {
        SchemaDefinitionPtr const notes = Made("Field Notes");
        ASSERT_TRUE(notes && notes->properties.size() == 1u);
        auto const& made = *notes->properties[0];
        key = ToStdString(made.labelKey) + " " + ToStdString(made.name) + " " +
              ToStdString(made.label);
    };
    EXPECT_TRUE(Run({Press("new_schema_button"), look, ClickLink("Field Notes"), look, readKey,
                     ClickLink("Due Date"), look},
                    {Answer(QStringLiteral("Field Notes")), NameProperty("Due Date"),
                     Note(questions, QStringLiteral("Delete"))}));
    SchemaDefinitionPtr const schema = Made("Field Notes");
    ASSERT_TRUE(schema);
    EXPECT_TRUE(schema->schemaFlag1);
    EXPECT_EQ(ToStdString(schema->schemaPrefix), "Field_Notes");
    // The namespace is an XML name made from a new GUID, not the name and no URI.
    std::string const space = ToStdString(schema->schemaNamespace);
    EXPECT_TRUE(space.size() == 32u &&
                space.find_first_not_of("0123456789abcdef_") == std::string::npos)
        << space;
    EXPECT_TRUE(zephmetadataui::VerifySimpleXMLName(zephcore::UTF8to16(space)));
    EXPECT_EQ(zephmetadata::NamespaceDefinition(schema->schemaNamespace), schema);
    EXPECT_EQ(FilesIn(CustomFolder()), "Field Notes.xml");

    // Blanks stay in the label, become "_" in the XML name and 20 in the key.
    EXPECT_EQ(key, "$$$/custom_xmp_schemas/Field20Notes/property_name/Due20Date=Due Date "
                   "Due_Date Due Date");
    ASSERT_EQ(rows.size(), 3u);
    EXPECT_NE(rows[0].find("  [ ] Field Notes <Add Property>\n"), std::string::npos) << rows[0];
    EXPECT_NE(rows[1].find("v [x] Field Notes <Add Property>\n    [x] Due Date <Delete>\n"),
              std::string::npos)
        << rows[1];
    EXPECT_EQ(questions, std::vector<std::string>{"Are you sure you want to delete the property "
                                                  "'Due Date' from the schema 'Field Notes'?"});
    EXPECT_EQ(rows[2], rows[0]) << "the schema stays, empty, with its link";
    EXPECT_TRUE(schema->properties.empty());
    EXPECT_TRUE(included.empty());
}

TEST_F(CustomSchemasTest, NamesInUseOrMissingAreRefusedAndAskedAgain)
{
    WriteFile(CustomFolder() + "/Ta-ken.xml", "any schema, or none");
    std::vector<std::string> offered, stops;
    EXPECT_TRUE(
        Run({Press("new_schema_button"), ClickLink("Ta-ken-2"), ClickLink("Ta-ken-2")},
            {Answer(QStringLiteral("Ta/ken"), &offered), Note(stops),
             Answer(QStringLiteral("Ta:ken?2"), &offered),
             // Empty: refused; the dialog stays for another name. A yes/no property.
             ModalDriver::Sequence(
                 {ChooseItem("columnTypePopup", 3), NameProperty(""), NameProperty("Seen")}),
             Note(stops),
             // Taken: refused; then given up.
             ModalDriver::Sequence({NameProperty("Seen"), ModalDriver::PressNode("cancelButton")}),
             Note(stops)}));
    // A schema's name is offered again cleaned: illegal characters of a file
    // name become "-", in the file and the label.
    EXPECT_EQ(offered, (std::vector<std::string>{"", "Ta-ken"}));
    EXPECT_EQ(stops, (std::vector<std::string>{
                         "The name 'Ta-ken' is already used. Please use a different name.",
                         "The property must have a name. Please enter a unique name",
                         "The name Seen is already being used in the schema. Please re-enter a "
                         "unique property name"}));
    ASSERT_EQ(titles.size(), 8u);
    std::vector<std::string> const refusals{titles[2].toStdString(), titles[5].toStdString(),
                                            titles[7].toStdString()};
    EXPECT_EQ(refusals, (std::vector<std::string>{"Invalid Name", "Missing Property Name",
                                                  "Duplicate Property Name"}));
    EXPECT_EQ(FilesIn(CustomFolder()), "Ta-ken-2.xml|Ta-ken.xml");
    SchemaDefinitionPtr const schema = Made("Ta-ken-2");
    ASSERT_TRUE(schema);
    ASSERT_EQ(schema->properties.size(), 1u);
    EXPECT_TRUE(schema->properties[0]->primitiveType == zephmetadata::kPrimitiveBoolean);
    EXPECT_EQ(unexpected, 0);
}

} // namespace
