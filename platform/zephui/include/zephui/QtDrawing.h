#pragma once
// The Qt side of drawing: images, fonts and a supplier over QImage and QFont,
// and the surface over QPainter. For platform code (controls, tests).

#include "zephui/Drawbot.h"
#include "zephui/zephui_export.h"

#include <QFont>
#include <QFontMetricsF>
#include <QImage>

#include <vector>

class QPainter;

namespace zephui
{

class ZEPHUI_EXPORT QtImage : public ImageInterface
{
public:
    // scale: device pixels per layout unit of this image.
    explicit QtImage(QImage image, float scale = 1.0f);
    float GetWidth() const override;
    float GetHeight() const override;
    int GetPixelWidth() const override { return image.width(); }
    int GetPixelHeight() const override { return image.height(); }
    float GetScale() const override { return scale; }
    QImage const& GetQImage() const { return image; }

private:
    QImage image;
    float scale = 1.0f;
};

class ZEPHUI_EXPORT QtFont : public FontInterface
{
public:
    explicit QtFont(QFont const& font);
    std::string GetName() const override;
    float GetSize() const override;
    bool IsBold() const override { return font.bold(); }
    float GetStringWidth(zephcore::UTF16String const& text) const override;
    float GetAscent() const override { return float(metrics.ascent()); }
    float GetDescent() const override { return float(metrics.descent()); }
    float GetLineHeight() const override { return float(metrics.height()); }
    QFont const& GetQFont() const { return font; }

private:
    QFont font;
    QFontMetricsF metrics;
};

class ZEPHUI_EXPORT QtSupplier : public SupplierInterface
{
public:
    explicit QtSupplier(float displayScale = 1.0f) : scale(displayScale) {}
    float GetDisplayScale() const override { return scale; }
    boost::intrusive_ptr<FontInterface> NewFont(std::string const& name, float size,
                                                int style = 0) const override;
    boost::intrusive_ptr<FontInterface> NewFont(std::string const& name, float size,
                                                std::string const& styleName) const override;
    boost::intrusive_ptr<ImageInterface> NewImageFromData(std::vector<std::uint8_t> const& data,
                                                          float imageScale = 1.0f) const override;

private:
    float scale = 1.0f;
};

// Conversions.
ZEPHUI_EXPORT QColor ToQColor(ColorRGBA const& color);
ZEPHUI_EXPORT ColorRGBA FromQColor(QColor const& color);
ZEPHUI_EXPORT QRectF ToQRectF(RectF const& rect);
ZEPHUI_EXPORT RectF FromQRectF(QRectF const& rect);

// The device pixel ratio that a painter really draws at: a 2x QImage reports 1
// through the painter but 2 through its paint engine's device.
ZEPHUI_EXPORT float PainterDeviceScale(QPainter const* painter);

// The supplier shared by all nodes for a display scale; lives for the process.
ZEPHUI_EXPORT SupplierInterface const* SharedSupplierForScale(float scale);

} // namespace zephui
