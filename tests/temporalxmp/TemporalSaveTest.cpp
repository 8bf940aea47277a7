#include "TemporalTestSupport.h"

#include "zephmetadata/Access.h"
#include "zephmetadata/Provider.h"

#include <gtest/gtest.h>

#include <functional>
#include <iterator>

using namespace temporaltest;
using namespace zephtemporalxmp;
using modeltest::kDM;
using modeltest::kMM;

TEST(TemporalSaveTest, AnUnchangedListSavesNothing)
{
    Opened opened(SamplePacket());
    std::string const packet = modeltest::Serialized(opened.meta.get());
    // A copy assigned over a marker is still the same marker.
    auto const hello = opened.TrackAt(0).MarkerListIteratorBegin();
    hello->second = XMPTemporalMetadataInfo(hello->second);
    EXPECT_FALSE(opened.Save());
    EXPECT_EQ(modeltest::Serialized(opened.meta.get()), packet);
}

TEST(TemporalSaveTest, EditsChangeOnlyTheTracksTheInstanceAndTheHistory)
{
    // GIVEN the sample, as a reader sees it
    Opened opened(SamplePacket());
    __XMPMeta__* meta = opened.meta.get();
    auto const others = OtherProperties(meta);
    std::string const laterTracks = LaterTracks(meta);
    std::string const oldHistory =
        Subtree(meta, kMM, "History[1]") + Subtree(meta, kMM, "History[2]");
    std::multiset<std::string> const speechItems = MarkerItems(meta, 1);

    // WHEN a word is replaced and one is added
    XMPTrack& speech = opened.TrackAt(0);
    speech.MarkerListIteratorBegin()->second =
        Word("Hi", Seconds(2), Seconds(0.4), {{"primary", "Hey"}});
    speech.AddMarker(speech.MarkerListIteratorEnd(), Word("new", Seconds(5), Seconds(1)));
    ASSERT_TRUE(opened.Save());

    // THEN everything but the speech track, the instance and the history is as it was
    EXPECT_EQ(OtherProperties(meta), others);
    EXPECT_EQ(LaterTracks(meta), laterTracks);
    std::multiset<std::string> const written = MarkerItems(meta, 1);
    EXPECT_EQ(written.size(), 4u);
    EXPECT_EQ(Kept(speechItems, written), 2u); // "wörld" and "later", to the byte

    // and the new instance is the history's last event, naming the tracks
    std::string const instance = Get(meta, kMM, "InstanceID");
    EXPECT_NE(instance, "xmp.iid:A");
    EXPECT_EQ(instance.rfind("xmp.iid:", 0), 0u);
    EXPECT_EQ(Subtree(meta, kMM, "History[1]") + Subtree(meta, kMM, "History[2]"), oldHistory);
    EXPECT_EQ(zephmetadata::xmp::CountArrayItems(meta, kMM, "History"), 3);
    std::string const event = std::string("History[3]/stEvt:");
    EXPECT_EQ(Get(meta, kMM, event + "action") + " " + Get(meta, kMM, event + "instanceID") + " " +
                  Get(meta, kMM, event + "changed"),
              "saved " + instance + " " + kTracksPartName);
    EXPECT_FALSE(Get(meta, kMM, event + "when").empty());
    EXPECT_FALSE(Get(meta, kMM, event + "softwareAgent").empty());

    // and a new reader finds the words as edited
    opened.Reopen();
    EXPECT_EQ(Words(opened.TrackAt(0)), "Hi 2+0.4; w\xC3\xB6rld 3+0.2; later 4+0.5; new 5+1");
    EXPECT_EQ(opened.TrackAt(0).MarkerListIteratorBegin()->second.cuePointParams,
              std::vector<XMPCuePointParam>{XMPCuePointParam("primary", "Hey")});
}

