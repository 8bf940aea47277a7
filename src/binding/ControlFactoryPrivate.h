#pragma once
// The registered control creator, as the factory and the module frame reach it.

#include "zephmetadataui/ControlFactory.h"

namespace zephmetadataui
{

// The slot itself, for a call without a copy.
ControlCreator const& RegisteredControlCreatorSlot();
// Destroys the registered creator and leaves the slot empty.
void ClearRegisteredControlCreator();
bool IsControlCreatorRegistered();

} // namespace zephmetadataui
