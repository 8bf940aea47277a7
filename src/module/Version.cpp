#include "zephmetadataui/Version.h"

namespace zephmetadataui
{

char const* VersionString()
{
    return ZEPH_VERSION;
}

} // namespace zephmetadataui
