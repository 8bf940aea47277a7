#pragma once
// The control factory: picks, makes and wires the control for one metadata
// value. The choice follows the value's definition, the optional view item of
// a form, and a host's registered creator.

#include "zephmetadataui/Control.h"
#include "zephmetadataui/zephmetadataui_export.h"

#include <zephmetadata/Definitions.h>
#include <zephmetadata/Path.h>
#include <zephui/Messages.h>
#include <zephui/UI_Node.h>

#include <boost/function.hpp>
#include <boost/intrusive_ptr.hpp>
#include <boost/shared_ptr.hpp>

#include <cstdint>

namespace zephmetadataui
{

// A host's hook for making controls of its own. May return null, and then
// the normal rules run.
using ControlCreator = boost::function<boost::shared_ptr<Control>(
    zephmetadata::Value const&, boost::shared_ptr<zephmetadata::ViewItem>,
    boost::intrusive_ptr<zephui::UI_Node>)>;

// The bound control for the value, added to parent when one is given; null
// when the value has no definition or its kind has no control. displayOnly
// asks for a control that only shows. changeCallback, if given, runs after
// each edit has been written to the model.
ZEPHMETADATAUI_EXPORT boost::shared_ptr<Control>
ControlFactory(zephmetadata::Value const& value, boost::shared_ptr<zephmetadata::ViewItem> viewItem,
               boost::intrusive_ptr<zephui::UI_Node> parent, bool displayOnly,
               zephui::MessageCallback const& changeCallback);
ZEPHMETADATAUI_EXPORT boost::shared_ptr<Control>
ControlFactory(zephmetadata::Value const& value, boost::intrusive_ptr<zephui::UI_Node> parent,
               bool displayOnly, zephui::MessageCallback const& changeCallback);

// For a view that reuses the controls of rows that left the screen: binds
// the control of a record that ControlFactory made to another value of the
// same definition, and shows that value, as the factory would for it. The
// record's old bindings are cut. False, with the record untouched, for a
// control the factory does not make (a registered creator's).
ZEPHMETADATAUI_EXPORT bool RebindControl(zephmetadata::Value const& value, Control& control,
                                         zephui::MessageCallback const& changeCallback);

// What ControlFactory would make for the value without a view item, as a
// number equal for two values only when one control, once made, can show
// either of them after RebindControl: its kind of control, and the
// definition too where the control depends on it (choices, bounds). 0 when
// no control would be made; kShapeUnknown when a host's creator decides.
ZEPHMETADATAUI_EXPORT std::uintptr_t ControlShapeFor(zephmetadata::Value const& value,
                                                     bool displayOnly);
constexpr std::uintptr_t kShapeUnknown = ~std::uintptr_t(0);

// Replaces the registered creator (an empty one clears it). Affects controls
// made afterwards; the last Terminate clears it.
ZEPHMETADATAUI_EXPORT void RegisterControlCreator(ControlCreator creator);
ZEPHMETADATAUI_EXPORT ControlCreator RegisteredControlCreator();

// Hides the path everywhere from now on, for as long as the library is loaded.
ZEPHMETADATAUI_EXPORT void BlacklistPath(zephmetadata::Path const& path);

} // namespace zephmetadataui
