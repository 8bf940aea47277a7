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
    auto const provider = MakeProvider(EveryKindDescription());
    Value const label = V(provider, kXMP, "Label");
    Value const crop = V(provider, kCRS, "HasCrop");
    Value const temperature = V(provider, kCRS, "Temperature");
    Value const orientation = V(provider, kTIFF, "Orientation");
    Value const fnumber = V(provider, kEXIF, "FNumber");
    Value const date = V(provider, kXMP, "CreateDate");
    auto const text = InlineControlFactory(label, nullptr);
    auto const box = InlineControlFactory(crop, nullptr);
    auto const number = InlineControlFactory(temperature, nullptr);
    auto const popup = InlineControlFactory(orientation, nullptr);
    auto const rational = InlineControlFactory(fnumber, nullptr);
    auto const dateEdit = InlineControlFactory(date, nullptr);

    WriteSilently(label, "Silent");
    WriteSilently(crop, "False");
    WriteSilently(temperature, "6000");
    WriteSilently(orientation, "6");
    WriteSilently(fnumber, "40/10");
    WriteSilently(date, "2011-02-03");
    EXPECT_EQ("Red", S(As<UI_TextEdit>(text)->GetValue()));

    for (auto [value, control] :
         {std::pair{label, text}, std::pair{crop, box}, std::pair{temperature, number},
          std::pair{orientation, popup}, std::pair{fnumber, rational}, std::pair{date, dateEdit}})
        RefreshControl(value, control, false);
    EXPECT_EQ("Silent", S(As<UI_TextEdit>(text)->GetValue()));
    EXPECT_FALSE(As<UI_Checkbox>(box)->IsChecked());
    EXPECT_EQ(6000.0, As<UI_HotTextNumber>(number)->GetValue());
    EXPECT_EQ("Rotated 90° clockwise", S(As<UI_Popup>(popup)->GetValueString()));
    EXPECT_EQ("40/10", S(As<UI_StaticText>(rational)->GetValue()));
    // A date edit passes as a text edit: it gets the stored text as it is.
    EXPECT_EQ("2011-02-03", S(As<UI_DateTextEdit>(dateEdit)->UI_TextEdit::GetValue()));
}

TEST(RefreshControlTest, DisplayOnlyBooleansStillRefreshTheirCheckbox)
{
    auto const provider = MakeProvider(EveryKindDescription());
    Value const crop = V(provider, kCRS, "HasCrop");
    auto const box = ControlFactory(crop, nullptr, true, nullptr);
    ASSERT_TRUE(As<UI_Checkbox>(box));
    WriteSilently(crop, "False");
    RefreshControl(crop, box, true);
    EXPECT_FALSE(As<UI_Checkbox>(box)->IsChecked());
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
