#pragma once
// The desktop around the application: opening folders, files and addresses
// with the programs the user chose for them.

#include "zephui/UI_Dialog.h"
#include "zephui/zephui_export.h"

#include "zephcore/Strings.h"

namespace zephui
{

// The owner for windows that belong to no window of the application: none.
ZEPHUI_EXPORT HWND GetDesktopWindow();

// Hands a file or folder to the desktop: the verbs "open" and "explore"
// (a folder's window) are known; `parameters`, `directory` and `showMode`
// are accepted for callers and have no use here. True if the desktop took it.
ZEPHUI_EXPORT bool ShellExecuteW(HWND owner, zephcore::UTF16String const& verb,
                                 zephcore::UTF16String const& file,
                                 zephcore::UTF16String const& parameters,
                                 zephcore::UTF16String const& directory, int showMode);

// Opens a web address (or any URL) in the user's browser. True if the
// desktop took it.
ZEPHUI_EXPORT bool OpenURLInDefaultBrowser(zephcore::UTF16String const& url);

} // namespace zephui
