#pragma once
// Widths of words in one font, each different word measured once. Text
// views cut and place the same few thousand words again and again; measuring
// is what costs, adding up cached widths costs next to nothing.
// Private to the library: exported only so that its tests can call it.

#include "timedtext/TimedTextToolkit.h"
#include "zephmetadataui/zephmetadataui_export.h"

#include <cstddef>
#include <deque>
#include <string_view>
#include <unordered_map>

namespace zephmetadataui::timedtext
{

using UTF16StringView = std::basic_string_view<unsigned short>;

class ZEPHMETADATAUI_EXPORT WordWidthCache
{
public:
    explicit WordWidthCache(boost::intrusive_ptr<FontInterface> font);

    FontInterface const* GetFont() const { return font.get(); }
    // The width of a word (any text), from the cache or measured and kept.
    float Width(UTF16StringView text);
    // Measured now and not kept: for pieces that seldom come again.
    float Measure(UTF16StringView text) const;
    std::size_t Size() const { return widths.size(); }

private:
    struct Hash
    {
        std::size_t operator()(UTF16StringView text) const;
    };

    boost::intrusive_ptr<FontInterface> font;
    // The keys of widths point into these; a deque never moves its strings.
    std::deque<UTF16String> words;
    std::unordered_map<UTF16StringView, float, Hash> widths;
};

} // namespace zephmetadataui::timedtext
