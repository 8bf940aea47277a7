// Dialogs built from archives: every value the form carries reaches its node,
// bindings move nodes when the dialog resizes, and a damaged archive throws
// before any window exists. (The library's own archives are opened by the
// tests of its dialogs.)

#include "ArchiveText.h"

#include "zephui/ResourceManager.h"
#include "zephui/UI_ArchivedDialog.h"
#include "zephui/UI_Checkbox.h"
#include "zephui/UI_LayoutView.h"
#include "zephui/UI_Popup.h"
#include "zephui/UI_StaticImage.h"
#include "zephui/UI_StaticText.h"
#include "zephui/UI_TextEdit.h"
#include "zephui/UI_TextEdit_MS.h"

#include "zephcore/Localizer.h"
#include "zephcore/QtStrings.h"

#include <QApplication>
#include <QDir>
#include <QFile>
#include <QImage>
#include <QPushButton>
#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <functional>
#include <sstream>

using namespace zephui;
using namespace archivetext;
using zephcore::ToQString;

namespace
{

// A resource folder ("XML/<NAME>.xml", "PNG/<NAME>.png") in a temporary directory.
struct ArchiveFolder
{
    ArchiveFolder()
    {
        QDir(dir.path()).mkpath(QStringLiteral("XML"));
        QDir(dir.path()).mkpath(QStringLiteral("PNG"));
        QImage icon(8, 8, QImage::Format_ARGB32);
        icon.fill(Qt::red);
        icon.save(dir.filePath(QStringLiteral("PNG/ICON.png")));
    }
    void Write(std::string const& name, std::string const& text)
    {
        QFile file(dir.filePath(QStringLiteral("XML/%1.xml").arg(QString::fromStdString(name))));
        ASSERT_TRUE(file.open(QIODevice::WriteOnly));
        file.write(text.data(), qint64(text.size()));
    }
    // A dialog of the archive written under this name; throws as the constructor does.
    UI_ArchivedDialogPtr Open(std::string const& name, ArchivedNodeCreator const& creator = {},
                              Flags<unsigned long> flags = 0)
    {
        return new UI_ArchivedDialog(nullptr, &resources, name, zephcore::AsciiToUTF16("Test"),
                                     HWND(nullptr), flags, creator);
    }

    QTemporaryDir dir;
    OS_ResourceManager resources{dir.path().toStdString()};
};

std::string Rect(UI_Node* node)
{
    RectF const r = node->UI_GetLocalRectF(true);
    std::ostringstream text;
    text << r.left << "," << r.top << " " << r.width << "x" << r.height;
    return text.str();
}

// One line of what a user sees of a node: its place, state and content.
std::string Describe(UI_Node* node)
{
    std::ostringstream text;
    text << Rect(node);
    if (!node->UI_IsShown())
        text << " hidden";
    if (node->UI_IsOwnDisabled())
        text << " disabled";
    if (!node->UI_GetToolTip().empty())
        text << " tip '" << ToQString(node->UI_GetToolTip()).toStdString() << "'";
    if (unsigned(node->UI_GetLayoutBinding()) != 0)
        text << " bind " << unsigned(node->UI_GetLayoutBinding());
    auto quoted = [](zephcore::UTF16String const& s)
    { return " '" + ToQString(s).toStdString() + "'"; };
    if (auto* b = dynamic_cast<UI_TextButton*>(node))
    {
        auto* push = qobject_cast<QPushButton*>(b->UI_GetWidget());
        text << quoted(b->GetText()) << (push && push->isDefault() ? " default" : "")
             << (b->IsSpringLoaded() ? "" : " toggles");
    }
    if (auto* b = dynamic_cast<UI_PictureTextButton*>(node))
        text << quoted(b->GetText()) << (b->SupplyImage() ? " picture" : "");
    if (auto* c = dynamic_cast<UI_Checkbox*>(node))
        text << quoted(c->GetText()) << (c->IsChecked() ? " on" : " off");
    if (auto* p = dynamic_cast<UI_Popup*>(node))
    {
        text << (p->GetPopupType() == UI_Popup::kPopupEditable ? " editable" : "") << " [";
        for (int i = 0; i < p->CountItems(); ++i)
            text << (i ? "|" : "")
                 << (p->IsSeparator(i) ? std::string("-")
                                       : ToQString(p->GetItemText(i)).toStdString());
        text << "]";
    }
    if (auto* s = dynamic_cast<UI_StaticText*>(node))
        text << quoted(s->GetValue()) << " align " << int(s->GetAlignment()) << " cut "
             << int(s->GetTextTruncation()) << " size " << s->GetFontSize();
    if (auto* i = dynamic_cast<UI_StaticImage*>(node))
        text << " image " << i->GetImageName() << (i->GetImage() ? " found" : " missing");
    if (auto* e = dynamic_cast<UI_TextEdit*>(node))
        text << quoted(e->GetValue()) << (e->IsMultiLine() ? " lines" : "");
    if (auto* l = dynamic_cast<UI_LayoutView*>(node))
        text << (l->IsLayoutEnabled() ? " stacks" : "")
             << (l->GetLayoutMode() == UI_LayoutView::kLayoutVertical ? " down" : " across")
             << (l->GetMaintainMargins() ? " margins" : "")
             << (l->GetScaleChildren() ? " scales" : "");
    return text.str();
}

Node Leaf(char const* cls, char const* id, RectF r, unsigned long mask = 0,
          std::vector<std::string> sections = {})
{
    return {cls, id, r.left, r.top, r.width, r.height, mask, std::move(sections), {}, {}, {}};
}

} // namespace

