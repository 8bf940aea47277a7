#include "zephcore/Error.h"
#include "zephcore/ImmutableString.h"
#include "zephcore/RefCounted.h"

#include <gtest/gtest.h>

using namespace zephcore;

TEST(ErrorTest, ThrowErrorCarriesEverythingItWasGiven)
{
    try
    {
        ThrowError(kErrorLevelFatal, "$$$/zephmetadataui/Errors/Cast=Invalid type conversion.", 3,
                   -4, true);
        FAIL() << "ThrowError returned";
    }
    catch (ZephError const& error)
    {
        EXPECT_EQ(error.level, kErrorLevelFatal);
        EXPECT_EQ(error.key, "$$$/zephmetadataui/Errors/Cast=Invalid type conversion.");
        EXPECT_EQ(error.number1, 3);
        EXPECT_EQ(error.number2, -4);
        EXPECT_TRUE(error.flag);
        EXPECT_STREQ(error.what(), "Invalid type conversion.");
    }
    EXPECT_THROW(ThrowError(kErrorLevelError, nullptr), std::exception);
}

TEST(ErrorTest, ImmutableStringsShareAndTellNullFromEmpty)
{
    ImmutableString const null = ImmutableString::sNullString;
    ImmutableString const empty(std::string{});
    EXPECT_TRUE(null.IsNull());
    EXPECT_FALSE(empty.IsNull());
    EXPECT_NE(null, empty);
    EXPECT_STREQ(null.c_str(), "");
    static char const literal[] = "PNG";
    ImmutableString const wrapped = ImmutableString::CreateStatic(literal);
    EXPECT_EQ(wrapped.c_str(), literal) << "a static string is not copied";
    EXPECT_EQ(wrapped, ImmutableString("PNG"));
    ImmutableString const copy = wrapped;
    EXPECT_EQ(copy.c_str(), literal);
}

namespace
{

class Counted : public RefCountedObject
{
public:
    explicit Counted(int* deaths) : deaths(deaths) {}
    ~Counted() override { ++*deaths; }
    int* deaths;
};

} // namespace

TEST(ErrorTest, RefCountedObjectsDieWithTheirLastPointer)
{
    int deaths = 0;
    boost::intrusive_ptr<Counted> first(new Counted(&deaths));
    EXPECT_EQ(first->GetRefCount(), 1);
    {
        boost::intrusive_ptr<Counted> second = first;
        EXPECT_EQ(first->GetRefCount(), 2);
        first.reset();
        EXPECT_EQ(deaths, 0);
    }
    EXPECT_EQ(deaths, 1);
    Counted* raw = new Counted(&deaths);
    EXPECT_EQ(raw->GetRefCount(), 0) << "a new object starts uncounted";
    boost::intrusive_ptr<Counted>{raw};
    EXPECT_EQ(deaths, 2);
}
