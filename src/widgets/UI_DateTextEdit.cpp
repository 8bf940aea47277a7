#include "zephmetadataui/UI_DateTextEdit.h"

#include "binding/BindingPrivate.h"
#include "contracts/Model.h"
#include "contracts/Toolkit.h"
#include "widgets/DateTextParsing.h"

#include <boost/bind/bind.hpp>
#include <boost/date_time/gregorian/gregorian_types.hpp>
#include <boost/date_time/posix_time/posix_time_types.hpp>
#include <boost/make_shared.hpp>

namespace zephmetadataui
{

namespace
{

char const* const kUnknownStateText = "YYYY/MM/DD HH:MM:SS";
char const* const kFormatWarningKey = "$$$/zephmetadataui/UI_DateTextEdit/Warning/FormatError=The "
                                      "date format is not valid. Please enter date in "
                                      "YYYY/MM/DD HH:MM:SS #{plusmn}HH:MM format.";
int const kUnknownValueTextColor = 281;

} // namespace

UI_DateTextEdit::UI_DateTextEdit(Flags<unsigned long> flags, int alignment)
    : UI_TextEdit(flags.Get(), alignment)
{
    UI_SetNodeID("UI_DateTextEdit");

    SetAddonSubviewWidth(warningButtonSize);
    warningButton = new UI_PictureButton();
    warningButton->UI_Show(false);
    GetAddonSubView()->ChildPushBack(warningButton);

    imageSupplyCallback = boost::make_shared<boost::function<void(ConstMessage*)>>(
        boost::bind(&UI_DateTextEdit::OnSupplyImage, this, boost::placeholders::_1));
    warningButton->SetImageSupplyFunction(imageSupplyCallback);
    warningButton->SetDisplayBorderNever(true);
    warningButton->SetDisplayBorderAlways(false);
    warningButton->SetChangeFocusOnClick(false);

    typedCallback = boost::make_shared<boost::function<void(Message*)>>(
        boost::bind(&UI_DateTextEdit::OnTyped, this, boost::placeholders::_1));
    committedCallback = boost::make_shared<boost::function<void(Message*)>>(
        boost::bind(&UI_DateTextEdit::OnCommitted, this, boost::placeholders::_1));
    NotifyWhenChangedInteractively(typedCallback);
    NotifyWhenChanged(committedCallback);

    SetUnknownStateText(zephcore::AsciiToUTF16(kUnknownStateText));
}

UI_DateTextEdit::~UI_DateTextEdit()
{
    // The callables point at this edit; the lists that hold them may outlive it.
    typedCallback->clear();
    committedCallback->clear();
    imageSupplyCallback->clear();
}

void UI_DateTextEdit::OnSupplyImage(ConstMessage* message)
{
    auto* supply = dynamic_cast<UI_PictureSupplyMessage*>(message);
    if (!supply)
        return;
    std::string name = "SP_Alert_Xs_N";
    if (GetIconType() == 2)
        name += "_D";
    supply->SetImage(UI_NodeManager::Get(false)->GetImage(UI_GetDrawSupplier(), name, 1));
}

bool UI_DateTextEdit::IsWarningShown() const
{
    return warningButton->UI_IsShown();
}

void UI_DateTextEdit::UI_SizeChanged(RectF const& rect)
{
    warningButton->UI_SetLocalRectF(RectF(0.0f, 0.0f, warningButtonSize - 2.5f, warningButtonSize));
    UI_TextEdit::UI_SizeChanged(rect);
}

void UI_DateTextEdit::KnownValueStateChanged()
{
    UI_TextEdit::KnownValueStateChanged();
    SetValueOverride();
}

void UI_DateTextEdit::SetValueOverride()
{
    if (IsValueUnknown())
    {
        SetCustomTextColor(GetColor(kUnknownValueTextColor));
        if (warningButton->UI_IsShown())
            warningButton->UI_Show(false);
    }
    else
    {
        ClearCustomTextColor();
    }
}

void UI_DateTextEdit::ShowWarning(bool show)
{
    if (show && !warningButton->UI_IsShown())
    {
        warningButton->UI_Show(true);
        warningButton->UI_SetToolTip(zephcore::Localizer::Get().GetString(kFormatWarningKey),
                                     400.0f);
    }
    else if (!show && warningButton->UI_IsShown())
    {
        warningButton->UI_Show(false);
    }
}

bool UI_DateTextEdit::Reparse(UTF16String const& text)
{
    dateValue = XMP_DateTime();
    isValid = ParseDateText(text, dateValue);
    ShowWarning(!isValid && !text.empty());
    return isValid;
}

void UI_DateTextEdit::OnTyped(Message*)
{
    // Typing never reformats: only validity and the warning follow the keys.
    if (IsValueKnown())
        Reparse(UI_TextEdit::GetValue());
}

void UI_DateTextEdit::OnCommitted(Message*)
{
    UTF16String const text = UI_TextEdit::GetValue();
    if (text.empty())
    {
        lastGoodText.clear();
        SetValueUnknown();
        return;
    }
    if (Reparse(text))
        lastGoodText = ToStoredText(dateValue);
    else if (!lastGoodText.empty())
        SetValue(UTF16String(lastGoodText)); // the bad text goes, the last good date comes back
    else
        SetValueUnknown();
}

UTF16String UI_DateTextEdit::GetValue() const
{
    return isValid ? ToStoredText(dateValue) : UI_TextEdit::GetValue();
}

void UI_DateTextEdit::SetValue(UTF16String text)
{
    // A value set by program is a known one, also after "<Multiple Values>".
    if (IsValueUnknown())
        SetValueKnown();
    lastGoodText = text;
    if (Reparse(text))
        UI_TextEdit::SetValue(FormatForDisplay(dateValue));
    else
        UI_TextEdit::SetValue(text);
}

void UI_DateTextEdit::SetDateTime(boost::posix_time::ptime dateTime)
{
    dateValue = XMP_DateTime();
    if (dateTime.is_special())
    {
        // Nothing to split: show no date rather than fail.
        isValid = false;
        UI_TextEdit::SetValue(UTF16String());
        return;
    }
    isValid = true;
    boost::gregorian::date const date = dateTime.date();
    boost::posix_time::time_duration const time = dateTime.time_of_day();
    dateValue.year = date.year();
    dateValue.month = date.month();
    dateValue.day = date.day();
    dateValue.hour = static_cast<std::int32_t>(time.hours());
    dateValue.minute = static_cast<std::int32_t>(time.minutes());
    dateValue.second = static_cast<std::int32_t>(time.seconds());
    dateValue.hasDate = 1;
    dateValue.hasTime = 1;
    UI_TextEdit::SetValue(FormatForDisplay(dateValue));
}

boost::posix_time::ptime UI_DateTextEdit::GetDateTime() const
{
    using boost::posix_time::ptime;
    if (dateValue.day < 1 || dateValue.day > 31 || dateValue.year < 1400 || dateValue.year > 10000)
        return ptime(boost::posix_time::not_a_date_time);
    try
    {
        boost::gregorian::date const date(static_cast<unsigned short>(dateValue.year),
                                          static_cast<unsigned short>(dateValue.month),
                                          static_cast<unsigned short>(dateValue.day));
        ptime result(date);
        if (dateValue.hasTime)
            result += boost::posix_time::hours(dateValue.hour) +
                      boost::posix_time::minutes(dateValue.minute) +
                      boost::posix_time::seconds(dateValue.second);
        return result;
    }
    catch (std::exception const&)
    {
        // Boost rejects month 0, day 31 of a short month and the like.
        return ptime(boost::posix_time::not_a_date_time);
    }
}

void UpdateControl(Value const& value, boost::intrusive_ptr<UI_DateTextEdit> const& control)
{
    if (!control)
        return;
    UTF8String raw;
    GetValueResult result = kGetValueAbsent;
    bool read = false;
    {
        MetaDataReadAccess access(value.provider);
        read = GetValue(*access, value, raw, &result);
    }
    if (read)
        control->SetValue(zephcore::UTF8to16(raw));
    else
        control->SetValueUnknown();
    ApplyControlStatus(value, control, result, DisplayParameterFromNodeID(control->UI_GetNodeID()));
}

void UpdateValue(Value const& value, boost::intrusive_ptr<UI_DateTextEdit> const& control)
{
    if (!control)
        return;
    MetaDataUpdateAccess access(value.provider);
    bool const changed = control->IsValueUnknown()
                             ? DeleteValue(*access, value)
                             : SetValue(*access, value, zephcore::UTF16to8(control->GetValue()));
    if (changed)
        access.AddChange(value);
}

void SetControlReadOnly(boost::intrusive_ptr<UI_DateTextEdit> const& control, bool readOnly)
{
    if (control)
        control->SetReadOnlyMode(readOnly);
}

} // namespace zephmetadataui
