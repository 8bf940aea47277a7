#pragma once
// What the library remembers of the packet behind each marker and track, so
// that a save touches only what changed and keeps what it does not model.

#include "zephtemporalxmp/XMPTemporalMetadataInfo.h"
#include "zephtemporalxmp/XMPTrack.h"

#include <exempi/xmp.h>

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <vector>

namespace zephtemporalxmp
{
namespace detail
{

// One node of a marker item, its path relative to the item ("xmpDM:name",
// "xmpDM:name/?xml:lang", "my:field/my:part").
struct RawNode
{
    std::string path;
    std::string value;
    std::uint32_t options = 0;
};

// One field of a marker item, in packet order. A field that was one plain
// text (no qualifier, no URI, no structure) keeps no nodes: its value is in
// MarkerOrigin::asRead. Fields this library does not model have field 0.
struct FieldRecord
{
    int field = 0;
    std::vector<RawNode> nodes;
};

// One item of a track's marker array as it stands in the packet.
struct MarkerOrigin
{
    std::uint64_t trackId = 0;
    std::size_t slot = 0;            // 0-based place in the array
    std::uint64_t claimedInSave = 0; // the save pass that found a marker still equal to it
    bool readable = true;            // false: not in the list, kept as it is
    std::uint32_t itemOptions = XMP_PROP_VALUE_IS_STRUCT;
    std::string itemValue; // for an item that is no structure
    XMPTemporalMetadataInfo asRead;
    std::string startTimeText; // the times as written, when plain
    std::string durationText;
    std::vector<FieldRecord> fields;
};

struct TrackState
{
    std::uint64_t id = 0;  // unique among all tracks of the process
    std::size_t index = 0; // 1-based place in xmpDM:Tracks
    bool writable = true;  // false when xmpDM:markers is there but no array
    std::vector<std::shared_ptr<MarkerOrigin>> items; // the packet's marker items, in order
};

struct InfoAccess
{
    static std::shared_ptr<MarkerOrigin>& Origin(XMPTemporalMetadataInfo& info)
    {
        return info.origin;
    }
    static MarkerOrigin const* Origin(XMPTemporalMetadataInfo const& info)
    {
        return info.origin.get();
    }
    // The text field behind a field number; null for the others.
    static std::string* Text(XMPTemporalMetadataInfo& info, int field);
    static std::string const* Text(XMPTemporalMetadataInfo const& info, int field);
    // Whether one field is the same in both (times by tick).
    static bool SameField(XMPTemporalMetadataInfo const& a, XMPTemporalMetadataInfo const& b,
                          int field);
    // Whether everything that is written is the same in both.
    static bool SameContent(XMPTemporalMetadataInfo const& a, XMPTemporalMetadataInfo const& b);
};

struct TrackAccess
{
    static std::string& Name(XMPTrack& track) { return track.name; }
    static std::string& Type(XMPTrack& track) { return track.type; }
    static std::string& FrameRate(XMPTrack& track) { return track.frameRate; }
    static XMPTrack::MarkerList& Markers(XMPTrack& track) { return track.markers; }
    static TrackState& State(XMPTrack& track) { return *track.state; }
};

// The modelled fields in the order a new marker writes them.
constexpr int kWrittenFields[] = {
    kInfoFieldStartTime,      kInfoFieldDuration, kInfoFieldName,        kInfoFieldType,
    kInfoFieldComment,        kInfoFieldLocation, kInfoFieldTarget,      kInfoFieldCuePointType,
    kInfoFieldCuePointParams, kInfoFieldSpeaker,  kInfoFieldProbability,
};

// The XMP field name of a modelled field ("name", "startTime"); null for none.
char const* FieldName(int field);

} // namespace detail
} // namespace zephtemporalxmp
