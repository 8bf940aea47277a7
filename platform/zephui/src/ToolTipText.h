#pragma once
// Tool tip text wrapped to a width, as rich text that Qt will not re-wrap.

#include <QString>

namespace zephui
{

// width <= 0: the text as it is. Otherwise lines broken at blanks (or inside
// a word longer than the width) so that none is wider than width pixels in
// the tool tip font.
QString FormatToolTip(QString const& text, float width);
// The lines FormatToolTip makes, for measuring.
QStringList WrapToolTipLines(QString const& text, float width);

} // namespace zephui
