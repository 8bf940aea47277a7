#pragma once
// The model's error log in a two-column table (description and context),
// with a link to the XMP documentation under it. It reads the log once, when
// it is made.

#include "zephmetadataui/zephmetadataui_export.h"

#include <zephmetadata/Types.h>

#include <zephui/UI_ArchivedDialog.h>
#include <zephui/UI_MultiColumnTree.h>
#include <zephui/UI_StaticText.h>

#include <map>

namespace zephmetadataui
{

class ZEPHMETADATAUI_EXPORT MetadataErrorDialog : public zephui::UI_ArchivedDialog
{
public:
    MetadataErrorDialog(zephui::SupplierInterface const* supplier, zephui::UI_Node* parent);
    ~MetadataErrorDialog() override;

    void DefaultCloseOk() override;
    void DefaultCloseCancel() override;

    // The documentation page the link shows and opens.
    static zephcore::UTF16String const& DocumentationAddress();
    zephui::UI_MultiColumnTree* GetErrorList() const { return errorList.get(); }
    // The texts of a row's cells, as drawn.
    zephcore::UTF16String CellText(zephui::UI_MultiColumnTreeRow* row, unsigned long column) const;

private:
    void StorePlace();

    std::map<zephui::UI_MultiColumnTreeRow*, zephmetadata::ErrorInfo> errorRows;
    boost::intrusive_ptr<zephui::UI_MultiColumnTree> errorList;
    zephui::UI_StaticTextPtr errorLink;
    zephui::UI_MultiColumnTree::DrawCellOfRowCallback drawCell;
    zephui::MessageCallback linkClicked;
};

} // namespace zephmetadataui
