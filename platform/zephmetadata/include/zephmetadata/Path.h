#pragma once
// Path names one metadata item; its key is the schema namespace plus the XMP
// property path inside that schema. Value adds the provider the item lives in.

#include "zephmetadata/zephmetadata_export.h"
#include <zephcore/Strings.h>

#include <boost/shared_ptr.hpp>

#include <functional>

namespace zephmetadata
{

using zephcore::UTF16String;
using zephcore::UTF8String;

class MetaDataProvider;

struct ZEPHMETADATA_EXPORT Path
{
    // When set the value is never editable, whatever the provider says.
    bool readOnly = false;
    UTF8String schemaNamespace;
    // XMP path inside the schema ("xmpDM:Tracks[2]/xmpDM:markers"); array
    // subscripts are 1-based.
    UTF8String propertyName;
    // Carried along with the path, never interpreted by the model.
    UTF8String pathExtra1;
    UTF8String pathExtra2;

    Path() = default;
    Path(UTF8String schemaNamespace, UTF8String propertyName, bool readOnly = false)
        : readOnly(readOnly), schemaNamespace(std::move(schemaNamespace)),
          propertyName(std::move(propertyName))
    {
    }
};

// Order and equality look at the namespace and the property name only, byte
// by byte, so paths differing in readOnly or the extras are one key.
inline bool operator<(Path const& a, Path const& b)
{
    int const c = a.schemaNamespace.compare(b.schemaNamespace);
    if (c != 0)
        return c < 0;
    return a.propertyName.compare(b.propertyName) < 0;
}
inline bool operator==(Path const& a, Path const& b)
{
    return a.schemaNamespace == b.schemaNamespace && a.propertyName == b.propertyName;
}
inline bool operator!=(Path const& a, Path const& b)
{
    return !(a == b);
}

// A Path together with the provider that holds its value; passed wherever a
// Path is wanted.
struct ZEPHMETADATA_EXPORT Value : Path
{
    boost::shared_ptr<MetaDataProvider> provider;

    Value() = default;
    Value(Path const& path, boost::shared_ptr<MetaDataProvider> provider)
        : Path(path), provider(std::move(provider))
    {
    }
};

} // namespace zephmetadata

namespace std
{
template <> struct less<zephmetadata::Path>
{
    bool operator()(zephmetadata::Path const& a, zephmetadata::Path const& b) const
    {
        return a < b;
    }
};
} // namespace std
