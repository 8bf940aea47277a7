#include "DefinitionLoader.h"

#include "DefinitionReader.h"
#include "DefinitionRegistry.h"
#include "zephmetadata/ErrorLog.h"
#include "zephmetadata/PathDefinitions.h"

#include <zephcore/QtStrings.h>

#include <QFile>

#include <functional>
#include <unordered_map>
#include <unordered_set>

namespace zephmetadata
{
namespace detail
{

struct DefinitionLoader::State
{
    Content content = kEverything;
    std::vector<FileContent> files;
};

DefinitionLoader::DefinitionLoader(Content content) : state(std::make_unique<State>())
{
    state->content = content;
}

DefinitionLoader::~DefinitionLoader() = default;

namespace
{

void ReportAt(Origin const& origin, std::string const& message)
{
    AddError(kErrorDefinitionEntry, origin.source,
             zephcore::UTF8to16("line " + std::to_string(origin.line) + ": " + message));
}

} // namespace

bool DefinitionLoader::AddFileContent(QByteArray const& data, UTF16String const& source)
{
    FileContent content;
    if (!ReadDefinitionFile(data, source, state->content == kViewsOnly, content))
        return false;
    state->files.push_back(std::move(content));
    return true;
}

bool DefinitionLoader::AddFile(UTF16String const& path)
{
    QFile file(zephcore::ToQString(path));
    if (!file.open(QIODevice::ReadOnly))
    {
        AddError(
            kErrorDefinitionFile, path,
            zephcore::UTF8to16("the file cannot be read: " + file.errorString().toStdString()));
        return false;
    }
    return AddFileContent(file.readAll(), path);
}

namespace
{

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
    if (pending.isStruct || pending.stated)
    {
        pending.type->primitiveType = pending.stated;
        resolved.insert(id);
        return true;
    }
    for (std::string const& link : chain)
    {
        if (link == id)
        {
            ReportAt(pending.origin, "type \"" + id + "\" derives from itself; skipped");
            failed.insert(id);
            return false;
        }
    }
    auto const base = byId.find(pending.base);
    if (base == byId.end())
    {
        ReportAt(pending.origin,
                 "type \"" + id + "\": unknown base \"" + pending.base + "\"; skipped");
        failed.insert(id);
        return false;
    }
    if (chain.size() >= std::size_t(kMaxNesting))
    {
        ReportAt(pending.origin, "type \"" + id + "\" derives through more than " +
                                     std::to_string(kMaxNesting) + " types; skipped");
        failed.insert(id);
        return false;
    }
    chain.push_back(id);
    bool const ok = ResolveType(*base->second, byId, resolved, failed, chain);
    chain.pop_back();
    if (!ok)
    {
        failed.insert(id);
        return false;
    }
    TypeDefinition const& from = *base->second->type;
    if (base->second->isStruct)
    {
        ReportAt(pending.origin,
                 "type \"" + id + "\" cannot derive from the structure \"" + pending.base + "\"");
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
    if (!entry.typeId)
    {
        ReportAt(origin, what + " has no \"type\"; skipped");
        return false;
    }
    auto const type = registry.FindType(Key(*entry.typeId));
    if (!type)
    {
        ReportAt(origin, what + ": unknown type \"" + Key(*entry.typeId) + "\"; skipped");
        return false;
    }
    entry.primitiveType = type->primitiveType;
    if (!entry.primitiveType)
        return true; // a structure
    PrimitiveType const kind = *entry.primitiveType;
    if (PrimitiveTypeIsArray(kind))
    {
        boost::optional<UTF8String> const element = ElementTypeIdOf(entry);
        if (!element)
        {
            ReportAt(origin, what + " is a list without \"elementType\"; skipped");
            return false;
        }
        auto const elementType = registry.FindType(Key(*element));
        if (!elementType)
        {
            ReportAt(origin, what + ": unknown element type \"" + Key(*element) + "\"; skipped");
            return false;
        }
        // A list of choices offers the choices of its element.
        if (entry.choices.empty())
            entry.choices = elementType->choices;
    }
    else if (kind == kPrimitiveOpenChoice || kind == kPrimitiveClosedChoice)
    {
        if (!ElementTypeIdOf(entry))
            entry.elementTypeId = U8("text");
        if (entry.choices.empty() && type->choices.empty() && kind == kPrimitiveClosedChoice)
            ReportAt(origin, what + " is a closed choice without choices");
    }
    else if (entry.elementTypeId)
    {
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
    for (FileContent& file : state->files)
    {
        for (PendingType& pending : file.types)
        {
            std::string const id = Key(pending.type->name);
            if (byId.count(id) || registry.FindType(id))
            {
                ReportAt(pending.origin,
                         "type \"" + id + "\" is defined twice; the first one stays");
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
    for (FileContent& file : state->files)
    {
        for (PendingType& pending : file.types)
        {
            if (!pending.type)
                continue;
            if (!pending.base.empty() && !byId.count(pending.base))
            {
                if (auto existing = registry.FindType(pending.base))
                {
                    PendingType base;
                    base.type = existing;
                    base.stated = existing->primitiveType;
                    base.isStruct = IsStructType(*existing);
                    registeredBases.push_back(base);
                }
            }
        }
    }
    for (PendingType& base : registeredBases)
    {
        byId.emplace(Key(base.type->name), &base);
        resolved.insert(Key(base.type->name));
    }
    for (FileContent& file : state->files)
    {
        for (PendingType& pending : file.types)
        {
            if (!pending.type)
                continue;
            std::vector<std::string> chain;
            if (ResolveType(pending, byId, resolved, failed, chain))
            {
                if (pending.isStruct)
                {
                    UTF8String const prefix = registry.RegisterNamespace(
                        U8(pending.structNamespace), U8(pending.structPrefix));
                    (void)prefix;
                }
                accepted.push_back(&pending);
            }
        }
    }
    // Register the types before their fields are resolved, since fields may
    // use any type, other structures included.
    for (PendingType* pending : accepted)
    {
        if (pending->isStruct)
            continue;
        registry.AddType(pending->type);
    }
    for (PendingType* pending : accepted)
    {
        if (!pending->isStruct)
            continue;
        for (PendingEntry& field : pending->fields)
        {
            auto definition = boost::static_pointer_cast<FieldDefinition>(field.entry);
            definition->fieldPrefix =
                registry.RegisterNamespace(definition->fieldNamespace, definition->fieldPrefix);
        }
        registry.AddType(pending->type); // early, so fields may name their own or later structures
    }
    for (PendingType* pending : accepted)
    {
        if (!pending->isStruct)
            continue;
        std::string const id = Key(pending->type->name);
        std::unordered_set<std::string> names;
        for (PendingEntry& field : pending->fields)
        {
            auto definition = boost::static_pointer_cast<FieldDefinition>(field.entry);
            std::string const what = "field \"" + Key(definition->name) + "\" of \"" + id + "\"";
            if (!names.insert(Key(definition->fieldPrefix) + ":" + Key(definition->name)).second)
            {
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
    for (FileContent& file : state->files)
    {
        for (PendingSchema& pending : file.schemas)
        {
            SchemaDefinition& schema = *pending.schema;
            std::string const ns = Key(schema.schemaNamespace);
            if (registry.FindSchema(ns))
            {
                ReportAt(pending.origin,
                         "schema \"" + ns + "\" is defined twice; the first one stays");
                continue;
            }
            schema.schemaPrefix =
                registry.RegisterNamespace(schema.schemaNamespace, schema.schemaPrefix);
            for (PendingEntry& property : pending.properties)
            {
                std::string const what = "property \"" + Key(schema.schemaPrefix) + ":" +
                                         Key(property.entry->name) + "\"";
                if (ResolveEntry(*property.entry, property.origin, what))
                    schema.properties.push_back(property.entry);
            }
            if (schema.schemaFlag1)
            {
                CustomSchemaInfo& info = registry.customInfo[ns];
                info.filePath = pending.origin.source;
                info.labelKey = pending.labelKey;
                info.descriptionKey = pending.descriptionKey;
            }
            registry.AddSchema(pending.schema, pending.order);
        }
    }

    // Views, whose paths name schemas by prefix.
    for (FileContent& file : state->files)
    {
        for (PendingView& pending : file.views)
        {
            for (PendingItemPath& itemPath : pending.paths)
            {
                std::string ns = itemPath.schemaNamespace;
                std::string name = itemPath.property;
                if (ns.empty())
                {
                    std::size_t const colon = name.find(':');
                    std::size_t const slash = name.find('/');
                    if (colon == std::string::npos || (slash != std::string::npos && slash < colon))
                    {
                        ReportAt(itemPath.origin,
                                 "\"" + name + "\" has no schema prefix; item skipped");
                        itemPath.item->format = U8("invalid");
                        continue;
                    }
                    ns = registry.NamespaceForPrefix(name.substr(0, colon));
                    if (ns.empty())
                    {
                        ReportAt(itemPath.origin,
                                 "unknown prefix in \"" + name + "\"; item skipped");
                        itemPath.item->format = U8("invalid");
                        continue;
                    }
                    name = name.substr(colon + 1);
                }
                itemPath.item->path = Path(U8(ns), U8(name));
                if (!PathEntryDefinition(itemPath.item->path))
                {
                    ReportAt(itemPath.origin,
                             "no definition for \"" + itemPath.property + "\"; item skipped");
                    itemPath.item->path = Path();
                    itemPath.item->format = U8("invalid");
                }
            }
            // Items refused above are taken out, so that a form never sees them.
            std::function<void(std::vector<boost::shared_ptr<ViewItem>>&)> prune =
                [&prune](std::vector<boost::shared_ptr<ViewItem>>& items)
            {
                std::vector<boost::shared_ptr<ViewItem>> kept;
                for (auto const& item : items)
                {
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
