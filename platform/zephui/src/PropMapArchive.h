#pragma once
// The "prop.map" archive as a tree of values. The reader is strict: anything
// the form does not allow throws ArchiveError with its line and column, so a
// damaged archive never reaches the node builder half-read.

#include "zephcore/Strings.h"

#include <cstdint>
#include <string>
#include <vector>

namespace zephui::archive
{

struct PropPair;

struct PropValue
{
    enum Kind
    {
        kList,
        kSigned,
        kUnsigned,
        kFloat,
        kString,
        kUString,
        kBool,
        kArray
    };

    Kind kind = kList;
    long line = 0;
    long column = 0;
    std::int64_t integer = 0;    // kSigned, kUnsigned
    double number = 0.0;         // kFloat
    bool flag = false;           // kBool
    std::string text;            // kString, as UTF-8
    zephcore::UTF16String wide;  // kUString
    std::vector<PropPair> pairs; // kList, in the archive's order
    Kind itemKind = kList;       // kArray
    std::vector<PropValue> items;

    // The value of a key of a list; null if the list has none.
    PropValue const* Find(std::string const& key) const;
    bool IsNumber() const { return kind == kSigned || kind == kUnsigned || kind == kFloat; }
    double AsNumber() const { return kind == kFloat ? number : double(integer); }
};

struct PropPair
{
    std::string key;
    PropValue value;
};

// The top table of an archive (the one prop.list under prop.map).
PropValue ReadPropMap(std::vector<std::uint8_t> const& data);

// The name of a value kind as the archive spells its element.
char const* KindName(PropValue::Kind kind);

// Throws ArchiveError without an archive name; the dialog adds it.
[[noreturn]] void Fail(std::string const& reason, long line, long column);
[[noreturn]] inline void Fail(std::string const& reason, PropValue const& at)
{
    Fail(reason, at.line, at.column);
}

} // namespace zephui::archive
