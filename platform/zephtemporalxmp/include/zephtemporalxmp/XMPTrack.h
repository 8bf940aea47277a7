#pragma once
// One track of xmpDM:Tracks with its markers, ordered by start time.

#include "zephtemporalxmp/XMPTemporalMetadataInfo.h"
#include "zephtemporalxmp/zephtemporalxmp_export.h"

#include <zephmediatypes/TickTime.h>

#include <cstddef>
#include <map>
#include <memory>
#include <string>

namespace zephtemporalxmp
{

namespace detail
{
struct TrackState;
struct TrackAccess;
} // namespace detail

// The markers live in a tree keyed by start time: positions stay valid when
// other markers are added or removed, the end position is the same from call
// to call, and a lookup by time is logarithmic. Markers that start together
// keep the order they were read or added in.
class ZEPHTEMPORALXMP_EXPORT XMPTrack
{
public:
    using TickTime = zephmediatypes::TickTime;
    using MarkerList = std::multimap<TickTime, XMPTemporalMetadataInfo>;
    using MarkerListIterator = MarkerList::iterator;

    XMPTrack();
    ~XMPTrack();
    XMPTrack(XMPTrack const&) = delete;
    XMPTrack& operator=(XMPTrack const&) = delete;

    // xmpDM:trackType, xmpDM:trackName and xmpDM:frameRate as written; empty
    // when absent.
    void GetTrackType(std::string* result) const;
    void GetTrackName(std::string* result) const;
    void GetFrameRate(std::string* result) const;

    MarkerListIterator MarkerListIteratorBegin() { return markers.begin(); }
    MarkerListIterator MarkerListIteratorEnd() { return markers.end(); }
    // The first marker that starts at or after time.
    MarkerListIterator MarkerListLowerBound(TickTime time) { return markers.lower_bound(time); }

    // Inserts a copy keyed by its start time, just before position when the
    // time fits there (equal start times included), else where it belongs.
    // Returns the new marker's position.
    MarkerListIterator AddMarker(MarkerListIterator position, XMPTemporalMetadataInfo const& info);
    // Returns the position after the removed marker.
    MarkerListIterator RemoveMarker(MarkerListIterator position);

    // Markers of the packet whose times can't be read (a time that is no
    // number, a frame rate that can't be read). They are not in the list, and
    // saves leave them in the packet as they are.
    std::size_t GetUnreadableMarkerCount() const;

private:
    friend struct detail::TrackAccess;

    std::string name;
    std::string type;
    std::string frameRate;
    MarkerList markers;
    std::unique_ptr<detail::TrackState> state;
};

} // namespace zephtemporalxmp
