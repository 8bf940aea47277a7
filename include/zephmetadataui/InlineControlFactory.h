#pragma once
// Bound controls for hosts that place single values in views of their own,
// and the manual refresh of a control made without a view item.

#include "zephmetadataui/Control.h"
#include "zephmetadataui/zephmetadataui_export.h"

#include <zephmetadata/Path.h>
#include <zephui/UI_Node.h>

#include <boost/intrusive_ptr.hpp>
#include <boost/shared_ptr.hpp>

namespace zephmetadataui
{

// An editing control for the value (or a disabled or static one when it can't
// be written), added to parent. Null when the value has no definition.
ZEPHMETADATAUI_EXPORT boost::shared_ptr<Control>
InlineControlFactory(zephmetadata::Value const& value,
                     boost::intrusive_ptr<zephui::UI_Node> parent);

// Runs the UpdateControl that fits the control the factory made for the value
// without a view item; displayOnly must be the flag it was made with. Does
// nothing while a control creator is registered. A control of another class
// raises the "Invalid type conversion." error.
ZEPHMETADATAUI_EXPORT void RefreshControl(zephmetadata::Value const& value,
                                          boost::shared_ptr<Control> const& control,
                                          bool displayOnly);

} // namespace zephmetadataui
