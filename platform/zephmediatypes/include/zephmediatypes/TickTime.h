#pragma once
// A media time as a signed 64-bit count of ticks.
//
// The tick rate is 254,016,000,000 ticks a second: every common video frame
// rate (23.976, 24, 25, 29.97, 30, 50, 59.94, 60, 120) and audio sample rate
// (44.1, 48, 88.2, 96, 192 kHz) divides it exactly, so frame and sample
// positions convert without rounding. A signed 64-bit count covers about
// 420 days at this rate.

#include "zephmediatypes/zephmediatypes_export.h"
#include <cstdint>
#include <optional>
#include <string>

namespace zephmediatypes
{

class ZEPHMEDIATYPES_EXPORT TickTime
{
public:
    static constexpr std::int64_t kTicksPerSecond = 254016000000LL;

    constexpr TickTime() = default;
    constexpr explicit TickTime(std::int64_t ticks) : ticks(ticks) {}

    constexpr std::int64_t GetTicks() const { return ticks; }

    // Rounded to the nearest tick; non-finite or out-of-range seconds give kTime_Invalid.
    static TickTime FromSeconds(double seconds);
    double ToSeconds() const;

    // XMP Dynamic Media times are a frame count at a frame rate of
    // rateNumerator / rateDenominator frames a second ("f25" is 25/1,
    // "f30000s1001" is 30000/1001). Rounded to the nearest tick. A zero or
    // negative rate gives kTime_Invalid.
    static TickTime FromFrames(std::int64_t frames, std::int64_t rateNumerator,
                               std::int64_t rateDenominator = 1);
    // The frame that contains this time (rounded down), at the given rate.
    std::int64_t ToFrames(std::int64_t rateNumerator, std::int64_t rateDenominator = 1) const;

    friend constexpr TickTime operator+(TickTime a, TickTime b)
    {
        return TickTime(a.ticks + b.ticks);
    }
    friend constexpr TickTime operator-(TickTime a, TickTime b)
    {
        return TickTime(a.ticks - b.ticks);
    }
    friend constexpr double operator/(TickTime a, TickTime b)
    {
        return double(a.ticks) / double(b.ticks);
    }
    TickTime& operator+=(TickTime other)
    {
        ticks += other.ticks;
        return *this;
    }
    TickTime& operator-=(TickTime other)
    {
        ticks -= other.ticks;
        return *this;
    }

    friend constexpr bool operator==(TickTime a, TickTime b) { return a.ticks == b.ticks; }
    friend constexpr bool operator!=(TickTime a, TickTime b) { return a.ticks != b.ticks; }
    friend constexpr bool operator<(TickTime a, TickTime b) { return a.ticks < b.ticks; }
    friend constexpr bool operator<=(TickTime a, TickTime b) { return a.ticks <= b.ticks; }
    friend constexpr bool operator>(TickTime a, TickTime b) { return a.ticks > b.ticks; }
    friend constexpr bool operator>=(TickTime a, TickTime b) { return a.ticks >= b.ticks; }

private:
    std::int64_t ticks = 0;
};

inline constexpr TickTime kTime_Zero{0};
inline constexpr TickTime kTime_Max{INT64_MAX - 1};
// No time at all; tested by equality.
inline constexpr TickTime kTime_Invalid{INT64_MIN};

// An XMP Dynamic Media frame rate such as "f25", "f30000s1001" or "f254016000000".
struct ZEPHMEDIATYPES_EXPORT FrameRate
{
    std::int64_t numerator = 0;
    std::int64_t denominator = 1;
};

// Parses "f<num>" or "f<num>s<den>"; unset for anything else or a zero part.
ZEPHMEDIATYPES_EXPORT std::optional<FrameRate> ParseFrameRate(std::string const& text);
ZEPHMEDIATYPES_EXPORT std::string FormatFrameRate(FrameRate rate);

// A marker time in XMP Dynamic Media form: the frame count text and the
// frame rate text ("1234", "f25"). Unset when either does not parse.
ZEPHMEDIATYPES_EXPORT std::optional<TickTime> TickTimeFromXMPTime(std::string const& frames,
                                                                  std::string const& frameRate);
// The frame count at the given rate, as text.
ZEPHMEDIATYPES_EXPORT std::string XMPFramesFromTickTime(TickTime time, FrameRate rate);

} // namespace zephmediatypes
