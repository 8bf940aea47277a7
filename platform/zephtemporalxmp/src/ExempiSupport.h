#pragma once
// The few calls of exempi's C API this library makes, with owned strings.
// Paths are exempi's: a namespace URI and an XMP path.

#include <exempi/xmp.h>

#include <cstdint>
#include <string>

namespace zephtemporalxmp
{
namespace detail
{

constexpr char const* kDynamicMediaNS = "http://ns.adobe.com/xmp/1.0/DynamicMedia/";
constexpr char const* kMediaManagementNS = "http://ns.adobe.com/xap/1.0/mm/";
constexpr char const* kResourceEventNS = "http://ns.adobe.com/xap/1.0/sType/ResourceEvent#";

// Bits of a node's options that make it more than one plain text.
constexpr std::uint32_t kCompositeOptions = XMP_PROP_VALUE_IS_STRUCT | XMP_PROP_VALUE_IS_ARRAY |
                                            XMP_PROP_ARRAY_IS_ORDERED | XMP_PROP_ARRAY_IS_ALT |
                                            XMP_PROP_ARRAY_IS_ALTTEXT;
constexpr std::uint32_t kNotPlainOptions =
    kCompositeOptions | XMP_PROP_VALUE_IS_URI | XMP_PROP_HAS_QUALIFIERS | XMP_PROP_IS_QUALIFIER;
// The options a node can be written with.
constexpr std::uint32_t kWritableOptions = kCompositeOptions | XMP_PROP_VALUE_IS_URI;
constexpr std::uint32_t kSeqOptions = XMP_PROP_VALUE_IS_ARRAY | XMP_PROP_ARRAY_IS_ORDERED;

class XmpText
{
public:
    XmpText() : handle(xmp_string_new()) {}
    ~XmpText() { xmp_string_free(handle); }
    XmpText(XmpText const&) = delete;
    XmpText& operator=(XmpText const&) = delete;

    XmpStringPtr Get() const { return handle; }
    char const* CStr() const { return xmp_string_cstr(handle); }
    std::size_t Length() const { return xmp_string_len(handle); }
    std::string Str() const { return std::string(CStr(), Length()); }

private:
    XmpStringPtr handle;
};

// The prefix the toolkit knows the namespace by, with its colon ("xmpDM:").
std::string PrefixOf(char const* schemaNamespace, char const* suggestedPrefix);

// Items of the array at path; 0 when there is none. A handful of look-ups.
int CountItems(XmpPtr meta, char const* schemaNamespace, std::string const& arrayPath);

// A simple property's text; false when it is absent.
bool GetText(XmpPtr meta, char const* schemaNamespace, std::string const& path, std::string& value,
             std::uint32_t* options = nullptr);

// Writes one node. Composite nodes are written with "" (a null value crashes
// the toolkit); only writable option bits are passed on.
bool SetNode(XmpPtr meta, char const* schemaNamespace, std::string const& path,
             std::string const& value, std::uint32_t options);

// "path[index]", 1-based.
std::string ItemPath(std::string const& arrayPath, std::size_t index);

// Inserts an empty structure item before the 1-based index; count + 1 appends.
bool InsertStructItem(XmpPtr meta, char const* schemaNamespace, std::string const& arrayPath,
                      std::size_t index, std::size_t count);

} // namespace detail
} // namespace zephtemporalxmp
