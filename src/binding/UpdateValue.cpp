// Control to model: every write opens an update access, sets or removes the
// value, and records a change only if the model reports one, so that an
// unchanged value wakes nobody.

#include "binding/BindingPrivate.h"

#include <cmath>
#include <limits>

namespace zephmetadataui
{

namespace
{

template <class T> void WriteValue(Value const& value, T const& newValue)
{
    MetaDataUpdateAccess access(value.provider);
    if (SetValue(*access, value, newValue))
        access.AddChange(value);
}

void RemoveValue(Value const& value)
{
    MetaDataUpdateAccess access(value.provider);
    if (DeleteValue(*access, value))
        access.AddChange(value);
}

void WriteOrRemoveText(Value const& value, UTF8String const& text)
{
    if (text.empty())
        RemoveValue(value);
    else
        WriteValue(value, text);
}

// Truncates toward zero; numbers beyond the 64-bit range stop at its ends.
long long TruncateToInteger(double number)
{
    double const truncated = std::trunc(number);
    if (truncated >= 9223372036854775807.0)
        return std::numeric_limits<long long>::max();
    if (truncated <= -9223372036854775808.0)
        return std::numeric_limits<long long>::min();
    return static_cast<long long>(truncated);
}

} // namespace

void UpdateValue(Value const& value, boost::intrusive_ptr<UI_TextEdit> const& control)
{
    if (!control)
        return;
    // An unknown field (one showing "<Multiple Values>") that reports a change
    // clears the value for the whole selection.
    if (control->IsValueUnknown())
        RemoveValue(value);
    else
        WriteOrRemoveText(value, zephcore::UTF16to8(control->GetValue()));
}

void UpdateValue(Value const&, boost::intrusive_ptr<UI_StaticText> const&) {}

void UpdateValue(Value const& value, boost::intrusive_ptr<UI_URLEdit> const& control)
{
    if (!control)
        return;
    if (control->IsValueUnknown())
        RemoveValue(value);
    else
        WriteOrRemoveText(value, zephcore::UTF16to8(control->GetValue()));
}

void UpdateValue(Value const& value, boost::intrusive_ptr<UI_Checkbox> const& control)
{
    if (!control)
        return;
    if (control->IsValueUnknown())
        RemoveValue(value);
    else
        WriteValue(value, bool(control->GetValue() == 1));
}

void UpdateValue(Value const& value, boost::intrusive_ptr<UI_StarRating> const& control)
{
    if (!control)
        return;
    double const rating = control->GetValue();
    if (control->IsValueUnknown() || rating == 0.0)
        RemoveValue(value);
    else
        SetMinimalFloatValue(value, rating);
}

void UpdateValue(Value const& value, boost::intrusive_ptr<UI_HotTextNumber> const& control)
{
    if (!control)
        return;
    // An emptied number field reads as NaN, which removes the value.
    double const number = control->GetValue();
    if (control->IsValueUnknown() || std::isnan(number))
    {
        RemoveValue(value);
        return;
    }
    boost::optional<PrimitiveType> const primitive = PrimitiveTypeOfPath(value);
    if (primitive && *primitive == kPrimitiveInteger)
        WriteValue(value, TruncateToInteger(number));
    else
        WriteValue(value, number);
}

void UpdateValue(Value const& value, boost::intrusive_ptr<UI_Popup> const& control)
{
    if (!control)
        return;
    if (control->IsValueUnknown())
    {
        RemoveValue(value);
        return;
    }
    int const index = control->GetValue();
    if (index < 0)
    {
        // Text typed into an open choice.
        WriteOrRemoveText(value, zephcore::UTF16to8(control->GetValueString()));
        return;
    }
    ChoiceList const* choices = ChoicesFromUserData(control->GetUserData());
    if (!choices || static_cast<std::size_t>(index) >= choices->size() || !(*choices)[index])
        return;
    // A choice with an empty value is the entry that clears the property.
    WriteOrRemoveText(value, (*choices)[index]->value);
}

} // namespace zephmetadataui
