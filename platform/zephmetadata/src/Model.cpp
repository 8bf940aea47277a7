#include "zephmetadata/Model.h"

#include "zephmetadata/PathDefinitions.h"
#include "zephmetadata/XmpMeta.h"

namespace zephmetadata {

namespace {
int startCount = 0;
} // namespace

void Initialize() {
    if (startCount++ > 0)
        return;
    xmp::InitToolkit();
    LoadDefinitions();
}

void Terminate() {
    if (startCount == 0)
        return;
    if (--startCount > 0)
        return;
    xmp::TerminateToolkit();
}

bool IsInitialized() { return startCount > 0; }

} // namespace zephmetadata
