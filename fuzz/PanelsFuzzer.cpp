// A generic panel of an earlier suite generation, converted into a view
// definition: any file gives a report line, converted or refused.

#include "zephmetadata/CustomDefinitions.h"
#include "zephmetadata/Model.h"
#include "zephmetadata/PanelConversion.h"

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <string>

using namespace zephmetadata;

namespace
{

// Panels and converted views live below a configuration folder of our own.
std::filesystem::path const& Home()
{
    static std::filesystem::path const home = []
    {
        char folder[] = "/tmp/zeph-panels-fuzz-XXXXXX";
        std::filesystem::path const made = mkdtemp(folder);
        ::setenv("XDG_CONFIG_HOME", made.c_str(), 1);
        Initialize();
        return made;
    }();
    return home;
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(std::uint8_t const* data, std::size_t size)
{
    Home();
    std::filesystem::path const panels(
        zephcore::ToStdString(utility::GenericPanelsDirectory(utility::kSuiteVersionR6)));
    std::filesystem::create_directories(panels);
    std::ofstream(panels / "panel.xml", std::ios::binary)
        .write(reinterpret_cast<char const*>(data), static_cast<std::streamsize>(size));
    UTF16String report;
    utility::LoadAndConvertGenericPanels(utility::kSuiteVersionR6, report);
    if (report.empty())
        __builtin_trap(); // every panel gets its line
    // The next input starts from no panels and no converted views.
    std::error_code ignored;
    std::filesystem::remove_all(panels, ignored);
    std::filesystem::remove_all(zephcore::ToStdString(CustomDefinitionsUserDirectory()), ignored);
    return 0;
}
