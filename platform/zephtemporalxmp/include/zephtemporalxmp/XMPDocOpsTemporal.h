#pragma once
// The tracks of a metadata tree's xmpDM:Tracks, opened for reading and
// editing, and written back with a new instance and a history entry.

#include "zephtemporalxmp/TXMPMeta.h"
#include "zephtemporalxmp/XMPTrack.h"
#include "zephtemporalxmp/zephtemporalxmp_export.h"

#include <list>
#include <string>

namespace zephtemporalxmp
{

// The part that a save of the tracks names in the history's stEvt:changed.
inline constexpr char const* kTracksPartName = "/metadata/xmpDM/Tracks";

// Opened on a shared tree (TXMPMeta), it keeps using that tree: a save writes
// into it, and the tree's owner writes the file. The operations object
// assumes it is the tracks' only writer between open and save; if the tree's
// xmpMM:InstanceID or a marker array changed meanwhile, a save rewrites the
// changed tracks whole. Everything happens on the caller's thread.
class ZEPHTEMPORALXMP_EXPORT XMPDocOpsTemporal
{
public:
    using TrackList = std::list<XMPTrack>;
    using TrackListIterator = TrackList::iterator;

    XMPDocOpsTemporal();
    ~XMPDocOpsTemporal();
    XMPDocOpsTemporal(XMPDocOpsTemporal const&) = delete;
    XMPDocOpsTemporal& operator=(XMPDocOpsTemporal const&) = delete;

    // Reads the tracks of the tree; false without a tree. filePath and flags
    // are not used: the tree is all there is (pass "" and 0). Opening again
    // replaces the tracks.
    bool OpenXMP(TXMPMeta* meta, char const* filePath, unsigned flags);

    // The tracks stay at their addresses as long as this object lives.
    TrackListIterator TrackListIteratorBegin() { return tracks.begin(); }
    TrackListIterator TrackListIteratorEnd() { return tracks.end(); }

    // Tells that markers were changed, so that the next save writes them.
    void TrackListChanged();

    // Writes the changed tracks into the tree, then a new xmpMM:InstanceID and
    // an xmpMM:History entry naming kTracksPartName. Nothing else in the tree
    // changes, and nothing at all when no marker differs from the tree. True
    // when the tree changed. filePath and flags are not used (pass null and 0).
    bool PrepareForSave(char const* filePath, unsigned flags);

    // Whether the named part ("/metadata/xmpDM/Tracks") may have changed
    // after the given instance, by the tree's history: true when the instance
    // is unknown or a later event names the part, a part above or below it,
    // or no part at all.
    bool HasPartChanged(char const* instanceID, char const* partName) const;

private:
    TXMPMeta meta;
    TrackList tracks;
    std::string instanceID; // the tree's xmpMM:InstanceID at open or last save
    bool tracksChanged = false;
    bool toolkitStarted = false;
};

} // namespace zephtemporalxmp
