#include "TemporalTestSupport.h"

#include <gtest/gtest.h>

#include <optional>

using namespace temporaltest;
using namespace zephtemporalxmp;

TEST(TemporalReadTest, ReadsEveryTrackAndEveryMarkerField)
{
    Opened opened(SamplePacket());
    EXPECT_EQ(Tracks(*opened.ops),
              "Speech/Transcript/f25: Hello 2+0.4; w\xC3\xB6rld 3+0.2; later 4+0.5\n"
              "Cue/Cues/f48000: cue 2+0\nChapter/Chapters/: Intro 2+1.5\n");
    auto const hello = opened.TrackAt(0).MarkerListIteratorBegin();
    EXPECT_EQ(hello->second.cuePointParams,
              (std::vector<XMPCuePointParam>{{"primary", "Hallo"}, {"secondary", "Hullo"}}));
    XMPTemporalMetadataInfo const& world = std::next(hello)->second;
    std::pair<_infoFieldEnum, std::string> const fields[] = {
        {kInfoFieldComment, "a note"}, {kInfoFieldLocation, "http://example.com/at"},
        {kInfoFieldTarget, "t1"},      {kInfoFieldCuePointType, "Navigation"},
        {kInfoFieldSpeaker, "Ann"},    {kInfoFieldProbability, "0.85"},
        {kInfoFieldType, ""},          {kInfoFieldFrameRate, ""}};
    for (auto const& [field, text] : fields)
        EXPECT_EQ(Field(world, field), text) << "field " << field;
    EXPECT_EQ(Field(std::next(hello, 2)->second, kInfoFieldFrameRate), "f50");
    EXPECT_EQ(Field(hello->second, kInfoFieldType), "Speech");

    EXPECT_EQ(opened.TrackAt(1).MarkerListIteratorBegin()->second.cuePointParams,
              std::vector<XMPCuePointParam>{XMPCuePointParam("k", "v")});
}

TEST(TemporalReadTest, MarkerTimesReadInTheFrameRateThatApplies)
{
    struct
    {
        char const* trackRate;
        char const* text;
        std::optional<TickTime> expected; // unset: the marker can't be read
    } const cases[] = {
        {"f25", "50", TickTime::FromFrames(50, 25)},
        {"f30000s1001", "30000", TickTime::FromFrames(30000, 30000, 1001)},
        {"f48000", "-96000", Seconds(-2)},
        {"f25", " 25 ", Seconds(1)},
        {"", "3", Seconds(3)},
        {"", "1.5", Seconds(1.5)},
        {"f25", "1001f30000s1001", TickTime::FromFrames(1001, 30000, 1001)},
        {"f25", "7f254016000000", TickTime(7)},
        {"f25", "12a", std::nullopt},
        {"f25", "1e3", std::nullopt},
        {"f25", "", std::nullopt},
        {"f25", "50f0", std::nullopt},
        {"fx", "50", std::nullopt},
        {"f25", "99999999999999999999", std::nullopt},
    };
    for (auto const& c : cases)
    {
        SCOPED_TRACE(std::string("\"") + c.text + "\" at \"" + c.trackRate + '"');
        Opened opened(TracksPacket(Track(Rate(c.trackRate), Marker(Timed(c.text, "w")))));
        XMPTrack& track = opened.TrackAt(0);
        auto const marker = track.MarkerListIteratorBegin();
        EXPECT_EQ(track.GetUnreadableMarkerCount(), c.expected ? 0u : 1u);
        if (!c.expected)
        {
            EXPECT_EQ(marker, track.MarkerListIteratorEnd());
            continue;
        }
        ASSERT_NE(marker, track.MarkerListIteratorEnd());
        EXPECT_EQ(marker->second.startTime, *c.expected);
        EXPECT_EQ(marker->first, *c.expected);
    }
}

