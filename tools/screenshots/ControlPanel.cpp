// Renders a panel with every control of the toolkit to a PNG, for a person to
// look at: tools/screenshots/zephui-control-panel [FILE.png]. Not a test; the
// property tree and its bound controls are pictured by the metadata browser's
// --screenshot.

#include "zephui/QtDrawing.h"
#include "zephui/UI_Button.h"
#include "zephui/UI_Checkbox.h"
#include "zephui/UI_Divider.h"
#include "zephui/UI_HotTextNumber.h"
#include "zephui/UI_ListBox.h"
#include "zephui/UI_MultiColumnTree.h"
#include "zephui/UI_MultiColumnTreeHeaderRow.h"
#include "zephui/UI_OutlineBox.h"
#include "zephui/UI_Popup.h"
#include "zephui/UI_RadioGroup.h"
#include "zephui/UI_ScrollBar.h"
#include "zephui/UI_SearchBox.h"
#include "zephui/UI_SectionView.h"
#include "zephui/UI_SplitterView.h"
#include "zephui/UI_StarRating.h"
#include "zephui/UI_StaticImage.h"
#include "zephui/UI_StaticText.h"
#include "zephui/UI_TextEdit.h"
#include "zephui/UI_URLEdit.h"

#include "zephcore/QtStrings.h"

#include <QApplication>
#include <QImage>
#include <QPainter>
#include <QWidget>

#include <boost/make_shared.hpp>

#include <cstdio>

using namespace zephui;
using zephcore::AsciiToUTF16;

namespace
{

template <class Node>
boost::intrusive_ptr<Node> Place(UI_SubViewPtr const& parent, Node* node, RectF const& rect)
{
    boost::intrusive_ptr<Node> kept(node);
    kept->UI_SetLocalRectF(rect);
    kept->UI_Show(true);
    parent->ChildPushBack(kept);
    return kept;
}

boost::intrusive_ptr<ImageInterface> DotImage(QColor const& color)
{
    QImage image(14, 14, QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::transparent);
    QPainter painter(&image);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setBrush(color);
    painter.setPen(Qt::NoPen);
    painter.drawEllipse(1, 1, 12, 12);
    return new QtImage(image);
}

} // namespace

