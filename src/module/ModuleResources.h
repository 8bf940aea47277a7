#pragma once
// Module-global resources: the resource manager over the library's own
// resources ("PNG", "XML", "EVE" by name) and the image cache in front of it.
// Private to the library: exported only so that its tests can call it.

#include "contracts/Toolkit.h"
#include "zephmetadataui/zephmetadataui_export.h"

#include <cstdint>
#include <string>

namespace zephmetadataui
{

// The module resource manager; null outside the Initialize/Terminate bracket.
ZEPHMETADATAUI_EXPORT ResourceManager const* ModuleResourceManager();
// The image cache, made on first call; it lives until the last Terminate.
ZEPHMETADATAUI_EXPORT DrawbotImageResourceCache* ModuleImageCache();
// A PNG of the library's resources ("SP_Link_Sm_N_D") for the supplier's
// display scale; null if there is none or the module is stopped.
ZEPHMETADATAUI_EXPORT boost::intrusive_ptr<ImageInterface>
LoadModuleImage(SupplierInterface const* supplier, std::string const& name);

// Number of Initialize calls not yet matched by Terminate.
ZEPHMETADATAUI_EXPORT std::uint32_t ModuleStartCount();

} // namespace zephmetadataui
