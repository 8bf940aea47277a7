#pragma once
// The table engine of form views. A TableLayout holds rows; a RowItem holds a
// label column (0) and a value column (1); a LayoutItem wraps a view, a bound
// Control or a nested table. What the engine must do well is line up the
// label column across nested tables, so that every value of a form starts at
// one x however the form is divided into boxes and sections.

#include "zephmetadataui/zephmetadataui_export.h"

#include <zephui/Geometry.h>
#include <zephui/UI_SubView.h>

#include <boost/function.hpp>
#include <boost/intrusive_ptr.hpp>
#include <boost/shared_ptr.hpp>
#include <boost/weak_ptr.hpp>

#include <vector>

namespace zephmetadataui
{

struct Control;

namespace layout
{

class TableLayout;

// How a nested table's label column relates to its parent's.
enum LabelColumnAlignment
{
    kLabelColumnOwn = 0,    // keeps its own; the parent does not touch it
    kLabelColumnShared = 1, // counts towards the parent's, and takes it back
    kLabelColumnGroup = 2,  // takes the widest column of its sibling tables
};

// Sizes every form shares.
constexpr float kStandardRowHeight = 19.0f;
constexpr float kStandardRowGap = 7.0f;
constexpr float kColumnGap = 10.0f;
constexpr float kDefaultLabelWidth = 100.0f;
constexpr float kMaximumLabelWidth = 220.0f;
constexpr float kTableMargin = 10.0f;

struct ZEPHMETADATAUI_EXPORT LayoutItem
{
    using PlaceFunction = boost::function<void(zephui::UI_SubView*, zephui::RectF&)>;

    explicit LayoutItem(boost::intrusive_ptr<zephui::UI_SubView> const& view);
    explicit LayoutItem(boost::shared_ptr<Control> const& control);
    explicit LayoutItem(boost::shared_ptr<TableLayout> const& table);

    boost::intrusive_ptr<zephui::UI_SubView> view;
    float fixedWidth = 0.0f; // 0: the width the column offers
    int kind = 1;            // 1 keeps to its column; 2 spans the row from the left
    PlaceFunction placeFunction;
    boost::function<void(float)> labelWidthChanged;
    boost::shared_ptr<TableLayout> table;
    boost::shared_ptr<Control> control; // lives as long as the row
};

using LayoutItemPtr = boost::shared_ptr<LayoutItem>;

class ZEPHMETADATAUI_EXPORT RowItem
{
public:
    RowItem();

    // A null item changes nothing. Throws std::out_of_range past column 1.
    void SetItem(int column, LayoutItemPtr const& item);
    LayoutItemPtr GetItem(int column) const;
    boost::intrusive_ptr<zephui::UI_SubView> GetView() const { return view; }

    boost::intrusive_ptr<zephui::UI_SubView> view;
    std::vector<LayoutItemPtr> items; // always two: label, value
    float spaceBefore = 0.0f;         // not above the first row
    float spaceAfter = 0.0f;          // -1 cancels the standard gap below
};

using RowItemPtr = boost::shared_ptr<RowItem>;

// Where a table's rows go and who is told the size they need.
class ZEPHMETADATAUI_EXPORT TableLayoutDelegate
{
public:
    virtual ~TableLayoutDelegate() = default;
    virtual boost::intrusive_ptr<zephui::UI_SubView> GetContentView(TableLayout const& table) = 0;
    virtual void SetContentSize(TableLayout const& table, zephui::PointF const& size) = 0;
};

// For a table on a UI_ScrollView: rows go into its content view.
class ZEPHMETADATAUI_EXPORT ScrollViewLayoutDelegate : public TableLayoutDelegate
{
public:
    static boost::shared_ptr<TableLayoutDelegate> Shared();
    boost::intrusive_ptr<zephui::UI_SubView> GetContentView(TableLayout const& table) override;
    void SetContentSize(TableLayout const& table, zephui::PointF const& size) override;
};

// For a table on a UI_SectionView: rows go under its header.
class ZEPHMETADATAUI_EXPORT SectionViewLayoutDelegate : public TableLayoutDelegate
{
public:
    static boost::shared_ptr<TableLayoutDelegate> Shared();
    boost::intrusive_ptr<zephui::UI_SubView> GetContentView(TableLayout const& table) override;
    void SetContentSize(TableLayout const& table, zephui::PointF const& size) override;
};

class ZEPHMETADATAUI_EXPORT TableLayout
{
public:
    // Makes a plain view of its own.
    TableLayout();
    explicit TableLayout(boost::intrusive_ptr<zephui::UI_SubView> const& view);

    // A null row is ignored.
    void AddRow(RowItemPtr const& row);
    void AddItem(int column, LayoutItemPtr const& item);
    // A row with the nested table in column 0; a null table is ignored.
    void AddTable(boost::shared_ptr<TableLayout> const& table);
    std::size_t RowCount() const { return rows.size(); }
    // Bits 1 left, 2 top, 4 right, 8 bottom: a set bit gives that margin 10.
    void SetMargins(unsigned char flags);

    // Measures label columns bottom up, then hands widths down, so that
    // shared and grouped nested tables line up with their parent.
    void CalculateLabelWidths(boost::function<float(LayoutItem const&)> const& measure);
    // Lays out every row and returns the table's height.
    float DoLayout();
    // The content view's width less the side margins.
    float ContentWidth() const;
    boost::intrusive_ptr<zephui::UI_SubView> ContentView() const;

    boost::intrusive_ptr<zephui::UI_SubView> view;
    std::vector<RowItemPtr> rows;
    float labelWidth = kDefaultLabelWidth;
    float widestNestedLabel = 0.0f;
    int alignment = kLabelColumnOwn;
    float marginLeft = kTableMargin;
    float marginRight = kTableMargin;
    float marginTop = kTableMargin;
    float marginBottom = kTableMargin;
    boost::shared_ptr<TableLayoutDelegate> delegate;
    bool collapsed = false;

private:
    float MeasureLabels(boost::function<float(LayoutItem const&)> const& measure);
    void HandDownLabelWidth(float offered);
    float LayoutRow(RowItem& row, zephui::RectF const& rect);
};

using TableLayoutPtr = boost::shared_ptr<TableLayout>;

// Sets a view's rectangle without setting off its own child layout, for one
// pass of the table engine that places every level itself.
ZEPHMETADATAUI_EXPORT void SetRectWithoutChildLayout(zephui::UI_Node* view,
                                                     zephui::RectF const& rect);

} // namespace layout
} // namespace zephmetadataui
