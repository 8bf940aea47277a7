#include "zephmetadata/CustomDefinitions.h"

#include "DefinitionRegistry.h"
#include "XmlTexts.h"
#include "zephmetadata/ErrorLog.h"
#include "zephmetadata/PathDefinitions.h"

#include <zephcore/Files.h>
#include <zephcore/Localizer.h>
#include <zephcore/QtStrings.h>

#include <QXmlStreamWriter>

namespace zephmetadata
{

using detail::Key;
using detail::Registry;
using detail::U8;

namespace
{

// Custom schemas sort behind every published one, in the order registered.
constexpr int kCustomSchemaOrder = 100000;

UTF16String TextOf(UTF16String const& key, UTF16String const& text, UTF8String& storedKey)
{
    storedKey = zephcore::UTF16to8(key);
    if (key.empty())
        return text;
    return zephcore::Localizer::Get().GetString(storedKey);
}

QString Q(UTF8String const& text)
{
    return zephcore::ToQString(text);
}

// The text a file keeps for a label: its key, or the plain text without one.
UTF8String Stored(UTF8String const& key, UTF16String const& text)
{
    return key.empty() ? zephcore::UTF16to8(text) : key;
}

} // namespace

boost::shared_ptr<SchemaDefinition>
CreateNewSchema(UTF8String const& schemaNamespace, UTF8String const& prefix,
                UTF16String const& labelKey, UTF16String const& label,
                UTF16String const& descriptionKey, UTF16String const& description)
{
    auto schema = boost::make_shared<SchemaDefinition>();
    schema->schemaNamespace = schemaNamespace;
    schema->schemaPrefix = prefix;
    detail::CustomSchemaInfo& info = Registry::Get().customInfo[Key(schemaNamespace)];
    schema->label = TextOf(labelKey, label, info.labelKey);
    schema->description = TextOf(descriptionKey, description, info.descriptionKey);
    schema->schemaText3 = schema->label;
    schema->schemaText4 = schema->description;
    schema->schemaFlag1 = true;
    return schema;
}

boost::shared_ptr<PropertyDefinition> CreateNewProperty(PrimitiveType type, UTF8String const& name,
                                                        UTF16String const& labelKey,
                                                        UTF16String const& label,
                                                        UTF16String const& descriptionKey,
                                                        UTF16String const& description)
{
    auto property = boost::make_shared<PropertyDefinition>();
    property->name = name;
    property->primitiveType = type;
    UTF8String const typeId = PrimitiveTypeAsPrimitiveTypeId(type);
    if (!typeId.empty())
        property->typeId = typeId;
    if (type == kPrimitiveOpenChoice || type == kPrimitiveClosedChoice ||
        PrimitiveTypeIsArray(type))
        property->elementTypeId = U8("text");
    property->label = TextOf(labelKey, label, property->labelKey);
    if (property->label.empty())
        property->label = zephcore::UTF8to16(name);
    property->description = TextOf(descriptionKey, description, property->descriptionKey);
    property->userAdded = true;
    return property;
}

bool RegisterSchemaDefinition(boost::shared_ptr<SchemaDefinition> const& schema,
                              UTF16String const& filePath, bool replace)
{
    if (!schema || schema->schemaNamespace.empty() || schema->schemaPrefix.empty())
        return false;
    Registry& registry = Registry::Get();
    if (auto const* existing = registry.FindSchema(Key(schema->schemaNamespace)))
    {
        if (existing->schema == schema)
            return true;
        if (!replace)
            return false;
    }
    schema->schemaPrefix =
        registry.RegisterNamespace(schema->schemaNamespace, schema->schemaPrefix);
    registry.AddSchema(schema, schema->schemaFlag1 ? kCustomSchemaOrder : kCustomSchemaOrder - 1);
    if (!filePath.empty())
        SetFilePathForSchema(filePath, schema);
    return true;
}

void SetFilePathForSchema(UTF16String const& filePath, boost::shared_ptr<SchemaDefinition> schema)
{
    if (!schema)
        return;
    Registry::Get().customInfo[Key(schema->schemaNamespace)].filePath = filePath;
}

void RewriteSchemaFile(boost::shared_ptr<SchemaDefinition> schema)
{
    if (!schema)
        return;
    detail::CustomSchemaInfo const& info = Registry::Get().customInfo[Key(schema->schemaNamespace)];
    if (info.filePath.empty())
    {
        AddError(kErrorDefinitionFile, zephcore::UTF8to16(Key(schema->schemaNamespace)),
                 zephcore::UTF8to16(std::string("the schema has no file to be written to")));
        return;
    }
    QByteArray data;
    QXmlStreamWriter xml(&data);
    xml.setAutoFormatting(true);
    xml.writeStartDocument();
    xml.writeStartElement(QStringLiteral("definitions"));
    xml.writeStartElement(QStringLiteral("schema"));
    xml.writeAttribute(QStringLiteral("namespace"), Q(schema->schemaNamespace));
    xml.writeAttribute(QStringLiteral("prefix"), Q(schema->schemaPrefix));
    if (schema->schemaFlag1)
        xml.writeAttribute(QStringLiteral("custom"), QStringLiteral("true"));
    detail::WriteText(xml, "label", Stored(info.labelKey, schema->label));
    if (!schema->description.empty() || !info.descriptionKey.empty())
        detail::WriteText(xml, "description", Stored(info.descriptionKey, schema->description));
    for (auto const& property : schema->properties)
    {
        if (!property)
            continue;
        xml.writeStartElement(QStringLiteral("property"));
        xml.writeAttribute(QStringLiteral("name"), Q(property->name));
        UTF8String typeId = property->typeId ? *property->typeId : UTF8String();
        if (typeId.empty() && property->primitiveType)
            typeId = PrimitiveTypeAsPrimitiveTypeId(*property->primitiveType);
        xml.writeAttribute(QStringLiteral("type"),
                           typeId.empty() ? QStringLiteral("text") : Q(typeId));
        if (property->elementTypeId)
            xml.writeAttribute(QStringLiteral("elementType"), Q(*property->elementTypeId));
        detail::WriteText(xml, "label", Stored(property->labelKey, property->label));
        if (!property->description.empty() || !property->descriptionKey.empty())
            detail::WriteText(xml, "description",
                              Stored(property->descriptionKey, property->description));
        if (property->minValue)
            xml.writeAttribute(QStringLiteral("min"),
                               QString::number(*property->minValue, 'g', 17));
        if (property->maxValue)
            xml.writeAttribute(QStringLiteral("max"),
                               QString::number(*property->maxValue, 'g', 17));
        if (property->userAdded)
            xml.writeAttribute(QStringLiteral("userAdded"), QStringLiteral("true"));
        for (auto const& choice : property->choices)
        {
            xml.writeStartElement(QStringLiteral("choice"));
            detail::WriteText(xml, "value", choice->value);
            detail::WriteText(xml, "label", Stored(choice->labelKey, choice->label));
            xml.writeEndElement();
        }
        xml.writeEndElement();
    }
    xml.writeEndElement();
    xml.writeEndElement();
    xml.writeEndDocument();
    zephcore::FileUtils::EnsureDirectoryExists(
        zephcore::File(info.filePath).GetParent().FullPath());
    if (!zephcore::FileUtils::SimpleWriteStringToFile(info.filePath, data.toStdString()))
        AddError(kErrorDefinitionFile, info.filePath,
                 zephcore::UTF8to16(std::string("the schema file could not be written")));
}

UTF16String CustomDefinitionsUserDirectory()
{
    UTF16String const folder = zephcore::FileUtils::BuildPathSpec(
        zephcore::Dir::GlobalPrefDir().FullPath(),
        zephcore::AsciiToUTF16("Velmora/XMP/Custom Definitions"));
    zephcore::FileUtils::EnsureDirectoryExists(folder);
    return folder;
}

} // namespace zephmetadata
