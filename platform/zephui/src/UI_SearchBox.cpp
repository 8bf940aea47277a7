#include "zephui/UI_SearchBox.h"

#include "ControlSupport.h"
#include "zephui/NodeWidget.h"

#include "zephcore/QtStrings.h"

#include <QLineEdit>

namespace zephui
{

UI_SearchBox::UI_SearchBox(bool, bool) : placeholder(zephcore::AsciiToUTF16("Search")) {}

QWidget* UI_SearchBox::CreateWidget()
{
    auto* edit = new NodeWidget<QLineEdit>(this);
    edit->setFont(ControlFont());
    edit->setMinimumSize(0, 0);
    edit->setClearButtonEnabled(true);
    edit->setPlaceholderText(zephcore::ToQString(placeholder));
    edit->setText(zephcore::ToQString(text));
    QObject::connect(edit, &QLineEdit::textEdited, edit,
                     [this](QString const& now)
                     {
                         NodeEventScope scope(this);
                         text = zephcore::ToUTF16(now);
                         SendInteractiveValueChangedMessage();
                         if (now.isEmpty())
                             Commit(); // the clear button
                     });
    QObject::connect(edit, &QLineEdit::returnPressed, edit, [this] { Commit(); });
    return edit;
}

zephcore::UTF16String UI_SearchBox::GetValue() const
{
    if (auto* edit = qobject_cast<QLineEdit*>(UI_GetWidgetIfMade()))
        return zephcore::ToUTF16(edit->text());
    return text;
}

void UI_SearchBox::SetValue(zephcore::UTF16String const& value)
{
    text = value;
    committed = value;
    if (auto* edit = qobject_cast<QLineEdit*>(UI_GetWidgetIfMade()))
        edit->setText(zephcore::ToQString(value));
}

void UI_SearchBox::SetPlaceholderText(zephcore::UTF16String const& value)
{
    placeholder = value;
    if (auto* edit = qobject_cast<QLineEdit*>(UI_GetWidgetIfMade()))
        edit->setPlaceholderText(zephcore::ToQString(value));
}

void UI_SearchBox::Commit()
{
    zephcore::UTF16String const now = GetValue();
    if (now == committed)
        return;
    NodeEventScope scope(this);
    committed = now;
    SendValueChangedMessage();
}

void UI_SearchBox::UI_FocusChanged(bool hasFocus)
{
    UI_InteractiveControlView::UI_FocusChanged(hasFocus);
    if (!hasFocus)
        Commit();
}

} // namespace zephui