TEST(ArchivedDialogTest, EveryValueOfTheFormReachesItsNode)
{
    zephcore::Localizer::Get().LoadTranslations("$$$/test/archive/Show=Zeigen\n");
    ArchiveFolder folder;
    Node root = Leaf("UI_SubView", "root", RectF(5, 7, 400, 300), 12);
    root.children = {
        Leaf("UI_TextButton", "ok", RectF(300, 270, 80, 19), 15,
             {Section("UI_TextButton",
                      {Pair("text", UText("($$$/zephui/dialogs/OK=OK)")),
                       Pair("textAlignment", Choice(1)), Pair("textIndent", Float(0))}),
              Section("UI_Button",
                      {Pair("defaultAppearance", Bool(true)), Pair("springLoaded", Bool(false)),
                       Pair("cornerRadius", Float(4))}),
              Section("UI_ControlView", {Pair("enabled", Bool(false))})}),
        Leaf(
            "UI_Checkbox", "check", RectF(10, 10, 181.5, 19), 0,
            {Section("UI_Checkbox", {Pair("text", UText("($$$/test/archive/Show=Show)")),
                                     Pair("checked", Bool(true)), Pair("checkSize", Signed(14))})}),
        Leaf("UI_Popup", "popup", RectF(10, 40, 120, 21), 0,
             {Section("UI_Popup", {Pair("popupItems", UTexts({"R6", "", "Start..."})),
                                   Pair("popupType", Choice(1)), Pair("fontSize", Float(11)),
                                   Pair("alwaysNotify", Bool(true))})}),
        Leaf("UI_StaticText", "label", RectF(10, 70, 200, 34), 0,
             {Section("UI_StaticText",
                      {Pair("text", UText("A & B")), Pair("alignment", Choice(2)),
                       Pair("textTruncation", Choice(3)), Pair("fontSize", Unsigned(13))})}),
        Leaf("UI_StaticImage", "image", RectF(10, 110, 20, 20), 0,
             {Section("UI_StaticImage", {Pair("imageName", Text("icon"))})}),
        Leaf("UI_PictureTextButton", "picture", RectF(40, 110, 100, 19), 0,
             {Section("UI_PictureTextButton",
                      {Pair("imageName", Text("Icon")), Pair("text", UText("Errors")),
                       Pair("relationship", Choice(1))})}),
        Leaf("UI_TextEdit_MS", "box", RectF(10, 140, 200, 60), 0,
             {Section("UI_TextEdit_MS", {}),
              Section("UI_TextEdit", {Pair("text", UText("two\nlines"))})}),
        Leaf("UI_LayoutView", "row", RectF(220, 10, 100, 40), 0,
             {Section("UI_LayoutView",
                      {Pair("layoutMode", Choice(1)), Pair("maintainMargins", Bool(true)),
                       Pair("layoutEnabled", Bool(false))})}),
        Leaf("UI_Divider", "rule", RectF(10, 210, 300, 2), 0,
             {Section("UI_Node", {Pair("visible", Bool(false)),
                                  Pair("tooltip", UText("($$$/test/archive/Tip=A rule)"))})}),
    };
    folder.Write("EVERYTHING", Document(root));

    UI_ArchivedDialogPtr const dialog = folder.Open("everything");
    EXPECT_EQ(Describe(dialog->GetNodeForID("root").get()), "0,0 400x300 bind 12")
        << "the root sits at 0, 0 whatever its archived place";
    std::pair<char const*, char const*> const cases[] = {
        {"ok", "300,270 80x19 disabled bind 15 'OK' default toggles"},
        {"check", "10,10 181.5x19 'Zeigen' on"},
        {"popup", "10,40 120x21 editable [R6|-|Start...]"},
        {"label", "10,70 200x34 'A & B' align 2 cut 3 size 13"},
        {"image", "10,110 20x20 image icon found"},
        {"picture", "40,110 100x19 'Errors' picture"},
        {"box", "10,140 200x60 'two\nlines' lines"},
        {"row", "220,10 100x40 down margins"},
        {"rule", "10,210 300x2 hidden tip 'A rule'"},
    };
    for (auto const& [id, seen] : cases)
        EXPECT_EQ(Describe(dialog->GetNodeForID(id).get()), seen) << id;
    zephcore::Localizer::Get().Clear();
}

