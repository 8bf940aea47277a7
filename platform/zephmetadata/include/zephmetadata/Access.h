#pragma once
// Scope objects around every read and write of a provider's metadata.

#include "zephmetadata/Path.h"
#include "zephmetadata/Types.h"
#include "zephmetadata/zephmetadata_export.h"

#include <boost/shared_ptr.hpp>

#include <vector>

namespace zephmetadata
{

class MetaDataProvider;

// Brackets a read. An empty provider pointer is legal: the handle is then null.
class ZEPHMETADATA_EXPORT MetaDataReadAccess
{
public:
    explicit MetaDataReadAccess(boost::shared_ptr<MetaDataProvider> const& provider);
    ~MetaDataReadAccess();
    MetaDataReadAccess(MetaDataReadAccess const&) = delete;
    MetaDataReadAccess& operator=(MetaDataReadAccess const&) = delete;

    __XMPMeta__* operator*() const { return meta; }

protected:
    boost::shared_ptr<MetaDataProvider> provider;
    __XMPMeta__* meta = nullptr;
};

// Brackets a write. The paths recorded with AddChange go to the provider's
// WriteChanges in the order recorded when the access ends, and then the
// provider's listeners are told; with no change recorded nobody is woken.
class ZEPHMETADATA_EXPORT MetaDataUpdateAccess : public MetaDataReadAccess
{
public:
    explicit MetaDataUpdateAccess(boost::shared_ptr<MetaDataProvider> const& provider);
    ~MetaDataUpdateAccess();

    void AddChange(Path const& path);

private:
    std::vector<Path> changes;
};

} // namespace zephmetadata
