#pragma once
// A check box on a QCheckBox. The unknown state of UI_ControlView is its mixed
// state; a click on a mixed box turns it on. A click sends a
// UI_ButtonChangedMessage; SetValue by program sends nothing.

#include "zephui/UI_ControlView.h"
#include "zephui/zephui_export.h"

namespace zephui
{

enum CheckboxValue
{
    kCheckboxOff = 0,
    kCheckboxOn = 1,
    kCheckboxMixed = 2
};

class ZEPHUI_EXPORT UI_Checkbox : public UI_ControlView
{
public:
    UI_Checkbox() = default;
    explicit UI_Checkbox(zephcore::UTF16String const& text) : text(text) {}

    // The side of the box itself.
    static float GetDefaultCheckSize() { return 16.0f; }

    void SetText(zephcore::UTF16String const& value);
    zephcore::UTF16String const& GetText() const { return text; }
    // kCheckboxMixed while the value is unknown.
    CheckboxValue GetValue() const { return IsValueUnknown() ? kCheckboxMixed : value; }
    // Off or on; leaves the unknown state. kCheckboxMixed is SetValueUnknown.
    void SetValue(CheckboxValue newValue);
    void SetValue(int newValue) { SetValue(CheckboxValue(newValue)); }
    void SetValue(bool on) { SetValue(on ? kCheckboxOn : kCheckboxOff); }
    bool IsChecked() const { return !IsValueUnknown() && value == kCheckboxOn; }

    void KnownValueStateChanged() override;
    PointF UI_GetRecommendedSize(Drawbot* drawbot) override;

protected:
    QWidget* CreateWidget() override;

private:
    void Apply();
    void OnClicked(bool checked);

    zephcore::UTF16String text;
    CheckboxValue value = kCheckboxOff;
};

using UI_CheckboxPtr = boost::intrusive_ptr<UI_Checkbox>;

} // namespace zephui
