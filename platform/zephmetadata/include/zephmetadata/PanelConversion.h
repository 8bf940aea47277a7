#pragma once
// Conversion of the generic metadata panels of earlier suite generations into
// view definitions in the user's custom definitions folder. The panel format
// and where the panels are looked for are described in
// docs/definition-format.md.

#include "zephmetadata/Types.h"
#include "zephmetadata/zephmetadata_export.h"

namespace zephmetadata
{
namespace utility
{

enum SuiteVersion
{
    kSuiteVersionR6 = 0,
    kSuiteVersionR5 = 1,
    kSuiteVersionR4 = 2,
};

// The folder where panels of that generation are looked for: the one set
// with SetGenericPanelsDirectory, else the generation's default folder.
ZEPHMETADATA_EXPORT UTF16String GenericPanelsDirectory(SuiteVersion version);
// Makes the panels of every generation be looked for in this folder, for a
// host that lets the user choose where they lie; the panels' own version is
// still checked. An empty folder goes back to the default folders.
ZEPHMETADATA_EXPORT void SetGenericPanelsDirectory(UTF16String const& folder);
// Converts every panel file of that generation and appends one line per
// panel to `report`: converted, with the file written, or refused, with why.
ZEPHMETADATA_EXPORT void LoadAndConvertGenericPanels(SuiteVersion version, UTF16String& report);

} // namespace utility
} // namespace zephmetadata
