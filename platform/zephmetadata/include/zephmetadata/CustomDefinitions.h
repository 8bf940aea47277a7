#pragma once
// Schemas and properties of the user's own. A custom schema lives in one file
// in the user's custom definitions folder, in the format of the built-in
// definition files, and is loaded with them.

#include "zephmetadata/Definitions.h"
#include "zephmetadata/zephmetadata_export.h"

#include <boost/shared_ptr.hpp>

namespace zephmetadata
{

// A new custom schema (schemaFlag1 set), not yet registered. The label and
// description are localiser keys with their default; the plain texts are
// used when a key is empty.
ZEPHMETADATA_EXPORT boost::shared_ptr<SchemaDefinition>
CreateNewSchema(UTF8String const& schemaNamespace, UTF8String const& prefix,
                UTF16String const& labelKey, UTF16String const& label,
                UTF16String const& descriptionKey, UTF16String const& description);
// A new user-added property of a primitive kind (type id of that kind).
// The last two texts are a description key and its text; either may be empty.
ZEPHMETADATA_EXPORT boost::shared_ptr<PropertyDefinition>
CreateNewProperty(PrimitiveType type, UTF8String const& name, UTF16String const& labelKey,
                  UTF16String const& label, UTF16String const& descriptionKey,
                  UTF16String const& description);
// Makes the schema known: to the path functions, CommonSchemaDefinitions and
// the XMP toolkit. A non-empty filePath is where RewriteSchemaFile writes it.
// An existing schema of that namespace is only replaced when `replace` is
// set. False for a null schema, an empty namespace or prefix, or a refusal.
ZEPHMETADATA_EXPORT bool RegisterSchemaDefinition(boost::shared_ptr<SchemaDefinition> const& schema,
                                                  UTF16String const& filePath, bool replace);
ZEPHMETADATA_EXPORT void SetFilePathForSchema(UTF16String const& filePath,
                                              boost::shared_ptr<SchemaDefinition> schema);
// Writes the schema to its file, atomically. Problems go to the error log.
ZEPHMETADATA_EXPORT void RewriteSchemaFile(boost::shared_ptr<SchemaDefinition> schema);
// "<configuration folder>/Velmora/XMP/Custom Definitions"; made if missing.
ZEPHMETADATA_EXPORT UTF16String CustomDefinitionsUserDirectory();

} // namespace zephmetadata
