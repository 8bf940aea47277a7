// An XMP packet through the model's read calls as a property tree walks it:
// parse, dynamic schemas, every defined and dynamic path, list items and
// their fields, values as text, number and boolean.

#include "zephmetadata/Access.h"
#include "zephmetadata/Model.h"
#include "zephmetadata/PathDefinitions.h"
#include "zephmetadata/Provider.h"
#include "zephmetadata/Values.h"

#include <boost/make_shared.hpp>

#include <cstddef>
#include <cstdint>
#include <string>

using namespace zephmetadata;

namespace
{

void ReadPath(__XMPMeta__* meta, Path const& path, int depth)
{
    UTF8String text;
    double number = 0;
    bool flag = false;
    GetValueResult result;
    GetValue(meta, path, text, &result);
    GetValue(meta, path, number, &result);
    GetValue(meta, path, flag, &result);
    HasValue(meta, path);
    PathEntryDefinition(path);
    if (depth > 4)
        return;
    int const items = CountArrayItems(meta, path);
    for (int i = 1; i <= items && i <= 8; ++i)
    {
        Path const item = CreatePathFromArrayItem(path, i);
        ReadPath(meta, item, depth + 1);
        for (Path const& field : ChildPaths(item))
            ReadPath(meta, field, depth + 1);
    }
    for (Path const& child : ChildPaths(path))
        ReadPath(meta, child, depth + 1);
}

void Walk(__XMPMeta__* meta, boost::shared_ptr<SchemaDefinition> const& schema)
{
    for (Path const& path : ChildPaths(schema))
        ReadPath(meta, path, 0);
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(std::uint8_t const* data, std::size_t size)
{
    static bool const started = (Initialize(), true);
    (void)started;
    auto provider =
        BufferProviderImpl::Create(std::string(reinterpret_cast<char const*>(data), size));
    provider->ListUnknownSchemasAsDynamic();
    MetaDataReadAccess access(provider);
    if (!*access)
        return 0;
    for (auto const& schema : CommonSchemaDefinitions())
        Walk(*access, schema);
    for (auto const& shared : provider->DynamicSchemaDefinitions())
    {
        auto clone = boost::make_shared<SchemaDefinition>(*shared);
        provider->GetAllPathsForDynamicSchema(clone->schemaNamespace, clone->properties);
        Walk(*access, clone);
        DescendantLeafPaths(clone);
    }
    provider->SerializedPacket();
    return 0;
}
