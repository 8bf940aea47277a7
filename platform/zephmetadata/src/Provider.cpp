#include "zephmetadata/Provider.h"

#include "zephmetadata/ErrorLog.h"
#include "zephmetadata/Switches.h"
#include "zephmetadata/XmpMeta.h"

#include <boost/range/iterator_range.hpp>

namespace zephmetadata {

MetaDataProvider::~MetaDataProvider() = default;

bool MetaDataProvider::QueryPathStatus(Path const&, PathStatus status) const {
    switch (status) {
    case kPathStatusApplicable: return true;
    case kPathStatusWritable: return !readOnly && !IsXMPWritingDisabled() && MetaDataAccess();
    }
    return false;
}

bool MetaDataProvider::IsUsable() const { return true; }

void MetaDataProvider::GetAllPathsForDynamicSchema(
    UTF8String const&, std::vector<boost::shared_ptr<PropertyDefinition>>&) {}

std::string MetaDataProvider::DebugSerializedXMP() {
    std::string packet;
    xmp::SerializeToBuffer(MetaDataAccess(), packet, xmp::kSerializeReadable);
    return packet;
}

std::string MetaDataProvider::DebugDescription(bool, int indent) {
    std::string text(indent > 0 ? static_cast<std::size_t>(indent) : 0, ' ');
    text += "MetaDataProvider";
    text += MetaDataAccess() ? " with metadata" : " without metadata";
    return text;
}

void MetaDataProvider::WriteChanges(std::vector<Path> const& paths) { DoWriteChanges(paths); }

void MetaDataProvider::DoWriteChanges(std::vector<Path> const&) {}

void MetaDataProvider::NotifyWhenMetaDataChanged(ChangedListener const& listener) {
    listeners.Add(listener);
}

void MetaDataProvider::RemoveMetaDataChangedNotification(ChangedListener const& listener) {
    listeners.Remove(listener);
}

MetaDataProvider::SchemaRange MetaDataProvider::DynamicSchemaDefinitions() const {
    return SchemaRange(boost::make_iterator_range(dynamicSchemas.begin(), dynamicSchemas.end()));
}

void MetaDataProvider::SetDynamicSchemaDefinitions(
    std::vector<boost::shared_ptr<SchemaDefinition>> schemas) {
    dynamicSchemas = std::move(schemas);
}

void MetaDataProvider::NotifyMetaDataChanged() { listeners.Notify(MetaDataAccess()); }

TypicalProviderImpl::TypicalProviderImpl() : meta(xmp::NewMeta().release()) {}

TypicalProviderImpl::TypicalProviderImpl(__XMPMeta__* source)
    : meta(source ? xmp::Clone(source).release() : xmp::NewMeta().release()) {}

TypicalProviderImpl::~TypicalProviderImpl() { xmp::MetaDeleter()(meta); }

std::string TypicalProviderImpl::DebugSerializedXMP() { return MetaDataProvider::DebugSerializedXMP(); }

std::string TypicalProviderImpl::DebugDescription(bool verbose, int indent) {
    std::string text(indent > 0 ? static_cast<std::size_t>(indent) : 0, ' ');
    text += "TypicalProviderImpl";
    if (!meta) {
        text += " without metadata";
        return text;
    }
    auto const properties = xmp::TopLevelProperties(meta);
    text += " with " + std::to_string(properties.size()) + " properties";
    if (verbose)
        for (auto const& property : properties)
            text += "\n" + std::string(indent > 0 ? indent + 2 : 2, ' ') + property.second;
    return text;
}

void TypicalProviderImpl::ReplaceMetadata(__XMPMeta__* source) {
    if (!meta)
        meta = xmp::NewMeta().release();
    if (source)
        xmp::CopyTree(source, meta);
    else
        xmp::RemoveProperties(meta);
    NotifyMetaDataChanged();
}

void TypicalProviderImpl::AdoptMetadata(__XMPMeta__* adopted) {
    if (adopted == meta)
        return;
    xmp::MetaDeleter()(meta);
    meta = adopted;
}

boost::shared_ptr<BufferProviderImpl> BufferProviderImpl::Create(std::string const& packet) {
    return boost::shared_ptr<BufferProviderImpl>(new BufferProviderImpl(
        reinterpret_cast<unsigned char const*>(packet.data()), packet.size()));
}

BufferProviderImpl::BufferProviderImpl(unsigned char const* buffer, unsigned long long size) {
    xmp::MetaPtr parsed = xmp::ParseMeta(reinterpret_cast<char const*>(buffer),
                                         static_cast<std::size_t>(size));
    if (!parsed)
        AddError(kErrorMetadataRead, zephcore::ToUTF8("XMP packet"),
                 zephcore::ToUTF8("The metadata packet could not be parsed."));
    AdoptMetadata(parsed.release());
}

std::string BufferProviderImpl::SerializedPacket() const {
    std::string packet;
    xmp::SerializeToBuffer(MetaDataAccess(), packet);
    return packet;
}

void BufferProviderImpl::WriteChanges(std::vector<Path> const& paths) {
    // The tree is the packet: changes are already in place. Subclasses (a
    // template on disk) store them in DoWriteChanges.
    DoWriteChanges(paths);
}

} // namespace zephmetadata
