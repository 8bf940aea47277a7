#include "zephui/OSMenu.h"

#include "zephcore/QtStrings.h"

#include <QClipboard>
#include <QGuiApplication>

namespace zephui
{

void OSMenu::AddItem(zephcore::UTF16String const& text, int number)
{
    if (number <= 0)
        return; // 0 stands for separators and for "nothing chosen"
    items.push_back(Item{number, text, true});
}

void OSMenu::AddSeparator()
{
    items.push_back(Item{0, {}, false});
}

void OSMenu::EnableItem(int number, bool enable)
{
    for (Item& item : items)
        if (item.number == number)
            item.enabled = enable;
}

bool OSMenu::IsItemEnabled(int number) const
{
    for (Item const& item : items)
        if (item.number == number)
            return item.enabled;
    return false;
}

std::unique_ptr<OSMenu> CreateOSMenu()
{
    return std::unique_ptr<OSMenu>(new OSMenu);
}

void NewClipboardSendData(zephcore::UTF16String const& text)
{
    if (QClipboard* clipboard = QGuiApplication::clipboard())
        clipboard->setText(zephcore::ToQString(text));
}

} // namespace zephui
