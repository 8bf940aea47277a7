#include "DefinitionReader.h"

#include "DefinitionLoader.h"
#include "DefinitionRegistry.h"
#include "XmlTexts.h"
#include "zephmetadata/ErrorLog.h"
#include "zephmetadata/PathDefinitions.h"

#include <zephcore/Localizer.h>
#include <zephcore/QtStrings.h>

#include <QXmlStreamReader>

#include <unordered_set>

namespace zephmetadata
{
namespace detail
{

namespace
{

UTF8String FromQ(QStringView text)
{
    return zephcore::ToUTF8(text.toString());
}

UTF16String Localized(UTF8String const& key)
{
    return zephcore::Localizer::Get().GetString(key);
}

bool IsTrue(QStringView text)
{
    return text == u"true";
}

} // namespace

std::string KeyComponent(std::string const& text)
{
    std::string out;
    for (unsigned char c : text)
    {
        bool const keep =
            (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9');
        out.push_back(keep ? char(c) : '_');
        if (out.size() >= 48)
            break;
    }
    return out;
}

UTF8String MakeLocalizerKey(std::string const& scope, UTF8String const& text)
{
    std::string const plain = Key(text);
    if (plain.rfind("$$$/", 0) == 0)
        return text;
    return U8("$$$/" + scope + "=" + plain);
}

namespace
{

class FileReader
{
public:
    FileReader(QByteArray const& data, UTF16String const& source, bool viewsOnly)
        : xml(data), source(source), viewsOnly(viewsOnly)
    {
    }

    bool Read(FileContent& content)
    {
        if (!xml.readNextStartElement())
        {
            Report(kErrorDefinitionFile,
                   xml.hasError() ? xml.errorString().toStdString() : "the file is empty");
            return false;
        }
        if (xml.name() != u"definitions")
        {
            Report(kErrorDefinitionFile, "the root element must be <definitions>, not <" +
                                             xml.name().toString().toStdString() + ">");
            return false;
        }
        while (xml.readNextStartElement())
        {
            QStringView const name = xml.name();
            if (name == u"view")
                ReadView(content);
            else if (viewsOnly)
                xml.skipCurrentElement();
            else if (name == u"schema")
                ReadSchema(content);
            else if (name == u"type")
                ReadType(content, false);
            else if (name == u"struct")
                ReadType(content, true);
            else
                SkipUnknown();
        }
        if (xml.hasError())
        {
            Report(kErrorDefinitionFile, xml.errorString().toStdString());
            return false;
        }
        return true;
    }

private:
    Origin Here() const { return Origin{source, xml.lineNumber()}; }

    void Report(std::int32_t code, std::string const& message)
    {
        AddError(code, source,
                 zephcore::UTF8to16("line " + std::to_string(xml.lineNumber()) + ": " + message));
    }

    void SkipUnknown()
    {
        Report(kErrorDefinitionEntry,
               "unknown element <" + xml.name().toString().toStdString() + "> skipped");
        xml.skipCurrentElement();
    }

    // A text a writer could not put in XML as it is comes as "<name>Hex".
    std::string Attr(char const* name) const
    {
        UTF8String text;
        if (detail::ReadText(xml.attributes(), name, text))
            return Key(text);
        return std::string();
    }

    bool HasAttr(char const* name) const
    {
        return xml.attributes().hasAttribute(QLatin1String(name)) ||
               xml.attributes().hasAttribute(QLatin1String(name) + QLatin1String("Hex"));
    }

    void CheckAttributes(std::initializer_list<char const*> allowed)
    {
        for (auto const& attribute : xml.attributes())
        {
            bool known = false;
            for (char const* name : allowed)
                known = known || attribute.name() == QLatin1String(name) ||
                        attribute.name() == QLatin1String(name) + QLatin1String("Hex");
            if (!known)
                Report(kErrorDefinitionEntry,
                       "unknown attribute \"" + attribute.name().toString().toStdString() +
                           "\" on <" + xml.name().toString().toStdString() + "> ignored");
        }
    }

    bool ReadNumber(char const* name, boost::optional<double>& out)
    {
        if (!HasAttr(name))
            return true;
        bool ok = false;
        double const number = xml.attributes().value(QLatin1String(name)).toDouble(&ok);
        if (!ok)
        {
            Report(kErrorDefinitionEntry, std::string("\"") + name + "\" is not a number");
            return false;
        }
        out = number;
        return true;
    }

    void ReadChoice(ChoiceList& choices, std::string const& scope)
    {
        CheckAttributes({"value", "label"});
        UTF8String const value = U8(Attr("value"));
        UTF8String label = U8(Attr("label"));
        if (label.empty())
            label = value;
        auto choice = boost::make_shared<ChoiceDefinition>();
        choice->value = value;
        choice->labelKey = MakeLocalizerKey(scope + "/" + KeyComponent(Key(value)), label);
        choice->label = Localized(choice->labelKey);
        choices.push_back(choice);
        xml.skipCurrentElement();
    }

    // A text of the user's own (in a custom schema) stays plain unless it is
    // a key already: it was typed, not written for translation.
    void SetText(UTF8String& key, UTF16String& text, std::string const& scope,
                 UTF8String const& value)
    {
        if (plainTexts && Key(value).rfind("$$$/", 0) != 0)
        {
            key.clear();
            text = zephcore::UTF8to16(value);
            return;
        }
        key = MakeLocalizerKey(scope, value);
        text = Localized(key);
    }

    // Reads the attributes and choices shared by properties, fields and types.
    // `scope` is the key path of the entry's texts.
    bool ReadEntry(EntryDefinition& entry, std::string const& scope)
    {
        bool ok = true;
        std::string const type = Attr("type");
        if (!type.empty())
            entry.typeId = U8(type);
        std::string const element = Attr("elementType");
        if (!element.empty())
            entry.elementTypeId = U8(element);
        ok = ReadNumber("min", entry.minValue) && ok;
        ok = ReadNumber("max", entry.maxValue) && ok;
        UTF8String label = U8(Attr("label"));
        if (label.empty())
            label = entry.name;
        SetText(entry.labelKey, entry.label, scope, label);
        UTF8String const description = U8(Attr("description"));
        if (!description.empty())
            SetText(entry.descriptionKey, entry.description, scope + "/description", description);
        while (xml.readNextStartElement())
        {
            if (xml.name() == u"choice")
                ReadChoice(entry.choices,
                           "zephmetadata/Choice/" + scope.substr(scope.find('/') + 1));
            else
                SkipUnknown();
        }
        return ok;
    }

    void ReadType(FileContent& content, bool isStruct)
    {
        PendingType pending;
        pending.origin = Here();
        pending.isStruct = isStruct;
        pending.type = boost::make_shared<TypeDefinition>();
        std::string const id = Attr("id");
        pending.type->name = U8(id);
        pending.type->typeId = U8(id);
        if (id.empty())
        {
            Report(kErrorDefinitionEntry, "a type without \"id\" skipped");
            xml.skipCurrentElement();
            return;
        }
        std::string const scope = "zephmetadata/Type/" + KeyComponent(id);
        if (isStruct)
        {
            CheckAttributes({"id", "namespace", "prefix", "label", "description"});
            pending.structNamespace = Attr("namespace");
            pending.structPrefix = Attr("prefix");
            if (pending.structNamespace.empty() || pending.structPrefix.empty())
            {
                Report(kErrorDefinitionEntry,
                       "structure \"" + id + "\" needs \"namespace\" and \"prefix\"; skipped");
                xml.skipCurrentElement();
                return;
            }
            UTF8String label = U8(Attr("label"));
            pending.type->labelKey = MakeLocalizerKey(scope, label.empty() ? U8(id) : label);
            pending.type->label = Localized(pending.type->labelKey);
            UTF8String const description = U8(Attr("description"));
            if (!description.empty())
            {
                pending.type->descriptionKey =
                    MakeLocalizerKey(scope + "/description", description);
                pending.type->description = Localized(pending.type->descriptionKey);
            }
            pending.type->typeId = U8(id);
            while (xml.readNextStartElement())
            {
                if (xml.name() != u"field")
                {
                    SkipUnknown();
                    continue;
                }
                CheckAttributes({"name", "type", "elementType", "label", "description", "min",
                                 "max", "namespace", "prefix"});
                PendingEntry field;
                field.origin = Here();
                auto definition = boost::make_shared<FieldDefinition>();
                definition->name = U8(Attr("name"));
                definition->fieldNamespace =
                    U8(HasAttr("namespace") ? Attr("namespace") : pending.structNamespace);
                definition->fieldPrefix =
                    U8(HasAttr("prefix") ? Attr("prefix") : pending.structPrefix);
                bool const ok =
                    ReadEntry(*definition, scope + "/" + KeyComponent(Key(definition->name)));
                if (definition->name.empty())
                {
                    Report(kErrorDefinitionEntry,
                           "a field of \"" + id + "\" without \"name\" skipped");
                    continue;
                }
                if (!ok)
                    continue;
                field.entry = definition;
                pending.fields.push_back(field);
            }
            content.types.push_back(std::move(pending));
            return;
        }
        CheckAttributes(
            {"id", "base", "primitive", "elementType", "label", "description", "min", "max"});
        pending.base = Attr("base");
        std::string const primitive = Attr("primitive");
        if (!primitive.empty())
        {
            pending.stated = PrimitiveTypeIdAsPrimitiveType(U8(primitive));
            if (!pending.stated)
            {
                Report(kErrorDefinitionEntry,
                       "type \"" + id + "\": unknown primitive \"" + primitive + "\"; skipped");
                xml.skipCurrentElement();
                return;
            }
        }
        else if (pending.base.empty())
        {
            Report(kErrorDefinitionEntry,
                   "type \"" + id + "\" needs \"base\" or \"primitive\"; skipped");
            xml.skipCurrentElement();
            return;
        }
        // The type's own typeId names the type itself; ReadEntry would read
        // "type", which a type does not have.
        if (!ReadEntry(*pending.type, scope))
            return;
        pending.type->typeId = U8(id);
        content.types.push_back(std::move(pending));
    }

    void ReadSchema(FileContent& content)
    {
        CheckAttributes({"namespace", "prefix", "label", "description", "sectionLabel",
                         "sectionDescription", "order", "custom"});
        PendingSchema pending;
        pending.origin = Here();
        auto schema = boost::make_shared<SchemaDefinition>();
        schema->schemaNamespace = U8(Attr("namespace"));
        schema->schemaPrefix = U8(Attr("prefix"));
        schema->schemaFlag1 = IsTrue(xml.attributes().value(QLatin1String("custom")));
        plainTexts = schema->schemaFlag1;
        if (schema->schemaNamespace.empty() || schema->schemaPrefix.empty())
        {
            Report(kErrorDefinitionEntry, "a schema needs \"namespace\" and \"prefix\"; skipped");
            xml.skipCurrentElement();
            return;
        }
        if (HasAttr("order"))
        {
            bool ok = false;
            pending.order = xml.attributes().value(QLatin1String("order")).toInt(&ok);
            if (!ok)
            {
                Report(kErrorDefinitionEntry, "\"order\" is not a whole number");
                pending.order = 1000;
            }
        }
        std::string const prefix = KeyComponent(Key(schema->schemaPrefix));
        std::string const scope = "zephmetadata/Schema/" + prefix;
        UTF8String label = U8(Attr("label"));
        if (label.empty())
            label = schema->schemaPrefix;
        SetText(pending.labelKey, schema->label, scope, label);
        UTF8String const description = U8(Attr("description"));
        if (!description.empty())
            SetText(pending.descriptionKey, schema->description, scope + "/_description",
                    description);
        UTF8String const sectionLabel = U8(Attr("sectionLabel"));
        schema->schemaText3 = sectionLabel.empty()
                                  ? schema->label
                                  : Localized(MakeLocalizerKey(scope + "/_section", sectionLabel));
        UTF8String const sectionDescription = U8(Attr("sectionDescription"));
        schema->schemaText4 =
            sectionDescription.empty()
                ? schema->description
                : Localized(MakeLocalizerKey(scope + "/_sectionDescription", sectionDescription));
        std::unordered_set<std::string> names;
        while (xml.readNextStartElement())
        {
            if (xml.name() != u"property")
            {
                SkipUnknown();
                continue;
            }
            CheckAttributes(
                {"name", "type", "elementType", "label", "description", "min", "max", "userAdded"});
            PendingEntry property;
            property.origin = Here();
            auto definition = boost::make_shared<PropertyDefinition>();
            definition->name = U8(Attr("name"));
            definition->userAdded = IsTrue(xml.attributes().value(QLatin1String("userAdded")));
            bool const ok =
                ReadEntry(*definition, scope + "/" + KeyComponent(Key(definition->name)));
            if (definition->name.empty())
            {
                Report(kErrorDefinitionEntry, "a property without \"name\" skipped");
                continue;
            }
            if (!names.insert(Key(definition->name)).second)
            {
                Report(kErrorDefinitionEntry,
                       "property \"" + Key(definition->name) + "\" defined twice; skipped");
                continue;
            }
            if (!ok)
                continue;
            property.entry = definition;
            pending.properties.push_back(property);
        }
        plainTexts = false;
        pending.schema = schema;
        content.schemas.push_back(std::move(pending));
    }

    void ReadView(FileContent& content)
    {
        CheckAttributes({"id", "label", "description", "hideEmptyValues"});
        PendingView pending;
        pending.origin = Here();
        auto view = boost::make_shared<ViewDefinition>();
        view->name = U8(Attr("id"));
        if (view->name.empty())
        {
            Report(kErrorDefinitionEntry, "a view without \"id\" skipped");
            xml.skipCurrentElement();
            return;
        }
        std::string const id = Key(view->name);
        viewScope = "zephmetadata/View/" + KeyComponent(id.substr(id.rfind('.') + 1));
        view->label =
            MakeLocalizerKey(viewScope + "/_label", U8(Attr("label").empty() ? id : Attr("label")));
        if (HasAttr("description"))
            view->description =
                MakeLocalizerKey(viewScope + "/_description", U8(Attr("description")));
        view->hideEmptyValues = IsTrue(xml.attributes().value(QLatin1String("hideEmptyValues")));
        pending.view = view;
        while (xml.readNextStartElement())
        {
            if (auto item = ReadItem(pending))
                view->items.push_back(item);
        }
        content.views.push_back(std::move(pending));
    }

    // Hints whose values are texts for the user, and so localiser keys.
    static bool IsTextHint(QStringView name)
    {
        return name == u"message" || name == u"hint" || name == u"format" || name == u"separator";
    }

    void SetHint(ViewItem& item, QStringView name, QStringView value)
    {
        UTF8String text = FromQ(value);
        if (IsTextHint(name))
            text = MakeLocalizerKey(viewScope + "/" + name.toString().toStdString() + "/" +
                                        KeyComponent(Key(text)),
                                    text);
        item.hints[FromQ(name)] = text;
    }

    boost::shared_ptr<ViewItem> ReadItem(PendingView& pending, int depth = 0)
    {
        QStringView const kind = xml.name();
        boost::shared_ptr<ViewItem> item;
        if (depth >= kMaxNesting)
        {
            Report(kErrorDefinitionEntry,
                   "items nested deeper than " + std::to_string(kMaxNesting) + " levels skipped");
            xml.skipCurrentElement();
            return {};
        }
        if (kind == u"item")
        {
            item = boost::make_shared<ViewItem>();
            item->format = FromQ(xml.attributes().value(QLatin1String("kind")));
            std::string const property = Attr("property");
            if (!property.empty())
                pending.paths.push_back(PendingItemPath{item, property, Attr("namespace"), Here()});
        }
        else if (kind == u"section" || kind == u"note" || kind == u"formatter" ||
                 kind == u"separator" || kind == u"schema")
        {
            item = boost::make_shared<ViewItem>(FromQ(kind));
        }
        else
        {
            SkipUnknown();
            return {};
        }
        for (auto const& attribute : xml.attributes())
        {
            QStringView const name = attribute.name();
            if (name == u"label")
            {
                UTF8String const text = FromQ(attribute.value());
                item->label = MakeLocalizerKey(viewScope + "/" + KeyComponent(Key(text)), text);
            }
            else if (name == u"description")
            {
                UTF8String const text = FromQ(attribute.value());
                item->description =
                    MakeLocalizerKey(viewScope + "/description/" + KeyComponent(Key(text)), text);
            }
            else if (kind == u"item" &&
                     (name == u"property" || name == u"namespace" || name == u"kind"))
            {
                continue;
            }
            else
            {
                SetHint(*item, name, attribute.value());
            }
        }
        while (xml.readNextStartElement())
        {
            if (xml.name() == u"hint")
            {
                SetHint(*item, xml.attributes().value(QLatin1String("name")),
                        xml.attributes().value(QLatin1String("value")));
                xml.skipCurrentElement();
            }
            else if (xml.name() == u"choice")
            {
                ReadChoice(item->choices, viewScope);
            }
            else if (auto child = ReadItem(pending, depth + 1))
            {
                item->AddItem(child);
            }
        }
        return item;
    }

    QXmlStreamReader xml;
    UTF16String source;
    bool viewsOnly = false;
    bool plainTexts = false;
    std::string viewScope;
};

} // namespace

bool ReadDefinitionFile(QByteArray const& data, UTF16String const& source, bool viewsOnly,
                        FileContent& content)
{
    FileReader reader(data, source, viewsOnly);
    return reader.Read(content);
}

} // namespace detail
} // namespace zephmetadata
