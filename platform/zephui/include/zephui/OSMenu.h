#pragma once
// Pop-up menus of numbered items (UI_Node::UI_DoContextMenu shows one and
// returns the chosen number), and the clipboard.

#include "zephcore/Strings.h"
#include "zephui/zephui_export.h"

#include <memory>
#include <vector>

namespace zephui
{

class ZEPHUI_EXPORT OSMenu
{
public:
    struct Item
    {
        int number = 0; // 0: a separator
        zephcore::UTF16String text;
        bool enabled = true;
    };

    // number: what UI_DoContextMenu returns when the item is chosen (above 0).
    void AddItem(zephcore::UTF16String const& text, int number);
    void AddSeparator();
    void EnableItem(int number, bool enable);
    bool IsItemEnabled(int number) const;
    std::vector<Item> const& GetItems() const { return items; }

private:
    std::vector<Item> items;
};

ZEPHUI_EXPORT std::unique_ptr<OSMenu> CreateOSMenu();

// Puts text on the clipboard.
ZEPHUI_EXPORT void NewClipboardSendData(zephcore::UTF16String const& text);

} // namespace zephui
