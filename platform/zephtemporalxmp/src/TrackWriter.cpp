#include "TrackWriter.h"

#include "ExempiSupport.h"
#include "MarkerOrigin.h"
#include "MarkerTime.h"

#include <optional>
#include <utility>
#include <vector>

namespace zephtemporalxmp
{
namespace detail
{

namespace
{

using MarkerListIterator = XMPTrack::MarkerListIterator;

class MarkerWriter
{
public:
    MarkerWriter(XmpPtr meta, std::string const& trackFrameRate)
        : meta(meta), dm(PrefixOf(kDynamicMediaNS, "xmpDM")),
          trackBase(TrackTimeBase(trackFrameRate))
    {
    }

    // Writes what the packet had, into an item already made.
    void Replay(std::string const& item, MarkerOrigin const& origin) const;
    // Writes a marker into an empty structure item: fields equal to base's
    // (what the packet had) as they were, with base's unmodelled fields, and
    // the others from the marker. Returns what now stands in the packet.
    std::shared_ptr<MarkerOrigin> Write(std::string const& item,
                                        XMPTemporalMetadataInfo const& info,
                                        MarkerOrigin const* base) const;

private:
    void WriteNodes(std::string const& item, std::vector<RawNode> const& nodes) const;
    // One field as the packet had it.
    void WriteAsRead(std::string const& item, FieldRecord const& record,
                     MarkerOrigin const& origin) const;
    // One field from the marker; false when it has nothing to write.
    bool WriteField(std::string const& item, XMPTemporalMetadataInfo const& info, int field,
                    MarkerOrigin& written) const;
    void Set(std::string const& path, std::string const& value, std::uint32_t options = 0) const
    {
        SetNode(meta, kDynamicMediaNS, path, value, options);
    }
    std::string FieldPath(std::string const& item, int field) const
    {
        return item + "/" + dm + FieldName(field);
    }

