#include "zephui/UI_ControlView.h"

#include <QWidget>

namespace zephui
{

void UI_ControlView::SetValueUnknown()
{
    if (valueUnknown)
        return;
    valueUnknown = true;
    KnownValueStateChanged();
    UI_Invalidate();
}

void UI_ControlView::SetValueKnown()
{
    if (!valueUnknown)
        return;
    valueUnknown = false;
    KnownValueStateChanged();
    UI_Invalidate();
}

void UI_ControlView::SetDownState(bool down)
{
    if (downState == down)
        return;
    downState = down;
    UI_Invalidate();
}

void UI_ControlView::SetWantsKeyboardFocus(bool wants)
{
    wantsFocus = wants;
    UpdateFocusPolicy();
}

bool UI_ControlView::UI_WantsKeyboardFocus() const
{
    if (wantsFocus)
        return *wantsFocus;
    // Unset: whatever the Qt control does by itself.
    QWidget const* w = UI_GetWidgetIfMade();
    return w && w->focusPolicy() != Qt::NoFocus;
}

zephcore::UTF16String
UI_ControlView::UI_ProcessStringAndSetMnemonic(zephcore::UTF16String const& text)
{
    zephcore::UTF16String out;
    out.reserve(text.size());
    for (std::size_t i = 0; i < text.size(); ++i)
    {
        if (text[i] == u'&')
        {
            if (i + 1 < text.size() && text[i + 1] == u'&')
            {
                out.push_back(u'&');
                ++i;
            }
            continue;
        }
        out.push_back(text[i]);
    }
    return out;
}

void UI_ControlView::SendValueChangedMessage()
{
    UI_ControlMessage message(this);
    NotifyChanged(&message);
}

void UI_InteractiveControlView::SendInteractiveValueChangedMessage()
{
    UI_ControlMessage message(this);
    NotifyChangedInteractively(&message);
}

} // namespace zephui
