#include "binding/ControlFactoryPrivate.h"

namespace zephmetadataui
{

namespace
{

// At most one. A plain global: the library runs on the UI thread only.
ControlCreator& CreatorSlot()
{
    static ControlCreator creator;
    return creator;
}

} // namespace

ControlCreator const& RegisteredControlCreatorSlot()
{
    return CreatorSlot();
}

void ClearRegisteredControlCreator()
{
    ControlCreator empty;
    CreatorSlot().swap(empty);
}

bool IsControlCreatorRegistered()
{
    return !CreatorSlot().empty();
}

void RegisterControlCreator(ControlCreator creator)
{
    // The old creator dies with the argument, after the slot holds the new one.
    CreatorSlot().swap(creator);
}

ControlCreator RegisteredControlCreator()
{
    return CreatorSlot();
}

} // namespace zephmetadataui
