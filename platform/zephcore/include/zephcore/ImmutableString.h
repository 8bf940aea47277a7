#pragma once
// A shared constant string. Copies share one buffer; the null string is
// distinct from the empty string.

#include "zephcore/zephcore_export.h"
#include <memory>
#include <string>

namespace zephcore
{

class ZEPHCORE_EXPORT ImmutableString
{
public:
    ImmutableString() = default; // the null string
    explicit ImmutableString(std::string text);

    // Wraps a literal without copying it.
    static ImmutableString CreateStatic(char const* literal);
    static ImmutableString const sNullString;

    bool IsNull() const { return data == nullptr; }
    char const* c_str() const { return data ? data : ""; }
    std::string str() const { return c_str(); }

    friend ZEPHCORE_EXPORT bool operator==(ImmutableString const& a, ImmutableString const& b);
    friend bool operator!=(ImmutableString const& a, ImmutableString const& b) { return !(a == b); }

private:
    std::shared_ptr<std::string const> owned;
    char const* data = nullptr;
};

} // namespace zephcore
