#pragma once
// An arrangement of nodes in a row or a column, laid out by a Qt box layout
// on the group's widget. The nodes still mirror the widgets: each layout pass
// writes the places it gave back into the children's rectangles, so the
// toolkit's node calls see what is on screen, shown or not.

#include "zepheve/zepheve_export.h"

#include <zephui/UI_SubView.h>

#include <Qt>

class QWidget;

namespace zepheve
{

class ArrangementLayout;

class ZEPHEVE_EXPORT DynamicGroup : public zephui::UI_SubView
{
public:
    enum Placement
    {
        kPlaceRow = 0,
        kPlaceColumn = 1
    };

    explicit DynamicGroup(Placement placement = kPlaceColumn);
    ~DynamicGroup() override;

    Placement GetPlacement() const { return placement; }
    // Space between children along the placement (the other is kept for
    // scripts that give both).
    void SetSpacing(float horizontal, float vertical);
    void SetMargins(float left, float top, float right, float bottom);
    // Where children that don't grow sit, across and along the placement;
    // along it they are packed from this side unless a child grows.
    void SetAlignment(Qt::Alignment alignment);
    Qt::Alignment GetAlignment() const { return alignment; }

    // Appends a child and places it. A child grows along the directions given,
    // across the group to its far edge and along it by taking spare room;
    // otherwise it keeps its natural size. A group grows where a child does.
    void AddChild(zephui::UI_NodePtr const& child, Qt::Orientations grow = {});

    // Lays out this group and every group below it again from their
    // contents' present sizes (after texts or minimum sizes changed).
    void InvalidateAll();

    // The size the group would like, and the least it can take, margins included.
    zephui::PointF GetNaturalSize();
    zephui::PointF GetMinimumSize();

    void UI_SizeChanged(zephui::RectF const& rect) override;

protected:
    QWidget* CreateWidget() override;

private:
    // Null once Qt deleted the widget (its window closed).
    ArrangementLayout* Layout();

    Placement placement = kPlaceColumn;
    Qt::Alignment alignment = Qt::AlignLeft | Qt::AlignTop;
};

using DynamicGroupPtr = boost::intrusive_ptr<DynamicGroup>;

} // namespace zepheve
