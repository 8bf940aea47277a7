#pragma once
// Small comparisons of the model's UTF-8 text with the literal keywords of
// definitions and view items, which are compared as exact strings.

#include "contracts/Core.h"

#include <boost/optional.hpp>

#include <cstring>

namespace zephmetadataui
{

inline bool TextIs(UTF8String const& text, char const* literal)
{
    std::size_t const length = std::strlen(literal);
    return text.size() == length && std::memcmp(text.data(), literal, length) == 0;
}

inline bool TextIs(boost::optional<UTF8String> const& text, char const* literal)
{
    return text && TextIs(*text, literal);
}

inline bool TextContains(UTF8String const& text, char const* literal)
{
    std::size_t const length = std::strlen(literal);
    if (length > text.size())
        return false;
    for (std::size_t i = 0; i + length <= text.size(); ++i)
        if (std::memcmp(text.data() + i, literal, length) == 0)
            return true;
    return false;
}

inline UTF8String Text8(char const* literal)
{
    return UTF8String(reinterpret_cast<unsigned char const*>(literal), std::strlen(literal));
}

} // namespace zephmetadataui
