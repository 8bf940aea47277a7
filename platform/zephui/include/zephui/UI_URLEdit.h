#pragma once
// A field for a web address: a text field and, at its right, a button that
// opens the address in the desktop's browser. Edits are committed as in
// UI_TextEdit and reported by this control's own NotifyWhenChanged.

#include "zephui/UI_Button.h"
#include "zephui/UI_TextEdit.h"
#include "zephui/zephui_export.h"

namespace zephui
{

class ZEPHUI_EXPORT UI_URLEdit : public UI_ControlView
{
public:
    explicit UI_URLEdit(unsigned long flags = UI_TextEdit::kTextEditStandard);
    ~UI_URLEdit() override;

    zephcore::UTF16String GetValue() const { return edit->GetValue(); }
    void SetValue(zephcore::UTF16String const& value);
    void SetReadOnlyMode(bool readOnly) { edit->SetReadOnlyMode(readOnly); }
    bool GetReadOnlyMode() const { return edit->GetReadOnlyMode(); }
    void SetUnknownStateText(zephcore::UTF16String const& text) { edit->SetUnknownStateText(text); }
    bool IsValueUnknown() const { return UI_ControlView::IsValueUnknown(); }
    void NotifyWhenChanged(MessageCallback const& callback)
    {
        UI_ControlView::NotifyWhenChanged(callback);
    }

    // The address the button opens: the text read as a web address ("www.x.org"
    // gives "http://www.x.org"); empty for an empty field.
    zephcore::UTF16String GetLinkURL() const;
    // Opens it; false if there is none or the desktop refused.
    bool OpenLink();

    UI_TextEdit* GetTextEdit() const { return edit.get(); }

    void KnownValueStateChanged() override;
    void UI_SizeChanged(RectF const& rect) override;
    PointF UI_GetRecommendedSize(Drawbot* drawbot) override;

private:
    void Place();
    void OnEdited();

    UI_TextEditPtr edit;
    UI_TextButtonPtr openButton;
    MessageCallback editChanged;
    MessageCallback openClicked;
};

using UI_URLEditPtr = boost::intrusive_ptr<UI_URLEdit>;

} // namespace zephui
