#pragma once
// The ground of the browser's tests: the library started, a temporary folder
// for the files, and a window that neither asks before closing nor shows
// message boxes (its warnings are collected).

#include "BrowserWindow.h"

#include <zephmetadataui/Module.h>

#include <QByteArray>
#include <QFile>
#include <QStringList>
#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <memory>

namespace browsertest
{

class BrowserFixture : public testing::Test
{
protected:
    void SetUp() override
    {
        zephmetadataui::Initialize();
        ASSERT_TRUE(folder.isValid());
        window = MakeWindow();
    }
    void TearDown() override
    {
        window.reset();
        zephmetadataui::Terminate();
    }
    std::unique_ptr<browser::BrowserWindow> MakeWindow()
    {
        auto made = std::make_unique<browser::BrowserWindow>();
        made->SetWarningSink([this](QString const& text) { warnings << text; });
        made->SetCloseQuestion([] { return QMessageBox::Discard; });
        return made;
    }

    QTemporaryDir folder;
    std::unique_ptr<browser::BrowserWindow> window;
    QStringList warnings;
};

inline QByteArray Bytes(QString const& path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

} // namespace browsertest
