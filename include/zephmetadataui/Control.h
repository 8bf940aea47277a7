#pragma once
// A bound control: one metadata value tied to one on-screen control in both
// directions. UpdateControl carries the model's value to the control and
// applies its status; UpdateValue carries the control's value to the model.
// ControlFactory (ControlFactory.h) makes the controls and wires these up.

#include "zephmetadataui/zephmetadataui_export.h"
#include <zephmetadata/Path.h>
#include <zephmetadata/Types.h>
#include <zephui/Messages.h>
#include <zephui/UI_SubView.h>

#include <boost/function.hpp>
#include <boost/intrusive_ptr.hpp>
#include <boost/optional.hpp>
#include <boost/shared_ptr.hpp>

namespace zephui
{
class UI_TextEdit;
class UI_StaticText;
class UI_Checkbox;
class UI_Popup;
class UI_HotTextNumber;
class UI_StarRating;
class UI_URLEdit;
} // namespace zephui

namespace zephmetadataui
{

// How a control presents its value.
enum ControlStatus
{
    kControlStatusDisabled = 0, // greyed, takes no keyboard focus
    kControlStatusReadOnly = 1, // active, not changeable
    kControlStatusEditable = 2, // active and changeable
};

// How a view wants values shown that can't be written. Passed unengaged when
// the caller makes no statement.
struct ZEPHMETADATAUI_EXPORT ControlDisplayParameter
{
    bool read_only = false;
};

// Keeps a control on screen alive and, when it dies, cuts the control loose
// from every notification it was registered for.
struct ZEPHMETADATAUI_EXPORT Control
{
    Control(boost::intrusive_ptr<zephui::UI_SubView> const& view,
            boost::function<void()> const& disconnect);
    // Calls disconnect (if any), destroys it, then drops the view.
    ~Control();
    Control(Control const&) = delete;
    Control& operator=(Control const&) = delete;

    boost::intrusive_ptr<zephui::UI_SubView> view;
    boost::function<void()> disconnect;
};

// Disabled, read-only or editable, from the path, the provider, the value's
// type, the process-wide "all writable" switch and the view's wish.
ZEPHMETADATAUI_EXPORT ControlStatus QueryControlStatus(
    zephmetadata::Value const& value, boost::optional<ControlDisplayParameter> parameter);
// Whether a control for the value is shown at all, given the result of its read.
ZEPHMETADATAUI_EXPORT bool QueryVisibilityStatus(zephmetadata::Value const& value,
                                                 zephmetadata::GetValueResult result);

ZEPHMETADATAUI_EXPORT void
SetControlReadOnly(boost::intrusive_ptr<zephui::UI_TextEdit> const& control, bool readOnly);
ZEPHMETADATAUI_EXPORT void
SetControlReadOnly(boost::intrusive_ptr<zephui::UI_URLEdit> const& control, bool readOnly);

// Model to control: read the value again, show it, apply status and visibility.
ZEPHMETADATAUI_EXPORT void UpdateControl(zephmetadata::Value const& value,
                                         boost::intrusive_ptr<zephui::UI_TextEdit> const& control);
ZEPHMETADATAUI_EXPORT void
UpdateControl(zephmetadata::Value const& value,
              boost::intrusive_ptr<zephui::UI_StaticText> const& control);
ZEPHMETADATAUI_EXPORT void UpdateControl(zephmetadata::Value const& value,
                                         boost::intrusive_ptr<zephui::UI_Checkbox> const& control);
ZEPHMETADATAUI_EXPORT void UpdateControl(zephmetadata::Value const& value,
                                         boost::intrusive_ptr<zephui::UI_Popup> const& control);

// Control to model: write the control's value, or remove it when the control
// is empty or unknown. Only a real change is recorded and notified.
ZEPHMETADATAUI_EXPORT void UpdateValue(zephmetadata::Value const& value,
                                       boost::intrusive_ptr<zephui::UI_TextEdit> const& control);
ZEPHMETADATAUI_EXPORT void UpdateValue(zephmetadata::Value const& value,
                                       boost::intrusive_ptr<zephui::UI_StaticText> const& control);
ZEPHMETADATAUI_EXPORT void UpdateValue(zephmetadata::Value const& value,
                                       boost::intrusive_ptr<zephui::UI_Checkbox> const& control);
ZEPHMETADATAUI_EXPORT void UpdateValue(zephmetadata::Value const& value,
                                       boost::intrusive_ptr<zephui::UI_Popup> const& control);
ZEPHMETADATAUI_EXPORT void
UpdateValue(zephmetadata::Value const& value,
            boost::intrusive_ptr<zephui::UI_HotTextNumber> const& control);
ZEPHMETADATAUI_EXPORT void UpdateValue(zephmetadata::Value const& value,
                                       boost::intrusive_ptr<zephui::UI_StarRating> const& control);
ZEPHMETADATAUI_EXPORT void UpdateValue(zephmetadata::Value const& value,
                                       boost::intrusive_ptr<zephui::UI_URLEdit> const& control);

// Empties each given callable in place (any may be null). The holders stay
// in their senders' lists, which skip empty callables from then on.
ZEPHMETADATAUI_EXPORT void
Disconnect(boost::shared_ptr<boost::function<void(zephui::Message*)>> const& changed,
           boost::shared_ptr<boost::function<void(__XMPMeta__*)>> const& metadataChanged,
           boost::shared_ptr<boost::function<void()>> const& xmpWritingChanged,
           boost::shared_ptr<boost::function<void(zephui::Message*)>> const& extraChanged);

} // namespace zephmetadataui
