// The status rules: what a value's path, provider and type, the "all
// writable" switch and a view's display parameter make of a control.

#include "BindingTestSupport.h"

#include "binding/ControlStatusPrivate.h"
#include "zephmetadataui/Control.h"

#include <gtest/gtest.h>

using namespace zephmetadataui;
using namespace bindingtest;

namespace
{

enum class Situation
{
    kWritable,
    kFlaggedReadOnly,
    kProviderReadOnly,
    kRational,
    kNoProvider,
    kUnparsedPacket
};

Value ValueFor(Situation situation)
{
    std::string const packet = "<xmp:Label>Red</xmp:Label><exif:FNumber>28/10</exif:FNumber>";
    switch (situation)
    {
    case Situation::kWritable:
        return V(MakeProvider(packet), kXMP, "Label");
    case Situation::kFlaggedReadOnly:
        return V(MakeProvider(packet), kXMP, "Label", true);
    case Situation::kProviderReadOnly:
    {
        auto provider = MakeProvider(packet);
        provider->SetReadOnly(true);
        return V(provider, kXMP, "Label");
    }
    case Situation::kRational:
        return V(MakeProvider(packet), kEXIF, "FNumber");
    case Situation::kNoProvider:
        return V(nullptr, kXMP, "Label");
    case Situation::kUnparsedPacket:
        return V(zephmetadata::BufferProviderImpl::Create("<not a packet"), kXMP, "Label");
    }
    return Value();
}

struct StatusRow
{
    Situation situation;
    PathEditability editability;
    ControlStatus withoutParameter;
    ControlStatus withEditableParameter;
    ControlStatus withReadOnlyParameter;
};

class ControlStatusTableTest : public ::testing::TestWithParam<StatusRow>
{
protected:
    void TearDown() override { zephmetadata::SetAllMetadataForcedWritable(false); }
};

ControlDisplayParameter Parameter(bool readOnly)
{
    ControlDisplayParameter parameter;
    parameter.read_only = readOnly;
    return parameter;
}

} // namespace

TEST_P(ControlStatusTableTest, StatusFollowsPathAndDisplayParameter)
{
    StatusRow const row = GetParam();
    Value const value = ValueFor(row.situation);
    EXPECT_EQ(row.editability, QueryPathEditability(value));
    EXPECT_EQ(row.withoutParameter, QueryControlStatus(value, boost::none));
    EXPECT_EQ(row.withEditableParameter, QueryControlStatus(value, Parameter(false)));
    EXPECT_EQ(row.withReadOnlyParameter, QueryControlStatus(value, Parameter(true)));
}

TEST_P(ControlStatusTableTest, ForcedWritableMakesEveryValueEditable)
{
    Value const value = ValueFor(GetParam().situation);
    zephmetadata::SetAllMetadataForcedWritable(true);
    EXPECT_EQ(kControlStatusEditable, QueryControlStatus(value, boost::none));
    EXPECT_EQ(kControlStatusEditable, QueryControlStatus(value, Parameter(true)));
    // The verdict on the value itself does not change.
    EXPECT_EQ(GetParam().editability, QueryPathEditability(value));
}

INSTANTIATE_TEST_SUITE_P(
    Rules, ControlStatusTableTest,
    ::testing::Values(StatusRow{Situation::kWritable, kPathWritable, kControlStatusEditable,
                                kControlStatusEditable, kControlStatusReadOnly},
                      StatusRow{Situation::kFlaggedReadOnly, kPathFlaggedReadOnly,
                                kControlStatusDisabled, kControlStatusReadOnly,
                                kControlStatusReadOnly},
                      StatusRow{Situation::kProviderReadOnly, kPathNotWritable,
                                kControlStatusDisabled, kControlStatusReadOnly,
                                kControlStatusReadOnly},
                      StatusRow{Situation::kRational, kPathTypeNotEditable, kControlStatusDisabled,
                                kControlStatusDisabled, kControlStatusDisabled},
                      StatusRow{Situation::kNoProvider, kPathNoMetadata, kControlStatusDisabled,
                                kControlStatusDisabled, kControlStatusDisabled},
                      StatusRow{Situation::kUnparsedPacket, kPathNoMetadata, kControlStatusDisabled,
                                kControlStatusDisabled, kControlStatusDisabled}));

TEST(ControlStatusTest, WritingDisabledProcessWideMakesValuesNotWritable)
{
    Value const value = ValueFor(Situation::kWritable);
    zephmetadata::DisableXMPWriting(true);
    EXPECT_EQ(kPathNotWritable, QueryPathEditability(value));
    EXPECT_EQ(kControlStatusDisabled, QueryControlStatus(value, boost::none));
    zephmetadata::DisableXMPWriting(false);
    EXPECT_EQ(kControlStatusEditable, QueryControlStatus(value, boost::none));
}

