#include "PropertyForms.h"

#include "zephmetadata/PathDefinitions.h"
#include "zephmetadata/XmpMeta.h"

#include <zephcore/Strings.h>

#include <cstring>
#include <map>
#include <utility>

namespace zephmetadata
{
namespace detail
{
namespace
{

using Key = std::pair<std::string, std::string>;

// The list and structure properties of the published schemas. A new list
// needs its form before its first item can be written. The definition files
// say the same and speak first when loaded; this table stays because the
// model also writes values with no definitions loaded (a host that uses the
// model alone, or a write before the definitions load).
std::map<Key, PropertyForm> const& WellKnownForms()
{
    static std::map<Key, PropertyForm> const forms = []
    {
        std::map<Key, PropertyForm> f;
        auto list = [&f](char const* ns, char const* name, std::uint32_t form, bool structs = false)
        {
            PropertyForm entry;
            entry.arrayForm = form;
            entry.itemsAreStructures = structs;
            f[Key(ns, name)] = entry;
        };
        auto structure = [&f](char const* ns, char const* name)
        {
            PropertyForm entry;
            entry.isStructure = true;
            f[Key(ns, name)] = entry;
        };
        char const* dc = "http://purl.org/dc/elements/1.1/";
        list(dc, "contributor", xmp::kArrayBag);
        list(dc, "creator", xmp::kArraySeq);
        list(dc, "date", xmp::kArraySeq);
        list(dc, "description", xmp::kArrayAltText);
        list(dc, "language", xmp::kArrayBag);
        list(dc, "publisher", xmp::kArrayBag);
        list(dc, "relation", xmp::kArrayBag);
        list(dc, "rights", xmp::kArrayAltText);
        list(dc, "subject", xmp::kArrayBag);
        list(dc, "title", xmp::kArrayAltText);
        list(dc, "type", xmp::kArrayBag);
        char const* xmp = "http://ns.adobe.com/xap/1.0/";
        list(xmp, "Identifier", xmp::kArrayBag);
        list(xmp, "Advisory", xmp::kArrayBag);
        list(xmp, "Thumbnails", xmp::kArrayAlt, true);
        char const* rights = "http://ns.adobe.com/xap/1.0/rights/";
        list(rights, "Owner", xmp::kArrayBag);
        list(rights, "UsageTerms", xmp::kArrayAltText);
        char const* mm = "http://ns.adobe.com/xap/1.0/mm/";
        list(mm, "History", xmp::kArraySeq, true);
        list(mm, "Ingredients", xmp::kArrayBag, true);
        list(mm, "Pantry", xmp::kArrayBag, true);
        list(mm, "Manifest", xmp::kArraySeq, true);
        list(mm, "Versions", xmp::kArraySeq, true);
        structure(mm, "DerivedFrom");
        structure(mm, "ManagedFrom");
        char const* dm = "http://ns.adobe.com/xmp/1.0/DynamicMedia/";
        list(dm, "Tracks", xmp::kArrayBag, true);
        list(dm, "markers", xmp::kArraySeq, true);
        list(dm, "contributedMedia", xmp::kArrayBag, true);
        list(dm, "beatSpliceParams", xmp::kArraySeq, true);
        structure(dm, "duration");
        structure(dm, "startTimecode");
        structure(dm, "altTimecode");
        structure(dm, "videoFrameSize");
        structure(dm, "projectRef");
        char const* ps = "http://ns.adobe.com/photoshop/1.0/";
        list(ps, "SupplementalCategories", xmp::kArrayBag);
        list(ps, "TextLayers", xmp::kArraySeq, true);
        list(ps, "DocumentAncestors", xmp::kArrayBag);
        char const* iptc = "http://iptc.org/std/Iptc4xmpCore/1.0/xmlns/";
        list(iptc, "Scene", xmp::kArrayBag);
        list(iptc, "SubjectCode", xmp::kArrayBag);
        structure(iptc, "CreatorContactInfo");
        char const* ext = "http://iptc.org/std/Iptc4xmpExt/2008-02-29/";
        list(ext, "PersonInImage", xmp::kArrayBag);
        list(ext, "OrganisationInImageName", xmp::kArrayBag);
        list(ext, "OrganisationInImageCode", xmp::kArrayBag);
        list(ext, "ModelAge", xmp::kArrayBag);
        list(ext, "EventId", xmp::kArrayBag);
        list(ext, "Event", xmp::kArrayAltText);
        list(ext, "LocationCreated", xmp::kArrayBag, true);
        list(ext, "LocationShown", xmp::kArrayBag, true);
        list(ext, "ArtworkOrObject", xmp::kArrayBag, true);
        list(ext, "PersonInImageWDetails", xmp::kArrayBag, true);
        list(ext, "ProductInImage", xmp::kArrayBag, true);
        list(ext, "RegistryId", xmp::kArrayBag, true);
        list(ext, "Contributor", xmp::kArrayBag, true);
        list(ext, "Creator", xmp::kArraySeq, true);
        char const* exif = "http://ns.adobe.com/exif/1.0/";
        list(exif, "ISOSpeedRatings", xmp::kArraySeq);
        list(exif, "ComponentsConfiguration", xmp::kArraySeq);
        list(exif, "SubjectArea", xmp::kArraySeq);
        list(exif, "SubjectLocation", xmp::kArraySeq);
        list(exif, "UserComment", xmp::kArrayAltText);
        structure(exif, "Flash");
        structure(exif, "OECF");
        structure(exif, "DeviceSettingDescription");
        char const* tiff = "http://ns.adobe.com/tiff/1.0/";
        list(tiff, "BitsPerSample", xmp::kArraySeq);
        list(tiff, "YCbCrSubSampling", xmp::kArraySeq);
        list(tiff, "WhitePoint", xmp::kArraySeq);
        list(tiff, "PrimaryChromaticities", xmp::kArraySeq);
        list(tiff, "YCbCrCoefficients", xmp::kArraySeq);
        list(tiff, "ReferenceBlackWhite", xmp::kArraySeq);
        list(tiff, "ImageDescription", xmp::kArrayAltText);
        list(tiff, "Copyright", xmp::kArrayAltText);
        list(tiff, "Artist", xmp::kArraySeq);
        char const* crs = "http://ns.adobe.com/camera-raw-settings/1.0/";
        list(crs, "ToneCurve", xmp::kArraySeq);
        list(crs, "ToneCurvePV2012", xmp::kArraySeq);
        char const* script = "http://ns.adobe.com/xmp/1.0/Script/";
        list(script, "dialogSequence", xmp::kArraySeq, true);
        list(script, "characters", xmp::kArrayBag);
        return f;
    }();
    return forms;
}

// "xmpDM:markers" -> "markers"; "Tracks" stays.
std::string LocalName(std::string const& step)
{
    std::size_t const colon = step.find(':');
    return colon == std::string::npos ? step : step.substr(colon + 1);
}

} // namespace

namespace
{

UTF8String U8(std::string const& text)
{
    return zephcore::ToUTF8(text);
}

bool IsLangAlt(EntryDefinition const& entry)
{
    static UTF8String const langAlt = U8("langAlt");
    return entry.typeId && *entry.typeId == langAlt;
}

// The form the definitions give; false if they do not know the path.
bool FormFromDefinitions(std::string const& schemaNamespace, std::string const& propertyName,
                         PropertyForm& form)
{
    Path const path(U8(schemaNamespace), U8(propertyName));
    boost::shared_ptr<EntryDefinition> const entry = PathEntryDefinition(path);
    if (!entry)
        return false;
    boost::shared_ptr<TypeDefinition> const type = TypeEntryDefinition(path);
    boost::optional<PrimitiveType> const kind = PrimitiveTypeOfPath(path);
    if (!kind)
    {
        form.isStructure = type && IsStructType(*type);
        return true;
    }
    switch (*kind)
    {
    case kPrimitiveUnorderedArray:
        form.arrayForm = xmp::kArrayBag;
        break;
    case kPrimitiveOrderedArray:
        form.arrayForm = xmp::kArraySeq;
        break;
    case kPrimitiveAlternative:
        form.arrayForm =
            IsLangAlt(*entry) || (type && IsLangAlt(*type)) ? xmp::kArrayAltText : xmp::kArrayAlt;
        break;
    default:
        return true;
    }
    if (boost::optional<UTF8String> const element = ElementTypeIdOf(*entry))
    {
        boost::shared_ptr<TypeDefinition> const elementType = TypeIdDefinition(*element);
        form.itemsAreStructures = elementType && IsStructType(*elementType);
    }
    return true;
}

} // namespace

PropertyForm FormOfAbsentProperty(std::string const& schemaNamespace,
                                  std::string const& propertyName)
{
    // The last step decides: "Tracks[2]/xmpDM:markers" is a markers list.
    std::string step = propertyName;
    std::string stepNamespace = schemaNamespace;
    std::size_t const slash = propertyName.rfind('/');
    if (slash != std::string::npos)
    {
        step = propertyName.substr(slash + 1);
        std::size_t const colon = step.find(':');
        if (colon != std::string::npos)
        {
            // A field is qualified by its own prefix: look its namespace up.
            stepNamespace = xmp::NamespaceOfPrefix(step.substr(0, colon).c_str());
        }
    }
    if (!step.empty() && step.back() == ']')
        return PropertyForm(); // an item: simple unless its array says otherwise
    PropertyForm defined;
    if (FormFromDefinitions(schemaNamespace, propertyName, defined))
        return defined;
    auto const found = WellKnownForms().find(Key(stepNamespace, LocalName(step)));
    return found == WellKnownForms().end() ? PropertyForm() : found->second;
}

std::string SuggestedPrefix(std::string const& schemaNamespace)
{
    boost::shared_ptr<SchemaDefinition> const schema = NamespaceDefinition(U8(schemaNamespace));
    if (!schema)
        return std::string();
    return std::string(reinterpret_cast<char const*>(schema->schemaPrefix.data()),
                       schema->schemaPrefix.size());
}

} // namespace detail
} // namespace zephmetadata
