#pragma once
// A text field: single-line on a QLineEdit, multi-line on a QPlainTextEdit.
// An edit is committed when the user presses Enter (single-line) or the field
// loses the focus: NotifyWhenChanged then hears once, and not at all if the
// text is what it was. Every keystroke is reported through
// NotifyWhenChangedInteractively. In the unknown state the field is empty and
// shows the unknown-state text in grey.

#include "zephui/UI_ControlView.h"
#include "zephui/zephui_export.h"

#include <utility>

namespace zephui
{

class ZEPHUI_EXPORT UI_TextEdit : public UI_InteractiveControlView
{
public:
    // Bits of the flags word.
    enum TextEditFlags : unsigned long
    {
        kTextEditMultiLine = 0x01,
        kTextEditNoFrame = 0x02,
        kTextEditWrap = 0x04,              // multi-line: wrap lines at the width
        kTextEditStandard = 0x10,          // the plain edit behaviour every field has
        kTextEditVerticalScrollBar = 0x40, // multi-line: a scroll bar always shown
        kTextEditFixedPitch = 0x80,        // a monospaced font, for code and packets
    };

    // alignment: 0 left, 1 centre, 2 right.
    explicit UI_TextEdit(unsigned long flags = kTextEditStandard, int alignment = 0);

    void SetValue(zephcore::UTF16String const& value);
    zephcore::UTF16String GetValue() const;
    void SetReadOnlyMode(bool readOnly);
    bool GetReadOnlyMode() const { return readOnly; }
    void SetUnknownStateText(zephcore::UTF16String const& value);
    zephcore::UTF16String const& GetUnknownStateText() const { return unknownText; }
    bool IsMultiLine() const { return (flags & kTextEditMultiLine) != 0; }
    unsigned long GetFlags() const { return flags; }

    // Selection as a pair of offsets (start, end) in UTF-16 units.
    void SetSelection(std::pair<int, int> const& range);
    void SetSelection(int start, int end) { SetSelection(std::make_pair(start, end)); }
    std::pair<int, int> GetSelection() const;
    void SelectAll();
    void Cut();
    void Copy();
    void Paste();
    bool CanCut() const;
    bool CanCopy() const;
    bool CanPaste() const;
    void ScrollToSelection();
    void ScrollToBegin();
    // Scrolls so the text at this offset is in view, moving the caret there.
    void ScrollTo(int position);
    // Scrolls a multi-line field one wheel step up (true) or down.
    void ScrollTo(bool up);

    // A view inside the field at its right end (a warning button, say); the
    // text stops short of it.
    void SetAddonSubviewWidth(float width);
    boost::intrusive_ptr<UI_SubView> GetAddonSubView();
    void SetCustomTextColor(ColorRGBA const& color);
    void ClearCustomTextColor();

    // Commits what was typed, as Enter or a focus loss does.
    void CommitEdit();

    void KnownValueStateChanged() override;
    void UI_SizeChanged(RectF const& rect) override;
    void UI_FocusChanged(bool hasFocus) override;
    PointF UI_GetRecommendedSize(Drawbot* drawbot) override;

protected:
    QWidget* CreateWidget() override;

private:
    void ApplyText();
    void ApplyLook();
    void ApplyLookTo(QWidget* widget);
    void PlaceAddon();
    void OnUserEdit();

    unsigned long flags = kTextEditStandard;
    int alignment = 0;
    zephcore::UTF16String text;
    zephcore::UTF16String committed;
    zephcore::UTF16String unknownText;
    bool readOnly = false;
    bool applying = false;
    bool hasCustomColor = false;
    ColorRGBA customColor;
    float addonWidth = 0.0f;
    boost::intrusive_ptr<UI_SubView> addon;
};

using UI_TextEditPtr = boost::intrusive_ptr<UI_TextEdit>;

} // namespace zephui
