// Dialogs from layout scripts: the library's two scripts build with every
// name their dialogs look up, lay out as a user expects, and run modally.

#include "zepheve/UI_Eve.h"

#include "module/ModuleResources.h"
#include "zephmetadataui/Module.h"

#include <zephui/ModalDriver.h>
#include <zephui/ResourceManager.h>
#include <zephui/UI_MultiColumnTree.h>
#include <zephui/UI_Popup.h>
#include <zephui/UI_SearchBox.h>
#include <zephui/UI_StaticText.h>
#include <zephui/UI_TextEdit.h>

#include <zephcore/QtStrings.h>

#include <QApplication>
#include <QDir>
#include <QImage>
#include <QWidget>

#include <gtest/gtest.h>

#include <functional>

using namespace zepheve;
using zephui::ModalDriver;
using zephui::RectF;
using zephui::UI_Node;

namespace
{

class UI_EveTest : public ::testing::Test
{
protected:
    static void SetUpTestSuite() { zephmetadataui::Initialize(); }
    static void TearDownTestSuite() { zephmetadataui::Terminate(); }
};

// A script of the library's resources, as its dialog loads it.
std::string LibraryScript(char const* name)
{
    std::vector<std::uint8_t> bytes;
    EXPECT_TRUE(zephmetadataui::ModuleResourceManager()->GetBinary("EVE", name, bytes)) << name;
    return std::string(bytes.begin(), bytes.end());
}

// A node's rectangle in its window's content, from the nodes' own rectangles.
RectF InWindow(UI_Node const* node)
{
    RectF r = node->UI_GetLocalRectF(true);
    for (UI_Node const* p = node->UI_GetParentNode(); p && p->UI_GetParentNode();
         p = p->UI_GetParentNode())
    {
        RectF const offset = p->UI_GetLocalRectF(true);
        r.left += offset.left;
        r.top += offset.top;
    }
    return r;
}

// Every node below the root: its widget where the node says, inside its
// parent, and no control smaller than its content needs.
void ExpectNothingClipped(UI_Node const* node)
{
    for (std::size_t i = 0; i < node->ChildCount(); ++i)
    {
        UI_Node const* child = node->ChildGet(i);
        QWidget const* widget = child->UI_GetWidgetIfMade();
        if (!widget || !child->UI_IsShown())
            continue;
        RectF const r = child->UI_GetLocalRectF(true);
        RectF const outer = node->UI_GetLocalRectF(false);
        std::string const what = child->UI_GetNodeID() + " " + typeid(*child).name();
        EXPECT_EQ(widget->geometry(), QRect(int(r.left), int(r.top), int(r.width), int(r.height)))
            << what;
        EXPECT_TRUE(r.left >= 0 && r.top >= 0 && r.GetRight() <= outer.width &&
                    r.GetBottom() <= outer.height)
            << what << " lies outside its parent";
        if (dynamic_cast<zephui::UI_ControlView const*>(child))
        {
            QSize const needed = widget->minimumSizeHint().expandedTo(widget->minimumSize());
            EXPECT_GE(int(r.width), needed.width()) << what;
            EXPECT_GE(int(r.height), needed.height()) << what;
        }
        if (!dynamic_cast<zephui::UI_MultiColumnTree const*>(child))
            ExpectNothingClipped(child);
    }
}

template <class T> bool IsA(zephui::UI_NodePtr const& node)
{
    return dynamic_cast<T*>(node.get()) != nullptr;
}

// Counts its calls and keeps what the user typed, as a script dialog would.
class CountingEve : public UI_Eve
{
public:
    using UI_Eve::UI_Eve;
    void Setup() override
    {
        ++setups;
        viewAtSetup = GetView() != nullptr && GetUINodePtr("okButton") != nullptr;
        UI_Eve::Setup();
    }
    void SetupPostCloseCallback() override
    {
        auto edit = boost::dynamic_pointer_cast<zephui::UI_TextEdit>(GetUINodePtr("nameTextEdit"));
        typed = edit ? zephcore::ToQString(edit->GetValue()) : QString();
    }
    int setups = 0;
    bool viewAtSetup = false;
    QString typed;
};

} // namespace

