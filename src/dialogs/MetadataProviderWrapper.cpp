#include "dialogs/MetadataProviderWrapper.h"

#include <zephmetadata/Access.h>
#include <zephmetadata/MultiObjectProvider.h>
#include <zephmetadata/Templates.h>

#include <boost/make_shared.hpp>

namespace zephmetadataui
{

using namespace zephmetadata;

MetadataProviderWrapper::MetadataProviderWrapper(
    boost::shared_ptr<MetaDataProvider> wrappedProvider)
    : wrapped(std::move(wrappedProvider))
{
    if (auto const* several = dynamic_cast<MultiObjectProvider const*>(wrapped.get()))
    {
        for (auto const& member : several->Members())
            members.push_back(boost::make_shared<MetadataProviderWrapper>(member));
        RebuildCombined();
        return;
    }
    MetaDataReadAccess const access(wrapped);
    if (*access)
        workingXMP = xmp::Clone(*access);
}

void MetadataProviderWrapper::RebuildCombined()
{
    combined = boost::make_shared<MultiObjectProvider>(
        std::vector<boost::shared_ptr<MetaDataProvider>>(members.begin(), members.end()));
}

__XMPMeta__* MetadataProviderWrapper::MetaDataAccess() const
{
    if (!combined)
        return workingXMP.get();
    // The combined view's handle, which the value functions look through.
    MetaDataReadAccess const access(combined);
    return *access;
}

MetadataProviderWrapper::~MetadataProviderWrapper() = default;

bool MetadataProviderWrapper::QueryPathStatus(Path const& path, PathStatus status) const
{
    return wrapped ? wrapped->QueryPathStatus(path, status) : false;
}

void MetadataProviderWrapper::WriteChanges(std::vector<Path> const& /*paths*/)
{
    modified = true;
    // A write through the combined view reached every file's copy.
    for (auto const& member : members)
        member->modified = true;
}

bool MetadataProviderWrapper::ApplyTemplate(
    boost::shared_ptr<MetadataProviderWrapper> const& wrapper, __XMPMeta__* source,
    TemplateImportOptions rule)
{
    bool changed = false;
    if (wrapper->combined)
    {
        for (auto const& member : wrapper->members)
            changed |= ApplyTemplate(member, source, rule);
        if (!changed)
            return false;
        wrapper->RebuildCombined();
        wrapper->modified = true;
        wrapper->NotifyMetaDataChanged();
        return true;
    }
    MetaDataUpdateAccess target(wrapper);
    if (*target && source && zephmetadata::ApplyTemplate(*target, source, rule))
    {
        target.AddChange(Path());
        changed = true;
    }
    return changed;
}

bool MetadataProviderWrapper::CommitChanges()
{
    if (!modified)
        return false;
    if (combined)
    {
        bool committed = false;
        for (auto const& member : members)
            committed |= member->CommitChanges();
        return committed;
    }
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
