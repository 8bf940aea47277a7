#pragma once
// MetadataView_LinkDelegate: what a host implements to give the rows of a
// metadata view link buttons and to hear when the user turns one on or off.

#include "zephmetadataui/zephmetadataui_export.h"
#include <zephmetadata/Path.h>

namespace zephmetadataui
{

class ZEPHMETADATAUI_EXPORT MetadataView_LinkDelegate
{
public:
    MetadataView_LinkDelegate() = default;
    MetadataView_LinkDelegate(MetadataView_LinkDelegate const&) = default;
    MetadataView_LinkDelegate& operator=(MetadataView_LinkDelegate const&) = default;

    // This path gets a link button.
    virtual bool CanLinkPath(zephmetadata::Path const& path) = 0;
    // The button of this path is on.
    virtual bool IsPathLinked(zephmetadata::Path const& path) = 0;
    // The user turned the button of this path on or off.
    virtual void SetPathLinked(zephmetadata::Path const& path, bool linked) = 0;
    // Link buttons take clicks at present.
    virtual bool IsLinkingEnabled() = 0;
    virtual ~MetadataView_LinkDelegate() = default;
};

} // namespace zephmetadataui
