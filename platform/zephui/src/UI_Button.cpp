#include "zephui/UI_Button.h"

#include "ControlSupport.h"
#include "zephui/Drawbot.h"
#include "zephui/NodeWidget.h"
#include "zephui/QtDrawing.h"

#include "zephcore/QtStrings.h"

#include <QFontMetricsF>
#include <QPainter>
#include <QPushButton>

#include <cmath>

namespace zephui
{

QWidget* UI_Button::CreateWidget()
{
    auto* button = new NodeWidget<QPushButton>(this);
    button->setFont(ControlFont());
    button->setMinimumSize(0, 0);
    QObject::connect(button, &QPushButton::clicked, button, [this] { OnClicked(); });
    ApplyTo(button);
    return button;
}

void UI_Button::Apply()
{
    if (auto* button = qobject_cast<QPushButton*>(UI_GetWidgetIfMade()))
        ApplyTo(button);
}

void UI_Button::ApplyTo(QPushButton* button)
{
    QSignalBlocker const block(button);
    button->setText(DrawsOwnText() ? QString() : zephcore::ToQString(text));
    button->setCheckable(!springLoaded);
    button->setChecked(!springLoaded && value == kButtonOn);
    button->setFlat(flat);
    button->setDefault(isDefault);
    if (!changeFocusOnClick)
        button->setFocusPolicy(Qt::TabFocus);
    button->update();
}

void UI_Button::SetButtonText(zephcore::UTF16String const& label)
{
    text = label;
    Apply();
}

void UI_Button::SetValue(int newValue)
{
    newValue = newValue == kButtonOn ? kButtonOn : kButtonOff;
    if (newValue == value)
        return;
    value = newValue;
    Apply();
}

void UI_Button::SetSpringLoaded(bool loaded)
{
    springLoaded = loaded;
    Apply();
}

void UI_Button::SetDisplayBorderNever(bool never)
{
    flat = never;
    Apply();
}

void UI_Button::SetDisplayBorderAlways(bool always)
{
    if (always)
        flat = false;
    Apply();
}

void UI_Button::SetDisplayContainerNever(bool never)
{
    flat = never;
    Apply();
}

void UI_Button::SetChangeFocusOnClick(bool change)
{
    changeFocusOnClick = change;
    Apply();
}

void UI_Button::SetDefaultAppearance(bool value)
{
    isDefault = value;
    Apply();
}

void UI_Button::SetImageSupplyFunction(ConstMessageCallback const& supply)
{
    imageSupply = supply;
    UI_Invalidate();
}

boost::intrusive_ptr<ImageInterface> UI_Button::SupplyImage() const
{
    if (!imageSupply || !*imageSupply)
        return nullptr;
    Flags<unsigned long> state;
    state.Set(UI_PictureSupplyMessage::kStateOn, value == kButtonOn);
    state.Set(UI_PictureSupplyMessage::kStateDown, GetDownState());
    state.Set(UI_PictureSupplyMessage::kStateDisabled, UI_IsDisabled());
    UI_PictureSupplyMessage message(const_cast<UI_Button*>(this), state, UI_GetDrawSupplier());
    ConstMessageCallback const supply = imageSupply; // the function may replace itself
    (*supply)(&message);
    return message.GetImage();
}

void UI_Button::Click()
{
    if (auto* button = qobject_cast<QPushButton*>(UI_GetWidget()))
        button->click();
}

void UI_Button::OnClicked()
{
    NodeEventScope scope(this);
    if (!springLoaded)
    {
        value = value == kButtonOn ? kButtonOff : kButtonOn;
        Apply();
    }
    UI_ButtonChangedMessage message(this, ModifiersNow());
    NotifyChanged(&message);
}

void UI_Button::UI_Draw(Drawbot* drawbot)
{
    boost::intrusive_ptr<ImageInterface> const image = SupplyImage();
    DrawContent(drawbot, image.get());
    UI_ControlView::UI_Draw(drawbot);
}

void UI_Button::DrawContent(Drawbot* drawbot, ImageInterface const* image)
{
    if (!image)
        return;
    RectF const local = UI_GetLocalRectF(false);
    float const opacity = UI_IsDisabled() ? 0.4f : 1.0f;
    drawbot->DrawImage(image,
                       PointF(std::floor((local.width - image->GetWidth()) / 2.0f),
                              std::floor((local.height - image->GetHeight()) / 2.0f)),
                       opacity);
}

PointF UI_Button::UI_GetRecommendedSize(Drawbot*)
{
    QFontMetricsF const metrics(ControlFont());
    float const width = float(metrics.horizontalAdvance(zephcore::ToQString(text)));
    return PointF(std::ceil(std::max(width + 24.0f, 80.0f)), 21.0f);
}

// ---- Picture and text -------------------------------------------------------

void UI_PictureTextButton::SetImageAndTextAlignment(int alignment)
{
    imageAlignment = alignment;
    UI_Invalidate();
}

namespace
{

void DrawText(Drawbot* drawbot, zephcore::UTF16String const& text, RectF const& box,
              ColorRGBA const& color, bool underline)
{
    QPainter* const painter = drawbot->GetPainter();
    if (!painter || text.empty())
        return;
    painter->save();
    QFont font = ControlFont();
    font.setUnderline(underline);
    painter->setFont(font);
    painter->setPen(ToQColor(color));
    painter->drawText(ToQRectF(box), Qt::AlignLeft | Qt::AlignVCenter, zephcore::ToQString(text));
    painter->restore();
}

} // namespace

void UI_PictureTextButton::DrawContent(Drawbot* drawbot, ImageInterface const* image)
{
    RectF const local = UI_GetLocalRectF(false);
    float const imageWidth = image ? image->GetWidth() : 0.0f;
    float const imageHeight = image ? image->GetHeight() : 0.0f;
    float const opacity = UI_IsDisabled() ? 0.4f : 1.0f;
    ColorRGBA const textColor = GetColor(UI_IsDisabled() ? kColor_DisabledText : kColor_ButtonText);
    if (imageAlignment == kImageAboveText)
    {
        if (image)
            drawbot->DrawImage(image, PointF(std::floor((local.width - imageWidth) / 2.0f), 2.0f),
                               opacity);
        DrawText(
            drawbot, GetButtonText(),
            RectF(2.0f, imageHeight + 2.0f, local.width - 4.0f, local.height - imageHeight - 2.0f),
            textColor, false);
        return;
    }
    float const top = std::floor((local.height - imageHeight) / 2.0f);
    if (imageAlignment == kImageRightOfText)
    {
        if (image)
            drawbot->DrawImage(image, PointF(local.width - imageWidth - 4.0f, top), opacity);
        DrawText(drawbot, GetButtonText(),
                 RectF(4.0f, 0.0f, local.width - imageWidth - 10.0f, local.height), textColor,
                 false);
        return;
    }
    if (image)
        drawbot->DrawImage(image, PointF(4.0f, top), opacity);
    float const textLeft = 4.0f + (image ? imageWidth + 4.0f : 0.0f);
    DrawText(drawbot, GetButtonText(), RectF(textLeft, 0.0f, local.width - textLeft, local.height),
             textColor, false);
}

PointF UI_PictureTextButton::UI_GetRecommendedSize(Drawbot* drawbot)
{
    boost::intrusive_ptr<ImageInterface> const image = SupplyImage();
    QFontMetricsF const metrics(ControlFont());
    float const textWidth = float(metrics.horizontalAdvance(zephcore::ToQString(GetButtonText())));
    float const imageWidth = image ? image->GetWidth() + 4.0f : 0.0f;
    (void)drawbot;
    return PointF(std::ceil(textWidth + imageWidth + 12.0f),
                  std::max(21.0f, image ? image->GetHeight() + 4.0f : 0.0f));
}

// ---- Hot text ---------------------------------------------------------------

UI_HotTextButton::UI_HotTextButton()
{
    SetDisplayBorderNever(true);
}

QWidget* UI_HotTextButton::CreateWidget()
{
    QWidget* const widget = UI_Button::CreateWidget();
    widget->setCursor(Qt::PointingHandCursor);
    // Nothing of a button's face: the text is the control.
    widget->setStyleSheet(QStringLiteral("QPushButton { border: none; background: transparent; }"));
    return widget;
}

void UI_HotTextButton::DrawContent(Drawbot* drawbot, ImageInterface const* image)
{
    RectF const local = UI_GetLocalRectF(false);
    float left = 0.0f;
    if (image)
    {
        drawbot->DrawImage(image,
                           PointF(0.0f, std::floor((local.height - image->GetHeight()) / 2.0f)),
                           UI_IsDisabled() ? 0.4f : 1.0f);
        left = image->GetWidth() + 3.0f;
    }
    ColorRGBA const color = GetColor(UI_IsDisabled() ? kColor_DisabledText : kColor_LinkText);
    DrawText(drawbot, GetButtonText(), RectF(left, 0.0f, local.width - left, local.height), color,
             true);
}

PointF UI_HotTextButton::UI_GetRecommendedSize(Drawbot*)
{
    QFontMetricsF const metrics(ControlFont());
    boost::intrusive_ptr<ImageInterface> const image = SupplyImage();
    return PointF(std::ceil(float(metrics.horizontalAdvance(zephcore::ToQString(GetButtonText()))) +
                            (image ? image->GetWidth() + 3.0f : 0.0f) + 2.0f),
                  std::ceil(float(metrics.height())) + 2.0f);
}

} // namespace zephui
