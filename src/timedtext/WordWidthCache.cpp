#include "timedtext/WordWidthCache.h"

namespace zephmetadataui::timedtext
{

namespace
{

// A text with more different words than this starts the cache afresh rather
// than grow without end.
constexpr std::size_t kMaximumWords = 200000;

} // namespace

std::size_t WordWidthCache::Hash::operator()(UTF16StringView text) const
{
    // FNV-1a over the code units.
    std::size_t hash = 14695981039346656037ull;
    for (unsigned short unit : text)
    {
        hash ^= unit;
        hash *= 1099511628211ull;
    }
    return hash;
}

WordWidthCache::WordWidthCache(boost::intrusive_ptr<FontInterface> font) : font(std::move(font)) {}

float WordWidthCache::Width(UTF16StringView text)
{
    auto const known = widths.find(text);
    if (known != widths.end())
        return known->second;
    if (widths.size() >= kMaximumWords)
    {
        widths.clear();
        words.clear();
    }
    UTF16String const& word = words.emplace_back(text.begin(), text.end());
    float const width = font->GetStringWidth(word);
    widths.emplace(UTF16StringView(word), width);
    return width;
}

float WordWidthCache::Measure(UTF16StringView text) const
{
    return font->GetStringWidth(UTF16String(text.begin(), text.end()));
}

} // namespace zephmetadataui::timedtext
