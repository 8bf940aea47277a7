#include "zephui/UI_StaticText.h"

#include "ControlSupport.h"
#include "zephui/NodeWidget.h"
#include "zephui/QtDrawing.h"
#include "zephui/Theme.h"

#include "zephcore/QtStrings.h"

#include <QLabel>

#include <algorithm>
#include <cmath>

namespace zephui
{

QWidget* UI_StaticText::CreateWidget()
{
    auto* label = new NodeWidget<QLabel>(this);
    label->setTextFormat(Qt::PlainText);
    label->setFocusPolicy(Qt::NoFocus);
    // The label draws what it is given; its minimum size must not clamp the node's rectangle.
    label->setMinimumSize(0, 0);
    label->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Ignored);
    ApplyTo(label);
    return label;
}

void UI_StaticText::SetValue(zephcore::UTF16String const& value)
{
    if (value == text)
        return;
    text = value;
    Apply();
}

void UI_StaticText::SetAlignment(ControlAlignment value)
{
    if (value == alignment)
        return;
    alignment = value;
    Apply();
}

void UI_StaticText::SetFontStyleName(std::string const& style)
{
    if (style == fontStyle)
        return;
    fontStyle = style;
    Apply();
}

float UI_StaticText::GetFontSize() const
{
    return customFontSize > 0.0f ? customFontSize : zephui::GetFontSize(kText_Main_Large);
}

void UI_StaticText::SetCustomFontSize(float size)
{
    if (size == customFontSize)
        return;
    customFontSize = size;
    Apply();
}

void UI_StaticText::SetTextTruncation(TextTruncation mode)
{
    if (mode == truncation)
        return;
    truncation = mode;
    Apply();
}

boost::intrusive_ptr<FontInterface> UI_StaticText::GetFont(SupplierInterface const* supplier) const
{
    if (!supplier)
        supplier = SharedSupplierForScale(1.0f);
    return supplier->NewFont(GetFontName(kText_Main_Large), GetFontSize(), fontStyle);
}

UI_TextLayout UI_StaticText::GetTextLayout(float width) const
{
    auto const font = GetFont(UI_GetDrawSupplier());
    return UI_TextLayout(text, font.get(), width);
}

zephcore::UTF16String UI_StaticText::GetDisplayedText() const
{
    if (truncation == kTruncationNone || truncation == kTruncationClip)
        return text;
    auto const font = GetFont(UI_GetDrawSupplier());
    auto const* qtFont = dynamic_cast<QtFont const*>(font.get());
    if (!qtFont)
        return text;
    QFontMetricsF const metrics(qtFont->GetQFont());
    Qt::TextElideMode const mode =
        truncation == kTruncationMiddle ? Qt::ElideMiddle : Qt::ElideRight;
    float const width = UI_GetLocalRectF(false).width;
    return zephcore::ToUTF16(
        metrics.elidedText(zephcore::ToQString(text), mode, qreal(std::max(0.0f, width))));
}

PointF UI_StaticText::UI_GetRecommendedSize(Drawbot* drawbot)
{
    auto const font = GetFont(drawbot ? drawbot->GetSupplier() : UI_GetDrawSupplier());
    UI_TextLayout const layout(text, font.get(), 0.0f);
    PointF const size = layout.GetInitialSize();
    return PointF(size.x + 2.0f, std::max(size.y, std::ceil(font->GetLineHeight())));
}

void UI_StaticText::UI_SizeChanged(RectF const& rect)
{
    UI_ControlView::UI_SizeChanged(rect);
    Apply();
}

void UI_StaticText::Apply()
{
    if (auto* label = qobject_cast<QLabel*>(UI_GetWidgetIfMade()))
        ApplyTo(label);
}

void UI_StaticText::ApplyTo(QLabel* label)
{
    auto const font = GetFont(UI_GetDrawSupplier());
    if (auto const* qtFont = dynamic_cast<QtFont const*>(font.get()))
        label->setFont(qtFont->GetQFont());
    Qt::Alignment const horizontal = alignment == kAlignCenter  ? Qt::AlignHCenter
                                     : alignment == kAlignRight ? Qt::AlignRight
                                                                : Qt::AlignLeft;
    float const lineHeight = font->GetLineHeight();
    bool const wraps =
        truncation == kTruncationNone && UI_GetLocalRectF(false).height > lineHeight * 1.5f;
    label->setWordWrap(wraps);
    label->setAlignment(horizontal | (wraps ? Qt::AlignTop : Qt::AlignVCenter));
    label->setText(zephcore::ToQString(GetDisplayedText()));
}

bool UI_StaticText::UI_DoMouseEvent(UI_Node* node, MouseEvent const& event)
{
    if (node == this && event.GetAction() == PointerEvent::kActionRelease &&
        event.GetButton() == MouseEvent::kButtonLeft &&
        UI_GetLocalRectF(false).Contains(event.GetPosition()))
    {
        NodeEventScope const scope(this);
        SendValueChangedMessage();
    }
    return false;
}

} // namespace zephui
