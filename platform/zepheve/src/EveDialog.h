#pragma once
// The dialog a layout script builds: a toolkit dialog whose content is laid
// out like an arrangement (a column) and follows every change of its size.

#include <zephui/UI_Dialog.h>

#include <Qt>

namespace zepheve
{

class EveDialog : public zephui::UI_Dialog
{
public:
    EveDialog(zephcore::UTF16String const& title, zephui::UI_Node* parentNode);

    void SetSpacing(float spacing);
    void SetMargins(float left, float top, float right, float bottom);
    void AddChild(zephui::UI_NodePtr const& child, Qt::Orientations grow);
    // Lays the content out for the size the window has now.
    void LayOut();
    // The size the content would like, and the least it can take.
    zephui::PointF GetNaturalSize() const;
    zephui::PointF GetMinimumContentSize() const;

    void UI_SizeChanged(zephui::RectF const& rect) override;

protected:
    QWidget* CreateWidget() override;
};

} // namespace zepheve
