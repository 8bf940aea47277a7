// Dialogs from layout scripts: the library's two scripts build with every
// name their dialogs look up, lay out as a user expects, and run modally.

#include "zepheve/UI_Eve.h"

#include "module/ModuleResources.h"
#include "zephmetadataui/Module.h"

#include <zephui/ModalDriver.h>
#include <zephui/UI_MultiColumnTree.h>
#include <zephui/UI_TextEdit.h>

#include <zephcore/QtStrings.h>

#include <QApplication>
#include <QWidget>

#include <sstream>

#include <gtest/gtest.h>

using namespace zepheve;
using namespace zephui;

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

// A library script's dialog, built but not run.
struct Built
{
    explicit Built(char const* script)
        : eve(script, nullptr, nullptr), view(eve.CreateView(LibraryScript(script)))
    {
    }
    // A node's rectangle in the window's content, from the nodes' own rectangles.
    RectF InWindow(char const* name) const
    {
        UI_Node* node = eve.GetUINodePtr(name).get();
        return UI_Node::UI_GetSelfToSpecificParentMatrix(node, view.get())
            .Transform(node->UI_GetLocalRectF(false));
    }
    RectF Size(char const* name) const { return eve.GetUINodePtr(name)->UI_GetLocalRectF(false); }
    UI_Eve eve;
    UI_DialogPtr view;
};

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
        if (dynamic_cast<UI_ControlView const*>(child))
        {
            QSize const needed = widget->minimumSizeHint().expandedTo(widget->minimumSize());
            EXPECT_GE(int(r.width), needed.width()) << what;
            EXPECT_GE(int(r.height), needed.height()) << what;
        }
        if (!dynamic_cast<UI_MultiColumnTree const*>(child))
            ExpectNothingClipped(child);
    }
}

// Counts its setups and keeps what the user typed.
class CountingEve : public UI_Eve
{
public:
    using UI_Eve::UI_Eve;
    void Setup() override
    {
        ++setups;
        EXPECT_TRUE(GetView() && GetUINodePtr("okButton")) << "set up once the view is built";
        UI_Eve::Setup();
        field = GetUINodePtr("nameTextEdit")->UI_GetWidget();
    }
    void SetupPostCloseCallback() override
    {
        auto edit = boost::dynamic_pointer_cast<UI_TextEdit>(GetUINodePtr("nameTextEdit"));
        typed = zephcore::ToQString(edit->GetValue());
    }
    int setups = 0;
    QWidget* field = nullptr;
    QString typed;
};

} // namespace

// Every name the dialogs look up is in the view, each at least the size its
// script asks, and nothing is clipped before or after the window shows.
TEST_F(UI_EveTest, LibraryScriptsBuildEveryNameUnclippedAtItsLeastSize)
{
    // What each dialog looks up, and one control's least size from its script.
    struct Case
    {
        char const* script;
        char const* title;
        char const* names;
        char const* sized;
        float width, height;
    } const cases[] = {
        {"MetadataPreferencesDialog", "Metadata Display",
         "okButton cancelButton rootArrangement properties save_settings_button "
         "delete_settings_button new_schema_button previous_settings_popup search_box",
         "properties", 420, 300},
        {"AddSchemaPropertyDialog", "Add Property",
         "okButton cancelButton nameTextEdit columnTypePopup", "okButton", 80, 20},
    };
    for (Case const& c : cases)
    {
        SCOPED_TRACE(c.script);
        Built const b(c.script);
        ASSERT_TRUE(b.view);
        EXPECT_EQ(zephcore::ToQString(b.view->GetWindowTitle()), c.title);
        std::istringstream names(c.names);
        for (std::string name; names >> name;)
            EXPECT_TRUE(b.eve.GetUINodePtr(name) &&
                        b.view->UI_ChildGetFromID(name) == b.eve.GetUINodePtr(name).get())
                << name;
        EXPECT_GE(b.Size(c.sized).width, c.width);
        EXPECT_GE(b.Size(c.sized).height, c.height);
        ExpectNothingClipped(b.view.get());
        // The same once the window shows and Qt lays it out its own way.
        b.view->UI_Show(true);
        QApplication::processEvents();
        ExpectNothingClipped(b.view.get());
        b.view->UI_Show(false);
    }
}

