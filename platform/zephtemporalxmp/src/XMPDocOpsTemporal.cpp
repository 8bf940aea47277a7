#include "zephtemporalxmp/XMPDocOpsTemporal.h"

#include "History.h"
#include "TrackReader.h"
#include "TrackWriter.h"

#include <exempi/xmp.h>

#include <atomic>

namespace zephtemporalxmp
{

namespace
{

std::uint64_t NewSavePass()
{
    static std::atomic<std::uint64_t> lastPass{0};
    return ++lastPass;
}

} // namespace

// The toolkit counts its starts, so every object may start and stop it.
XMPDocOpsTemporal::XMPDocOpsTemporal() : toolkitStarted(xmp_init()) {}

XMPDocOpsTemporal::~XMPDocOpsTemporal()
{
    tracks.clear();
    if (toolkitStarted)
        xmp_terminate();
}

bool XMPDocOpsTemporal::OpenXMP(TXMPMeta* shared, char const* /*filePath*/, unsigned /*flags*/)
{
    tracks.clear();
    instanceID.clear();
    tracksChanged = false;
    meta = shared ? *shared : TXMPMeta();
    if (!meta.GetHandle())
        return false;
    instanceID = detail::CurrentInstanceID(meta.GetHandle());
    detail::ReadTracks(meta.GetHandle(), tracks);
    return true;
}

void XMPDocOpsTemporal::TrackListChanged()
{
    tracksChanged = true;
}

bool XMPDocOpsTemporal::PrepareForSave(char const* /*filePath*/, unsigned /*flags*/)
{
    __XMPMeta__* const handle = meta.GetHandle();
    if (!handle || !tracksChanged)
        return false;
    tracksChanged = false;
    detail::SaveContext const context{handle, detail::CurrentInstanceID(handle) != instanceID,
                                      NewSavePass()};
    bool changed = false;
    for (XMPTrack& track : tracks)
        changed = detail::SaveTrack(track, context) || changed;
    if (!changed)
        return false;
    std::string const newInstance = detail::NewInstanceID();
    detail::RecordSave(handle, newInstance, kTracksPartName);
    instanceID = newInstance;
    return true;
}

bool XMPDocOpsTemporal::HasPartChanged(char const* since, char const* partName) const
{
    if (!meta.GetHandle() || !since || !partName)
        return true;
    return detail::PartChangedSince(meta.GetHandle(), since, partName);
}

} // namespace zephtemporalxmp
