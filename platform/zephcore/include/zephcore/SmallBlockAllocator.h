#pragma once
// The allocator both string types are built on. Small blocks come from the
// general heap: the type exists so that the string types have their own
// allocator parameter, not to pool memory.

#include "zephcore/zephcore_export.h"
#include <cstddef>
#include <memory>

namespace zephcore
{

class ZEPHCORE_EXPORT SmallBlockAllocator
{
public:
    static void* Allocate(std::size_t size);
    static void Dispose(void* pointer, std::size_t size);
};

template <class T> using STLAllocator = std::allocator<T>;

} // namespace zephcore
