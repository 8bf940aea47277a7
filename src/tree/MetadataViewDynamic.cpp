// MetadataView: the schemas that exist only for the object shown, and the
// display of a file's metadata.

#include "tree/MetadataViewPrivate.h"
#include "zephmetadataui/MetadataView.h"

#include "contracts/Model.h"
#include "tree/TreeToolkit.h"

#include <zephmetadata/FileProvider.h>

#include <boost/make_shared.hpp>

namespace zephmetadataui
{

void MetadataView::UpdateDynamicSchemas()
{
    for (SchemaPtr const& schema : std::vector<SchemaPtr>(dynamicSchemas))
    {
        RemoveSchemaFromPropertiesTree(schema);
        RemoveSchemaPropertiesFromIncludedPaths(schema);
    }
    dynamicSchemas.clear();
    if (!provider)
        return;

    for (SchemaPtr const& shared : provider->DynamicSchemaDefinitions())
    {
        if (!shared)
            continue;
        // A clone of fresh identity, so that rows, memo counts and the opened
        // record keep it apart from the shared definition.
        SchemaPtr const clone = boost::make_shared<SchemaDefinition>();
        clone->label = shared->label;
        clone->description = shared->description;
        clone->schemaText3 = shared->schemaText3;
        clone->schemaText4 = shared->schemaText4;
        clone->schemaNamespace = shared->schemaNamespace;
        clone->schemaPrefix = shared->schemaPrefix;
        clone->properties = shared->properties;
        clone->schemaFlag1 = shared->schemaFlag1;
        clone->schemaFlag2 = shared->schemaFlag2;

        provider->GetAllPathsForDynamicSchema(clone->schemaNamespace, clone->properties);
        if (clone->properties.empty())
            continue;

        for (Path const& leaf : zephmetadata::DescendantLeafPaths(clone))
            includedPaths.insert(leaf);
        AppendSchemaToPropertiesTree(clone, true);
        dynamicSchemas.push_back(clone);
    }
}

void MetadataView::ShowMetadataForFilePath(UTF16String const& filePath)
{
    if (filePath.empty())
        return;
    SetProvider(boost::make_shared<zephmetadata::FileProvider>(filePath));
}

} // namespace zephmetadataui
