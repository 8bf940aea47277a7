#include "TemporalTestSupport.h"

#include "Corpus.h"

#include "zephmetadata/FileProvider.h"

#include <gtest/gtest.h>

using namespace temporaltest;
using namespace zephtemporalxmp;

namespace
{

// A saved event; changed null leaves stEvt:changed out.
std::string Event(char const* instance, char const* changed)
{
    return std::string("<rdf:li rdf:parseType=\"Resource\"><stEvt:action>saved</stEvt:action>"
                       "<stEvt:instanceID>") +
           instance + "</stEvt:instanceID>" +
           (changed ? std::string("<stEvt:changed>") + changed + "</stEvt:changed>" : "") +
           "</rdf:li>";
}

struct HistoryCase
{
    char const* what;
    std::string events;
    char const* current;
    char const* asked;
    bool changed;
};

void PrintTo(HistoryCase const& c, std::ostream* out)
{
    *out << c.what;
}

class HasPartChangedTest : public ::testing::TestWithParam<HistoryCase>
{
};

} // namespace

TEST_P(HasPartChangedTest, FollowsTheEventsAfterTheInstance)
{
    HistoryCase const& c = GetParam();
    Opened opened(modeltest::Packet(std::string("<xmpMM:InstanceID>") + c.current +
                                    "</xmpMM:InstanceID><xmpMM:History><rdf:Seq>" + c.events +
                                    "</rdf:Seq></xmpMM:History>"));
    EXPECT_EQ(opened.ops->HasPartChanged(c.asked, kTracksPartName), c.changed) << c.what;
}

INSTANTIATE_TEST_SUITE_P(
    Histories, HasPartChangedTest,
    ::testing::Values(
        HistoryCase{"other parts",
                    Event("A", "/metadata") + Event("B", "/content") + Event("C", "/content/audio"),
                    "C", "A", false},
        HistoryCase{"the current instance", Event("A", "/") + Event("C", "/"), "C", "C", false},
        HistoryCase{"an unknown instance", Event("A", "/content") + Event("C", "/content"), "C",
                    "Q", true},
        HistoryCase{"all metadata", Event("A", nullptr) + Event("B", "/metadata"), "B", "A", true},
        HistoryCase{"everything", Event("A", nullptr) + Event("B", "/"), "B", "A", true},
        HistoryCase{"the tracks", Event("A", nullptr) + Event("B", "/metadata/xmpDM/Tracks"), "B",
                    "A", true},
        HistoryCase{"the tracks, prefixed",
                    Event("A", nullptr) + Event("B", "/metadata/xmpDM:Tracks"), "B", "A", true},
        HistoryCase{"inside the tracks",
                    Event("A", nullptr) + Event("B", "/metadata/xmpDM/Tracks/markers"), "B", "A",
                    true},
        HistoryCase{"in a list",
                    Event("A", nullptr) + Event("B", "/content; /metadata/xmpDM/Tracks"), "B", "A",
                    true},
        HistoryCase{"another property", Event("A", nullptr) + Event("B", "/metadata/dc/title"), "B",
                    "A", false},
        HistoryCase{"no part named", Event("A", "/content") + Event("B", nullptr), "B", "A", true},
        HistoryCase{"an unrecorded instance since", Event("A", "/content") + Event("B", "/content"),
                    "Z", "A", true},
        HistoryCase{"no instance asked", Event("A", "/content"), "A", "", true}),
    [](auto const& info)
    {
        std::string name = info.param.what;
        for (char& c : name)
            c = std::isalnum(static_cast<unsigned char>(c)) ? c : '_';
        return name;
    });

TEST(TemporalHistoryTest, AnOwnSaveChangesTheTracksPartAfterEveryOlderInstance)
{
    Opened opened(SamplePacket());
    EXPECT_FALSE(opened.ops->HasPartChanged("xmp.iid:A", kTracksPartName));
    EXPECT_TRUE(opened.ops->HasPartChanged("xmp.iid:0", kTracksPartName)); // "/metadata" since

    XMPTrack& speech = opened.TrackAt(0);
    speech.RemoveMarker(speech.MarkerListIteratorBegin());
    ASSERT_TRUE(opened.Save());
    std::string const instance = Get(opened.meta.get(), modeltest::kMM, "InstanceID");

    Opened reader(modeltest::Serialized(opened.meta.get()));
    for (XMPDocOpsTemporal const* ops : {opened.ops.get(), reader.ops.get()})
    {
        EXPECT_TRUE(ops->HasPartChanged("xmp.iid:A", kTracksPartName));
        EXPECT_FALSE(ops->HasPartChanged("xmp.iid:A", "/content"));
        EXPECT_FALSE(ops->HasPartChanged(instance.c_str(), kTracksPartName));
    }
}

TEST(TemporalCorpusTest, RiffWaveTracksReadAndTakeAMarker)
{
    ZEPH_REQUIRE_CORPUS();
    // Three empty tracks at f48000 and four history events, the last two
    // naming "/metadata" and "/".
    auto meta = zephmetadata::ReadMetadataFromFile(
        modeltest::U16(zephtest::CorpusFile("music-metadata-riff_adobe_audition.wav")));
    ASSERT_TRUE(meta);
    XMPDocOpsTemporal ops;
    TXMPMeta shared(meta.get());
    ASSERT_TRUE(ops.OpenXMP(&shared, "", 0));
    std::vector<std::string> tracks;
    for (auto track = ops.TrackListIteratorBegin(); track != ops.TrackListIteratorEnd(); ++track)
    {
        std::string type, rate;
        track->GetTrackType(&type);
        track->GetFrameRate(&rate);
        tracks.push_back(type + " " + rate + " " + Words(*track));
    }
    EXPECT_EQ(tracks, (std::vector<std::string>{"Cue f48000 ", "Track f48000 ", "InOut f48000 "}));
    EXPECT_TRUE(
        ops.HasPartChanged("xmp.iid:a2901bc0-08a5-4af1-adb4-a91f73d49894", kTracksPartName));
    EXPECT_TRUE(
        ops.HasPartChanged("xmp.iid:340be5aa-1238-9140-8cc9-962171cbb836", kTracksPartName));
    EXPECT_FALSE(
        ops.HasPartChanged("xmp.iid:08c41d3c-0ea9-9642-9998-01e674c41ba2", kTracksPartName));

    auto const others = OtherProperties(meta.get());
    std::string const untouched = Subtree(meta.get(), modeltest::kDM, "Tracks[2]") +
                                  Subtree(meta.get(), modeltest::kDM, "Tracks[3]");
    XMPTrack& cues = *ops.TrackListIteratorBegin();
    cues.AddMarker(cues.MarkerListIteratorEnd(), Word("cue", Seconds(1), Seconds(0)));
    ops.TrackListChanged();
    ASSERT_TRUE(ops.PrepareForSave(nullptr, 0));
    EXPECT_EQ(OtherProperties(meta.get()), others);
    EXPECT_EQ(Subtree(meta.get(), modeltest::kDM, "Tracks[2]") +
                  Subtree(meta.get(), modeltest::kDM, "Tracks[3]"),
              untouched);
    EXPECT_EQ(Get(meta.get(), modeltest::kDM, "Tracks[1]/xmpDM:markers[1]/xmpDM:startTime"),
              "48000");
    EXPECT_FALSE(
        ops.HasPartChanged(Get(meta.get(), modeltest::kMM, "InstanceID").c_str(), kTracksPartName));
}
