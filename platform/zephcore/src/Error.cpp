#include "zephcore/Error.h"

#include <utility>

namespace zephcore
{

ZephError::ZephError(int level, std::string key, long number1, long number2, bool flag)
    : level(level), key(std::move(key)), number1(number1), number2(number2), flag(flag)
{
    auto const equals = this->key.find('=');
    message = equals == std::string::npos ? this->key : this->key.substr(equals + 1);
}

char const* ZephError::what() const noexcept
{
    return message.c_str();
}

void ThrowError(int level, char const* key, long number1, long number2, bool flag)
{
    throw ZephError(level, key ? key : "", number1, number2, flag);
}

} // namespace zephcore
