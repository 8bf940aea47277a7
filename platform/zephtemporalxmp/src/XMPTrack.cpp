#include "zephtemporalxmp/XMPTrack.h"

#include "MarkerOrigin.h"

#include <algorithm>
#include <atomic>

namespace zephtemporalxmp
{

namespace
{

std::uint64_t NewTrackId()
{
    static std::atomic<std::uint64_t> lastId{0};
    return ++lastId;
}

void Copy(std::string const& text, std::string* result)
{
    if (result)
        *result = text;
}

} // namespace

XMPTrack::XMPTrack() : state(new detail::TrackState)
{
    state->id = NewTrackId();
}

XMPTrack::~XMPTrack() = default;

void XMPTrack::GetTrackType(std::string* result) const
{
    Copy(type, result);
}

void XMPTrack::GetTrackName(std::string* result) const
{
    Copy(name, result);
}

void XMPTrack::GetFrameRate(std::string* result) const
{
    Copy(frameRate, result);
}

XMPTrack::MarkerListIterator XMPTrack::AddMarker(MarkerListIterator position,
                                                 XMPTemporalMetadataInfo const& info)
{
    // With a fitting hint the tree puts the marker right before it, also
    // among equal start times; otherwise where its time belongs.
    return markers.emplace_hint(position, info.startTime, info);
}

XMPTrack::MarkerListIterator XMPTrack::RemoveMarker(MarkerListIterator position)
{
    return markers.erase(position);
}

std::size_t XMPTrack::GetUnreadableMarkerCount() const
{
    return static_cast<std::size_t>(std::count_if(state->items.begin(), state->items.end(),
                                                  [](auto const& item)
                                                  { return !item->readable; }));
}

} // namespace zephtemporalxmp
