#include "TreeTestSupport.h"

#include <zephmetadataui/Module.h>

#include <zephmetadata/Access.h>
#include <zephmetadata/PathDefinitions.h>
#include <zephmetadata/Values.h>

#include <zephui/UI_ControlView.h>

#include <QAbstractButton>
#include <QCheckBox>
#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QPointer>
#include <QTest>

namespace treetest
{

char const* const kAlphaNamespace = "http://ns.zeph.test/tree/alpha/";
namespace
{
char const* const kBetaNamespace = "http://ns.zeph.test/tree/beta/";
zephmetadata::UTF8String U8(std::string const& text)
{
    return zephmetadata::UTF8String(text.begin(), text.end());
}
std::string WidgetText(QWidget* widget)
{
    if (!widget)
        return "<no widget>";
    if (auto* edit = qobject_cast<QLineEdit*>(widget))
        return edit->text().toStdString();
    if (auto* combo = qobject_cast<QComboBox*>(widget))
        return combo->currentText().toStdString();
    if (auto* box = qobject_cast<QCheckBox*>(widget))
    {
        std::string const state = box->checkState() == Qt::Checked     ? "[x]"
                                  : box->checkState() == Qt::Unchecked ? "[ ]"
                                                                       : "[-]";
        return box->text().isEmpty() ? state : state + " " + box->text().toStdString();
    }
    if (auto* label = qobject_cast<QLabel*>(widget))
        return label->text().toStdString();
    if (auto* plain = qobject_cast<QPlainTextEdit*>(widget))
        return plain->toPlainText().toStdString();
    if (auto* button = qobject_cast<QAbstractButton*>(widget))
        return button->text().toStdString();
    for (QWidget* child : widget->findChildren<QWidget*>(QString(), Qt::FindDirectChildrenOnly))
        if (std::string const text = WidgetText(child); text != "<?>")
            return text;
    return "<?>";
}
} // namespace

std::string SourcePath(std::string const& relative)
{
    return std::string(ZEPH_SOURCE_DIR) + "/" + relative;
}

void TreeTest::SetUpTestSuite()
{
    // The library starts and the test schemas load once per test program.
    static int const loaded = (zephmetadataui::Initialize(),
                               zephmetadata::LoadDefinitionFiles(
                                   {U16(SourcePath("tests/tree/data/tree-test-schemas.xml"))}));
    ASSERT_EQ(1, loaded) << "test schemas did not load";
}

SchemaPtr SchemaFor(char const* namespaceURI)
{
    return zephmetadata::NamespaceDefinition(U8(namespaceURI));
}
SchemaPtr Alpha()
{
    return SchemaFor(kAlphaNamespace);
}
SchemaPtr Beta()
{
    return SchemaFor(kBetaNamespace);
}

Path AlphaPath(std::string const& propertyName)
{
    return Path(U8(kAlphaNamespace), U8(propertyName));
}
Path BetaPath(std::string const& propertyName)
{
    return Path(U8(kBetaNamespace), U8(propertyName));
}

std::string Packet(std::string const& body)
{
    return "<x:xmpmeta xmlns:x=\"adobe:ns:meta/\"><rdf:RDF "
           "xmlns:rdf=\"http://www.w3.org/1999/02/22-rdf-syntax-ns#\"><rdf:Description "
           "rdf:about=\"\" xmlns:ta=\"" +
           std::string(kAlphaNamespace) + "\" xmlns:tb=\"" + kBetaNamespace +
           "\" xmlns:dc=\"http://purl.org/dc/elements/1.1/\" "
           "xmlns:xmp=\"http://ns.adobe.com/xap/1.0/\">" +
           body + "</rdf:Description></rdf:RDF></x:xmpmeta>";
}

boost::shared_ptr<zephmetadata::BufferProviderImpl> MakeProvider(std::string const& body)
{
    auto provider = zephmetadata::BufferProviderImpl::Create(Packet(body));
    EXPECT_TRUE(provider && provider->IsValid());
    return provider;
}

std::string RichAlphaBody()
{
    return "<ta:title>Harbour at dawn</ta:title><ta:count>42</ta:count>"
           "<ta:keywords><rdf:Bag><rdf:li>sea</rdf:li><rdf:li>light</rdf:li></rdf:Bag></"
           "ta:keywords>"
           "<ta:contact rdf:parseType=\"Resource\"><ta:city>Portree</ta:city>"
           "<ta:phone>555-0100</ta:phone></ta:contact><ta:events><rdf:Seq>"
           "<rdf:li rdf:parseType=\"Resource\"><ta:action>created</ta:action>"
           "<ta:when>2024-05-01T10:30:00Z</ta:when></rdf:li>"
           "<rdf:li rdf:parseType=\"Resource\"><ta:action>edited</ta:action></rdf:li>"
           "</rdf:Seq></ta:events><ta:approved>True</ta:approved>";
}

char const* const kRichAlphaTopRows =
    "  Title = Harbour at dawn\n  Count = 42\n  Keywords (2 entries) = sea; light\n"
    "> Contact\n> Events (2 entries)\n  Approved = [x]\n  Dates = \n";

std::string EventsBody(int count, int dated)
{
    std::string body = "<ta:events><rdf:Seq>";
    for (int i = 1; i <= count; ++i)
        body += "<rdf:li rdf:parseType=\"Resource\"><ta:action>step " + std::to_string(i) +
                "</ta:action>" + (i <= dated ? "<ta:when>2024-05-01T10:30</ta:when>" : "") +
                "</rdf:li>";
    return body + "</rdf:Seq></ta:events>";
}

void WriteValue(boost::shared_ptr<zephmetadata::MetaDataProvider> const& provider, Path const& path,
                std::string const& text, bool report)
{
    zephmetadata::MetaDataUpdateAccess access(provider);
    ASSERT_TRUE(zephmetadata::SetValue(*access, path, U8(text)));
    if (report)
        access.AddChange(path);
}

ViewPtr RichView(float width, float height)
{
    return MakeView({Alpha()}, MakeProvider(RichAlphaBody()), width, height);
}

ViewPtr MakeView(std::vector<SchemaPtr> const& schemas,
                 boost::shared_ptr<zephmetadata::MetaDataProvider> const& provider, float width,
                 float height)
{
    ViewPtr view(new MetadataView(zephmetadata::MakeSharedRange(schemas), provider));
    view->UI_SetLocalRectF(zephui::RectF(0.0f, 0.0f, width, height));
    view->UI_Show(true);
    return view;
}

zephui::UI_MultiColumnTree* TreeOf(MetadataView* view)
{
    return view ? dynamic_cast<zephui::UI_MultiColumnTree*>(view->ChildGet(0)) : nullptr;
}

MetadataViewCell* CellOf(MetadataView* view, RowPtr const& row)
{
    auto* tree = TreeOf(view);
    if (!tree || !row)
        return nullptr;
    if (!tree->IsRowVisible(row))
        tree->ScrollRowIntoView(row, false, 0);
    auto const cellView = row->GetCellView(0);
    return cellView ? dynamic_cast<MetadataViewCell*>(cellView->ChildGet(0)) : nullptr;
}

MetadataViewCell* CellWithLabel(MetadataView* view, std::string const& label)
{
    return CellOf(view, RowWithLabel(view, label));
}

void Toggle(MetadataView* view, std::string const& label)
{
    RowPtr const row = RowWithLabel(view, label);
    ASSERT_TRUE(row) << label;
    TreeOf(view)->ToggleRowByUser(row.get());
}

void TypeIntoValue(MetadataViewCell* cell, std::string const& text)
{
    ASSERT_TRUE(cell && cell->GetChild_Value());
    auto* const edit = qobject_cast<QLineEdit*>(cell->GetChild_Value()->UI_GetWidget());
    ASSERT_TRUE(edit);
    edit->selectAll();
    QTest::keyClicks(edit, QString::fromStdString(text));
    QTest::keyClick(edit, Qt::Key_Return);
}

void OpenAll(MetadataView* view)
{
    auto* tree = TreeOf(view);
    auto const& list = tree->GetOpenedRows();
    for (auto it = list.begin(); it != list.end(); ++it)
        if ((*it)->CountChildRows() > 0 && !tree->IsRowOpen(*it))
            tree->OpenRow(*it);
}

std::string ToStd(zephcore::UTF16String const& text)
{
    return zephcore::ToStdString(text);
}
zephcore::UTF16String U16(std::string const& text)
{
    return zephcore::UTF8to16(std::string_view(text));
}

std::string ControlText(zephui::UI_Node* node)
{
    return node ? WidgetText(node->UI_GetWidget()) : std::string();
}

RowPtr RowWithLabel(MetadataView* view, std::string const& label)
{
    auto* tree = TreeOf(view);
    std::vector<RowPtr> const rows(tree->GetOpenedRows().begin(), tree->GetOpenedRows().end());
    for (RowPtr const& row : rows)
    {
        MetadataViewCell* cell = CellOf(view, row);
        if (!cell || !cell->GetChild_Label())
            continue;
        std::string text = ControlText(cell->GetChild_Label().get());
        if (text.rfind("[", 0) == 0 && text.size() > 4)
            text = text.substr(4);
        if (text.rfind(label, 0) == 0)
            return row;
    }
    return RowPtr();
}

std::string DumpTree(MetadataView* view, bool withValues)
{
    auto* tree = TreeOf(view);
    std::string out;
    std::vector<RowPtr> const rows(tree->GetOpenedRows().begin(), tree->GetOpenedRows().end());
    for (RowPtr const& row : rows)
    {
        out.append(std::size_t(row->GetDepth()) * 2, ' ');
        out += row->CountChildRows() == 0 ? "  " : tree->IsRowOpen(row) ? "v " : "> ";
        MetadataViewCell* cell = CellOf(view, row);
        zephui::UI_Node* const label = cell ? cell->GetChild_Label().get() : nullptr;
        out += cell ? ControlText(label) : "<no cell>";
        if (auto* control = dynamic_cast<zephui::UI_ControlView*>(label))
            if (control->UI_IsOwnDisabled())
                out += " (fixed)";
        if (cell && withValues && cell->GetChild_Value())
            out += " = " + ControlText(cell->GetChild_Value().get());
        if (cell && cell->UI_IsOwnDisabled())
            out += " (greyed)";
        out += "\n";
    }
    return out;
}

Window::Window(zephui::UI_NodePtr const& root, int width, int height)
    : host(std::make_unique<zephui::NodeHostWidget>(root))
{
    host->resize(width, height);
    host->show();
    EXPECT_TRUE(QTest::qWaitForWindowExposed(host.get()));
}

Window::~Window()
{
    host->close();
    host.reset();
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
}

void Click(zephui::UI_Node* node)
{
    ASSERT_TRUE(node && node->UI_GetWidget());
    QPointer<QWidget> widget = node->UI_GetWidget();
    // A check box takes clicks on its box and text only: aim at the box.
    QPoint const middle = qobject_cast<QCheckBox*>(widget) ? QPoint(8, widget->height() / 2)
                                                           : widget->rect().center();
    QTest::mousePress(widget, Qt::LeftButton, Qt::NoModifier, middle);
    if (widget)
        QTest::mouseRelease(widget, Qt::LeftButton, Qt::NoModifier, middle);
}

std::set<Path> SelectedOf(MetadataView* view)
{
    std::set<Path> paths;
    view->GetSelectedPaths(paths);
    return paths;
}

} // namespace treetest

namespace zephmetadata
{
void PrintTo(Path const& path, std::ostream* out)
{
    *out << std::string(path.schemaNamespace.begin(), path.schemaNamespace.end()) << " "
         << std::string(path.propertyName.begin(), path.propertyName.end());
}
} // namespace zephmetadata
