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

TEST(XMPTrackTest, MarkersKeepTimeOrderThroughAddsRemovalsAndLookups)
{
    XMPTrack track;
    Fill(track);
    auto const first = track.MarkerListIteratorBegin();
    auto const two = track.MarkerListLowerBound(Seconds(1.5));
    EXPECT_EQ(Field(two->second, kInfoFieldName), "two");
    EXPECT_EQ(track.MarkerListLowerBound(Seconds(3.5)), track.MarkerListIteratorEnd());

    // Inserted before "too", at the time of the words on both sides.
    auto const too = std::next(two);
    auto const added = track.AddMarker(too, Word("new", Seconds(2.0), Seconds(0.1)));
    EXPECT_EQ(std::prev(too), added);
    EXPECT_EQ(Words(track), "one 1+0.5; two 2+0.5; new 2+0.1; too 2+0.5; three 3+0.5");

    // A position that does not fit the time: the marker goes where it belongs.
    track.AddMarker(first, Word("late", Seconds(9.0), Seconds(1.0)));
    EXPECT_EQ(Field(std::prev(track.MarkerListIteratorEnd())->second, kInfoFieldName), "late");

    // Removal leaves the other positions valid.
    EXPECT_EQ(track.RemoveMarker(two), added);
    EXPECT_EQ(std::next(first), added);
    EXPECT_EQ(track.MarkerListLowerBound(Seconds(2.0)), added);
    EXPECT_EQ(Words(track), "one 1+0.5; new 2+0.1; too 2+0.5; three 3+0.5; late 9+1");
}
