#include "dialogs/MetadataProviderWrapper.h"

#include <zephmetadata/Access.h>

namespace zephmetadataui
{

using namespace zephmetadata;

MetadataProviderWrapper::MetadataProviderWrapper(
    boost::shared_ptr<MetaDataProvider> wrappedProvider)
    : wrapped(std::move(wrappedProvider))
{
    MetaDataReadAccess const access(wrapped);
    if (*access)
        workingXMP = xmp::Clone(*access);
}

MetadataProviderWrapper::~MetadataProviderWrapper() = default;

bool MetadataProviderWrapper::QueryPathStatus(Path const& path, PathStatus status) const
{
    return wrapped ? wrapped->QueryPathStatus(path, status) : false;
}

void MetadataProviderWrapper::WriteChanges(std::vector<Path> const& /*paths*/)
{
    modified = true;
}

bool MetadataProviderWrapper::CommitChanges()
{
    if (!modified)
        return false;
    MetaDataUpdateAccess access(wrapped);
    if (!*access)
        return false;
    xmp::RemoveProperties(*access);
    if (workingXMP)
        xmp::AppendProperties(workingXMP.get(), *access, xmp::kAppendReplaceExisting);
    // One change of the whole, so the host stores and redraws everything.
    access.AddChange(Path());
    return modified;
}

} // namespace zephmetadataui