TEST_F(UI_EveTest, LibraryScriptsBuildWithEveryNameTheirDialogsFind)
{
    using Check = std::function<bool(zephui::UI_NodePtr const&)>;
    struct Name
    {
        char const* name;
        Check isRightClass;
    };
    struct Case
    {
        char const* script;
        char const* title;
        std::vector<Name> names;
    };
    Check const button = IsA<zephui::UI_TextButton>;
    Case const cases[] = {
        {"MetadataPreferencesDialog",
         "Metadata Display",
         {{"okButton", button},
          {"cancelButton", button},
          {"rootArrangement", IsA<DynamicGroup>},
          {"properties", IsA<zephui::UI_MultiColumnTree>},
          {"save_settings_button", button},
          {"delete_settings_button", button},
          {"new_schema_button", button},
          {"previous_settings_popup", IsA<zephui::UI_Popup>},
          {"search_box", IsA<zephui::UI_SearchBox>}}},
        {"AddSchemaPropertyDialog",
         "Add Property",
         {{"okButton", button},
          {"cancelButton", button},
          {"nameTextEdit", IsA<zephui::UI_TextEdit>},
          {"columnTypePopup", IsA<zephui::UI_Popup>}}},
    };
    for (Case const& c : cases)
    {
        UI_Eve eve(c.script, nullptr, nullptr);
        zephui::UI_DialogPtr const view = eve.CreateView(LibraryScript(c.script));
        ASSERT_TRUE(view) << c.script;
        EXPECT_EQ(zephcore::ToQString(view->GetWindowTitle()), c.title);
        EXPECT_EQ(view->UI_GetNodeID(), c.script);
        for (Name const& n : c.names)
        {
            zephui::UI_NodePtr const node = eve.GetUINodePtr(n.name);
            EXPECT_TRUE(node && n.isRightClass(node)) << c.script << ": " << n.name;
            EXPECT_EQ(view->UI_ChildGetFromID(n.name), node.get()) << n.name;
        }
        // The default setup makes the column's buttons the dialog's.
        EXPECT_EQ(view->GetOkButton(), eve.GetUINodePtr("okButton"));
        EXPECT_EQ(view->GetCancelButton(), eve.GetUINodePtr("cancelButton"));
        EXPECT_EQ(eve.GetUINodePtr("noSuchName"), nullptr);
    }
}

// Pictures of both dialogs are kept for a look by eye.
TEST_F(UI_EveTest, ControlsKeepTheirMinimumSizesAndNothingIsClipped)
{
    QDir const shots(QStringLiteral(ZEPH_BINARY_DIR "/eve-screenshots"));
    ASSERT_TRUE(shots.mkpath(QStringLiteral(".")));
    struct Case
    {
        char const* script;
        std::vector<std::pair<char const*, QSize>> minimums;
    };
    Case const cases[] = {
        {"MetadataPreferencesDialog",
         {{"search_box", {80, 0}},
          {"properties", {420, 300}},
          {"previous_settings_popup", {170, 0}},
          {"save_settings_button", {170, 0}},
          {"delete_settings_button", {170, 0}},
          {"new_schema_button", {170, 0}}}},
        {"AddSchemaPropertyDialog",
         {{"nameTextEdit", {200, 0}},
          {"columnTypePopup", {200, 0}},
          {"okButton", {80, 20}},
          {"cancelButton", {80, 20}}}},
    };
    for (Case const& c : cases)
    {
        SCOPED_TRACE(c.script);
        UI_Eve eve(c.script, nullptr, nullptr);
        zephui::UI_DialogPtr const view = eve.CreateView(LibraryScript(c.script));
        for (auto const& [name, least] : c.minimums)
        {
            RectF const r = eve.GetUINodePtr(name)->UI_GetLocalRectF(false);
            EXPECT_GE(r.width, float(least.width())) << name;
            EXPECT_GE(r.height, float(least.height())) << name;
        }
        ExpectNothingClipped(view.get());
        // The same once the window shows and Qt lays it out its own way.
        view->UI_Show(true);
        QApplication::processEvents();
        ExpectNothingClipped(view.get());
        QImage const shot = view->UI_GetWidget()->grab().toImage();
        EXPECT_EQ(shot.width(), int(view->UI_GetLocalRectF(false).width));
        EXPECT_TRUE(shot.save(shots.filePath(QStringLiteral("eve-%1.png").arg(c.script))));
        view->UI_Show(false);
    }
}

