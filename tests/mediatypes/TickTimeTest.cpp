#include "zephmediatypes/TickTime.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>

using namespace zephmediatypes;

__extension__ typedef __int128 Int128;

TEST(TickTimeTest, ArithmeticAndComparisonActOnTicks)
{
    TickTime const a(1000), b(250);
    EXPECT_EQ((a + b).GetTicks(), 1250);
    EXPECT_EQ((a - b).GetTicks(), 750);
    EXPECT_DOUBLE_EQ(a / b, 4.0);
    EXPECT_LT(b, a);
    EXPECT_GE(a, a);
    EXPECT_NE(kTime_Invalid, kTime_Zero);
    EXPECT_LT(kTime_Invalid, kTime_Zero);
    EXPECT_GT(kTime_Max, TickTime::FromSeconds(3600.0 * 24 * 365));
}

TEST(TickTimeTest, SecondsRoundTripAndRejectNonFinite)
{
    EXPECT_EQ(TickTime::FromSeconds(1.0).GetTicks(), TickTime::kTicksPerSecond);
    EXPECT_DOUBLE_EQ(TickTime::FromSeconds(-2.5).ToSeconds(), -2.5);
    EXPECT_DOUBLE_EQ(TickTime::FromSeconds(7201.125).ToSeconds(), 7201.125);
    EXPECT_EQ(TickTime::FromSeconds(std::numeric_limits<double>::infinity()), kTime_Invalid);
    EXPECT_EQ(TickTime::FromSeconds(std::nan("")), kTime_Invalid);
    EXPECT_EQ(TickTime::FromSeconds(1e12), kTime_Invalid);
}

TEST(TickTimeTest, EveryFrameAtACommonRateConvertsExactlyBothWays)
{
    std::pair<std::int64_t, std::int64_t> const rates[] = {
        {24000, 1001}, {24, 1},    {25, 1},    {30000, 1001}, {60000, 1001},
        {120, 1},      {44100, 1}, {48000, 1}, {96000, 1}};
    for (auto const& [num, den] : rates)
    {
        for (std::int64_t frame : {0LL, 1LL, 2LL, 1001LL, 86399LL, 1000000LL, -3LL})
        {
            SCOPED_TRACE(std::to_string(frame) + " at " + std::to_string(num) + "/" +
                         std::to_string(den));
            TickTime const t = TickTime::FromFrames(frame, num, den);
            ASSERT_NE(t, kTime_Invalid);
            EXPECT_EQ(t.ToFrames(num, den), frame);
            // Exact: the tick count times the rate is a whole number of seconds' ticks.
            EXPECT_EQ(static_cast<Int128>(t.GetTicks()) * num %
                          (static_cast<Int128>(TickTime::kTicksPerSecond) * den),
                      0);
        }
    }
}

TEST(TickTimeTest, FrameOfATimeBetweenFramesRoundsDown)
{
    TickTime const halfFrame =
        TickTime::FromFrames(10, 25) + TickTime(TickTime::kTicksPerSecond / 50);
    EXPECT_EQ(halfFrame.ToFrames(25), 10);
    TickTime const beforeZero = TickTime(-1);
    EXPECT_EQ(beforeZero.ToFrames(25), -1);
    EXPECT_EQ(TickTime::FromFrames(5, 0), kTime_Invalid);
}

TEST(TickTimeTest, DynamicMediaTimeFormsParseAndFormat)
{
    auto const rate = ParseFrameRate("f30000s1001");
    ASSERT_TRUE(rate);
    EXPECT_EQ(rate->numerator, 30000);
    EXPECT_EQ(rate->denominator, 1001);
    EXPECT_EQ(FormatFrameRate(*rate), "f30000s1001");
    EXPECT_EQ(FormatFrameRate(*ParseFrameRate("f25")), "f25");

    for (char const* bad : {"", "f", "25", "f0", "fx", "f25s", "f25s0", "f-25", "g25"})
        EXPECT_FALSE(ParseFrameRate(bad)) << bad;

    auto const time = TickTimeFromXMPTime("50", "f25");
    ASSERT_TRUE(time);
    EXPECT_DOUBLE_EQ(time->ToSeconds(), 2.0);
    EXPECT_EQ(XMPFramesFromTickTime(*time, FrameRate{48000, 1}), "96000");
    EXPECT_FALSE(TickTimeFromXMPTime("12a", "f25"));
    EXPECT_FALSE(TickTimeFromXMPTime("12", "25"));
    EXPECT_EQ(TickTimeFromXMPTime("-4", "f1")->ToSeconds(), -4.0);
}
