#pragma once
// The array editor of a form: one line per array item in a list; selecting a
// line opens an editor box under the list with a small form for that item.
// Insert and Delete change the array directly. It draws its own label, so
// that its list lines up with the value column of the rows around it.

#include "zephmetadataui/TableLayout.h"
#include "zephmetadataui/zephmetadataui_export.h"

#include <zephmetadata/Definitions.h>
#include <zephmetadata/Path.h>
#include <zephui/Messages.h>
#include <zephui/UI_SubView.h>

#include <boost/function.hpp>
#include <boost/intrusive_ptr.hpp>
#include <boost/shared_ptr.hpp>

#include <cstdint>
#include <vector>

namespace zephui
{
class Drawbot;
class UI_ListBox;
class UI_OutlineBox;
class UI_StaticText;
class UI_TextButton;
} // namespace zephui

namespace zephmetadataui::layout
{

class ZEPHMETADATAUI_EXPORT ArrayControl : public zephui::UI_SubView
{
public:
    static constexpr float kClosedHeight = 70.0f;

    ArrayControl(zephmetadata::Value const& value, bool readOnly);
    // An array left with no items is removed from the packet.
    ~ArrayControl() override;

    // An empty text changes nothing; a colon is added unless it ends in one.
    void SetLabel(zephcore::UTF16String const& text, zephcore::UTF16String const& toolTip);
    // 70, plus the editor box while it is open.
    void UpdateHeight();
    void AddSizeChangedCallback(boost::shared_ptr<boost::function<void()>> const& callback);
    // Never below 50; the list keeps its right edge.
    void SetLabelWidth(float width);
    float MeasureLabelWidth(zephui::Drawbot* drawbot);

    // For hosts and tests: the parts on screen.
    zephui::UI_ListBox* GetList() const { return list.get(); }
    zephui::UI_OutlineBox* GetEditorBox() const { return editorBox.get(); }
    zephui::UI_SubView* GetEditArea() const { return editArea.get(); }
    zephui::UI_StaticText* GetLabel() const { return label.get(); }
    // The form of the item in the editor box; null before one was opened.
    TableLayoutPtr GetEditorTable() const { return table; }
    std::int32_t GetEditedIndex() const { return editedIndex; }
    bool IsReadOnly() const { return readOnly; }

    // The line that shows an item's text.
    static zephcore::UTF16String LineText(zephcore::UTF16String const& itemText);

    virtual void RefreshList();
    virtual void ItemSelected();
    virtual void InsertItem(zephui::Message* message);
    virtual void DeleteItem();
    virtual void CloseEditor();
    virtual void ItemValueChanged();

private:
    zephcore::UTF16String ItemText(zephmetadata::Path const& path) const;
    void ShowEditor(int index);
    void TellSizeChanged();
    int FirstSelected() const;

    boost::intrusive_ptr<zephui::UI_StaticText> label;
    boost::intrusive_ptr<zephui::UI_ListBox> list;
    std::int32_t editedIndex = -1;
    boost::intrusive_ptr<zephui::UI_OutlineBox> editorBox;
    boost::intrusive_ptr<zephui::UI_SubView> editArea;
    float labelWidth = 150.0f;
    zephmetadata::Value value;
    boost::shared_ptr<zephmetadata::TypeDefinition> itemType;
    bool readOnly = false;
    TableLayoutPtr table;
    std::vector<boost::shared_ptr<boost::function<void()>>> sizeChangedCallbacks;
    std::vector<boost::shared_ptr<boost::function<void(__XMPMeta__*)>>> metadataCallbacks;
    // Held so that they can be emptied when the control dies.
    std::vector<zephui::MessageCallback> messageCallbacks;
    zephui::MessageCallback itemChanged; // handed to each item's form
};

} // namespace zephmetadataui::layout
