#include "zephmetadata/PathDefinitions.h"

#include "DefinitionRegistry.h"

#include <string>

namespace zephmetadata
{

using detail::Key;
using detail::Registry;
using detail::U8;

namespace
{

// Deepest structure nesting that paths are walked into; deeper (or
// self-containing) structures end in a leaf rather than in a loop.
constexpr int kMaxStructureDepth = 12;

using detail::ResolvedPath;

boost::shared_ptr<TypeDefinition> TypeOf(EntryDefinition const& entry)
{
    if (!entry.typeId)
        return {};
    return Registry::Get().FindType(Key(*entry.typeId));
}

// Splits "Tracks[2]/xmpDM:markers[1]" into its steps; "/" inside a
// qualifier ([?xml:lang="a/b"]) does not split.
std::vector<std::string> SplitSteps(std::string const& name)
{
    std::vector<std::string> steps;
    std::string current;
    int brackets = 0;
    char quote = 0;
    for (char c : name)
    {
        if (quote)
        {
            if (c == quote)
                quote = 0;
        }
        else if (brackets > 0 && (c == '"' || c == '\''))
        {
            quote = c;
        }
        else if (c == '[')
        {
            ++brackets;
        }
        else if (c == ']')
        {
            --brackets;
        }
        else if (c == '/' && brackets == 0)
        {
            steps.push_back(current);
            current.clear();
            continue;
        }
        current.push_back(c);
    }
    steps.push_back(current);
    return steps;
}

// The name of a step and the number of subscripts behind it.
void ParseStep(std::string const& step, std::string& name, int& subscripts)
{
    std::size_t const bracket = step.find('[');
    name = step.substr(0, bracket);
    subscripts = 0;
    int depth = 0;
    for (std::size_t i = bracket == std::string::npos ? step.size() : bracket; i < step.size(); ++i)
    {
        if (step[i] == '[' && depth++ == 0)
            ++subscripts;
        else if (step[i] == ']')
            --depth;
    }
}

bool IsListKind(boost::optional<PrimitiveType> const& type)
{
    return type && PrimitiveTypeIsArray(*type);
}

boost::optional<PrimitiveType> KindOf(EntryDefinition const& entry, TypeDefinition const* type)
{
    if (entry.primitiveType)
        return entry.primitiveType;
    if (type)
        return type->primitiveType;
    return boost::none;
}

// The element type of a list definition when its items are structures.
boost::shared_ptr<TypeDefinition> ItemStructType(EntryDefinition const& list)
{
    boost::optional<UTF8String> const element = ElementTypeIdOf(list);
    if (!element)
        return {};
    auto type = Registry::Get().FindType(Key(*element));
    if (!type || !IsStructType(*type))
        return {};
    return type;
}

bool ResolveUncached(Path const& path, ResolvedPath& out)
{
    if (path.schemaNamespace.empty() || path.propertyName.empty())
        return false;
    Registry& registry = Registry::Get();
    std::vector<std::string> const steps = SplitSteps(Key(path.propertyName));
    std::string name;
    int subscripts = 0;
    boost::shared_ptr<EntryDefinition> listHolder;
    for (std::size_t i = 0; i < steps.size(); ++i)
    {
        ParseStep(steps[i], name, subscripts);
        if (name.empty())
            return false;
        if (i == 0)
        {
            // The first step is unqualified, or qualified with the schema's own prefix.
            std::size_t const colon = name.find(':');
            bool remembered = false;
            auto property = registry.FindProperty(
                Key(path.schemaNamespace),
                colon == std::string::npos ? name : name.substr(colon + 1), &remembered);
            if (!property)
                return false;
            out.entry = property;
            detail::SchemaEntry const* schema = registry.FindSchema(Key(path.schemaNamespace));
            // Custom schemas are edited in place by their owner, and dynamic
            // ones live as long as their provider: neither is memoised.
            out.published = !remembered && schema && !schema->schema->schemaFlag1;
        }
        else
        {
            // A field straight after an array names that field of any item,
            // as the definitions do ("History/stEvt:action"); it holds no value.
            if (out.type && !out.isItem && !IsStructType(*out.type) &&
                IsListKind(KindOf(*out.entry, out.type.get())))
            {
                out.type = ItemStructType(*listHolder);
                out.anyItem = true;
            }
            if (!out.type || !IsStructType(*out.type))
                return false;
            detail::FieldIndex const* index = registry.FieldsOf(out.type.get());
            if (!index)
                return false;
            auto found = index->byQualifiedName.find(name);
            if (found == index->byQualifiedName.end())
            {
                std::size_t const colon = name.find(':');
                found = index->byLocalName.find(
                    colon == std::string::npos ? name : name.substr(colon + 1));
                if (found == index->byLocalName.end())
                    return false;
            }
            out.entry = found->second;
            ++out.depth;
        }
        out.type = TypeOf(*out.entry);
        out.isItem = false;
        listHolder = out.entry;
        boost::optional<PrimitiveType> kind = KindOf(*out.entry, out.type.get());
        for (int s = 0; s < subscripts; ++s)
        {
            if (!IsListKind(kind))
                return false;
            boost::optional<UTF8String> const element = ElementTypeIdOf(*listHolder);
            if (!element)
                return false;
            out.type = registry.FindType(Key(*element));
            if (!out.type)
                return false;
            out.isItem = true;
            listHolder = out.type;
            kind = out.type->primitiveType;
        }
    }
    return true;
}

// The memo key: namespace and path, with every subscript emptied.
void CanonicalKey(Path const& path, std::string& key)
{
    key.assign(reinterpret_cast<char const*>(path.schemaNamespace.data()),
               path.schemaNamespace.size());
    key.push_back('\n');
    int depth = 0;
    for (unsigned char c : path.propertyName)
    {
        if (c == '[')
        {
            if (depth++ == 0)
                key.push_back('[');
            continue;
        }
        if (c == ']')
        {
            if (--depth == 0)
                key.push_back(']');
            continue;
        }
        if (depth == 0)
            key.push_back(char(c));
    }
}

bool Resolve(Path const& path, ResolvedPath& out)
{
    if (path.schemaNamespace.empty() || path.propertyName.empty())
        return false;
    // A qualifier selects by value ([?xml:lang="..."]), not by position; it
    // still names an item, so emptying it keeps the answer.
    thread_local std::string key;
    CanonicalKey(path, key);
    Registry& registry = Registry::Get();
    auto const found = registry.resolveCache.find(key);
    if (found != registry.resolveCache.end())
    {
        out = found->second;
        return out.found;
    }
    ResolvedPath resolved;
    resolved.found = ResolveUncached(path, resolved);
    out = resolved;
    // Only paths of loaded definitions are memoised: their number is bounded
    // by the definitions, while packets bring ever new names. A path that
    // does not resolve fails at its first unknown step, which costs no more
    // than a look-up of the memo.
    if (resolved.found && resolved.published)
        registry.resolveCache.emplace(key, std::move(resolved));
    return out.found;
}

bool IsInlineElement(UTF8String const& id, TypeDefinition const* type)
{
    boost::optional<PrimitiveType> kind = PrimitiveTypeIdAsPrimitiveType(id);
    if (!kind && type)
        kind = type->primitiveType;
    if (!kind)
        return false;
    if (*kind == kPrimitiveInteger || *kind == kPrimitiveReal || *kind == kPrimitiveBoolean)
        return true;
    return *kind == kPrimitiveText && Key(id) != "date";
}

std::vector<Path> ComputeChildPaths(Path const& path)
{
    std::vector<Path> children;
    ResolvedPath resolved;
    if (!Resolve(path, resolved) || !resolved.type || resolved.depth >= kMaxStructureDepth)
        return children;
    boost::shared_ptr<TypeDefinition> structure = resolved.type;
    if (!resolved.isItem && IsListKind(KindOf(*resolved.entry, resolved.type.get())))
    {
        // An array of structures has its item's fields as children, named
        // through the array; an array of anything else is a leaf.
        structure = ItemStructType(*resolved.entry);
        if (!structure)
            return children;
    }
    if (!IsStructType(*structure))
        return children;
    children.reserve(structure->fields.size());
    for (auto const& field : structure->fields)
        children.push_back(CreatePathFromStructureField(path, field));
    return children;
}

void CollectLeaves(Path const& path, std::vector<Path>& leaves, int depth)
{
    std::vector<Path> const children = ComputeChildPaths(path);
    if (children.empty())
    {
        if (depth > 0)
            leaves.push_back(path);
        return;
    }
    for (Path const& child : children)
        CollectLeaves(child, leaves, depth + 1);
}

bool HasSubscript(UTF8String const& propertyName)
{
    return propertyName.find('[') != UTF8String::npos;
}

// Paths of loaded published definitions: their number is bounded.
bool IsCacheablePath(Path const& path)
{
    ResolvedPath resolved;
    return Resolve(path, resolved) && resolved.published;
}

std::string CacheKey(Path const& path)
{
    return Key(path.schemaNamespace) + '\n' + Key(path.propertyName);
}

// A registered published schema's paths never change while loaded.
bool IsCacheableSchema(boost::shared_ptr<SchemaDefinition> const& schema)
{
    if (schema->schemaFlag1)
        return false;
    detail::SchemaEntry const* entry = Registry::Get().FindSchema(Key(schema->schemaNamespace));
    return entry && entry->schema == schema;
}

std::string SchemaCacheKey(SchemaDefinition const& schema)
{
    return "schema\n" + Key(schema.schemaNamespace);
}

} // namespace

Path CreatePathFromSchemaProperty(boost::shared_ptr<SchemaDefinition> const& schema,
                                  boost::shared_ptr<PropertyDefinition> const& property)
{
    if (!schema || !property)
        return Path();
    Registry::Get().RememberProperty(schema->schemaNamespace, property);
    return Path(schema->schemaNamespace, property->name);
}

Path CreatePathFromStructureField(Path const& path, boost::shared_ptr<FieldDefinition> const& field)
{
    Path result(path);
    if (!field)
        return result;
    static unsigned char const kSlash[] = {'/'};
    static unsigned char const kColon[] = {':'};
    result.propertyName.append(kSlash, 1);
    if (!field->fieldPrefix.empty())
    {
        result.propertyName += field->fieldPrefix;
        result.propertyName.append(kColon, 1);
    }
    result.propertyName += field->name;
    return result;
}

Path CreatePathFromArrayItem(Path const& path, int index)
{
    Path result(path);
    result.propertyName += U8("[" + std::to_string(index) + "]");
    return result;
}

Path PathForSchemaNameAndPropertyName(UTF8String const& schemaNamespace,
                                      UTF8String const& propertyName)
{
    return Path(schemaNamespace, propertyName);
}

IteratorRange<Path> ChildPaths(Path const& path)
{
    if (HasSubscript(path.propertyName))
        return MakeSharedRange(ComputeChildPaths(path));
    auto& cache = Registry::Get().childPathCache;
    std::string const key = CacheKey(path);
    auto found = cache.find(key);
    if (found == cache.end())
    {
        auto children = std::make_shared<std::vector<Path> const>(ComputeChildPaths(path));
        if (!IsCacheablePath(path))
            return MakeSharedRange(children);
        found = cache.emplace(key, children).first;
    }
    return MakeSharedRange(found->second);
}

IteratorRange<Path> ChildPaths(boost::shared_ptr<SchemaDefinition> const& schema)
{
    if (!schema)
        return MakeSharedRange(std::vector<Path>());
    bool const cacheable = IsCacheableSchema(schema);
    auto& cache = Registry::Get().childPathCache;
    if (cacheable)
    {
        auto const found = cache.find(SchemaCacheKey(*schema));
        if (found != cache.end())
            return MakeSharedRange(found->second);
    }
    std::vector<Path> paths;
    paths.reserve(schema->properties.size());
    for (auto const& property : schema->properties)
    {
        if (property)
            paths.push_back(CreatePathFromSchemaProperty(schema, property));
    }
    auto shared = std::make_shared<std::vector<Path> const>(std::move(paths));
    if (cacheable)
        cache[SchemaCacheKey(*schema)] = shared;
    return MakeSharedRange(shared);
}

IteratorRange<Path> DescendantLeafPaths(Path const& path)
{
    if (HasSubscript(path.propertyName))
    {
        std::vector<Path> leaves;
        CollectLeaves(path, leaves, 0);
        return MakeSharedRange(std::move(leaves));
    }
    auto& cache = Registry::Get().leafPathCache;
    std::string const key = CacheKey(path);
    auto found = cache.find(key);
    if (found == cache.end())
    {
        std::vector<Path> leaves;
        CollectLeaves(path, leaves, 0);
        if (!IsCacheablePath(path))
            return MakeSharedRange(std::move(leaves));
        found =
            cache.emplace(key, std::make_shared<std::vector<Path> const>(std::move(leaves))).first;
    }
    return MakeSharedRange(found->second);
}

IteratorRange<Path> DescendantLeafPaths(boost::shared_ptr<SchemaDefinition> const& schema)
{
    if (!schema)
        return MakeSharedRange(std::vector<Path>());
    bool const cacheable = IsCacheableSchema(schema);
    auto& cache = Registry::Get().leafPathCache;
    if (cacheable)
    {
        auto const found = cache.find(SchemaCacheKey(*schema));
        if (found != cache.end())
            return MakeSharedRange(found->second);
    }
    std::vector<Path> leaves;
    for (auto const& property : schema->properties)
    {
        if (!property)
            continue;
        Path const path = CreatePathFromSchemaProperty(schema, property);
        std::vector<Path> const children = ComputeChildPaths(path);
        if (children.empty())
            leaves.push_back(path);
        else
            CollectLeaves(path, leaves, 0);
    }
    auto shared = std::make_shared<std::vector<Path> const>(std::move(leaves));
    if (cacheable)
        cache[SchemaCacheKey(*schema)] = shared;
    return MakeSharedRange(shared);
}

std::size_t CachedPathEntryCount()
{
    return Registry::Get().CachedEntryCount();
}

bool IsPathAnArray(Path const& path, bool anyArray)
{
    ResolvedPath resolved;
    if (!Resolve(path, resolved))
        return false;
    EntryDefinition const& holder = resolved.isItem ? *resolved.type : *resolved.entry;
    boost::optional<PrimitiveType> const kind = resolved.isItem
                                                    ? resolved.type->primitiveType
                                                    : KindOf(*resolved.entry, resolved.type.get());
    if (!IsListKind(kind))
        return false;
    if (anyArray)
        return true;
    boost::optional<UTF8String> const elementId = ElementTypeIdOf(holder);
    if (!elementId)
        return false;
    auto const element = Registry::Get().FindType(Key(*elementId));
    if (*kind == kPrimitiveAlternative)
        return element && IsStructType(*element);
    return !IsInlineElement(*elementId, element.get());
}

boost::shared_ptr<EntryDefinition> PathEntryDefinition(Path const& path)
{
    ResolvedPath resolved;
    if (!Resolve(path, resolved))
        return {};
    return resolved.entry;
}

bool IsPathOfAnyItem(Path const& path)
{
    ResolvedPath resolved;
    return Resolve(path, resolved) && resolved.anyItem;
}

boost::shared_ptr<TypeDefinition> TypeEntryDefinition(Path const& path)
{
    ResolvedPath resolved;
    if (!Resolve(path, resolved))
        return {};
    return resolved.type;
}

boost::shared_ptr<TypeDefinition> TypeIdDefinition(UTF8String const& typeId)
{
    return Registry::Get().FindType(Key(typeId));
}

boost::optional<PrimitiveType> PrimitiveTypeOfPath(Path const& path)
{
    ResolvedPath resolved;
    if (!Resolve(path, resolved))
        return boost::none;
    boost::optional<PrimitiveType> kind = resolved.isItem
                                              ? resolved.type->primitiveType
                                              : KindOf(*resolved.entry, resolved.type.get());
    if (kind && *kind >= kPrimitiveStructure)
        return boost::none;
    return kind;
}

namespace
{
struct PrimitiveName
{
    char const* id;
    PrimitiveType type;
};
PrimitiveName const kPrimitiveNames[] = {
    {"integer", kPrimitiveInteger},
    {"real", kPrimitiveReal},
    {"text", kPrimitiveText},
    {"boolean", kPrimitiveBoolean},
    {"openChoice", kPrimitiveOpenChoice},
    {"closedChoice", kPrimitiveClosedChoice},
    {"bag", kPrimitiveUnorderedArray},
    {"seq", kPrimitiveOrderedArray},
    {"alt", kPrimitiveAlternative},
};
} // namespace

boost::optional<PrimitiveType> PrimitiveTypeIdAsPrimitiveType(UTF8String const& typeId)
{
    std::string const id = Key(typeId);
    for (auto const& entry : kPrimitiveNames)
    {
        if (id == entry.id)
            return entry.type;
    }
    return boost::none;
}

UTF8String PrimitiveTypeAsPrimitiveTypeId(PrimitiveType type)
{
    for (auto const& entry : kPrimitiveNames)
    {
        if (entry.type == type)
            return U8(entry.id);
    }
    return UTF8String();
}

bool PrimitiveTypeIsArray(PrimitiveType type)
{
    return type == kPrimitiveUnorderedArray || type == kPrimitiveOrderedArray ||
           type == kPrimitiveAlternative;
}

boost::optional<UTF8String> ElementTypeIdOf(EntryDefinition const& entry)
{
    if (entry.elementTypeId)
        return entry.elementTypeId;
    if (entry.typeId)
    {
        auto const type = Registry::Get().FindType(Key(*entry.typeId));
        if (type && type.get() != &entry)
            return type->elementTypeId;
    }
    return boost::none;
}

bool IsSimpleType(TypeDefinition const& type)
{
    return type.fields.empty() && type.primitiveType && *type.primitiveType < kPrimitiveStructure &&
           !PrimitiveTypeIsArray(*type.primitiveType);
}

bool IsStructType(TypeDefinition const& type)
{
    return !type.fields.empty() ||
           (type.primitiveType && *type.primitiveType == kPrimitiveStructure);
}

boost::shared_ptr<SchemaDefinition> NamespaceDefinition(UTF8String const& schemaNamespace)
{
    detail::SchemaEntry const* entry = Registry::Get().FindSchema(Key(schemaNamespace));
    return entry ? entry->schema : boost::shared_ptr<SchemaDefinition>();
}

UTF8String StandardSchemaNamespace(StandardSchema schema)
{
    static char const* const kNamespaces[] = {
        "http://purl.org/dc/elements/1.1/",
        "http://ns.adobe.com/xap/1.0/",
        "http://ns.adobe.com/xap/1.0/rights/",
        "http://ns.adobe.com/xap/1.0/mm/",
        "http://ns.adobe.com/xmp/1.0/DynamicMedia/",
        "http://ns.adobe.com/xmp/1.0/Script/",
        "http://ns.adobe.com/photoshop/1.0/",
        "http://iptc.org/std/Iptc4xmpCore/1.0/xmlns/",
        "http://iptc.org/std/Iptc4xmpExt/2008-02-29/",
        "http://ns.adobe.com/exif/1.0/",
        "http://ns.adobe.com/tiff/1.0/",
        "http://ns.adobe.com/camera-raw-settings/1.0/",
        "http://ns.adobe.com/exif/1.0/aux/",
        "http://cipa.jp/exif/1.0/",
        "http://ns.adobe.com/DICOM/",
        "http://ns.useplus.org/ldf/xmp/1.0/",
        "http://ns.adobe.com/xap/1.0/bj/",
        "http://ns.adobe.com/xap/1.0/t/pg/",
    };
    static_assert(sizeof(kNamespaces) / sizeof(kNamespaces[0]) == kStandardSchemaCount,
                  "one namespace per standard schema");
    int const index = static_cast<int>(schema);
    if (index < 0 || index >= kStandardSchemaCount)
        return UTF8String();
    return U8(kNamespaces[index]);
}

IteratorRange<boost::shared_ptr<SchemaDefinition>> CommonSchemaDefinitions()
{
    return MakeSharedRange(Registry::Get().OrderedSchemas());
}

} // namespace zephmetadata
