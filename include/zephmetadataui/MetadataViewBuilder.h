#pragma once
// Turns a view definition into a form: the builder that BuildView walks. Each
// item of the definition gives at most one row of a TableLayout; values get
// their controls from the control factory, sections, notes, formatters,
// separators and whole schemas are laid out here. The builder lives for one
// build; what it leaves behind is the table and the controls in it.

#include "zephmetadataui/TableLayout.h"
#include "zephmetadataui/zephmetadataui_export.h"

#include <zephmetadata/Definitions.h>
#include <zephmetadata/Path.h>
#include <zephui/Messages.h>

#include <boost/shared_ptr.hpp>

#include <cstdint>
#include <set>

namespace zephui
{
class SupplierInterface;
class UI_StaticText;
} // namespace zephui
namespace zephmetadata
{
class MetaDataProvider;
}

namespace zephmetadataui::layout
{

class ZEPHMETADATAUI_EXPORT MetadataViewBuilder : public zephmetadata::AbstractViewBuilder
{
public:
    static constexpr float kDefaultMinimumWidth = 400.0f;

    // The root: a UI_ScrollView of width 400 with a table on its content view.
    MetadataViewBuilder(boost::shared_ptr<zephmetadata::MetaDataProvider> provider,
                        zephui::SupplierInterface const* supplier);
    // Fills a table that exists (an array item's editor box, say).
    MetadataViewBuilder(boost::shared_ptr<zephmetadata::MetaDataProvider> provider,
                        zephui::SupplierInterface const* supplier, zephmetadata::Path path,
                        TableLayoutPtr table);

    void BeginView(zephmetadata::ViewDefinition& definition) override;
    // Measures the label columns and lays out; true if the form has rows.
    bool EndView() override;
    bool AddViewItem(boost::shared_ptr<zephmetadata::ViewItem> const& item) override;

    void SetMargins(unsigned char flags);
    // Never below 400.
    void SetMinimumWidth(float width);
    // Values outside these paths (a path or one below it in the set) make no
    // row; null shows every value. The set must outlive the build.
    void SetIncludedPaths(std::set<zephmetadata::Path> const* paths) { includedPaths = paths; }
    // Handed to every control; runs after each edit reached the model.
    void SetChangeCallback(zephui::MessageCallback const& callback) { changeCallback = callback; }
    TableLayoutPtr GetTable() const { return table; }
    float GetMinimumWidth() const { return minimumWidth; }
    std::int32_t GetItemCount() const { return itemCount; }

    // A label with a colon added through the localised format, unless it
    // brings one; right-aligned, with its tool tip.
    static LayoutItemPtr MakeLabelItem(zephcore::UTF16String const& text,
                                       zephcore::UTF16String const& toolTip);
    // A place function for a static text: its height at the offered width,
    // and (with lower set) 2 lower when it runs over several lines.
    static void PlaceTextHeight(zephui::UI_SubView* view, zephui::RectF& rect, bool lower);

protected:
    bool AddItemTo(boost::shared_ptr<zephmetadata::ViewItem> const& item, TableLayout& target);
    RowItemPtr BuildItem(boost::shared_ptr<zephmetadata::ViewItem> const& item);

    // Items with a value.
    RowItemPtr BuildValueRow(boost::shared_ptr<zephmetadata::ViewItem> const& item);
    RowItemPtr BuildStructureRow(boost::shared_ptr<zephmetadata::ViewItem> const& item);
    RowItemPtr BuildArrayRow(boost::shared_ptr<zephmetadata::ViewItem> const& item);
    // Items without a value, dispatched on the item's format.
    RowItemPtr BuildFormatItem(boost::shared_ptr<zephmetadata::ViewItem> const& item);
    RowItemPtr BuildSeparator();
    RowItemPtr BuildSection(boost::shared_ptr<zephmetadata::ViewItem> const& item);
    RowItemPtr BuildNote(boost::shared_ptr<zephmetadata::ViewItem> const& item);
    RowItemPtr BuildFormatter(boost::shared_ptr<zephmetadata::ViewItem> const& item);
    RowItemPtr BuildSchema(boost::shared_ptr<zephmetadata::ViewItem> const& item);

    // The choice label of a raw value, else the value itself.
    zephcore::UTF16String DisplayText(zephmetadata::ViewItem& item,
                                      zephmetadata::UTF8String const& raw) const;
    float MeasureLabelWidth(LayoutItem const& item) const;
    zephui::PointF RecommendedSize(zephui::UI_Node* view) const;
    void InitialSize(LayoutItem& item) const;

private:
    void AddSectionHeading(zephmetadata::ViewItem const& item, TableLayout& section);

    boost::shared_ptr<zephmetadata::MetaDataProvider> provider;
    zephui::SupplierInterface const* supplier = nullptr;
    zephmetadata::Path basePath;
    float minimumWidth = kDefaultMinimumWidth;
    TableLayoutPtr table;
    std::int32_t itemCount = 0;
    bool hideEmptyValues = false;
    std::set<zephmetadata::Path> const* includedPaths = nullptr;
    zephui::MessageCallback changeCallback;
};

} // namespace zephmetadataui::layout
