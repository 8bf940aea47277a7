#include "zephcore/Strings.h"

#include <cstdint>

#include <QLocale>

#include <QString>
#include <algorithm>
#include <iterator>

#include "zephcore/QtStrings.h"

namespace zephcore
{

namespace
{

constexpr unsigned short kReplacement = 0xFFFD;

void AppendCodePoint(UTF16String& out, char32_t cp)
{
    if (cp < 0x10000)
    {
        out.push_back(static_cast<unsigned short>(cp));
        return;
    }
    cp -= 0x10000;
    out.push_back(static_cast<unsigned short>(0xD800 + (cp >> 10)));
    out.push_back(static_cast<unsigned short>(0xDC00 + (cp & 0x3FF)));
}

template <class Byte> UTF16String DecodeUTF8(Byte const* data, std::size_t size)
{
    UTF16String out;
    out.reserve(size);
    std::size_t i = 0;
    while (i < size)
    {
        unsigned const lead = static_cast<unsigned char>(data[i]);
        if (lead < 0x80)
        {
            out.push_back(static_cast<unsigned short>(lead));
            ++i;
            continue;
        }
        int length = 0;
        char32_t cp = 0;
        char32_t minimum = 0;
        if ((lead & 0xE0) == 0xC0)
        {
            length = 2, cp = lead & 0x1F, minimum = 0x80;
        }
        else if ((lead & 0xF0) == 0xE0)
        {
            length = 3, cp = lead & 0x0F, minimum = 0x800;
        }
        else if ((lead & 0xF8) == 0xF0)
        {
            length = 4, cp = lead & 0x07, minimum = 0x10000;
        }
        else
        {
            // A stray continuation byte or an invalid lead byte.
            out.push_back(kReplacement);
            ++i;
            continue;
        }
        int taken = 1;
        while (taken < length && i + taken < size &&
               (static_cast<unsigned char>(data[i + taken]) & 0xC0) == 0x80)
        {
            cp = (cp << 6) | (static_cast<unsigned char>(data[i + taken]) & 0x3F);
            ++taken;
        }
        i += taken;
        // Truncated, overlong, surrogate or beyond U+10FFFF: one replacement
        // for the whole maximal subpart that was consumed.
        if (taken < length || cp < minimum || cp > 0x10FFFF || (cp >= 0xD800 && cp <= 0xDFFF))
            out.push_back(kReplacement);
        else
            AppendCodePoint(out, cp);
    }
    return out;
}

QString Q(UTF16String const& text)
{
    return ToQString(text);
}

struct FullFolding
{
    unsigned short codePoint;
    unsigned short units[3];
};

// Characters whose folded form is longer than one character; all are in the
// basic plane. Sorted by code point.
constexpr FullFolding kFullFoldings[] = {
#include "FullCaseFolding.inc"
};

unsigned short const* FindFullFolding(unsigned short c)
{
    auto const end = std::end(kFullFoldings);
    auto const found =
        std::lower_bound(std::begin(kFullFoldings), end, c,
                         [](FullFolding const& f, unsigned short v) { return f.codePoint < v; });
    return found != end && found->codePoint == c ? found->units : nullptr;
}

} // namespace

UTF16String UTF8to16(UTF8String const& text)
{
    return DecodeUTF8(text.data(), text.size());
}

UTF16String UTF8to16(std::string_view text)
{
    return DecodeUTF8(text.data(), text.size());
}

UTF8String UTF16to8(UTF16String const& text)
{
    UTF8String out;
    out.reserve(text.size());
    for (std::size_t i = 0; i < text.size(); ++i)
    {
        char32_t cp = text[i];
        if (cp >= 0xD800 && cp <= 0xDBFF && i + 1 < text.size() && text[i + 1] >= 0xDC00 &&
            text[i + 1] <= 0xDFFF)
        {
            cp = 0x10000 + ((cp - 0xD800) << 10) + (text[i + 1] - 0xDC00);
            ++i;
        }
        else if (cp >= 0xD800 && cp <= 0xDFFF)
        {
            cp = kReplacement;
        }
        if (cp < 0x80)
        {
            out.push_back(static_cast<unsigned char>(cp));
        }
        else if (cp < 0x800)
        {
            out.push_back(static_cast<unsigned char>(0xC0 | (cp >> 6)));
            out.push_back(static_cast<unsigned char>(0x80 | (cp & 0x3F)));
        }
        else if (cp < 0x10000)
        {
            out.push_back(static_cast<unsigned char>(0xE0 | (cp >> 12)));
            out.push_back(static_cast<unsigned char>(0x80 | ((cp >> 6) & 0x3F)));
            out.push_back(static_cast<unsigned char>(0x80 | (cp & 0x3F)));
        }
        else
        {
            out.push_back(static_cast<unsigned char>(0xF0 | (cp >> 18)));
            out.push_back(static_cast<unsigned char>(0x80 | ((cp >> 12) & 0x3F)));
            out.push_back(static_cast<unsigned char>(0x80 | ((cp >> 6) & 0x3F)));
            out.push_back(static_cast<unsigned char>(0x80 | (cp & 0x3F)));
        }
    }
    return out;
}

UTF16String AsciiToUTF16(char const* text)
{
    return text ? AsciiToUTF16(std::string_view(text)) : UTF16String();
}

UTF16String AsciiToUTF16(std::string_view text)
{
    UTF16String out;
    out.reserve(text.size());
    for (char c : text)
    {
        auto const byte = static_cast<unsigned char>(c);
        out.push_back(byte < 0x80 ? byte : kReplacement);
    }
    return out;
}

bool IsValidUTF8(std::string_view text)
{
    std::size_t i = 0;
    while (i < text.size())
    {
        unsigned char const lead = static_cast<unsigned char>(text[i]);
        if (lead < 0x80)
        {
            ++i;
            continue;
        }
        std::size_t length = 0;
        std::uint32_t code = 0, least = 0;
        if ((lead & 0xE0) == 0xC0)
            length = 2, code = lead & 0x1F, least = 0x80;
        else if ((lead & 0xF0) == 0xE0)
            length = 3, code = lead & 0x0F, least = 0x800;
        else if ((lead & 0xF8) == 0xF0)
            length = 4, code = lead & 0x07, least = 0x10000;
        else
            return false;
        if (i + length > text.size())
            return false;
        for (std::size_t k = 1; k < length; ++k)
        {
            unsigned char const next = static_cast<unsigned char>(text[i + k]);
            if ((next & 0xC0) != 0x80)
                return false;
            code = (code << 6) | (next & 0x3F);
        }
        if (code < least || code > 0x10FFFF || (code >= 0xD800 && code <= 0xDFFF))
            return false;
        i += length;
    }
    return true;
}

UTF8String ToUTF8(std::string_view text)
{
    return UTF8String(reinterpret_cast<unsigned char const*>(text.data()), text.size());
}

std::string ToStdString(UTF8String const& text)
{
    return std::string(reinterpret_cast<char const*>(text.data()), text.size());
}

std::string ToStdString(UTF16String const& text)
{
    return ToStdString(UTF16to8(text));
}

UTF16String FoldCase(UTF16String const& text)
{
    // Expand the one-to-many foldings first; Qt folds the rest one to one,
    // and the expansions are already in folded form.
    UTF16String expanded;
    expanded.reserve(text.size());
    for (auto c : text)
    {
        if (unsigned short const* units = c >= 0xDF ? FindFullFolding(c) : nullptr)
        {
            for (int i = 0; i < 3 && units[i]; ++i)
                expanded.push_back(units[i]);
        }
        else
        {
            expanded.push_back(c);
        }
    }
    return ToUTF16(Q(expanded).toCaseFolded());
}

UTF16String NormalizedString(UTF16String const& text, UnicodeNormalizationForm form)
{
    QString::NormalizationForm qtForm = QString::NormalizationForm_KC;
    switch (form)
    {
    case kNormalizationFormD:
        qtForm = QString::NormalizationForm_D;
        break;
    case kNormalizationFormC:
        qtForm = QString::NormalizationForm_C;
        break;
    case kNormalizationFormKC:
        qtForm = QString::NormalizationForm_KC;
        break;
    case kNormalizationFormKD:
        qtForm = QString::NormalizationForm_KD;
        break;
    }
    return ToUTF16(Q(text).normalized(qtForm));
}

UTF16String LowerCase(UTF16String const& text)
{
    return ToUTF16(Q(text).toLower());
}

UTF16String TruncateStringToNumChars(UTF16String const& text, std::size_t count)
{
    if (text.size() <= count)
        return text;
    if (count > 0 && text[count - 1] >= 0xD800 && text[count - 1] <= 0xDBFF)
        --count;
    return text.substr(0, count);
}

bool StringToNumber(UTF16String const& text, double& number)
{
    bool ok = false;
    double const value = QLocale::c().toDouble(Q(text).trimmed(), &ok);
    if (ok)
        number = value;
    return ok;
}

bool IsNumericChar(unsigned short c)
{
    return (c >= '0' && c <= '9') || c == '-' || c == '+' || c == '.' || c == 'e' || c == 'E';
}

void* SmallBlockAllocator::Allocate(std::size_t size)
{
    return ::operator new(size);
}

void SmallBlockAllocator::Dispose(void* pointer, std::size_t size)
{
    ::operator delete(pointer, size);
}

} // namespace zephcore
