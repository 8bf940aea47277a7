#include "zephtemporalxmp/XMPCuePointParam.h"

#include <utility>

namespace zephtemporalxmp
{

XMPCuePointParam::XMPCuePointParam(std::string key, std::string value)
    : key(std::move(key)), value(std::move(value))
{
}

void XMPCuePointParam::GetKey(std::string* result) const
{
    if (result)
        *result = key;
}

void XMPCuePointParam::GetValue(std::string* result) const
{
    if (result)
        *result = value;
}

} // namespace zephtemporalxmp
