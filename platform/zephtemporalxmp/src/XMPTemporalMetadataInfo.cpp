#include "zephtemporalxmp/XMPTemporalMetadataInfo.h"

#include "MarkerOrigin.h"

#include <utility>

namespace zephtemporalxmp
{

namespace
{

std::string Text(char const* text)
{
    return text ? std::string(text) : std::string();
}

} // namespace

XMPTemporalMetadataInfo::XMPTemporalMetadataInfo() = default;

XMPTemporalMetadataInfo::XMPTemporalMetadataInfo(
    char const* name, char const* comment, TickTime startTime, TickTime duration, char const* type,
    char const* location, char const* target, char const* cuePointType,
    std::vector<XMPCuePointParam> const& cuePointParams, char const* speaker,
    char const* probability, char const* frameRate, std::shared_ptr<void> userData)
    : startTime(startTime), duration(duration), cuePointParams(cuePointParams), name(Text(name)),
      comment(Text(comment)), type(Text(type)), location(Text(location)), target(Text(target)),
      cuePointType(Text(cuePointType)), speaker(Text(speaker)), probability(Text(probability)),
      frameRate(Text(frameRate)), userData(std::move(userData))
{
}

XMPTemporalMetadataInfo::XMPTemporalMetadataInfo(XMPTemporalMetadataInfo const&) = default;
XMPTemporalMetadataInfo&
XMPTemporalMetadataInfo::operator=(XMPTemporalMetadataInfo const&) = default;
XMPTemporalMetadataInfo::~XMPTemporalMetadataInfo() = default;

bool XMPTemporalMetadataInfo::GetMarkerField(std::string* result, _infoFieldEnum field) const
{
    if (!result)
        return false;
    result->clear();
    switch (field)
    {
    case kInfoFieldStartTime:
        *result = std::to_string(startTime.GetTicks());
        return true;
    case kInfoFieldDuration:
        *result = std::to_string(duration.GetTicks());
        return true;
    default:
        break;
    }
    std::string const* text = detail::InfoAccess::Text(*this, field);
    if (!text)
        return false;
    *result = *text;
    return true;
}

namespace detail
{

std::string const* InfoAccess::Text(XMPTemporalMetadataInfo const& info, int field)
{
    switch (field)
    {
    case kInfoFieldName:
        return &info.name;
    case kInfoFieldComment:
        return &info.comment;
    case kInfoFieldType:
        return &info.type;
    case kInfoFieldLocation:
        return &info.location;
    case kInfoFieldTarget:
        return &info.target;
    case kInfoFieldCuePointType:
        return &info.cuePointType;
    case kInfoFieldFrameRate:
        return &info.frameRate;
    case kInfoFieldSpeaker:
        return &info.speaker;
    case kInfoFieldProbability:
        return &info.probability;
    default:
        return nullptr;
    }
}

std::string* InfoAccess::Text(XMPTemporalMetadataInfo& info, int field)
{
    return const_cast<std::string*>(Text(static_cast<XMPTemporalMetadataInfo const&>(info), field));
}

bool InfoAccess::SameField(XMPTemporalMetadataInfo const& a, XMPTemporalMetadataInfo const& b,
                           int field)
{
    switch (field)
    {
    case kInfoFieldStartTime:
        return a.startTime == b.startTime;
    case kInfoFieldDuration:
        return a.duration == b.duration;
    case kInfoFieldCuePointParams:
        return a.cuePointParams == b.cuePointParams;
    default:
        break;
    }
    std::string const* textA = Text(a, field);
    std::string const* textB = Text(b, field);
    return textA && textB && *textA == *textB;
}

bool InfoAccess::SameContent(XMPTemporalMetadataInfo const& a, XMPTemporalMetadataInfo const& b)
{
    for (int field : kWrittenFields)
    {
        if (!SameField(a, b, field))
            return false;
    }
    return true;
}

char const* FieldName(int field)
{
    switch (field)
    {
    case kInfoFieldName:
        return "name";
    case kInfoFieldComment:
        return "comment";
    case kInfoFieldStartTime:
        return "startTime";
    case kInfoFieldDuration:
        return "duration";
    case kInfoFieldType:
        return "type";
    case kInfoFieldLocation:
        return "location";
    case kInfoFieldTarget:
        return "target";
    case kInfoFieldCuePointType:
        return "cuePointType";
    case kInfoFieldCuePointParams:
        return "cuePointParams";
    case kInfoFieldSpeaker:
        return "speaker";
    case kInfoFieldProbability:
        return "probability";
    default:
        return nullptr;
    }
}

} // namespace detail
} // namespace zephtemporalxmp
