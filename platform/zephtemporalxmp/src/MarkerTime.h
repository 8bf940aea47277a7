#pragma once
// Marker times in their packet form (XMP Dynamic Media FrameCount): a count
// of frames, optionally followed by the frame rate it counts in ("50",
// "1001f30000s1001"). Without one, the track's xmpDM:frameRate applies, and
// without that the count is in seconds.

#include <zephmediatypes/TickTime.h>

#include <optional>
#include <string>

namespace zephtemporalxmp
{
namespace detail
{

// The rate a track's times count in: its frame rate, one a second when it
// has none, unset when its frame rate can't be read.
std::optional<zephmediatypes::FrameRate> TrackTimeBase(std::string const& trackFrameRate);

// A time's text to ticks. Takes an optional sign and fraction ("-2", "12.5").
// ownRate receives the rate written in the text, or is emptied. Unset when the
// text is no time, overflows, or has no rate to count in.
std::optional<zephmediatypes::TickTime>
ParseMarkerTime(std::string const& text, std::optional<zephmediatypes::FrameRate> const& trackBase,
                std::string* ownRate);

// Ticks to text: a whole count in the marker's own rate (with its suffix) or
// the track's (without), else the exact tick count at the tick rate
// ("123f254016000000").
std::string FormatMarkerTime(zephmediatypes::TickTime time,
                             std::optional<zephmediatypes::FrameRate> const& trackBase,
                             std::string const& ownRate);

} // namespace detail
} // namespace zephtemporalxmp