// OK and Cancel in a column at the right, level with the top of what they
// stand beside, OK first.
TEST_F(UI_EveTest, ButtonsAndFieldsStandWhereAUserLooksForThem)
{
    Built const p("MetadataPreferencesDialog");
    RectF const tree = p.InWindow("properties"), ok = p.InWindow("okButton");
    RectF const cancel = p.InWindow("cancelButton"), save = p.InWindow("save_settings_button");
    EXPECT_EQ(ok.left, cancel.left);
    EXPECT_LT(ok.GetBottom(), cancel.top);
    EXPECT_GT(ok.left, tree.GetRight());
    EXPECT_EQ(ok.top, tree.top);
    EXPECT_EQ(ok.GetRight(), save.GetRight());
    // The settings controls start 50 below the buttons above them.
    EXPECT_GE(save.top, cancel.GetBottom() + 50.0f);

    Built const a("AddSchemaPropertyDialog");
    RectF const name = a.InWindow("nameTextEdit"), type = a.InWindow("columnTypePopup");
    EXPECT_EQ(name.left, type.left);
    EXPECT_LT(name.GetBottom(), type.top);
    EXPECT_GT(a.InWindow("okButton").left, name.GetRight());
    EXPECT_EQ(a.InWindow("okButton").top, name.top);
    // Not resizable: the window is held at the size it was built with.
    RectF const size = a.view->UI_GetLocalRectF(false);
    EXPECT_EQ(a.view->GetMinimumSize().x, size.width);
    EXPECT_EQ(a.view->GetMaximumSize().y, size.height);
}

TEST_F(UI_EveTest, PreferencesTreeTakesTheGrowthAndGivesWhatAWiderButtonNeeds)
{
    Built const b("MetadataPreferencesDialog");
    RectF const size = b.view->UI_GetLocalRectF(false);
    RectF const tree = b.InWindow("properties"), ok = b.InWindow("okButton");
    // WHEN the dialog grows
    b.view->SetContentSize(size.width + 200, size.height + 250);
    // THEN the tree takes all of it, and the buttons stay flush right.
    EXPECT_EQ(b.Size("properties").height, tree.height + 250);
    EXPECT_EQ(b.Size("properties").width, tree.width + 200);
    EXPECT_EQ(b.InWindow("okButton").top, ok.top);
    EXPECT_EQ(b.InWindow("okButton").GetRight(), ok.GetRight() + 200);
    // WHEN a button must be wider; nothing is laid out while the dialog is hidden
    UI_NodePtr const save = b.eve.GetUINodePtr("save_settings_button");
    float const saveWidth = b.Size("save_settings_button").width;
    save->UI_GetWidget()->setMinimumWidth(int(saveWidth) + 60);
    QApplication::processEvents();
    EXPECT_EQ(b.Size("save_settings_button").width, saveWidth);
    boost::dynamic_pointer_cast<DynamicGroup>(b.eve.GetUINodePtr("rootArrangement"))
        ->InvalidateAll();
    // THEN the buttons' column widens into the tree, still flush right
    EXPECT_EQ(b.Size("save_settings_button").width, saveWidth + 60);
    EXPECT_EQ(b.Size("properties").width, tree.width + 200 - 60);
    EXPECT_EQ(b.InWindow("okButton").GetRight(), ok.GetRight() + 200);
    ExpectNothingClipped(b.view.get());
}

TEST_F(UI_EveTest, ARunSetsUpOnceHandsOutTheResultAndReleasesTheView)
{
    CountingEve eve("AddSchemaPropertyDialog", nullptr, nullptr);
    QWidget* focusedAtStart = nullptr;
    ModalDriver driver;
    driver.Then(
        ModalDriver::Sequence({[&](QWidget* window) { focusedAtStart = window->focusWidget(); },
                               ModalDriver::TypeInto("nameTextEdit", QStringLiteral("Keeper")),
                               ModalDriver::PressNode("okButton")}));
    EXPECT_EQ(eve.ParseEveScript(LibraryScript("AddSchemaPropertyDialog")), kDialogResultOK);
    EXPECT_EQ(eve.typed, QStringLiteral("Keeper"));
    EXPECT_EQ(eve.setups, 1);
    EXPECT_EQ(eve.GetView(), nullptr) << "released after the run";
    // The field the script marks has the focus when the dialog opens.
    EXPECT_EQ(focusedAtStart, eve.field);
}

TEST_F(UI_EveTest, AFaultyScriptThrowsAndShowsNothing)
{
    CountingEve eve("Broken", nullptr, nullptr);
    ModalDriver driver;
    std::string const text = "layout Broken\nzeph_dialog {\n  zeph_button b { colour: red }\n}\n";
    EXPECT_THROW(eve.ParseEveScript(text), LayoutScriptError);
    EXPECT_EQ(eve.setups, 0);
    EXPECT_EQ(eve.GetView(), nullptr);
    EXPECT_TRUE(driver.Titles().empty());
}
