#pragma once
// Tool tip text wrapped to a width, as rich text that Qt will not re-wrap.
// Private to the library: exported only so that its tests can call it.

#include "zephui/zephui_export.h"
#include <QString>

namespace zephui
{

// width <= 0: the text as it is. Otherwise lines broken at blanks (or inside
// a word longer than the width) so that none is wider than width pixels in
// the tool tip font.
ZEPHUI_EXPORT QString FormatToolTip(QString const& text, float width);
// The lines FormatToolTip makes, for measuring.
ZEPHUI_EXPORT QStringList WrapToolTipLines(QString const& text, float width);

} // namespace zephui
