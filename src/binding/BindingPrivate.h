#pragma once
// Module-private overloads of the binding functions and the status step that
// every UpdateControl ends with.

#include "binding/ControlStatusPrivate.h"
#include "contracts/Toolkit.h"

namespace zephmetadataui
{

class UI_DateTextEdit;

// Kinds without a read-only mode: read-only means disabled and out of the
// keyboard's way.
void SetControlReadOnly(boost::intrusive_ptr<UI_Checkbox> const& control, bool readOnly);
void SetControlReadOnly(boost::intrusive_ptr<UI_Popup> const& control, bool readOnly);
void SetControlReadOnly(boost::intrusive_ptr<UI_HotTextNumber> const& control, bool readOnly);
void SetControlReadOnly(boost::intrusive_ptr<UI_StarRating> const& control, bool readOnly);

void UpdateControl(Value const& value, boost::intrusive_ptr<UI_HotTextNumber> const& control);
void UpdateControl(Value const& value, boost::intrusive_ptr<UI_StarRating> const& control);
void UpdateControl(Value const& value, boost::intrusive_ptr<UI_URLEdit> const& control);

void UpdateValue(Value const& value, boost::intrusive_ptr<UI_DateTextEdit> const& control);

// The localised "<Multiple Values>" of text edits and of static text.
UTF16String MultipleValuesEditText();
UTF16String MultipleValuesStaticText();

// Status, focus, read-only state and visibility from the value and the
// result of the read that UpdateControl just made.
template <class T>
void ApplyControlStatus(Value const& value, boost::intrusive_ptr<T> const& control,
                        GetValueResult result, boost::optional<ControlDisplayParameter> parameter)
{
    ControlStatus const status = QueryControlStatus(value, parameter);
    control->UI_SetDisabled(status == kControlStatusDisabled);
    if (UI_ControlView* view = dynamic_cast<UI_ControlView*>(control.get()))
        view->SetWantsKeyboardFocus(status != kControlStatusDisabled);
    // A disabled control keeps whatever read-only state it had.
    if (status != kControlStatusDisabled)
        SetControlReadOnly(control, status == kControlStatusReadOnly);
    control->UI_Show(QueryVisibilityStatus(value, result));
}

} // namespace zephmetadataui
