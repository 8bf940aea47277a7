#pragma once
// Radio buttons on QRadioButton, and the group that holds them: at most one
// button of a group is on, and the group's index is that button's place among
// the group's radio buttons (-1 for none). A click sends the button's
// UI_ButtonChangedMessage and the group's NotifyWhenChanged.

#include "zephui/UI_ControlView.h"
#include "zephui/zephui_export.h"

#include <vector>

namespace zephui
{

class ZEPHUI_EXPORT UI_RadioButton : public UI_ControlView
{
public:
    UI_RadioButton() = default;
    explicit UI_RadioButton(zephcore::UTF16String const& text) : text(text) {}
    void SetText(zephcore::UTF16String const& value);
    zephcore::UTF16String const& GetText() const { return text; }
    int GetValue() const { return on ? 1 : 0; }
    void SetValue(int value);
    void Click();

protected:
    QWidget* CreateWidget() override;

private:
    void Apply();
    void OnClicked();
    zephcore::UTF16String text;
    bool on = false;
};

class ZEPHUI_EXPORT UI_RadioGroup : public UI_ControlView
{
public:
    UI_RadioGroup() = default;
    ~UI_RadioGroup() override;

    // Adds a button below the last one, 20 pixels apart.
    boost::intrusive_ptr<UI_RadioButton> AddButton(zephcore::UTF16String const& text);
    int CountButtons() const { return int(buttons.size()); }
    UI_RadioButton* GetButton(int index) const;
    int GetIndex() const;
    // Turns that button on and the others off; -1 turns all off.
    void SetIndex(int index);

    void ChildAdded(UI_Node* child) override;
    void ChildRemoved(UI_Node* child) override;

private:
    void OnButtonClicked(UI_RadioButton* button);
    std::vector<UI_RadioButton*> buttons;
    std::vector<MessageCallback> clicks;
    int lastIndex = -1;
};

using UI_RadioButtonPtr = boost::intrusive_ptr<UI_RadioButton>;
using UI_RadioGroupPtr = boost::intrusive_ptr<UI_RadioGroup>;

} // namespace zephui
