// A definition file (schemas, types, views; custom schemas are the same
// format with custom="true") loaded beside the published definitions, and
// its schemas' paths walked.

#include "zephmetadata/ErrorLog.h"
#include "zephmetadata/Model.h"
#include "zephmetadata/PathDefinitions.h"
#include "zephmetadata/ViewDefinitions.h"

#include <zephcore/Strings.h>

#include <cstddef>
#include <cstdint>
#include <fstream>
#include <string>
#include <unistd.h>

using namespace zephmetadata;

extern "C" int LLVMFuzzerTestOneInput(std::uint8_t const* data, std::size_t size)
{
    static bool const started = (Initialize(), true);
    static std::string const file =
        "/tmp/zeph-fuzz-definitions-" + std::to_string(::getpid()) + ".xml";
    (void)started;
    {
        std::ofstream out(file, std::ios::binary | std::ios::trunc);
        out.write(reinterpret_cast<char const*>(data), static_cast<std::streamsize>(size));
    }
    LoadDefinitionFiles({zephcore::UTF8to16(zephcore::ToUTF8(file))});
    for (auto const& schema : CommonSchemaDefinitions())
        DescendantLeafPaths(schema);
    // Back to the published definitions alone for the next input.
    UnloadDefinitions();
    LoadDefinitions();
    ClearErrors();
    return 0;
}
