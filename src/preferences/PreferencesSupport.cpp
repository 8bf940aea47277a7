#include "preferences/PreferencesPrivate.h"

#include "binding/PathFilters.h"
#include "module/ModuleResources.h"

#include <boost/range/empty.hpp>

#include <cstdio>
#include <vector>

namespace zephmetadataui
{
namespace preferences
{

UTF16String Text(char const* key)
{
    return zephcore::Localizer::Get().GetString(key);
}

std::string LayoutScript(char const* name)
{
    ResourceManager const* const resources = ModuleResourceManager();
    std::vector<std::uint8_t> bytes;
    if (!resources || !resources->GetBinary("EVE", name, bytes))
        return {};
    bytes.push_back(0);
    return std::string(bytes.begin(), bytes.end());
}

LeafCounts CountLeaves(zephmetadata::IteratorRange<Path> const& leaves,
                       std::set<Path> const& included)
{
    LeafCounts counts;
    for (Path const& leaf : leaves)
    {
        ++counts.all;
        if (included.count(leaf) != 0)
            ++counts.included;
        if (IsShowablePath(leaf))
            ++counts.showable;
    }
    return counts;
}

void SetGroupCheckboxState(UI_Checkbox* box, LeafCounts const& counts)
{
    if (!box)
        return;
    if (counts.included == 0)
        box->SetValue(zephui::kCheckboxOff);
    else if (counts.included == counts.showable)
        box->SetValue(zephui::kCheckboxOn);
    else
        box->SetValueUnknown();
}

void ToggleGroup(zephmetadata::IteratorRange<Path> const& leaves, std::set<Path>& included)
{
    LeafCounts const counts = CountLeaves(leaves, included);
    // Compared with all leaves, hidden ones too: a group with a hidden leaf
    // is never full, so a click on it always fills it.
    if (counts.included > 0 && counts.included >= counts.all)
    {
        for (Path const& leaf : leaves)
            included.erase(leaf);
        return;
    }
    for (Path const& leaf : leaves)
        included.insert(leaf);
    FilterShowablePaths(included);
}

namespace
{
UTF16String const& Suffix()
{
    static UTF16String const suffix = zephcore::AsciiToUTF16(".xmp_view_settings.xml");
    return suffix;
}
} // namespace

bool HasSavedSettingsSuffix(UTF16String const& name)
{
    UTF16String const& suffix = Suffix();
    std::size_t const at = name.rfind(suffix);
    return at != UTF16String::npos && at + suffix.size() == name.size();
}

UTF16String StripSavedSettingsSuffix(UTF16String const& name)
{
    return HasSavedSettingsSuffix(name) ? name.substr(0, name.size() - Suffix().size()) : name;
}

UTF16String CustomTextKey(UTF16String const& schemaName, char const* kind, UTF16String const& text)
{
    UTF16String const path = zephcore::AsciiToUTF16("$$$/custom_xmp_schemas/") + schemaName +
                             zephcore::AsciiToUTF16("/") + zephcore::AsciiToUTF16(kind) +
                             zephcore::AsciiToUTF16("/") + text;
    std::string escaped;
    for (unsigned char const byte : zephcore::UTF16to8(path))
    {
        if (byte < 0x21 || byte > 0x7E || byte == '=' || byte == '"')
        {
            char hex[4];
            std::snprintf(hex, sizeof hex, "%x", unsigned(byte));
            escaped += hex;
        }
        else
            escaped += char(byte);
    }
    return zephcore::AsciiToUTF16(escaped) + zephcore::AsciiToUTF16("=") + text;
}

} // namespace preferences
} // namespace zephmetadataui
