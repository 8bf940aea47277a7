#pragma once
// Handles that stand for several trees at once (MultiObjectProvider). The
// value functions look a handle up here and then read or write every member.

#include "zephmetadata/Types.h"

#include <vector>

namespace zephmetadata
{
namespace detail
{

// The member trees behind a combined handle; null for an ordinary handle.
std::vector<__XMPMeta__*> const* CombinedMembers(__XMPMeta__* meta);
void RegisterCombined(__XMPMeta__* meta, std::vector<__XMPMeta__*> members);
void UnregisterCombined(__XMPMeta__* meta);

} // namespace detail
} // namespace zephmetadata
