#pragma once
// A number shown as hot text: drag it sideways to change it by its increment
// per pixel (live changes go to NotifyWhenChangedInteractively, the release to
// NotifyWhenChanged), or click it to type a number, committed on Enter or
// focus loss. Values stay within the minimum and maximum. With empty fields
// allowed, a cleared field reads as NaN.

#include "zephui/UI_ControlView.h"
#include "zephui/zephui_export.h"

#include <limits>

namespace zephui
{

class ZEPHUI_EXPORT UI_HotTextNumber : public UI_InteractiveControlView
{
public:
    UI_HotTextNumber();

    // NaN for an empty field.
    virtual double GetValue() const { return value; }
    virtual void SetValue(double newValue);

    void SetIncrement(double step) { increment = step > 0.0 ? step : 1.0; }
    double GetIncrement() const { return increment; }
    // Decimals shown, and decimals kept while typing (-1: as shown).
    void SetDecimalPlaces(int places);
    void SetInPlaceEditDecimalPlaces(int places);
    void SetMinValue(double minimum);
    void SetMaxValue(double maximum);
    double GetMinValue() const { return minValue; }
    double GetMaxValue() const { return maxValue; }
    void SetAllowEmptyNumberField(bool allow) { allowEmpty = allow; }
    bool GetAllowEmptyNumberField() const { return allowEmpty; }
    // The flags of the typing field; kept for callers.
    void SetEditTextFlags(unsigned long flags) { editTextFlags = flags; }
    zephcore::UTF16String GetUnknownStateText() const { return unknownText; }
    void SetUnknownStateText(zephcore::UTF16String const& text);
    // The text shown now.
    zephcore::UTF16String GetDisplayedText() const;

    // The gesture, for the widget: a drag of dx pixels from where it began.
    void BeginDrag();
    void DragBy(float dx);
    void EndDrag();
    // Commits typed text as Enter does.
    void CommitTypedText();

    // Keeps the number out of click focus, so a press can start a drag.
    void SetWantsKeyboardFocus(bool wants) override;
    void KnownValueStateChanged() override;
    void UI_FocusChanged(bool hasFocus) override;
    PointF UI_GetRecommendedSize(Drawbot* drawbot) override;

protected:
    QWidget* CreateWidget() override;

private:
    double Clamp(double number) const;
    zephcore::UTF16String Format(double number, bool editing) const;
    void ApplyText();

    double value = 0.0;
    double increment = 1.0;
    int decimalPlaces = 0;
    int inPlaceDecimalPlaces = -1;
    double minValue = -std::numeric_limits<double>::infinity();
    double maxValue = std::numeric_limits<double>::infinity();
    bool allowEmpty = false;
    unsigned long editTextFlags = 0;
    zephcore::UTF16String unknownText;
    double dragStart = 0.0;
    double valueAtPress = 0.0;
    bool applying = false;
};

using UI_HotTextNumberPtr = boost::intrusive_ptr<UI_HotTextNumber>;

} // namespace zephui
