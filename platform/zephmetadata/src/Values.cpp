#include "zephmetadata/Values.h"

#include "CombinedHandles.h"
#include "PropertyForms.h"
#include "zephmetadata/Access.h"
#include "zephmetadata/ErrorLog.h"
#include "zephmetadata/Provider.h"
#include "zephmetadata/XmpMeta.h"

#include <zephcore/Strings.h>

#include <exempi/xmp.h>

#include <cctype>
#include <charconv>
#include <cmath>
#include <cstring>

namespace zephmetadata
{
namespace
{

using detail::CombinedMembers;

constexpr char const* kDefaultLanguage = "x-default";

std::string Str(UTF8String const& text)
{
    return zephcore::ToStdString(text);
}

UTF8String U8(std::string const& text)
{
    return zephcore::ToUTF8(text);
}

void Report(GetValueResult* result, GetValueResult value)
{
    if (result)
        *result = value;
}

// The namespace and XMP path of a Path, as exempi wants them.
struct Target
{
    std::string ns;
    std::string path;
    // exempi reads some malformed paths leniently ("title/" + "[1]" is an
    // item of title); refuse empty steps so such paths name nothing.
    bool Valid() const
    {
        return !ns.empty() && !path.empty() && path.front() != '/' && path.back() != '/' &&
               path.find("//") == std::string::npos;
    }
};

Target TargetOf(Path const& path)
{
    return Target{Str(path.schemaNamespace), Str(path.propertyName)};
}

std::string Trimmed(std::string const& text)
{
    std::size_t begin = 0, end = text.size();
    while (begin < end && (text[begin] == ' ' || text[begin] == '\t'))
        ++begin;
    while (end > begin && (text[end - 1] == ' ' || text[end - 1] == '\t'))
        --end;
    return text.substr(begin, end - begin);
}

std::string JoinItems(std::vector<std::string> const& items)
{
    std::string text;
    for (std::size_t i = 0; i < items.size(); ++i)
    {
        if (i > 0)
            text += "; ";
        for (char c : items[i])
        {
            if (c == ';' || c == '\\')
                text += '\\';
            text += c;
        }
    }
    return text;
}

std::vector<std::string> SplitItems(std::string const& text)
{
    std::vector<std::string> items;
    std::string item;
    auto flush = [&]
    {
        std::string trimmed = Trimmed(item);
        if (!trimmed.empty())
            items.push_back(std::move(trimmed));
        item.clear();
    };
    for (std::size_t i = 0; i < text.size(); ++i)
    {
        char const c = text[i];
        if (c == '\\' && i + 1 < text.size() && (text[i + 1] == ';' || text[i + 1] == '\\'))
        {
            item += text[++i];
        }
        else if (c == ';')
        {
            flush();
        }
        else
        {
            item += c;
        }
    }
    flush();
    return items;
}

// Reads the items of a list of simple values in one pass; false if an item
// is composite.
bool ReadListItems(__XMPMeta__* meta, Target const& target, std::vector<std::string>& items)
{
    items.clear();
    xmp::Iterator iterator(meta, target.ns.c_str(), target.path.c_str(),
                           xmp::Iterator::kJustChildren | xmp::Iterator::kOmitQualifiers);
    xmp::Node node;
    while (iterator.Next(node))
    {
        if (!xmp::IsSimple(node.options))
            return false;
        items.push_back(node.value);
    }
    return true;
}

bool ReadDefaultLanguage(__XMPMeta__* meta, Target const& target, std::string& text)
{
    xmp::XmpString actual, value;
    if (xmp_get_localized_text(meta, target.ns.c_str(), target.path.c_str(), "", kDefaultLanguage,
                               actual.Get(), value.Get(), nullptr))
    {
        text = value.Str();
        return true;
    }
    return false;
}

// One tree, no combined handles: the text of a value and why there is none.
GetValueResult ReadText(__XMPMeta__* meta, Target const& target, std::string& text)
{
    text.clear();
    if (!target.Valid())
        return kGetValueAbsent;
    xmp::XmpString value;
    std::uint32_t options = 0;
    if (!xmp_get_property(meta, target.ns.c_str(), target.path.c_str(), value.Get(), &options))
        return kGetValueAbsent;
    if (xmp::IsSimple(options))
    {
        text = value.Str();
        return kGetValueRead;
    }
    if (xmp::IsStruct(options))
        return kGetValueNotSimple;
    if (xmp::IsAltText(options))
        return ReadDefaultLanguage(meta, target, text) ? kGetValueRead : kGetValueAbsent;
    std::vector<std::string> items;
    if (!ReadListItems(meta, target, items))
        return kGetValueNotSimple;
    text = JoinItems(items);
    return kGetValueRead;
}

// Reads through a combined handle: one answer if all members agree.
GetValueResult ReadTextAny(__XMPMeta__* meta, Target const& target, std::string& text)
{
    std::vector<__XMPMeta__*> const* members = CombinedMembers(meta);
    if (!members)
        return ReadText(meta, target, text);
    text.clear();
    bool first = true;
    GetValueResult common = kGetValueAbsent;
    for (__XMPMeta__* member : *members)
    {
        std::string memberText;
        GetValueResult const result = ReadText(member, target, memberText);
        if (first)
        {
            common = result;
            text = memberText;
            first = false;
        }
        else if (result != common || memberText != text)
        {
            text.clear();
            return kGetValueMultiple;
        }
    }
    return common;
}

bool ParseNumber(std::string const& raw, double& number)
{
    std::string const text = Trimmed(raw);
    if (text.empty())
        return false;
    char const* begin = text.data();
    char const* end = begin + text.size();
    if (*begin == '+')
        ++begin;
    std::size_t const slash = text.find('/');
    if (slash != std::string::npos)
    {
        // EXIF rationals: "28/10".
        double numerator = 0, denominator = 0;
        char const* middle = text.data() + slash;
        auto const a = std::from_chars(begin, middle, numerator);
        auto const b = std::from_chars(middle + 1, end, denominator);
        if (a.ec != std::errc() || a.ptr != middle || b.ec != std::errc() || b.ptr != end ||
            denominator == 0)
            return false;
        number = numerator / denominator;
        return true;
    }
    auto const parsed = std::from_chars(begin, end, number);
    return parsed.ec == std::errc() && parsed.ptr == end;
}

bool ParseBool(std::string const& raw, bool& value)
{
    std::string text = Trimmed(raw);
    for (char& c : text)
        c = static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
    if (text == "true" || text == "1")
    {
        value = true;
        return true;
    }
    if (text == "false" || text == "0")
    {
        value = false;
        return true;
    }
    return false;
}

void EnsureNamespaceOf(Target const& target)
{
    if (xmp::NamespacePrefix(target.ns.c_str()).empty())
        xmp::EnsureNamespace(target.ns.c_str(), detail::SuggestedPrefix(target.ns).c_str());
}

bool WriteList(__XMPMeta__* meta, Target const& target, std::uint32_t form,
               std::vector<std::string> const& items)
{
    xmp_delete_property(meta, target.ns.c_str(), target.path.c_str());
    if (items.empty())
        return true;
    if (!xmp_set_property(meta, target.ns.c_str(), target.path.c_str(), "",
                          form & xmp::kOptionArrayFormMask))
        return false;
    for (std::size_t i = 0; i < items.size(); ++i)
    {
        std::string const item = xmp::ComposeArrayItemPath(target.path, static_cast<int>(i + 1));
        xmp_set_property(meta, target.ns.c_str(), item.c_str(), items[i].c_str(), 0);
    }
    return true;
}

// One tree: writes text by the rules of the header. True if it changed.
bool WriteText(__XMPMeta__* meta, Target const& target, std::string const& text)
{
    if (!meta || !target.Valid())
        return false;
    std::uint32_t options = 0;
    xmp::XmpString current;
    bool const exists =
        xmp_get_property(meta, target.ns.c_str(), target.path.c_str(), current.Get(), &options);
    if (exists)
    {
        if (xmp::IsSimple(options))
        {
            if (current.Str() == text)
                return false;
            return xmp_set_property(meta, target.ns.c_str(), target.path.c_str(), text.c_str(),
                                    options & xmp::kOptionIsURI);
        }
        if (xmp::IsStruct(options))
            return false;
        if (xmp::IsAltText(options))
        {
            std::string old;
            if (ReadDefaultLanguage(meta, target, old) && old == text)
                return false;
            return xmp_set_localized_text(meta, target.ns.c_str(), target.path.c_str(), "",
                                          kDefaultLanguage, text.c_str(), 0);
        }
        std::vector<std::string> oldItems;
        if (!ReadListItems(meta, target, oldItems))
            return false; // items are structures: no text form
        std::vector<std::string> const items = SplitItems(text);
        if (items == oldItems)
            return false;
        return WriteList(meta, target, options, items);
    }
    EnsureNamespaceOf(target);
    detail::PropertyForm const form = detail::FormOfAbsentProperty(target.ns, target.path);
    if (form.isStructure || form.itemsAreStructures)
        return false;
    if (form.arrayForm & xmp::kOptionArrayAltText)
    {
        return xmp_set_localized_text(meta, target.ns.c_str(), target.path.c_str(), "",
                                      kDefaultLanguage, text.c_str(), 0);
    }
    if (form.arrayForm)
    {
        std::vector<std::string> const items = SplitItems(text);
        return !items.empty() && WriteList(meta, target, form.arrayForm, items);
    }
    return xmp_set_property(meta, target.ns.c_str(), target.path.c_str(), text.c_str(), 0);
}

// Applies a one-tree operation to a handle, or to every member of a combined
// one (and to the combined tree, which mirrors the first member); true if any
// tree changed.
template <class Operation> bool ForEachTree(__XMPMeta__* meta, Operation operation)
{
    if (!meta)
        return false;
    std::vector<__XMPMeta__*> const* members = CombinedMembers(meta);
    if (!members)
        return operation(meta);
    bool changed = false;
    for (__XMPMeta__* member : *members)
        changed |= operation(member);
    operation(meta);
    return changed;
}

// Writes a number unless the stored one already reads back equal.
bool WriteNumber(__XMPMeta__* meta, Target const& target, double number, std::string const& text)
{
    std::string current;
    double stored = 0;
    if (ReadText(meta, target, current) == kGetValueRead && ParseNumber(current, stored) &&
        stored == number)
        return false;
    return WriteText(meta, target, text);
}

bool RemoveValue(__XMPMeta__* meta, Target const& target)
{
    if (!target.Valid() || !xmp_has_property(meta, target.ns.c_str(), target.path.c_str()))
        return false;
    return xmp_delete_property(meta, target.ns.c_str(), target.path.c_str());
}

} // namespace

UTF8String JoinListItems(std::vector<UTF8String> const& items)
{
    std::vector<std::string> plain;
    plain.reserve(items.size());
    for (UTF8String const& item : items)
        plain.push_back(Str(item));
    return U8(JoinItems(plain));
}

std::vector<UTF8String> SplitListText(UTF8String const& text)
{
    std::vector<UTF8String> items;
    for (std::string const& item : SplitItems(Str(text)))
        items.push_back(U8(item));
    return items;
}

UTF8String MinimalFloatText(double number)
{
    char buffer[64];
    auto const written = std::to_chars(buffer, buffer + sizeof buffer, number);
    return UTF8String(reinterpret_cast<unsigned char const*>(buffer),
                      static_cast<std::size_t>(written.ptr - buffer));
}

bool GetValue(__XMPMeta__* meta, Path const& path, UTF8String& value, GetValueResult* result)
{
    value.clear();
    if (!meta)
    {
        Report(result, kGetValueNoMetadata);
        return false;
    }
    // Simple values are most reads (a transcript reads every field of every
    // marker): answer them without copying the path or the value twice.
    if (!CombinedMembers(meta) && !path.schemaNamespace.empty() && !path.propertyName.empty() &&
        path.propertyName.back() != '/')
    {
        static xmp::XmpString scratch;
        std::uint32_t options = 0;
        if (!xmp_get_property(meta, reinterpret_cast<char const*>(path.schemaNamespace.c_str()),
                              reinterpret_cast<char const*>(path.propertyName.c_str()),
                              scratch.Get(), &options))
        {
            Report(result, kGetValueAbsent);
            return false;
        }
        if (xmp::IsSimple(options))
        {
            value.assign(reinterpret_cast<unsigned char const*>(scratch.CStr()), scratch.Length());
            Report(result, kGetValueRead);
            return true;
        }
    }
    std::string text;
    GetValueResult const outcome = ReadTextAny(meta, TargetOf(path), text);
    Report(result, outcome);
    if (outcome != kGetValueRead)
        return false;
    value = U8(text);
    return true;
}

namespace
{

// Reads the value as text and converts it; text that does not convert is a
// bad format, and the value is left as it was.
template <class T, class Parse>
bool GetParsedValue(__XMPMeta__* meta, Path const& path, T& value, GetValueResult* result,
                    Parse parse)
{
    UTF8String text;
    GetValueResult outcome = kGetValueAbsent;
    if (!GetValue(meta, path, text, &outcome))
    {
        Report(result, outcome);
        return false;
    }
    T parsed{};
    if (!parse(Str(text), parsed))
    {
        Report(result, kGetValueBadFormat);
        return false;
    }
    value = parsed;
    Report(result, kGetValueRead);
    return true;
}

} // namespace

bool GetValue(__XMPMeta__* meta, Path const& path, double& value, GetValueResult* result)
{
    return GetParsedValue(meta, path, value, result,
                          [](std::string const& text, double& number)
                          { return ParseNumber(text, number); });
}

bool GetValue(__XMPMeta__* meta, Path const& path, bool& value, GetValueResult* result)
{
    return GetParsedValue(meta, path, value, result,
                          [](std::string const& text, bool& flag)
                          { return ParseBool(text, flag); });
}

bool SetValue(__XMPMeta__* meta, Path const& path, UTF8String const& value)
{
    Target const target = TargetOf(path);
    std::string const text = Str(value);
    // XMP is Unicode text: a value that is not UTF-8 is refused, and said so.
    if (meta && !zephcore::IsValidUTF8(text))
    {
        AddError(kErrorMetadataWrite, U8(target.ns + " " + target.path),
                 U8("The value is not valid UTF-8 text and was not written."));
        return false;
    }
    return ForEachTree(meta, [&](__XMPMeta__* tree) { return WriteText(tree, target, text); });
}

bool SetValue(__XMPMeta__* meta, Path const& path, double value)
{
    if (std::isnan(value))
        return DeleteValue(meta, path);
    if (!std::isfinite(value))
        return false;
    Target const target = TargetOf(path);
    std::string const text = Str(MinimalFloatText(value));
    return ForEachTree(meta,
                       [&](__XMPMeta__* tree) { return WriteNumber(tree, target, value, text); });
}

bool SetValue(__XMPMeta__* meta, Path const& path, long long value)
{
    Target const target = TargetOf(path);
    std::string const text = std::to_string(value);
    return ForEachTree(meta,
                       [&](__XMPMeta__* tree)
                       {
                           std::string current;
                           long long stored = 0;
                           if (ReadText(tree, target, current) == kGetValueRead)
                           {
                               std::string const trimmed = Trimmed(current);
                               auto const parsed = std::from_chars(
                                   trimmed.data(), trimmed.data() + trimmed.size(), stored);
                               if (parsed.ec == std::errc() &&
                                   parsed.ptr == trimmed.data() + trimmed.size() && stored == value)
                                   return false;
                           }
                           return WriteText(tree, target, text);
                       });
}

bool SetValue(__XMPMeta__* meta, Path const& path, bool value)
{
    Target const target = TargetOf(path);
    return ForEachTree(meta,
                       [&](__XMPMeta__* tree)
                       {
                           std::string current;
                           bool stored = false;
                           if (ReadText(tree, target, current) == kGetValueRead &&
                               ParseBool(current, stored) && stored == value)
                               return false;
                           return WriteText(tree, target, value ? "True" : "False");
                       });
}

bool DeleteValue(__XMPMeta__* meta, Path const& path)
{
    Target const target = TargetOf(path);
    return ForEachTree(meta, [&](__XMPMeta__* tree) { return RemoveValue(tree, target); });
}

bool HasValue(__XMPMeta__* meta, Path const& path)
{
    if (!meta)
        return false;
    Target const target = TargetOf(path);
    if (!target.Valid())
        return false;
    if (std::vector<__XMPMeta__*> const* members = CombinedMembers(meta))
    {
        for (__XMPMeta__* member : *members)
            if (xmp_has_property(member, target.ns.c_str(), target.path.c_str()))
                return true;
        return false;
    }
    return xmp_has_property(meta, target.ns.c_str(), target.path.c_str());
}

namespace
{

bool InsertItem(__XMPMeta__* meta, Target const& target, int place)
{
    std::uint32_t options = 0;
    bool const exists = xmp::NodeOptionsOf(meta, target.ns.c_str(), target.path.c_str(), options);
    if (exists && !xmp::IsArray(options))
        return false;
    int const count =
        exists ? xmp::CountArrayItems(meta, target.ns.c_str(), target.path.c_str()) : 0;
    if (place < -1 || place > count)
        return false;
    int const index = place == -1 ? count + 1 : place + 1;
    bool structItem = false;
    std::uint32_t form = options & xmp::kOptionArrayFormMask;
    if (count > 0)
    {
        std::uint32_t itemOptions = 0;
        std::string const first = xmp::ComposeArrayItemPath(target.path, 1);
        xmp::NodeOptionsOf(meta, target.ns.c_str(), first.c_str(), itemOptions);
        structItem = xmp::IsStruct(itemOptions);
    }
    else
    {
        detail::PropertyForm const known = detail::FormOfAbsentProperty(target.ns, target.path);
        structItem = known.itemsAreStructures;
        if (!exists)
        {
            EnsureNamespaceOf(target);
            form = known.arrayForm ? known.arrayForm : xmp::kArraySeq;
        }
    }
    if (!xmp::InsertArrayItem(meta, target.ns.c_str(), target.path.c_str(), index, std::string(),
                              structItem, form))
        return false;
    if (xmp::IsAltText(form))
    {
        // Every item of a language alternative needs a language.
        std::string actual;
        bool const hasDefault = ReadDefaultLanguage(meta, target, actual);
        std::string const lang = xmp::ComposeArrayItemPath(target.path, index) + "/?xml:lang";
        xmp_set_property(meta, target.ns.c_str(), lang.c_str(),
                         hasDefault ? "und" : kDefaultLanguage, 0);
    }
    return true;
}

} // namespace

bool AddArrayItem(__XMPMeta__* meta, Path const& path, int place)
{
    Target const target = TargetOf(path);
    if (!target.Valid())
        return false;
    return ForEachTree(meta, [&](__XMPMeta__* tree) { return InsertItem(tree, target, place); });
}

bool DeleteArrayItem(__XMPMeta__* meta, Path const& path, int place)
{
    if (place < 0)
        return false;
    Target target = TargetOf(path);
    if (!target.Valid())
        return false;
    target.path = xmp::ComposeArrayItemPath(target.path, place + 1);
    return ForEachTree(meta, [&](__XMPMeta__* tree) { return RemoveValue(tree, target); });
}

int CountArrayItems(__XMPMeta__* meta, Path const& path)
{
    if (!meta)
        return 0;
    Target const target = TargetOf(path);
    if (!target.Valid())
        return 0;
    return xmp::CountArrayItems(meta, target.ns.c_str(), target.path.c_str());
}

void SetMinimalFloatValue(Value const& value, double number)
{
    if (!value.provider)
        return;
    MetaDataUpdateAccess access(value.provider);
    if (SetValue(*access, static_cast<Path const&>(value), number))
        access.AddChange(value);
}

} // namespace zephmetadata
