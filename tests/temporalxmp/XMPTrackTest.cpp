#include "TemporalTestSupport.h"

#include <gtest/gtest.h>

#include <iterator>

using namespace temporaltest;
using namespace zephtemporalxmp;

namespace
{

// Markers at 1 s, 2 s, 2 s, 3 s.
void Fill(XMPTrack& track)
{
    for (auto [name, at] : {std::pair{"one", 1.0}, {"two", 2.0}, {"too", 2.0}, {"three", 3.0}})
        track.AddMarker(track.MarkerListIteratorEnd(), Word(name, Seconds(at), Seconds(0.5)));
}

} // namespace

TEST(XMPTrackTest, AddedMarkerLandsJustBeforeItsPositionAlsoAmongEqualTimes)
{
    XMPTrack track;
    Fill(track);
    EXPECT_EQ(Words(track), "one 1+0.5; two 2+0.5; too 2+0.5; three 3+0.5");

    // Inserted before "too", at the time of the words on both sides.
    auto position = std::next(track.MarkerListIteratorBegin(), 2);
    auto const added = track.AddMarker(position, Word("new", Seconds(2.0), Seconds(0.1)));
    EXPECT_EQ(std::prev(position), added);
    EXPECT_EQ(Words(track), "one 1+0.5; two 2+0.5; new 2+0.1; too 2+0.5; three 3+0.5");

    // A position that does not fit the time: the marker goes where it belongs.
    track.AddMarker(track.MarkerListIteratorBegin(), Word("late", Seconds(9.0), Seconds(1.0)));
    EXPECT_EQ(Field(std::prev(track.MarkerListIteratorEnd())->second, kInfoFieldName), "late");
}

TEST(XMPTrackTest, RemovalKeepsOtherPositionsAndLookupFindsTheFirstAtOrAfterATime)
{
    XMPTrack track;
    Fill(track);
    auto const end = track.MarkerListIteratorEnd();
    auto const first = track.MarkerListIteratorBegin();
    auto const last = std::prev(end);
    auto const two = track.MarkerListLowerBound(Seconds(1.5));
    EXPECT_EQ(Field(two->second, kInfoFieldName), "two");
    EXPECT_EQ(track.MarkerListLowerBound(Seconds(3.5)), end);

    auto const next = track.RemoveMarker(two);
    EXPECT_EQ(Field(next->second, kInfoFieldName), "too");
    EXPECT_EQ(Field(first->second, kInfoFieldName), "one");
    EXPECT_EQ(Field(last->second, kInfoFieldName), "three");
    EXPECT_EQ(std::next(first), next);
    EXPECT_EQ(track.MarkerListIteratorEnd(), end);
    EXPECT_EQ(track.MarkerListLowerBound(Seconds(2.0)), next);
}

TEST(XMPTemporalMetadataInfoTest, FieldsReadBackByNumberAndTravelWithCopies)
{
    std::vector<XMPCuePointParam> const cues{{"primary", "Hallo"}, {"secondary", "Hullo"}};
    auto const data = std::make_shared<int>(7);
    XMPTemporalMetadataInfo const info("Hello", "note", Seconds(2), Seconds(0.25), "Speech",
                                       "http://x/", "frame 3", "Event", cues, "Ann", "-1", "f25",
                                       data);
    std::pair<_infoFieldEnum, std::string> const expected[] = {
        {kInfoFieldName, "Hello"},
        {kInfoFieldComment, "note"},
        {kInfoFieldStartTime, std::to_string(Seconds(2).GetTicks())},
        {kInfoFieldDuration, std::to_string(Seconds(0.25).GetTicks())},
        {kInfoFieldType, "Speech"},
        {kInfoFieldLocation, "http://x/"},
        {kInfoFieldTarget, "frame 3"},
        {kInfoFieldCuePointType, "Event"},
        {kInfoFieldFrameRate, "f25"},
        {kInfoFieldSpeaker, "Ann"},
        {kInfoFieldProbability, "-1"},
    };
    XMPTemporalMetadataInfo assigned;
    assigned = info;
    for (XMPTemporalMetadataInfo const& marker : {info, XMPTemporalMetadataInfo(info), assigned})
    {
        for (auto const& [field, text] : expected)
            EXPECT_EQ(Field(marker, field), text) << "field " << field;
        EXPECT_EQ(marker.cuePointParams, cues);
        EXPECT_EQ(marker.GetUserData(), data);
    }
    std::string text = "left over";
    EXPECT_FALSE(info.GetMarkerField(&text, kInfoFieldCuePointParams));
    EXPECT_EQ(text, "");
    std::string key, value;
    cues[1].GetKey(&key);
    cues[1].GetValue(&value);
    EXPECT_EQ(key + "=" + value, "secondary=Hullo");
}
