#pragma once
// MetaDataProvider: the source of one object's metadata, shared by the views
// that show it. Reads and writes go through MetaDataReadAccess and
// MetaDataUpdateAccess (Access.h); listeners hear of every finished update.

#include "zephmetadata/ListenerList.h"
#include "zephmetadata/Path.h"
#include "zephmetadata/Types.h"
#include "zephmetadata/XmpMeta.h"
#include "zephmetadata/zephmetadata_export.h"

#include <boost/function.hpp>
#include <boost/shared_ptr.hpp>

#include <string>
#include <vector>

namespace zephmetadata
{

struct PropertyDefinition;
struct SchemaDefinition;

class ZEPHMETADATA_EXPORT MetaDataProvider
{
public:
    using ChangedListener = boost::shared_ptr<boost::function<void(__XMPMeta__*)>>;
    using SchemaRange = IteratorRange<boost::shared_ptr<SchemaDefinition>>;

    MetaDataProvider() = default;
    MetaDataProvider(MetaDataProvider const&) = delete;
    MetaDataProvider& operator=(MetaDataProvider const&) = delete;
    virtual ~MetaDataProvider();

    // Applicable: true for every path. Writable: false while writing is
    // disabled process-wide or the provider is read-only.
    virtual bool QueryPathStatus(Path const& path, PathStatus status) const;
    // Whether the provider can be used at all; every provider here is.
    virtual bool IsUsable() const;
    // What a dynamic schema holds for this object. The default adds nothing.
    virtual void
    GetAllPathsForDynamicSchema(UTF8String const& schemaNamespace,
                                std::vector<boost::shared_ptr<PropertyDefinition>>& properties);
    virtual std::string DebugSerializedXMP();
    virtual std::string DebugDescription(bool verbose, int indent);

protected:
    // The metadata handle; null if the provider holds none.
    virtual __XMPMeta__* MetaDataAccess() const = 0;

private:
    // Receives the paths changed under one MetaDataUpdateAccess, in the order
    // recorded. The default hands them to DoWriteChanges.
    virtual void WriteChanges(std::vector<Path> const& paths);

protected:
    // Storing step of a concrete provider; the default stores nothing.
    virtual void DoWriteChanges(std::vector<Path> const& paths);

public:
    // A listener leaves by emptying its holder in place or by removal; both are
    // safe while listeners are being called.
    void NotifyWhenMetaDataChanged(ChangedListener const& listener);
    void RemoveMetaDataChangedNotification(ChangedListener const& listener);
    // The schemas that exist only for this object.
    SchemaRange DynamicSchemaDefinitions() const;
    void SetDynamicSchemaDefinitions(std::vector<boost::shared_ptr<SchemaDefinition>> schemas);

    // Whether QueryPathStatus answers writable (besides the global switch).
    bool IsReadOnly() const { return readOnly; }
    void SetReadOnly(bool value) { readOnly = value; }

protected:
    // Tells every listener that the metadata changed.
    void NotifyMetaDataChanged();

private:
    friend class MetaDataReadAccess;
    friend class MetaDataUpdateAccess;
    friend class MultiObjectProvider;

    ListenerList<void(__XMPMeta__*)> listeners;
    std::vector<boost::shared_ptr<SchemaDefinition>> dynamicSchemas;
    bool readOnly = false;
};

// A provider that owns one metadata tree.
class ZEPHMETADATA_EXPORT TypicalProviderImpl : public MetaDataProvider
{
public:
    // Starts with an empty tree.
    TypicalProviderImpl();
    // Takes a copy of meta (an empty tree if meta is null).
    explicit TypicalProviderImpl(__XMPMeta__* meta);
    ~TypicalProviderImpl() override;

    std::string DebugSerializedXMP() override;
    std::string DebugDescription(bool verbose, int indent) override;

    // Replaces the whole tree by a copy of meta and tells the listeners.
    void ReplaceMetadata(__XMPMeta__* meta);
    // Puts this tree in place of the provider's own without copying it, and
    // hands back the former one: for a whole large tree at once. Nobody is
    // told; the caller reports the change through an update access.
    xmp::MetaPtr ExchangeMetadata(xmp::MetaPtr tree);

    // Makes every namespace of the tree that no schema definition knows a
    // dynamic schema of this provider (labelled with its prefix), whose
    // properties GetAllPathsForDynamicSchema then lists from the tree.
    void ListUnknownSchemasAsDynamic();
    // Lists the top-level properties the tree holds in an unknown namespace:
    // simple ones as text, lists of simple values as lists of text, and
    // structures without a kind.
    void GetAllPathsForDynamicSchema(
        UTF8String const& schemaNamespace,
        std::vector<boost::shared_ptr<PropertyDefinition>>& properties) override;

protected:
    __XMPMeta__* MetaDataAccess() const override { return meta; }
    // Hands over a tree this provider then owns; null leaves no metadata.
    void AdoptMetadata(__XMPMeta__* adopted);

private:
    __XMPMeta__* meta = nullptr;
};

// A provider over a serialised packet. A packet that does not parse leaves
// the provider without metadata and an entry in the error log.
class ZEPHMETADATA_EXPORT BufferProviderImpl : public TypicalProviderImpl
{
public:
    static boost::shared_ptr<BufferProviderImpl> Create(std::string const& packet);

    // Whether the buffer parsed.
    bool IsValid() const { return MetaDataAccess() != nullptr; }
    // The packet as it stands now, with the changes made since.
    std::string SerializedPacket() const;

protected:
    BufferProviderImpl(unsigned char const* buffer, unsigned long long size);

private:
    void WriteChanges(std::vector<Path> const& paths) override;
};

} // namespace zephmetadata