TEST(ArchivedDialogTest, ChildrenTakeTheOrderOfTheirNumbersNotOfTheFile)
{
    ArchiveFolder folder;
    std::string const first = NodeText(Leaf("UI_SubView", "first", RectF(0, 0, 10, 10)));
    std::string const second = NodeText(Leaf("UI_SubView", "second", RectF(10, 0, 10, 10)));
    std::string const children =
        List({Pair("child-1", second), Pair("count", Unsigned(2)), Pair("child-0", first)});
    std::string const root = List(
        {Pair("adapter", UText("zephui::controls::UI_SubView")),
         Pair("sections",
              Numbered("section-", {Section("UI_SubView", {Pair("children", children)}),
                                    Section("UI_Node", {Pair("bounds", Rect(0, 0, 20, 10))})}))});
    folder.Write("ORDER", Document(root));
    UI_ArchivedDialogPtr const dialog = folder.Open("Order");
    UI_Node* content = dialog->ChildGet(0);
    ASSERT_EQ(content->ChildCount(), 2u);
    EXPECT_EQ(content->ChildGet(0)->UI_GetNodeID(), "first");
    EXPECT_EQ(content->ChildGet(1)->UI_GetNodeID(), "second");
}

// Binding masks and spelt-out constraints move nodes as the dialog grows; a
// fixed-size dialog does not grow when the user drags it.
TEST(ArchivedDialogTest, BindingsMoveNodesWhenTheDialogGrowsUnlessItsSizeIsFixed)
{
    ArchiveFolder folder;
    Node root = Leaf("UI_SubView", "root", RectF(0, 0, 200, 100), 12);
    root.children = {
        Leaf("UI_SubView", "fixed", RectF(10, 10, 20, 20)),
        Leaf("UI_SubView", "corner", RectF(170, 70, 20, 20), 15),
        Leaf("UI_SubView", "grows", RectF(10, 40, 100, 20), 12),
        Leaf("UI_SubView", "bottom", RectF(10, 80, 100, 10), 10),
        Leaf("UI_SubView", "right", RectF(150, 10, 20, 20), 5),
        Leaf("UI_SubView", "spelt", RectF(10, 10, 40, 20)),
    };
    root.children.back().constraints =
        List({Pair("CenterHorizontal", Bool(true)), Pair("BindTopEdgeToParentBottom", Bool(true)),
              Pair("BindBottomEdgeToParentBottom", Bool(true)),
              Pair("BindLeftEdgeToParentRight", Bool(false))});
    folder.Write("GROW", Document(root));
    UI_ArchivedDialogPtr const dialog = folder.Open("grow");
    dialog->SetContentSize(300, 150);
    std::pair<char const*, char const*> const cases[] = {
        {"fixed", "10,10 20x20"},    {"corner", "270,120 20x20"}, {"grows", "10,40 200x70"},
        {"bottom", "10,130 100x10"}, {"right", "250,10 20x20"},   {"spelt", "130,60 40x20"},
    };
    for (auto const& [id, rect] : cases)
        EXPECT_EQ(Rect(dialog->GetNodeForID(id).get()), rect) << id;

    UI_ArchivedDialogPtr const fixed = folder.Open("grow", {}, kArchivedDialogFixedSize);
    for (UI_ArchivedDialogPtr const& d : {fixed, dialog})
        d->UI_GetWidget()->resize(500, 400); // as the user would drag it
    EXPECT_EQ(fixed->UI_GetWidget()->size(), QSize(200, 100));
    EXPECT_EQ(dialog->UI_GetWidget()->size(), QSize(500, 400));
}

