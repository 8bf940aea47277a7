#pragma once
// Helpers of the binding tests: packets, providers, values, controls.

#include "contracts/Model.h"
#include "zephmetadataui/Control.h"

#include <string>

namespace bindingtest
{

constexpr char const* kDC = "http://purl.org/dc/elements/1.1/";
constexpr char const* kXMP = "http://ns.adobe.com/xap/1.0/";
constexpr char const* kCRS = "http://ns.adobe.com/camera-raw-settings/1.0/";
constexpr char const* kTIFF = "http://ns.adobe.com/tiff/1.0/";
constexpr char const* kEXIF = "http://ns.adobe.com/exif/1.0/";

// A packet of rdf:Description content, prefixes dc, xmp, crs, tiff, exif.
std::string Packet(std::string const& description);

boost::shared_ptr<zephmetadata::BufferProviderImpl> MakeProvider(std::string const& description);

zephmetadata::Path P(char const* ns, char const* name, bool readOnly = false);
zephmetadata::Value V(boost::shared_ptr<zephmetadata::MetaDataProvider> const& provider,
                      char const* ns, char const* name, bool readOnly = false);

// The value's text as the model reads it now, or "<absent>" / "<multiple>".
std::string Read(zephmetadata::Value const& value);

// A provider whose paths never apply, as for a file type without a schema.
class NothingApplicableProvider : public zephmetadata::BufferProviderImpl
{
public:
    explicit NothingApplicableProvider(std::string const& packet)
        : BufferProviderImpl(reinterpret_cast<unsigned char const*>(packet.data()), packet.size())
    {
    }
    bool QueryPathStatus(zephmetadata::Path const& path,
                         zephmetadata::PathStatus status) const override
    {
        return status != zephmetadata::kPathStatusApplicable &&
               BufferProviderImpl::QueryPathStatus(path, status);
    }
};

// A view item for path from "format|hints|choices", hints as "name=value,...",
// choices as "value=label,..." (a bare value is its own label).
boost::shared_ptr<zephmetadataui::ViewItem> Item(zephmetadata::Path const& path,
                                                 std::string const& described);

// A packet with one property of every kind of control.
std::string EveryKindDescription();

template <class T> T* As(boost::shared_ptr<zephmetadataui::Control> const& control)
{
    return control ? dynamic_cast<T*>(control->view.get()) : nullptr;
}

// The class of a control's view ("UI_TextEdit"), and what it shows: its
// text, "checked" or "unchecked", or a number.
std::string KindOf(boost::shared_ptr<zephmetadataui::Control> const& control);
std::string Shown(boost::shared_ptr<zephmetadataui::Control> const& control);

// Writes a value as another part of the host would, reported or silently.
void WriteElsewhere(zephmetadata::Value const& value, char const* text, bool notify = true);

} // namespace bindingtest
