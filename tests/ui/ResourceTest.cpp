// Resources by type and name without regard to case, and images whose scaled
// siblings are chosen by the display scale of the supplier.

#include "zephui/DrawbotImageResourceCache.h"
#include "zephui/QtDrawing.h"
#include "zephui/ResourceManager.h"
#include "zephui/Theme.h"
#include "zephui/UI_NodeManager.h"
#include "zephui/UI_SubView.h"

#include <QDir>
#include <QFile>
#include <QImage>
#include <QPainter>
#include <QTemporaryDir>
#include <QWidget>

#include <gtest/gtest.h>

using namespace zephui;

namespace
{

void WritePng(QString const& path, int width, int height, QColor colour)
{
    QImage image(width, height, QImage::Format_ARGB32);
    image.fill(colour);
    ASSERT_TRUE(image.save(path, "PNG"));
}

// A folder laid out as a library's resources: PNG/ and XML/.
struct ResourceFolder
{
    ResourceFolder()
    {
        QDir(dir.path()).mkpath(QStringLiteral("PNG"));
        QDir(dir.path()).mkpath(QStringLiteral("xml"));
        WritePng(dir.filePath(QStringLiteral("PNG/SP_LINK_SM_N_D.png")), 16, 16, Qt::red);
        WritePng(dir.filePath(QStringLiteral("PNG/SP_LINK_SM_N_D_AT_2X.png")), 32, 32, Qt::green);
        WritePng(dir.filePath(QStringLiteral("PNG/SP_LINK_SM_N_D_AT_3TO2X.png")), 24, 24, Qt::blue);
        WritePng(dir.filePath(QStringLiteral("PNG/P_ICONWELL_N.png")), 18, 18, Qt::gray);
        QFile xml(dir.filePath(QStringLiteral("xml/METADATADIALOG.xml")));
        EXPECT_TRUE(xml.open(QIODevice::WriteOnly));
        xml.write("<?xml version='1.0'?>\r\n<prop.map version='4'>\r\n");
    }
    QTemporaryDir dir;
};

} // namespace

TEST(ResourceTest, NamesAndTypesAreFoundWithoutRegardToCase)
{
    ResourceFolder folder;
    OS_ResourceManager const resources(folder.dir.path().toStdString());

    EXPECT_TRUE(resources.HasBinary("PNG", "SP_Link_Sm_N_D"));
    EXPECT_TRUE(resources.HasBinary("png", "sp_link_sm_n_d_at_2x"));
    EXPECT_FALSE(resources.HasBinary("PNG", "SP_Link_Sm_N"));
    std::vector<std::uint8_t> data;
    ASSERT_TRUE(resources.GetBinary("XML", "MetadataDialog", data));
    EXPECT_EQ(std::string(data.begin(), data.begin() + 5), "<?xml");
    EXPECT_FALSE(resources.GetBinary("XML", "NoSuchDialog", data));
    EXPECT_TRUE(data.empty());

    std::vector<std::string> names;
    resources.GetResourceDataNames("PNG", names);
    EXPECT_EQ(names, (std::vector<std::string>{"P_ICONWELL_N", "SP_LINK_SM_N_D",
                                               "SP_LINK_SM_N_D_AT_2X", "SP_LINK_SM_N_D_AT_3TO2X"}));
    resources.GetResourceDataNames("EVE", names);
    EXPECT_TRUE(names.empty());
}

TEST(ResourceTest, MissingRootGivesNothingAndNoCrash)
{
    OS_ResourceManager const resources("/no/such/folder/anywhere");
    std::vector<std::uint8_t> data;
    EXPECT_FALSE(resources.GetBinary("PNG", "X", data));
    EXPECT_FALSE(resources.HasBinary("PNG", ""));
    OS_ResourceManager const fromNull(static_cast<void const*>(nullptr));
    EXPECT_FALSE(fromNull.HasBinary("PNG", "SP_Info_Sm_N"));
}

struct SiblingCase
{
    float scale;
    int expectedPixels;
};

class ImageSiblingTest : public testing::TestWithParam<SiblingCase>
{
};

