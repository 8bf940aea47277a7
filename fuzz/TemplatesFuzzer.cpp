// Two packets from one input (split at the first NUL): the second applied to
// the first as a template, by every option.

#include "zephmetadata/Model.h"
#include "zephmetadata/Templates.h"
#include "zephmetadata/XmpMeta.h"

#include <cstddef>
#include <cstdint>
#include <cstring>

using namespace zephmetadata;

extern "C" int LLVMFuzzerTestOneInput(std::uint8_t const* data, std::size_t size)
{
    static bool const started = (Initialize(), true);
    (void)started;
    char const* text = reinterpret_cast<char const*>(data);
    void const* nul = std::memchr(text, 0, size);
    std::size_t const first = nul ? static_cast<char const*>(nul) - text : size;
    xmp::MetaPtr const source =
        xmp::ParseMeta(text + first + (nul ? 1 : 0), size - first - (nul ? 1 : 0));
    if (!source)
        return 0;
    for (TemplateImportOptions option :
         {kTemplateImportClearAndReplace, kTemplateImportKeepAndReplace,
          kTemplateImportKeepAndAppend})
    {
        xmp::MetaPtr destination = xmp::ParseMeta(text, first);
        if (!destination)
            return 0;
        ApplyTemplate(destination.get(), source.get(), option);
        ApplyTemplate(destination.get(), source.get(), option);
    }
    return 0;
}
