#include "zephui/UI_RadioGroup.h"

#include "ControlSupport.h"
#include "zephui/NodeWidget.h"

#include "zephcore/QtStrings.h"

#include <QRadioButton>

#include <boost/make_shared.hpp>

#include <algorithm>

namespace zephui
{

QWidget* UI_RadioButton::CreateWidget()
{
    auto* radio = new NodeWidget<QRadioButton>(this);
    radio->setFont(ControlFont());
    radio->setMinimumSize(0, 0);
    // The group decides who is on; Qt's own exclusivity would fight it.
    radio->setAutoExclusive(false);
    radio->setText(zephcore::ToQString(text));
    radio->setChecked(on);
    QObject::connect(radio, &QRadioButton::clicked, radio, [this] { OnClicked(); });
    return radio;
}

void UI_RadioButton::Apply()
{
    if (auto* radio = qobject_cast<QRadioButton*>(UI_GetWidgetIfMade()))
    {
        QSignalBlocker const block(radio);
        radio->setText(zephcore::ToQString(text));
        radio->setChecked(on);
    }
}

void UI_RadioButton::SetText(zephcore::UTF16String const& value)
{
    text = UI_ProcessStringAndSetMnemonic(value);
    Apply();
}

void UI_RadioButton::SetValue(int value)
{
    on = value == 1;
    Apply();
}

void UI_RadioButton::Click()
{
    if (auto* radio = qobject_cast<QRadioButton*>(UI_GetWidget()))
        radio->click();
}

void UI_RadioButton::OnClicked()
{
    NodeEventScope scope(this);
    on = true; // a click never turns a radio button off
    Apply();
    UI_ButtonChangedMessage message(this, ModifiersNow());
    NotifyChanged(&message);
}

UI_RadioGroup::~UI_RadioGroup()
{
    for (MessageCallback const& click : clicks)
        click->clear();
}

boost::intrusive_ptr<UI_RadioButton> UI_RadioGroup::AddButton(zephcore::UTF16String const& text)
{
    boost::intrusive_ptr<UI_RadioButton> button(new UI_RadioButton(text));
    float const width = std::max(0.0f, UI_GetLocalRectF(false).width);
    button->UI_SetLocalRectF(RectF(0.0f, 20.0f * float(buttons.size()), width, 19.0f));
    button->UI_Show(true);
    ChildPushBack(button);
    return button;
}

UI_RadioButton* UI_RadioGroup::GetButton(int index) const
{
    return index >= 0 && index < int(buttons.size()) ? buttons[std::size_t(index)] : nullptr;
}

int UI_RadioGroup::GetIndex() const
{
    for (std::size_t i = 0; i < buttons.size(); ++i)
        if (buttons[i]->GetValue() == 1)
            return int(i);
    return -1;
}

void UI_RadioGroup::SetIndex(int index)
{
    for (std::size_t i = 0; i < buttons.size(); ++i)
        buttons[i]->SetValue(int(i) == index ? 1 : 0);
    lastIndex = GetIndex();
}

void UI_RadioGroup::ChildAdded(UI_Node* child)
{
    UI_ControlView::ChildAdded(child);
    auto* button = dynamic_cast<UI_RadioButton*>(child);
    if (!button)
        return;
    buttons.push_back(button);
    auto click = boost::make_shared<boost::function<void(Message*)>>([this, button](Message*)
                                                                     { OnButtonClicked(button); });
    clicks.push_back(click);
    button->NotifyWhenChanged(click);
}

void UI_RadioGroup::ChildRemoved(UI_Node* child)
{
    UI_ControlView::ChildRemoved(child);
    auto it = std::find(buttons.begin(), buttons.end(), child);
    if (it == buttons.end())
        return;
    std::size_t const index = std::size_t(it - buttons.begin());
    clicks[index]->clear();
    clicks.erase(clicks.begin() + std::ptrdiff_t(index));
    buttons.erase(it);
}

void UI_RadioGroup::OnButtonClicked(UI_RadioButton* button)
{
    NodeEventScope scope(this);
    for (UI_RadioButton* other : buttons)
        if (other != button)
            other->SetValue(0);
    int const now = GetIndex();
    if (now == lastIndex)
        return; // the button that was on, clicked again
    lastIndex = now;
    SendValueChangedMessage();
}

} // namespace zephui
