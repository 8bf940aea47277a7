#include "zephui/UI_HotTextNumber.h"

#include "ControlSupport.h"
#include "zephui/NodeWidget.h"
#include "zephui/QtDrawing.h"

#include "zephcore/QtStrings.h"

#include <QFontMetricsF>
#include <QLineEdit>
#include <QRegularExpressionValidator>

#include <cmath>

namespace zephui
{

namespace
{

bool SameNumber(double a, double b)
{
    return (std::isnan(a) && std::isnan(b)) || a == b;
}

// Unfocused, a press and a sideways drag change the value; a press without a
// drag starts typing. Focused, it is a plain line edit.
class HotTextWidget : public NodeWidget<QLineEdit>
{
public:
    explicit HotTextWidget(UI_HotTextNumber* number) : NodeWidget<QLineEdit>(number), number(number)
    {
    }

protected:
    void mousePressEvent(QMouseEvent* event) override
    {
        if (hasFocus() || event->button() != Qt::LeftButton || isReadOnly())
        {
            NodeWidget<QLineEdit>::mousePressEvent(event);
            return;
        }
        UI_NodePtr const keep(number);
        pressed = true;
        dragging = false;
        pressX = event->position().x();
        number->BeginDrag();
        event->accept();
    }
    void mouseMoveEvent(QMouseEvent* event) override
    {
        if (!pressed)
        {
            NodeWidget<QLineEdit>::mouseMoveEvent(event);
            return;
        }
        UI_NodePtr const keep(number);
        double const dx = event->position().x() - pressX;
        if (!dragging && std::fabs(dx) >= 3.0)
            dragging = true;
        if (dragging)
            number->DragBy(float(dx));
        event->accept();
    }
    void mouseReleaseEvent(QMouseEvent* event) override
    {
        if (!pressed)
        {
            NodeWidget<QLineEdit>::mouseReleaseEvent(event);
            return;
        }
        UI_NodePtr const keep(number);
        pressed = false;
        if (dragging)
            number->EndDrag();
        else
        {
            setFocus(Qt::MouseFocusReason);
            selectAll();
        }
        event->accept();
    }

private:
    UI_HotTextNumber* number;
    bool pressed = false;
    bool dragging = false;
    double pressX = 0.0;
};

} // namespace

UI_HotTextNumber::UI_HotTextNumber() : unknownText(1, u'\u2014') {}

QWidget* UI_HotTextNumber::CreateWidget()
{
    auto* edit = new HotTextWidget(this);
    edit->setMinimumSize(0, 0);
    edit->setFrame(false);
    edit->setCursor(Qt::SizeHorCursor);
    // Not by click: Qt would give the focus before the press, and a press on
    // an unfocused number must start a drag; a click without a drag focuses it.
    edit->setFocusPolicy(Qt::TabFocus);
    edit->setValidator(
        new QRegularExpressionValidator(QRegularExpression(QStringLiteral("[-+0-9.eE]*")), edit));
    QObject::connect(edit, &QLineEdit::returnPressed, edit, [this] { CommitTypedText(); });
    QFont font = ControlFont();
    font.setUnderline(true);
    edit->setFont(font);
    QPalette palette = edit->palette();
    palette.setColor(QPalette::Text, ToQColor(GetColor(kColor_HotText)));
    palette.setColor(QPalette::Base, Qt::transparent);
    edit->setPalette(palette);
    applying = true;
    edit->setText(zephcore::ToQString(GetDisplayedText()));
    applying = false;
    return edit;
}

double UI_HotTextNumber::Clamp(double number) const
{
    if (std::isnan(number))
        return number;
    return std::min(maxValue, std::max(minValue, number));
}

void UI_HotTextNumber::SetValue(double newValue)
{
    value = std::isnan(newValue) ? newValue : Clamp(newValue);
    if (IsValueUnknown())
        SetValueKnown();
    ApplyText();
}

void UI_HotTextNumber::SetDecimalPlaces(int places)
{
    decimalPlaces = std::max(0, places);
    ApplyText();
}

void UI_HotTextNumber::SetInPlaceEditDecimalPlaces(int places)
{
    inPlaceDecimalPlaces = places;
    ApplyText();
}

void UI_HotTextNumber::SetMinValue(double minimum)
{
    minValue = minimum;
    value = Clamp(value);
    ApplyText();
}

void UI_HotTextNumber::SetMaxValue(double maximum)
{
    maxValue = maximum;
    value = Clamp(value);
    ApplyText();
}

void UI_HotTextNumber::SetUnknownStateText(zephcore::UTF16String const& text)
{
    unknownText = text;
    ApplyText();
}

zephcore::UTF16String UI_HotTextNumber::Format(double number, bool editing) const
{
    if (std::isnan(number))
        return {};
    int places = decimalPlaces;
    if (editing && inPlaceDecimalPlaces >= 0)
        places = inPlaceDecimalPlaces;
    if (editing && inPlaceDecimalPlaces < 0)
    {
        // While typing, show the number as precisely as it is, without trailing zeros.
        return zephcore::ToUTF16(QString::number(number, 'g', 15));
    }
    return zephcore::ToUTF16(QString::number(number, 'f', places));
}

zephcore::UTF16String UI_HotTextNumber::GetDisplayedText() const
{
    if (IsValueUnknown())
        return unknownText;
    QWidget const* const widget = UI_GetWidgetIfMade();
    return Format(value, widget && widget->hasFocus());
}

void UI_HotTextNumber::ApplyText()
{
    auto* edit = qobject_cast<QLineEdit*>(UI_GetWidgetIfMade());
    if (!edit)
        return;
    applying = true;
    edit->setText(zephcore::ToQString(GetDisplayedText()));
    applying = false;
}

void UI_HotTextNumber::BeginDrag()
{
    dragStart = std::isnan(value) || IsValueUnknown() ? 0.0 : value;
    valueAtPress = IsValueUnknown() ? std::nan("") : value;
}

void UI_HotTextNumber::DragBy(float dx)
{
    NodeEventScope scope(this);
    double const next = Clamp(dragStart + std::round(double(dx)) * increment);
    if (SameNumber(next, value) && IsValueKnown())
        return;
    value = next;
    if (IsValueUnknown())
        SetValueKnown();
    ApplyText();
    SendInteractiveValueChangedMessage();
}

void UI_HotTextNumber::EndDrag()
{
    NodeEventScope scope(this);
    if (!SameNumber(value, valueAtPress))
        SendValueChangedMessage();
}

void UI_HotTextNumber::CommitTypedText()
{
    auto* edit = qobject_cast<QLineEdit*>(UI_GetWidgetIfMade());
    if (!edit || applying)
        return;
    NodeEventScope scope(this);
    zephcore::UTF16String const typed = zephcore::ToUTF16(edit->text().trimmed());
    if (IsValueUnknown() && (typed.empty() || typed == unknownText))
        return; // nothing typed over the unknown state
    double next = 0.0;
    if (typed.empty())
    {
        if (!allowEmpty)
        {
            ApplyText(); // an empty field is no number here: the value stays
            return;
        }
        next = std::nan("");
    }
    else if (!zephcore::StringToNumber(typed, next) || !std::isfinite(next))
    {
        ApplyText();
        return;
    }
    next = Clamp(next);
    bool const changed = IsValueUnknown() || !SameNumber(next, value);
    value = next;
    if (IsValueUnknown())
        SetValueKnown();
    ApplyText();
    if (changed)
        SendValueChangedMessage();
}

void UI_HotTextNumber::KnownValueStateChanged()
{
    ApplyText();
}

void UI_HotTextNumber::SetWantsKeyboardFocus(bool wants)
{
    UI_InteractiveControlView::SetWantsKeyboardFocus(wants);
    if (QWidget* widget = UI_GetWidgetIfMade(); widget && wants)
        widget->setFocusPolicy(Qt::TabFocus);
}

void UI_HotTextNumber::UI_FocusChanged(bool hasFocus)
{
    UI_InteractiveControlView::UI_FocusChanged(hasFocus);
    if (!hasFocus)
        CommitTypedText();
    ApplyText(); // editing shows more decimals than the hot text
    if (auto* edit = qobject_cast<QLineEdit*>(UI_GetWidgetIfMade()))
    {
        edit->setFrame(hasFocus);
        edit->setCursor(hasFocus ? Qt::IBeamCursor : Qt::SizeHorCursor);
        if (hasFocus)
            edit->selectAll();
    }
}

PointF UI_HotTextNumber::UI_GetRecommendedSize(Drawbot*)
{
    QFontMetricsF const metrics(ControlFont());
    return PointF(std::ceil(std::max(40.0f, float(metrics.horizontalAdvance(
                                                zephcore::ToQString(GetDisplayedText()))) +
                                                12.0f)),
                  21.0f);
}

} // namespace zephui
