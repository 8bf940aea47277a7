#include "DefinitionLoader.h"

#include "DefinitionRegistry.h"
#include "zephmetadata/ErrorLog.h"
#include "zephmetadata/PathDefinitions.h"

#include <zephcore/Localizer.h>
#include <zephcore/QtStrings.h>

#include <QFile>
#include <QXmlStreamReader>

#include <functional>
#include <set>
#include <unordered_map>
#include <unordered_set>

namespace zephmetadata {
namespace detail {

namespace {

UTF8String FromQ(QStringView text)
{
    return zephcore::ToUTF8(text.toString());
}

UTF16String Localized(UTF8String const& key)
{
    return zephcore::Localizer::Get().GetString(key);
}

// Where an entry came from, for the error log.
struct Origin {
    UTF16String source;
    qint64 line = 0;
};

struct PendingEntry {
    boost::shared_ptr<PropertyDefinition> entry;
    Origin origin;
};

struct PendingType {
    boost::shared_ptr<TypeDefinition> type;
    std::string base;                      // for derived simple types
    boost::optional<PrimitiveType> stated; // primitive="..."
    bool isStruct = false;
    std::string structNamespace;
    std::string structPrefix;
    std::vector<PendingEntry> fields;
    Origin origin;
};

struct PendingSchema {
    boost::shared_ptr<SchemaDefinition> schema;
    std::vector<PendingEntry> properties;
    int order = 1000;
    UTF8String labelKey;
    UTF8String descriptionKey;
    Origin origin;
};

// A view item whose path is still written as "prefix:name/...".
struct PendingItemPath {
    boost::shared_ptr<ViewItem> item;
    std::string property;
    std::string schemaNamespace;
    Origin origin;
};

struct PendingView {
    boost::shared_ptr<ViewDefinition> view;
    std::vector<PendingItemPath> paths;
    Origin origin;
};

struct FileContent {
    std::vector<PendingType> types;
    std::vector<PendingSchema> schemas;
    std::vector<PendingView> views;
};

// Deepest nesting of view items, and longest chain of derived types: a file
// may be hostile, and both are walked recursively.
constexpr int kMaxNesting = 64;

bool IsTrue(QStringView text)
{
    return text == u"true";
}

} // namespace

std::string KeyComponent(std::string const& text)
{
    std::string out;
    for (unsigned char c : text) {
        bool const keep = (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9');
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

struct DefinitionLoader::State {
    Content content = kEverything;
    std::vector<FileContent> files;
};

DefinitionLoader::DefinitionLoader(Content content) : state(std::make_unique<State>())
{
    state->content = content;
}

DefinitionLoader::~DefinitionLoader() = default;

namespace {

class FileReader {
public:
    FileReader(QByteArray const& data, UTF16String const& source, bool viewsOnly)
        : xml(data), source(source), viewsOnly(viewsOnly) {}

    bool Read(FileContent& content)
    {
        if (!xml.readNextStartElement()) {
            Report(kErrorDefinitionFile, xml.hasError() ? xml.errorString().toStdString() : "the file is empty");
            return false;
        }
        if (xml.name() != u"definitions") {
            Report(kErrorDefinitionFile, "the root element must be <definitions>, not <" +
                                             xml.name().toString().toStdString() + ">");
            return false;
        }
        while (xml.readNextStartElement()) {
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
        if (xml.hasError()) {
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
        Report(kErrorDefinitionEntry, "unknown element <" + xml.name().toString().toStdString() + "> skipped");
        xml.skipCurrentElement();
    }

    std::string Attr(char const* name) const
    {
        return xml.attributes().value(QLatin1String(name)).toString().toStdString();
    }

    bool HasAttr(char const* name) const { return xml.attributes().hasAttribute(QLatin1String(name)); }

    void CheckAttributes(std::initializer_list<char const*> allowed)
    {
        for (auto const& attribute : xml.attributes()) {
            bool known = false;
            for (char const* name : allowed)
                known = known || attribute.name() == QLatin1String(name);
            if (!known)
                Report(kErrorDefinitionEntry, "unknown attribute \"" + attribute.name().toString().toStdString() +
                                                  "\" on <" + xml.name().toString().toStdString() + "> ignored");
        }
    }

    bool ReadNumber(char const* name, boost::optional<double>& out)
    {
        if (!HasAttr(name))
            return true;
        bool ok = false;
        double const number = xml.attributes().value(QLatin1String(name)).toDouble(&ok);
        if (!ok) {
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
    void SetText(UTF8String& key, UTF16String& text, std::string const& scope, UTF8String const& value)
    {
        if (plainTexts && Key(value).rfind("$$$/", 0) != 0) {
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
        while (xml.readNextStartElement()) {
            if (xml.name() == u"choice")
                ReadChoice(entry.choices, "zephmetadata/Choice/" + scope.substr(scope.find('/') + 1));
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
        if (id.empty()) {
            Report(kErrorDefinitionEntry, "a type without \"id\" skipped");
            xml.skipCurrentElement();
            return;
        }
        std::string const scope = "zephmetadata/Type/" + KeyComponent(id);
        if (isStruct) {
            CheckAttributes({"id", "namespace", "prefix", "label", "description"});
            pending.structNamespace = Attr("namespace");
            pending.structPrefix = Attr("prefix");
            if (pending.structNamespace.empty() || pending.structPrefix.empty()) {
                Report(kErrorDefinitionEntry, "structure \"" + id + "\" needs \"namespace\" and \"prefix\"; skipped");
                xml.skipCurrentElement();
                return;
            }
            UTF8String label = U8(Attr("label"));
            pending.type->labelKey = MakeLocalizerKey(scope, label.empty() ? U8(id) : label);
            pending.type->label = Localized(pending.type->labelKey);
            UTF8String const description = U8(Attr("description"));
            if (!description.empty()) {
                pending.type->descriptionKey = MakeLocalizerKey(scope + "/description", description);
                pending.type->description = Localized(pending.type->descriptionKey);
            }
            pending.type->typeId = U8(id);
            while (xml.readNextStartElement()) {
                if (xml.name() != u"field") {
                    SkipUnknown();
                    continue;
                }
                CheckAttributes({"name", "type", "elementType", "label", "description", "min", "max", "namespace",
                                 "prefix"});
                PendingEntry field;
                field.origin = Here();
                auto definition = boost::make_shared<FieldDefinition>();
                definition->name = U8(Attr("name"));
                definition->fieldNamespace = U8(HasAttr("namespace") ? Attr("namespace") : pending.structNamespace);
                definition->fieldPrefix = U8(HasAttr("prefix") ? Attr("prefix") : pending.structPrefix);
                bool const ok = ReadEntry(*definition, scope + "/" + KeyComponent(Key(definition->name)));
                if (definition->name.empty()) {
                    Report(kErrorDefinitionEntry, "a field of \"" + id + "\" without \"name\" skipped");
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
        CheckAttributes({"id", "base", "primitive", "elementType", "label", "description", "min", "max"});
        pending.base = Attr("base");
        std::string const primitive = Attr("primitive");
        if (!primitive.empty()) {
            pending.stated = PrimitiveTypeIdAsPrimitiveType(U8(primitive));
            if (!pending.stated) {
                Report(kErrorDefinitionEntry, "type \"" + id + "\": unknown primitive \"" + primitive + "\"; skipped");
                xml.skipCurrentElement();
                return;
            }
        } else if (pending.base.empty()) {
            Report(kErrorDefinitionEntry, "type \"" + id + "\" needs \"base\" or \"primitive\"; skipped");
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
        CheckAttributes({"namespace", "prefix", "label", "description", "sectionLabel", "sectionDescription",
                         "order", "custom"});
        PendingSchema pending;
        pending.origin = Here();
        auto schema = boost::make_shared<SchemaDefinition>();
        schema->schemaNamespace = U8(Attr("namespace"));
        schema->schemaPrefix = U8(Attr("prefix"));
        schema->schemaFlag1 = IsTrue(xml.attributes().value(QLatin1String("custom")));
        plainTexts = schema->schemaFlag1;
        if (schema->schemaNamespace.empty() || schema->schemaPrefix.empty()) {
            Report(kErrorDefinitionEntry, "a schema needs \"namespace\" and \"prefix\"; skipped");
            xml.skipCurrentElement();
            return;
        }
        if (HasAttr("order")) {
            bool ok = false;
            pending.order = xml.attributes().value(QLatin1String("order")).toInt(&ok);
            if (!ok) {
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
            SetText(pending.descriptionKey, schema->description, scope + "/_description", description);
        UTF8String const sectionLabel = U8(Attr("sectionLabel"));
        schema->schemaText3 =
            sectionLabel.empty() ? schema->label : Localized(MakeLocalizerKey(scope + "/_section", sectionLabel));
        UTF8String const sectionDescription = U8(Attr("sectionDescription"));
        schema->schemaText4 = sectionDescription.empty()
                                  ? schema->description
                                  : Localized(MakeLocalizerKey(scope + "/_sectionDescription", sectionDescription));
        std::unordered_set<std::string> names;
        while (xml.readNextStartElement()) {
            if (xml.name() != u"property") {
                SkipUnknown();
                continue;
            }
            CheckAttributes({"name", "type", "elementType", "label", "description", "min", "max", "userAdded"});
            PendingEntry property;
            property.origin = Here();
            auto definition = boost::make_shared<PropertyDefinition>();
            definition->name = U8(Attr("name"));
            definition->userAdded = IsTrue(xml.attributes().value(QLatin1String("userAdded")));
            bool const ok = ReadEntry(*definition, scope + "/" + KeyComponent(Key(definition->name)));
            if (definition->name.empty()) {
                Report(kErrorDefinitionEntry, "a property without \"name\" skipped");
                continue;
            }
            if (!names.insert(Key(definition->name)).second) {
                Report(kErrorDefinitionEntry, "property \"" + Key(definition->name) + "\" defined twice; skipped");
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
        if (view->name.empty()) {
            Report(kErrorDefinitionEntry, "a view without \"id\" skipped");
            xml.skipCurrentElement();
            return;
        }
        std::string const id = Key(view->name);
        viewScope = "zephmetadata/View/" + KeyComponent(id.substr(id.rfind('.') + 1));
        view->label = MakeLocalizerKey(viewScope + "/_label", U8(Attr("label").empty() ? id : Attr("label")));
        if (HasAttr("description"))
            view->description = MakeLocalizerKey(viewScope + "/_description", U8(Attr("description")));
        view->hideEmptyValues = IsTrue(xml.attributes().value(QLatin1String("hideEmptyValues")));
        pending.view = view;
        while (xml.readNextStartElement()) {
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
        if (depth >= kMaxNesting) {
            Report(kErrorDefinitionEntry, "items nested deeper than " + std::to_string(kMaxNesting) + " levels skipped");
            xml.skipCurrentElement();
            return {};
        }
        if (kind == u"item") {
            item = boost::make_shared<ViewItem>();
            item->format = FromQ(xml.attributes().value(QLatin1String("kind")));
            std::string const property = Attr("property");
            if (!property.empty())
                pending.paths.push_back(PendingItemPath{item, property, Attr("namespace"), Here()});
        } else if (kind == u"section" || kind == u"note" || kind == u"formatter" || kind == u"separator" ||
                   kind == u"schema") {
            item = boost::make_shared<ViewItem>(FromQ(kind));
        } else {
            SkipUnknown();
            return {};
        }
        for (auto const& attribute : xml.attributes()) {
            QStringView const name = attribute.name();
            if (name == u"label") {
                UTF8String const text = FromQ(attribute.value());
                item->label = MakeLocalizerKey(viewScope + "/" + KeyComponent(Key(text)), text);
            } else if (name == u"description") {
                UTF8String const text = FromQ(attribute.value());
                item->description =
                    MakeLocalizerKey(viewScope + "/description/" + KeyComponent(Key(text)), text);
            } else if (kind == u"item" && (name == u"property" || name == u"namespace" || name == u"kind")) {
                continue;
            } else {
                SetHint(*item, name, attribute.value());
            }
        }
        while (xml.readNextStartElement()) {
            if (xml.name() == u"hint") {
                SetHint(*item, xml.attributes().value(QLatin1String("name")), xml.attributes().value(QLatin1String("value")));
                xml.skipCurrentElement();
            } else if (xml.name() == u"choice") {
                ReadChoice(item->choices, viewScope);
            } else if (auto child = ReadItem(pending, depth + 1)) {
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

void ReportAt(Origin const& origin, std::string const& message)
{
    AddError(kErrorDefinitionEntry, origin.source,
             zephcore::UTF8to16("line " + std::to_string(origin.line) + ": " + message));
}

} // namespace

bool DefinitionLoader::AddFileContent(QByteArray const& data, UTF16String const& source)
{
    FileContent content;
    FileReader reader(data, source, state->content == kViewsOnly);
    if (!reader.Read(content))
        return false;
    state->files.push_back(std::move(content));
    return true;
}

bool DefinitionLoader::AddFile(UTF16String const& path)
{
    QFile file(zephcore::ToQString(path));
    if (!file.open(QIODevice::ReadOnly)) {
        AddError(kErrorDefinitionFile, path, zephcore::UTF8to16("the file cannot be read: " +
                                                                file.errorString().toStdString()));
        return false;
    }
    return AddFileContent(file.readAll(), path);
}

namespace {

// Resolves a type's primitive kind, element type, limits and choices along
// its chain of bases. False for an unknown base or a loop.
bool ResolveType(PendingType& pending, std::unordered_map<std::string, PendingType*> const& byId,
                 std::unordered_set<std::string>& resolved, std::unordered_set<std::string>& failed,
                 std::vector<std::string>& chain)
{
    std::string const id = Key(pending.type->name);
    if (resolved.count(id))
        return true;
    if (failed.count(id))
        return false;
    if (pending.isStruct || pending.stated) {
        pending.type->primitiveType = pending.stated;
        resolved.insert(id);
        return true;
    }
    for (std::string const& link : chain) {
        if (link == id) {
            ReportAt(pending.origin, "type \"" + id + "\" derives from itself; skipped");
            failed.insert(id);
            return false;
        }
    }
    auto const base = byId.find(pending.base);
    if (base == byId.end()) {
        ReportAt(pending.origin, "type \"" + id + "\": unknown base \"" + pending.base + "\"; skipped");
        failed.insert(id);
        return false;
    }
    if (chain.size() >= std::size_t(kMaxNesting)) {
        ReportAt(pending.origin, "type \"" + id + "\" derives through more than " + std::to_string(kMaxNesting) +
                                     " types; skipped");
        failed.insert(id);
        return false;
    }
    chain.push_back(id);
    bool const ok = ResolveType(*base->second, byId, resolved, failed, chain);
    chain.pop_back();
    if (!ok) {
        failed.insert(id);
        return false;
    }
    TypeDefinition const& from = *base->second->type;
    if (base->second->isStruct) {
        ReportAt(pending.origin, "type \"" + id + "\" cannot derive from the structure \"" + pending.base + "\"");
        failed.insert(id);
        return false;
    }
    TypeDefinition& type = *pending.type;
    type.primitiveType = from.primitiveType;
    if (!type.elementTypeId)
        type.elementTypeId = from.elementTypeId;
    if (!type.minValue)
        type.minValue = from.minValue;
    if (!type.maxValue)
        type.maxValue = from.maxValue;
    if (type.choices.empty())
        type.choices = from.choices;
    resolved.insert(id);
    return true;
}

// Completes an entry from its type. False (with a log entry) when it refers
// to a type that does not exist.
bool ResolveEntry(EntryDefinition& entry, Origin const& origin, std::string const& what)
{
    Registry& registry = Registry::Get();
    if (!entry.typeId) {
        ReportAt(origin, what + " has no \"type\"; skipped");
        return false;
    }
    auto const type = registry.FindType(Key(*entry.typeId));
    if (!type) {
        ReportAt(origin, what + ": unknown type \"" + Key(*entry.typeId) + "\"; skipped");
        return false;
    }
    entry.primitiveType = type->primitiveType;
    if (!entry.primitiveType)
        return true; // a structure
    PrimitiveType const kind = *entry.primitiveType;
    if (PrimitiveTypeIsArray(kind)) {
        boost::optional<UTF8String> const element = ElementTypeIdOf(entry);
        if (!element) {
            ReportAt(origin, what + " is a list without \"elementType\"; skipped");
            return false;
        }
        auto const elementType = registry.FindType(Key(*element));
        if (!elementType) {
            ReportAt(origin, what + ": unknown element type \"" + Key(*element) + "\"; skipped");
            return false;
        }
        // A list of choices offers the choices of its element.
        if (entry.choices.empty())
            entry.choices = elementType->choices;
    } else if (kind == kPrimitiveOpenChoice || kind == kPrimitiveClosedChoice) {
        if (!ElementTypeIdOf(entry))
            entry.elementTypeId = U8("text");
        if (entry.choices.empty() && type->choices.empty() && kind == kPrimitiveClosedChoice)
            ReportAt(origin, what + " is a closed choice without choices");
    } else if (entry.elementTypeId) {
        ReportAt(origin, what + ": \"elementType\" on a type that is no list or choice is ignored");
        entry.elementTypeId.reset();
    }
    return true;
}

} // namespace

void DefinitionLoader::Finish()
{
    Registry& registry = Registry::Get();

    // Types first: everything else refers to them.
    std::unordered_map<std::string, PendingType*> byId;
    for (FileContent& file : state->files) {
        for (PendingType& pending : file.types) {
            std::string const id = Key(pending.type->name);
            if (byId.count(id) || registry.FindType(id)) {
                ReportAt(pending.origin, "type \"" + id + "\" is defined twice; the first one stays");
                pending.type.reset();
                continue;
            }
            byId.emplace(id, &pending);
        }
    }
    // Types already registered serve as bases of new ones.
    std::vector<PendingType> registeredBases;
    std::unordered_set<std::string> resolved;
    std::unordered_set<std::string> failed;
    std::vector<PendingType*> accepted;
    for (FileContent& file : state->files) {
        for (PendingType& pending : file.types) {
            if (!pending.type)
                continue;
            if (!pending.base.empty() && !byId.count(pending.base)) {
                if (auto existing = registry.FindType(pending.base)) {
                    PendingType base;
                    base.type = existing;
                    base.stated = existing->primitiveType;
                    base.isStruct = IsStructType(*existing);
                    registeredBases.push_back(base);
                }
            }
        }
    }
    for (PendingType& base : registeredBases) {
        byId.emplace(Key(base.type->name), &base);
        resolved.insert(Key(base.type->name));
    }
    for (FileContent& file : state->files) {
        for (PendingType& pending : file.types) {
            if (!pending.type)
                continue;
            std::vector<std::string> chain;
            if (ResolveType(pending, byId, resolved, failed, chain)) {
                if (pending.isStruct) {
                    UTF8String const prefix =
                        registry.RegisterNamespace(U8(pending.structNamespace), U8(pending.structPrefix));
                    (void)prefix;
                }
                accepted.push_back(&pending);
            }
        }
    }
    // Register the types before their fields are resolved, since fields may
    // use any type, other structures included.
    for (PendingType* pending : accepted) {
        if (pending->isStruct)
            continue;
        registry.AddType(pending->type);
    }
    for (PendingType* pending : accepted) {
        if (!pending->isStruct)
            continue;
        for (PendingEntry& field : pending->fields) {
            auto definition = boost::static_pointer_cast<FieldDefinition>(field.entry);
            definition->fieldPrefix = registry.RegisterNamespace(definition->fieldNamespace, definition->fieldPrefix);
        }
        registry.AddType(pending->type); // early, so fields may name their own or later structures
    }
    for (PendingType* pending : accepted) {
        if (!pending->isStruct)
            continue;
        std::string const id = Key(pending->type->name);
        std::unordered_set<std::string> names;
        for (PendingEntry& field : pending->fields) {
            auto definition = boost::static_pointer_cast<FieldDefinition>(field.entry);
            std::string const what = "field \"" + Key(definition->name) + "\" of \"" + id + "\"";
            if (!names.insert(Key(definition->fieldPrefix) + ":" + Key(definition->name)).second) {
                ReportAt(field.origin, what + " is defined twice; skipped");
                continue;
            }
            if (ResolveEntry(*definition, field.origin, what))
                pending->type->fields.push_back(definition);
        }
        if (pending->type->fields.empty())
            ReportAt(pending->origin, "structure \"" + id + "\" has no usable field");
        registry.AddType(pending->type); // again, now with its field index
    }

    // Schemas.
    for (FileContent& file : state->files) {
        for (PendingSchema& pending : file.schemas) {
            SchemaDefinition& schema = *pending.schema;
            std::string const ns = Key(schema.schemaNamespace);
            if (registry.FindSchema(ns)) {
                ReportAt(pending.origin, "schema \"" + ns + "\" is defined twice; the first one stays");
                continue;
            }
            schema.schemaPrefix = registry.RegisterNamespace(schema.schemaNamespace, schema.schemaPrefix);
            for (PendingEntry& property : pending.properties) {
                std::string const what = "property \"" + Key(schema.schemaPrefix) + ":" +
                                         Key(property.entry->name) + "\"";
                if (ResolveEntry(*property.entry, property.origin, what))
                    schema.properties.push_back(property.entry);
            }
            if (schema.schemaFlag1) {
                CustomSchemaInfo& info = registry.customInfo[ns];
                info.filePath = pending.origin.source;
                info.labelKey = pending.labelKey;
                info.descriptionKey = pending.descriptionKey;
            }
            registry.AddSchema(pending.schema, pending.order);
        }
    }

    // Views, whose paths name schemas by prefix.
    for (FileContent& file : state->files) {
        for (PendingView& pending : file.views) {
            for (PendingItemPath& itemPath : pending.paths) {
                std::string ns = itemPath.schemaNamespace;
                std::string name = itemPath.property;
                if (ns.empty()) {
                    std::size_t const colon = name.find(':');
                    std::size_t const slash = name.find('/');
                    if (colon == std::string::npos || (slash != std::string::npos && slash < colon)) {
                        ReportAt(itemPath.origin, "\"" + name + "\" has no schema prefix; item skipped");
                        itemPath.item->format = U8("invalid");
                        continue;
                    }
                    ns = registry.NamespaceForPrefix(name.substr(0, colon));
                    if (ns.empty()) {
                        ReportAt(itemPath.origin, "unknown prefix in \"" + name + "\"; item skipped");
                        itemPath.item->format = U8("invalid");
                        continue;
                    }
                    name = name.substr(colon + 1);
                }
                itemPath.item->path = Path(U8(ns), U8(name));
                if (!PathEntryDefinition(itemPath.item->path)) {
                    ReportAt(itemPath.origin, "no definition for \"" + itemPath.property + "\"; item skipped");
                    itemPath.item->path = Path();
                    itemPath.item->format = U8("invalid");
                }
            }
            // Items refused above are taken out, so that a form never sees them.
            std::function<void(std::vector<boost::shared_ptr<ViewItem>>&)> prune =
                [&prune](std::vector<boost::shared_ptr<ViewItem>>& items) {
                    std::vector<boost::shared_ptr<ViewItem>> kept;
                    for (auto const& item : items) {
                        if (Key(item->format) == "invalid")
                            continue;
                        prune(item->items);
                        kept.push_back(item);
                    }
                    items.swap(kept);
                };
            prune(pending.view->items);
            registry.AddView(pending.view);
        }
    }
    state->files.clear();
}

} // namespace detail
} // namespace zephmetadata
