#pragma once
// Helpers shared by the model's tests: packets written in the test, paths,
// and UTF-8 conversion.

#include "zephmetadata/Path.h"
#include "zephmetadata/XmpMeta.h"

#include <string>

namespace modeltest
{

constexpr char const* kDC = "http://purl.org/dc/elements/1.1/";
constexpr char const* kXMP = "http://ns.adobe.com/xap/1.0/";
constexpr char const* kMM = "http://ns.adobe.com/xap/1.0/mm/";
constexpr char const* kDM = "http://ns.adobe.com/xmp/1.0/DynamicMedia/";
constexpr char const* kEXIF = "http://ns.adobe.com/exif/1.0/";
constexpr char const* kPS = "http://ns.adobe.com/photoshop/1.0/";

inline zephmetadata::UTF8String U8(std::string const& text)
{
    return zephcore::ToUTF8(text);
}
inline std::string S(zephmetadata::UTF8String const& text)
{
    return zephcore::ToStdString(text);
}

inline zephmetadata::Path P(char const* ns, std::string const& name)
{
    return zephmetadata::Path(U8(ns), U8(name));
}

// Wraps rdf:Description content into a full packet.
std::string Packet(std::string const& description);

// A tree parsed from a packet; fails the test if it does not parse.
zephmetadata::xmp::MetaPtr Parse(std::string const& packet);

// The packet used by most value tests: one property of every kind.
std::string EveryKindPacket();

// Serialised form of a tree, for comparisons of whole trees.
std::string Serialized(__XMPMeta__* meta);

// A file's bytes, and writing bytes to a file.
std::string ReadFile(std::string const& path);
bool WriteFile(std::string const& path, std::string const& bytes);

// A file of tests/data/metadata.
std::string DataFile(char const* name);

} // namespace modeltest
