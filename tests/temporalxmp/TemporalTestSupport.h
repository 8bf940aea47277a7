#pragma once
// Helpers of the temporal tests: packets with tracks written in the test,
// opened operations, and flat text forms of lists and trees to compare.

#include "ModelTestSupport.h"

#include "zephtemporalxmp/XMPDocOpsTemporal.h"

#include <map>
#include <memory>
#include <set>
#include <string>

namespace temporaltest
{

using zephmediatypes::TickTime;
using zephtemporalxmp::TXMPMeta;
using zephtemporalxmp::XMPCuePointParam;
using zephtemporalxmp::XMPDocOpsTemporal;
using zephtemporalxmp::XMPTemporalMetadataInfo;
using zephtemporalxmp::XMPTrack;

inline std::string Marker(std::string const& fields)
{
    return "<rdf:li rdf:parseType=\"Resource\">" + fields + "</rdf:li>";
}

inline std::string Track(std::string const& fields, std::string const& markers)
{
    return "<rdf:li rdf:parseType=\"Resource\">" + fields + "<xmpDM:markers><rdf:Seq>" + markers +
           "</rdf:Seq></xmpDM:markers></rdf:li>";
}

// A start time and a name, the fields most test markers need.
inline std::string Timed(std::string const& start, std::string const& name)
{
    return "<xmpDM:startTime>" + start + "</xmpDM:startTime><xmpDM:name>" + name + "</xmpDM:name>";
}

// A track's frame rate field; none for "".
inline std::string Rate(std::string const& rate)
{
    return rate.empty() ? rate : "<xmpDM:frameRate>" + rate + "</xmpDM:frameRate>";
}

inline std::string TracksPacket(std::string const& tracks, std::string const& more = "")
{
    return modeltest::Packet("<xmpDM:Tracks><rdf:Bag>" + tracks + "</rdf:Bag></xmpDM:Tracks>" +
                             more);
}

// A parsed tree with operations opened on it.
struct Opened
{
    explicit Opened(std::string const& packet) : Opened(modeltest::Parse(packet)) {}
    explicit Opened(zephmetadata::xmp::MetaPtr tree) : meta(std::move(tree)) { Reopen(); }

    void Reopen()
    {
        ops = std::make_unique<XMPDocOpsTemporal>();
        TXMPMeta shared(meta.get());
        ops->OpenXMP(&shared, "", 0);
    }
    XMPTrack& TrackAt(std::size_t index)
    {
        auto track = ops->TrackListIteratorBegin();
        std::advance(track, static_cast<long>(index));
        return *track;
    }
    bool Save()
    {
        ops->TrackListChanged();
        return ops->PrepareForSave(nullptr, 0);
    }

    zephmetadata::xmp::MetaPtr meta;
    std::unique_ptr<XMPDocOpsTemporal> ops;
};

inline std::string Field(XMPTemporalMetadataInfo const& info, zephtemporalxmp::_infoFieldEnum f)
{
    std::string text;
    info.GetMarkerField(&text, f);
    return text;
}

inline TickTime Seconds(double seconds)
{
    return TickTime::FromSeconds(seconds);
}

// Three tracks over every marker field, with other metadata around them:
// Speech at f25 (Hello, wörld with unmodelled fields, later in its own f50),
// Cue at f48000 (cue, parameters in a bag with an extra field), Chapter
// without a frame rate (Intro, in seconds). InstanceID "xmp.iid:A".
std::string SamplePacket();

// "name start+duration" of every marker in list order, times in seconds.
std::string Words(XMPTrack& track);

// "type/name/rate: words" of every track, one line each.
std::string Tracks(XMPDocOpsTemporal& ops);

// The subtrees of every track but the first, which the tests edit.
std::string LaterTracks(__XMPMeta__* meta);

// A marker with a name, times and the given cue point parameters.
XMPTemporalMetadataInfo Word(char const* name, TickTime start, TickTime duration,
                             std::vector<XMPCuePointParam> const& cues = {});

// Each marker item of Tracks[track] flattened (paths relative to the item,
// values, significant options), as a multiset: what a reader of the packet sees.
std::multiset<std::string> MarkerItems(__XMPMeta__* meta, int track);

// Every node of the tree outside xmpDM:Tracks, xmpMM:InstanceID and
// xmpMM:History, by namespace and path.
std::map<std::string, std::string> OtherProperties(__XMPMeta__* meta);

// One subtree flattened, paths relative to its root.
std::string Subtree(__XMPMeta__* meta, char const* ns, std::string const& path);

// How many items of before are still in after, to the byte.
std::size_t Kept(std::multiset<std::string> const& before, std::multiset<std::string> const& after);

// A simple property's text, "" when absent.
std::string Get(__XMPMeta__* meta, char const* ns, std::string const& path);

} // namespace temporaltest
