#pragma once
// The two string types of the platform and the Unicode services over them.
// UTF-8 text is std::basic_string<unsigned char>, UTF-16 text is
// std::basic_string<unsigned short>; the model speaks UTF-8, controls UTF-16.

#include "zephcore/SmallBlockAllocator.h"
#include "zephcore/zephcore_export.h"

#include <cstddef>
#include <string>
#include <string_view>

namespace zephcore
{

using UTF8String =
    std::basic_string<unsigned char, std::char_traits<unsigned char>, STLAllocator<unsigned char>>;
using UTF16String = std::basic_string<unsigned short, std::char_traits<unsigned short>,
                                      STLAllocator<unsigned short>>;

// Malformed UTF-8 (bad lead bytes, truncated or overlong sequences, surrogates)
// becomes U+FFFD, one per offending sequence; never throws.
ZEPHCORE_EXPORT UTF16String UTF8to16(UTF8String const& text);
ZEPHCORE_EXPORT UTF16String UTF8to16(std::string_view text);
// Unpaired surrogates become U+FFFD.
ZEPHCORE_EXPORT UTF8String UTF16to8(UTF16String const& text);
// Widens 7-bit text; bytes above 0x7F become U+FFFD.
ZEPHCORE_EXPORT UTF16String AsciiToUTF16(char const* text);
ZEPHCORE_EXPORT UTF16String AsciiToUTF16(std::string_view text);

// Bridges to the plain std::string that outside APIs (exempi, files) use.
ZEPHCORE_EXPORT UTF8String ToUTF8(std::string_view text);
// Well-formed UTF-8: no stray or missing continuation bytes, no overlong
// forms, no surrogates, nothing above U+10FFFF.
ZEPHCORE_EXPORT bool IsValidUTF8(std::string_view text);
ZEPHCORE_EXPORT std::string ToStdString(UTF8String const& text);
ZEPHCORE_EXPORT std::string ToStdString(UTF16String const& text); // as UTF-8

enum UnicodeNormalizationForm
{
    kNormalizationFormD = 0,  // canonical decomposition
    kNormalizationFormC = 1,  // canonical composition
    kNormalizationFormKC = 2, // compatibility composition: what search uses
    kNormalizationFormKD = 3, // compatibility decomposition
};

// Full, locale-independent Unicode case folding ("Straße" folds to "strasse").
ZEPHCORE_EXPORT UTF16String FoldCase(UTF16String const& text);
ZEPHCORE_EXPORT UTF16String NormalizedString(UTF16String const& text,
                                             UnicodeNormalizationForm form);
ZEPHCORE_EXPORT UTF16String LowerCase(UTF16String const& text);
// Keeps at most count UTF-16 units, dropping a trailing high surrogate whose
// partner would be cut off.
ZEPHCORE_EXPORT UTF16String TruncateStringToNumChars(UTF16String const& text, std::size_t count);
// Parses a decimal number, surrounding spaces allowed. False on anything else.
ZEPHCORE_EXPORT bool StringToNumber(UTF16String const& text, double& number);
// Digits, sign, decimal point and exponent marks: what a number field accepts.
ZEPHCORE_EXPORT bool IsNumericChar(unsigned short c);

} // namespace zephcore
