#pragma once
// Which paths may appear at all (the display filter), which rows may take the
// keyboard (the travel filter), and which element types an array editor can
// edit in place. Used by the tree, the form builder and the preferences.
// Private to the library: exported only so that its tests can call it.

#include "contracts/Model.h"
#include "zephmetadataui/zephmetadataui_export.h"

#include <set>
#include <vector>

namespace zephmetadataui
{

// False for blacklisted paths, the raw tone curve, and choice or alternative
// lists whose element type is not simple.
ZEPHMETADATAUI_EXPORT bool IsShowablePath(Path const& path);
// False for flagged read-only paths, kinds without an editor, and types that
// can't be edited.
ZEPHMETADATAUI_EXPORT bool IsFocusablePath(Path const& path);
// A type id that can be edited inside an array: the simple primitives and
// types built on them, but never "date".
ZEPHMETADATAUI_EXPORT bool IsSimpleElementTypeId(UTF8String const& typeId);

// The blacklisted paths, for a caller that must know whether any of them
// lies below a path (the tree lays down uniform array items in one go).
ZEPHMETADATAUI_EXPORT std::set<Path> const& BlacklistedPaths();

// Erases every path for which IsShowablePath is false, in one walk.
ZEPHMETADATAUI_EXPORT void FilterShowablePaths(std::set<Path>& paths);
ZEPHMETADATAUI_EXPORT void FilterShowablePaths(std::vector<Path>& paths);

} // namespace zephmetadataui
