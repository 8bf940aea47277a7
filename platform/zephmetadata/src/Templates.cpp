#include "zephmetadata/Templates.h"

#include "zephmetadata/XmpMeta.h"

#include <exempi/xmp.h>

#include <cstring>
#include <set>
#include <utility>

namespace zephmetadata
{
namespace
{

using Property = std::pair<std::string, std::string>;

char const* const kMediaManagement = "http://ns.adobe.com/xap/1.0/mm/";
char const* const kBasic = "http://ns.adobe.com/xap/1.0/";

// "xmpMM:DocumentID" -> "DocumentID".
std::string LocalName(std::string const& path)
{
    std::size_t const colon = path.find(':');
    return colon == std::string::npos ? path : path.substr(colon + 1);
}

// The document's own bookkeeping: a template never speaks for it.
bool IsDocumentBookkeeping(Property const& property)
{
    std::string const name = LocalName(property.second);
    if (property.first == kMediaManagement)
        return true;
    return property.first == kBasic && name == "MetadataDate";
}

// A copy of source without the bookkeeping, so that the merges below never
// touch it.
xmp::MetaPtr WithoutBookkeeping(__XMPMeta__* source)
{
    xmp::MetaPtr copy = xmp::Clone(source);
    if (!copy)
        return copy;
    for (Property const& property : xmp::TopLevelProperties(copy.get()))
        if (IsDocumentBookkeeping(property))
            xmp_delete_property(copy.get(), property.first.c_str(), property.second.c_str());
    return copy;
}

} // namespace

bool ApplyTemplate(__XMPMeta__* destination, __XMPMeta__* source, TemplateImportOptions options)
{
    if (!destination || !source || destination == source)
        return false;
    xmp::MetaPtr const templateTree = WithoutBookkeeping(source);
    if (!templateTree)
        return false;
    bool changed = false;
    switch (options)
    {
    case kTemplateImportClearAndReplace:
    {
        std::set<Property> kept;
        for (Property const& property : xmp::TopLevelProperties(templateTree.get()))
            kept.insert(property);
        for (Property const& property : xmp::TopLevelProperties(destination))
        {
            if (IsDocumentBookkeeping(property) || kept.count(property))
                continue;
            changed |=
                xmp_delete_property(destination, property.first.c_str(), property.second.c_str());
        }
        changed |=
            xmp::AppendProperties(templateTree.get(), destination, xmp::kAppendReplaceExisting);
        break;
    }
    case kTemplateImportKeepAndReplace:
        changed =
            xmp::AppendProperties(templateTree.get(), destination, xmp::kAppendReplaceExisting);
        break;
    case kTemplateImportKeepAndAppend:
    default:
        changed = xmp::AppendProperties(templateTree.get(), destination, xmp::kAppendMergeArrays);
        break;
    }
    return changed;
}

} // namespace zephmetadata