    XmpPtr meta;
    std::string const dm;
    std::optional<zephmediatypes::FrameRate> trackBase;
};

void MarkerWriter::WriteNodes(std::string const& item, std::vector<RawNode> const& nodes) const
{
    // Parents come first, so every composite exists before its children.
    for (RawNode const& node : nodes)
        Set(item + "/" + node.path, node.value, node.options);
}

void MarkerWriter::WriteAsRead(std::string const& item, FieldRecord const& record,
                               MarkerOrigin const& origin) const
{
    if (!record.nodes.empty())
    {
        WriteNodes(item, record.nodes);
        return;
    }
    std::string const path = FieldPath(item, record.field);
    switch (record.field)
    {
    case kInfoFieldStartTime:
        Set(path, origin.startTimeText);
        break;
    case kInfoFieldDuration:
        Set(path, origin.durationText);
        break;
    case kInfoFieldCuePointParams:
    {
        MarkerOrigin unused;
        WriteField(item, origin.asRead, record.field, unused);
        break;
    }
    default:
        Set(path, *InfoAccess::Text(origin.asRead, record.field));
        break;
    }
}

void MarkerWriter::Replay(std::string const& item, MarkerOrigin const& origin) const
{
    for (FieldRecord const& record : origin.fields)
        WriteAsRead(item, record, origin);
}

bool MarkerWriter::WriteField(std::string const& item, XMPTemporalMetadataInfo const& info,
                              int field, MarkerOrigin& written) const
{
    std::string const path = FieldPath(item, field);
    std::string const& ownRate = *InfoAccess::Text(info, kInfoFieldFrameRate);
    switch (field)
    {
    case kInfoFieldStartTime:
        written.startTimeText = FormatMarkerTime(info.startTime, trackBase, ownRate);
        Set(path, written.startTimeText);
        return true;
    case kInfoFieldDuration:
        written.durationText = FormatMarkerTime(info.duration, trackBase, ownRate);
        Set(path, written.durationText);
        return true;
    case kInfoFieldCuePointParams:
    {
        if (info.cuePointParams.empty())
            return false;
        Set(path, "", kSeqOptions);
        std::string key, value;
        for (std::size_t i = 0; i < info.cuePointParams.size(); ++i)
        {
            std::string const param = ItemPath(path, i + 1);
            info.cuePointParams[i].GetKey(&key);
            info.cuePointParams[i].GetValue(&value);
            Set(param, "", XMP_PROP_VALUE_IS_STRUCT);
            Set(param + "/" + dm + "key", key);
            Set(param + "/" + dm + "value", value);
        }
        return true;
    }
    default:
    {
        std::string const& text = *InfoAccess::Text(info, field);
        if (text.empty())
            return false;
        Set(path, text);
        return true;
    }
    }
}

std::shared_ptr<MarkerOrigin> MarkerWriter::Write(std::string const& item,
                                                  XMPTemporalMetadataInfo const& info,
                                                  MarkerOrigin const* base) const
{
    auto written = std::make_shared<MarkerOrigin>();
    written->asRead = info;
    InfoAccess::Origin(written->asRead).reset();
    bool done[kInfoFieldProbability + 1] = {};
    if (base)
    {
        for (FieldRecord const& record : base->fields)
        {
            if (record.field != 0 && !InfoAccess::SameField(info, base->asRead, record.field))
            {
                done[record.field] = true;
                if (WriteField(item, info, record.field, *written))
                    written->fields.push_back(FieldRecord{record.field, {}});
                continue;
            }
            WriteAsRead(item, record, *base);
            written->fields.push_back(record);
            done[record.field] = true;
            if (record.field == kInfoFieldStartTime)
                written->startTimeText = base->startTimeText;
            if (record.field == kInfoFieldDuration)
                written->durationText = base->durationText;
        }
    }
    for (int field : kWrittenFields)
    {
        // A field the packet lacked and the marker did not change stays absent.
        if (done[field] || (base && InfoAccess::SameField(info, base->asRead, field)))
            continue;
        if (WriteField(item, info, field, *written))
            written->fields.push_back(FieldRecord{field, {}});
    }
    return written;
}

// A marker of the list, or an item of the packet that stays.
struct Placed
{
    std::shared_ptr<MarkerOrigin> origin; // null for a marker to write
    MarkerListIterator marker;
    bool listed = true; // false for an unreadable item, which has no marker
};

// One track's save: its array in the tree and what the array held.
struct ArrayEdit
{
    XmpPtr meta;
    TrackState& state;
    std::string const path;
    MarkerWriter const writer;
    std::uint64_t pass;

    bool Removed(MarkerOrigin const& item) const
    {
        return item.readable && item.claimedInSave != pass;
    }

    // A list marker written into an empty structure item; what the packet
    // had for it is kept where it was read in this track.
    std::shared_ptr<MarkerOrigin> WriteMarker(std::size_t index, MarkerListIterator marker) const
    {
        std::string const item = ItemPath(path, index);
        MarkerOrigin const* base = InfoAccess::Origin(marker->second).get();
        return writer.Write(item, marker->second,
                            base && base->trackId == state.id ? base : nullptr);
    }

