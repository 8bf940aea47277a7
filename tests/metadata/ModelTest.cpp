#include "zephmetadata/Model.h"

#include "zephmetadata/Access.h"
#include "zephmetadata/Provider.h"
#include "zephmetadata/Values.h"

#include "ModelTestSupport.h"

#include <gtest/gtest.h>

#include <boost/make_shared.hpp>

using namespace zephmetadata;
using namespace modeltest;

constexpr char const* kIptcCore = "http://iptc.org/std/Iptc4xmpCore/1.0/xmlns/";
constexpr char const* kPlus = "http://ns.useplus.org/ldf/xmp/1.0/";

TEST(ModelTest, StartAndStopAreCounted)
{
    // The test program started the model once already.
    ASSERT_TRUE(IsInitialized());
    Initialize();
    Terminate();
    EXPECT_TRUE(IsInitialized()); // the outer start still holds
    xmp::MetaPtr meta = Parse(LabelPacket("still working"));
    UTF8String label;
    EXPECT_TRUE(GetValue(meta.get(), P(kXMP, "Label"), label, nullptr));
    Terminate(); // a stray extra stop is ignored once the count is spent
    Initialize();
    Initialize();
    Terminate();
    EXPECT_TRUE(IsInitialized());
}

TEST(ModelTest, FullStopAndRestartKnowsTheSchemasAgain)
{
    while (IsInitialized())
        Terminate();
    Initialize();
    ASSERT_TRUE(IsInitialized());
    // Field paths need the prefixes the definitions register.
    xmp::MetaPtr meta = xmp::NewMeta();
    ASSERT_TRUE(AddArrayItem(meta.get(), P(kPlus, "CopyrightOwner"), -1));
    EXPECT_TRUE(
        SetValue(meta.get(), P(kPlus, "CopyrightOwner[1]/plus:CopyrightOwnerName"), U8("Ann")));
    EXPECT_EQ(Text(meta.get(), P(kPlus, "CopyrightOwner[1]/plus:CopyrightOwnerName")), "Ann");
}

TEST(ModelTest, NewPropertiesTakeTheirFormFromTheDefinitions)
{
    xmp::MetaPtr meta = xmp::NewMeta();
    // A language alternative and a list known only from the definition files.
    ASSERT_TRUE(
        SetValue(meta.get(), P(kIptcCore, "AltTextAccessibility"), U8("A harbour at dawn")));
    EXPECT_TRUE(xmp::IsAltText(OptionsOf(meta.get(), kIptcCore, "AltTextAccessibility")));
    ASSERT_TRUE(SetValue(meta.get(), P(kPlus, "ImageAlterationConstraints"), U8("AL-CRP; AL-FLP")));
    EXPECT_EQ(FormOf(meta.get(), kPlus, "ImageAlterationConstraints"), xmp::kArrayBag);
    EXPECT_EQ(CountArrayItems(meta.get(), P(kPlus, "ImageAlterationConstraints")), 2);
    // A list of structures has no text form; its items are structures.
    EXPECT_FALSE(SetValue(meta.get(), P(kPlus, "CopyrightOwner"), U8("Ann")));
    ASSERT_TRUE(AddArrayItem(meta.get(), P(kPlus, "CopyrightOwner"), -1));
    EXPECT_EQ(FormOf(meta.get(), kPlus, "CopyrightOwner"), xmp::kArraySeq);
    EXPECT_TRUE(xmp::IsStruct(OptionsOf(meta.get(), kPlus, "CopyrightOwner[1]")));
}

TEST(ModelTest, SetMinimalFloatValueWritesShortTextAndReportsItsOwnChange)
{
    auto provider = BufferProviderImpl::Create(Packet("<xmp:Rating>3</xmp:Rating>"));
    int told = 0;
    auto listener =
        boost::make_shared<boost::function<void(__XMPMeta__*)>>([&](__XMPMeta__*) { ++told; });
    provider->NotifyWhenMetaDataChanged(listener);
    Value const rating(P(kXMP, "Rating"), provider);
    SetMinimalFloatValue(rating, 3.0);
    EXPECT_EQ(told, 0); // unchanged: nobody woken
    SetMinimalFloatValue(rating, 4.5);
    EXPECT_EQ(told, 1);
    EXPECT_EQ(Read(provider, P(kXMP, "Rating")), "4.5");
    SetMinimalFloatValue(Value(P(kXMP, "Rating"), nullptr), 1.0); // no provider: nothing happens
    EXPECT_EQ(told, 1);
}
