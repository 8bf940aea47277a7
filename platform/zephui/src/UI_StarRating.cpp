#include "zephui/UI_StarRating.h"

#include "zephui/Drawbot.h"
#include "zephui/NodeWidget.h"
#include "zephui/QtDrawing.h"

#include <QPainter>
#include <QPainterPath>

#include <algorithm>
#include <cmath>

namespace zephui
{

namespace
{

constexpr float kGap = 3.0f;

QPainterPath StarPath(QRectF const& box)
{
    QPainterPath path;
    QPointF const centre = box.center();
    double const outer = box.width() / 2.0;
    double const inner = outer * 0.45;
    for (int i = 0; i < 10; ++i)
    {
        double const radius = i % 2 == 0 ? outer : inner;
        double const angle = -M_PI / 2.0 + double(i) * M_PI / 5.0;
        QPointF const p(centre.x() + radius * std::cos(angle),
                        centre.y() + radius * std::sin(angle) + outer * 0.08);
        if (i == 0)
            path.moveTo(p);
        else
            path.lineTo(p);
    }
    path.closeSubpath();
    return path;
}

} // namespace

UI_StarRating::UI_StarRating()
{
    SetWantsKeyboardFocus(true);
}

void UI_StarRating::SetValue(double rating)
{
    double const next = std::isnan(rating) ? 0.0 : std::clamp(std::round(rating), 0.0, 5.0);
    bool const wasUnknown = IsValueUnknown();
    if (next == value && !wasUnknown)
        return;
    value = next;
    if (wasUnknown)
        SetValueKnown();
    UI_Invalidate();
}

void UI_StarRating::SetStarSize(StarSize size)
{
    starSize = size;
    UI_Invalidate();
}

UI_StarRating::StarSize UI_StarRating::GetStarSize() const
{
    if (starSize != kStarSizeFromHeight)
        return starSize;
    float const height = UI_GetLocalRectF(false).height;
    return height >= 31.0f ? kStarSizeLarge : height >= 25.0f ? kStarSizeMedium : kStarSizeSmall;
}

float UI_StarRating::GetStarSide() const
{
    switch (GetStarSize())
    {
    case kStarSizeLarge:
        return 25.0f;
    case kStarSizeMedium:
        return 19.0f;
    default:
        return 14.0f;
    }
}

float UI_StarRating::GetStarLeft(int index) const
{
    return 2.0f + float(index) * (GetStarSide() + kGap);
}

int UI_StarRating::RatingAt(float x) const
{
    if (x < GetStarLeft(0))
        return 0;
    int const star = int(std::floor((x - 2.0f) / (GetStarSide() + kGap)));
    return std::clamp(star + 1, 0, 5);
}

void UI_StarRating::ChangeByUser(double rating, bool finished)
{
    NodeEventScope scope(this);
    bool const changed = rating != value || IsValueUnknown();
    if (changed)
    {
        value = rating;
        SetValueKnown();
        UI_Invalidate();
        SendInteractiveValueChangedMessage();
    }
    if (finished && (value != valueAtPress || changed))
        SendValueChangedMessage();
}

bool UI_StarRating::UI_DoMouseEvent(UI_Node* node, MouseEvent const& event)
{
    if (node != this || UI_IsDisabled())
        return false;
    float const x = event.GetPosition().x;
    if (event.IsAction(MouseEvent::kActionPress) && event.GetButton() == MouseEvent::kButtonLeft)
    {
        UI_GainKeyboardFocus(kFocusReasonMouse);
        valueAtPress = IsValueUnknown() ? -1.0 : value;
        tracking = true;
        int const star = RatingAt(x);
        // The star of the present rating clears it.
        ChangeByUser(star == int(value) && IsValueKnown() ? 0.0 : double(star), false);
        return true;
    }
    if (tracking && event.IsAction(MouseEvent::kActionDrag))
    {
        ChangeByUser(double(RatingAt(x)), false);
        return true;
    }
    if (tracking && event.IsAction(MouseEvent::kActionRelease))
    {
        tracking = false;
        NodeEventScope scope(this);
        if (value != valueAtPress)
            SendValueChangedMessage();
        return true;
    }
    return false;
}

bool UI_StarRating::UI_DoKeyboardEvent(UI_Node* node, KeyboardEvent const& event)
{
    if (node != this || !event.IsActionKeyDown() || UI_IsDisabled())
        return false;
    valueAtPress = IsValueUnknown() ? -1.0 : value;
    zephcore::UTF16String const& text = event.GetText();
    if (event.CompareCode(KeyboardCode(KeyboardCode::kKeyCharacter)) && text.size() == 1 &&
        text[0] >= u'0' && text[0] <= u'5')
    {
        ChangeByUser(double(text[0] - u'0'), true);
        return true;
    }
    if (event.CompareCode(KeyboardCode(KeyboardCode::kKeyRight)) ||
        event.CompareCode(KeyboardCode(KeyboardCode::kKeyUp)))
    {
        ChangeByUser(std::min(5.0, value + 1.0), true);
        return true;
    }
    if (event.CompareCode(KeyboardCode(KeyboardCode::kKeyLeft)) ||
        event.CompareCode(KeyboardCode(KeyboardCode::kKeyDown)))
    {
        ChangeByUser(std::max(0.0, value - 1.0), true);
        return true;
    }
    return false;
}

void UI_StarRating::UI_Draw(Drawbot* drawbot)
{
    QPainter* const painter = drawbot->GetPainter();
    if (!painter)
        return;
    RectF const local = UI_GetLocalRectF(false);
    float const side = GetStarSide();
    float const top = std::floor((local.height - side) / 2.0f);
    bool const disabled = UI_IsDisabled();
    QColor const on = ToQColor(GetColor(disabled ? kColor_DisabledText : kColor_StarRatingOn));
    QColor const off = ToQColor(GetColor(kColor_StarRatingOff));
    painter->save();
    painter->setRenderHint(QPainter::Antialiasing);
    for (int i = 0; i < 5; ++i)
    {
        QPainterPath const star = StarPath(QRectF(GetStarLeft(i), top, side, side));
        if (IsValueKnown() && double(i) < value)
            painter->fillPath(star, on);
        else
        {
            painter->setPen(QPen(IsValueUnknown() ? off.darker(130) : off, 1.0));
            painter->drawPath(star);
        }
    }
    if (UI_HasKeyboardFocus(false) && !GetSuppressFocusDrawing())
    {
        painter->setPen(QPen(ToQColor(GetColor(kColor_FocusRing)), 1.0, Qt::DotLine));
        painter->drawRect(QRectF(0.5, 0.5, local.width - 1.0, local.height - 1.0));
    }
    painter->restore();
}

PointF UI_StarRating::UI_GetRecommendedSize(Drawbot*)
{
    return PointF(std::ceil(GetStarLeft(5) + 1.0f), std::max(19.0f, GetStarSide() + 4.0f));
}

} // namespace zephui
