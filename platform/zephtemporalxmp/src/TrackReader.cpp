#include "TrackReader.h"

#include "ExempiSupport.h"
#include "MarkerOrigin.h"
#include "MarkerTime.h"

#include <cstring>
#include <optional>
#include <string_view>
#include <utility>
#include <vector>

namespace zephtemporalxmp
{
namespace detail
{

namespace
{

// A marker item's nodes, collected until its track ends: the times need the
// track's frame rate, which may come after the markers.
struct PendingMarker
{
    std::uint32_t options = 0;
    std::string value;
    std::vector<RawNode> nodes;
};

// "[12]..." -> 12 and the rest; false if path does not start so.
bool SplitIndex(std::string_view path, std::size_t& index, std::string_view& rest)
{
    if (path.empty() || path[0] != '[')
        return false;
    std::size_t at = 1;
    index = 0;
    while (at < path.size() && path[at] >= '0' && path[at] <= '9')
        index = index * 10 + static_cast<std::size_t>(path[at++] - '0');
    if (at == 1 || at >= path.size() || path[at] != ']')
        return false;
    rest = path.substr(at + 1);
    return true;
}

bool StartsWith(std::string_view text, std::string_view start)
{
    return text.size() >= start.size() && text.compare(0, start.size(), start) == 0;
}

// The field a node below a marker item belongs to: the first step of its path.
std::string_view FieldOf(std::string_view path)
{
    std::size_t const end = path.find_first_of("/[", 1);
    return path.substr(0, end);
}

class MarkerBuilder
{
public:
    MarkerBuilder(std::string const& dm, std::optional<zephmediatypes::FrameRate> trackBase)
        : dm(dm), trackBase(trackBase)
    {
    }

    std::shared_ptr<MarkerOrigin> Build(PendingMarker& pending) const;

private:
    struct Group
    {
        int field = 0;
        std::size_t begin = 0;
        std::size_t end = 0;
        bool plain = false;
    };

    int ModelledField(std::string_view name) const;
    bool ReadCuePoints(std::vector<RawNode> const& nodes, Group const& group,
                       std::vector<XMPCuePointParam>& params) const;

