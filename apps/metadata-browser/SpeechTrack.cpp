#include "SpeechTrack.h"

#include <zephmetadata/Access.h>
#include <zephtemporalxmp/TXMPMeta.h>
#include <zephtemporalxmp/XMPDocOpsTemporal.h>
#include <zephtemporalxmp/XMPTrack.h>

#include <algorithm>
#include <string>

namespace browser
{

namespace
{

// A timer cannot tick faster than a millisecond, and a rate of ticks (the
// finest an XMP track may state) says nothing about playback.
constexpr double kFastestTimerRate = 120.0;

} // namespace

std::optional<SpeechTrackSpan>
FindSpeechTrack(boost::shared_ptr<zephmetadata::MetaDataProvider> const& provider)
{
    zephmetadata::MetaDataReadAccess const access(provider);
    if (!*access)
        return std::nullopt;
    zephtemporalxmp::TXMPMeta shared(*access);
    zephtemporalxmp::XMPDocOpsTemporal tracks;
    if (!tracks.OpenXMP(&shared, "", 0))
        return std::nullopt;
    for (auto track = tracks.TrackListIteratorBegin(); track != tracks.TrackListIteratorEnd();
         ++track)
    {
        std::string type, rate;
        track->GetTrackType(&type);
        if (type != "Speech" || track->MarkerListIteratorBegin() == track->MarkerListIteratorEnd())
            continue;
        SpeechTrackSpan span;
        for (auto marker = track->MarkerListIteratorBegin();
             marker != track->MarkerListIteratorEnd(); ++marker)
            span.end = std::max(span.end, marker->second.startTime + marker->second.duration);
        track->GetFrameRate(&rate);
        if (auto const parsed = zephmediatypes::ParseFrameRate(rate))
        {
            double const fps = double(parsed->numerator) / double(parsed->denominator);
            if (fps > 0.0 && fps <= kFastestTimerRate)
                span.framesPerSecond = fps;
        }
        return span;
    }
    return std::nullopt;
}

} // namespace browser
