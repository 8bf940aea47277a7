#include "DefinitionRegistry.h"

#include <exempi/xmp.h>

#include <algorithm>
#include <iterator>

namespace zephmetadata
{
namespace detail
{

Registry& Registry::Get()
{
    static Registry registry;
    return registry;
}

void Registry::Clear()
{
    schemas.clear();
    types.clear();
    fieldIndexes.clear();
    rememberedProperties.clear();
    rememberedCount = rememberedCountAfterSweep = 0;
    orderedSchemas.reset();
    views = std::make_shared<std::vector<boost::shared_ptr<ViewDefinition>>>();
    viewsByName.clear();
    childPathCache.clear();
    leafPathCache.clear();
    resolveCache.clear();
    customInfo.clear();
    sequence = 0;
    definitionsLoaded = false;
    viewsLoaded = false;
    prefixToNamespace.clear();
    namespaceToPrefix.clear();
}

void Registry::AddSchema(boost::shared_ptr<SchemaDefinition> const& schema, int order)
{
    std::string const ns = Key(schema->schemaNamespace);
    SchemaEntry entry;
    entry.schema = schema;
    entry.order = order;
    entry.sequence = ++sequence;
    if (!schema->schemaFlag1)
    {
        for (auto const& property : schema->properties)
            entry.propertiesByName.emplace(Key(property->name), property);
    }
    schemas[ns] = std::move(entry);
    auto const remembered = rememberedProperties.find(ns);
    if (remembered != rememberedProperties.end())
    {
        rememberedCount -= remembered->second.size();
        rememberedProperties.erase(remembered);
    }
    orderedSchemas.reset();
    childPathCache.clear();
    leafPathCache.clear();
    resolveCache.clear();
}

void Registry::RemoveSchema(UTF8String const& schemaNamespace)
{
    schemas.erase(Key(schemaNamespace));
    orderedSchemas.reset();
    childPathCache.clear();
    leafPathCache.clear();
    resolveCache.clear();
}

void Registry::AddType(boost::shared_ptr<TypeDefinition> const& type)
{
    types[Key(type->name)] = type;
    if (!type->fields.empty())
    {
        FieldIndex& index = fieldIndexes[type.get()];
        for (auto const& field : type->fields)
        {
            index.byQualifiedName.emplace(Key(field->fieldPrefix) + ":" + Key(field->name), field);
            index.byLocalName.emplace(Key(field->name), field);
        }
    }
    childPathCache.clear();
    leafPathCache.clear();
    resolveCache.clear();
}

void Registry::AddView(boost::shared_ptr<ViewDefinition> const& view)
{
    std::string const name = Key(view->name);
    auto const found = viewsByName.find(name);
    if (found != viewsByName.end())
    {
        std::replace(views->begin(), views->end(), found->second, view);
        found->second = view;
        return;
    }
    views->push_back(view);
    viewsByName.emplace(name, view);
}

UTF8String Registry::RegisterNamespace(UTF8String const& schemaNamespace, UTF8String const& prefix)
{
    std::string const ns = Key(schemaNamespace);
    auto const known = namespaceToPrefix.find(ns);
    if (known != namespaceToPrefix.end())
        return U8(known->second);
    std::string registered = Key(prefix);
    // A schema registered before the definitions were loaded still needs the
    // toolkit to know its prefix.
    if (!toolkitStarted)
        toolkitStarted = xmp_init();
    if (toolkitStarted)
    {
        XmpStringPtr actual = xmp_string_new();
        if (xmp_register_namespace(ns.c_str(), Key(prefix).c_str(), actual) ||
            xmp_string_len(actual) > 0)
        {
            registered = xmp_string_cstr(actual);
            // The toolkit answers with a trailing colon.
            if (!registered.empty() && registered.back() == ':')
                registered.pop_back();
        }
        xmp_string_free(actual);
    }
    namespaceToPrefix[ns] = registered;
    prefixToNamespace.emplace(registered, ns);
    return U8(registered);
}

SchemaEntry const* Registry::FindSchema(std::string const& schemaNamespace) const
{
    auto const found = schemas.find(schemaNamespace);
    return found == schemas.end() ? nullptr : &found->second;
}

boost::shared_ptr<PropertyDefinition> Registry::FindProperty(std::string const& schemaNamespace,
                                                             std::string const& name,
                                                             bool* remembered) const
{
    if (remembered)
        *remembered = false;
    if (SchemaEntry const* entry = FindSchema(schemaNamespace))
    {
        if (!entry->schema->schemaFlag1)
        {
            auto const found = entry->propertiesByName.find(name);
            if (found != entry->propertiesByName.end())
                return found->second;
        }
        else
        {
            // Custom schemas are small and edited in place by their owner.
            for (auto const& property : entry->schema->properties)
            {
                if (property && Key(property->name) == name)
                    return property;
            }
        }
    }
    auto const dynamic = rememberedProperties.find(schemaNamespace);
    if (dynamic != rememberedProperties.end())
    {
        auto const found = dynamic->second.find(name);
        if (found != dynamic->second.end())
        {
            if (remembered)
                *remembered = true;
            return found->second.lock();
        }
    }
    return {};
}

boost::shared_ptr<TypeDefinition> Registry::FindType(std::string const& typeId) const
{
    auto const found = types.find(typeId);
    return found == types.end() ? boost::shared_ptr<TypeDefinition>() : found->second;
}

FieldIndex const* Registry::FieldsOf(TypeDefinition const* type) const
{
    auto const found = fieldIndexes.find(type);
    return found == fieldIndexes.end() ? nullptr : &found->second;
}

std::string Registry::NamespaceForPrefix(std::string const& prefix) const
{
    auto const found = prefixToNamespace.find(prefix);
    return found == prefixToNamespace.end() ? std::string() : found->second;
}

std::string Registry::PrefixForNamespace(std::string const& schemaNamespace) const
{
    auto const found = namespaceToPrefix.find(schemaNamespace);
    return found == namespaceToPrefix.end() ? std::string() : found->second;
}

void Registry::RememberProperty(UTF8String const& schemaNamespace,
                                boost::shared_ptr<PropertyDefinition> const& property)
{
    if (!property)
        return;
    std::string const ns = Key(schemaNamespace);
    std::string const name = Key(property->name);
    if (FindProperty(ns, name) == property)
        return;
    if (SchemaEntry const* entry = FindSchema(ns))
    {
        // A published property keeps its definition; a clone's additions join it.
        if (!entry->schema->schemaFlag1 && entry->propertiesByName.count(name))
            return;
    }
    auto const added = rememberedProperties[ns].emplace(name, property);
    if (added.second)
        ++rememberedCount;
    else
        added.first->second = property;
    // Paths through remembered properties are never memoised (see Resolve),
    // so the caches stay valid.
    // Sweeping when the entries have doubled keeps the cost per remembered
    // property constant and the map within twice what the owners hold.
    if (rememberedCount > 2 * rememberedCountAfterSweep + 64)
        ForgetExpiredProperties();
}

void Registry::ForgetExpiredProperties()
{
    for (auto schema = rememberedProperties.begin(); schema != rememberedProperties.end();)
    {
        auto& properties = schema->second;
        for (auto property = properties.begin(); property != properties.end();)
        {
            if (property->second.expired())
            {
                property = properties.erase(property);
                --rememberedCount;
            }
            else
            {
                ++property;
            }
        }
        schema = properties.empty() ? rememberedProperties.erase(schema) : std::next(schema);
    }
    rememberedCountAfterSweep = rememberedCount;
}

std::size_t Registry::CachedEntryCount() const
{
    return rememberedCount + resolveCache.size() + childPathCache.size() + leafPathCache.size();
}

std::shared_ptr<std::vector<boost::shared_ptr<SchemaDefinition>> const> Registry::OrderedSchemas()
{
    if (orderedSchemas)
        return orderedSchemas;
    std::vector<SchemaEntry const*> entries;
    entries.reserve(schemas.size());
    for (auto const& item : schemas)
        entries.push_back(&item.second);
    std::sort(entries.begin(), entries.end(),
              [](SchemaEntry const* a, SchemaEntry const* b)
              {
                  if (a->order != b->order)
                      return a->order < b->order;
                  return a->sequence < b->sequence;
              });
    auto ordered = std::make_shared<std::vector<boost::shared_ptr<SchemaDefinition>>>();
    ordered->reserve(entries.size());
    for (SchemaEntry const* entry : entries)
        ordered->push_back(entry->schema);
    orderedSchemas = ordered;
    return orderedSchemas;
}

boost::shared_ptr<ViewDefinition> Registry::FindView(std::string const& name) const
{
    auto const found = viewsByName.find(name);
    return found == viewsByName.end() ? boost::shared_ptr<ViewDefinition>() : found->second;
}

} // namespace detail
} // namespace zephmetadata
