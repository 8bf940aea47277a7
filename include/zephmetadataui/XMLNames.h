#pragma once
// Names that XMP can store as element names, for custom schemas and
// properties: the XML 1.0 name rules, one UTF-16 unit at a time (so no
// surrogate pair is accepted), without the colon, without names that begin
// with "xml" in any case, and without U+FDF0 to U+FFFD.

#include "zephmetadataui/zephmetadataui_export.h"

#include <zephcore/Strings.h>

namespace zephmetadataui
{

ZEPHMETADATAUI_EXPORT bool VerifySimpleXMLName(zephcore::UTF16String const& name);
// Replaces each unit that may not stand at its place by "_", one for one,
// and puts "_" in front of a result that would begin with "xml". An empty
// text gives an empty result; any other result passes VerifySimpleXMLName.
ZEPHMETADATAUI_EXPORT zephcore::UTF16String
GenerateXMLNameFromUnicodeString(zephcore::UTF16String const& text);

} // namespace zephmetadataui
