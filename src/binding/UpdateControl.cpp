// Model to control: each overload reads its value under a short read access,
// lets go of the access, and only then touches the control, so that a change
// the control itself set off can come back here safely.

#include "binding/BindingPrivate.h"

#include "binding/BindingText.h"

namespace zephmetadataui
{

namespace
{

template <class T> bool ReadValue(Value const& value, T& out, GetValueResult& result)
{
    MetaDataReadAccess access(value.provider);
    result = kGetValueAbsent;
    return GetValue(*access, value, out, &result);
}

template <class T>
void SetReadOnlyByDisabling(boost::intrusive_ptr<T> const& control, bool readOnly)
{
    if (!control)
        return;
    control->UI_SetDisabled(readOnly);
    if (UI_ControlView* view = dynamic_cast<UI_ControlView*>(control.get()))
        view->SetWantsKeyboardFocus(!readOnly);
}

// The shape of the kinds whose read either gives the value or puts the
// control in the unknown state, followed by the status without a parameter.
template <class Raw, class ControlT, class Apply>
void UpdateKnownOrUnknown(Value const& value, boost::intrusive_ptr<ControlT> const& control,
                          Apply apply)
{
    if (!control)
        return;
    Raw raw{};
    GetValueResult result;
    if (ReadValue(value, raw, result))
        apply(raw);
    else
        control->SetValueUnknown();
    ApplyControlStatus(value, control, result, boost::none);
}

} // namespace

UTF16String MultipleValuesEditText()
{
    return zephcore::Localizer::Get().GetString(
        "$$$/zephmetadataui/UpdateControl/EditText/MultipleValuesDisplayString=<Multiple Values>");
}

UTF16String MultipleValuesStaticText()
{
    return zephcore::Localizer::Get().GetString("$$$/zephmetadataui/UpdateControl/StaticText/"
                                                "MultipleValuesDisplayString=<Multiple Values>");
}

void SetControlReadOnly(boost::intrusive_ptr<UI_TextEdit> const& control, bool readOnly)
{
    if (control)
        control->SetReadOnlyMode(readOnly);
}

void SetControlReadOnly(boost::intrusive_ptr<UI_URLEdit> const& control, bool readOnly)
{
    if (control)
        control->SetReadOnlyMode(readOnly);
}

void SetControlReadOnly(boost::intrusive_ptr<UI_Checkbox> const& control, bool readOnly)
{
    SetReadOnlyByDisabling(control, readOnly);
}

void SetControlReadOnly(boost::intrusive_ptr<UI_Popup> const& control, bool readOnly)
{
    SetReadOnlyByDisabling(control, readOnly);
}

void SetControlReadOnly(boost::intrusive_ptr<UI_HotTextNumber> const& control, bool readOnly)
{
    SetReadOnlyByDisabling(control, readOnly);
}

void SetControlReadOnly(boost::intrusive_ptr<UI_StarRating> const& control, bool readOnly)
{
    SetReadOnlyByDisabling(control, readOnly);
}

void UpdateControl(Value const& value, boost::intrusive_ptr<UI_TextEdit> const& control)
{
    if (!control)
        return;
    UTF8String raw;
    GetValueResult result;
    UTF16String text;
    if (ReadValue(value, raw, result))
        text = zephcore::UTF8to16(raw);

    if (result == kGetValueMultiple)
    {
        // Someone typing in this very field keeps what they typed.
        if (!control->UI_HasKeyboardFocus(false))
        {
            control->SetValueKnown();
            control->SetUnknownStateText(MultipleValuesEditText());
            control->SetValueUnknown();
        }
    }
    else
    {
        control->SetValueKnown();
        if (control->GetValue() != text)
            control->SetValue(text);
    }
    ApplyControlStatus(value, control, result, DisplayParameterFromNodeID(control->UI_GetNodeID()));
}

void UpdateControl(Value const& value, boost::intrusive_ptr<UI_StaticText> const& control)
{
    if (!control)
        return;
    UTF8String raw;
    GetValueResult result;
    UTF16String text;
    if (ReadValue(value, raw, result))
    {
        boost::shared_ptr<EntryDefinition> const entry = PathEntryDefinition(value);
        if (ChoiceList const* choices = ChoicesFromUserData(control->GetUserData()))
            text = DisplayTextForChoices(*choices, raw);
        else
            text = DisplayTextForValue(entry, raw);
        bool const addressLike =
            entry && (TextIs(entry->typeId, "uri") || TextIs(entry->typeId, "url") ||
                      TextIs(entry->typeId, "xpath"));
        control->SetTextTruncation(addressLike ? TextTruncation(3) : TextTruncation(2));
    }
    else if (result == kGetValueMultiple)
    {
        text = MultipleValuesStaticText();
    }
    // Static text has no status: it only shows, and blanks for no value.
    control->SetLabelText(text);
}

void UpdateControl(Value const& value, boost::intrusive_ptr<UI_Checkbox> const& control)
{
    UpdateKnownOrUnknown<bool>(
        value, control, [&](bool checked) { control->SetValue(CheckboxValue(checked ? 1 : 0)); });
}

void UpdateControl(Value const& value, boost::intrusive_ptr<UI_HotTextNumber> const& control)
{
    UpdateKnownOrUnknown<double>(value, control, [&](double number) { control->SetValue(number); });
}

void UpdateControl(Value const& value, boost::intrusive_ptr<UI_StarRating> const& control)
{
    UpdateKnownOrUnknown<double>(value, control, [&](double number) { control->SetValue(number); });
}

void UpdateControl(Value const& value, boost::intrusive_ptr<UI_URLEdit> const& control)
{
    UpdateKnownOrUnknown<UTF8String>(
        value, control, [&](UTF8String const& raw) { control->SetValue(zephcore::UTF8to16(raw)); });
}

void UpdateControl(Value const& value, boost::intrusive_ptr<UI_Popup> const& control)
{
    if (!control)
        return;
    UTF8String raw;
    GetValueResult result;
    ReadValue(value, raw, result); // only the result word counts

    if (result != kGetValueRead && result != kGetValueAbsent)
    {
        control->SetValueUnknown();
    }
    else if (ChoiceList const* choices = ChoicesFromUserData(control->GetUserData()))
    {
        UTF16String const text = DisplayTextForChoices(*choices, raw);
        if (raw.empty() && text.empty())
            control->SetValueUnknown();
        else
            control->SetValueString(text, true);
    }
    ApplyControlStatus(value, control, result, boost::none);
}

} // namespace zephmetadataui
