// The section header as a user sees it: texts readable in the theme, the
// separator and secondary text only when there is a secondary text, the
// theme's image at the right edge, and nothing where it would overlap.
// (Opening and closing are driven through the splitter's tests.)

#include "../tree/TreeTestSupport.h"

#include <zephmetadataui/MetadataSectionView.h>

#include <zephui/QtDrawing.h>
#include <zephui/Theme.h>

#include <QImage>
#include <QWidget>

#include <gtest/gtest.h>

namespace
{

using treetest::U16;
using zephmetadataui::MetadataSectionView;

boost::intrusive_ptr<zephui::ImageInterface> Swatch(bool wanted, Qt::GlobalColor colour)
{
    QImage image(12, 12, QImage::Format_ARGB32);
    image.fill(colour);
    return wanted ? new zephui::QtImage(image) : nullptr;
}

TEST(MetadataSectionViewTest, HeaderDrawsWhatFitsWithoutOverlap)
{
    struct
    {
        char const* name;
        int room; // the header's width beyond the primary text
        char const* secondary;
        bool red, blue; // the first and the second image
        bool dark;
        bool separatorShown, secondaryShown;
        Qt::GlobalColor imageShown; // Qt::transparent: none
    } const cases[] = {
        {"second image, light theme", 200, "clip01.mov", true, true, false, true, true, Qt::blue},
        {"first image, dark theme", 200, "clip01.mov", true, true, true, true, true, Qt::red},
        {"lone second image, dark theme", 200, "", false, true, true, false, false, Qt::blue},
        {"long secondary stops before the image", 90, "a text far too long for the header", false,
         true, false, true, true, Qt::blue},
        {"no room leaves out secondary and image", 12, "clip01.mov", true, true, false, true, false,
         Qt::transparent},
    };
    for (auto const& c : cases)
    {
        SCOPED_TRACE(c.name);
        zephui::SetApplicationTheme(c.dark ? "dark" : "light");
        boost::intrusive_ptr<MetadataSectionView> section(new MetadataSectionView);
        section->SetPrimaryText(U16("Camera Raw"));
        section->SetSecondaryText(U16(c.secondary));
        section->SetImages(Swatch(c.red, Qt::red), Swatch(c.blue, Qt::blue));
        auto const bold =
            section->UI_GetDrawSupplier()->NewFont(zephui::GetFontName(0), 11, "Bold");
        int const primaryEnd = int(24.0f + bold->GetStringWidth(U16("Camera Raw")));
        int const separatorEnd = primaryEnd + int(bold->GetStringWidth(U16(": ")));
        int const width = primaryEnd + c.room;
        section->UI_SetLocalRectF(zephui::RectF(0, 0, float(width), 60));
        QImage const image = section->UI_GetWidget()->grab().toImage();
        QColor const background = image.pixelColor(width - 1, 19);
        QColor const text = zephui::ToQColor(section->GetColor(zephui::kColor_SectionHeaderText));
        zephui::SetApplicationTheme("light");
        // Glyphs: at least half way from the header's colour to the text's, on
        // every channel (which the images' pure colours are not).
        auto const textIn = [&](int from, int to)
        {
            auto const along = [](int value, int start, int end)
            { return double(value - start) / double(end - start) >= 0.5; };
            for (int x = from; x < std::min(to, width); ++x)
                for (int y = 0; y < 20; ++y)
                {
                    QColor const p = image.pixelColor(x, y);
                    if (along(p.red(), background.red(), text.red()) &&
                        along(p.green(), background.green(), text.green()) &&
                        along(p.blue(), background.blue(), text.blue()))
                        return true;
                }
            return false;
        };
        auto const pixels = [&](Qt::GlobalColor colour)
        {
            int n = 0;
            for (int x = 0; x < width; ++x)
                for (int y = 0; y < 20; ++y)
                    n += image.pixelColor(x, y) == QColor(colour);
            return n;
        };

        EXPECT_TRUE(textIn(24, primaryEnd));
        EXPECT_EQ(textIn(primaryEnd + 1, separatorEnd), c.separatorShown);
        EXPECT_EQ(textIn(separatorEnd + 3, width), c.secondaryShown);
        EXPECT_EQ(pixels(Qt::red), c.imageShown == Qt::red ? 144 : 0);
        EXPECT_EQ(pixels(Qt::blue), c.imageShown == Qt::blue ? 144 : 0);
        EXPECT_FALSE(c.imageShown != Qt::transparent && textIn(width - 18, width))
            << "text reached the image";
    }
}

} // namespace
