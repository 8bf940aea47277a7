#pragma once
// A text edit for an XMP date. The user types a date and time as text; the
// text is checked as it is typed, a small warning button with the expected
// format as its tool tip shows while it is bad, and a bad commit falls back
// to the last good date. GetValue hands out the stored ISO form; the edit
// shows the display form ("2009-05-12 14:30:00 +02:00").

#include "zephmetadataui/Control.h"
#include "zephmetadataui/zephmetadataui_export.h"

#include <zephmetadata/XMPDateTime.h>
#include <zephui/UI_Button.h>
#include <zephui/UI_TextEdit.h>

#include <boost/date_time/posix_time/ptime.hpp>
#include <boost/intrusive_ptr.hpp>

namespace zephmetadataui
{

class ZEPHMETADATAUI_EXPORT UI_DateTextEdit : public zephui::UI_TextEdit
{
public:
    // alignment: 0 left, 1 centre, 2 right.
    UI_DateTextEdit(zephui::Flags<unsigned long> flags, int alignment);
    ~UI_DateTextEdit() override;

    // Not-a-date-time unless the date parts make a real date from 1400 on.
    boost::posix_time::ptime GetDateTime() const;
    // Shows the date and time (without zone); the last good text is kept.
    void SetDateTime(boost::posix_time::ptime dateTime);
    // The stored ISO form while the text is a date, else the text as typed.
    zephcore::UTF16String GetValue() const;
    // Shows a stored or typed date in display form; a bad text is shown as it
    // is, with the warning, and still becomes the text a bad commit returns to.
    void SetValue(zephcore::UTF16String text);
    bool IsValid() const { return isValid; }
    // Whether the format warning is on screen.
    bool IsWarningShown() const;

    void UI_SizeChanged(zephui::RectF const& rect) override;
    void KnownValueStateChanged() override;

private:
    // The look of the known and unknown states.
    void SetValueOverride();
    void ShowWarning(bool show);
    void OnTyped(zephui::Message* message);
    void OnCommitted(zephui::Message* message);
    void OnSupplyImage(zephui::ConstMessage* message);
    bool Reparse(zephcore::UTF16String const& text);

    zephmetadata::XMP_DateTime dateValue;
    zephcore::UTF16String lastGoodText;
    bool isValid = false;
    float warningButtonSize = 16.0f;
    boost::intrusive_ptr<zephui::UI_PictureButton> warningButton;
    zephui::MessageCallback typedCallback;
    zephui::MessageCallback committedCallback;
    zephui::ConstMessageCallback imageSupplyCallback;
};

ZEPHMETADATAUI_EXPORT void UpdateControl(zephmetadata::Value const& value,
                                         boost::intrusive_ptr<UI_DateTextEdit> const& control);
// The read-only mode of the text edit beneath.
ZEPHMETADATAUI_EXPORT void SetControlReadOnly(boost::intrusive_ptr<UI_DateTextEdit> const& control,
                                              bool readOnly);

} // namespace zephmetadataui
