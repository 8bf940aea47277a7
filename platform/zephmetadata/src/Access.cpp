#include "zephmetadata/Access.h"

#include "zephmetadata/Provider.h"

namespace zephmetadata
{

MetaDataReadAccess::MetaDataReadAccess(boost::shared_ptr<MetaDataProvider> const& provider)
    : provider(provider), meta(provider ? provider->MetaDataAccess() : nullptr)
{
}

MetaDataReadAccess::~MetaDataReadAccess() = default;

MetaDataUpdateAccess::MetaDataUpdateAccess(boost::shared_ptr<MetaDataProvider> const& provider)
    : MetaDataReadAccess(provider)
{
}

MetaDataUpdateAccess::~MetaDataUpdateAccess()
{
    if (!provider || changes.empty())
        return;
    // The provider is kept alive by our pointer even if a listener drops its own.
    provider->WriteChanges(changes);
    provider->NotifyMetaDataChanged();
}

void MetaDataUpdateAccess::AddChange(Path const& path)
{
    changes.push_back(path);
}

} // namespace zephmetadata
