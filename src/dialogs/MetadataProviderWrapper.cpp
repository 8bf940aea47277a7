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
    {
        MetaDataReadAccess const host(wrapped);
        if (!*host)
            return false;
    }
    // A provider that owns its tree takes the copy itself: no second copy of
    // a large tree. The wrapper is left empty, which only the closed dialog
    // could notice.
    auto* owner = dynamic_cast<TypicalProviderImpl*>(wrapped.get());
    if (owner && workingXMP)
        owner->ExchangeMetadata(std::move(workingXMP));
    MetaDataUpdateAccess access(wrapped);
    if (!owner)
    {
        xmp::RemoveProperties(*access);
        if (workingXMP)
            xmp::AppendProperties(workingXMP.get(), *access, xmp::kAppendReplaceExisting);
    }
    // One change of the whole, so the host stores and redraws everything.
    access.AddChange(Path());
    return modified;
}

} // namespace zephmetadataui
