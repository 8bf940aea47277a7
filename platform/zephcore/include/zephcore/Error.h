#pragma once
// Internal errors: ThrowError raises a ZephError carrying everything it was
// given, so that a catcher can report level, key and numbers.

#include "zephcore/zephcore_export.h"
#include <exception>
#include <string>

namespace zephcore
{

enum ErrorLevel
{
    kErrorLevelWarning = 0,
    kErrorLevelError = 1,
    kErrorLevelFatal = 2,
};

class ZEPHCORE_EXPORT ZephError : public std::exception
{
public:
    ZephError(int level, std::string key, long number1, long number2, bool flag);
    char const* what() const noexcept override;

    int level = kErrorLevelError;
    std::string key; // a localiser key, "$$$/group/name=default"
    long number1 = 0;
    long number2 = 0;
    bool flag = false;

private:
    std::string message;
};

[[noreturn]] ZEPHCORE_EXPORT void ThrowError(int level, char const* key, long number1 = 0,
                                             long number2 = 0, bool flag = false);

} // namespace zephcore
