#pragma once
// What the script and transcript benchmarks share: a view of one size on a
// provider, its scroll bar, and a paint of the whole view into an image.

#include <zephui/UI_ScrollBar.h>

#include <boost/intrusive_ptr.hpp>
#include <boost/shared_ptr.hpp>

#include <QImage>
#include <QWidget>

namespace zephbench
{

constexpr int kViewWidth = 600;
constexpr int kViewHeight = 700;

template <class View, class Provider>
boost::intrusive_ptr<View> NewView(Provider const& provider, int width = kViewWidth)
{
    boost::intrusive_ptr<View> view(new View(provider));
    view->UI_SetLocalRectF(zephui::RectF(0.0f, 0.0f, float(width), float(kViewHeight)));
    view->UI_Show(true);
    return view;
}

// The vertical scroll bar, which both views make as their first child.
inline zephui::UI_ScrollBar& BarOf(zephui::UI_Node& view)
{
    return dynamic_cast<zephui::UI_ScrollBar&>(*view.ChildGet(0));
}

// One paint of the whole view, scroll bar included.
inline void Paint(zephui::UI_Node& view, QImage& image)
{
    view.UI_GetWidget()->render(&image);
}

inline QImage Canvas()
{
    return QImage(kViewWidth, kViewHeight, QImage::Format_ARGB32_Premultiplied);
}

} // namespace zephbench
