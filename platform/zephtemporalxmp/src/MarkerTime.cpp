#include "MarkerTime.h"

#include <cstdint>

namespace zephtemporalxmp
{
namespace detail
{

using zephmediatypes::FrameRate;
using zephmediatypes::TickTime;

namespace
{

// Frame rates and tick counts multiply past 64 bits.
__extension__ typedef __int128 Int128;

constexpr int kMaxDigits = 18;

bool Multiply(Int128& value, Int128 factor)
{
    return !__builtin_mul_overflow(value, factor, &value);
}

std::string Trimmed(std::string const& text)
{
    auto const first = text.find_first_not_of(" \t\r\n");
    if (first == std::string::npos)
        return std::string();
    auto const last = text.find_last_not_of(" \t\r\n");
    return text.substr(first, last - first + 1);
}

} // namespace

std::optional<FrameRate> TrackTimeBase(std::string const& trackFrameRate)
{
    std::string const text = Trimmed(trackFrameRate);
    if (text.empty())
        return FrameRate{1, 1};
    return zephmediatypes::ParseFrameRate(text);
}

std::optional<TickTime> ParseMarkerTime(std::string const& rawText,
                                        std::optional<FrameRate> const& trackBase,
                                        std::string* ownRate)
{
    if (ownRate)
        ownRate->clear();
    std::string const text = Trimmed(rawText);
    std::size_t const rateStart = text.find('f');
    std::optional<FrameRate> rate = trackBase;
    if (rateStart != std::string::npos)
    {
        rate = zephmediatypes::ParseFrameRate(text.substr(rateStart));
        if (rate && ownRate)
            *ownRate = text.substr(rateStart);
    }
    if (!rate)
        return std::nullopt;

    // [sign] digits [. digits], as one whole number and a count of decimals.
    std::string const count = text.substr(0, rateStart);
    std::size_t at = 0;
    bool const negative = !count.empty() && count[0] == '-';
    if (!count.empty() && (count[0] == '-' || count[0] == '+'))
        ++at;
    std::int64_t mantissa = 0;
    int digits = 0;
    int decimals = 0;
    bool point = false;
    for (; at < count.size(); ++at)
    {
        char const c = count[at];
        if (c == '.' && !point)
        {
            point = true;
            continue;
        }
        if (c < '0' || c > '9' || ++digits > kMaxDigits)
            return std::nullopt;
        mantissa = mantissa * 10 + (c - '0');
        decimals += point ? 1 : 0;
    }
    if (digits == 0)
        return std::nullopt;

    // ticks = mantissa * ticksPerSecond * den / (num * 10^decimals), rounded.
    Int128 product = mantissa;
    Int128 divisor = rate->numerator;
    if (!Multiply(product, TickTime::kTicksPerSecond) || !Multiply(product, rate->denominator))
        return std::nullopt;
    for (int i = 0; i < decimals; ++i)
    {
        if (!Multiply(divisor, 10))
            return std::nullopt;
    }
    Int128 ticks = product / divisor;
    if (2 * (product % divisor) >= divisor)
        ++ticks;
    if (ticks >= INT64_MAX)
        return std::nullopt;
    return TickTime(static_cast<std::int64_t>(negative ? -ticks : ticks));
}

std::string FormatMarkerTime(TickTime time, std::optional<FrameRate> const& trackBase,
                             std::string const& ownRate)
{
    std::optional<FrameRate> rate = trackBase;
    std::string suffix;
    if (!ownRate.empty())
    {
        if (auto const own = zephmediatypes::ParseFrameRate(ownRate))
        {
            rate = own;
            suffix = ownRate;
        }
    }
    if (rate)
    {
        Int128 const scaled = static_cast<Int128>(time.GetTicks()) * rate->numerator;
        Int128 const perFrame = static_cast<Int128>(TickTime::kTicksPerSecond) * rate->denominator;
        if (scaled % perFrame == 0)
            return std::to_string(static_cast<std::int64_t>(scaled / perFrame)) + suffix;
    }
    return std::to_string(time.GetTicks()) +
           zephmediatypes::FormatFrameRate(FrameRate{TickTime::kTicksPerSecond, 1});
}

} // namespace detail
} // namespace zephtemporalxmp