    std::vector<Placed> InPlace(std::vector<Placed> const& listed, std::size_t count) const;
    std::vector<Placed> Whole(std::vector<Placed> const& listed, std::size_t count) const;
};

// Deletes the removed items and inserts the new ones, each before the next
// kept marker of the list; unreadable items stay where they are.
std::vector<Placed> ArrayEdit::InPlace(std::vector<Placed> const& listed, std::size_t count) const
{
    // From the end, so that the slots before keep their numbers.
    for (std::size_t slot = state.items.size(); slot-- > 0;)
    {
        if (Removed(*state.items[slot]))
        {
            xmp_delete_property(meta, kDynamicMediaNS, ItemPath(path, slot + 1).c_str());
            --count;
        }
    }
    std::vector<std::shared_ptr<MarkerOrigin>> staying;
    for (auto const& item : state.items)
    {
        if (!Removed(*item))
            staying.push_back(item);
    }
    std::vector<Placed> final;
    final.reserve(listed.size() + staying.size());
    std::size_t next = 0;
    for (Placed const& placed : listed)
    {
        if (placed.origin)
        {
            while (staying[next] != placed.origin)
                final.push_back(Placed{staying[next++], {}, false});
            ++next;
        }
        final.push_back(placed);
    }
    while (next < staying.size())
        final.push_back(Placed{staying[next++], {}, false});
    for (std::size_t at = 0; at < final.size(); ++at)
    {
        if (final[at].origin)
            continue;
        InsertStructItem(meta, kDynamicMediaNS, path, at + 1, count++);
        final[at].origin = WriteMarker(at + 1, final[at].marker);
    }
    return final;
}

// Writes the array again, in list order, unreadable items last.
std::vector<Placed> ArrayEdit::Whole(std::vector<Placed> const& listed, std::size_t count) const
{
    for (std::size_t slot = count; slot > 0; --slot)
        xmp_delete_property(meta, kDynamicMediaNS, ItemPath(path, slot).c_str());
    std::vector<Placed> final = listed;
    for (auto const& item : state.items)
    {
        if (!item->readable)
            final.push_back(Placed{item, {}, false});
    }
    for (std::size_t at = 0; at < final.size(); ++at)
    {
        if (final[at].origin)
        {
            MarkerOrigin const& origin = *final[at].origin;
            std::string const item = ItemPath(path, at + 1);
            SetNode(meta, kDynamicMediaNS, item, origin.itemValue, origin.itemOptions);
            writer.Replay(item, origin);
            continue;
        }
        InsertStructItem(meta, kDynamicMediaNS, path, at + 1, at);
        final[at].origin = WriteMarker(at + 1, final[at].marker);
    }
    return final;
}

} // namespace

bool SaveTrack(XMPTrack& track, SaveContext const& context)
{
    TrackState& state = TrackAccess::State(track);
    XMPTrack::MarkerList& markers = TrackAccess::Markers(track);
    if (!state.writable || state.index == 0)
        return false;

    // Which markers are still what the packet holds, and whether they are
    // still in the array's order.
    std::vector<Placed> listed;
    listed.reserve(markers.size());
    bool changed = false;
    bool inOrder = true;
    std::size_t nextSlot = 0;
    for (auto marker = markers.begin(); marker != markers.end(); ++marker)
    {
        std::shared_ptr<MarkerOrigin> const& origin = InfoAccess::Origin(marker->second);
        bool const kept = origin && origin->trackId == state.id && origin->readable &&
                          origin->claimedInSave != context.pass &&
                          InfoAccess::SameContent(marker->second, origin->asRead);
        if (kept)
        {
            origin->claimedInSave = context.pass;
            inOrder = inOrder && origin->slot >= nextSlot;
            nextSlot = origin->slot + 1;
        }
        changed = changed || !kept;
        listed.push_back(Placed{kept ? origin : nullptr, marker, true});
    }
    ArrayEdit const edit{context.meta, state,
                         ItemPath("Tracks", state.index) + "/" +
                             PrefixOf(kDynamicMediaNS, "xmpDM") + "markers",
                         MarkerWriter(context.meta, TrackAccess::FrameRate(track)), context.pass};
    for (auto const& item : state.items)
        changed = changed || edit.Removed(*item);
    if (!changed)
        return false;

    std::size_t const count =
        static_cast<std::size_t>(CountItems(context.meta, kDynamicMediaNS, edit.path));
    if (!xmp_has_property(context.meta, kDynamicMediaNS, edit.path.c_str()))
        SetNode(context.meta, kDynamicMediaNS, edit.path, "", kSeqOptions);
    std::vector<Placed> final = inOrder && !context.treeMovedOn && count == state.items.size()
                                    ? edit.InPlace(listed, count)
                                    : edit.Whole(listed, count);

    // The array now holds final: it is what the next save compares with.
    state.items.clear();
    for (std::size_t at = 0; at < final.size(); ++at)
    {
        Placed& placed = final[at];
        placed.origin->trackId = state.id;
        placed.origin->slot = at;
        if (placed.listed)
            InfoAccess::Origin(placed.marker->second) = placed.origin;
        state.items.push_back(std::move(placed.origin));
    }
    return true;
}

} // namespace detail
} // namespace zephtemporalxmp
