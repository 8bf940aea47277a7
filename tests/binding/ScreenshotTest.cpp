// One bound control of each kind on a sample packet, rendered to
// binding_controls.png in the build folder, for a person to look at.

#include "BindingTestSupport.h"

#include "zephmetadataui/InlineControlFactory.h"

#include "contracts/Toolkit.h"

#include <zephui/NodeHostWidget.h>

#include <QImage>
#include <QPixmap>
#include <QSet>

#include <gtest/gtest.h>

using namespace zephmetadataui;
using namespace bindingtest;

namespace
{

struct Row
{
    char const* ns;
    char const* name;
};

// Distinct colours inside a rectangle: a drawn control has more than one.
int ColoursIn(QImage const& image, QRect const& rect)
{
    QSet<QRgb> colours;
    QRect const inside = rect.intersected(image.rect());
    for (int y = inside.top(); y <= inside.bottom(); ++y)
        for (int x = inside.left(); x <= inside.right(); ++x)
            colours.insert(image.pixel(x, y));
    return colours.size();
}

} // namespace

TEST(ScreenshotTest, OneBoundControlOfEachKindRendersToAPicture)
{
    auto const provider =
        MakeProvider(EveryKindDescription() + "<xmp:ModifyDate>sometime in May</xmp:ModifyDate>"
                                              "<xmpRights:Marked>True</xmpRights:Marked>");
    Row const rows[] = {{kXMP, "Label"},        {kDC, "title"},          {kDC, "subject"},
                        {kXMP, "CreateDate"},   {kXMP, "ModifyDate"},    {kXMP, "BaseURL"},
                        {kXMP, "Rating"},       {kCRS, "HasCrop"},       {kCRS, "Temperature"},
                        {kCRS, "Exposure2012"}, {kCRS, "ToneCurveName"}, {kTIFF, "Orientation"},
                        {kRights, "Marked"},    {kEXIF, "FNumber"}};

    float const width = 520.0f;
    boost::intrusive_ptr<UI_SubView> const root(new UI_SubView(RectF(0, 0, width, 10)));
    root->UI_Show(true);
    std::vector<boost::shared_ptr<Control>> controls;
    std::vector<boost::intrusive_ptr<UI_StaticText>> labels;
    float y = 10.0f;
    for (Row const& row : rows)
    {
        Value const value = V(provider, row.ns, row.name);
        boost::intrusive_ptr<UI_StaticText> const label(
            new UI_StaticText(PathEntryDefinition(value)->label));
        label->UI_Show(true);
        root->ChildPushBack(label);
        auto const control = InlineControlFactory(value, root);
        ASSERT_TRUE(control) << row.name;
        float const height = std::max(22.0f, control->view->UI_GetLocalRectF(false).height);
        label->UI_SetLocalRectF(RectF(10, y + 3, 150, 18));
        control->view->UI_SetLocalRectF(RectF(170, y, width - 180, height));
        labels.push_back(label);
        controls.push_back(control);
        y += height + 8.0f;
    }
    root->UI_SetLocalRectF(RectF(0, 0, width, y + 2));

    zephui::NodeHostWidget host(root);
    host.resize(int(width), int(y + 2));
    QImage const image = host.grab().toImage();
    ASSERT_FALSE(image.isNull());
    QString const file = QStringLiteral(ZEPH_BINARY_DIR "/binding_controls.png");
    ASSERT_TRUE(image.save(file));
    std::cout << "screenshot: " << file.toStdString() << std::endl;

    for (auto const& control : controls)
    {
        RectF const r = control->view->UI_GetLocalRectF(true);
        EXPECT_GT(ColoursIn(image, QRect(int(r.left), int(r.top), int(r.width), int(r.height))), 2)
            << KindOf(control) << " drew nothing";
    }
}
