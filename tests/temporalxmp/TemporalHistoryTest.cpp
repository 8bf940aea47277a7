#include "TemporalTestSupport.h"

#include "Corpus.h"

#include "zephmetadata/FileProvider.h"

#include <gtest/gtest.h>

using namespace temporaltest;
using namespace zephtemporalxmp;

namespace
{

// A saved event; changed null leaves stEvt:changed out.
std::string Event(char const* instance, char const* changed = nullptr)
{
    return std::string("<rdf:li rdf:parseType=\"Resource\"><stEvt:action>saved</stEvt:action>"
                       "<stEvt:instanceID>") +
           instance + "</stEvt:instanceID>" +
           (changed ? std::string("<stEvt:changed>") + changed + "</stEvt:changed>" : "") +
           "</rdf:li>";
}

} // namespace

TEST(TemporalHistoryTest, HasPartChangedFollowsTheEventsAfterTheInstance)
{
    struct
    {
        char const* what;
        std::string events;
        char const* current;
        char const* asked;
        bool changed;
    } const cases[] = {
        {"other parts",
         Event("A", "/metadata") + Event("B", "/content") + Event("C", "/content/audio"), "C", "A",
         false},
        {"the current instance", Event("A", "/") + Event("C", "/"), "C", "C", false},
        {"an unknown instance", Event("A", "/content") + Event("C", "/content"), "C", "Q", true},
        {"all metadata", Event("A") + Event("B", "/metadata"), "B", "A", true},
        {"everything", Event("A") + Event("B", "/"), "B", "A", true},
        {"the tracks", Event("A") + Event("B", "/metadata/xmpDM/Tracks"), "B", "A", true},
        {"the tracks, prefixed", Event("A") + Event("B", "/metadata/xmpDM:Tracks"), "B", "A", true},
        {"inside the tracks", Event("A") + Event("B", "/metadata/xmpDM/Tracks/markers"), "B", "A",
         true},
        {"in a list", Event("A") + Event("B", "/content; /metadata/xmpDM/Tracks"), "B", "A", true},
        {"another property", Event("A") + Event("B", "/metadata/dc/title"), "B", "A", false},
        {"no part named", Event("A", "/content") + Event("B"), "B", "A", true},
        {"unrecorded instance since", Event("A", "/content") + Event("B", "/content"), "Z", "A",
         true},
        {"no instance asked", Event("A", "/content"), "A", "", true},
    };
    for (auto const& c : cases)
    {
        SCOPED_TRACE(c.what);
        Opened opened(modeltest::Packet(std::string("<xmpMM:InstanceID>") + c.current +
                                        "</xmpMM:InstanceID><xmpMM:History><rdf:Seq>" + c.events +
                                        "</rdf:Seq></xmpMM:History>"));
        EXPECT_EQ(opened.ops->HasPartChanged(c.asked, kTracksPartName), c.changed);
    }
}

TEST(TemporalCorpusTest, RiffWaveTracksReadAndTakeAMarker)
{
    ZEPH_REQUIRE_CORPUS();
    // Three empty tracks at f48000 and four history events, the last two
    // naming "/metadata" and "/".
    auto file = zephmetadata::ReadMetadataFromFile(
        modeltest::U16(zephtest::CorpusFile("music-metadata-riff_adobe_audition.wav")));
    ASSERT_TRUE(file);
    Opened opened(std::move(file));
    __XMPMeta__* meta = opened.meta.get();
    EXPECT_EQ(Tracks(*opened.ops),
              "Cue/CuePoint Markers/f48000: \nTrack/CD Track Markers/f48000: \n"
              "InOut/Subclip Markers/f48000: \n");
    for (auto const& [instance, changed] : {std::pair{"a2901bc0-08a5-4af1-adb4-a91f73d49894", true},
                                            {"340be5aa-1238-9140-8cc9-962171cbb836", true},
                                            {"08c41d3c-0ea9-9642-9998-01e674c41ba2", false}})
        EXPECT_EQ(opened.ops->HasPartChanged((std::string("xmp.iid:") + instance).c_str(),
                                             kTracksPartName),
                  changed)
            << instance;

    auto const others = OtherProperties(meta);
    std::string const untouched = LaterTracks(meta);
    XMPTrack& cues = opened.TrackAt(0);
    cues.AddMarker(cues.MarkerListIteratorEnd(), Word("cue", Seconds(1), Seconds(0)));
    ASSERT_TRUE(opened.Save());
    EXPECT_EQ(OtherProperties(meta), others);
    EXPECT_EQ(LaterTracks(meta), untouched);
    EXPECT_EQ(Get(meta, modeltest::kDM, "Tracks[1]/xmpDM:markers[1]/xmpDM:startTime"), "48000");
    EXPECT_FALSE(opened.ops->HasPartChanged(Get(meta, modeltest::kMM, "InstanceID").c_str(),
                                            kTracksPartName));
}
