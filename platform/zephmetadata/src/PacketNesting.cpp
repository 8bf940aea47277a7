// How deep a packet's elements nest, found by a scan of its text before
// exempi's parser sees it.

#include "zephmetadata/XmpMeta.h"

#include <cstdint>
#include <cstring>

namespace zephmetadata
{
namespace xmp
{
namespace
{

// The packet's text as code units of 1, 2 or 4 bytes. Markup characters are
// ASCII, so a code unit equal to '<' is '<' in every encoding XML allows.
class Units
{
public:
    Units(unsigned char const* data, std::size_t size) : bytes(data), length(size)
    {
        DetectEncoding();
        count = length / width;
    }

    std::size_t Count() const { return count; }

    std::uint32_t At(std::size_t i) const
    {
        unsigned char const* unit = bytes + i * width;
        std::uint32_t value = 0;
        for (std::size_t b = 0; b < width; ++b)
            value =
                bigEndian ? (value << 8) | unit[b] : value | (std::uint32_t(unit[b]) << (8 * b));
        return value;
    }

    bool Matches(std::size_t at, char const* text) const
    {
        std::size_t const n = std::strlen(text);
        if (at + n > count)
            return false;
        for (std::size_t i = 0; i < n; ++i)
            if (At(at + i) != static_cast<unsigned char>(text[i]))
                return false;
        return true;
    }

    // The index of the first unit after `text` found at or past `from`;
    // Count() when it is missing.
    std::size_t After(std::size_t from, char const* text) const
    {
        std::size_t const n = std::strlen(text);
        for (std::size_t i = from; i + n <= count; ++i)
            if (At(i) == static_cast<unsigned char>(text[0]) && Matches(i, text))
                return i + n;
        return count;
    }

private:
    // By the byte order mark, or by where the zero bytes of the first '<' lie.
    void DetectEncoding()
    {
        unsigned char const* b = bytes;
        if (length >= 4 && b[0] == 0 && b[1] == 0 && (b[2] == 0xFE || b[2] == 0) &&
            (b[3] == 0xFF || b[3] == '<'))
        {
            width = 4;
            bigEndian = true;
        }
        else if (length >= 4 && (b[0] == 0xFF || b[0] == '<') && (b[1] == 0xFE || b[1] == 0) &&
                 b[2] == 0 && b[3] == 0)
        {
            width = 4;
        }
        else if (length >= 2 && ((b[0] == 0xFE && b[1] == 0xFF) || (b[0] == 0 && b[1] == '<')))
        {
            width = 2;
            bigEndian = true;
        }
        else if (length >= 2 && ((b[0] == 0xFF && b[1] == 0xFE) || (b[0] == '<' && b[1] == 0)))
        {
            width = 2;
        }
    }

    unsigned char const* bytes;
    std::size_t length;
    std::size_t width = 1;
    bool bigEndian = false;
    std::size_t count = 0;
};

} // namespace

bool NestsTooDeep(char const* data, std::size_t size)
{
    if (!data)
        return false;
    Units const text(reinterpret_cast<unsigned char const*>(data), size);
    std::size_t const count = text.Count();
    int depth = 0;
    std::size_t i = 0;
    while (i < count)
    {
        if (text.At(i) != '<')
        {
            ++i;
            continue;
        }
        if (text.Matches(i, "<!--"))
        {
            i = text.After(i + 4, "-->");
            continue;
        }
        if (text.Matches(i, "<![CDATA["))
        {
            i = text.After(i + 9, "]]>");
            continue;
        }
        if (text.Matches(i, "<?"))
        {
            i = text.After(i + 2, "?>");
            continue;
        }
        if (text.Matches(i, "<!"))
        {
            // A declaration; one with an internal subset ends at "]>".
            std::size_t j = i + 2;
            while (j < count && text.At(j) != '>' && text.At(j) != '[')
                ++j;
            i = j < count && text.At(j) == '[' ? text.After(j, "]>") : text.After(j, ">");
            continue;
        }
        if (text.Matches(i, "</"))
        {
            if (depth > 0)
                --depth;
            i = text.After(i + 2, ">");
            continue;
        }
        // A start tag: its end is the first '>' outside a quoted attribute value.
        std::uint32_t quote = 0;
        std::uint32_t previous = 0;
        std::size_t j = i + 1;
        for (; j < count; ++j)
        {
            std::uint32_t const c = text.At(j);
            if (quote)
            {
                if (c == quote)
                    quote = 0;
            }
            else if (c == '"' || c == '\'')
            {
                quote = c;
            }
            else if (c == '>')
            {
                break;
            }
            previous = c;
        }
        if (previous != '/' && ++depth > kMaxPacketNesting)
            return true;
        i = j + 1;
    }
    return false;
}

} // namespace xmp
} // namespace zephmetadata
