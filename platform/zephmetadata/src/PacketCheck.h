#pragma once
// Parsing a packet read from a file, with the reason when it is damaged.
// exempi's parser refuses some broken packets with an error code only, and
// turns others (two rdf:RDF elements, text where the RDF belongs, the RDF
// namespace misspelt) into an empty tree without any error; a save would
// then write an empty packet over the file's. Both count as damaged here.

#include "zephmetadata/XmpMeta.h"

#include <cstddef>
#include <string>

namespace zephmetadata
{
namespace packetcheck
{

// The packet's tree; null with `damage` saying why, for the user, when the
// packet is damaged.
xmp::MetaPtr ParseChecked(char const* data, std::size_t size, std::string& damage);

} // namespace packetcheck
} // namespace zephmetadata
