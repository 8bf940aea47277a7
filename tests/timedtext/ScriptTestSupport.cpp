#include "ScriptTestSupport.h"

#include "timedtext/TimedTextDrawing.h"

#include <zephui/QtDrawing.h>

#include <gtest/gtest.h>

#include <cmath>

namespace scripttest
{

namespace
{

zephcore::UTF16String U16(std::string const& text)
{
    return zephcore::UTF8to16(std::string_view(text));
}

zephui::FontInterface const& Font()
{
    static auto const font =
        zephmetadataui::timedtext::MakeTimedTextFont(zephui::SharedSupplierForScale(1.0f));
    return *font;
}

bool IsSearchFill(QRgb pixel)
{
    return std::abs(qRed(pixel) - 252) <= 3 && std::abs(qGreen(pixel) - 243) <= 3 &&
           std::abs(qBlue(pixel) - 27) <= 3;
}

} // namespace

std::string DialogueBody(std::vector<Speech> const& speeches)
{
    std::string body = "<xmpScript:dialogSequence><rdf:Seq>";
    for (auto const& [character, dialog] : speeches)
    {
        body += "<rdf:li rdf:parseType=\"Resource\">";
        if (!character.empty())
            body += "<xmpScript:character>" + character + "</xmpScript:character>";
        if (!dialog.empty())
            body += "<xmpScript:dialog>" + dialog + "</xmpScript:dialog>";
        body += "</rdf:li>";
    }
    return body + "</rdf:Seq></xmpScript:dialogSequence>";
}

boost::shared_ptr<zephmetadata::BufferProviderImpl> ScriptProvider(std::string const& body)
{
    auto provider = zephmetadata::BufferProviderImpl::Create(
        "<x:xmpmeta xmlns:x=\"adobe:ns:meta/\"><rdf:RDF "
        "xmlns:rdf=\"http://www.w3.org/1999/02/22-rdf-syntax-ns#\">"
        "<rdf:Description rdf:about=\"\" xmlns:dc=\"http://purl.org/dc/elements/1.1/\" "
        "xmlns:xmpScript=\"http://ns.adobe.com/xmp/1.0/Script/\">" +
        body + "</rdf:Description></rdf:RDF></x:xmpmeta>");
    EXPECT_TRUE(provider && provider->IsValid());
    return provider;
}

float Width(std::string const& text)
{
    return Font().GetStringWidth(U16(text));
}

float TagWidth(std::string const& name)
{
    return Width("[") + Width(name) + Width("]") + zephmetadataui::timedtext::kGap;
}

std::vector<Lit> LitStretches(QImage const& shot, float scrollTop)
{
    std::vector<Lit> lit;
    QImage const image = shot.convertToFormat(QImage::Format_RGB32);
    // A row's fill starts half a pixel above its band of 16; its second
    // pixel line lies above the tallest letter.
    int const firstRow = int(std::floor(scrollTop / 16.0f));
    for (int row = firstRow;; ++row)
    {
        int const y = int(std::lround(16.0f * float(row) - scrollTop)) + 1;
        if (y >= image.height())
            break;
        if (y < 0)
            continue;
        QRgb const* line = reinterpret_cast<QRgb const*>(image.constScanLine(y));
        for (int x = 0; x < image.width(); ++x)
        {
            if (!IsSearchFill(line[x]))
                continue;
            int end = x;
            while (end < image.width() && IsSearchFill(line[end]))
                ++end;
            lit.push_back(Lit{row, float(x), float(end)});
            x = end;
        }
    }
    return lit;
}

Lit LitText(int row, float x, std::string const& before, std::string const& hit)
{
    float const left = x + Width(before);
    return Lit{row, left, left + Width(hit)};
}

Lit LitTag(int row, std::string const& name)
{
    return Lit{row, 2.0f, 2.0f + TagWidth(name) - zephmetadataui::timedtext::kGap};
}

void ExpectLit(std::vector<Lit> const& shown, std::vector<Lit> const& expected)
{
    ASSERT_EQ(shown.size(), expected.size()) << "lit stretches";
    for (std::size_t i = 0; i < shown.size(); ++i)
    {
        EXPECT_EQ(shown[i].row, expected[i].row) << "stretch " << i;
        EXPECT_NEAR(shown[i].left, expected[i].left, 1.0f) << "stretch " << i;
        EXPECT_NEAR(shown[i].right, expected[i].right, 1.0f) << "stretch " << i;
    }
}

} // namespace scripttest
