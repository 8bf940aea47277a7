#include "zephui/UI_URLEdit.h"

#include "zephui/NodeWidget.h"

#include "zephcore/QtStrings.h"

#include <QDesktopServices>
#include <QUrl>

#include <boost/make_shared.hpp>

namespace zephui
{

namespace
{
constexpr float kButtonWidth = 22.0f;
}

UI_URLEdit::UI_URLEdit(unsigned long flags)
    : edit(new UI_TextEdit(flags & ~UI_TextEdit::kTextEditMultiLine, 0)),
      openButton(new UI_TextButton)
{
    edit->UI_Show(true);
    ChildPushBack(edit);
    // Focus given to the control goes to its text field.
    if (QWidget* own = UI_GetWidget())
        own->setFocusProxy(edit->UI_GetWidget());
    openButton->SetText(zephcore::UTF16String(1, u'\u2197'));
    openButton->SetWantsKeyboardFocus(false);
    openButton->UI_SetToolTip(zephcore::AsciiToUTF16("Open in browser"), 400.0f);
    openButton->UI_Show(true);
    ChildPushBack(openButton);
    editChanged =
        boost::make_shared<boost::function<void(Message*)>>([this](Message*) { OnEdited(); });
    openClicked =
        boost::make_shared<boost::function<void(Message*)>>([this](Message*) { OpenLink(); });
    edit->NotifyWhenChanged(editChanged);
    openButton->NotifyWhenChanged(openClicked);
    Place();
}

UI_URLEdit::~UI_URLEdit()
{
    editChanged->clear();
    openClicked->clear();
}

void UI_URLEdit::SetValue(zephcore::UTF16String const& value)
{
    if (UI_ControlView::IsValueUnknown())
        SetValueKnown();
    edit->SetValue(value);
    openButton->UI_SetEnabled(!value.empty());
}

void UI_URLEdit::OnEdited()
{
    NodeEventScope scope(this);
    if (UI_ControlView::IsValueUnknown())
        SetValueKnown();
    openButton->UI_SetEnabled(!edit->GetValue().empty());
    SendValueChangedMessage();
}

void UI_URLEdit::KnownValueStateChanged()
{
    if (UI_ControlView::IsValueUnknown())
        edit->SetValueUnknown();
    else
        edit->SetValueKnown();
}

zephcore::UTF16String UI_URLEdit::GetLinkURL() const
{
    QString const text = zephcore::ToQString(edit->GetValue()).trimmed();
    if (text.isEmpty())
        return {};
    return zephcore::ToUTF16(QUrl::fromUserInput(text).toString());
}

bool UI_URLEdit::OpenLink()
{
    zephcore::UTF16String const link = GetLinkURL();
    if (link.empty())
        return false;
    return QDesktopServices::openUrl(QUrl(zephcore::ToQString(link)));
}

void UI_URLEdit::Place()
{
    RectF const local = UI_GetLocalRectF(false);
    edit->UI_SetLocalRectF(
        RectF(0.0f, 0.0f, std::max(0.0f, local.width - kButtonWidth - 2.0f), local.height));
    openButton->UI_SetLocalRectF(
        RectF(std::max(0.0f, local.width - kButtonWidth), 0.0f, kButtonWidth, local.height));
}

void UI_URLEdit::UI_SizeChanged(RectF const& rect)
{
    UI_ControlView::UI_SizeChanged(rect);
    Place();
}

PointF UI_URLEdit::UI_GetRecommendedSize(Drawbot*)
{
    return PointF(std::max(UI_GetLocalRectF(false).width, 150.0f), 21.0f);
}

} // namespace zephui
