// Resources by type and name without regard to case, and images whose scaled
// siblings are chosen by the display scale of the supplier.

#include "zephui/Drawbot.h"
#include "zephui/DrawbotImageResourceCache.h"
#include "zephui/QtDrawing.h"
#include "zephui/ResourceManager.h"
#include "zephui/Theme.h"
#include "zephui/UI_NodeManager.h"
#include "zephui/UI_SubView.h"

#include <QDir>
#include <QFile>
#include <QImage>
#include <QTemporaryDir>
#include <QWidget>

#include <gtest/gtest.h>

using namespace zephui;

namespace
{

// A folder laid out as a library's resources: PNG/ and xml/.
struct ResourceFolder
{
    ResourceFolder()
    {
        QDir(dir.path()).mkpath(QStringLiteral("PNG"));
        QDir(dir.path()).mkpath(QStringLiteral("xml"));
        for (auto const& [name, side] :
             {std::pair("SP_LINK_SM_N_D", 16), std::pair("SP_LINK_SM_N_D_AT_2X", 32),
              std::pair("SP_LINK_SM_N_D_AT_3TO2X", 24), std::pair("P_ICONWELL_N", 18)})
        {
            QImage image(side, side, QImage::Format_ARGB32);
            image.fill(Qt::red);
            EXPECT_TRUE(image.save(dir.filePath(QStringLiteral("PNG/%1.png").arg(name)), "PNG"));
        }
        QFile xml(dir.filePath(QStringLiteral("xml/METADATADIALOG.xml")));
        EXPECT_TRUE(xml.open(QIODevice::WriteOnly));
        xml.write("<?xml version='1.0'?>\r\n<prop.map version='4'>\r\n");
    }
    QTemporaryDir dir;
};

} // namespace

TEST(ResourceTest, NamesAndTypesAreFoundWithoutRegardToCaseAndAMissingRootHasNone)
{
    ResourceFolder folder;
    OS_ResourceManager const resources(folder.dir.path().toStdString());
    EXPECT_TRUE(resources.HasBinary("png", "sp_link_sm_n_d_at_2x"));
    EXPECT_FALSE(resources.HasBinary("PNG", "SP_Link_Sm_N"));
    std::vector<std::uint8_t> data;
    ASSERT_TRUE(resources.GetBinary("XML", "MetadataDialog", data));
    EXPECT_EQ(std::string(data.begin(), data.begin() + 5), "<?xml");
    EXPECT_FALSE(resources.GetBinary("XML", "NoSuchDialog", data));
    EXPECT_TRUE(data.empty());

    OS_ResourceManager const missing("/no/such/folder/anywhere");
    EXPECT_FALSE(missing.GetBinary("PNG", "X", data));
    EXPECT_FALSE(OS_ResourceManager(static_cast<void const*>(nullptr)).HasBinary("PNG", "X"));
    // The toolkit's own resources are found from an address inside the library.
    OS_ResourceManager const byAddress(reinterpret_cast<void const*>(&GetIconType));
    EXPECT_EQ(byAddress.GetRoot(), ":/zephui");
    EXPECT_TRUE(byAddress.HasBinary("PNG", "SP_Alert_Xs_N_D_AT_3TO2X"));
}

// The 2x sibling from 2x up, the 1.5x one from 1.5x, the base below; a name
// without siblings gives its base; the layout size is the base image's.
TEST(ResourceTest, ImageSiblingIsPickedForTheScaleAndLoadedOnce)
{
    ResourceFolder folder;
    OS_ResourceManager const resources(folder.dir.path().toStdString());
    DrawbotImageResourceCache cache;
    for (auto const& [scale, pixels] :
         {std::pair(1.0f, 16), std::pair(1.25f, 16), std::pair(1.5f, 24), std::pair(1.75f, 24),
          std::pair(2.0f, 32), std::pair(3.0f, 32)})
    {
        QtSupplier const supplier(scale);
        auto const get = [&](char const* name)
        {
            return cache.GetImage(&resources, &supplier, name, kImageFileTypePNG,
                                  zephcore::ImmutableString::sNullString);
        };
        boost::intrusive_ptr<ImageInterface> const image = get("SP_Link_Sm_N_D");
        ASSERT_TRUE(image) << scale;
        EXPECT_EQ(image->GetPixelWidth(), pixels) << scale;
        EXPECT_FLOAT_EQ(image->GetWidth(), 16.0f) << scale;
        EXPECT_EQ(get("sp_link_sm_n_d"), image) << scale;
        EXPECT_EQ(get("P_IconWell_N")->GetPixelWidth(), 18) << scale;
        EXPECT_EQ(get("SP_Nothing"), nullptr) << scale;
    }
    // Without the 1.5x sibling, 1.5x takes the 2x one.
    QFile::remove(folder.dir.filePath(QStringLiteral("PNG/SP_LINK_SM_N_D_AT_3TO2X.png")));
    OS_ResourceManager const fewer(folder.dir.path().toStdString());
    EXPECT_EQ(DrawbotImageResourceCache::ChooseResourceName(&fewer, "PNG", "SP_Link_Sm_N_D", 1.5f),
              "SP_LINK_SM_N_D_AT_2X");
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
    // The toolkit's own icons come at twice the pixels for twice the scale.
    QtSupplier const normal(1.0f), retina(2.0f);
    EXPECT_EQ(UI_NodeManager::Get()->GetImage(&retina, "SP_Info_Sm_N")->GetPixelWidth(),
              2 * UI_NodeManager::Get()->GetImage(&normal, "SP_Info_Sm_N")->GetPixelWidth());
}
