#pragma once
// Images from a resource manager, kept once loaded. For a display scale of 2
// or more the "_AT_2X" sibling of a name is taken, from 1.5 the "_AT_3TO2X"
// one, falling back to the other sibling and then to the base image.

#include "zephui/Drawbot.h"
#include "zephui/zephui_export.h"

#include "zephcore/ImmutableString.h"

#include <boost/intrusive_ptr.hpp>

#include <map>
#include <string>
#include <tuple>

namespace zephui
{

class ResourceManager;

class ZEPHUI_EXPORT DrawbotImageResourceCache
{
public:
    DrawbotImageResourceCache() = default;
    DrawbotImageResourceCache(DrawbotImageResourceCache const&) = delete;
    DrawbotImageResourceCache& operator=(DrawbotImageResourceCache const&) = delete;

    // resourceType: a resource type to read instead of the file type's own
    // ("PNG" for kImageFileTypePNG); the null string for that. Null if absent.
    boost::intrusive_ptr<ImageInterface>
    GetImage(ResourceManager const* resources, SupplierInterface const* supplier,
             std::string const& name, int fileType,
             zephcore::ImmutableString const& resourceType) const;
    // The resource name GetImage reads for a scale, or empty if none is there.
    static std::string ChooseResourceName(ResourceManager const* resources, std::string const& type,
                                          std::string const& name, float scale);
    void Clear() { images.clear(); }
    std::size_t Count() const { return images.size(); }

private:
    using Key = std::tuple<ResourceManager const*, std::string, std::string, float>;
    mutable std::map<Key, boost::intrusive_ptr<ImageInterface>> images;
};

} // namespace zephui
