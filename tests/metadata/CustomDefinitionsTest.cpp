// Custom schemas: made, registered, written to the user's folder, and read
// back at the next start as they were.

#include "ModelTestSupport.h"

#include <zephmetadata/CustomDefinitions.h>

#include <zephcore/Files.h>

using namespace zephmetadata;
using namespace modeltest;

namespace
{

char const* const kCustom = "http://example.com/ns/custom/a1b2c3/";
char const* const kOdd = "Bell\x07, escape\x1B, tab\t, line\r\nend";

UTF16String W(char const* text)
{
    return zephcore::UTF8to16(std::string(text));
}

class CustomDefinitionsTest : public LoadedDefinitionTest
{
protected:
    // A schema as the preferences dialog makes one for the name "MyData":
    // texts with localiser keys, and one typed without a key holding what
    // XML attributes lose or refuse.
    boost::shared_ptr<SchemaDefinition> MakeMyData()
    {
        auto schema = CreateNewSchema(U8(kCustom), U8("MyData"),
                                      W("$$$/custom_xmp_schemas/MyData/schema_label/MyData=MyData"),
                                      W("MyData"), UTF16String(), W(kOdd));
        auto const add =
            [&](PrimitiveType type, char const* name, char const* key, char const* text)
        {
            schema->properties.push_back(
                CreateNewProperty(type, U8(name), W(key), W(text), UTF16String(), W(text)));
        };
        add(kPrimitiveInteger, "ShotCount",
            "$$$/custom_xmp_schemas/MyData/property_name/Shot20Count=Shot Count", "Shot Count");
        add(kPrimitiveText, "Note",
            "$$$/custom_xmp_schemas/MyData/property_name/Note=A \"quoted\" <note> & more", "Note");
        add(kPrimitiveBoolean, "Approved", "", kOdd);
        return schema;
    }

    UTF16String FileFor(char const* name)
    {
        return zephcore::FileUtils::BuildPathSpec(CustomDefinitionsUserDirectory(), W(name));
    }

