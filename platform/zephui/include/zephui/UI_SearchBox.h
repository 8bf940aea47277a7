#pragma once
// A search field on a QLineEdit with a clear button. Each keystroke goes to
// NotifyWhenChangedInteractively; Enter, the clear button and a focus loss
// with a new text go to NotifyWhenChanged.

#include "zephui/UI_ControlView.h"
#include "zephui/zephui_export.h"

namespace zephui
{

class ZEPHUI_EXPORT UI_SearchBox : public UI_InteractiveControlView
{
public:
    // The flags are kept for callers; every search box looks alike here.
    explicit UI_SearchBox(bool flag1 = false, bool flag2 = false);

    zephcore::UTF16String GetValue() const;
    void SetValue(zephcore::UTF16String const& text);
    void SetPlaceholderText(zephcore::UTF16String const& text);

    void UI_FocusChanged(bool hasFocus) override;

protected:
    QWidget* CreateWidget() override;

private:
    void Commit();
    zephcore::UTF16String text;
    zephcore::UTF16String committed;
    zephcore::UTF16String placeholder;
};

using UI_SearchBoxPtr = boost::intrusive_ptr<UI_SearchBox>;

} // namespace zephui
