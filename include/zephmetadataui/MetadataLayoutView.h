#pragma once
// The form view: shows one view definition for one provider, built by
// MetadataViewBuilder. The host makes one per page, places it and calls
// Layout. It listens to no metadata change itself: the controls in the form
// update themselves.

#include "zephmetadataui/TableLayout.h"
#include "zephmetadataui/zephmetadataui_export.h"

#include <zephmetadata/Definitions.h>
#include <zephui/Geometry.h>
#include <zephui/UI_SubView.h>

#include <boost/shared_ptr.hpp>

#include <set>

namespace zephmetadata
{
class MetaDataProvider;
}

namespace zephmetadataui
{

class ZEPHMETADATAUI_EXPORT MetadataLayoutView : public zephui::UI_SubView
{
public:
    // Looks the definition up by name; an unknown name leaves none.
    MetadataLayoutView(zephmetadata::UTF8String const& name,
                       boost::shared_ptr<zephmetadata::MetaDataProvider> provider);
    MetadataLayoutView(boost::shared_ptr<zephmetadata::ViewDefinition> definition,
                       boost::shared_ptr<zephmetadata::MetaDataProvider> provider);

    // Throws away the form, controls included, and builds it again: a form,
    // or "No Data" when no item gave a row. Does nothing while the view
    // cannot measure text.
    virtual void Layout();
    // Forgets the form and lays out again.
    virtual void Refresh();

    // A null definition is ignored.
    void SetViewDefinition(boost::shared_ptr<zephmetadata::ViewDefinition> definition);
    // An empty name, or one without a definition, changes nothing.
    void SetViewDefinitionByName(zephmetadata::UTF8String const& name);
    boost::shared_ptr<zephmetadata::ViewDefinition> GetViewDefinition() const
    {
        return viewDefinition;
    }
    // Acts at the next Layout.
    void SetMargins(zephui::Flags<unsigned char> flags) { margins = flags; }
    // Only values at these paths (or with one below them in the set) get a
    // row, from the next Layout on, as a host's choice of shown properties.
    void SetIncludedPaths(std::set<zephmetadata::Path> const& paths)
    {
        includedPaths = paths;
        filtered = true;
    }
    zephmetadata::UTF8String GetViewName() const;
    zephmetadata::UTF8String GetDisplayName() const;
    // The root table of the last build; null before the first, and while
    // "No Data" shows it has no rows.
    layout::TableLayoutPtr GetTable() const { return table; }
    // Places the rows again at the present width (text wraps anew) without
    // building anything: for hosts that resize the view.
    void Relayout();

    bool UI_DoKeyboardEvent(zephui::UI_Node* node, zephui::KeyboardEvent const& event) override;
    void UI_LayoutChildren(zephui::PointF const& oldSize, zephui::PointF const& newSize) override;
    void UI_NodeChanged() override;
    void UI_SizeChanged(zephui::RectF const& rect) override;

protected:
    void Initialize();

private:
    boost::shared_ptr<zephmetadata::MetaDataProvider> provider;
    boost::shared_ptr<zephmetadata::ViewDefinition> viewDefinition;
    layout::TableLayoutPtr table;
    zephui::Flags<unsigned char> margins;
    std::set<zephmetadata::Path> includedPaths;
    bool filtered = false;
};

using MetadataLayoutViewPtr = boost::intrusive_ptr<MetadataLayoutView>;

} // namespace zephmetadataui