TEST(TemporalSaveTest, AReplacedMarkerLosesUnmodelledFieldsAnInPlaceChangeKeepsThem)
{
    Opened opened(SamplePacket());
    __XMPMeta__* meta = opened.meta.get();
    XMPTrack& speech = opened.TrackAt(0);
    auto const world = std::next(speech.MarkerListIteratorBegin());
    auto const later = std::next(world);
    world->second = Word("world", Seconds(3), Seconds(0.2));
    later->second.duration = Seconds(1);
    ASSERT_TRUE(opened.Save());

    // Written in list order: the replaced marker second, the changed one third.
    std::string const replaced = "Tracks[1]/xmpDM:markers[2]";
    ASSERT_EQ(Get(meta, kDM, replaced + "/xmpDM:name"), "world");
    EXPECT_EQ(Get(meta, kDM, replaced + "/xmpDM:comment"), "");
    EXPECT_EQ(Get(meta, "http://example.com/my/", replaced + "/my:extra"), "");
    EXPECT_EQ(Get(meta, kDM, replaced + "/xmpDM:startTime"), "75");

    // The changed duration is written in the marker's own rate; the rest stays.
    std::string const changed = "Tracks[1]/xmpDM:markers[3]";
    ASSERT_EQ(Get(meta, kDM, changed + "/xmpDM:name"), "later");
    EXPECT_EQ(Get(meta, kDM, changed + "/xmpDM:startTime"), "200f50");
    EXPECT_EQ(Get(meta, kDM, changed + "/xmpDM:duration"), "50f50");
    EXPECT_EQ(Get(meta, kDM, changed + "/xmpDM:speaker"), "Bo");
}

TEST(TemporalSaveTest, WrittenTimesReadBackToTheSameTick)
{
    struct
    {
        char const* trackRate;
        char const* ownRate;
        TickTime time;
        char const* written;
    } const cases[] = {
        {"f25", nullptr, TickTime::FromFrames(75, 25), "75"},
        {"f30000s1001", "", TickTime::FromFrames(1, 30000, 1001), "1"},
        {"", nullptr, Seconds(4), "4"},
        {"f25", "f30000s1001", TickTime::FromFrames(7, 30000, 1001), "7f30000s1001"},
        {"f25", nullptr, Seconds(0.01), "2540160000f254016000000"},
        {"", nullptr, TickTime(-3), "-3f254016000000"},
        {"fx", nullptr, Seconds(1), "254016000000f254016000000"},
    };
    for (auto const& c : cases)
    {
        SCOPED_TRACE(c.written);
        Opened opened(TracksPacket(Track(Rate(c.trackRate), "")));
        XMPTrack& track = opened.TrackAt(0);
        track.AddMarker(track.MarkerListIteratorEnd(),
                        XMPTemporalMetadataInfo("w", "", c.time, TickTime(0), "Speech", "", "", "",
                                                {}, "", "", c.ownRate, nullptr));
        ASSERT_TRUE(opened.Save());
        EXPECT_EQ(Get(opened.meta.get(), kDM, "Tracks[1]/xmpDM:markers[1]/xmpDM:startTime"),
                  c.written);
        opened.Reopen();
        auto const marker = opened.TrackAt(0).MarkerListIteratorBegin();
        ASSERT_NE(marker, opened.TrackAt(0).MarkerListIteratorEnd());
        EXPECT_EQ(marker->second.startTime, c.time);
    }
}

TEST(TemporalSaveTest, RepeatedSavesKeepTheArrayEqualToTheList)
{
    // Out of order in the packet: the first save puts the array in list order.
    Opened opened(
        TracksPacket(Track(Rate("f25"), Marker(Timed("75", "c")) + Marker(Timed("25", "a")) +
                                            Marker(Timed("50", "b")))));
    XMPTrack& track = opened.TrackAt(0);
    auto const at = [&](double seconds) { return track.MarkerListLowerBound(Seconds(seconds)); };
    std::function<void()> const edits[] = {
        [&] { track.RemoveMarker(at(2)); },
        [&] { track.AddMarker(at(9), Word("d", Seconds(4), Seconds(1))); },
        [&] { track.RemoveMarker(at(1)); },
        [&] { track.AddMarker(at(0), Word("e", Seconds(0.5), Seconds(1))); },
        [&] { at(3)->second = Word("C", Seconds(3), Seconds(0.5)); },
        [&] { track.AddMarker(at(3), Word("c2", Seconds(3), Seconds(0))); },
    };
    for (auto const& edit : edits)
    {
        edit();
        ASSERT_TRUE(opened.Save());
        Opened reader(modeltest::Serialized(opened.meta.get()));
        EXPECT_EQ(Words(reader.TrackAt(0)), Words(track));
        EXPECT_EQ(MarkerItems(opened.meta.get(), 1).size(),
                  std::size_t(std::distance(track.MarkerListIteratorBegin(),
                                            track.MarkerListIteratorEnd())));
    }
    EXPECT_EQ(Words(track), "e 0.5+1; c2 3+0; C 3+0.5; d 4+1");
    EXPECT_EQ(Get(opened.meta.get(), kDM, "Tracks[1]/xmpDM:markers[1]/xmpDM:name"), "e");
}