TEST_F(UI_EveTest, PreferencesHaveOkAndCancelAtTheRightAndTheTreeTakesTheGrowth)
{
    UI_Eve eve("MetadataPreferencesDialog", nullptr, nullptr);
    zephui::UI_DialogPtr const view = eve.CreateView(LibraryScript("MetadataPreferencesDialog"));
    auto rect = [&](char const* name) { return InWindow(eve.GetUINodePtr(name).get()); };
    RectF const tree = rect("properties"), ok = rect("okButton"), cancel = rect("cancelButton");
    RectF const save = rect("save_settings_button"), search = rect("search_box");

    // One column at the right of the tree, level with its top; OK first.
    EXPECT_EQ(ok.left, cancel.left);
    EXPECT_EQ(ok.width, cancel.width);
    EXPECT_LT(ok.width, save.width); // buttons of their own size, not the column's
    EXPECT_LT(ok.GetBottom(), cancel.top);
    EXPECT_GT(ok.left, tree.GetRight());
    EXPECT_EQ(ok.top, tree.top);
    EXPECT_EQ(ok.GetRight(), save.GetRight());
    // The settings controls start 50 below the buttons above them.
    EXPECT_GE(save.top, cancel.GetBottom() + 50.0f);
    // The search box spans the tree and the buttons.
    EXPECT_EQ(search.left, tree.left);
    EXPECT_EQ(search.GetRight(), save.GetRight());

    // WHEN the dialog grows as its setup allows (in height only)
    float const width = view->UI_GetLocalRectF(false).width;
    float const height = view->UI_GetLocalRectF(false).height;
    view->SetMinimumSize(width, 400);
    view->SetMaximumSize(width, 10000);
    view->SetContentSize(width, 400 + 250);
    // THEN the tree takes all of it, and the buttons stay where they were.
    RectF const grownTree = rect("properties");
    EXPECT_EQ(grownTree.height - tree.height, 650.0f - height);
    EXPECT_EQ(grownTree.width, tree.width);
    EXPECT_EQ(rect("okButton").top, ok.top);
    EXPECT_EQ(rect("save_settings_button").top, save.top);
}

TEST_F(UI_EveTest, AddPropertyFieldsLineUpBehindTheirLabelsBesideOkAndCancel)
{
    UI_Eve eve("AddSchemaPropertyDialog", nullptr, nullptr);
    zephui::UI_DialogPtr const view = eve.CreateView(LibraryScript("AddSchemaPropertyDialog"));
    RectF const name = InWindow(eve.GetUINodePtr("nameTextEdit").get());
    RectF const type = InWindow(eve.GetUINodePtr("columnTypePopup").get());
    RectF const ok = InWindow(eve.GetUINodePtr("okButton").get());
    EXPECT_EQ(name.left, type.left);
    EXPECT_LT(name.GetBottom(), type.top);
    EXPECT_GT(ok.left, name.GetRight());
    EXPECT_EQ(ok.top, name.top);
    // Not resizable: the window is held at the size it was built with.
    RectF const size = view->UI_GetLocalRectF(false);
    EXPECT_EQ(view->GetMinimumSize().x, size.width);
    EXPECT_EQ(view->GetMaximumSize().y, size.height);
}

