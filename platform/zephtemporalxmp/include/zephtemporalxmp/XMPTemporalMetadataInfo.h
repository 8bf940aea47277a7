#pragma once
// One marker of a track: its start and duration as TickTime, its texts
// (UTF-8) and its cue point parameters.

#include "zephtemporalxmp/XMPCuePointParam.h"
#include "zephtemporalxmp/zephtemporalxmp_export.h"

#include <zephmediatypes/TickTime.h>

#include <memory>
#include <string>
#include <vector>

namespace zephtemporalxmp
{

namespace detail
{
struct MarkerOrigin;
struct InfoAccess;
} // namespace detail

// The fields GetMarkerField gives, numbered as the marker's fields are known
// to its users.
enum _infoFieldEnum
{
    kInfoFieldName = 1,
    kInfoFieldComment = 2,
    kInfoFieldStartTime = 3, // decimal ticks
    kInfoFieldDuration = 4,  // decimal ticks
    kInfoFieldType = 5,
    kInfoFieldLocation = 6,
    kInfoFieldTarget = 7,
    kInfoFieldCuePointType = 8,
    kInfoFieldCuePointParams = 9, // no text form: read cuePointParams
    kInfoFieldFrameRate = 10,
    kInfoFieldSpeaker = 11,
    kInfoFieldProbability = 12,
};

// A marker's contents. A null string argument stands for an empty field, and
// empty fields are not written. `frameRate` ("f25", "f30000s1001") is the
// time base the marker's own times were written in; empty means the track's.
// `userData` travels with copies of the marker and is never written.
//
// A marker read from a packet remembers what it was read from, so that an
// unchanged marker is left alone on save, with any field this class does not
// model. Assigning a newly constructed marker over it drops that memory: the
// marker is then written from its fields alone.
class ZEPHTEMPORALXMP_EXPORT XMPTemporalMetadataInfo
{
public:
    using TickTime = zephmediatypes::TickTime;

    XMPTemporalMetadataInfo();
    XMPTemporalMetadataInfo(char const* name, char const* comment, TickTime startTime,
                            TickTime duration, char const* type, char const* location,
                            char const* target, char const* cuePointType,
                            std::vector<XMPCuePointParam> const& cuePointParams,
                            char const* speaker, char const* probability, char const* frameRate,
                            std::shared_ptr<void> userData);
    XMPTemporalMetadataInfo(XMPTemporalMetadataInfo const&);
    XMPTemporalMetadataInfo& operator=(XMPTemporalMetadataInfo const&);
    ~XMPTemporalMetadataInfo();

    // False, with *result emptied, for a field without a text form.
    bool GetMarkerField(std::string* result, _infoFieldEnum field) const;
    std::shared_ptr<void> const& GetUserData() const { return userData; }

    TickTime startTime = zephmediatypes::kTime_Zero;
    TickTime duration = zephmediatypes::kTime_Zero;
    std::vector<XMPCuePointParam> cuePointParams;

private:
    friend struct detail::InfoAccess;

    std::string name;
    std::string comment;
    std::string type;
    std::string location;
    std::string target;
    std::string cuePointType;
    std::string speaker;
    std::string probability;
    std::string frameRate;
    std::shared_ptr<void> userData;
    std::shared_ptr<detail::MarkerOrigin> origin;
};

} // namespace zephtemporalxmp
