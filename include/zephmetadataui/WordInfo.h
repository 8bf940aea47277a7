#pragma once
// One word of a speech transcript as a host sees it, and the speech marker
// that stores it in the XMP Dynamic Media tracks.

#include "zephmetadataui/zephmetadataui_export.h"

#include <zephcore/Strings.h>
#include <zephmediatypes/TickTime.h>
#include <zephtemporalxmp/XMPTemporalMetadataInfo.h>

#include <cstdint>

namespace zephmetadataui
{

// A plain record: the word as shown, its two alternative readings, the
// recogniser's score (-1 for a word a user wrote or changed), its time on the
// media's time line in raw ticks, and its speaker.
struct ZEPHMETADATAUI_EXPORT WordInfo
{
    zephcore::UTF16String primary;
    zephcore::UTF16String secondary;
    zephcore::UTF16String text;
    std::int32_t probability = 0;
    zephmediatypes::TickTime startTime = zephmediatypes::kTime_Zero;
    zephmediatypes::TickTime duration = zephmediatypes::kTime_Zero;
    zephcore::UTF16String speaker;

    friend bool operator==(WordInfo const& a, WordInfo const& b)
    {
        return a.primary == b.primary && a.secondary == b.secondary && a.text == b.text &&
               a.probability == b.probability && a.startTime == b.startTime &&
               a.duration == b.duration && a.speaker == b.speaker;
    }
    friend bool operator!=(WordInfo const& a, WordInfo const& b) { return !(a == b); }
};

// A new "Speech" marker that carries the word and nothing else: the
// alternatives as the cue point parameters "primary" and "secondary" (each
// only when not empty), the probability in decimal, the times unchanged.
ZEPHMETADATAUI_EXPORT zephtemporalxmp::XMPTemporalMetadataInfo WordToMarker(WordInfo const& word);

} // namespace zephmetadataui
