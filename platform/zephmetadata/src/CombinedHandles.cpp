#include "CombinedHandles.h"

#include <unordered_map>

namespace zephmetadata
{
namespace detail
{
namespace
{

std::unordered_map<__XMPMeta__*, std::vector<__XMPMeta__*>>& Registry()
{
    static std::unordered_map<__XMPMeta__*, std::vector<__XMPMeta__*>> registry;
    return registry;
}

} // namespace

std::vector<__XMPMeta__*> const* CombinedMembers(__XMPMeta__* meta)
{
    auto& registry = Registry();
    if (registry.empty() || !meta)
        return nullptr;
    auto const found = registry.find(meta);
    return found == registry.end() ? nullptr : &found->second;
}

void RegisterCombined(__XMPMeta__* meta, std::vector<__XMPMeta__*> members)
{
    if (meta)
        Registry()[meta] = std::move(members);
}

void UnregisterCombined(__XMPMeta__* meta)
{
    Registry().erase(meta);
}

} // namespace detail
} // namespace zephmetadata
