#pragma once
// Small pieces shared by the form builders: sizes, and texts made into
// layout items.

#include "contracts/Core.h"
#include "zephmetadataui/TableLayout.h"

namespace zephmetadataui::layout
{

using zephcore::ToUTF8;

// Tool tips of forms wrap at this width.
constexpr float kToolTipWidth = 400.0f;
// A popup is never narrower than this, whatever its longest item.
constexpr float kMinimumPopupWidth = 100.0f;

inline unsigned short u16(char c)
{
    return static_cast<unsigned short>(static_cast<unsigned char>(c));
}

// The localised text of a key from a definition or a hint.
UTF16String Localized(UTF8String const& key);

// A static text as a layout item that takes its height from its wrapped
// text; lower: set 2 lower when it runs over several lines.
LayoutItemPtr MakeTextItem(UTF16String const& text, bool lower);

} // namespace zephmetadataui::layout
