#pragma once
// What the display preferences' files share: localised texts, the counts
// behind a group's checkbox, the saved sets' file names and the keys of
// custom texts. Private to the library: exported only so that its tests can
// call it.

#include "contracts/Model.h"
#include "contracts/Toolkit.h"
#include "zephmetadataui/zephmetadataui_export.h"

#include <set>
#include <string>

namespace zephmetadataui
{
namespace preferences
{

// The text of a localiser key ("$$$/...=default").
UTF16String Text(char const* key);

// The script of a layout-script dialog from the library's resources, with a
// zero byte behind it; empty when the library is not started.
std::string LayoutScript(char const* name);

// How many leaves of a group are in the set, how many of them pass the
// display filter, and how many there are at all.
struct LeafCounts
{
    std::size_t included = 0;
    std::size_t showable = 0;
    std::size_t all = 0;
};
LeafCounts CountLeaves(zephmetadata::IteratorRange<Path> const& leaves,
                       std::set<Path> const& included);
// Off with none, on with all showable ones, mixed otherwise.
void SetGroupCheckboxState(UI_Checkbox* box, LeafCounts const& counts);
// A click on a group: a partly included group is filled, a full one (by
// all its leaves, shown or not) emptied, an empty one filled. Adding cleans
// the set with the display filter.
void ToggleGroup(zephmetadata::IteratorRange<Path> const& leaves, std::set<Path>& included);

// Whether a file name ends in the saved sets' suffix, exactly in case; and
// the name without it.
bool HasSavedSettingsSuffix(UTF16String const& name);
UTF16String StripSavedSettingsSuffix(UTF16String const& name);

// The localiser key of a custom text: "$$$/custom_xmp_schemas/<schema>/
// <kind>/<text>" in UTF-8 with every byte outside "!" to "~", "=" and '"'
// written as its hexadecimal value, then "=" and the text as it is.
ZEPHMETADATAUI_EXPORT UTF16String CustomTextKey(UTF16String const& schemaName, char const* kind,
                                                UTF16String const& text);

} // namespace preferences
} // namespace zephmetadataui
