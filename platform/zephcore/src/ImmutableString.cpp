#include "zephcore/ImmutableString.h"

#include <cstring>
#include <utility>

namespace zephcore
{

ImmutableString const ImmutableString::sNullString;

ImmutableString::ImmutableString(std::string text)
    : owned(std::make_shared<std::string const>(std::move(text))), data(owned->c_str())
{
}

ImmutableString ImmutableString::CreateStatic(char const* literal)
{
    ImmutableString result;
    result.data = literal;
    return result;
}

bool operator==(ImmutableString const& a, ImmutableString const& b)
{
    if (a.IsNull() || b.IsNull())
        return a.IsNull() == b.IsNull();
    return a.data == b.data || std::strcmp(a.data, b.data) == 0;
}

} // namespace zephcore
