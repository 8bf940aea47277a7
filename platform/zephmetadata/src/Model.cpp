#include "zephmetadata/Model.h"

#include "zephmetadata/PathDefinitions.h"
#include "zephmetadata/XmpMeta.h"

namespace zephmetadata
{

namespace
{
int startCount = 0;
} // namespace

void Initialize()
{
    if (startCount++ > 0)
        return;
    xmp::InitToolkit();
    LoadDefinitions();
}

void Terminate()
{
    if (startCount == 0)
        return;
    if (--startCount > 0)
        return;
    // Stopping exempi forgets the registered namespaces; dropping the
    // definitions makes the next start load and register them again.
    UnloadDefinitions();
    xmp::TerminateToolkit();
}

bool IsInitialized()
{
    return startCount > 0;
}

} // namespace zephmetadata
