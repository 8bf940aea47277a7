// The status rules: what a value's path, provider and type, the "all
// writable" switch and a view's display parameter make of a control.

#include "BindingTestSupport.h"

#include "binding/ControlStatusPrivate.h"

#include <gtest/gtest.h>

using namespace zephmetadataui;
using namespace bindingtest;

namespace
{
ControlDisplayParameter Parameter(bool readOnly)
{
    ControlDisplayParameter parameter;
    parameter.read_only = readOnly;
    return parameter;
}
} // namespace

TEST(ControlStatusTest, StatusFollowsPathProviderTypeAndDisplayParameter)
{
    std::string const packet = "<xmp:Label>Red</xmp:Label><exif:FNumber>28/10</exif:FNumber>";
    auto const readOnly = MakeProvider(packet);
    readOnly->SetReadOnly(true);
    auto const unparsed = zephmetadata::BufferProviderImpl::Create("<not a packet");
    auto const inapplicable = boost::make_shared<NothingApplicableProvider>(Packet(packet));
    ControlStatus const editable = kControlStatusEditable, shown = kControlStatusReadOnly,
                        disabled = kControlStatusDisabled;
    struct Row
    {
        char const* what;
        Value value;
        PathEditability editability;
        // Without a display parameter, with an editable one, with a read-only one.
        ControlStatus bare, asEditable, asReadOnly;
        bool shownWhenAbsent;
    };
    for (Row const& row : std::vector<Row>{
             {"writable", V(MakeProvider(packet), kXMP, "Label"), kPathWritable, editable, editable,
              shown, true},
             {"flagged", V(MakeProvider(packet), kXMP, "Label", true), kPathFlaggedReadOnly,
              disabled, shown, shown, true},
             {"read-only provider", V(readOnly, kXMP, "Label"), kPathNotWritable, disabled, shown,
              shown, true},
             {"rational", V(MakeProvider(packet), kEXIF, "FNumber"), kPathTypeNotEditable, disabled,
              disabled, disabled, true},
             {"unknown property", V(MakeProvider(packet), kXMP, "NoSuchProperty"),
              kPathTypeNotEditable, disabled, disabled, disabled, true},
             {"no provider", V(nullptr, kXMP, "Label"), kPathNoMetadata, disabled, disabled,
              disabled, false},
             {"unparsed packet", V(unparsed, kXMP, "Label"), kPathNoMetadata, disabled, disabled,
              disabled, false},
             // A path that does not apply shows only while it has a value.
             {"not applicable", V(inapplicable, kXMP, "Label"), kPathWritable, editable, editable,
              shown, false},
         })
    {
        SCOPED_TRACE(row.what);
        EXPECT_EQ(row.editability, QueryPathEditability(row.value));
        EXPECT_EQ(row.bare, QueryControlStatus(row.value, boost::none));
        EXPECT_EQ(row.asEditable, QueryControlStatus(row.value, Parameter(false)));
        EXPECT_EQ(row.asReadOnly, QueryControlStatus(row.value, Parameter(true)));
        EXPECT_EQ(row.shownWhenAbsent, QueryVisibilityStatus(row.value, kGetValueAbsent));
        EXPECT_TRUE(QueryVisibilityStatus(row.value, kGetValueRead));
        EXPECT_TRUE(QueryVisibilityStatus(row.value, kGetValueMultiple));

        // Everything forced writable makes every control editable; the
        // verdict on the value itself stays.
        zephmetadata::SetAllMetadataForcedWritable(true);
        EXPECT_EQ(editable, QueryControlStatus(row.value, boost::none));
        EXPECT_EQ(editable, QueryControlStatus(row.value, Parameter(true)));
        EXPECT_EQ(row.editability, QueryPathEditability(row.value));
        zephmetadata::SetAllMetadataForcedWritable(false);
    }
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