TEST(TemporalSaveTest, ASaveAfterAnotherWritersSaveWritesItsWholeList)
{
    auto meta = modeltest::Parse(SamplePacket());
    TXMPMeta shared(meta.get());
    XMPDocOpsTemporal first, second;
    first.OpenXMP(&shared, "", 0);
    second.OpenXMP(&shared, "", 0);
    // A replacement keeps the array's length: only the instance tells.
    XMPTrack& mine = *first.TrackListIteratorBegin();
    mine.MarkerListIteratorBegin()->second = Word("Hey", Seconds(2), Seconds(0.4));
    first.TrackListChanged();
    ASSERT_TRUE(first.PrepareForSave(nullptr, 0));

    XMPTrack& theirs = *second.TrackListIteratorBegin();
    theirs.AddMarker(theirs.MarkerListIteratorEnd(), Word("x", Seconds(9), Seconds(1)));
    second.TrackListChanged();
    ASSERT_TRUE(second.PrepareForSave(nullptr, 0));

    // The last writer's list, whole, with nothing of the first mixed in.
    Opened reader(modeltest::Serialized(meta.get()));
    EXPECT_EQ(Words(reader.TrackAt(0)), Words(theirs));
    EXPECT_EQ(zephmetadata::xmp::CountArrayItems(meta.get(), kMM, "History"), 4);
}

TEST(TemporalSaveTest, ACommitThroughTheModelIsRecognisedAsItsOwnSave)
{
    // The transcript view's road: open on the provider's handle, edit, save
    // within an update access, then read the new instance.
    auto const provider = zephmetadata::BufferProviderImpl::Create(SamplePacket());
    XMPDocOpsTemporal ops;
    {
        zephmetadata::MetaDataReadAccess access(provider);
        TXMPMeta shared(*access);
        ASSERT_TRUE(ops.OpenXMP(&shared, "", 0));
    }
    XMPTrack& speech = *ops.TrackListIteratorBegin();
    speech.RemoveMarker(speech.MarkerListIteratorBegin());
    {
        zephmetadata::MetaDataUpdateAccess access(provider);
        ops.TrackListChanged();
        ASSERT_TRUE(ops.PrepareForSave(nullptr, 0));
        access.AddChange(modeltest::P(kDM, "Tracks"));
    }
    zephmetadata::MetaDataReadAccess access(provider);
    std::string const instance = Get(*access, kMM, "InstanceID");
    XMPDocOpsTemporal fresh;
    TXMPMeta shared(*access);
    fresh.OpenXMP(&shared, "", 0);
    EXPECT_EQ(Words(*fresh.TrackListIteratorBegin()), "w\xC3\xB6rld 3+0.2; later 4+0.5");
    // The writer and a new reader alike: the tracks changed after the old
    // instance, nothing else did, and nothing since the new one.
    for (XMPDocOpsTemporal const* reader : {&ops, &fresh})
    {
        EXPECT_TRUE(reader->HasPartChanged("xmp.iid:A", kTracksPartName));
        EXPECT_FALSE(reader->HasPartChanged("xmp.iid:A", "/content"));
        EXPECT_FALSE(reader->HasPartChanged(instance.c_str(), kTracksPartName));
    }
}
