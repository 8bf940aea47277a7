// RefreshControl: the short form of the factory's choice that reaches the
// right UpdateControl from a bare Control.

#include "BindingTestSupport.h"

#include "zephmetadataui/ControlFactory.h"
#include "zephmetadataui/InlineControlFactory.h"
#include "zephmetadataui/UI_DateTextEdit.h"

#include "contracts/Toolkit.h"

#include <zephcore/Error.h>

#include <boost/make_shared.hpp>

#include <gtest/gtest.h>

using namespace zephmetadataui;
using namespace bindingtest;

namespace
{

// Writes without telling anyone, so only a refresh can show the change.
void WriteSilently(Value const& value, char const* text)
{
    WriteElsewhere(value, text, false);
}

void ExpectConversionError(Value const& value, boost::shared_ptr<Control> const& control,
                           bool displayOnly)
{
    try
    {
        RefreshControl(value, control, displayOnly);
        ADD_FAILURE() << "no error raised";
    }
    catch (zephcore::ZephError const& error)
    {
        EXPECT_EQ(1, error.level);
        EXPECT_EQ("$$$/zephcore/utility/Error/InvalidTypeConversion=Invalid type conversion.",
                  error.key);
        EXPECT_EQ(105, error.number1);
        EXPECT_EQ(21, error.number2);
        EXPECT_TRUE(error.flag);
    }
}

} // namespace

TEST(RefreshControlTest, BringsEachFactoryKindUpToDate)
{
    struct Case
    {
        char const* ns;
        char const* name;
        bool displayOnly;
        char const* written;
        char const* shown;
    };
    for (Case const c : {
             Case{kXMP, "Label", false, "Silent", "Silent"},
             Case{kXMP, "Label", true, "Silent", "Silent"},
             Case{kCRS, "HasCrop", false, "False", "unchecked"},
             Case{kCRS, "HasCrop", true, "False", "unchecked"}, // display-only, still a box
             Case{kCRS, "Temperature", false, "6000", "6000.000000"},
             Case{kTIFF, "Orientation", false, "6", "Rotated 90° clockwise"},
             Case{kEXIF, "FNumber", false, "40/10", "40/10"},
             // A date edit passes as a text edit: it gets the stored text as it is.
             Case{kXMP, "CreateDate", false, "2011-02-03", "2011-02-03"},
         })
    {
        SCOPED_TRACE(std::string(c.name) + (c.displayOnly ? " shown only" : ""));
        Value const value = V(MakeProvider(EveryKindDescription()), c.ns, c.name);
        auto const control = ControlFactory(value, nullptr, c.displayOnly, nullptr);
        std::string const before = Shown(control);
        WriteSilently(value, c.written);
        EXPECT_EQ(before, Shown(control)) << "nothing told the control";
        RefreshControl(value, control, c.displayOnly);
        EXPECT_EQ(c.shown, Shown(control));
    }
}

TEST(RefreshControlTest, MismatchedControlClassesRaiseTheConversionError)
{
    auto const provider = MakeProvider(EveryKindDescription());
    Value const label = V(provider, kXMP, "Label");
    auto const text = InlineControlFactory(label, nullptr);
    ExpectConversionError(label, text, true); // display-only wants static text

    auto const url = InlineControlFactory(V(provider, kXMP, "BaseURL"), nullptr);
    ExpectConversionError(V(provider, kXMP, "BaseURL"), url, false);
    auto const stars = InlineControlFactory(V(provider, kXMP, "Rating"), nullptr);
    ExpectConversionError(V(provider, kXMP, "Rating"), stars, false);
}

TEST(RefreshControlTest, NullControlsUnknownValuesAndCreatorsAreLeftAlone)
{
    auto const provider = MakeProvider(EveryKindDescription());
    Value const label = V(provider, kXMP, "Label");
    RefreshControl(label, boost::shared_ptr<Control>(), false);

    auto const text = InlineControlFactory(label, nullptr);
    RefreshControl(V(provider, kXMP, "NoSuchProperty"), text, false);

    RegisterControlCreator(
        [](Value const&, boost::shared_ptr<ViewItem>, boost::intrusive_ptr<UI_Node>)
        { return boost::shared_ptr<Control>(); });
    WriteSilently(label, "Silent");
    RefreshControl(label, text, false);
    EXPECT_EQ("Red", S(As<UI_TextEdit>(text)->GetValue()));
    RegisterControlCreator(ControlCreator());
    RefreshControl(label, text, false);
    EXPECT_EQ("Silent", S(As<UI_TextEdit>(text)->GetValue()));
}
