#include "zephui/UI_Checkbox.h"

#include "ControlSupport.h"
#include "zephui/NodeWidget.h"

#include "zephcore/QtStrings.h"

#include <QCheckBox>
#include <QFontMetricsF>

#include <cmath>

namespace zephui
{

namespace
{

// A click leads out of the mixed state to on, and never back into it.
class CheckboxWidget : public NodeWidget<QCheckBox>
{
public:
    using NodeWidget<QCheckBox>::NodeWidget;

protected:
    void nextCheckState() override
    {
        Qt::CheckState const next = checkState() == Qt::Checked ? Qt::Unchecked : Qt::Checked;
        setTristate(false);
        setCheckState(next);
    }
};

} // namespace

QWidget* UI_Checkbox::CreateWidget()
{
    auto* box = new CheckboxWidget(this);
    box->setFont(ControlFont());
    box->setMinimumSize(0, 0);
    QObject::connect(box, &QCheckBox::clicked, box, [this](bool checked) { OnClicked(checked); });
    box->setText(zephcore::ToQString(text));
    box->setCheckState(IsValueUnknown()       ? Qt::PartiallyChecked
                       : value == kCheckboxOn ? Qt::Checked
                                              : Qt::Unchecked);
    return box;
}

void UI_Checkbox::Apply()
{
    auto* box = qobject_cast<QCheckBox*>(UI_GetWidgetIfMade());
    if (!box)
        return;
    QSignalBlocker const block(box);
    box->setText(zephcore::ToQString(text));
    if (IsValueUnknown())
        box->setCheckState(Qt::PartiallyChecked);
    else
    {
        box->setTristate(false);
        box->setCheckState(value == kCheckboxOn ? Qt::Checked : Qt::Unchecked);
    }
}

void UI_Checkbox::SetText(zephcore::UTF16String const& newText)
{
    text = UI_ProcessStringAndSetMnemonic(newText);
    Apply();
}

void UI_Checkbox::SetValue(CheckboxValue newValue)
{
    if (newValue == kCheckboxMixed)
    {
        SetValueUnknown();
        return;
    }
    value = newValue == kCheckboxOn ? kCheckboxOn : kCheckboxOff;
    if (IsValueUnknown())
        SetValueKnown(); // applies through KnownValueStateChanged
    else
        Apply();
}

void UI_Checkbox::KnownValueStateChanged()
{
    Apply();
}

void UI_Checkbox::OnClicked(bool checked)
{
    NodeEventScope scope(this);
    value = checked ? kCheckboxOn : kCheckboxOff;
    SetValueKnown();
    UI_ButtonChangedMessage message(this, ModifiersNow());
    NotifyChanged(&message);
}

PointF UI_Checkbox::UI_GetRecommendedSize(Drawbot*)
{
    QFontMetricsF const metrics(ControlFont());
    return PointF(std::ceil(GetDefaultCheckSize() + 8.0f +
                            float(metrics.horizontalAdvance(zephcore::ToQString(text)))),
                  std::max(GetDefaultCheckSize() + 2.0f, float(std::ceil(metrics.height()))));
}

} // namespace zephui
