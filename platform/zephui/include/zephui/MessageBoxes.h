#pragma once
// Modal message and question boxes. Every text may be a localiser key
// ("$$$/group/name=default"), which is looked up; any other text is shown as
// it stands. A "&" in a button text marks its mnemonic. The parent may be
// null; the box then stays over the active window.

#include "zephui/zephui_export.h"

#include "zephcore/Strings.h"

namespace zephui
{

class UI_Node;

namespace messagebox
{
// A stop sign, the message and one OK button.
ZEPHUI_EXPORT void ShowStop(zephcore::UTF16String const& title,
                            zephcore::UTF16String const& message, UI_Node* parent = nullptr);
// An information sign, the message and one OK button.
ZEPHUI_EXPORT void ShowInfo(zephcore::UTF16String const& title,
                            zephcore::UTF16String const& message, UI_Node* parent = nullptr);
} // namespace messagebox

// Asks for one line of text; `value` is shown first and holds what the user
// typed after OK. Empty button texts give OK and Cancel. False, with `value`
// as it was, after Cancel.
ZEPHUI_EXPORT bool SimpleInputBox(zephcore::UTF16String const& title,
                                  zephcore::UTF16String const& label, zephcore::UTF16String& value,
                                  zephcore::UTF16String const& okText = {},
                                  zephcore::UTF16String const& cancelText = {},
                                  UI_Node* parent = nullptr);

// Asks the user to confirm an action named by the confirm button ("&Delete");
// the other button is Cancel, which Escape presses. True when confirmed.
ZEPHUI_EXPORT bool SimpleConfirmationBox(zephcore::UTF16String const& title,
                                         zephcore::UTF16String const& message,
                                         zephcore::UTF16String const& confirmText,
                                         UI_Node* parent = nullptr);

// An error sign, the message and one OK button.
ZEPHUI_EXPORT void SimpleErrorMessageBox(zephcore::UTF16String const& title,
                                         zephcore::UTF16String const& message,
                                         UI_Node* parent = nullptr);

} // namespace zephui
