#pragma once
// Helpers of the binding tests: packets written in the test, providers over
// them, values, and reading back what the packet holds now.

#include "contracts/Model.h"

#include <boost/shared_ptr.hpp>

#include <string>

namespace bindingtest {

constexpr char const* kDC = "http://purl.org/dc/elements/1.1/";
constexpr char const* kXMP = "http://ns.adobe.com/xap/1.0/";
constexpr char const* kRights = "http://ns.adobe.com/xap/1.0/rights/";
constexpr char const* kCRS = "http://ns.adobe.com/camera-raw-settings/1.0/";
constexpr char const* kPS = "http://ns.adobe.com/photoshop/1.0/";
constexpr char const* kTIFF = "http://ns.adobe.com/tiff/1.0/";
constexpr char const* kEXIF = "http://ns.adobe.com/exif/1.0/";

// Wraps rdf:Description content (prefixes dc, xmp, xmpRights, crs,
// photoshop, tiff, exif declared) into a whole packet.
std::string Packet(std::string const& description);

boost::shared_ptr<zephmetadata::BufferProviderImpl> MakeProvider(std::string const& description);

zephmetadata::Path P(char const* ns, char const* name, bool readOnly = false);
zephmetadata::Value V(boost::shared_ptr<zephmetadata::MetaDataProvider> const& provider, char const* ns,
                      char const* name, bool readOnly = false);

// The value's text as the model reads it now, or "<absent>" / "<multiple>".
std::string Read(zephmetadata::Value const& value);

zephcore::UTF16String U16(char const* text);
std::string S(zephcore::UTF16String const& text);

// Counts the change notifications of a provider.
class ChangeCounter {
public:
    explicit ChangeCounter(boost::shared_ptr<zephmetadata::MetaDataProvider> const& provider);
    ~ChangeCounter();
    int Count() const { return *count; }

private:
    boost::shared_ptr<int> count;
    zephmetadata::MetaDataProvider::ChangedListener listener;
};

} // namespace bindingtest
