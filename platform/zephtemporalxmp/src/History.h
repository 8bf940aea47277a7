#pragma once
// Instances and the history of changed parts (XMP Media Management).

#include <exempi/xmp.h>

#include <string>

namespace zephtemporalxmp
{
namespace detail
{

// xmpMM:InstanceID; empty when absent.
std::string CurrentInstanceID(XmpPtr meta);

// "xmp.iid:" and a random UUID.
std::string NewInstanceID();

// Sets xmpMM:InstanceID and appends a "saved" event naming the part to
// xmpMM:History (left alone if it is there but no array).
bool RecordSave(XmpPtr meta, std::string const& instanceID, std::string const& part);

// Whether the part may have changed after the instance: see
// XMPDocOpsTemporal::HasPartChanged.
bool PartChangedSince(XmpPtr meta, std::string const& instanceID, std::string const& part);

// Whether a change of one part touches the other: the same part, or one
// inside the other ("/" holds everything, "/metadata" all metadata). A step
// "xmpDM:Tracks" counts as "xmpDM/Tracks".
bool PartsOverlap(std::string const& a, std::string const& b);

} // namespace detail
} // namespace zephtemporalxmp
