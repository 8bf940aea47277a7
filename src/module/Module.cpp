#include "zephmetadataui/Module.h"

#include "binding/ControlFactoryPrivate.h"
#include "contracts/Model.h"
#include "module/ModuleResources.h"
#include "zephmetadataui/ControlFactory.h"

#include <memory>

namespace zephmetadataui
{

namespace
{

// Plain globals: the library runs on the host's UI thread only.
std::uint32_t startCount = 0;
ResourceManager* moduleResourceManager = nullptr;
DrawbotImageResourceCache* moduleImageCache = nullptr;

// An address inside this library, from which the resource manager finds the
// library's file without holding it loaded.
char const kModuleAnchor = 0;

} // namespace

void Initialize()
{
    ++startCount;
    if (startCount != 1)
        return;

    zephmetadata::Initialize();

    // Allocate before touching the slot, so a throw leaves the old contents.
    ResourceManager* created = new OS_ResourceManager(static_cast<void const*>(&kModuleAnchor));
    ResourceManager* previous = moduleResourceManager;
    moduleResourceManager = created;
    delete previous;
}

void Terminate()
{
    std::uint32_t const before = startCount;
    startCount = before - 1;
    if (before != 1)
        return;

    ClearRegisteredControlCreator();

    delete moduleResourceManager;
    moduleResourceManager = nullptr;

    delete moduleImageCache;
    moduleImageCache = nullptr;

    // The model goes last, after every reference of ours to toolkit objects.
    zephmetadata::Terminate();
}

std::uint32_t ModuleStartCount()
{
    return startCount;
}

ResourceManager const* ModuleResourceManager()
{
    return moduleResourceManager;
}

DrawbotImageResourceCache* ModuleImageCache()
{
    if (!moduleImageCache)
        moduleImageCache = new DrawbotImageResourceCache();
    return moduleImageCache;
}

boost::intrusive_ptr<ImageInterface> LoadModuleImage(SupplierInterface const* supplier,
                                                     std::string const& name)
{
    return ModuleImageCache()->GetImage(ModuleResourceManager(), supplier, name, kImageFileTypePNG,
                                        zephcore::ImmutableString::sNullString);
}

ModuleInfo::ModuleInfo() = default;
ModuleInfo::ModuleInfo(ModuleInfo const& other) : zephui::ui::ModuleInfo(other) {}
ModuleInfo& ModuleInfo::operator=(ModuleInfo const& other)
{
    zephui::ui::ModuleInfo::operator=(other);
    return *this;
}
ModuleInfo::~ModuleInfo() = default;

void ModuleInfo::Initialize() {}

void ModuleInfo::Destroy(ModuleInfo* info)
{
    delete info;
}

ModuleInfo* ModuleInfo::Get()
{
    // Destroyed when the library is unloaded.
    static std::unique_ptr<ModuleInfo, void (*)(ModuleInfo*)> instance(nullptr,
                                                                       &ModuleInfo::Destroy);
    if (!instance)
        instance.reset(new ModuleInfo());
    return instance.get();
}

namespace utility
{

boost::intrusive_ptr<ImageInterface> GetXMPIconDark(SupplierInterface const* supplier)
{
    return LoadModuleImage(supplier, "SP_PoweredByXMP_105x15_N_D");
}

boost::intrusive_ptr<ImageInterface> GetXMPIconLight(SupplierInterface const* supplier)
{
    return LoadModuleImage(supplier, "SP_PoweredByXMP_105x15_N");
}

} // namespace utility
} // namespace zephmetadataui
