#include "zephui/MessageBoxes.h"

#include "WindowParent.h"

#include "zephcore/Localizer.h"
#include "zephcore/QtStrings.h"

#include <QInputDialog>
#include <QMessageBox>
#include <QPushButton>

namespace zephui
{

QString LocalText(zephcore::UTF16String const& text)
{
    static zephcore::UTF16String const keyStart = zephcore::ToUTF16("$$$/");
    if (text.compare(0, keyStart.size(), keyStart) == 0)
        return zephcore::ToQString(zephcore::Localizer::Get().GetString(zephcore::UTF16to8(text)));
    return zephcore::ToQString(text);
}

namespace
{

QString StandardText(char const* key)
{
    return zephcore::ToQString(zephcore::Localizer::Get().GetString(key));
}

void ShowBox(QMessageBox::Icon icon, zephcore::UTF16String const& title,
             zephcore::UTF16String const& message, UI_Node* parent)
{
    QMessageBox box(icon, LocalText(title), LocalText(message), QMessageBox::NoButton,
                    ParentWindowOf(parent));
    QPushButton* ok =
        box.addButton(StandardText("$$$/zephui/dialogs/OK=OK"), QMessageBox::AcceptRole);
    box.setDefaultButton(ok);
    box.setEscapeButton(ok);
    box.exec();
}

} // namespace

void messagebox::ShowStop(zephcore::UTF16String const& title, zephcore::UTF16String const& message,
                          UI_Node* parent)
{
    ShowBox(QMessageBox::Critical, title, message, parent);
}

void messagebox::ShowInfo(zephcore::UTF16String const& title, zephcore::UTF16String const& message,
                          UI_Node* parent)
{
    ShowBox(QMessageBox::Information, title, message, parent);
}

void SimpleErrorMessageBox(zephcore::UTF16String const& title, zephcore::UTF16String const& message,
                           UI_Node* parent)
{
    ShowBox(QMessageBox::Warning, title, message, parent);
}

bool SimpleInputBox(zephcore::UTF16String const& title, zephcore::UTF16String const& label,
                    zephcore::UTF16String& value, zephcore::UTF16String const& okText,
                    zephcore::UTF16String const& cancelText, UI_Node* parent)
{
    QInputDialog box(ParentWindowOf(parent));
    box.setWindowTitle(LocalText(title));
    box.setLabelText(LocalText(label));
    box.setTextValue(zephcore::ToQString(value));
    box.setOkButtonText(okText.empty() ? StandardText("$$$/zephui/dialogs/OK=OK")
                                       : LocalText(okText));
    box.setCancelButtonText(cancelText.empty() ? StandardText("$$$/zephui/dialogs/Cancel=Cancel")
                                               : LocalText(cancelText));
    if (box.exec() != QDialog::Accepted)
        return false;
    value = zephcore::ToUTF16(box.textValue());
    return true;
}

bool SimpleConfirmationBox(zephcore::UTF16String const& title, zephcore::UTF16String const& message,
                           zephcore::UTF16String const& confirmText, UI_Node* parent)
{
    QMessageBox box(QMessageBox::Question, LocalText(title), LocalText(message),
                    QMessageBox::NoButton, ParentWindowOf(parent));
    QPushButton* confirm = box.addButton(LocalText(confirmText), QMessageBox::AcceptRole);
    QPushButton* cancel =
        box.addButton(StandardText("$$$/zephui/dialogs/Cancel=Cancel"), QMessageBox::RejectRole);
    box.setDefaultButton(confirm);
    box.setEscapeButton(cancel);
    box.exec();
    return box.clickedButton() == confirm;
}

} // namespace zephui