TEST(TemporalReadTest, UnreadableMarkersStayOutOfTheListAndInThePacket)
{
    // A missing start is 0, as the schema says; a time that is no number, a
    // duration that is no number and an item that is no structure can't be read.
    Opened opened(TracksPacket(Track(
        "<xmpDM:trackType>Speech</xmpDM:trackType>" + Rate("f25"),
        Marker(Timed("25", "one")) + Marker("<xmpDM:name>nostart</xmpDM:name>") +
            Marker(Timed("abc", "bad")) +
            Marker("<xmpDM:startTime>30</xmpDM:startTime><xmpDM:duration>1x</xmpDM:duration>") +
            "<rdf:li>just text</rdf:li>" + Marker(Timed("50", "two")))));
    XMPTrack& track = opened.TrackAt(0);
    EXPECT_EQ(Words(track), "nostart 0+0; one 1+0; two 2+0");
    EXPECT_EQ(track.GetUnreadableMarkerCount(), 3u);

    std::multiset<std::string> const before = MarkerItems(opened.meta.get(), 1);
    track.RemoveMarker(track.MarkerListLowerBound(Seconds(1)));
    track.AddMarker(track.MarkerListIteratorEnd(), Word("three", Seconds(3), Seconds(1)));
    ASSERT_TRUE(opened.Save());
    std::multiset<std::string> const after = MarkerItems(opened.meta.get(), 1);
    EXPECT_EQ(after.size(), before.size());
    // All but "one" are still there as they were, the unreadable ones included.
    EXPECT_EQ(Kept(before, after), before.size() - 1);

    opened.Reopen();
    EXPECT_EQ(Words(opened.TrackAt(0)), "nostart 0+0; two 2+0; three 3+1");
    EXPECT_EQ(opened.TrackAt(0).GetUnreadableMarkerCount(), 3u);
}

TEST(TemporalReadTest, NoTreeOrNoTrackArrayGivesNoTracks)
{
    XMPDocOpsTemporal ops;
    TXMPMeta none;
    EXPECT_FALSE(ops.OpenXMP(nullptr, "", 0));
    EXPECT_FALSE(ops.OpenXMP(&none, "", 0));
    EXPECT_EQ(ops.TrackListIteratorBegin(), ops.TrackListIteratorEnd());
    ops.TrackListChanged();
    EXPECT_FALSE(ops.PrepareForSave(nullptr, 0));
    EXPECT_TRUE(ops.HasPartChanged("xmp.iid:A", kTracksPartName));

    Opened text(modeltest::Packet("<xmpDM:Tracks>none</xmpDM:Tracks>"));
    EXPECT_EQ(text.ops->TrackListIteratorBegin(), text.ops->TrackListIteratorEnd());
    std::string const packet = modeltest::Serialized(text.meta.get());
    EXPECT_FALSE(text.Save());
    EXPECT_EQ(modeltest::Serialized(text.meta.get()), packet);
}

TEST(TemporalReadTest, OddShapesSurviveAnAddedMarkerOrRefuseIt)
{
    std::string const start = "<xmpDM:startTime>25</xmpDM:startTime>";
    struct
    {
        char const* what;
        std::string tracks;
        bool writable;
    } const cases[] = {
        {"markers in an alternative",
         "<rdf:li rdf:parseType=\"Resource\"><xmpDM:markers><rdf:Alt>" + Marker(Timed("25", "a")) +
             "</rdf:Alt></xmpDM:markers></rdf:li>",
         true},
        {"cue points as text",
         Track("", Marker(start + "<xmpDM:cuePointParams>k=v</xmpDM:cuePointParams>")), true},
        {"a cue point that is no structure",
         Track("", Marker(start + "<xmpDM:cuePointParams><rdf:Seq><rdf:li>k</rdf:li>"
                                  "</rdf:Seq></xmpDM:cuePointParams>")),
         true},
        {"a name with a language",
         Track("", Marker(start + "<xmpDM:name xml:lang=\"de\">Hallo</xmpDM:name>")), true},
        {"a track item that is no structure",
         "<rdf:li>no track</rdf:li>" + Track("", Marker(start)), true},
        {"markers that are no array",
         "<rdf:li rdf:parseType=\"Resource\"><xmpDM:markers>none</xmpDM:markers></rdf:li>", false},
    };
    for (auto const& c : cases)
    {
        SCOPED_TRACE(c.what);
        Opened opened(TracksPacket(c.tracks));
        XMPTrack& track = opened.TrackAt(0);
        int const index =
            zephmetadata::xmp::CountArrayItems(opened.meta.get(), modeltest::kDM, "Tracks");
        std::multiset<std::string> const before = MarkerItems(opened.meta.get(), index);
        std::string const packet = modeltest::Serialized(opened.meta.get());
        track.AddMarker(track.MarkerListIteratorEnd(), Word("added", Seconds(9), Seconds(1)));
        EXPECT_EQ(opened.Save(), c.writable);
        if (!c.writable)
        {
            EXPECT_EQ(modeltest::Serialized(opened.meta.get()), packet);
            continue;
        }
        std::multiset<std::string> const after = MarkerItems(opened.meta.get(), index);
        EXPECT_EQ(after.size(), before.size() + 1);
        EXPECT_EQ(Kept(before, after), before.size());
        opened.Reopen();
        EXPECT_NE(Words(opened.TrackAt(0)).find("added 9+1"), std::string::npos);
    }
}
