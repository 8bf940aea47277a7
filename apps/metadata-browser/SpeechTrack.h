#pragma once
// What the playback time line needs of a file's speech track: how long its
// words run and at what frame rate to step through them.

#include <zephmediatypes/TickTime.h>

#include <boost/shared_ptr.hpp>

#include <optional>

namespace zephmetadata
{
class MetaDataProvider;
}

namespace browser
{

struct SpeechTrackSpan
{
    zephmediatypes::TickTime end;  // the end of the last word
    double framesPerSecond = 25.0; // the track's rate; 25 when it has none a timer can use
};

// Unset when the provider's metadata holds no speech track with words.
std::optional<SpeechTrackSpan>
FindSpeechTrack(boost::shared_ptr<zephmetadata::MetaDataProvider> const& provider);

} // namespace browser
