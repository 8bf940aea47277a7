#pragma once
// The core services as the library sees them: strings, localiser, errors,
// files, counting. Everything of the library reaches zephcore through here.

#include <zephcore/Error.h>
#include <zephcore/Files.h>
#include <zephcore/ImmutableString.h>
#include <zephcore/Localizer.h>
#include <zephcore/RefCounted.h>
#include <zephcore/Strings.h>

namespace zephmetadataui
{

using zephcore::UTF16String;
using zephcore::UTF8String;

} // namespace zephmetadataui
