#pragma once
// Shared ground of the metadata dialog's tests: a host's settings kept in
// memory, a photo copied into a temporary folder that also holds the user's
// configuration (template folder, window places), and the leaves of a
// packet for comparing what an edit changed.

#include "../tree/TreeTestSupport.h"

#include <zephmetadataui/MetadataDialog.h>

#include <zephmetadata/FileProvider.h>

#include <QTemporaryDir>

#include <map>
#include <string>
#include <vector>

class QWidget;

namespace zephmetadataui
{
class MetadataDialog;
}

namespace dialogtest
{

// The settings a host keeps, in memory.
class MapSettings : public zephmetadataui::MetadataDialogSettings
{
public:
    void GetInt(std::string const& key, int& value) override;
    void GetBool(std::string const& key, bool& value) override;
    bool GetStringList(std::string const& key, std::vector<std::string>& value) override;
    void GetString(std::string const& key, std::string& value) override;
    void SetInt(std::string const& key, int value) override;
    void SetBool(std::string const& key, bool value) override;
    void SetStringList(std::string const& key, std::vector<std::string> const& value) override;
    void SetString(std::string const& key, std::string const& value) override;

    std::map<std::string, int> ints;
    std::map<std::string, bool> bools;
    std::map<std::string, std::vector<std::string>> lists;
    std::map<std::string, std::string> strings;
};

class DialogTest : public treetest::TreeTest
{
protected:
    void SetUp() override;
    void TearDown() override;

    // A copy of the sample photo, and its provider.
    QString CopyPhoto(QString const& name = QStringLiteral("photo.jpg"));
    QString TemplateFolder() const;
    // The provider of a fresh copy of the sample photo.
    boost::shared_ptr<zephmetadata::FileProvider> MakeProviderOf();

    QTemporaryDir folder;
    QByteArray oldConfigHome;
    int copies = 0;
};

// The dialog a modal window shows.
zephmetadataui::MetadataDialog* DialogOf(QWidget* window);
// Types into the first field of the shown page that takes text, and commits.
// The field's text before.
std::string TypeIntoFirstField(zephmetadataui::MetadataDialog* dialog, std::string const& text);
// Every leaf of a tree: "namespace path" to its value.
std::map<std::string, std::string> Leaves(__XMPMeta__* meta);
std::map<std::string, std::string>
LeavesOf(boost::shared_ptr<zephmetadata::MetaDataProvider> const& p);
std::map<std::string, std::string> LeavesOfFile(QString const& path);

} // namespace dialogtest