    std::string const& dm;
    std::optional<zephmediatypes::FrameRate> trackBase;
};

int MarkerBuilder::ModelledField(std::string_view name) const
{
    if (!StartsWith(name, dm))
        return 0;
    name.remove_prefix(dm.size());
    for (int field : kWrittenFields)
    {
        if (name == FieldName(field))
            return field;
    }
    return 0;
}

// Reads the parameters; true when they are plain: a sequence of structures
// that each hold exactly a key and a value as plain texts, so that writing the
// parameters back gives the same nodes.
bool MarkerBuilder::ReadCuePoints(std::vector<RawNode> const& nodes, Group const& group,
                                  std::vector<XMPCuePointParam>& params) const
{
    RawNode const& array = nodes[group.begin];
    bool plain = (array.options & kNotPlainOptions) == kSeqOptions;
    std::string const key = dm + "key";
    std::string const value = dm + "value";
    std::string pendingKey, pendingValue;
    int fields = 0;
    bool inItem = false;
    auto const flush = [&]
    {
        if (inItem)
            params.emplace_back(pendingKey, pendingValue);
        plain = plain && (!inItem || fields == 3);
        pendingKey.clear();
        pendingValue.clear();
        fields = 0;
    };
    for (std::size_t i = group.begin + 1; i < group.end; ++i)
    {
        RawNode const& node = nodes[i];
        std::size_t index = 0;
        std::string_view rest;
        if (!SplitIndex(std::string_view(node.path).substr(array.path.size()), index, rest))
        {
            plain = false; // a qualifier of the array
            continue;
        }
        if (rest.empty())
        {
            flush();
            inItem = (node.options & XMP_PROP_VALUE_IS_STRUCT) != 0;
            plain = plain && (node.options & kNotPlainOptions) == XMP_PROP_VALUE_IS_STRUCT;
            continue;
        }
        std::string_view const child = rest.substr(1);
        bool const simple = (node.options & kNotPlainOptions) == 0;
        if (inItem && child == key)
        {
            pendingKey = node.value;
            fields |= simple ? 1 : 4;
        }
        else if (inItem && child == value)
        {
            pendingValue = node.value;
            fields |= simple ? 2 : 4;
        }
        else
        {
            plain = false;
        }
    }
    flush();
    return plain;
}

std::shared_ptr<MarkerOrigin> MarkerBuilder::Build(PendingMarker& pending) const
{
    auto origin = std::make_shared<MarkerOrigin>();
    origin->itemOptions = pending.options;
    origin->itemValue = std::move(pending.value);
    std::vector<RawNode>& nodes = pending.nodes;

    if (!(pending.options & XMP_PROP_VALUE_IS_STRUCT))
    {
        origin->readable = false;
        origin->fields.push_back(FieldRecord{0, std::move(nodes)});
        return origin;
    }

    // Nodes of one field follow each other: group them.
    std::vector<Group> groups;
    for (std::size_t i = 0; i < nodes.size(); ++i)
    {
        std::string_view const field = FieldOf(nodes[i].path);
        if (groups.empty() || FieldOf(nodes[groups.back().begin].path) != field)
            groups.push_back(Group{ModelledField(field), i, i, false});
        groups.back().end = i + 1;
    }

    XMPTemporalMetadataInfo& info = origin->asRead;
    bool hasStart = false, hasDuration = false, timesReadable = true;
    for (Group& group : groups)
    {
        RawNode const& first = nodes[group.begin];
        bool const simple = (first.options & kCompositeOptions) == 0;
        group.plain = group.end - group.begin == 1 && (first.options & kNotPlainOptions) == 0;
        switch (group.field)
        {
        case 0:
            break;
        case kInfoFieldCuePointParams:
            group.plain = (first.options & XMP_PROP_VALUE_IS_ARRAY) &&
                          ReadCuePoints(nodes, group, info.cuePointParams);
            break;
        case kInfoFieldStartTime:
            origin->startTimeText = first.value;
            hasStart = true;
            timesReadable = timesReadable && simple;
            break;
        case kInfoFieldDuration:
            origin->durationText = first.value;
            hasDuration = true;
            timesReadable = timesReadable && simple;
            break;
        default:
            // A composite text (a language alternative) reads as its first item.
            *InfoAccess::Text(info, group.field) =
                simple ? first.value
                       : (group.end - group.begin > 1 ? nodes[group.begin + 1].value : "");
            break;
        }
    }

    // Missing times are 0, as the schema defines them.
    std::string startRate, durationRate;
    if (hasStart && timesReadable)
    {
        auto const time = ParseMarkerTime(origin->startTimeText, trackBase, &startRate);
        timesReadable = time.has_value();
        info.startTime = time.value_or(zephmediatypes::kTime_Zero);
    }
    if (hasDuration && timesReadable)
    {
        auto const time = ParseMarkerTime(origin->durationText, trackBase, &durationRate);
        timesReadable = time.has_value();
        info.duration = time.value_or(zephmediatypes::kTime_Zero);
    }
    *InfoAccess::Text(info, kInfoFieldFrameRate) = !startRate.empty() ? startRate : durationRate;
    origin->readable = timesReadable;

    for (Group const& group : groups)
    {
        FieldRecord record{group.field, {}};
        // An unreadable marker is written back node by node.
        if (!group.plain || group.field == 0 || !origin->readable)
        {
            record.nodes.assign(
                std::make_move_iterator(nodes.begin() + static_cast<std::ptrdiff_t>(group.begin)),
                std::make_move_iterator(nodes.begin() + static_cast<std::ptrdiff_t>(group.end)));
        }
        origin->fields.push_back(std::move(record));
    }
    return origin;
}

class Reader
{
public:
    explicit Reader(std::list<XMPTrack>& tracks)
        : tracks(tracks), dm(PrefixOf(kDynamicMediaNS, "xmpDM"))
    {
    }

    void Node(XmpIteratorPtr iterator, std::string_view path, std::string_view value,
              std::uint32_t options);
    void EndTrack();

private:
    void TrackField(XmpIteratorPtr iterator, std::string_view field, std::string_view value,
                    std::uint32_t options);

