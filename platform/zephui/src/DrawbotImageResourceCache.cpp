#include "zephui/DrawbotImageResourceCache.h"

#include "zephui/ResourceManager.h"

#include <algorithm>

namespace zephui
{

namespace
{

std::string TypeForFileType(int fileType)
{
    switch (fileType)
    {
    case kImageFileTypePNG:
        return "PNG";
    default:
        return "PNG";
    }
}

float ScaleOfName(std::string const& name)
{
    auto endsWith = [&name](char const* suffix)
    {
        std::string const s(suffix);
        return name.size() >= s.size() && name.compare(name.size() - s.size(), s.size(), s) == 0;
    };
    if (endsWith("_AT_2X"))
        return 2.0f;
    if (endsWith("_AT_3TO2X"))
        return 1.5f;
    return 1.0f;
}

std::string Upper(std::string text)
{
    std::transform(text.begin(), text.end(), text.begin(),
                   [](unsigned char c) { return char(std::toupper(c)); });
    return text;
}

} // namespace

std::string DrawbotImageResourceCache::ChooseResourceName(ResourceManager const* resources,
                                                          std::string const& type,
                                                          std::string const& name, float scale)
{
    if (!resources || name.empty())
        return std::string();
    std::string const base = Upper(name);
    std::string const twice = base + "_AT_2X";
    std::string const half = base + "_AT_3TO2X";
    std::vector<std::string> order;
    if (scale >= 2.0f)
        order = {twice, half, base};
    else if (scale >= 1.5f)
        order = {half, twice, base};
    else
        order = {base, half, twice};
    for (std::string const& candidate : order)
        if (resources->HasBinary(type, candidate))
            return candidate;
    return std::string();
}

boost::intrusive_ptr<ImageInterface> DrawbotImageResourceCache::GetImage(
    ResourceManager const* resources, SupplierInterface const* supplier, std::string const& name,
    int fileType, zephcore::ImmutableString const& resourceType) const
{
    if (!resources || !supplier)
        return nullptr;
    std::string const type = resourceType.IsNull() ? TypeForFileType(fileType) : resourceType.str();
    std::string const chosen =
        ChooseResourceName(resources, type, name, supplier->GetDisplayScale());
    if (chosen.empty())
        return nullptr;
    Key const key(resources, type, chosen, 0.0f);
    auto it = images.find(key);
    if (it != images.end())
        return it->second;
    std::vector<std::uint8_t> data;
    if (!resources->GetBinary(type, chosen, data))
        return nullptr;
    boost::intrusive_ptr<ImageInterface> image =
        supplier->NewImageFromData(data, ScaleOfName(chosen));
    if (image)
        images[key] = image;
    return image;
}

} // namespace zephui
