#pragma once
// File > File Info…: the library's file-information dialog over the files
// the browser shows, with its choices kept in the browser's settings.

#include <zephmetadataui/MetadataDialog.h>

#include <QSettings>
#include <QString>

#include <boost/shared_ptr.hpp>

class QWidget;

namespace browser
{

// The dialog's choices, kept under "FileInfo/" in the browser's settings.
class FileInfoSettings : public zephmetadataui::MetadataDialogSettings
{
public:
    explicit FileInfoSettings(QSettings& settings) : settings(settings) {}
    void GetInt(std::string const& key, int& value) override;
    void GetBool(std::string const& key, bool& value) override;
    bool GetStringList(std::string const& key, std::vector<std::string>& value) override;
    void GetString(std::string const& key, std::string& value) override;
    void SetInt(std::string const& key, int value) override;
    void SetBool(std::string const& key, bool value) override;
    void SetStringList(std::string const& key, std::vector<std::string> const& value) override;
    void SetString(std::string const& key, std::string const& value) override;

private:
    QVariant Read(std::string const& key) const;
    void Write(std::string const& key, QVariant const& value);
    QSettings& settings;
};

// Runs the dialog over the provider; true when OK handed edits to it.
bool RunFileInfo(QWidget* parent, boost::shared_ptr<zephmetadata::MetaDataProvider> provider,
                 QString const& title, QSettings& settings);

} // namespace browser
