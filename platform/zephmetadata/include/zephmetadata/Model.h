#pragma once
// Start and stop of the metadata model. Calls are counted: the first
// Initialize starts the XMP toolkit and loads the definitions, the last
// Terminate stops the toolkit.

namespace zephmetadata
{

void Initialize();
void Terminate();
// Whether the model is between Initialize and Terminate.
bool IsInitialized();

} // namespace zephmetadata
