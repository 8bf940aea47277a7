#pragma once
// Helpers shared by the toolkit's own modal windows.

#include "zephcore/Strings.h"

#include <QApplication>
#include <QString>
#include <QWidget>

namespace zephui
{

class UI_Node;

// The window a modal box stays over: the node's window, else the active one.
QWidget* ParentWindowOf(UI_Node* node);
// A localiser key ("$$$/...") looked up; any other text as it stands.
QString LocalText(zephcore::UTF16String const& text);

} // namespace zephui
