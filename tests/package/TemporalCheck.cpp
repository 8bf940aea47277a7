// A host's use of the installed timed-metadata library: a track's markers
// ordered and found by time, with no tree to open. Exits non-zero on a wrong
// answer.

#include <zephtemporalxmp/XMPDocOpsTemporal.h>

#include <cstdio>
#include <string>

int main()
{
    using zephmediatypes::TickTime;
    zephtemporalxmp::XMPDocOpsTemporal ops;
    bool ok =
        !ops.OpenXMP(nullptr, "", 0) && ops.TrackListIteratorBegin() == ops.TrackListIteratorEnd();

    zephtemporalxmp::XMPTrack track;
    for (int second : {3, 1, 2})
    {
        std::string const name = "w" + std::to_string(second);
        track.AddMarker(track.MarkerListIteratorEnd(),
                        zephtemporalxmp::XMPTemporalMetadataInfo(
                            name.c_str(), "", TickTime::FromSeconds(second), TickTime(0), "Speech",
                            "", "", "", {}, "", "", nullptr, nullptr));
    }
    std::string name;
    track.MarkerListLowerBound(TickTime::FromSeconds(1.5))
        ->second.GetMarkerField(&name, zephtemporalxmp::kInfoFieldName);
    ok = ok && name == "w2";
    std::printf("temporal markers: %s\n", ok ? "ok" : "wrong");
    return ok ? 0 : 1;
}
