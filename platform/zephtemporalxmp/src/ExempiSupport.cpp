#include "ExempiSupport.h"

namespace zephtemporalxmp
{
namespace detail
{

std::string PrefixOf(char const* schemaNamespace, char const* suggestedPrefix)
{
    XmpText prefix;
    // Registering a known namespace gives back the prefix it already has.
    if (!xmp_register_namespace(schemaNamespace, suggestedPrefix, prefix.Get()) ||
        prefix.Length() == 0)
        return std::string(suggestedPrefix) + ":";
    std::string text = prefix.Str();
    if (text.back() != ':')
        text += ':';
    return text;
}

int CountItems(XmpPtr meta, char const* schemaNamespace, std::string const& arrayPath)
{
    auto const has = [&](long index)
    { return xmp_has_property(meta, schemaNamespace, ItemPath(arrayPath, index).c_str()); };
    if (!has(1))
        return 0;
    // Double up to a missing item, then halve the gap.
    long present = 1;
    long missing = 2;
    while (has(missing))
    {
        present = missing;
        missing *= 2;
    }
    while (missing - present > 1)
    {
        long const middle = present + (missing - present) / 2;
        if (has(middle))
            present = middle;
        else
            missing = middle;
    }
    return static_cast<int>(present);
}

bool GetText(XmpPtr meta, char const* schemaNamespace, std::string const& path, std::string& value,
             std::uint32_t* options)
{
    XmpText text;
    std::uint32_t bits = 0;
    if (!xmp_get_property(meta, schemaNamespace, path.c_str(), text.Get(), &bits))
        return false;
    value = text.Str();
    if (options)
        *options = bits;
    return true;
}

bool SetNode(XmpPtr meta, char const* schemaNamespace, std::string const& path,
             std::string const& value, std::uint32_t options)
{
    bool const composite = (options & kCompositeOptions) != 0;
    return xmp_set_property(meta, schemaNamespace, path.c_str(), composite ? "" : value.c_str(),
                            options & kWritableOptions);
}

std::string ItemPath(std::string const& arrayPath, std::size_t index)
{
    return arrayPath + "[" + std::to_string(index) + "]";
}

bool InsertStructItem(XmpPtr meta, char const* schemaNamespace, std::string const& arrayPath,
                      std::size_t index, std::size_t count)
{
    std::string const item = ItemPath(arrayPath, index);
    // One past the end appends; the toolkit inserts only simple items, so a
    // structure goes in empty and then becomes one.
    if (index <= count &&
        !xmp_set_array_item(meta, schemaNamespace, arrayPath.c_str(), static_cast<int32_t>(index),
                            "", XMP_PROP_ARRAY_INSERT_BEFORE))
        return false;
    return xmp_set_property(meta, schemaNamespace, item.c_str(), "", XMP_PROP_VALUE_IS_STRUCT);
}

} // namespace detail
} // namespace zephtemporalxmp