TEST(ControlStatusTest, HasEditableTypeNeedsATypeIdOtherThanRational)
{
    EXPECT_TRUE(HasEditableType(P(kXMP, "Label")));
    EXPECT_TRUE(HasEditableType(P(kXMP, "CreateDate")));
    EXPECT_FALSE(HasEditableType(P(kEXIF, "FNumber")));
    EXPECT_FALSE(HasEditableType(P(kXMP, "NoSuchProperty")));
    EXPECT_FALSE(HasEditableType(P("http://example.com/unknown/", "Label")));
}

TEST(ControlStatusTest, VisibilityShowsReadAndMultipleAndAsksProviderOtherwise)
{
    std::string const packet = "<xmp:Label>Red</xmp:Label>";
    Value const present = V(MakeProvider(packet), kXMP, "Label");
    EXPECT_TRUE(QueryVisibilityStatus(present, kGetValueRead));
    EXPECT_TRUE(QueryVisibilityStatus(present, kGetValueMultiple));
    EXPECT_TRUE(QueryVisibilityStatus(present, kGetValueAbsent));

    Value const notApplicable(P(kXMP, "Label"), NothingApplicableProvider::Create(Packet(packet)));
    EXPECT_TRUE(QueryVisibilityStatus(notApplicable, kGetValueRead));
    EXPECT_TRUE(QueryVisibilityStatus(notApplicable, kGetValueMultiple));
    EXPECT_FALSE(QueryVisibilityStatus(notApplicable, kGetValueAbsent));
    EXPECT_FALSE(QueryVisibilityStatus(notApplicable, GetValueResult(4)));

    EXPECT_FALSE(QueryVisibilityStatus(ValueFor(Situation::kNoProvider), kGetValueAbsent));
    EXPECT_FALSE(QueryVisibilityStatus(ValueFor(Situation::kUnparsedPacket), kGetValueAbsent));
}

TEST(ControlStatusTest, DisplayParameterIsReadFromTheNodeId)
{
    EXPECT_FALSE(DisplayParameterFromNodeID(""));
    EXPECT_FALSE(DisplayParameterFromNodeID("UI_DateTextEdit"));
    EXPECT_FALSE(DisplayParameterFromNodeID("read_only"));
    ASSERT_TRUE(DisplayParameterFromNodeID("metadata_view"));
    EXPECT_FALSE(DisplayParameterFromNodeID("metadata_view")->read_only);
    ASSERT_TRUE(DisplayParameterFromNodeID("metadata_view, read_only"));
    EXPECT_TRUE(DisplayParameterFromNodeID("metadata_view, read_only")->read_only);
    EXPECT_TRUE(DisplayParameterFromNodeID("row_metadata_view_3"));
}

TEST(ControlStatusTest, ChoicesTurnRawValuesIntoLabels)
{
    auto choice = [](char const* value, char const* label)
    {
        auto c = boost::make_shared<ChoiceDefinition>();
        c->value = zephcore::ToUTF8(value);
        c->label = U16(label);
        return c;
    };
    ChoiceList const choices{choice("1", "Normal"), choice("3", "Rotated"),
                             choice("1", "Second match")};
    EXPECT_EQ("Normal", S(DisplayTextForChoices(choices, zephcore::ToUTF8("1"))));
    EXPECT_EQ("Rotated", S(DisplayTextForChoices(choices, zephcore::ToUTF8("3"))));
    EXPECT_EQ("7", S(DisplayTextForChoices(choices, zephcore::ToUTF8("7"))));
    EXPECT_EQ("x", S(DisplayTextForChoices(ChoiceList(), zephcore::ToUTF8("x"))));

    // Through definitions: the type's choices of tiff:Orientation.
    auto orientation = PathEntryDefinition(P(kTIFF, "Orientation"));
    ASSERT_TRUE(orientation);
    EXPECT_EQ("Normal", S(DisplayTextForValue(orientation, zephcore::ToUTF8("1"))));
    EXPECT_EQ("42", S(DisplayTextForValue(orientation, zephcore::ToUTF8("42"))));
    EXPECT_EQ("", S(DisplayTextForValue(orientation, UTF8String())));
    EXPECT_EQ("", S(DisplayTextForValue(nullptr, zephcore::ToUTF8("1"))));
}

TEST(ControlStatusTest, OnlyAChoiceListOfExactlyThatTypeCountsAsUserData)
{
    ChoiceList const choices(1, boost::make_shared<ChoiceDefinition>());
    EXPECT_NE(nullptr, ChoicesFromUserData(boost::any(choices)));
    EXPECT_EQ(nullptr, ChoicesFromUserData(boost::any()));
    EXPECT_EQ(nullptr, ChoicesFromUserData(boost::any(std::string("choices"))));
    EXPECT_EQ(nullptr, ChoicesFromUserData(boost::any(&choices)));
}
