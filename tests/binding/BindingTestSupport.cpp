#include "BindingTestSupport.h"

#include "zephmetadataui/Module.h"
#include "zephmetadataui/UI_DateTextEdit.h"

#include <zephui/UI_Checkbox.h>
#include <zephui/UI_HotTextNumber.h>
#include <zephui/UI_Popup.h>
#include <zephui/UI_StarRating.h>
#include <zephui/UI_StaticText.h>
#include <zephui/UI_TextEdit.h>
#include <zephui/UI_URLEdit.h>

#include <boost/core/demangle.hpp>
#include <boost/make_shared.hpp>

#include <gtest/gtest.h>

#include <sstream>

namespace bindingtest
{
namespace
{

// The library is started once for the whole test program, as a host would.
class ModuleEnvironment : public ::testing::Environment
{
public:
    void SetUp() override { zephmetadataui::Initialize(); }
    void TearDown() override { zephmetadataui::Terminate(); }
};

::testing::Environment* const environment =
    ::testing::AddGlobalTestEnvironment(new ModuleEnvironment);

std::string S(zephcore::UTF16String const& text)
{
    return zephcore::ToStdString(text);
}

std::vector<std::pair<std::string, std::string>> Pairs(std::string const& list)
{
    std::vector<std::pair<std::string, std::string>> pairs;
    std::stringstream in(list);
    for (std::string entry; std::getline(in, entry, ',');)
    {
        std::size_t const equals = entry.find('=');
        pairs.emplace_back(entry.substr(0, equals),
                           equals == std::string::npos ? entry : entry.substr(equals + 1));
    }
    return pairs;
}

} // namespace

std::string Packet(std::string const& description)
{
    return "<x:xmpmeta xmlns:x=\"adobe:ns:meta/\"><rdf:RDF "
           "xmlns:rdf=\"http://www.w3.org/1999/02/22-rdf-syntax-ns#\"><rdf:Description "
           "rdf:about=\"\" xmlns:dc=\"http://purl.org/dc/elements/1.1/\" "
           "xmlns:xmp=\"http://ns.adobe.com/xap/1.0/\" "
           "xmlns:tiff=\"http://ns.adobe.com/tiff/1.0/\" "
           "xmlns:crs=\"http://ns.adobe.com/camera-raw-settings/1.0/\" "
           "xmlns:exif=\"http://ns.adobe.com/exif/1.0/\">" +
           description + "</rdf:Description></rdf:RDF></x:xmpmeta>";
}

boost::shared_ptr<zephmetadata::BufferProviderImpl> MakeProvider(std::string const& description)
{
    auto provider = zephmetadata::BufferProviderImpl::Create(Packet(description));
    EXPECT_TRUE(provider->IsValid()) << "test packet did not parse";
    return provider;
}

zephmetadata::Path P(char const* ns, char const* name, bool readOnly)
{
    return zephmetadata::Path(zephcore::ToUTF8(ns), zephcore::ToUTF8(name), readOnly);
}

zephmetadata::Value V(boost::shared_ptr<zephmetadata::MetaDataProvider> const& provider,
                      char const* ns, char const* name, bool readOnly)
{
    return zephmetadata::Value(P(ns, name, readOnly), provider);
}

std::string Read(zephmetadata::Value const& value)
{
    zephmetadata::MetaDataReadAccess access(value.provider);
    zephcore::UTF8String text;
    zephmetadata::GetValueResult result = zephmetadata::kGetValueAbsent;
    if (zephmetadata::GetValue(*access, value, text, &result))
        return zephcore::ToStdString(text);
    return result == zephmetadata::kGetValueMultiple ? "<multiple>" : "<absent>";
}

boost::shared_ptr<zephmetadataui::ViewItem> Item(zephmetadata::Path const& path,
                                                 std::string const& described)
{
    auto item = boost::make_shared<zephmetadataui::ViewItem>(path);
    std::stringstream in(described);
    std::string format, hints, choices;
    std::getline(std::getline(std::getline(in, format, '|'), hints, '|'), choices);
    item->format = zephcore::ToUTF8(format.c_str());
    for (auto const& [name, value] : Pairs(hints))
        item->SetHint(name.c_str(), value.c_str());
    for (auto const& [value, label] : Pairs(choices))
    {
        auto choice = boost::make_shared<zephmetadataui::ChoiceDefinition>();
        choice->value = zephcore::ToUTF8(value.c_str());
        choice->label = zephcore::UTF8to16(label);
        item->choices.push_back(choice);
    }
    return item;
}

std::string EveryKindDescription()
{
    return "<xmp:Label>Red</xmp:Label><xmp:CreateDate>2009-05-12T14:30:00+02:00</xmp:CreateDate>"
           "<xmp:BaseURL>http://example.com/harbour</xmp:BaseURL><xmp:Rating>3</xmp:Rating>"
           "<crs:HasCrop>True</crs:HasCrop><crs:Temperature>5500</crs:Temperature>"
           "<crs:Exposure2012>0.5</crs:Exposure2012><crs:ToneCurveName>Linear</crs:ToneCurveName>"
           "<tiff:Orientation>1</tiff:Orientation><exif:FNumber>28/10</exif:FNumber>"
           "<dc:subject><rdf:Bag><rdf:li>sea</rdf:li><rdf:li>storm</rdf:li></rdf:Bag></dc:subject>"
           "<dc:title><rdf:Alt><rdf:li xml:lang=\"x-default\">Harbour at dawn</rdf:li></rdf:Alt>"
           "</dc:title>";
}

std::string KindOf(boost::shared_ptr<zephmetadataui::Control> const& control)
{
    if (!control)
        return "null";
    std::string const name = boost::core::demangle(typeid(*control->view).name());
    return name.substr(name.rfind("::") + 2);
}

std::string Shown(boost::shared_ptr<zephmetadataui::Control> const& control)
{
    if (auto* date = As<zephmetadataui::UI_DateTextEdit>(control))
        return S(date->UI_TextEdit::GetValue());
    if (auto* text = As<zephui::UI_TextEdit>(control))
        return S(text->GetValue());
    if (auto* url = As<zephui::UI_URLEdit>(control))
        return S(url->GetValue());
    if (auto* label = As<zephui::UI_StaticText>(control))
        return S(label->GetValue());
    if (auto* box = As<zephui::UI_Checkbox>(control))
        return box->IsChecked() ? "checked" : "unchecked";
    if (auto* popup = As<zephui::UI_Popup>(control))
        return S(popup->GetValueString());
    if (auto* number = As<zephui::UI_HotTextNumber>(control))
        return std::to_string(number->GetValue());
    if (auto* stars = As<zephui::UI_StarRating>(control))
        return std::to_string(stars->GetValue());
    return "?";
}

void WriteElsewhere(zephmetadata::Value const& value, char const* text, bool notify)
{
    zephmetadata::MetaDataUpdateAccess access(value.provider);
    bool const changed = zephmetadata::SetValue(*access, value, zephcore::ToUTF8(text));
    if (changed && notify)
        access.AddChange(value);
}

} // namespace bindingtest
