// Drawing through Drawbot onto a QImage: rectangles, lines, clipped and
// truncated text at a baseline, fonts that measure, images at their scale.

#include "zephui/Drawbot.h"
#include "zephui/QtDrawing.h"
#include "zephui/Theme.h"
#include "zephui/UI_NodeManager.h"

#include <QImage>
#include <QPainter>

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

TEST(DrawbotTest, TextSitsOnItsBaselineAndMeasures)
{
    SupplierInterface const* supplier = SharedSupplierForScale(1.0f);
    boost::intrusive_ptr<FontInterface> font = supplier->NewFont(GetFontName(0), 11.0f, 0);
    ASSERT_TRUE(font);
    EXPECT_TRUE(supplier->NewFont(GetFontName(0), 11.0f, "Bold")->IsBold());
    float const w = font->GetStringWidth(AsciiToUTF16("Speaker"));
    EXPECT_FLOAT_EQ(font->GetStringWidth(AsciiToUTF16("")), 0.0f);
    EXPECT_GT(font->GetStringWidth(AsciiToUTF16("Speaker Speaker")), 2 * w);

    Canvas canvas;
    Drawbot drawbot(supplier, &canvas.painter);
    drawbot.DrawString(AsciiToUTF16("HHHH"), PointF(10, 30), font.get(), ColorRGBA(0, 0, 0, 1));
    canvas.Done();
    EXPECT_GT(canvas.InkInRect(QRect(10, 20, 40, 10)), 0) << "capitals stand above the baseline";
    EXPECT_EQ(canvas.InkInRect(QRect(0, 32, 200, 28)), 0) << "and nothing of them below it";
}

TEST(DrawbotTest, TruncatedTextStaysInItsWidth)
{
    SupplierInterface const* supplier = SharedSupplierForScale(1.0f);
    boost::intrusive_ptr<FontInterface> font = supplier->NewFont(GetFontName(0), 11.0f, 0);
    zephcore::UTF16String const text =
        AsciiToUTF16("http://example.com/a/very/long/path/to/something.xmp");
    ASSERT_GT(font->GetStringWidth(text), 100.0f);
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

TEST(DrawbotTest, ImagesDrawAtTheirLayoutSize)
{
    QtSupplier const retina(2.0f);
    boost::intrusive_ptr<ImageInterface> icon =
        UI_NodeManager::Get()->GetImage(&retina, "SP_Info_Sm_N");
    ASSERT_TRUE(icon);
    Canvas canvas(40, 40, 2.0);
    Drawbot drawbot(&retina, &canvas.painter);
    drawbot.DrawImage(icon.get(), PointF(4, 4));
    drawbot.GetSurface()->DrawImage(icon.get(), PointF(20, 20), 0.0f); // fully transparent
    QImage const& image = canvas.Done();
    // 16 layout units at 2x: device pixels 8 to 40.
    EXPECT_NE(image.pixelColor(14, 24), QColor(Qt::white))
        << "the blue disc, left of the white mark";
    EXPECT_EQ(image.pixelColor(50, 24), QColor(Qt::white));
    EXPECT_EQ(canvas.InkInRect(QRect(41, 41, 38, 38)), 0) << "opacity 0 draws nothing";
    EXPECT_EQ(retina.NewImageFromData({1, 2, 3}), nullptr) << "data that is no image gives null";
}
