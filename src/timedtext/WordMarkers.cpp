#include "timedtext/WordMarkers.h"

#include <cstring>
#include <limits>
#include <string>
#include <vector>

namespace zephmetadataui
{

using zephtemporalxmp::XMPCuePointParam;
using zephtemporalxmp::XMPTemporalMetadataInfo;

XMPTemporalMetadataInfo WordToMarker(WordInfo const& word)
{
    std::vector<XMPCuePointParam> params;
    if (!word.primary.empty())
        params.emplace_back("primary", zephcore::ToStdString(word.primary));
    if (!word.secondary.empty())
        params.emplace_back("secondary", zephcore::ToStdString(word.secondary));
    std::string const probability = std::to_string(word.probability);
    std::string const speaker = zephcore::ToStdString(word.speaker);
    std::string const text = zephcore::ToStdString(word.text);
    return XMPTemporalMetadataInfo(text.c_str(), "", word.startTime, word.duration, "Speech", "",
                                   "", "", params, speaker.c_str(), probability.c_str(), nullptr,
                                   std::shared_ptr<void>());
}

namespace timedtext
{

namespace
{

// Up to the first zero byte, as a C string would end.
zephcore::UTF16String FromUTF8(std::string const& text)
{
    return zephcore::UTF8to16(std::string_view(text.c_str(), std::strlen(text.c_str())));
}

} // namespace

std::int32_t ParseProbability(std::string const& text)
{
    std::size_t at = 0;
    bool negative = false;
    if (at < text.size() && (text[at] == '-' || text[at] == '+'))
        negative = text[at++] == '-';
    if (at == text.size())
        return 0;
    std::int64_t value = 0;
    for (; at < text.size(); ++at)
    {
        if (text[at] < '0' || text[at] > '9')
            return 0;
        value = value * 10 + (text[at] - '0');
        if (value > std::int64_t(std::numeric_limits<std::int32_t>::max()) + 1)
            return 0;
    }
    value = negative ? -value : value;
    if (value > std::numeric_limits<std::int32_t>::max())
        return 0;
    return std::int32_t(value);
}

WordInfo MarkerToWord(XMPTemporalMetadataInfo const& marker)
{
    WordInfo word;
    std::string key;
    std::string value;
    for (XMPCuePointParam const& param : marker.cuePointParams)
    {
        param.GetKey(&key);
        if (key != "primary" && key != "secondary")
            continue;
        param.GetValue(&value);
        (key == "primary" ? word.primary : word.secondary) = FromUTF8(value);
    }
    std::string field;
    marker.GetMarkerField(&field, zephtemporalxmp::kInfoFieldName);
    word.text = zephcore::UTF8to16(field);
    marker.GetMarkerField(&field, zephtemporalxmp::kInfoFieldSpeaker);
    word.speaker = zephcore::UTF8to16(field);
    marker.GetMarkerField(&field, zephtemporalxmp::kInfoFieldProbability);
    word.probability = ParseProbability(field);
    word.startTime = marker.startTime;
    word.duration = marker.duration;
    return word;
}

} // namespace timedtext

} // namespace zephmetadataui