    std::list<XMPTrack>& tracks;
    std::string const dm;
    std::string root;
    bool rootIsArray = false;
    XMPTrack* track = nullptr;
    std::vector<PendingMarker> pending;
};

void Reader::Node(XmpIteratorPtr iterator, std::string_view path, std::string_view value,
                  std::uint32_t options)
{
    if (root.empty())
    {
        root = path;
        rootIsArray = (options & XMP_PROP_VALUE_IS_ARRAY) != 0;
        if (!rootIsArray)
            xmp_iterator_skip(iterator, XMP_ITER_SKIPSUBTREE);
        return;
    }
    std::size_t index = 0;
    std::string_view rest;
    if (!StartsWith(path, root) || !SplitIndex(path.substr(root.size()), index, rest))
        return;
    if (rest.empty())
    {
        EndTrack();
        if (!(options & XMP_PROP_VALUE_IS_STRUCT))
        {
            xmp_iterator_skip(iterator, XMP_ITER_SKIPSUBTREE);
            return;
        }
        track = &tracks.emplace_back();
        TrackAccess::State(*track).index = index;
        return;
    }
    if (track && rest[0] == '/')
        TrackField(iterator, rest.substr(1), value, options);
}

void Reader::TrackField(XmpIteratorPtr iterator, std::string_view field, std::string_view value,
                        std::uint32_t options)
{
    bool const simple = (options & kCompositeOptions) == 0;
    if (StartsWith(field, dm) && StartsWith(field.substr(dm.size()), "markers"))
    {
        std::string_view rest = field.substr(dm.size() + std::strlen("markers"));
        std::size_t index = 0;
        if (rest.empty())
        {
            if (!(options & XMP_PROP_VALUE_IS_ARRAY))
            {
                TrackAccess::State(*track).writable = false;
                xmp_iterator_skip(iterator, XMP_ITER_SKIPSUBTREE);
            }
        }
        else if (SplitIndex(rest, index, rest))
        {
            if (rest.empty())
                pending.push_back(PendingMarker{options, std::string(value), {}});
            else if (!pending.empty() && rest[0] == '/')
                pending.back().nodes.push_back(
                    RawNode{std::string(rest.substr(1)), std::string(value), options});
        }
        return;
    }
    if (simple && StartsWith(field, dm))
    {
        std::string_view const name = field.substr(dm.size());
        if (name == "trackName")
            TrackAccess::Name(*track) = value;
        else if (name == "trackType")
            TrackAccess::Type(*track) = value;
        else if (name == "frameRate")
            TrackAccess::FrameRate(*track) = value;
    }
    // The track's other fields are never written: not needed.
    if (!simple)
        xmp_iterator_skip(iterator, XMP_ITER_SKIPSUBTREE);
}

void Reader::EndTrack()
{
    if (!track)
        return;
    TrackState& state = TrackAccess::State(*track);
    XMPTrack::MarkerList& markers = TrackAccess::Markers(*track);
    MarkerBuilder const builder(dm, TrackTimeBase(TrackAccess::FrameRate(*track)));
    state.items.reserve(pending.size());
    for (PendingMarker& marker : pending)
    {
        std::shared_ptr<MarkerOrigin> origin = builder.Build(marker);
        origin->trackId = state.id;
        origin->slot = state.items.size();
        if (origin->readable)
        {
            // Markers of a packet usually come in order: the end is the right hint.
            auto const at =
                markers.emplace_hint(markers.end(), origin->asRead.startTime, origin->asRead);
            InfoAccess::Origin(at->second) = origin;
        }
        state.items.push_back(std::move(origin));
    }
    pending.clear();
    track = nullptr;
}

} // namespace

void ReadTracks(XmpPtr meta, std::list<XMPTrack>& tracks)
{
    XmpIteratorPtr iterator =
        xmp_iterator_new(meta, kDynamicMediaNS, "Tracks", XMP_ITER_PROPERTIES);
    if (!iterator)
        return;
    Reader reader(tracks);
    XmpText schema, path, value;
    std::uint32_t options = 0;
    while (xmp_iterator_next(iterator, schema.Get(), path.Get(), value.Get(), &options))
    {
        reader.Node(iterator, std::string_view(path.CStr(), path.Length()),
                    std::string_view(value.CStr(), value.Length()), options);
    }
    reader.EndTrack();
    xmp_iterator_free(iterator);
}

} // namespace detail
} // namespace zephtemporalxmp