int main(int argc, char** argv)
{
    if (qEnvironmentVariableIsEmpty("DISPLAY") && qEnvironmentVariableIsEmpty("WAYLAND_DISPLAY"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
    QApplication app(argc, argv);
    QString const path =
        argc > 1 ? QString::fromLocal8Bit(argv[1]) : QStringLiteral("zephui-controls.png");

    UI_SubViewPtr panel(new UI_SubView(RectF(0, 0, 640, 440)));
    panel->UI_Show(true);
    auto dot = boost::make_shared<boost::function<void(ConstMessage*)>>(
        [](ConstMessage* message)
        {
            auto* supply = static_cast<UI_PictureSupplyMessage*>(message);
            supply->SetImage(
                DotImage(supply->GetStateFlags().IsSet(UI_PictureSupplyMessage::kStateOn)
                             ? QColor(40, 160, 60)
                             : QColor(60, 110, 200)));
        });

    // Left column: labels and value controls.
    auto title =
        Place(panel, new UI_StaticText(AsciiToUTF16("Every control")), RectF(10, 8, 200, 19));
    title->SetFontStyleName("Bold");
    auto label = Place(panel, new UI_StaticText(AsciiToUTF16("Title:")), RectF(10, 34, 70, 21));
    label->SetAlignment(kAlignRight);
    auto text = Place(panel, new UI_TextEdit(16, 0), RectF(85, 34, 210, 21));
    text->SetValue(AsciiToUTF16("A sunny afternoon"));
    auto unknown = Place(panel, new UI_TextEdit(16, 0), RectF(85, 60, 210, 21));
    unknown->SetUnknownStateText(AsciiToUTF16("<Multiple Values>"));
    unknown->SetValueUnknown();
    auto multi = Place(panel, new UI_TextEdit(21, 0), RectF(85, 86, 210, 40));
    multi->SetValue(AsciiToUTF16("Two lines\nof description"));
    auto url = Place(panel, new UI_URLEdit(16), RectF(85, 132, 210, 21));
    url->SetValue(AsciiToUTF16("www.example.org"));
    auto check = Place(panel, new UI_Checkbox(AsciiToUTF16("Marked")), RectF(85, 158, 100, 19));
    check->SetValue(kCheckboxOn);
    auto mixed = Place(panel, new UI_Checkbox(AsciiToUTF16("Mixed")), RectF(190, 158, 100, 19));
    mixed->SetValueUnknown();
    auto popup = Place(panel, new UI_Popup(0, 0), RectF(85, 182, 150, 22));
    for (char const* item : {"Unknown", "-", "Approved", "Rejected"})
        popup->AddItem(AsciiToUTF16(item));
    popup->DisableItem(3);
    popup->SetValue(2);
    auto editablePopup = Place(panel, new UI_Popup(1, 0), RectF(240, 182, 55, 22));
    editablePopup->AddItem(AsciiToUTF16("en"));
    editablePopup->SetValueString(AsciiToUTF16("fr-CA"), true);
    auto number = Place(panel, new UI_HotTextNumber, RectF(85, 210, 70, 21));
    number->SetDecimalPlaces(2);
    number->SetValue(3.25);
    auto stars = Place(panel, new UI_StarRating, RectF(160, 210, 100, 19));
    stars->SetValue(3);
    auto bigStars = Place(panel, new UI_StarRating, RectF(85, 236, 150, 31));
    bigStars->SetValue(4);
    auto radios = Place(panel, new UI_RadioGroup, RectF(85, 274, 200, 40));
    radios->AddButton(AsciiToUTF16("Keep"));
    radios->AddButton(AsciiToUTF16("Replace"));
    radios->SetIndex(1);
    auto search = Place(panel, new UI_SearchBox(false, false), RectF(85, 320, 210, 22));
    search->SetValue(AsciiToUTF16("creator"));
    Place(panel, new UI_Divider, RectF(10, 350, 285, 2));

    // Buttons.
    auto button = Place(panel, new UI_TextButton(AsciiToUTF16("OK")), RectF(10, 360, 80, 22));
    button->SetDefaultAppearance(true);
    auto picture = Place(panel, new UI_PictureButton, RectF(95, 360, 24, 22));
    picture->SetImageSupplyFunction(dot);
    picture->SetSpringLoaded(false);
    picture->SetValue(1);
    auto pictureText = Place(panel, new UI_PictureTextButton, RectF(124, 360, 90, 22));
    pictureText->SetText(AsciiToUTF16("Linked"));
    pictureText->SetImageSupplyFunction(dot);
    auto hot =
        Place(panel, new UI_HotTextButton(AsciiToUTF16("Add Property")), RectF(220, 362, 90, 19));
    auto image = Place(panel, new UI_StaticImage, RectF(10, 390, 24, 24));
    image->SetImageSupplyFunction(dot);
    auto truncated = Place(
        panel, new UI_StaticText(AsciiToUTF16("http://ns.example.org/a/long/path/to/somewhere")),
        RectF(40, 392, 180, 19));
    truncated->SetTextTruncation(kTruncationMiddle);
    auto wrapped = Place(
        panel,
        new UI_StaticText(AsciiToUTF16("A note that is long enough to wrap onto a second line.")),
        RectF(40, 410, 250, 30));

    // Right column: outline box with a list, a tree, a splitter, a scroll bar.
    auto box = Place(panel, new UI_OutlineBox, RectF(320, 8, 310, 110));
    box->SetTitle(AsciiToUTF16("Keywords"));
    auto list = Place(box, new UI_ListBox, box->GetContentRectF());
    for (char const* word : {"sun", "beach", "holiday", "family", "summer"})
        list->AppendItem(AsciiToUTF16(word));
    list->SelectItem(1, true);

    auto tree = Place(panel, new UI_MultiColumnTree(2, 20.0f), RectF(320, 126, 310, 150));
    tree->Init(UI_MultiColumnTree::kTreeFlagPropertyList);
    tree->SetDrawGridLines(true, true);
    tree->SetColumnWidth(0, 150);
    tree->SetColumnWidth(1, 140);
    tree->GetHeaderRow()->GetColumnAt(0)->SetColumnName(AsciiToUTF16("Property"));
    tree->GetHeaderRow()->GetColumnAt(1)->SetColumnName(AsciiToUTF16("Value"));
    auto fill = boost::make_shared<boost::function<void(UI_MultiColumnTreeRow*)>>(
        [&tree](UI_MultiColumnTreeRow* row)
        {
            if (!tree->IsRowVisible(row))
                return;
            for (unsigned long column = 0; column < 2; ++column)
            {
                auto cell = row->GetCellView(column);
                boost::intrusive_ptr<UI_StaticText> cellText(new UI_StaticText(
                    column == 0 ? row->GetSortKey()
                                : AsciiToUTF16(row->CountChildRows() ? "" : "value")));
                cellText->UI_SetLocalRectF(RectF(2, 0, cell->UI_GetLocalRectF().width - 4,
                                                 cell->UI_GetLocalRectF().height));
                cellText->SetTextTruncation(kTruncationEnd);
                cellText->UI_Show(true);
                cell->ChildPushBack(cellText);
            }
        });
    tree->SetRowVisibilityChangedCallback(fill);
    {
        UI_MultiColumnTree::ScDeferLayoutForOpenAndCloseRow defer(tree);
        for (char const* schema : {"Dublin Core", "Rights", "Camera"})
        {
            auto row = tree->CreateAndAppendRow(nullptr, true, true);
            row->SetSortKey(AsciiToUTF16(schema));
            for (char const* property : {"Creator", "Title"})
                tree->CreateAndAppendRow(row, true, true)->SetSortKey(AsciiToUTF16(property));
        }
        tree->CloseRow(tree->GetTopRow(1));
    }

    auto splitter = Place(panel, new UI_SplitterView(true), RectF(320, 284, 285, 60));
    UI_SubViewPtr leftPane(new UI_StaticText(AsciiToUTF16("Left pane")));
    UI_SubViewPtr rightPane(new UI_StaticText(AsciiToUTF16("Right pane")));
    splitter->SetViews(leftPane, rightPane);
    splitter->SetSplitPosition(120);
    auto section =
        Place(panel, new UI_SectionView(AsciiToUTF16("Section")), RectF(320, 350, 285, 84));
    Place(section->GetContentView(), new UI_StaticText(AsciiToUTF16("Content of an open section")),
          RectF(8, 4, 260, 19));
    auto bar = Place(panel, new UI_ScrollBar(UI_ScrollBar::kScrollBarVertical),
                     RectF(612, 284, UI_ScrollBar::GetDefaultSize(), 150));
    bar->SetExtent({0, 1000});
    bar->SetValue({300, 450});

    QWidget* widget = panel->UI_GetWidget();
    widget->setAutoFillBackground(true);
    bool const saved = widget->grab().toImage().save(path);
    fill->clear();
    std::printf("%s %s\n", saved ? "Control panel written to" : "Could not write",
                qPrintable(path));
    return saved ? 0 : 1;
}
