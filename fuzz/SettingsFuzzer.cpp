// Saved display settings: a file read, written again and read back equal.

#include "zephmetadata/Settings.h"

#include <cstddef>
#include <cstdint>
#include <string>

using namespace zephmetadata;

extern "C" int LLVMFuzzerTestOneInput(std::uint8_t const* data, std::size_t size)
{
    std::set<Path> paths;
    if (!ReadIncludedLeafPathsFromXMLString(paths,
                                            std::string(reinterpret_cast<char const*>(data), size)))
        return 0;
    UTF8String written;
    IncludedLeafPathsAsXMLString(paths, written);
    std::set<Path> again;
    if (!ReadIncludedLeafPathsFromXMLString(
            again, std::string(reinterpret_cast<char const*>(written.data()), written.size())) ||
        again != paths)
        __builtin_trap();
    return 0;
}
