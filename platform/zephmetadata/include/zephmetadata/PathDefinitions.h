#pragma once
// Paths over definitions: making paths of properties, fields and array items,
// walking them, and finding the definition and type behind a path. Every
// look-up is by hash; nothing scans a schema per call.

#include "zephmetadata/Definitions.h"
#include "zephmetadata/zephmetadata_export.h"

#include <boost/optional.hpp>
#include <boost/shared_ptr.hpp>

#include <cstddef>
#include <memory>
#include <vector>

namespace zephmetadata
{

// Loads the built-in definition files (schemas, types, views) and the user's
// custom schema files, and registers every namespace with the XMP toolkit.
// Problems go to the error log; the rest loads. A second call does nothing.
// Labels are localised as they load, so translations are loaded first.
ZEPHMETADATA_EXPORT void LoadDefinitions();
// Forgets all definitions; the next LoadDefinitions loads them afresh.
ZEPHMETADATA_EXPORT void UnloadDefinitions();
// Loads further definition files, as LoadDefinitions does for its own folder:
// for tests and hosts with definitions of their own. Returns the number of
// files that could be read.
ZEPHMETADATA_EXPORT int LoadDefinitionFiles(std::vector<UTF16String> const& paths);

ZEPHMETADATA_EXPORT Path
CreatePathFromSchemaProperty(boost::shared_ptr<SchemaDefinition> const& schema,
                             boost::shared_ptr<PropertyDefinition> const& property);
ZEPHMETADATA_EXPORT Path
CreatePathFromStructureField(Path const& path, boost::shared_ptr<FieldDefinition> const& field);
// Index is 1-based; the property name ends in "[index]".
ZEPHMETADATA_EXPORT Path CreatePathFromArrayItem(Path const& path, int index);
ZEPHMETADATA_EXPORT Path PathForSchemaNameAndPropertyName(UTF8String const& schemaNamespace,
                                                          UTF8String const& propertyName);

// Fields of a structure, of an array item whose element is a structure, and
// of an array of structures, named through the array ("History/stEvt:action"):
// the item's fields as the definitions name them. Empty for a leaf.
ZEPHMETADATA_EXPORT IteratorRange<Path> ChildPaths(Path const& path);
ZEPHMETADATA_EXPORT IteratorRange<Path>
ChildPaths(boost::shared_ptr<SchemaDefinition> const& schema);
// Leaves below, depth first in definition order; arrays of structures give
// their item's fields, named through the array, never single items.
ZEPHMETADATA_EXPORT IteratorRange<Path> DescendantLeafPaths(Path const& path);
ZEPHMETADATA_EXPORT IteratorRange<Path>
DescendantLeafPaths(boost::shared_ptr<SchemaDefinition> const& schema);
// With anyArray false only arrays whose items unfold into rows count (items
// that are structures, dates, choices or lists); with true, every list kind.
ZEPHMETADATA_EXPORT bool IsPathAnArray(Path const& path, bool anyArray);

// The definition behind a path; for an array item, the array's.
ZEPHMETADATA_EXPORT boost::shared_ptr<EntryDefinition> PathEntryDefinition(Path const& path);

// How many entries the model keeps about paths and dynamic schemas' properties
// (diagnostics, tests): bounded by the loaded definitions and what the live
// providers and views hold, not by the packets seen.
ZEPHMETADATA_EXPORT std::size_t CachedPathEntryCount();
// True for a path that crosses an array without naming an item
// ("History/stEvt:action"): a field of every item, as the definitions name
// it, which holds no value of its own and takes no control.
ZEPHMETADATA_EXPORT bool IsPathOfAnyItem(Path const& path);
// The type of the path; for an array item, the element type.
ZEPHMETADATA_EXPORT boost::shared_ptr<TypeDefinition> TypeEntryDefinition(Path const& path);
ZEPHMETADATA_EXPORT boost::shared_ptr<TypeDefinition> TypeIdDefinition(UTF8String const& typeId);
// Unset for a structure or an unknown path; for an array item, the element's kind.
ZEPHMETADATA_EXPORT boost::optional<PrimitiveType> PrimitiveTypeOfPath(Path const& path);
// "integer", "real", "text", "boolean", "openChoice", "closedChoice", "bag",
// "seq", "alt"; unset for any other id.
ZEPHMETADATA_EXPORT boost::optional<PrimitiveType>
PrimitiveTypeIdAsPrimitiveType(UTF8String const& typeId);
ZEPHMETADATA_EXPORT UTF8String PrimitiveTypeAsPrimitiveTypeId(PrimitiveType type);
ZEPHMETADATA_EXPORT bool PrimitiveTypeIsArray(PrimitiveType type);
ZEPHMETADATA_EXPORT boost::optional<UTF8String> ElementTypeIdOf(EntryDefinition const& entry);
ZEPHMETADATA_EXPORT bool IsSimpleType(TypeDefinition const& type);
ZEPHMETADATA_EXPORT bool IsStructType(TypeDefinition const& type);

ZEPHMETADATA_EXPORT boost::shared_ptr<SchemaDefinition>
NamespaceDefinition(UTF8String const& schemaNamespace);
ZEPHMETADATA_EXPORT UTF8String StandardSchemaNamespace(StandardSchema schema);
// All known schemas in display order: the published ones, then custom ones.
ZEPHMETADATA_EXPORT IteratorRange<boost::shared_ptr<SchemaDefinition>> CommonSchemaDefinitions();

// A range whose iterators share ownership of the values, so that it stays
// valid however long a caller keeps its iterators.
template <class T> IteratorRange<T> MakeSharedRange(std::shared_ptr<std::vector<T> const> values);
template <class T> IteratorRange<T> MakeSharedRange(std::vector<T> values)
{
    return MakeSharedRange<T>(std::make_shared<std::vector<T> const>(std::move(values)));
}

} // namespace zephmetadata

#include "zephmetadata/SharedRange.h"
