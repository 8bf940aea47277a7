#pragma once
// Measuring of wrapped text: how tall a text is when broken into lines at a
// given width. Lines break at spaces where they can, else inside words.

#include "zephui/Drawbot.h"
#include "zephui/zephui_export.h"

namespace zephui
{

class ZEPHUI_EXPORT UI_TextLayout
{
public:
    // font: any font of the toolkit's supplier; null measures with the
    // interface font. A width of 0 or less never wraps.
    UI_TextLayout(zephcore::UTF16String const& text, FontInterface const* font, float width);

    // The size the text takes: its widest line and the height of all lines.
    PointF GetInitialSize() const { return size; }
    bool GetIsMultiline() const { return lineCount > 1; }
    int GetLineCount() const { return lineCount; }

private:
    PointF size;
    int lineCount = 0;
};

} // namespace zephui
