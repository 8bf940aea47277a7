// Schemas and properties of the user's own, made from the preferences
// dialog. A new schema is written and registered at once, so Cancel of the
// dialog does not undo it; changed schemas are left to the host to write.

#include "zephmetadataui/MetadataPreferencesDialog.h"

#include "preferences/PreferencesPrivate.h"
#include "zephmetadataui/AddSchemaPropertyDialog.h"
#include "zephmetadataui/XMLNames.h"

#include <zephmetadata/CustomDefinitions.h>
#include <zephui/MessageBoxes.h>

#include <boost/range/empty.hpp>

#include <iterator>

namespace zephmetadataui
{

using preferences::CustomTextKey;
using preferences::Text;

void MetadataPreferencesDialog::OnNewSchema()
{
    UTF16String name;
    UTF16String path;
    for (;;)
    {
        if (!zephui::SimpleInputBox(
                Text("$$$/zephmetadataui/dialogs/MetadataNewSchemaDialog/Title=New Schema"),
                Text("$$$/zephmetadataui/dialogs/MetadataNewSchemaDialog/InputLabel=Name:"), name,
                {}, {}, GetView().get()))
            return;
        name = zephcore::FileUtils::ReplaceIllegalFileNameCharacters(name, '-');
        if (name.empty())
            return;
        path = zephcore::FileUtils::BuildPathSpec(zephmetadata::CustomDefinitionsUserDirectory(),
                                                  name + zephcore::AsciiToUTF16(".xml"));
        if (!zephcore::FileUtils::FileExists(path))
            break;
        zephui::SimpleErrorMessageBox(
            Text("$$$/zephmetadataui/dialogs/MetadataNewSchemaDialog/SchemaFileExists/"
                 "Title=Invalid Name"),
            zephcore::ReplaceInString(
                Text("$$$/zephmetadataui/dialogs/MetadataNewSchemaDialog/SchemaFileExists/"
                     "Message=The name '@0' is already used. Please use a different name."),
                name),
            GetView().get());
    }

    // The namespace has nothing of the name, so that equal names made in two
    // places stay two schemas.
    UTF8String const prefix = zephcore::UTF16to8(GenerateXMLNameFromUnicodeString(name));
    UTF8String const schemaNamespace = zephcore::UTF16to8(
        GenerateXMLNameFromUnicodeString(zephcore::Guid::CreateUnique().AsString()));
    SchemaDefinitionPtr const schema = zephmetadata::CreateNewSchema(
        schemaNamespace, prefix, CustomTextKey(name, "schema_label", name), name,
        CustomTextKey(name, "schema_description", name), name);
    schema->schemaFlag1 = true;
    modifiedSchemas.insert(schema);
    schemas.push_back(schema);
    zephmetadata::SetFilePathForSchema(path, schema);
    zephmetadata::RewriteSchemaFile(schema);
    zephmetadata::RegisterSchemaDefinition(schema, UTF16String(), false);
    Populate();
}

void MetadataPreferencesDialog::OnAddProperty(SchemaDefinitionPtr schema)
{
    UTF16String xmlName;
    UTF16String name;
    int typeIndex = 0;
    if (!DoAddSchemaPropertyDialog(schema, xmlName, name, typeIndex, GetDrawSupplier(),
                                   GetView().get()))
        return;
    static PrimitiveType const kinds[] = {kPrimitiveInteger, kPrimitiveReal, kPrimitiveText,
                                          kPrimitiveBoolean};
    PrimitiveType const kind =
        typeIndex >= 0 && typeIndex < int(std::size(kinds)) ? kinds[typeIndex] : kPrimitiveInteger;
    PropertyDefinitionPtr const property = zephmetadata::CreateNewProperty(
        kind, zephcore::UTF16to8(xmlName), CustomTextKey(schema->label, "property_name", name),
        name, UTF16String(), UTF16String());
    if (addPropertyCallback)
        addPropertyCallback(schema, property);
    else
        schema->properties.push_back(property);
    modifiedSchemas.insert(schema);

    Path const path = zephmetadata::CreatePathFromSchemaProperty(schema, property);
    RowPtr const row = RowOfSchema(schema);
    if (!row || !propertiesTree)
        return;
    AddPropertyRow(path, row);
    // A new leaf starts shown.
    if (boost::empty(zephmetadata::ChildPaths(path)))
        includedPaths.insert(path);
    // Opened so that the user sees what was added; cells are made from here on.
    propertiesTree->OpenRow(row);
    propertiesTree->LayoutAfterAppendRow();
    UpdateRowCheckbox(row.get());
}

void MetadataPreferencesDialog::OnDeleteProperty(Path path)
{
    auto const entry = zephmetadata::PathEntryDefinition(path);
    SchemaDefinitionPtr const schema = zephmetadata::NamespaceDefinition(path.schemaNamespace);
    UTF16String const message = zephcore::ReplaceInString(
        Text("$$$/zephmetadataui/dialogs/PropertyDeleteConfirmationDialog/Message=Are you sure you "
             "want to delete the property '@0' from the schema '@1'?"),
        entry ? entry->label : UTF16String(), schema ? schema->label : UTF16String());
    if (!zephui::SimpleConfirmationBox(
            Text("$$$/zephmetadataui/dialogs/PropertyDeleteDeleteConfirmationDialog/"
                 "Title=Delete Property"),
            message,
            Text("$$$/zephmetadataui/dialogs/PropertyDeleteConfirmationDialog/"
                 "confirmButtonText=&Delete"),
            GetView().get()))
        return;

    for (auto it = propertyRows.begin(); it != propertyRows.end(); ++it)
    {
        if (it->second != path)
            continue;
        RowPtr const row = it->first;
        propertyRows.erase(it);
        if (propertiesTree)
            propertiesTree->RemoveRow(row, true, false, false);
        break;
    }
    if (boost::empty(zephmetadata::ChildPaths(path)))
        includedPaths.erase(path);
    if (!schema)
        return;
    if (removePropertyCallback)
        removePropertyCallback(schema, path);
    else
    {
        auto& properties = schema->properties;
        properties.erase(std::remove_if(properties.begin(), properties.end(),
                                        [&](PropertyDefinitionPtr const& property) {
                                            return property && property->name == path.propertyName;
                                        }),
                         properties.end());
    }
    modifiedSchemas.insert(schema);
    UpdateRowCheckbox(RowOfSchema(schema).get());
}

} // namespace zephmetadataui
