#pragma once
// The process-wide store of loaded definitions, with the hash indexes that
// keep every path look-up independent of the size of a schema.

#include "zephmetadata/Definitions.h"

#include <zephcore/Strings.h>

#include <boost/weak_ptr.hpp>

#include <memory>
#include <string>
#include <unordered_map>
#include <vector>

namespace zephmetadata
{
namespace detail
{

inline std::string Key(UTF8String const& text)
{
    return zephcore::ToStdString(text);
}

inline UTF8String U8(std::string const& text)
{
    return zephcore::ToUTF8(text);
}

struct SchemaEntry
{
    boost::shared_ptr<SchemaDefinition> schema;
    std::unordered_map<std::string, boost::shared_ptr<PropertyDefinition>> propertiesByName;
    int order = 0;
    int sequence = 0; // load order, breaks ties of order
};

// Fields of one structure type, by qualified name ("stEvt:action") and by
// local name, for paths written with another prefix.
struct FieldIndex
{
    std::unordered_map<std::string, boost::shared_ptr<FieldDefinition>> byQualifiedName;
    std::unordered_map<std::string, boost::shared_ptr<FieldDefinition>> byLocalName;
};

// What a path resolves to, memoised by the path with its subscripts emptied:
// the answer does not depend on which item of an array is named.
struct ResolvedPath
{
    bool found = false;
    boost::shared_ptr<EntryDefinition> entry; // the named property or field
    boost::shared_ptr<TypeDefinition> type;   // of the path; for an item, the element's
    bool isItem = false;                      // the last step was a subscript
    bool anyItem = false;                     // a field step crossed an array without a subscript
    int depth = 0;                            // structure levels below the property
    bool published = false;                   // made of loaded definitions only: safe to memoise
};

// What a custom schema needs beyond its definition to be written back.
struct CustomSchemaInfo
{
    UTF16String filePath;
    UTF8String labelKey;
    UTF8String descriptionKey;
};

class Registry
{
public:
    static Registry& Get();

    void Clear();

    // Adds or replaces a schema and indexes it. Custom schemas are not
    // indexed by property: their owner may change them at any time.
    void AddSchema(boost::shared_ptr<SchemaDefinition> const& schema, int order);
    void RemoveSchema(UTF8String const& schemaNamespace);
    void AddType(boost::shared_ptr<TypeDefinition> const& type);
    void AddView(boost::shared_ptr<ViewDefinition> const& view);
    // Registers a namespace with the XMP toolkit and remembers the prefix it
    // was given, which is the one paths must use.
    UTF8String RegisterNamespace(UTF8String const& schemaNamespace, UTF8String const& prefix);

    SchemaEntry const* FindSchema(std::string const& schemaNamespace) const;
    // `remembered` tells whether the property is one of a dynamic schema's.
    boost::shared_ptr<PropertyDefinition> FindProperty(std::string const& schemaNamespace,
                                                       std::string const& name,
                                                       bool* remembered = nullptr) const;
    boost::shared_ptr<TypeDefinition> FindType(std::string const& typeId) const;
    FieldIndex const* FieldsOf(TypeDefinition const* type) const;
    std::string NamespaceForPrefix(std::string const& prefix) const;
    std::string PrefixForNamespace(std::string const& schemaNamespace) const;

    // Properties of schemas that are not registered (clones for dynamic
    // schemas), remembered when a path is made of them so that the path can
    // be looked up again. Only while their owners (the provider's dynamic
    // schemas, the views' clones of them) hold them: every packet may bring
    // new names, and remembering them for good grew without bound.
    void RememberProperty(UTF8String const& schemaNamespace,
                          boost::shared_ptr<PropertyDefinition> const& property);

    // Entries of the remembered properties and of the path caches.
    std::size_t CachedEntryCount() const;

    std::shared_ptr<std::vector<boost::shared_ptr<SchemaDefinition>> const> OrderedSchemas();
    std::shared_ptr<std::vector<boost::shared_ptr<ViewDefinition>> const> Views() const
    {
        return views;
    }
    boost::shared_ptr<ViewDefinition> FindView(std::string const& name) const;

    // Caches of paths made from definitions (no array subscripts).
    std::unordered_map<std::string, std::shared_ptr<std::vector<Path> const>> childPathCache;
    std::unordered_map<std::string, std::shared_ptr<std::vector<Path> const>> leafPathCache;
    std::unordered_map<std::string, ResolvedPath> resolveCache;

    std::unordered_map<std::string, CustomSchemaInfo> customInfo; // by namespace

    bool definitionsLoaded = false;
    bool viewsLoaded = false;
    bool toolkitStarted = false;

private:
    std::unordered_map<std::string, SchemaEntry> schemas;
    std::unordered_map<std::string, boost::shared_ptr<TypeDefinition>> types;
    std::unordered_map<TypeDefinition const*, FieldIndex> fieldIndexes;
    std::unordered_map<std::string, std::string> prefixToNamespace;
    std::unordered_map<std::string, std::string> namespaceToPrefix;
    void ForgetExpiredProperties();

    std::unordered_map<std::string,
                       std::unordered_map<std::string, boost::weak_ptr<PropertyDefinition>>>
        rememberedProperties;
    std::size_t rememberedCount = 0;
    std::size_t rememberedCountAfterSweep = 0;
    std::shared_ptr<std::vector<boost::shared_ptr<SchemaDefinition>> const> orderedSchemas;
    std::shared_ptr<std::vector<boost::shared_ptr<ViewDefinition>>> views =
        std::make_shared<std::vector<boost::shared_ptr<ViewDefinition>>>();
    std::unordered_map<std::string, boost::shared_ptr<ViewDefinition>> viewsByName;
    int sequence = 0;
};

} // namespace detail
} // namespace zephmetadata
