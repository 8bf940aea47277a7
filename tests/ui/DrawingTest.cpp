// Drawing through Drawbot: rectangles, lines, clips, text at a baseline and in
// its width; colours of the theme that applies to a node, skins; resources by
// name in any case, and images whose siblings suit the display scale.

#include "zephui/Drawbot.h"
#include "zephui/DrawbotImageResourceCache.h"
#include "zephui/QtDrawing.h"
#include "zephui/ResourceManager.h"
#include "zephui/Skin.h"
#include "zephui/Theme.h"
#include "zephui/UI_SubView.h"

#include <QDir>
#include <QFile>
#include <QImage>
#include <QPainter>
#include <QTemporaryDir>
#include <QWidget>

#include <gtest/gtest.h>

using namespace zephui;
using zephcore::AsciiToUTF16;

namespace
{

struct Canvas
{
    explicit Canvas(int w = 200, int h = 60, qreal scale = 1.0)
        : image(int(w * scale), int(h * scale), QImage::Format_ARGB32)
    {
        image.setDevicePixelRatio(scale);
        image.fill(Qt::white);
        painter.begin(&image);
    }
    ~Canvas() { painter.end(); }
    QImage& Done()
    {
        painter.end();
        return image;
    }
    // Pixels of r that are not white.
    int InkInRect(QRect r) const
    {
        int n = 0;
        for (int y = r.top(); y <= r.bottom(); ++y)
            for (int x = r.left(); x <= r.right(); ++x)
                n += image.pixelColor(x, y) != QColor(Qt::white);
        return n;
    }
    QImage image;
    QPainter painter;
};

// Restores the application theme after a test that changes it.
struct ThemeGuard
{
    ~ThemeGuard() { SetApplicationTheme("light"); }
};

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
    }
    QTemporaryDir dir;
};

} // namespace

TEST(DrawbotTest, FillsLinesAndClips)
{
    Canvas canvas;
    Drawbot drawbot(SharedSupplierForScale(1.0f), &canvas.painter);
    drawbot.FillRect(RectF(10, 10, 20, 10), ColorRGBA(1, 0, 0, 1));
    utils::DrawLineRect(&drawbot, utils::FormRect(PointF(50, 5), PointF(51, 45)),
                        ColorRGBA(0, 0, 1, 1));
    drawbot.PushClip(RectF(100, 0, 10, 60));
    drawbot.FillRect(RectF(90, 10, 40, 10), ColorRGBA(0, 1, 0, 1));
    drawbot.PopClip();
    drawbot.PopClip(); // more pops than pushes do nothing
    drawbot.FillRect(RectF(150, 10, 5, 5), ColorRGBA(0, 0, 0, 1));
    QImage const& image = canvas.Done();

    EXPECT_EQ(image.pixelColor(15, 15), QColor(Qt::red));
    EXPECT_EQ(image.pixelColor(50, 25), QColor(Qt::blue));
    EXPECT_EQ(image.pixelColor(51, 25), QColor(Qt::white))
        << "a line rectangle of width 1 is one pixel wide";
    EXPECT_EQ(image.pixelColor(105, 15), QColor(Qt::green));
    EXPECT_EQ(image.pixelColor(95, 15), QColor(Qt::white)) << "clipped away";
    EXPECT_EQ(image.pixelColor(120, 15), QColor(Qt::white));
    EXPECT_EQ(image.pixelColor(152, 12), QColor(Qt::black)) << "the clip is gone after PopClip";
}

