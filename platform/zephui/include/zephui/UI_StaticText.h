#pragma once
// A text label on a QLabel. One line is cut to the width by the truncation
// mode; with no truncation a label taller than a line wraps its words. A
// click on it tells NotifyWhenChanged, so a label can act as a link; the
// click still goes on to the nodes behind.

#include "zephui/Drawbot.h"
#include "zephui/UI_ControlView.h"
#include "zephui/UI_TextLayout.h"
#include "zephui/zephui_export.h"

class QLabel;

namespace zephui
{

// Horizontal alignment of a control's text.
enum ControlAlignment
{
    kAlignLeft = 0,
    kAlignCenter = 1,
    kAlignRight = 2
};

class ZEPHUI_EXPORT UI_StaticText : public UI_ControlView
{
public:
    UI_StaticText() = default;
    explicit UI_StaticText(zephcore::UTF16String const& text) : text(text) {}

    void SetValue(zephcore::UTF16String const& value);
    zephcore::UTF16String const& GetValue() const { return text; }
    // The text of a label; the same as SetValue.
    void SetLabelText(zephcore::UTF16String const& value) { SetValue(value); }
    void SetAlignment(ControlAlignment value);
    void SetAlignment(int value) { SetAlignment(ControlAlignment(value)); }
    ControlAlignment GetAlignment() const { return alignment; }
    // "Bold", "Italic", "Bold Italic"; anything else is plain.
    void SetFontStyleName(std::string const& style);
    std::string const& GetFontStyleName() const { return fontStyle; }
    float GetFontSize() const;
    // A size in pixels; 0 or less returns to the theme's size.
    void SetCustomFontSize(float size);
    // kTruncationMiddle or kTruncationClip (Drawbot.h); kTruncationNone wraps.
    void SetTextTruncation(TextTruncation mode);
    void SetTextTruncation(int mode) { SetTextTruncation(TextTruncation(mode)); }
    TextTruncation GetTextTruncation() const { return truncation; }
    // The text as it is shown now (cut to the width, if it must be).
    zephcore::UTF16String GetDisplayedText() const;

    // The font of this label for a supplier.
    boost::intrusive_ptr<FontInterface> GetFont(SupplierInterface const* supplier) const;
    // Measures the text wrapped at width.
    UI_TextLayout GetTextLayout(float width) const;

    PointF UI_GetRecommendedSize(Drawbot* drawbot) override;
    void UI_SizeChanged(RectF const& rect) override;
    bool UI_DoMouseEvent(UI_Node* node, MouseEvent const& event) override;

protected:
    QWidget* CreateWidget() override;

private:
    void Apply();
    void ApplyTo(QLabel* label);

    zephcore::UTF16String text;
    ControlAlignment alignment = kAlignLeft;
    std::string fontStyle;
    float customFontSize = 0.0f;
    TextTruncation truncation = kTruncationNone;
};

using UI_StaticTextPtr = boost::intrusive_ptr<UI_StaticText>;

} // namespace zephui
