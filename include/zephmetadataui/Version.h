#pragma once

#include "zephmetadataui/zephmetadataui_export.h"
// The library's version, for hosts that check what they loaded.

namespace zephmetadataui
{

// "major.minor.patch"
ZEPHMETADATAUI_EXPORT char const* VersionString();

} // namespace zephmetadataui
