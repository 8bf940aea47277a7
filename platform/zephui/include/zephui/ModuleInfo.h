#pragma once

#include "zephui/zephui_export.h"
// The module singleton of a library built on the toolkit. A library derives
// its own, with a static Get().

namespace zephui
{
namespace ui
{

class ZEPHUI_EXPORT ModuleInfo
{
public:
    virtual void Initialize() {}

protected:
    ModuleInfo() = default;
    ModuleInfo(ModuleInfo const&) {}
    ModuleInfo& operator=(ModuleInfo const&) { return *this; }
    virtual ~ModuleInfo() = default;
};

} // namespace ui
} // namespace zephui
