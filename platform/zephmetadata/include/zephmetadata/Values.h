#pragma once
// Reading and writing single values of a metadata tree. Every function takes
// a possibly null handle: readers then answer false, counts 0.
//
// How values are seen as text:
// - a simple property is its text;
// - a language alternative reads and writes its default ("x-default") item;
// - a list of simple values (bag, seq, or alternative of plain text) is edited
//   in one cell as ONE text: items joined by "; ". Inside an item ";" is
//   written "\;" and "\" is written "\\". On writing, the text is split at
//   every unescaped ";", each item is trimmed of surrounding spaces, empty
//   items are dropped; an empty text removes the list;
// - dates are ISO 8601 text ("2024-05-01T10:30:00+02:00"), as XMP stores them;
// - a structure, or a list whose items are structures, has no text value.
// Setters answer true only if the stored value changed.

#include "zephmetadata/Path.h"
#include "zephmetadata/Types.h"
#include "zephmetadata/zephmetadata_export.h"

#include <vector>

namespace zephmetadata
{

ZEPHMETADATA_EXPORT bool GetValue(__XMPMeta__* meta, Path const& path, UTF8String& value,
                                  GetValueResult* result);
// Plain numbers and rationals ("28/10").
ZEPHMETADATA_EXPORT bool GetValue(__XMPMeta__* meta, Path const& path, double& value,
                                  GetValueResult* result);
// "True"/"False" in any case, and "1"/"0".
ZEPHMETADATA_EXPORT bool GetValue(__XMPMeta__* meta, Path const& path, bool& value,
                                  GetValueResult* result);

ZEPHMETADATA_EXPORT bool SetValue(__XMPMeta__* meta, Path const& path, UTF8String const& value);
// A NaN removes the value (an emptied number field); infinities are refused.
// Equal numbers count as unchanged whatever their stored spelling.
ZEPHMETADATA_EXPORT bool SetValue(__XMPMeta__* meta, Path const& path, double value);
ZEPHMETADATA_EXPORT bool SetValue(__XMPMeta__* meta, Path const& path, long long value);
// Stored as "True" or "False".
ZEPHMETADATA_EXPORT bool SetValue(__XMPMeta__* meta, Path const& path, bool value);

// True if something was removed.
ZEPHMETADATA_EXPORT bool DeleteValue(__XMPMeta__* meta, Path const& path);
ZEPHMETADATA_EXPORT bool HasValue(__XMPMeta__* meta, Path const& path);

// Adds an empty item at the 0-based place (-1: at the end); a structure item
// when the array's items are structures. Creates the array if absent.
ZEPHMETADATA_EXPORT bool AddArrayItem(__XMPMeta__* meta, Path const& path, int place);
// Removes the item at the 0-based place.
ZEPHMETADATA_EXPORT bool DeleteArrayItem(__XMPMeta__* meta, Path const& path, int place);
// 0 when absent, no array, or a null handle.
ZEPHMETADATA_EXPORT int CountArrayItems(__XMPMeta__* meta, Path const& path);

// Writes the shortest text that reads back as the same double, under its own
// update access on value.provider, recording the change only if there was one.
ZEPHMETADATA_EXPORT void SetMinimalFloatValue(Value const& value, double number);

// The pieces of the rules above, for views and tests.
ZEPHMETADATA_EXPORT UTF8String JoinListItems(std::vector<UTF8String> const& items);
ZEPHMETADATA_EXPORT std::vector<UTF8String> SplitListText(UTF8String const& text);
// Shortest decimal text that reads back as number ("0.1", "3", "1e+21").
ZEPHMETADATA_EXPORT UTF8String MinimalFloatText(double number);

} // namespace zephmetadata
