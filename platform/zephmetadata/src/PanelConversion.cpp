#include "zephmetadata/PanelConversion.h"

#include "DefinitionLoader.h"
#include "DefinitionRegistry.h"
#include "zephmetadata/CustomDefinitions.h"
#include "zephmetadata/PathDefinitions.h"

#include <zephcore/Files.h>
#include <zephcore/QtStrings.h>

#include <QDir>
#include <QFile>
#include <QXmlStreamReader>
#include <QXmlStreamWriter>

#include <set>

namespace zephmetadata
{
namespace utility
{

using detail::U8;

namespace
{

char const* GenerationName(SuiteVersion version)
{
    switch (version)
    {
    case kSuiteVersionR6:
        return "R6";
    case kSuiteVersionR5:
        return "R5";
    default:
        return "R4";
    }
}

char const* GenerationNumber(SuiteVersion version)
{
    switch (version)
    {
    case kSuiteVersionR6:
        return "6";
    case kSuiteVersionR5:
        return "5";
    default:
        return "4";
    }
}

// What a panel's field type becomes: a type id, and for lists their element.
struct FieldType
{
    char const* panelType;
    char const* typeId;
    char const* elementTypeId;
};

FieldType const kFieldTypes[] = {
    {"text", "text", nullptr},        {"integer", "integer", nullptr},
    {"real", "real", nullptr},        {"boolean", "boolean", nullptr},
    {"date", "date", nullptr},        {"url", "url", nullptr},
    {"choice", "openChoice", "text"}, {"closedChoice", "closedChoice", "text"},
    {"langAlt", "langAlt", nullptr},  {"bag", "bag", "text"},
    {"seq", "seq", "text"},
};

FieldType const* FindFieldType(std::string const& name)
{
    for (FieldType const& type : kFieldTypes)
    {
        if (name == type.panelType)
            return &type;
    }
    return nullptr;
}

struct PanelOption
{
    QString value;
    QString label;
};

// One element of a panel, read before anything is written.
struct PanelNode
{
    QString kind; // "group", "field", "static", "separator"
    QString title;
    QString schemaNamespace;
    QString prefix;
    QString name;
    QString label;
    QString description;
    QString type;
    QString lines;
    bool readOnly = false;
    std::vector<PanelOption> options;
    std::vector<PanelNode> children;
};

struct Panel
{
    QString id;
    QString title;
    QString description;
    QString version;
    std::vector<PanelNode> nodes;
};

// Groups deeper than this are refused: a hostile panel must not exhaust the stack.
constexpr int kMaxGroupDepth = 32;

bool ReadNodes(QXmlStreamReader& xml, std::vector<PanelNode>& nodes, QString& problem,
               int depth = 0)
{
    if (depth > kMaxGroupDepth)
    {
        problem = QStringLiteral("groups nested deeper than %1 levels").arg(kMaxGroupDepth);
        return false;
    }
    while (xml.readNextStartElement())
    {
        PanelNode node;
        node.kind = xml.name().toString();
        QXmlStreamAttributes const attributes = xml.attributes();
        if (node.kind == QLatin1String("group"))
        {
            node.title = attributes.value(QLatin1String("title")).toString();
            if (!ReadNodes(xml, node.children, problem, depth + 1))
                return false;
        }
        else if (node.kind == QLatin1String("field"))
        {
            node.schemaNamespace = attributes.value(QLatin1String("namespace")).toString();
            node.prefix = attributes.value(QLatin1String("prefix")).toString();
            node.name = attributes.value(QLatin1String("name")).toString();
            node.label = attributes.value(QLatin1String("label")).toString();
            node.description = attributes.value(QLatin1String("description")).toString();
            node.type = attributes.value(QLatin1String("type")).toString();
            node.lines = attributes.value(QLatin1String("lines")).toString();
            node.readOnly = attributes.value(QLatin1String("readOnly")) == QLatin1String("true");
            while (xml.readNextStartElement())
            {
                if (xml.name() == QLatin1String("option"))
                    node.options.push_back(
                        {xml.attributes().value(QLatin1String("value")).toString(),
                         xml.attributes().value(QLatin1String("label")).toString()});
                xml.skipCurrentElement();
            }
        }
        else if (node.kind == QLatin1String("static"))
        {
            node.title = attributes.value(QLatin1String("text")).toString();
            xml.skipCurrentElement();
        }
        else if (node.kind == QLatin1String("separator"))
        {
            xml.skipCurrentElement();
        }
        else
        {
            problem = QStringLiteral("unknown element <%1>").arg(node.kind);
            return false;
        }
        nodes.push_back(std::move(node));
    }
    return true;
}

bool ReadPanel(QString const& path, Panel& panel, QString& problem)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
    {
        problem = QStringLiteral("cannot be read");
        return false;
    }
    QXmlStreamReader xml(&file);
    if (!xml.readNextStartElement() || xml.name() != QLatin1String("panel"))
    {
        problem = xml.hasError() ? xml.errorString() : QStringLiteral("is not a generic panel");
        return false;
    }
    panel.id = xml.attributes().value(QLatin1String("id")).toString();
    panel.title = xml.attributes().value(QLatin1String("title")).toString();
    panel.description = xml.attributes().value(QLatin1String("description")).toString();
    panel.version = xml.attributes().value(QLatin1String("version")).toString();
    if (!ReadNodes(xml, panel.nodes, problem))
        return false;
    if (xml.hasError())
    {
        problem = QStringLiteral("line %1: %2").arg(xml.lineNumber()).arg(xml.errorString());
        return false;
    }
    return true;
}

bool IsIdentifier(QString const& text)
{
    if (text.isEmpty())
        return false;
    for (QChar c : text)
    {
        if (!(c.isLetterOrNumber() || c == QLatin1Char('_') || c == QLatin1Char('-') ||
              c == QLatin1Char('.')))
            return false;
    }
    return true;
}

// Turns panel elements into view items, and fields that no schema knows into
// properties of custom schemas.
class PanelConverter
{
public:
    explicit PanelConverter(UTF16String folder) : folder(std::move(folder)) {}

