#pragma once

#include "zephmetadataui/zephmetadataui_export.h"
// FocusMover: lets a host decide where the keyboard focus goes when Tab or
// Shift+Tab leaves a metadata view at its last or first editable row.

namespace zephmetadataui
{

class MetadataView;

class ZEPHMETADATAUI_EXPORT FocusMover
{
public:
    FocusMover() = default;
    FocusMover(FocusMover const&) = default;
    FocusMover& operator=(FocusMover const&) = default;

    // The view has no further row in this direction.
    virtual void MoveFocus(MetadataView* view, bool forward) = 0;
    virtual ~FocusMover() = default;
};

} // namespace zephmetadataui