// Capitals stand above the baseline and nothing of them below it; a text
// longer than its width stays in it whichever way it is cut.
TEST(DrawbotTest, TextSitsOnItsBaselineMeasuresAndStaysInItsWidth)
{
    SupplierInterface const* supplier = SharedSupplierForScale(1.0f);
    boost::intrusive_ptr<FontInterface> font = supplier->NewFont(GetFontName(0), 11.0f, 0);
    ASSERT_TRUE(font);
    EXPECT_TRUE(supplier->NewFont(GetFontName(0), 11.0f, "Bold")->IsBold());
    float const w = font->GetStringWidth(AsciiToUTF16("Speaker"));
    EXPECT_FLOAT_EQ(font->GetStringWidth(AsciiToUTF16("")), 0.0f);
    EXPECT_GT(font->GetStringWidth(AsciiToUTF16("Speaker Speaker")), 2 * w);
    {
        Canvas canvas;
        Drawbot drawbot(supplier, &canvas.painter);
        drawbot.DrawString(AsciiToUTF16("HHHH"), PointF(10, 30), font.get(), ColorRGBA(0, 0, 0, 1));
        canvas.Done();
        EXPECT_GT(canvas.InkInRect(QRect(10, 20, 40, 10)), 0);
        EXPECT_EQ(canvas.InkInRect(QRect(0, 32, 200, 28)), 0);
    }
    zephcore::UTF16String const text =
        AsciiToUTF16("http://example.com/a/very/long/path/to/something.xmp");
    for (int mode : {kTruncationClip, kTruncationEnd, kTruncationMiddle})
    {
        Canvas canvas(400, 40);
        Drawbot drawbot(supplier, &canvas.painter);
        drawbot.DrawString(text, PointF(10, 25), font.get(), ColorRGBA(0, 0, 0, 1), 100.0f, mode);
        canvas.Done();
        EXPECT_GT(canvas.InkInRect(QRect(10, 10, 100, 20)), 0) << mode;
        EXPECT_EQ(canvas.InkInRect(QRect(112, 0, 288, 40)), 0) << mode;
    }
}

// Ids without a name read as neutral grey; a node reads the nearest named
// theme above it, else the application's. (Text readable in the theme is the
// section header's test.)
TEST(ThemeTest, NodeReadsNearestNamedThemeElseApplicationTheme)
{
    ThemeGuard guard;
    Theme const* light = FindTheme("light");
    Theme const* dark = FindTheme("dark");
    ASSERT_TRUE(light && dark);
    ASSERT_NE(light->GetColor(kColor_Text), dark->GetColor(kColor_Text));
    EXPECT_EQ(light->GetColor(374), ColorRGBA(0.5f, 0.5f, 0.5f));

    UI_NodePtr root(new UI_SubView);
    UI_NodePtr child(new UI_SubView);
    root->ChildPushBack(child);
    EXPECT_EQ(child->GetColor(kColor_Text), light->GetColor(kColor_Text));
    root->SetThemeName("dark");
    EXPECT_EQ(child->GetColor(kColor_Text), dark->GetColor(kColor_Text));
    EXPECT_EQ(GetColor(kColor_Text), light->GetColor(kColor_Text)) << "the application's";
    root->SetThemeName("");
    EXPECT_TRUE(SetApplicationTheme("dark"));
    EXPECT_EQ(child->GetColor(kColor_Text), dark->GetColor(kColor_Text));
    EXPECT_EQ(GetIconType(), 2) << "icons for dark panels";
    EXPECT_FALSE(SetApplicationTheme("no such theme"));
    EXPECT_EQ(GetApplicationTheme()->GetName(), "dark");
}

TEST(ThemeTest, ListBoxSkinGivesDividerColourOfTheNodesTheme)
{
    UI_NodePtr node(new UI_SubView);
    node->SetThemeName("dark");
    SkinSet const* skins = node->UI_GetCurrentSkinSet();
    ASSERT_NE(skins, nullptr);
    boost::intrusive_ptr<Skin> skin = skins->GetSkinWithMap("UI_ListBox");
    auto* listBox = dynamic_cast<ListBoxSkin*>(skin.get());
    ASSERT_NE(listBox, nullptr);
    EXPECT_EQ(listBox->GetDividerColor(node->UI_GetThemeProvider()),
              FindTheme("dark")->GetColor(kColor_ListBoxContentDivider));
    SkinMap const alias{{"MyList", "UI_ListBox"}};
    EXPECT_EQ(skins->GetSkinWithMap("MyList", &alias), skin);

    // A node's own skin set wins for it and its children.
    boost::intrusive_ptr<SkinSet> own(new SkinSet);
    UI_NodePtr child(new UI_SubView);
    node->ChildPushBack(child);
    node->SetSkinSet(own);
    EXPECT_EQ(child->UI_GetCurrentSkinSet(), own.get());
}

TEST(ResourceTest, NamesAndTypesAreFoundWithoutRegardToCaseAndAMissingRootHasNone)
{
    // (Archives read by a name in another case are the archived dialog tests'.)
    ResourceFolder folder;
    OS_ResourceManager const resources(folder.dir.path().toStdString());
    EXPECT_TRUE(resources.HasBinary("png", "sp_link_sm_n_d_at_2x"));
    EXPECT_FALSE(resources.HasBinary("PNG", "SP_Link_Sm_N"));
    std::vector<std::uint8_t> data;

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
}
