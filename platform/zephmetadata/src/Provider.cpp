#include "zephmetadata/Provider.h"

#include "zephmetadata/Definitions.h"
#include "zephmetadata/ErrorLog.h"
#include "zephmetadata/PathDefinitions.h"
#include "zephmetadata/Switches.h"
#include "zephmetadata/XmpMeta.h"

#include <zephcore/Strings.h>

#include <boost/make_shared.hpp>
#include <boost/range/iterator_range.hpp>

#include <map>

namespace zephmetadata
{

MetaDataProvider::~MetaDataProvider() = default;

bool MetaDataProvider::QueryPathStatus(Path const&, PathStatus status) const
{
    switch (status)
    {
    case kPathStatusApplicable:
        return true;
    case kPathStatusWritable:
        return !readOnly && !IsXMPWritingDisabled() && MetaDataAccess();
    }
    return false;
}

bool MetaDataProvider::IsUsable() const
{
    return true;
}

void MetaDataProvider::GetAllPathsForDynamicSchema(
    UTF8String const&, std::vector<boost::shared_ptr<PropertyDefinition>>&)
{
}

std::string MetaDataProvider::DebugSerializedXMP()
{
    std::string packet;
    xmp::SerializeToBuffer(MetaDataAccess(), packet, xmp::kSerializeReadable);
    return packet;
}

std::string MetaDataProvider::DebugDescription(bool, int indent)
{
    std::string text(indent > 0 ? static_cast<std::size_t>(indent) : 0, ' ');
    text += "MetaDataProvider";
    text += MetaDataAccess() ? " with metadata" : " without metadata";
    return text;
}

void MetaDataProvider::WriteChanges(std::vector<Path> const& paths)
{
    DoWriteChanges(paths);
}

void MetaDataProvider::DoWriteChanges(std::vector<Path> const&) {}

void MetaDataProvider::NotifyWhenMetaDataChanged(ChangedListener const& listener)
{
    listeners.Add(listener);
}

void MetaDataProvider::RemoveMetaDataChangedNotification(ChangedListener const& listener)
{
    listeners.Remove(listener);
}

MetaDataProvider::SchemaRange MetaDataProvider::DynamicSchemaDefinitions() const
{
    return SchemaRange(boost::make_iterator_range(dynamicSchemas.begin(), dynamicSchemas.end()));
}

void MetaDataProvider::SetDynamicSchemaDefinitions(
    std::vector<boost::shared_ptr<SchemaDefinition>> schemas)
{
    dynamicSchemas = std::move(schemas);
}

void MetaDataProvider::NotifyMetaDataChanged()
{
    listeners.Notify(MetaDataAccess());
}

TypicalProviderImpl::TypicalProviderImpl() : meta(xmp::NewMeta().release()) {}

TypicalProviderImpl::TypicalProviderImpl(__XMPMeta__* source)
    : meta(source ? xmp::Clone(source).release() : xmp::NewMeta().release())
{
}

TypicalProviderImpl::~TypicalProviderImpl()
{
    xmp::MetaDeleter()(meta);
}

std::string TypicalProviderImpl::DebugSerializedXMP()
{
    return MetaDataProvider::DebugSerializedXMP();
}

std::string TypicalProviderImpl::DebugDescription(bool verbose, int indent)
{
    std::string text(indent > 0 ? static_cast<std::size_t>(indent) : 0, ' ');
    text += "TypicalProviderImpl";
    if (!meta)
    {
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

void TypicalProviderImpl::ReplaceMetadata(__XMPMeta__* source)
{
    if (!meta)
        meta = xmp::NewMeta().release();
    if (source)
        xmp::CopyTree(source, meta);
    else
        xmp::RemoveProperties(meta);
    NotifyMetaDataChanged();
}

namespace
{

UTF8String U8(std::string const& text)
{
    return zephcore::ToUTF8(text);
}

std::string Plain(UTF8String const& text)
{
    return zephcore::ToStdString(text);
}

// "wine:Recommend" -> "Recommend".
std::string LocalName(std::string const& path)
{
    std::size_t const colon = path.find(':');
    return colon == std::string::npos ? path : path.substr(colon + 1);
}

} // namespace

void TypicalProviderImpl::ListUnknownSchemasAsDynamic()
{
    std::vector<boost::shared_ptr<SchemaDefinition>> schemas;
    std::map<std::string, bool> seen;
    for (auto const& property : xmp::TopLevelProperties(meta))
    {
        if (!seen.emplace(property.first, true).second)
            continue;
        UTF8String const ns = U8(property.first);
        if (NamespaceDefinition(ns))
            continue;
        auto schema = boost::make_shared<SchemaDefinition>();
        std::string const prefix = xmp::NamespacePrefix(property.first.c_str());
        schema->schemaNamespace = ns;
        schema->schemaPrefix = U8(prefix);
        schema->label = zephcore::UTF8to16(prefix.empty() ? property.first : prefix);
        schema->description = zephcore::UTF8to16(property.first);
        schema->schemaFlag1 = false;
        schemas.push_back(schema);
    }
    SetDynamicSchemaDefinitions(std::move(schemas));
}

void TypicalProviderImpl::GetAllPathsForDynamicSchema(
    UTF8String const& schemaNamespace,
    std::vector<boost::shared_ptr<PropertyDefinition>>& properties)
{
    bool dynamic = false;
    for (auto const& schema : DynamicSchemaDefinitions())
        dynamic = dynamic || (schema && schema->schemaNamespace == schemaNamespace);
    if (!dynamic)
        return; // a defined schema lists its own properties
    std::string const ns = Plain(schemaNamespace);
    UTF8String const text = U8("text");
    for (auto const& property : xmp::TopLevelProperties(meta))
    {
        if (property.first != ns)
            continue;
        std::uint32_t options = 0;
        xmp::NodeOptionsOf(meta, property.first.c_str(), property.second.c_str(), options);
        auto entry = boost::make_shared<PropertyDefinition>();
        std::string const name = LocalName(property.second);
        entry->name = U8(name);
        entry->label = zephcore::UTF8to16(name);
        if (xmp::IsSimple(options))
        {
            entry->typeId = text;
            entry->primitiveType = kPrimitiveText;
        }
        else if (xmp::IsAltText(options))
        {
            entry->typeId = U8("langAlt");
            entry->primitiveType = kPrimitiveAlternative;
            entry->elementTypeId = text;
        }
        else if (xmp::IsArray(options))
        {
            bool const ordered = (options & xmp::kOptionArrayOrdered) != 0;
            bool const alternative = (options & xmp::kOptionArrayAlt) != 0;
            entry->primitiveType = alternative ? kPrimitiveAlternative
                                   : ordered   ? kPrimitiveOrderedArray
                                               : kPrimitiveUnorderedArray;
            entry->typeId = U8(alternative ? "alt" : ordered ? "seq" : "bag");
            entry->elementTypeId = text;
        }
        properties.push_back(entry);
    }
}

xmp::MetaPtr TypicalProviderImpl::ExchangeMetadata(xmp::MetaPtr tree)
{
    xmp::MetaPtr former(meta);
    meta = tree.release();
    return former;
}

void TypicalProviderImpl::AdoptMetadata(__XMPMeta__* adopted)
{
    if (adopted == meta)
        return;
    xmp::MetaDeleter()(meta);
    meta = adopted;
}

boost::shared_ptr<BufferProviderImpl> BufferProviderImpl::Create(std::string const& packet)
{
    return boost::shared_ptr<BufferProviderImpl>(new BufferProviderImpl(
        reinterpret_cast<unsigned char const*>(packet.data()), packet.size()));
}

BufferProviderImpl::BufferProviderImpl(unsigned char const* buffer, unsigned long long size)
{
    xmp::ParseFailure failure;
    xmp::MetaPtr parsed = xmp::ParseMeta(reinterpret_cast<char const*>(buffer),
                                         static_cast<std::size_t>(size), &failure);
    if (!parsed)
        AddError(kErrorMetadataRead, zephcore::ToUTF8("XMP packet"),
                 zephcore::ToUTF8(failure == xmp::ParseFailure::kTooDeep
                                      ? "The metadata packet nests deeper than 100 levels and "
                                        "was not read."
                                      : "The metadata packet could not be parsed."));
    AdoptMetadata(parsed.release());
}

std::string BufferProviderImpl::SerializedPacket() const
{
    std::string packet;
    xmp::SerializeToBuffer(MetaDataAccess(), packet);
    return packet;
}

void BufferProviderImpl::WriteChanges(std::vector<Path> const& paths)
{
    // The tree is the packet: changes are already in place. Subclasses (a
    // template on disk) store them in DoWriteChanges.
    DoWriteChanges(paths);
}

} // namespace zephmetadata
