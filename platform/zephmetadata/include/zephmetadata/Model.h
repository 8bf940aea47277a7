#pragma once

#include "zephmetadata/zephmetadata_export.h"
// Start and stop of the metadata model. Calls are counted: the first
// Initialize starts the XMP toolkit and loads the definitions, the last
// Terminate stops the toolkit.

namespace zephmetadata
{

ZEPHMETADATA_EXPORT void Initialize();
ZEPHMETADATA_EXPORT void Terminate();
// Whether the model is between Initialize and Terminate.
ZEPHMETADATA_EXPORT bool IsInitialized();

} // namespace zephmetadata
