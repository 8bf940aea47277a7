// A layout script parsed and checked; a fault must come as LayoutScriptError
// with a place inside the text, and a script that parses reads back whole.

#include <zepheve/LayoutScript.h>

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string_view>

namespace
{

std::size_t CountElements(zepheve::ScriptElement const& element)
{
    std::size_t count = 1;
    for (zepheve::ScriptElement const& child : element.children)
        count += CountElements(child);
    return count;
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(std::uint8_t const* data, std::size_t size)
{
    std::string_view const text(reinterpret_cast<char const*>(data), size);
    try
    {
        zepheve::LayoutScript const script = zepheve::ParseLayoutScript(text);
        if (script.dialog.widget != "zeph_dialog" || CountElements(script.dialog) > size)
            std::abort();
    }
    catch (zepheve::LayoutScriptError const& e)
    {
        // Lines can't outnumber the bytes, nor columns a line's bytes.
        if (e.GetLine() < 1 || e.GetColumn() < 1 || std::size_t(e.GetLine()) > size + 1 ||
            std::size_t(e.GetColumn()) > size + 1)
            std::abort();
    }
    return 0;
}
