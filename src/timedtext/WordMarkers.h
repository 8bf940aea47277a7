#pragma once
// Reading a speech marker into a transcript word: the inverse of WordToMarker.
// Private to the library: exported only so that its tests can call it.

#include "zephmetadataui/WordInfo.h"
#include "zephmetadataui/zephmetadataui_export.h"

#include <zephtemporalxmp/XMPTemporalMetadataInfo.h>

#include <cstdint>
#include <string>

namespace zephmetadataui::timedtext
{

// The last cue point parameter of each key wins; a probability that is not a
// whole decimal number in 32 bits reads as 0.
ZEPHMETADATAUI_EXPORT WordInfo MarkerToWord(zephtemporalxmp::XMPTemporalMetadataInfo const& marker);

// A signed 32-bit decimal with an optional sign and nothing else; 0 otherwise.
ZEPHMETADATAUI_EXPORT std::int32_t ParseProbability(std::string const& text);

} // namespace zephmetadataui::timedtext
