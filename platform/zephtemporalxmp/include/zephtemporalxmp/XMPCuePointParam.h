#pragma once
// One processing parameter of a marker (xmpDM:cuePointParams): a key and a
// value, both UTF-8.

#include "zephtemporalxmp/zephtemporalxmp_export.h"

#include <string>

namespace zephtemporalxmp
{

class ZEPHTEMPORALXMP_EXPORT XMPCuePointParam
{
public:
    XMPCuePointParam() = default;
    XMPCuePointParam(std::string key, std::string value);

    void GetKey(std::string* result) const;
    void GetValue(std::string* result) const;

    friend bool operator==(XMPCuePointParam const& a, XMPCuePointParam const& b)
    {
        return a.key == b.key && a.value == b.value;
    }
    friend bool operator!=(XMPCuePointParam const& a, XMPCuePointParam const& b)
    {
        return !(a == b);
    }

private:
    std::string key;
    std::string value;
};

} // namespace zephtemporalxmp
