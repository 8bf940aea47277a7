#pragma once
// Reading and writing the dates a user types into a date field.
//
// The display form is the ISO form with a blank for "T" and before the zone
// ("2009-05-12 14:30:00 +02:00"); the stored form is the XMP ISO text. The
// parser is more lenient than XMP's: "/" or "-" between date parts, partial
// dates ("2009", "2009/05"), and ":", "," or ";" between time parts.
// Private to the library: exported only so that its tests can call it.

#include "contracts/Core.h"
#include "zephmetadataui/zephmetadataui_export.h"

#include <zephmetadata/XMPDateTime.h>

namespace zephmetadataui
{

using zephmetadata::XMP_DateTime;

// True if the text is a date; fills `date` as far as the parser got, also
// when it fails. Blanks and tabs around the text are ignored.
ZEPHMETADATAUI_EXPORT bool ParseDateText(UTF16String const& text, XMP_DateTime& date);
// The stored form; empty if the record cannot be written.
ZEPHMETADATAUI_EXPORT UTF16String ToStoredText(XMP_DateTime const& date);
// The display form; empty for a record without a date.
ZEPHMETADATAUI_EXPORT UTF16String FormatForDisplay(XMP_DateTime const& date);

} // namespace zephmetadataui
