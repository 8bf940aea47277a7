// An XMP packet through the temporal library as the transcript uses it: the
// tracks read, the first marker of each replaced and its last removed, the
// tracks written back, read again and asked what changed.

#include "zephmetadata/Access.h"
#include "zephmetadata/Model.h"
#include "zephmetadata/Provider.h"

#include "zephtemporalxmp/TXMPMeta.h"
#include "zephtemporalxmp/XMPDocOpsTemporal.h"
#include "zephtemporalxmp/XMPTrack.h"

#include <cstddef>
#include <cstdint>
#include <string>

using namespace zephtemporalxmp;

namespace
{

void Edit(XMPTrack& track)
{
    auto first = track.MarkerListIteratorBegin();
    if (first == track.MarkerListIteratorEnd())
        return;
    XMPTemporalMetadataInfo const replacement("word", "", first->second.startTime,
                                              first->second.duration, "Speech", "", "", "", {},
                                              "Speaker", "-1", nullptr, {});
    first->second = replacement;
    auto last = track.MarkerListIteratorEnd();
    --last;
    if (last != first)
        track.RemoveMarker(last);
    track.MarkerListLowerBound(first->second.startTime);
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(std::uint8_t const* data, std::size_t size)
{
    static bool const started = (zephmetadata::Initialize(), true);
    (void)started;
    auto provider = zephmetadata::BufferProviderImpl::Create(
        std::string(reinterpret_cast<char const*>(data), size));
    zephmetadata::MetaDataUpdateAccess access(provider);
    if (!*access)
        return 0;
    TXMPMeta shared(*access);
    XMPDocOpsTemporal tracks;
    if (!tracks.OpenXMP(&shared, "", 0))
        return 0;
    for (auto track = tracks.TrackListIteratorBegin(); track != tracks.TrackListIteratorEnd();
         ++track)
        Edit(*track);
    tracks.TrackListChanged();
    tracks.PrepareForSave(nullptr, 0);
    tracks.HasPartChanged("xmp.iid:none", "/metadata/xmpDM/Tracks");
    XMPDocOpsTemporal again;
    again.OpenXMP(&shared, "", 0);
    return 0;
}