    // Registers the schema, writes it to the file, and reads the definitions
    // again as the next start does; the schema as read back.
    boost::shared_ptr<SchemaDefinition>
    WrittenAndReloaded(boost::shared_ptr<SchemaDefinition> const& schema, UTF16String const& file)
    {
        EXPECT_TRUE(RegisterSchemaDefinition(schema, UTF16String(), false));
        SetFilePathForSchema(file, schema);
        RewriteSchemaFile(schema);
        UnloadDefinitions();
        EXPECT_FALSE(NamespaceDefinition(schema->schemaNamespace));
        LoadDefinitions();
        EXPECT_FALSE(HasErrors()) << ErrorLogText();
        return NamespaceDefinition(schema->schemaNamespace);
    }
};

TEST_F(CustomDefinitionsTest, SavedDisplaySettingsInTheFolderAreNotTakenForDefinitions)
{
    UnloadDefinitions();
    std::filesystem::path const user = S(CustomDefinitionsUserDirectory());
    std::ofstream(user / "Mine.xmp_view_settings.xml")
        << "<xmp_view_settings><path/></xmp_view_settings>";
    std::ofstream(user / "stray.xml") << "<notdefinitions/>";
    LoadDefinitions();
    ASSERT_EQ(GetErrorInfos().size(), 1u) << ErrorLogText();
    EXPECT_NE(S(GetErrorInfos().front().source).find("stray.xml"), std::string::npos);
}

TEST_F(CustomDefinitionsTest, ASchemaWrittenAndLoadedAgainIsTheSame)
{
    auto const schema = MakeMyData();
    EXPECT_FALSE(NamespaceDefinition(U8(kCustom))); // not known before registration
    UTF16String const file = FileFor("MyData.xml");
    auto const loaded = WrittenAndReloaded(schema, file);
    ASSERT_TRUE(loaded);
    EXPECT_NE(loaded, schema);
    EXPECT_TRUE(loaded->schemaFlag1);
    EXPECT_EQ(S(loaded->label) + " " + S(loaded->schemaPrefix), "MyData MyData");
    EXPECT_EQ(S(loaded->description), kOdd);
    ASSERT_EQ(loaded->properties.size(), 3u);
    for (std::size_t i = 0; i < 3; ++i)
    {
        EXPECT_EQ(S(loaded->properties[i]->name), S(schema->properties[i]->name));
        EXPECT_EQ(S(loaded->properties[i]->labelKey), S(schema->properties[i]->labelKey));
        EXPECT_EQ(*loaded->properties[i]->primitiveType, *schema->properties[i]->primitiveType);
        EXPECT_TRUE(loaded->properties[i]->userAdded);
    }
    // Labels from the keys' defaults, or the plain text without a key.
    EXPECT_EQ(S(loaded->properties[0]->label), "Shot Count");
    EXPECT_EQ(S(loaded->properties[1]->label), "A \"quoted\" <note> & more");
    EXPECT_EQ(S(loaded->properties[2]->label), kOdd);
    EXPECT_EQ(S(loaded->properties[2]->description), kOdd);
    // Custom schemas come after every published one.
    EXPECT_EQ(*std::prev(CommonSchemaDefinitions().end()), loaded);

    // Writing the loaded schema again goes to the same file and reads back equal.
    std::string before, after;
    ASSERT_TRUE(zephcore::FileUtils::ReadFileToString(file, before));
    RewriteSchemaFile(loaded);
    ASSERT_TRUE(zephcore::FileUtils::ReadFileToString(file, after));
    EXPECT_EQ(before, after);
}

TEST_F(CustomDefinitionsTest, PropertiesAddedOrRemovedInPlaceAreFollowed)
{
    auto const schema = MakeMyData();
    ASSERT_TRUE(RegisterSchemaDefinition(schema, FileFor("MyData.xml"), false));
    Path const note = PathForSchemaNameAndPropertyName(U8(kCustom), U8("Note"));
    EXPECT_TRUE(PathEntryDefinition(note));
    // The preferences dialog edits the vector itself.
    schema->properties.push_back(CreateNewProperty(kPrimitiveReal, U8("Gain"), UTF16String(),
                                                   W("Gain"), UTF16String(), UTF16String()));
    EXPECT_EQ(*PrimitiveTypeOfPath(PathForSchemaNameAndPropertyName(U8(kCustom), U8("Gain"))),
              kPrimitiveReal);
    schema->properties.erase(schema->properties.begin() + 1);
    EXPECT_FALSE(PathEntryDefinition(note));
    EXPECT_EQ(boost::size(DescendantLeafPaths(schema)), 3u);
}

TEST_F(CustomDefinitionsTest, RegistrationRefusesWhatCannotBeRegistered)
{
    EXPECT_FALSE(
        RegisterSchemaDefinition(boost::shared_ptr<SchemaDefinition>(), UTF16String(), false));
    auto const nameless =
        CreateNewSchema(UTF8String(), U8("x"), UTF16String(), W("X"), UTF16String(), W("X"));
    EXPECT_FALSE(RegisterSchemaDefinition(nameless, UTF16String(), false));
    auto const first = MakeMyData();
    auto const second = MakeMyData();
    EXPECT_TRUE(RegisterSchemaDefinition(first, UTF16String(), false));
    EXPECT_TRUE(RegisterSchemaDefinition(first, UTF16String(), false)); // itself again
    EXPECT_FALSE(RegisterSchemaDefinition(second, UTF16String(), false));
    EXPECT_EQ(NamespaceDefinition(U8(kCustom)), first);
    EXPECT_TRUE(RegisterSchemaDefinition(second, UTF16String(), true));
    EXPECT_EQ(NamespaceDefinition(U8(kCustom)), second);
    // A published schema is not replaced by accident either.
    auto const dc = CreateNewSchema(U8("http://purl.org/dc/elements/1.1/"), U8("dc"), UTF16String(),
                                    W("DC"), UTF16String(), W("DC"));
    EXPECT_FALSE(RegisterSchemaDefinition(dc, UTF16String(), false));
}

TEST_F(CustomDefinitionsTest, WritingWithoutAWritableFileIsLogged)
{
    auto const schema = MakeMyData();
    RegisterSchemaDefinition(schema, UTF16String(), false);
    RewriteSchemaFile(schema);
    EXPECT_EQ(GetErrorInfos().size(), 1u);
    ClearErrors();
    // A folder where the file should be cannot be replaced by a file.
    std::filesystem::create_directories(folder / "blocked.xml");
    SetFilePathForSchema(U16(folder / "blocked.xml"), schema);
    RewriteSchemaFile(schema);
    EXPECT_EQ(GetErrorInfos().size(), 1u);
    EXPECT_TRUE(std::filesystem::is_directory(folder / "blocked.xml"));
}

} // namespace
