#include "zephui/Drawbot.h"
#include "zephui/QtDrawing.h"

#include "zephcore/QtStrings.h"

#include <QFontDatabase>
#include <QGuiApplication>
#include <QPaintDevice>
#include <QPaintEngine>
#include <QPainter>
#include <QPainterPath>
#include <QScreen>

#include <cmath>
#include <map>
#include <memory>

namespace zephui
{

namespace
{

class NullSurface : public SurfaceInterface
{
public:
    void FillRect(RectF const&, ColorRGBA const&) override {}
    void StrokeRect(RectF const&, ColorRGBA const&, float) override {}
    void DrawLine(PointF const&, PointF const&, ColorRGBA const&, float) override {}
    void DrawString(zephcore::UTF16String const&, PointF const&, FontInterface const*,
                    ColorRGBA const&, float, int) override
    {
    }
    void DrawImage(ImageInterface const*, PointF const&, float) override {}
    void DrawImage(ImageInterface const*, RectF const&, float) override {}
    void PushClip(RectF const&) override {}
    void PopClip() override {}
};

class PainterSurface : public SurfaceInterface
{
public:
    explicit PainterSurface(QPainter* painter) : painter(painter) {}

    void FillRect(RectF const& rect, ColorRGBA const& color) override
    {
        painter->fillRect(ToQRectF(rect), ToQColor(color));
    }
    void StrokeRect(RectF const& rect, ColorRGBA const& color, float penWidth) override
    {
        painter->save();
        painter->setPen(QPen(ToQColor(color), penWidth));
        painter->setBrush(Qt::NoBrush);
        painter->drawRect(ToQRectF(rect));
        painter->restore();
    }
    void DrawLine(PointF const& from, PointF const& to, ColorRGBA const& color,
                  float penWidth) override
    {
        painter->save();
        painter->setPen(QPen(ToQColor(color), penWidth));
        painter->drawLine(QPointF(from.x, from.y), QPointF(to.x, to.y));
        painter->restore();
    }
    void DrawString(zephcore::UTF16String const& text, PointF const& point,
                    FontInterface const* font, ColorRGBA const& color, float maxWidth,
                    int truncation) override
    {
        QString s = zephcore::ToQString(text);
        painter->save();
        auto const* qtFont = dynamic_cast<QtFont const*>(font);
        QFont const f = qtFont ? qtFont->GetQFont() : QGuiApplication::font();
        painter->setFont(f);
        painter->setPen(ToQColor(color));
        if (maxWidth > 0.0f && truncation != kTruncationNone)
        {
            QFontMetricsF const fm(f);
            if (truncation == kTruncationClip)
                painter->setClipRect(QRectF(point.x, point.y - fm.ascent(), maxWidth, fm.height()),
                                     Qt::IntersectClip);
            else
                s = fm.elidedText(
                    s, truncation == kTruncationMiddle ? Qt::ElideMiddle : Qt::ElideRight,
                    maxWidth);
        }
        painter->drawText(QPointF(point.x, point.y), s);
        painter->restore();
    }
    void DrawImage(ImageInterface const* image, PointF const& point, float opacity) override
    {
        if (image)
            DrawImage(image, RectF(point.x, point.y, image->GetWidth(), image->GetHeight()),
                      opacity);
    }
    void DrawImage(ImageInterface const* image, RectF const& destination, float opacity) override
    {
        auto const* qtImage = dynamic_cast<QtImage const*>(image);
        if (!qtImage)
            return;
        painter->save();
        painter->setOpacity(painter->opacity() * opacity);
        painter->setRenderHint(QPainter::SmoothPixmapTransform);
        painter->drawImage(ToQRectF(destination), qtImage->GetQImage());
        painter->restore();
    }
    void PushClip(RectF const& rect) override
    {
        painter->save();
        painter->setClipRect(ToQRectF(rect), Qt::IntersectClip);
        ++depth;
    }
    void PopClip() override
    {
        if (depth == 0)
            return;
        --depth;
        painter->restore();
    }
    ~PainterSurface() override
    {
        while (depth > 0)
            PopClip();
    }

private:
    QPainter* painter;
    int depth = 0;
};

} // namespace

// ---- Conversions ----------------------------------------------------------

QColor ToQColor(ColorRGBA const& c)
{
    return QColor::fromRgbF(c.red, c.green, c.blue, c.alpha);
}

ColorRGBA FromQColor(QColor const& c)
{
    return ColorRGBA(float(c.redF()), float(c.greenF()), float(c.blueF()), float(c.alphaF()));
}

QRectF ToQRectF(RectF const& r)
{
    return QRectF(r.left, r.top, r.width, r.height);
}

RectF FromQRectF(QRectF const& r)
{
    return RectF(float(r.left()), float(r.top()), float(r.width()), float(r.height()));
}

float PainterDeviceScale(QPainter const* painter)
{
    if (!painter)
        return 1.0f;
    if (QPaintEngine const* engine = painter->paintEngine())
        if (QPaintDevice const* device = engine->paintDevice())
            return float(device->devicePixelRatioF());
    if (QPaintDevice const* device = painter->device())
        return float(device->devicePixelRatioF());
    return 1.0f;
}

SupplierInterface const* SharedSupplierForScale(float scale)
{
    static std::map<float, std::unique_ptr<QtSupplier>> suppliers;
    if (!(scale > 0.0f))
        scale = 1.0f;
    std::unique_ptr<QtSupplier>& slot = suppliers[scale];
    if (!slot)
        slot.reset(new QtSupplier(scale));
    return slot.get();
}

std::unique_ptr<SupplierInterface> NewOSSupplier(float displayScale)
{
    if (!(displayScale > 0.0f))
        displayScale = QGuiApplication::primaryScreen()
                           ? float(QGuiApplication::primaryScreen()->devicePixelRatio())
                           : 1.0f;
    return std::unique_ptr<SupplierInterface>(new QtSupplier(displayScale));
}

// ---- Images, fonts, supplier ------------------------------------------------

QtImage::QtImage(QImage img, float imageScale)
    : image(std::move(img)), scale(imageScale > 0.0f ? imageScale : 1.0f)
{
    image.setDevicePixelRatio(scale);
}

float QtImage::GetWidth() const
{
    return float(image.width()) / scale;
}

float QtImage::GetHeight() const
{
    return float(image.height()) / scale;
}

QtFont::QtFont(QFont const& f) : font(f), metrics(font) {}

std::string QtFont::GetName() const
{
    return font.family().toStdString();
}

float QtFont::GetSize() const
{
    return font.pixelSize() > 0 ? float(font.pixelSize()) : float(font.pointSizeF());
}

float QtFont::GetStringWidth(zephcore::UTF16String const& text) const
{
    return float(metrics.horizontalAdvance(zephcore::ToQString(text)));
}

boost::intrusive_ptr<FontInterface> QtSupplier::NewFont(std::string const& name, float size,
                                                        int style) const
{
    QFont font(name.empty() ? QGuiApplication::font().family() : QString::fromStdString(name));
    // Sizes are in pixels (layout units), so text fits the toolkit's float layout.
    font.setPixelSize(std::max(1, int(std::lround(size))));
    font.setBold((style & 1) != 0);
    font.setItalic((style & 2) != 0);
    return boost::intrusive_ptr<FontInterface>(new QtFont(font));
}

boost::intrusive_ptr<FontInterface> QtSupplier::NewFont(std::string const& name, float size,
                                                        std::string const& styleName) const
{
    QString const s = QString::fromStdString(styleName).toLower();
    int style = 0;
    if (s.contains(QLatin1String("bold")))
        style |= 1;
    if (s.contains(QLatin1String("italic")) || s.contains(QLatin1String("oblique")))
        style |= 2;
    return NewFont(name, size, style);
}

boost::intrusive_ptr<ImageInterface>
QtSupplier::NewImageFromData(std::vector<std::uint8_t> const& data, float imageScale) const
{
    if (data.empty())
        return nullptr;
    QImage image = QImage::fromData(data.data(), int(data.size()));
    if (image.isNull())
        return nullptr;
    return boost::intrusive_ptr<ImageInterface>(new QtImage(std::move(image), imageScale));
}

// ---- Drawbot ------------------------------------------------------------------

Drawbot::Drawbot(SupplierInterface const* supplier) : supplier(supplier), surface(new NullSurface)
{
}

Drawbot::Drawbot(SupplierInterface const* supplier, QPainter* painter)
    : supplier(supplier), painter(painter),
      surface(painter ? static_cast<SurfaceInterface*>(new PainterSurface(painter))
                      : new NullSurface)
{
}

Drawbot::~Drawbot() = default;

namespace utils
{

void DrawLineRect(Drawbot* drawbot, RectF const& rect, ColorRGBA const& color)
{
    if (drawbot)
        drawbot->FillRect(rect, color);
}

void DrawDisclosureTriangle(Drawbot* drawbot, PointF const& centre, bool open,
                            ColorRGBA const& color)
{
    QPainter* const painter = drawbot ? drawbot->GetPainter() : nullptr;
    if (!painter)
        return;
    float const cx = centre.x, cy = centre.y;
    QPainterPath path;
    if (open)
    {
        path.moveTo(cx - 4.0f, cy - 2.0f);
        path.lineTo(cx + 4.0f, cy - 2.0f);
        path.lineTo(cx, cy + 3.0f);
    }
    else
    {
        path.moveTo(cx - 2.0f, cy - 4.0f);
        path.lineTo(cx + 3.0f, cy);
        path.lineTo(cx - 2.0f, cy + 4.0f);
    }
    path.closeSubpath();
    painter->save();
    painter->setRenderHint(QPainter::Antialiasing);
    painter->fillPath(path, ToQColor(color));
    painter->restore();
}

} // namespace utils

} // namespace zephui
