#pragma once
// Float geometry of the node toolkit: points, rectangles (left, top, width,
// height), axis-aligned scale-and-offset matrices, and bit sets.

#include "zephui/zephui_export.h"
#include <algorithm>
#include <cmath>

namespace zephui
{

template <class T> struct PointT
{
    T x = T();
    T y = T();

    PointT() = default;
    PointT(T xValue, T yValue) : x(xValue), y(yValue) {}

    friend bool operator==(PointT const& a, PointT const& b) { return a.x == b.x && a.y == b.y; }
    friend bool operator!=(PointT const& a, PointT const& b) { return !(a == b); }
    friend PointT operator+(PointT const& a, PointT const& b)
    {
        return PointT(a.x + b.x, a.y + b.y);
    }
    friend PointT operator-(PointT const& a, PointT const& b)
    {
        return PointT(a.x - b.x, a.y - b.y);
    }
};

template <class T> struct RectT
{
    T left = T();
    T top = T();
    T width = T();
    T height = T();

    RectT() = default;
    RectT(T l, T t, T w, T h) : left(l), top(t), width(w), height(h) {}

    T GetRight() const { return left + width; }
    T GetBottom() const { return top + height; }
    PointT<T> GetTopLeft() const { return PointT<T>(left, top); }
    PointT<T> GetSize() const { return PointT<T>(width, height); }
    bool IsEmpty() const { return !(width > T()) || !(height > T()); }
    // Half-open: the right and bottom edges are outside.
    bool Contains(PointT<T> const& p) const
    {
        return p.x >= left && p.x < left + width && p.y >= top && p.y < top + height;
    }
    RectT Offset(T dx, T dy) const { return RectT(left + dx, top + dy, width, height); }
    RectT Inset(T dx, T dy) const
    {
        return RectT(left + dx, top + dy, width - 2 * dx, height - 2 * dy);
    }
    RectT Intersect(RectT const& o) const
    {
        T const l = std::max(left, o.left), t = std::max(top, o.top);
        T const r = std::min(GetRight(), o.GetRight()), b = std::min(GetBottom(), o.GetBottom());
        return RectT(l, t, std::max(T(), r - l), std::max(T(), b - t));
    }

    friend bool operator==(RectT const& a, RectT const& b)
    {
        return a.left == b.left && a.top == b.top && a.width == b.width && a.height == b.height;
    }
    friend bool operator!=(RectT const& a, RectT const& b) { return !(a == b); }
};

// Maps p to scale * p + offset on each axis.
template <class T> struct ScaleMatrixT
{
    T scaleX = T(1);
    T scaleY = T(1);
    T offsetX = T();
    T offsetY = T();

    ScaleMatrixT() = default;
    ScaleMatrixT(T sx, T sy, T ox, T oy) : scaleX(sx), scaleY(sy), offsetX(ox), offsetY(oy) {}
    static ScaleMatrixT Translation(T dx, T dy) { return ScaleMatrixT(T(1), T(1), dx, dy); }

    bool IsIdentity() const
    {
        return scaleX == T(1) && scaleY == T(1) && offsetX == T() && offsetY == T();
    }
    bool IsInvertible() const { return scaleX != T() && scaleY != T(); }

    PointT<T> Transform(PointT<T> const& p) const
    {
        return PointT<T>(scaleX * p.x + offsetX, scaleY * p.y + offsetY);
    }
    // A negative scale flips the rectangle; the result is normalised.
    RectT<T> Transform(RectT<T> const& r) const
    {
        PointT<T> const a = Transform(r.GetTopLeft());
        PointT<T> const b = Transform(PointT<T>(r.GetRight(), r.GetBottom()));
        return RectT<T>(std::min(a.x, b.x), std::min(a.y, b.y), std::abs(b.x - a.x),
                        std::abs(b.y - a.y));
    }
    // The inverse; a matrix with a zero scale gives the identity.
    ScaleMatrixT Inverse() const
    {
        if (!IsInvertible())
            return ScaleMatrixT();
        return ScaleMatrixT(T(1) / scaleX, T(1) / scaleY, -offsetX / scaleX, -offsetY / scaleY);
    }
    // (a * b)(p) == a(b(p)): b is applied first.
    friend ScaleMatrixT operator*(ScaleMatrixT const& a, ScaleMatrixT const& b)
    {
        return ScaleMatrixT(a.scaleX * b.scaleX, a.scaleY * b.scaleY,
                            a.scaleX * b.offsetX + a.offsetX, a.scaleY * b.offsetY + a.offsetY);
    }
    friend bool operator==(ScaleMatrixT const& a, ScaleMatrixT const& b)
    {
        return a.scaleX == b.scaleX && a.scaleY == b.scaleY && a.offsetX == b.offsetX &&
               a.offsetY == b.offsetY;
    }
};

// A bit set over an integer type.
template <class T> class Flags
{
public:
    Flags() = default;
    Flags(T bits) : value(bits) {} // implicit: call sites pass plain numbers

    T Get() const { return value; }
    operator T() const { return value; }
    bool IsSet(T mask) const { return (value & mask) == mask; }
    bool IsAnySet(T mask) const { return (value & mask) != 0; }
    bool IsEmpty() const { return value == 0; }
    Flags& Set(T mask, bool on = true)
    {
        value = on ? T(value | mask) : T(value & ~mask);
        return *this;
    }
    Flags& Clear(T mask) { return Set(mask, false); }
    Flags Without(T mask) const { return Flags(T(value & ~mask)); }

private:
    T value = T();
};

using PointF = PointT<float>;
using RectF = RectT<float>;
using ScaleMatrixF = ScaleMatrixT<float>;

// Four floats from 0 to 1.
struct ZEPHUI_EXPORT ColorRGBA
{
    float red = 0.0f;
    float green = 0.0f;
    float blue = 0.0f;
    float alpha = 1.0f;

    ColorRGBA() = default;
    ColorRGBA(float r, float g, float b, float a = 1.0f) : red(r), green(g), blue(b), alpha(a) {}
    friend bool operator==(ColorRGBA const& x, ColorRGBA const& y)
    {
        return x.red == y.red && x.green == y.green && x.blue == y.blue && x.alpha == y.alpha;
    }
    friend bool operator!=(ColorRGBA const& x, ColorRGBA const& y) { return !(x == y); }
};

} // namespace zephui
