#pragma once
// Shared ground of the property tree's tests: two small test schemas, views
// over packets, and the reachable rows dumped as text, one line per row.

#include <zephmetadataui/MetadataView.h>
#include <zephmetadataui/MetadataViewCell.h>

#include <zephmetadata/Path.h>
#include <zephmetadata/Provider.h>

#include <zephui/NodeHostWidget.h>
#include <zephui/UI_MultiColumnTree.h>

#include <gtest/gtest.h>

#include <QCoreApplication>
#include <QTest>

#include <memory>
#include <set>
#include <string>
#include <vector>

namespace zephmetadata
{
// Readable paths in test failures.
void PrintTo(Path const& path, std::ostream* out);
} // namespace zephmetadata

namespace treetest
{

using zephmetadata::Path;
using zephmetadataui::MetadataView;
using zephmetadataui::MetadataViewCell;
using ViewPtr = boost::intrusive_ptr<MetadataView>;
using SchemaPtr = MetadataView::SchemaPtr;
using RowPtr = MetadataView::RowPtr;

extern char const* const kAlphaNamespace;

class TreeTest : public ::testing::Test
{
protected:
    static void SetUpTestSuite();
    void SetUp() override { MetadataView::SetSharedLabelWidth(165.0f); }
    void TearDown() override
    {
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    }
};

SchemaPtr Alpha();
SchemaPtr Beta();
SchemaPtr SchemaFor(char const* namespaceURI);
// "title", "contact/ta:city", "events[1]/ta:action"...
Path AlphaPath(std::string const& propertyName);
Path BetaPath(std::string const& propertyName);

// A packet from rdf:Description content, prefixes ta, tb, dc and xmp declared.
std::string Packet(std::string const& body);
boost::shared_ptr<zephmetadata::BufferProviderImpl> MakeProvider(std::string const& body);
// Every kind of row of the alpha schema; kRichAlphaTopRows is its closed dump.
std::string RichAlphaBody();
extern char const* const kRichAlphaTopRows;
// Events "step 1" to "step count"; the first dated ones also have a date.
std::string EventsBody(int count, int dated = 0);
// Writes a value into the packet, reported as a change or silently.
void WriteValue(boost::shared_ptr<zephmetadata::MetaDataProvider> const& provider, Path const& path,
                std::string const& text, bool report);

ViewPtr MakeView(std::vector<SchemaPtr> const& schemas,
                 boost::shared_ptr<zephmetadata::MetaDataProvider> const& provider,
                 float width = 600.0f, float height = 900.0f);
ViewPtr RichView(float width = 600.0f, float height = 900.0f);

zephui::UI_MultiColumnTree* TreeOf(MetadataView* view);
// The first reachable row whose label (past any box) begins with label.
RowPtr RowWithLabel(MetadataView* view, std::string const& label);
// The cell of a row, scrolled on screen first so that it is made.
MetadataViewCell* CellOf(MetadataView* view, RowPtr const& row);
MetadataViewCell* CellWithLabel(MetadataView* view, std::string const& label);
void OpenAll(MetadataView* view);
// Opens or closes a row as a click on its triangle does.
void Toggle(MetadataView* view, std::string const& label);
// Selects all of a cell's value field, types text and presses Enter.
void TypeIntoValue(MetadataViewCell* cell, std::string const& text);

// A line per reachable row: indent, "v "/"> " open/closed, label (with "[x]",
// "[ ]" or "[-]"), " = " value, " (fixed)" box disabled, " (greyed)" row.
std::string DumpTree(MetadataView* view, bool withValues = true);

// Text shown by a control's widget (line edit, label, combo, check box...).
std::string ControlText(zephui::UI_Node* node);
std::set<Path> SelectedOf(MetadataView* view);

std::string ToStd(zephcore::UTF16String const& text);
zephcore::UTF16String U16(std::string const& text);

// A shown window that hosts a node, closed and deleted with the object.
class Window
{
public:
    Window(zephui::UI_NodePtr const& root, int width, int height);
    ~Window();
    QWidget* Widget() const { return host.get(); }
    bool Activate() { return host->activateWindow(), QTest::qWaitForWindowActive(host.get()); }

private:
    std::unique_ptr<zephui::NodeHostWidget> host;
};

// Clicks a control's Qt widget in its middle (a press and a release).
void Click(zephui::UI_Node* node);

std::string SourcePath(std::string const& relative);

} // namespace treetest
