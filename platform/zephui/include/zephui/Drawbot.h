#pragma once
// Drawing: a supplier makes fonts and images for one display scale; a surface
// draws; a Drawbot is the drawing context handed to UI_Draw (a supplier and a
// surface). A Drawbot made from a supplier alone measures and draws nothing.

#include "zephui/Geometry.h"
#include "zephui/zephui_export.h"

#include "zephcore/RefCounted.h"
#include "zephcore/Strings.h"

#include <boost/intrusive_ptr.hpp>

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

class QPainter;

namespace zephui
{

// File types of images: what ResourceManager types they are stored under.
enum ImageFileType
{
    kImageFileTypeUnknown = 0,
    kImageFileTypePNG = 1
};

// Text truncation (DrawString, static texts): none, cut off at the width,
// an ellipsis at the end, an ellipsis in the middle (for paths and links).
enum TextTruncation
{
    kTruncationNone = 0,
    kTruncationClip = 1,
    kTruncationEnd = 2,
    kTruncationMiddle = 3
};

class ZEPHUI_EXPORT FontInterface : public zephcore::RefCountedObject
{
public:
    virtual std::string GetName() const = 0;
    virtual float GetSize() const = 0;
    virtual bool IsBold() const = 0;
    virtual float GetStringWidth(zephcore::UTF16String const& text) const = 0;
    virtual float GetAscent() const = 0;
    virtual float GetDescent() const = 0;
    virtual float GetLineHeight() const = 0;
};

// A counted image. Width and height are in layout units: pixels divided by the
// image's scale (2 for an "_AT_2X" image).
class ZEPHUI_EXPORT ImageInterface : public zephcore::RefCountedObject
{
public:
    virtual float GetWidth() const = 0;
    virtual float GetHeight() const = 0;
    virtual int GetPixelWidth() const = 0;
    virtual int GetPixelHeight() const = 0;
    virtual float GetScale() const = 0;
};

// Makes drawing objects for one display scale (device pixels per layout unit).
class ZEPHUI_EXPORT SupplierInterface
{
public:
    virtual ~SupplierInterface() = default;
    virtual float GetDisplayScale() const = 0;
    // style: 0 plain, 1 bold, 2 italic, 3 bold italic.
    virtual boost::intrusive_ptr<FontInterface> NewFont(std::string const& name, float size,
                                                        int style = 0) const = 0;
    // styleName: "", "Regular", "Bold", "Italic", "Bold Italic".
    virtual boost::intrusive_ptr<FontInterface> NewFont(std::string const& name, float size,
                                                        std::string const& styleName) const = 0;
    // Null for data that does not decode.
    virtual boost::intrusive_ptr<ImageInterface>
    NewImageFromData(std::vector<std::uint8_t> const& data, float scale = 1.0f) const = 0;
};

// A supplier for the given scale (0: that of the primary screen). Owned by the
// caller.
ZEPHUI_EXPORT std::unique_ptr<SupplierInterface> NewOSSupplier(float displayScale = 0.0f);

// Where drawing goes. Coordinates are the node's local ones.
class ZEPHUI_EXPORT SurfaceInterface
{
public:
    virtual ~SurfaceInterface() = default;
    virtual void FillRect(RectF const& rect, ColorRGBA const& color) = 0;
    virtual void StrokeRect(RectF const& rect, ColorRGBA const& color, float penWidth = 1.0f) = 0;
    virtual void DrawLine(PointF const& from, PointF const& to, ColorRGBA const& color,
                          float penWidth = 1.0f) = 0;
    // Text with its baseline at point.y. A maxWidth above 0 limits the text by truncation.
    virtual void DrawString(zephcore::UTF16String const& text, PointF const& point,
                            FontInterface const* font, ColorRGBA const& color,
                            float maxWidth = -1.0f, int truncation = kTruncationNone) = 0;
    // Top left at point; the image's layout size.
    virtual void DrawImage(ImageInterface const* image, PointF const& point,
                           float opacity = 1.0f) = 0;
    virtual void DrawImage(ImageInterface const* image, RectF const& destination,
                           float opacity = 1.0f) = 0;
    // Clips are nested: each push intersects with the current clip.
    virtual void PushClip(RectF const& rect) = 0;
    virtual void PopClip() = 0;
};

class ZEPHUI_EXPORT Drawbot
{
public:
    // Measuring only: every surface operation does nothing.
    explicit Drawbot(SupplierInterface const* supplier);
    // Draws with painter; the supplier's scale should be that of the painter's device.
    Drawbot(SupplierInterface const* supplier, QPainter* painter);
    ~Drawbot();
    Drawbot(Drawbot const&) = delete;
    Drawbot& operator=(Drawbot const&) = delete;

    SupplierInterface const* GetSupplier() const { return supplier; }
    SurfaceInterface* GetSurface() const { return surface.get(); }
    // Null for a measuring Drawbot.
    QPainter* GetPainter() const { return painter; }
    bool IsMeasuringOnly() const { return painter == nullptr; }

    // Shorthands for the surface.
    void FillRect(RectF const& rect, ColorRGBA const& color) { surface->FillRect(rect, color); }
    void StrokeRect(RectF const& rect, ColorRGBA const& color, float w = 1.0f)
    {
        surface->StrokeRect(rect, color, w);
    }
    void DrawString(zephcore::UTF16String const& text, PointF const& point,
                    FontInterface const* font, ColorRGBA const& color, float maxWidth = -1.0f,
                    int truncation = kTruncationNone)
    {
        surface->DrawString(text, point, font, color, maxWidth, truncation);
    }
    void DrawImage(ImageInterface const* image, PointF const& point, float opacity = 1.0f)
    {
        surface->DrawImage(image, point, opacity);
    }
    void PushClip(RectF const& rect) { surface->PushClip(rect); }
    void PopClip() { surface->PopClip(); }

private:
    SupplierInterface const* supplier = nullptr;
    QPainter* painter = nullptr;
    std::unique_ptr<SurfaceInterface> surface;
};

namespace utils
{

// Fills a thin rectangle as a line (a divider, an underline).
ZEPHUI_EXPORT void DrawLineRect(Drawbot* drawbot, RectF const& rect, ColorRGBA const& color);
// The triangle of a row or section that opens: pointing down when open,
// right when closed, about 9 pixels across around centre.
ZEPHUI_EXPORT void DrawDisclosureTriangle(Drawbot* drawbot, PointF const& centre, bool open,
                                          ColorRGBA const& color);
// A rectangle from its left, top, width and height.
inline RectF FormRect(float left, float top, float width, float height)
{
    return RectF(left, top, width, height);
}
// The rectangle spanned by two corners, in any order.
inline RectF FormRect(PointF const& a, PointF const& b)
{
    return RectF(std::min(a.x, b.x), std::min(a.y, b.y), std::abs(b.x - a.x), std::abs(b.y - a.y));
}

} // namespace utils

} // namespace zephui
