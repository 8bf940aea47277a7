// RefreshControl: the short form of the factory's choice that reaches the
// right UpdateControl from a bare Control.

#include "BindingTestSupport.h"

#include "zephmetadataui/ControlFactory.h"
#include "zephmetadataui/InlineControlFactory.h"

#include "contracts/Toolkit.h"

#include <zephcore/Error.h>

#include <gtest/gtest.h>

#include <tuple>
#include <vector>

using namespace zephmetadataui;
using namespace bindingtest;

TEST(RefreshControlTest, BringsEachFactoryKindUpToDate)
{
    // What is written without telling anyone, and what the control shows after
    // a refresh (null: a control class it cannot refresh raises an error).
    using Case = std::tuple<char const*, char const*, bool, char const*, char const*>;
    for (auto const& [ns, name, displayOnly, written, shown] : std::vector<Case>{
             {kXMP, "Label", false, "Silent", "Silent"},
             {kXMP, "Label", true, "Silent", "Silent"},
             {kCRS, "HasCrop", false, "False", "unchecked"},
             {kCRS, "HasCrop", true, "False", "unchecked"}, // display-only, still a box
             {kCRS, "Temperature", false, "6000", "6000.000000"},
             {kTIFF, "Orientation", false, "6", "Rotated 90° clockwise"},
             {kEXIF, "FNumber", false, "40/10", "40/10"},
             // A date edit passes as a text edit: it gets the stored text as it is.
             {kXMP, "CreateDate", false, "2011-02-03", "2011-02-03"},
             {kXMP, "BaseURL", false, "x", nullptr},
             {kXMP, "Rating", false, "4", nullptr},
         })
    {
        SCOPED_TRACE(std::string(name) + (displayOnly ? " shown only" : ""));
        Value const value = V(MakeProvider(EveryKindDescription()), ns, name);
        auto const control = ControlFactory(value, nullptr, displayOnly, nullptr);
        std::string const before = Shown(control);
        WriteElsewhere(value, written, false);
        EXPECT_EQ(before, Shown(control)) << "nothing told the control";
        if (!shown)
        {
            EXPECT_THROW(RefreshControl(value, control, displayOnly), zephcore::ZephError);
            continue;
        }
        RefreshControl(value, control, displayOnly);
        EXPECT_EQ(shown, Shown(control));
    }
}

TEST(RefreshControlTest, NullControlsUnknownValuesAndCreatorsAreLeftAloneAWrongClassRaises)
{
    auto const provider = MakeProvider(EveryKindDescription());
    Value const label = V(provider, kXMP, "Label");
    RefreshControl(label, boost::shared_ptr<Control>(), false);

    auto const text = InlineControlFactory(label, nullptr);
    // A display-only refresh wants static text.
    EXPECT_THROW(RefreshControl(label, text, true), zephcore::ZephError);
    RefreshControl(V(provider, kXMP, "NoSuchProperty"), text, false);

    RegisterControlCreator(
        [](Value const&, boost::shared_ptr<ViewItem>, boost::intrusive_ptr<UI_Node>)
        { return boost::shared_ptr<Control>(); });
    WriteElsewhere(label, "Silent", false); // only a refresh can show it
    RefreshControl(label, text, false);
    EXPECT_EQ("Red", S(As<UI_TextEdit>(text)->GetValue()));
    RegisterControlCreator(ControlCreator());
    RefreshControl(label, text, false);
    EXPECT_EQ("Silent", S(As<UI_TextEdit>(text)->GetValue()));
}
