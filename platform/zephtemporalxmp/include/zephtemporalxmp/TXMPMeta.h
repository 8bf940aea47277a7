#pragma once
// The live metadata tree that the temporal operations read and write.

// exempi's handle of one parsed metadata tree is `struct _Xmp*`; the model
// (zephmetadata/Types.h) names it __XMPMeta__*, and so does this library.
struct _Xmp;
typedef struct _Xmp __XMPMeta__;

namespace zephtemporalxmp
{

// Shares a metadata tree without owning it. Whoever made the tree (the
// model's provider) keeps it alive for as long as operations opened on it may
// still save into it. Copies share the same tree.
class TXMPMeta
{
public:
    TXMPMeta() = default;
    explicit TXMPMeta(__XMPMeta__* handle) : handle(handle) {}

    __XMPMeta__* GetHandle() const { return handle; }

private:
    __XMPMeta__* handle = nullptr;
};

} // namespace zephtemporalxmp
