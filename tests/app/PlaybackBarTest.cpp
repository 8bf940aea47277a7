// The browser's playback time line driven as a user does: play and pause,
// the playhead dragged, in and out points, and playing to the end.

#include "PlaybackBar.h"

#include <QPushButton>
#include <QSlider>
#include <QTest>

#include <gtest/gtest.h>

#include <vector>

namespace
{

using browser::PlaybackBar;
using zephmediatypes::TickTime;

TEST(PlaybackBarTest, PlayingStepsOneFrameAtATimeAndStopsAtTheEnd)
{
    PlaybackBar bar;
    std::vector<TickTime> told;
    bar.SetPlayheadListener([&told](TickTime time) { told.push_back(time); });
    bar.SetMedia(TickTime::FromSeconds(1.0), 25.0);
    QTest::mouseClick(bar.PlayButton(), Qt::LeftButton);
    EXPECT_TRUE(bar.IsPlaying());
    bar.Step();
    EXPECT_EQ(bar.Playhead(), TickTime::FromSeconds(0.04)) << "one frame at 25 a second";
    ASSERT_EQ(told.size(), 1u);
    for (int i = 0; i < 30; ++i)
        bar.Step();
    EXPECT_EQ(bar.Playhead(), bar.Duration()) << "kept inside the media";
    EXPECT_FALSE(bar.IsPlaying()) << "playing stops at the end";

    QTest::mouseClick(bar.PlayButton(), Qt::LeftButton);
    EXPECT_EQ(bar.Playhead(), TickTime()) << "play at the end starts over";
    QTest::mouseClick(bar.PlayButton(), Qt::LeftButton);
    EXPECT_FALSE(bar.IsPlaying());
}

TEST(PlaybackBarTest, TheDraggedPlayheadIsToldAndInAndOutPointsFollowIt)
{
    PlaybackBar bar;
    bar.SetMedia(TickTime::FromSeconds(600.0), 30.0);
    TickTime lastTold, in = zephmediatypes::kTime_Invalid, out = zephmediatypes::kTime_Invalid;
    bar.SetPlayheadListener([&lastTold](TickTime time) { lastTold = time; });
    bar.SetRangeListener([&](TickTime from, TickTime to) { in = from, out = to; });

    bar.Slider()->setFocus();
    QTest::keyClick(bar.Slider(), Qt::Key_End);
    EXPECT_EQ(bar.Playhead(), bar.Duration());
    EXPECT_EQ(lastTold, bar.Duration());
    bar.SetPlayhead(TickTime::FromSeconds(12.5));
    QTest::mouseClick(bar.InButton(), Qt::LeftButton);
    bar.SetPlayhead(TickTime::FromSeconds(20.0));
    QTest::mouseClick(bar.OutButton(), Qt::LeftButton);
    EXPECT_EQ(in, TickTime::FromSeconds(12.5));
    EXPECT_EQ(out, TickTime::FromSeconds(20.0));
    EXPECT_TRUE(bar.TimeText().contains("0:12.5")) << bar.TimeText().toStdString();

    bar.SetPlayhead(TickTime::FromSeconds(25.0));
    QTest::mouseClick(bar.InButton(), Qt::LeftButton);
    EXPECT_EQ(out, zephmediatypes::kTime_Invalid) << "an out point before the in point goes";
    bar.SetMedia(TickTime::FromSeconds(5.0), 25.0);
    EXPECT_EQ(bar.InPoint(), zephmediatypes::kTime_Invalid) << "new media, no range";
}

} // namespace
