// A translation file's text loaded, and its keys looked up.

#include <zephcore/Localizer.h>

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

extern "C" int LLVMFuzzerTestOneInput(std::uint8_t const* data, std::size_t size)
{
    std::string const text(reinterpret_cast<char const*>(data), size);
    zephcore::Localizer& localizer = zephcore::Localizer::Get();
    std::vector<std::string> problems;
    localizer.LoadTranslations(text, &problems);
    std::size_t const key = text.find("$$$/");
    if (key != std::string::npos)
        localizer.GetString(zephcore::ToUTF8(text.substr(key, text.find('\n', key) - key)));
    localizer.Clear();
    return 0;
}