TEST(ArchivedDialogTest, TheNodeCreatorMakesNamedNodesAndNullLeavesTheArchivedClass)
{
    ArchiveFolder folder;
    Node root = Leaf("UI_SubView", "root", RectF(0, 0, 300, 200), 12);
    Node made = Leaf(
        "UI_TextEdit_MS", "made", RectF(0, 0, 100, 50), 0,
        {Section("UI_TextEdit_MS", {}), Section("UI_TextEdit", {Pair("text", UText("report"))})});
    made.className = "Scrolling";
    Node left = made;
    left.id = "left";
    left.className = "Unknown";
    root.children = {made, left};
    folder.Write("CREATED", Document(root));
    std::vector<std::string> asked;
    UI_ArchivedDialogPtr const dialog =
        folder.Open("created",
                    [&](zephcore::UTF16String const& name) -> UI_NodePtr
                    {
                        asked.push_back(ToQString(name).toStdString());
                        return asked.back() == "Scrolling"
                                   ? new UI_TextEdit(UI_TextEdit::kTextEditMultiLine)
                                   : nullptr;
                    });
    EXPECT_EQ(asked, (std::vector<std::string>{"Scrolling", "Unknown"}));
    auto const created = dialog->GetNodeForID<UI_TextEdit>("made");
    EXPECT_FALSE(boost::dynamic_pointer_cast<UI_TextEdit_MS>(created)) << "the creator's class";
    EXPECT_EQ(ToQString(created->GetValue()), QStringLiteral("report")) << "sections still apply";
    EXPECT_TRUE(dialog->GetNodeForID<UI_TextEdit_MS>("left"));
}

TEST(ArchivedDialogTest, UnknownIdsAndWrongClassesThrowTheConversionError)
{
    ArchiveFolder folder;
    Node root = Leaf("UI_SubView", "root", RectF(0, 0, 100, 100));
    root.children = {Leaf("UI_Checkbox", "check", RectF(0, 0, 50, 19))};
    folder.Write("IDS", Document(root));
    UI_ArchivedDialogPtr const dialog = folder.Open("ids");
    EXPECT_TRUE(dialog->GetNodeForID<UI_Checkbox>("check"));
    dialog->UI_SetNodeID("dialog"); // only nodes below the dialog are found
    for (auto const& call :
         std::initializer_list<std::function<void()>>{
             [&] { dialog->GetNodeForID("nothing"); }, [&] { dialog->GetNodeForID("dialog"); },
             [&] { dialog->GetNodeForID<UI_Popup>("check"); }})
        EXPECT_THROW(call(), zephcore::ZephError);
}

TEST(ArchivedDialogTest, DamagedArchivesThrowWithTheirPlaceAndLeaveNoWindow)
{
    std::string const good = Document(Leaf("UI_SubView", "root", RectF(0, 0, 100, 100)));
    auto replaced = [&](std::string const& from, std::string const& to)
    {
        std::string text = good;
        std::size_t const at = text.find(from);
        EXPECT_NE(at, std::string::npos) << from;
        return at == std::string::npos ? text : text.replace(at, from.size(), to);
    };
    std::pair<std::string, char const*> const cases[] = {
        {replaced("<string>root</string>", "<maybe>root</maybe>"), "unknown element <maybe>"},
        {replaced("</prop.pair>", "</prop.list>"), ""},
        {good.substr(0, good.size() / 2), ""},
        {replaced(">100<", ">1o0<"), "'1o0' is no number"},
        {replaced(">4</int>", ">-4</int>"), "no unsigned"},
        {replaced("controls::UI_SubView", "controls::UI_Gadget"),
         "unknown class 'zephui::controls::UI_Gadget'"},
        {replaced(">UI_Node<", ">UI_Gadget<"), "unknown section 'UI_Gadget'"},
        {replaced("<key>bounds</key>", "<key>bonds</key>"), "unknown key 'bonds'"},
        {replaced(Unsigned(1), ""), "has no value"},
        {replaced(Unsigned(1), Unsigned(1) + Unsigned(2)), "more than one value"},
        {replaced(Text("root"), Bool(true)), "is no text"},
        {replaced(Unsigned(2), Unsigned(9)), "'count'"},
        {"<html/>", "does not start with <prop.map>"},
        {"<!DOCTYPE x [<!ENTITY a 'b'>]><prop.map version='4'/>", "declarations"},
    };
    ArchiveFolder folder;
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    qsizetype const windows = QApplication::topLevelWidgets().size();
    for (auto const& [text, reason] : cases)
    {
        folder.Write("DAMAGED", text);
        try
        {
            folder.Open("damaged");
            ADD_FAILURE() << "no error: " << text;
        }
        catch (ArchiveError const& error)
        {
            EXPECT_NE(error.GetReason().find(reason), std::string::npos) << error.what();
            EXPECT_GT(error.GetLine(), 0) << error.what();
            EXPECT_EQ(error.GetArchive(), "damaged") << error.what();
        }
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        EXPECT_EQ(QApplication::topLevelWidgets().size(), windows) << reason;
    }
    try
    {
        folder.Open("absent");
        ADD_FAILURE() << "a missing resource: no error";
    }
    catch (ArchiveError const& error)
    {
        EXPECT_EQ(error.GetLine(), 0);
        EXPECT_NE(std::string(error.what()).find("absent"), std::string::npos);
    }
}
