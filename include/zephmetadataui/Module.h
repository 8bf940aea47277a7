#pragma once
// Start and stop of the library, its module singleton and the logos it offers
// to hosts. A host calls Initialize before any other use of the library and
// Terminate after the last; both are counted, so brackets may nest.

#include "zephmetadataui/zephmetadataui_export.h"
#include <zephui/Drawbot.h>
#include <zephui/ModuleInfo.h>

#include <boost/intrusive_ptr.hpp>

namespace zephmetadataui
{

// The first call starts the metadata model, then the module's resources.
ZEPHMETADATAUI_EXPORT void Initialize();
// The call that matches the first Initialize clears the registered control
// creator, drops the resources and the image cache, then stops the model.
ZEPHMETADATAUI_EXPORT void Terminate();

// The library's module singleton. It needs no start-up of its own.
class ZEPHMETADATAUI_EXPORT ModuleInfo : public zephui::ui::ModuleInfo
{
public:
    // Made on first call; the same pointer ever after. UI thread only.
    static ModuleInfo* Get();
    void Initialize() override;

protected:
    ModuleInfo();
    ModuleInfo(ModuleInfo const& other);
    ModuleInfo& operator=(ModuleInfo const& other);
    ~ModuleInfo() override;

private:
    static void Destroy(ModuleInfo* info);
};

namespace utility
{

// The "powered by XMP" badge for dark and light backgrounds, at the scale of
// the supplier. Null outside the Initialize/Terminate bracket.
ZEPHMETADATAUI_EXPORT boost::intrusive_ptr<zephui::ImageInterface>
GetXMPIconDark(zephui::SupplierInterface const* supplier);
ZEPHMETADATAUI_EXPORT boost::intrusive_ptr<zephui::ImageInterface>
GetXMPIconLight(zephui::SupplierInterface const* supplier);

} // namespace utility
} // namespace zephmetadataui
