#pragma once
// Intrusive reference counting. Objects start with a count of zero, live in
// boost::intrusive_ptr and die when the last pointer lets go. Counting is not
// atomic: everything counted lives on the user-interface thread.

#include "zephcore/zephcore_export.h"
#include <boost/intrusive_ptr.hpp>

namespace zephcore
{

class ZEPHCORE_EXPORT RefCountedInterface
{
public:
    virtual void AddRef() const = 0;
    virtual void Release() const = 0;

protected:
    virtual ~RefCountedInterface() = default;
};

class ZEPHCORE_EXPORT RefCountedObject : public virtual RefCountedInterface
{
public:
    RefCountedObject() = default;
    RefCountedObject(RefCountedObject const&) : refCount(0) {}
    RefCountedObject& operator=(RefCountedObject const&) { return *this; }

    void AddRef() const override { ++refCount; }
    void Release() const override
    {
        if (--refCount == 0)
            delete this;
    }
    int GetRefCount() const { return refCount; }

protected:
    ~RefCountedObject() override = default;

private:
    mutable int refCount = 0;
};

inline void intrusive_ptr_add_ref(RefCountedInterface const* object)
{
    object->AddRef();
}
inline void intrusive_ptr_release(RefCountedInterface const* object)
{
    object->Release();
}

} // namespace zephcore