TEST_F(UI_EveTest, InvalidateAllLaysOutAgainAfterAMinimumSizeChanged)
{
    UI_Eve eve("MetadataPreferencesDialog", nullptr, nullptr);
    zephui::UI_DialogPtr const view = eve.CreateView(LibraryScript("MetadataPreferencesDialog"));
    zephui::UI_NodePtr const save = eve.GetUINodePtr("save_settings_button");
    zephui::UI_NodePtr const tree = eve.GetUINodePtr("properties");
    // GIVEN a dialog wider than it needs, so the tree has room to give
    view->SetContentSize(view->UI_GetLocalRectF(false).width + 200,
                         view->UI_GetLocalRectF(false).height);
    float const treeWidth = tree->UI_GetLocalRectF(false).width;
    float const saveWidth = save->UI_GetLocalRectF(false).width;
    float const okRight = InWindow(eve.GetUINodePtr("okButton").get()).GetRight();
    // WHEN a button must be wider; nothing is laid out while the dialog is hidden
    save->UI_GetWidget()->setMinimumWidth(int(saveWidth) + 60);
    QApplication::processEvents();
    EXPECT_EQ(save->UI_GetLocalRectF(false).width, saveWidth);
    boost::dynamic_pointer_cast<DynamicGroup>(eve.GetUINodePtr("rootArrangement"))->InvalidateAll();
    // THEN the buttons' column widens into the tree, still flush right
    EXPECT_EQ(save->UI_GetLocalRectF(false).width, saveWidth + 60);
    EXPECT_EQ(tree->UI_GetLocalRectF(false).width, treeWidth - 60);
    EXPECT_EQ(InWindow(eve.GetUINodePtr("okButton").get()).GetRight(), okRight);
    ExpectNothingClipped(view.get());
}

TEST_F(UI_EveTest, ARunGivesOneForOkAndZeroForEscapeWithSetupCalledOnce)
{
    struct Case
    {
        char const* name;
        ModalDriver::Action action;
        int result;
        char const* typed;
    };
    QWidget* focusedAtStart = nullptr;
    QWidget* nameField = nullptr;
    auto const typeAndOk =
        ModalDriver::Sequence({[&](QWidget* window) { focusedAtStart = window->focusWidget(); },
                               ModalDriver::TypeInto("nameTextEdit", QStringLiteral("Keeper")),
                               ModalDriver::PressNode("okButton")});
    Case const cases[] = {
        {"typed, then OK", typeAndOk, zephui::kDialogResultOK, "Keeper"},
        {"Escape", ModalDriver::Escape(), zephui::kDialogResultCancel, "NewProperty"},
        {"Cancel", ModalDriver::PressNode("cancelButton"), zephui::kDialogResultCancel,
         "NewProperty"},
    };
    for (Case const& c : cases)
    {
        struct Filled : CountingEve
        {
            using CountingEve::CountingEve;
            void Setup() override
            {
                CountingEve::Setup();
                auto edit =
                    boost::dynamic_pointer_cast<zephui::UI_TextEdit>(GetUINodePtr("nameTextEdit"));
                edit->SetValue(zephcore::ToUTF16(QStringLiteral("NewProperty")));
                field = edit->UI_GetWidget();
            }
            QWidget* field = nullptr;
        } eve("AddSchemaPropertyDialog", nullptr, nullptr);
        ModalDriver driver;
        driver.Then(c.action);
        EXPECT_EQ(eve.ParseEveScript(LibraryScript("AddSchemaPropertyDialog")), c.result) << c.name;
        EXPECT_EQ(eve.GetResult(), c.result) << c.name;
        EXPECT_EQ(eve.typed, c.typed) << c.name;
        EXPECT_EQ(eve.setups, 1) << c.name;
        EXPECT_TRUE(eve.viewAtSetup) << c.name;
        EXPECT_EQ(eve.GetView(), nullptr) << c.name << ": released after the run";
        EXPECT_EQ(driver.Pending(), 0) << c.name;
        EXPECT_EQ(driver.Unexpected(), 0) << c.name;
        if (c.result == zephui::kDialogResultOK)
            nameField = eve.field;
    }
    // The field the script marks has the focus when the dialog opens.
    EXPECT_NE(focusedAtStart, nullptr);
    EXPECT_EQ(focusedAtStart, nameField);
}

TEST_F(UI_EveTest, AFaultyScriptThrowsWithItsPlaceAndShowsNothing)
{
    CountingEve eve("Broken", nullptr, nullptr);
    ModalDriver driver;
    std::string const text = "layout Broken\nzeph_dialog {\n  zeph_button b { colour: red }\n}\n";
    try
    {
        eve.ParseEveScript(text);
        ADD_FAILURE() << "no error";
    }
    catch (LayoutScriptError const& e)
    {
        EXPECT_EQ(e.GetLine(), 3);
        EXPECT_EQ(e.GetColumn(), 19);
    }
    EXPECT_EQ(eve.setups, 0);
    EXPECT_EQ(eve.GetView(), nullptr);
    EXPECT_TRUE(driver.Titles().empty());
}