TEST_P(ImageSiblingTest, PicksSiblingForScale)
{
    ResourceFolder folder;
    OS_ResourceManager const resources(folder.dir.path().toStdString());
    DrawbotImageResourceCache cache;
    QtSupplier const supplier(GetParam().scale);

    boost::intrusive_ptr<ImageInterface> image =
        cache.GetImage(&resources, &supplier, "SP_Link_Sm_N_D", kImageFileTypePNG,
                       zephcore::ImmutableString::sNullString);
    ASSERT_TRUE(image);
    EXPECT_EQ(image->GetPixelWidth(), GetParam().expectedPixels);
    EXPECT_FLOAT_EQ(image->GetWidth(), 16.0f) << "layout size stays that of the base image";
    // A name without siblings gives the base at every scale.
    boost::intrusive_ptr<ImageInterface> well =
        cache.GetImage(&resources, &supplier, "P_IconWell_N", kImageFileTypePNG,
                       zephcore::ImmutableString::sNullString);
    ASSERT_TRUE(well);
    EXPECT_EQ(well->GetPixelWidth(), 18);
    EXPECT_EQ(cache.GetImage(&resources, &supplier, "SP_Nothing", kImageFileTypePNG,
                             zephcore::ImmutableString::sNullString),
              nullptr);
    // Loaded once.
    EXPECT_EQ(cache.GetImage(&resources, &supplier, "sp_link_sm_n_d", kImageFileTypePNG,
                             zephcore::ImmutableString::sNullString),
              image);
}

INSTANTIATE_TEST_SUITE_P(Scales, ImageSiblingTest,
                         testing::Values(SiblingCase{1.0f, 16}, SiblingCase{1.25f, 16},
                                         SiblingCase{1.5f, 24}, SiblingCase{1.75f, 24},
                                         SiblingCase{2.0f, 32}, SiblingCase{3.0f, 32}));

TEST(ResourceTest, SiblingFallsBackWhenTheWantedOneIsMissing)
{
    ResourceFolder folder;
    QFile::remove(folder.dir.filePath(QStringLiteral("PNG/SP_LINK_SM_N_D_AT_3TO2X.png")));
    OS_ResourceManager const resources(folder.dir.path().toStdString());
    EXPECT_EQ(
        DrawbotImageResourceCache::ChooseResourceName(&resources, "PNG", "SP_Link_Sm_N_D", 1.5f),
        "SP_LINK_SM_N_D_AT_2X");
    EXPECT_EQ(
        DrawbotImageResourceCache::ChooseResourceName(&resources, "PNG", "SP_Link_Sm_N_D", 1.0f),
        "SP_LINK_SM_N_D");
    EXPECT_EQ(DrawbotImageResourceCache::ChooseResourceName(nullptr, "PNG", "SP_Link_Sm_N_D", 1.0f),
              "");
}

TEST(ResourceTest, ToolkitCarriesItsOwnIcons)
{
    UI_NodeManager* manager = UI_NodeManager::Get();
    QtSupplier const normal(1.0f);
    QtSupplier const retina(2.0f);
    for (char const* name : {"SP_Info_Sm_N", "SP_Alert_Xs_N", "SP_Alert_Md_N", "SP_Alert_Md_N_D"})
    {
        boost::intrusive_ptr<ImageInterface> one = manager->GetImage(&normal, name);
        boost::intrusive_ptr<ImageInterface> two = manager->GetImage(&retina, name);
        ASSERT_TRUE(one) << name;
        ASSERT_TRUE(two) << name;
        EXPECT_EQ(two->GetPixelWidth(), one->GetPixelWidth() * 2) << name;
        EXPECT_FLOAT_EQ(two->GetWidth(), one->GetWidth()) << name;
    }
    EXPECT_EQ(manager->GetImage(&normal, "SP_Info_Sm_N")->GetPixelWidth(), 16);
    // The toolkit's resources are found from an address inside the library too.
    OS_ResourceManager const byAddress(reinterpret_cast<void const*>(&GetIconType));
    EXPECT_EQ(byAddress.GetRoot(), ":/zephui");
    EXPECT_TRUE(byAddress.HasBinary("PNG", "SP_Alert_Xs_N_D_AT_3TO2X"));
}

TEST(ResourceTest, PaintingAtTwiceTheScaleHandsTheNodeA2xSupplier)
{
    struct ScaleSpy : UI_SubView
    {
        void UI_Draw(Drawbot* drawbot) override
        {
            seenScale = drawbot->GetSupplier()->GetDisplayScale();
            drawbot->FillRect(RectF(0, 0, 4, 4), ColorRGBA(1, 0, 0, 1));
        }
        float seenScale = 0.0f;
    };
    boost::intrusive_ptr<ScaleSpy> node(new ScaleSpy);
    node->UI_SetLocalRectF(RectF(0, 0, 20, 10));
    QImage image(40, 20, QImage::Format_ARGB32);
    image.setDevicePixelRatio(2.0);
    image.fill(Qt::white);
    node->UI_GetWidget()->render(&image);
    EXPECT_FLOAT_EQ(node->seenScale, 2.0f);
    EXPECT_EQ(image.pixelColor(7, 7), QColor(Qt::red)) << "the 4-unit square covers 8 pixels";
    EXPECT_NE(image.pixelColor(9, 9), QColor(Qt::red));
}