    int fields = 0;
    int skipped = 0;
    std::set<boost::shared_ptr<SchemaDefinition>> modifiedSchemas;

    void WriteNodes(QXmlStreamWriter& out, std::vector<PanelNode> const& nodes)
    {
        for (PanelNode const& node : nodes)
        {
            if (node.kind == QLatin1String("group"))
            {
                out.writeStartElement(QStringLiteral("section"));
                out.writeAttribute(QStringLiteral("type"), QStringLiteral("header"));
                if (!node.title.isEmpty())
                    out.writeAttribute(QStringLiteral("label"), node.title);
                WriteNodes(out, node.children);
                out.writeEndElement();
            }
            else if (node.kind == QLatin1String("static"))
            {
                out.writeStartElement(QStringLiteral("note"));
                out.writeAttribute(QStringLiteral("message"), node.title);
                out.writeEndElement();
            }
            else if (node.kind == QLatin1String("separator"))
            {
                out.writeEmptyElement(QStringLiteral("separator"));
            }
            else if (PrepareField(node))
            {
                ++fields;
                out.writeStartElement(QStringLiteral("item"));
                out.writeAttribute(QStringLiteral("namespace"), node.schemaNamespace);
                out.writeAttribute(QStringLiteral("property"), node.name);
                if (!node.label.isEmpty())
                    out.writeAttribute(QStringLiteral("label"), node.label);
                if (!node.description.isEmpty())
                    out.writeAttribute(QStringLiteral("description"), node.description);
                if (node.lines.toInt() > 1)
                    out.writeAttribute(QStringLiteral("multiLines"), node.lines);
                if (node.readOnly)
                    out.writeAttribute(QStringLiteral("readOnly"), QStringLiteral("true"));
                if (!node.options.empty() && knownBefore)
                    out.writeAttribute(QStringLiteral("kind"), QStringLiteral("dropdown"));
                if (knownBefore)
                {
                    for (PanelOption const& option : node.options)
                    {
                        out.writeStartElement(QStringLiteral("choice"));
                        out.writeAttribute(QStringLiteral("value"), option.value);
                        out.writeAttribute(QStringLiteral("label"),
                                           option.label.isEmpty() ? option.value : option.label);
                        out.writeEndElement();
                    }
                }
                out.writeEndElement();
            }
            else
            {
                ++skipped;
            }
        }
    }

private:
    // Makes sure the field has a definition. False when it cannot have one.
    bool PrepareField(PanelNode const& node)
    {
        knownBefore = false;
        if (node.schemaNamespace.isEmpty() || !IsIdentifier(node.name) ||
            node.name.contains(QLatin1Char('.')))
            return false;
        UTF8String const ns = zephcore::ToUTF8(node.schemaNamespace);
        UTF8String const name = zephcore::ToUTF8(node.name);
        if (PathEntryDefinition(PathForSchemaNameAndPropertyName(ns, name)))
        {
            knownBefore = true;
            return true;
        }
        FieldType const* type =
            FindFieldType(node.type.isEmpty() ? std::string("text") : node.type.toStdString());
        if (!type)
            return false;
        auto schema = NamespaceDefinition(ns);
        if (schema && !schema->schemaFlag1)
            return false; // a published schema gains no properties
        if (!schema)
        {
            QString const prefix =
                IsIdentifier(node.prefix) && !node.prefix.contains(QLatin1Char('.'))
                    ? node.prefix
                    : QStringLiteral("panel");
            UTF16String const label = zephcore::ToUTF16(prefix);
            schema = CreateNewSchema(ns, zephcore::ToUTF8(prefix), UTF16String(), label,
                                     UTF16String(), label);
            if (!RegisterSchemaDefinition(schema, UTF16String(), false))
                return false;
            UTF16String const file = zephcore::FileUtils::BuildPathSpec(
                folder, zephcore::ToUTF16(QStringLiteral("panel-schema-%1.xml")
                                              .arg(zephcore::ToQString(schema->schemaPrefix))));
            SetFilePathForSchema(file, schema);
        }
        auto property = boost::make_shared<PropertyDefinition>();
        property->name = name;
        property->typeId = U8(type->typeId);
        property->primitiveType = PrimitiveTypeIdAsPrimitiveType(U8(type->typeId));
        if (auto const definition = TypeIdDefinition(*property->typeId))
        {
            property->primitiveType = definition->primitiveType;
            property->elementTypeId = definition->elementTypeId;
        }
        if (type->elementTypeId)
            property->elementTypeId = U8(type->elementTypeId);
        property->label = zephcore::ToUTF16(node.label.isEmpty() ? node.name : node.label);
        property->description = zephcore::ToUTF16(node.description);
        property->userAdded = true;
        for (PanelOption const& option : node.options)
        {
            auto choice = boost::make_shared<ChoiceDefinition>();
            choice->value = zephcore::ToUTF8(option.value);
            choice->label = zephcore::ToUTF16(option.label.isEmpty() ? option.value : option.label);
            property->choices.push_back(choice);
        }
        schema->properties.push_back(property);
        modifiedSchemas.insert(schema);
        return true;
    }

