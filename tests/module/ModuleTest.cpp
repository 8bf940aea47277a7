// Start and stop of the library: the counted brackets, what the first and the
// last call do, and the resources found between them.

#include "zephmetadataui/Module.h"
#include "binding/PathFilters.h"
#include "module/ModuleResources.h"
#include "zephmetadataui/ControlFactory.h"

#include <zephmetadata/Model.h>
#include <zephui/Drawbot.h>
#include <zephui/ResourceManager.h>

#include <gtest/gtest.h>

#include <boost/make_shared.hpp>

#include <limits>

using namespace zephmetadataui;

namespace
{

// Every test starts and ends stopped, and checks that it did.
class ModuleTest : public ::testing::Test
{
protected:
    void SetUp() override
    {
        ASSERT_EQ(0u, ModuleStartCount());
        ASSERT_EQ(nullptr, ModuleResourceManager());
        ASSERT_FALSE(zephmetadata::IsInitialized());
    }
    void TearDown() override
    {
        EXPECT_EQ(0u, ModuleStartCount());
        EXPECT_EQ(nullptr, ModuleResourceManager());
        EXPECT_FALSE(zephmetadata::IsInitialized());
    }
};

zephmetadata::Path SomePath(char const* name)
{
    return zephmetadata::Path(zephcore::ToUTF8("http://purl.org/dc/elements/1.1/"),
                              zephcore::ToUTF8(name));
}

} // namespace

TEST_F(ModuleTest, FirstInitializeStartsModelThenResourcesAndLastTerminateStopsThem)
{
    Initialize();
    EXPECT_EQ(1u, ModuleStartCount());
    EXPECT_TRUE(zephmetadata::IsInitialized());
    ASSERT_NE(nullptr, ModuleResourceManager());
    // The library's own resources, by type and name in any case.
    EXPECT_TRUE(ModuleResourceManager()->HasBinary("PNG", "SP_Link_Sm_N_D"));
    EXPECT_TRUE(ModuleResourceManager()->HasBinary("XML", "METADATAUITHEME"));
    EXPECT_FALSE(
        ModuleResourceManager()->HasBinary("PNG", "SP_Info_Sm_N")); // the toolkit's, not ours

    Terminate();
    EXPECT_EQ(nullptr, ModuleResourceManager());
    EXPECT_FALSE(zephmetadata::IsInitialized());
}

TEST_F(ModuleTest, TerminateWithoutInitializeWrapsTheCountAndDoesNothingElse)
{
    Terminate();
    EXPECT_EQ(std::numeric_limits<std::uint32_t>::max(), ModuleStartCount());
    EXPECT_EQ(nullptr, ModuleResourceManager());
    EXPECT_FALSE(zephmetadata::IsInitialized());

    // The next Initialize only brings the count back to 0: nothing starts.
    Initialize();
    EXPECT_EQ(0u, ModuleStartCount());
    EXPECT_EQ(nullptr, ModuleResourceManager());
    EXPECT_FALSE(zephmetadata::IsInitialized());
}

TEST_F(ModuleTest, SecondCycleMakesNewResourcesAndANewImageCacheButKeepsTheBlacklist)
{
    auto const supplier = zephui::NewOSSupplier(1.0f);
    Initialize();
    EXPECT_TRUE(LoadModuleImage(supplier.get(), "SP_Link_Sm_N_D"));
    EXPECT_EQ(1u, ModuleImageCache()->Count());
    EXPECT_TRUE(IsShowablePath(SomePath("relation")));
    BlacklistPath(SomePath("relation"));
    Terminate();

    Initialize();
    ASSERT_NE(nullptr, ModuleResourceManager());
    EXPECT_EQ(0u, ModuleImageCache()->Count());
    EXPECT_TRUE(LoadModuleImage(supplier.get(), "SP_Link_Sm_N_D"));
    EXPECT_FALSE(IsShowablePath(SomePath("relation")));
    EXPECT_TRUE(IsShowablePath(SomePath("language")));
    Terminate();
}

TEST_F(ModuleTest, NestedBracketsKeepResourcesAndTheCreatorUntilTheOutermostTerminate)
{
    auto const token = boost::make_shared<int>(0);
    Initialize();
    RegisterControlCreator(
        [token](zephmetadata::Value const&, boost::shared_ptr<zephmetadata::ViewItem>,
                boost::intrusive_ptr<zephui::UI_Node>) { return boost::shared_ptr<Control>(); });
    EXPECT_EQ(2, token.use_count());

    // A nested bracket leaves everything up until the outermost Terminate.
    ResourceManager const* const first = ModuleResourceManager();
    Initialize();
    Terminate();
    EXPECT_EQ(1u, ModuleStartCount());
    EXPECT_EQ(first, ModuleResourceManager());
    EXPECT_TRUE(zephmetadata::IsInitialized());
    EXPECT_FALSE(RegisteredControlCreator().empty());

    Terminate();
    EXPECT_EQ(1, token.use_count()); // the function object itself is gone
    Initialize();
    EXPECT_TRUE(RegisteredControlCreator().empty());
    Terminate();
}

TEST_F(ModuleTest, XMPBadgesComeAtTheSuppliersScaleAndOnlyWhileStarted)
{
    auto const normal = zephui::NewOSSupplier(1.0f);
    auto const retina = zephui::NewOSSupplier(2.0f);
    auto const threeHalves = zephui::NewOSSupplier(1.5f);
    EXPECT_FALSE(utility::GetXMPIconLight(normal.get()));

    Initialize();
    auto const light = utility::GetXMPIconLight(normal.get());
    auto const dark = utility::GetXMPIconDark(normal.get());
    ASSERT_TRUE(light);
    ASSERT_TRUE(dark);
    EXPECT_NE(light, dark);
    EXPECT_EQ(105, light->GetPixelWidth());
    EXPECT_EQ(15, light->GetPixelHeight());

    auto const light2x = utility::GetXMPIconLight(retina.get());
    ASSERT_TRUE(light2x);
    EXPECT_EQ(210, light2x->GetPixelWidth());
    EXPECT_FLOAT_EQ(105.0f, light2x->GetWidth());

    auto const dark3to2 = utility::GetXMPIconDark(threeHalves.get());
    ASSERT_TRUE(dark3to2);
    EXPECT_EQ(157, dark3to2->GetPixelWidth());
    EXPECT_EQ(22, dark3to2->GetPixelHeight());

    // Names are found in any case; unknown names give no image.
    EXPECT_TRUE(LoadModuleImage(normal.get(), "p_monitorin_n"));
    EXPECT_FALSE(LoadModuleImage(normal.get(), "SP_Alert_Xs_N"));
    Terminate();
}
