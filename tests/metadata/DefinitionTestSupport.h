#pragma once
// A fixture for definition tests: a private configuration folder (so the
// user's custom definitions are the test's own), and a clean model after.

#include <zephmetadata/ErrorLog.h>
#include <zephmetadata/PathDefinitions.h>

#include <zephcore/Strings.h>

#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <random>
#include <string>

namespace zephmetadata::test
{

inline UTF8String U8(char const* text)
{
    return UTF8String(reinterpret_cast<unsigned char const*>(text));
}

inline std::string S(UTF8String const& text)
{
    return zephcore::ToStdString(text);
}

inline std::string S(UTF16String const& text)
{
    return zephcore::ToStdString(text);
}

// Every error-log entry as "source: message" lines, for failure messages.
inline std::string ErrorLogText()
{
    std::string text;
    for (ErrorInfo const& info : GetErrorInfos())
        text += S(info.source) + ": " + S(info.message) + "\n";
    return text;
}

class DefinitionTest : public ::testing::Test
{
protected:
    void SetUp() override
    {
        std::random_device random;
        folder = std::filesystem::temp_directory_path() /
                 ("zephdefs-" + std::to_string(random()) + "-" + std::to_string(random()));
        std::filesystem::create_directories(folder / "config");
        ::setenv("XDG_CONFIG_HOME", (folder / "config").c_str(), 1);
        UnloadDefinitions();
        ClearErrors();
    }

    void TearDown() override
    {
        UnloadDefinitions();
        std::error_code ignored;
        std::filesystem::remove_all(folder, ignored);
        // Later tests in this process find the built-in definitions loaded,
        // as the test environment left them.
        LoadDefinitions();
        ClearErrors();
    }

    // Writes a file below the test folder and returns its path.
    std::filesystem::path WriteFile(std::string const& name, std::string const& text)
    {
        std::filesystem::path const path = folder / name;
        std::filesystem::create_directories(path.parent_path());
        std::ofstream(path, std::ios::binary) << text;
        return path;
    }

    static UTF16String U16(std::filesystem::path const& path)
    {
        return zephcore::UTF8to16(path.string());
    }

    std::filesystem::path folder;
};

// The same, with the built-in definitions loaded, without a problem.
class LoadedDefinitionTest : public DefinitionTest
{
protected:
    void SetUp() override
    {
        DefinitionTest::SetUp();
        LoadDefinitions();
        ASSERT_FALSE(HasErrors()) << ErrorLogText();
    }
};

} // namespace zephmetadata::test
