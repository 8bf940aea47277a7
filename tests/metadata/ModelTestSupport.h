#pragma once
// Helpers shared by the model's tests: packets and files written in the
// test, paths, UTF-8 conversion, and the definition tests' fixture.

#include "zephmetadata/ErrorLog.h"
#include "zephmetadata/FileProvider.h"
#include "zephmetadata/Path.h"
#include "zephmetadata/PathDefinitions.h"
#include "zephmetadata/Provider.h"
#include "zephmetadata/Values.h"
#include "zephmetadata/XmpMeta.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <string>
#include <vector>

namespace modeltest
{

constexpr char const* kDC = "http://purl.org/dc/elements/1.1/";
constexpr char const* kXMP = "http://ns.adobe.com/xap/1.0/";
constexpr char const* kMM = "http://ns.adobe.com/xap/1.0/mm/";
constexpr char const* kDM = "http://ns.adobe.com/xmp/1.0/DynamicMedia/";
constexpr char const* kEXIF = "http://ns.adobe.com/exif/1.0/";
constexpr char const* kPS = "http://ns.adobe.com/photoshop/1.0/";

inline zephmetadata::UTF8String U8(std::string const& text)
{
    return zephcore::ToUTF8(text);
}
inline std::string S(zephmetadata::UTF8String const& text)
{
    return zephcore::ToStdString(text);
}
inline std::string S(zephmetadata::UTF16String const& text)
{
    return zephcore::ToStdString(text);
}

inline zephmetadata::UTF16String U16(std::string const& path)
{
    return zephcore::UTF8to16(path);
}

inline zephmetadata::Path P(char const* ns, std::string const& name)
{
    return zephmetadata::Path(U8(ns), U8(name));
}

// Wraps rdf:Description content into a full packet.
std::string Packet(std::string const& description);

// A tree parsed from a packet; fails the test if it does not parse.
zephmetadata::xmp::MetaPtr Parse(std::string const& packet);

// The packet used by most value tests: one property of every kind.
std::string EveryKindPacket();

// Serialised form of a tree, for comparisons of whole trees.
std::string Serialized(__XMPMeta__* meta);

// A file's bytes, and writing bytes to a file.
std::string ReadFile(std::string const& path);
bool WriteFile(std::string const& path, std::string const& bytes);

// A file of tests/data/metadata.
std::string DataFile(char const* name);

// A packet holding xmp:Label alone.
std::string LabelPacket(std::string const& label);

// A value of a tree as text; "" when it has none.
std::string Text(__XMPMeta__* meta, zephmetadata::Path const& path,
                 zephmetadata::GetValueResult* result = nullptr);

// A node's options, 0 when it is absent; FormOf keeps the array form alone.
std::uint32_t OptionsOf(__XMPMeta__* meta, char const* ns, std::string const& path);
std::uint32_t FormOf(__XMPMeta__* meta, char const* ns, std::string const& path);

using ProviderPtr = boost::shared_ptr<zephmetadata::MetaDataProvider>;

// A value through a provider, read, and written as an edit in a view is
// (true when it changed).
std::string Read(ProviderPtr const& provider, zephmetadata::Path const& path,
                 zephmetadata::GetValueResult* result = nullptr);
bool Write(ProviderPtr const& provider, zephmetadata::Path const& path, std::string const& text);

// xmp:Label through a provider.
std::string Label(ProviderPtr const& provider);
void SetLabel(ProviderPtr const& provider, std::string const& label);
// xmp:Label of a file, read by a new FileProvider.
std::string LabelOf(std::string const& path);
// A new FileProvider on the file, with xmp:Label edited unless label is null.
boost::shared_ptr<zephmetadata::FileProvider> Open(std::string const& path,
                                                   char const* label = nullptr);

// The JPEG of the test data with `packet` as its one XMP segment.
std::string JpegWithPacket(std::string const& packet);

// A valid 1x1 lossless WebP: a format that takes no XMP in place.
extern std::string const kWebP;

// A fresh folder, removed with what it holds afterwards.
class TempFolder
{
public:
    TempFolder();
    ~TempFolder();
    TempFolder(TempFolder const&) = delete;
    TempFolder& operator=(TempFolder const&) = delete;

    std::string File(std::string const& name) const { return (path / name).string(); }
    // The names of the files in it, sorted.
    std::vector<std::string> Names() const;

    std::filesystem::path path;
};

// Every error-log entry as "source: message" lines, for failure messages.
std::string ErrorLogText();

// A fixture for definition tests: a private configuration folder (so the
// user's custom definitions are the test's own), and a clean model after.
class DefinitionTest : public ::testing::Test
{
protected:
    void SetUp() override;
    void TearDown() override;
    // Writes a file below the test folder and returns its path.
    std::filesystem::path WriteFile(std::string const& name, std::string const& text);

    TempFolder temp;
    std::filesystem::path const& folder = temp.path;
};

// The same, with the built-in definitions loaded, without a problem.
class LoadedDefinitionTest : public DefinitionTest
{
protected:
    void SetUp() override;
};

} // namespace modeltest
