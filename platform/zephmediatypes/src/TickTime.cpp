#include "zephmediatypes/TickTime.h"

#include <cmath>
#include <cstdlib>

namespace zephmediatypes
{

namespace
{

// Products of ticks and frame rates overflow 64 bits; the compiler's 128-bit
// integer keeps them exact.
__extension__ typedef __int128 Int128;

bool ParsePositive(std::string const& text, std::int64_t& value)
{
    if (text.empty() || text.size() > 18)
        return false;
    std::int64_t result = 0;
    for (char c : text)
    {
        if (c < '0' || c > '9')
            return false;
        result = result * 10 + (c - '0');
    }
    value = result;
    return true;
}

TickTime FromDouble(long double ticks)
{
    if (!std::isfinite(double(ticks)) || ticks >= static_cast<long double>(INT64_MAX) ||
        ticks <= static_cast<long double>(INT64_MIN))
        return kTime_Invalid;
    return TickTime(static_cast<std::int64_t>(std::llround(double(ticks))));
}

} // namespace

TickTime TickTime::FromSeconds(double seconds)
{
    return FromDouble(static_cast<long double>(seconds) * kTicksPerSecond);
}

double TickTime::ToSeconds() const
{
    return double(static_cast<long double>(ticks) / kTicksPerSecond);
}

TickTime TickTime::FromFrames(std::int64_t frames, std::int64_t rateNumerator,
                              std::int64_t rateDenominator)
{
    if (rateNumerator <= 0 || rateDenominator <= 0)
        return kTime_Invalid;
    // ticks = frames * kTicksPerSecond * den / num, exact when num divides the product.
    Int128 const product = static_cast<Int128>(frames) * kTicksPerSecond * rateDenominator;
    Int128 quotient = product / rateNumerator;
    Int128 const remainder = product % rateNumerator;
    if (2 * (remainder < 0 ? -remainder : remainder) >= rateNumerator)
        quotient += product < 0 ? -1 : 1;
    if (quotient >= INT64_MAX || quotient <= INT64_MIN)
        return kTime_Invalid;
    return TickTime(static_cast<std::int64_t>(quotient));
}

std::int64_t TickTime::ToFrames(std::int64_t rateNumerator, std::int64_t rateDenominator) const
{
    if (rateNumerator <= 0 || rateDenominator <= 0 || *this == kTime_Invalid)
        return 0;
    Int128 const product = static_cast<Int128>(ticks) * rateNumerator;
    Int128 const divisor = static_cast<Int128>(kTicksPerSecond) * rateDenominator;
    Int128 quotient = product / divisor;
    if (product % divisor != 0 && product < 0)
        --quotient; // floor, also before zero
    return static_cast<std::int64_t>(quotient);
}

std::optional<FrameRate> ParseFrameRate(std::string const& text)
{
    if (text.size() < 2 || text[0] != 'f')
        return std::nullopt;
    auto const s = text.find('s', 1);
    FrameRate rate;
    if (!ParsePositive(text.substr(1, s == std::string::npos ? std::string::npos : s - 1),
                       rate.numerator))
        return std::nullopt;
    if (s != std::string::npos && !ParsePositive(text.substr(s + 1), rate.denominator))
        return std::nullopt;
    if (rate.numerator == 0 || rate.denominator == 0)
        return std::nullopt;
    return rate;
}

std::string FormatFrameRate(FrameRate rate)
{
    std::string text = "f" + std::to_string(rate.numerator);
    if (rate.denominator != 1)
        text += "s" + std::to_string(rate.denominator);
    return text;
}

std::optional<TickTime> TickTimeFromXMPTime(std::string const& frames, std::string const& frameRate)
{
    auto const rate = ParseFrameRate(frameRate);
    if (!rate)
        return std::nullopt;
    std::string digits = frames;
    bool negative = false;
    if (!digits.empty() && digits[0] == '-')
    {
        negative = true;
        digits.erase(0, 1);
    }
    std::int64_t count = 0;
    if (!ParsePositive(digits, count))
        return std::nullopt;
    TickTime const time =
        TickTime::FromFrames(negative ? -count : count, rate->numerator, rate->denominator);
    if (time == kTime_Invalid)
        return std::nullopt;
    return time;
}

std::string XMPFramesFromTickTime(TickTime time, FrameRate rate)
{
    return std::to_string(time.ToFrames(rate.numerator, rate.denominator));
}

} // namespace zephmediatypes