    UTF16String folder;
    bool knownBefore = false;
};

} // namespace

namespace
{
UTF16String& ChosenPanelsDirectory()
{
    static UTF16String folder;
    return folder;
}
} // namespace

void SetGenericPanelsDirectory(UTF16String const& folder)
{
    ChosenPanelsDirectory() = folder;
}

UTF16String GenericPanelsDirectory(SuiteVersion version)
{
    if (!ChosenPanelsDirectory().empty())
        return ChosenPanelsDirectory();
    return zephcore::FileUtils::BuildPathSpec(
        zephcore::Dir::GlobalPrefDir().FullPath(),
        zephcore::AsciiToUTF16(std::string("Velmora/XMP/Generic Panels/") +
                               GenerationName(version)));
}

void LoadAndConvertGenericPanels(SuiteVersion version, UTF16String& report)
{
    LoadDefinitions();
    QString text;
    QDir const source(zephcore::ToQString(GenericPanelsDirectory(version)));
    QStringList const files = source.entryList({QStringLiteral("*.xml")}, QDir::Files, QDir::Name);
    if (files.isEmpty())
    {
        text += QStringLiteral("No %1 panels found in \"%2\".\n")
                    .arg(QLatin1String(GenerationName(version)), source.absolutePath());
        report += zephcore::ToUTF16(text);
        return;
    }
    UTF16String const target = CustomDefinitionsUserDirectory();
    for (QString const& name : files)
    {
        Panel panel;
        QString problem;
        if (!ReadPanel(source.filePath(name), panel, problem))
        {
            text += QStringLiteral("Refused \"%1\": %2.\n").arg(name, problem);
            continue;
        }
        if (panel.version != QLatin1String(GenerationNumber(version)))
        {
            text += QStringLiteral("Refused \"%1\": the panel is of version \"%2\", not %3.\n")
                        .arg(name, panel.version, QLatin1String(GenerationName(version)));
            continue;
        }
        if (!IsIdentifier(panel.id) || panel.title.isEmpty())
        {
            text +=
                QStringLiteral(
                    "Refused \"%1\": the panel needs an \"id\" of letters, digits, \"_\", \"-\" or "
                    "\".\" and a \"title\".\n")
                    .arg(name);
            continue;
        }
        QByteArray data;
        QXmlStreamWriter out(&data);
        out.setAutoFormatting(true);
        out.writeStartDocument();
        out.writeStartElement(QStringLiteral("definitions"));
        out.writeStartElement(QStringLiteral("view"));
        QString const viewId = QStringLiteral("com.velmora.xmp.view.panel.") + panel.id;
        out.writeAttribute(QStringLiteral("id"), viewId);
        out.writeAttribute(QStringLiteral("label"), panel.title);
        if (!panel.description.isEmpty())
            out.writeAttribute(QStringLiteral("description"), panel.description);
        PanelConverter converter(target);
        converter.WriteNodes(out, panel.nodes);
        out.writeEndElement();
        out.writeEndElement();
        out.writeEndDocument();
        if (converter.fields == 0)
        {
            text += QStringLiteral("Refused \"%1\": the panel has no field that can be shown.\n")
                        .arg(name);
            continue;
        }
        for (auto const& schema : converter.modifiedSchemas)
            RewriteSchemaFile(schema);
        UTF16String const output = zephcore::FileUtils::BuildPathSpec(
            target, zephcore::ToUTF16(QStringLiteral("panel-%1.xml").arg(panel.id)));
        if (!zephcore::FileUtils::SimpleWriteStringToFile(output, data.toStdString()))
        {
            text += QStringLiteral("Refused \"%1\": \"%2\" could not be written.\n")
                        .arg(name, zephcore::ToQString(output));
            continue;
        }
        LoadDefinitionFiles({output});
        text += QStringLiteral("Converted \"%1\": \"%2\" is now the view %3 in \"%4\" (%5 fields")
                    .arg(name, panel.title, viewId, zephcore::ToQString(output))
                    .arg(converter.fields);
        if (converter.skipped > 0)
            text += QStringLiteral(", %1 left out").arg(converter.skipped);
        text += QStringLiteral(").\n");
    }
    report += zephcore::ToUTF16(text);
}

} // namespace utility
} // namespace zephmetadata
