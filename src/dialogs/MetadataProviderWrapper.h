#pragma once
// The metadata dialog's buffer in front of a host's provider: the pages read
// and write a private copy of the host's metadata, and only CommitChanges
// hands it back, in one step. Dropping the wrapper forgets every edit.
//
// In front of several files shown as one (a MultiObjectProvider), it keeps a
// copy per file behind one combined view, so values that differ show as
// multiple values and an edit reaches every copy; the commit hands each copy
// to its own file.

#include "zephmetadataui/zephmetadataui_export.h"

#include <zephmetadata/Provider.h>
#include <zephmetadata/Types.h>
#include <zephmetadata/XmpMeta.h>

#include <boost/shared_ptr.hpp>

namespace zephmetadataui
{

class ZEPHMETADATAUI_EXPORT MetadataProviderWrapper : public zephmetadata::MetaDataProvider
{
public:
    // Copies the host's metadata; a host without metadata, or a copy that
    // fails, leaves the wrapper empty.
    explicit MetadataProviderWrapper(boost::shared_ptr<zephmetadata::MetaDataProvider> wrapped);
    ~MetadataProviderWrapper() override;

    // Read-only and availability answers are the host's.
    bool QueryPathStatus(zephmetadata::Path const& path,
                         zephmetadata::PathStatus status) const override;
    bool IsUsable() const override { return true; }

    // Replaces the host's metadata by the copy and tells the host's listeners
    // of one change of the whole, if anything was edited. True when the copy
    // was edited and the host has metadata to take it. A host that owns its
    // tree takes the copy itself, and the wrapper is then empty.
    bool CommitChanges();
    bool IsModified() const { return modified; }
    // Merges a template into the copy (into each file's copy, for several
    // files) by the rule, as one change. True if anything changed.
    static bool ApplyTemplate(boost::shared_ptr<MetadataProviderWrapper> const& wrapper,
                              __XMPMeta__* source, zephmetadata::TemplateImportOptions rule);
    boost::shared_ptr<zephmetadata::MetaDataProvider> const& GetWrapped() const { return wrapped; }

protected:
    __XMPMeta__* MetaDataAccess() const override;

private:
    // Edits only mark the copy; nothing reaches the host until the commit.
    void WriteChanges(std::vector<zephmetadata::Path> const& paths) override;

    void RebuildCombined();

    boost::shared_ptr<zephmetadata::MetaDataProvider> wrapped;
    zephmetadata::xmp::MetaPtr workingXMP;
    bool modified = false;
    // For several files: a wrapper per file and the view that combines them.
    std::vector<boost::shared_ptr<MetadataProviderWrapper>> members;
    boost::shared_ptr<zephmetadata::MetaDataProvider> combined;
};

} // namespace zephmetadataui
