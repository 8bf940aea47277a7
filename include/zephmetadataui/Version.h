#pragma once
// The library's version, for hosts that check what they loaded.

namespace zephmetadataui
{

// "major.minor.patch"
char const* VersionString();

} // namespace zephmetadataui
