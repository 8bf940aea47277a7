#pragma once
// MetadataViewCell: the contents of one row of a metadata view. It splits the
// row into a label, a value and a small link button at the far right, and
// draws the divider between label and value. The divider of every cell of
// every view stands at one process-wide x in tree coordinates (the shared
// label width of MetadataView), so that it forms one straight line across
// indented rows; the user drags it in any row.

#include "zephmetadataui/zephmetadataui_export.h"
#include <zephui/InputCapture.h>
#include <zephui/UI_MultiColumnTree.h>
#include <zephui/UI_SubView.h>

#include <boost/intrusive_ptr.hpp>

namespace zephmetadataui
{

class ZEPHMETADATAUI_EXPORT MetadataViewCell : public zephui::UI_SubView
{
public:
    // Adds itself to parent and lays out its children on resizes. With
    // usesSharedWidth false the label fills the cell and there is no divider.
    MetadataViewCell(boost::intrusive_ptr<zephui::UI_SubView> const& parent,
                     zephui::UI_MultiColumnTree* tree, bool usesSharedWidth);
    ~MetadataViewCell() override;

    // The setters record the child; they do not add it to the cell.
    boost::intrusive_ptr<zephui::UI_SubView> GetChild_Label() const { return labelChild; }
    void SetChild_Label(boost::intrusive_ptr<zephui::UI_SubView> const& child)
    {
        labelChild = child;
    }
    boost::intrusive_ptr<zephui::UI_SubView> GetChild_Value() const { return valueChild; }
    void SetChild_Value(boost::intrusive_ptr<zephui::UI_SubView> const& child)
    {
        valueChild = child;
    }
    boost::intrusive_ptr<zephui::UI_SubView> GetChild_Link() const { return linkChild; }
    void SetChild_Link(boost::intrusive_ptr<zephui::UI_SubView> const& child) { linkChild = child; }

    // The view has link buttons: the value leaves room for one on the right,
    // even in a row without a button, so that all values end at one x.
    bool GetReservesLinkColumn() const { return reservesLinkColumn; }
    void SetReservesLinkColumn(bool reserves) { reservesLinkColumn = reserves; }
    bool GetUsesSharedWidth() const { return usesSharedWidth; }

    // Local x of the divider.
    float GetLabelWidth() const;
    // Moves the divider of all cells: at most the cell's width less 100, at
    // least 80, stored as the shared width; visible rows repaint.
    void SetLabelWidth(float width);
    void PlaceChildren() const;

    void UI_Draw(zephui::Drawbot* drawbot) override;
    bool UI_DoCursor(zephui::UI_Node* node, zephui::PointF const& point,
                     zephui::Flags<unsigned long> flags) override;
    bool UI_DoMouseEvent(zephui::UI_Node* node, zephui::MouseEvent const& event) override;
    void UI_SizeChanged(zephui::RectF const& rect) override;
    void UI_LayoutChildren(zephui::PointF const& oldSize, zephui::PointF const& newSize) override;

private:
    // Keeps the cell as wide as its cell view; true if the rectangle changed.
    bool ForceBoundsToBeIdenticalToParent();
    bool IsNearDivider(float x) const;

    boost::intrusive_ptr<zephui::UI_SubView> labelChild;
    boost::intrusive_ptr<zephui::UI_SubView> valueChild;
    boost::intrusive_ptr<zephui::UI_SubView> linkChild;
    bool reservesLinkColumn = false;
    zephui::UI_MultiColumnTree* tree = nullptr;
    float lastSharedWidth = -1.0f;
    float lastWidth = -1.0f;
    bool usesSharedWidth = true;
};

// The drag of a cell's divider: moves the shared width live and puts it back
// if the drag is cancelled.
class ZEPHMETADATAUI_EXPORT ColumnWidthCapture : public zephui::InputCapture
{
public:
    ColumnWidthCapture(MetadataViewCell* cell, zephui::MouseEvent const& event, float startWidth);

    bool DoMouseEvent(zephui::MouseEvent const& event) override;
    bool DoCursor(zephui::PointF const& position) override;
    void CaptureEnded() override;

private:
    MetadataViewCell* cell = nullptr;
    float startWidth = 0.0f;
};

} // namespace zephmetadataui
