// File > File Info… in the browser: the dialog over one file or several,
// OK saving exactly the edit into each, Cancel leaving every byte, and a
// file that can't be written keeping the edit and saying why.

#include "BrowserFixture.h"
#include "BrowserWindow.h"

#include <zephmetadata/Access.h>
#include <zephmetadata/FileProvider.h>
#include <zephmetadata/XmpMeta.h>
#include <zephmetadataui/Module.h>

#include <zephcore/QtStrings.h>

#include <zephui/ModalDriver.h>
#include <zephui/NodeWidget.h>
#include <zephui/PrefManager.h>

#include <boost/make_shared.hpp>

#include <QFile>
#include <QLineEdit>
#include <QTemporaryDir>
#include <QTest>

#include <gtest/gtest.h>

#include <map>

namespace
{

using browsertest::Bytes;
using zephui::ModalDriver;

// Every leaf of a file's metadata but the date a save stamps.
std::map<std::string, std::string> Leaves(QString const& path)
{
    auto provider = boost::make_shared<zephmetadata::FileProvider>(zephcore::ToUTF16(path));
    zephmetadata::MetaDataReadAccess const access(provider);
    std::map<std::string, std::string> leaves;
    if (!*access)
        return leaves;
    for (auto const& [ns, property] : zephmetadata::xmp::TopLevelProperties(*access))
        for (auto const& node :
             zephmetadata::xmp::ReadSubtree(*access, ns.c_str(), property.c_str()))
            if (node.path.find("MetadataDate") == std::string::npos)
                leaves[ns + " " + node.path] = node.value;
    return leaves;
}

// Types into the first field of the shown page, as a user would, and what
// the field showed before.
ModalDriver::Action TypeIntoPage(QString const& text, QString* shown = nullptr)
{
    return [text, shown](QWidget* window)
    {
        zephui::UI_Node* page = zephui::NodeForWidget(window)->UI_ChildGetFromID("PageSubView");
        for (QLineEdit* field : page->UI_GetWidget()->findChildren<QLineEdit*>())
            if (field->isVisible() && field->isEnabled() && !field->isReadOnly())
            {
                if (shown)
                    *shown = field->text().isEmpty() ? field->placeholderText() : field->text();
                field->setFocus();
                QTest::keyClick(field, Qt::Key_A, Qt::ControlModifier);
                QTest::keyClicks(field, text);
                QTest::keyClick(field, Qt::Key_Return);
                return;
            }
        ADD_FAILURE() << "no field on the page";
    };
}

class FileInfoTest : public browsertest::BrowserFixture
{
protected:
    void SetUp() override
    {
        BrowserFixture::SetUp();
        qputenv("XDG_CONFIG_HOME", folder.filePath("config").toUtf8());
        zephui::PrefManager::SetSettingsFile(zephcore::ToUTF16(folder.filePath("places.ini")));
    }
    QStringList OpenPhotos(int count)
    {
        QStringList paths;
        for (int i = 0; i < count; ++i)
        {
            paths << folder.filePath(QStringLiteral("photo%1-%2.jpg").arg(count).arg(i));
            QFile::copy(QStringLiteral(ZEPH_SOURCE_DIR "/samples/harbour-first-light.jpg"),
                        paths.back());
            QFile::setPermissions(paths.back(), QFile::ReadOwner | QFile::WriteOwner);
        }
        window->Open(paths);
        window->Loader().WaitForAll();
        window->SelectFiles({});
        return paths;
    }
};

TEST_F(FileInfoTest, OkSavesExactlyTheEditIntoEachSelectedFileAndCancelNoByte)
{
    for (int count : {1, 2})
    {
        QStringList const paths = OpenPhotos(count);
        std::vector<std::map<std::string, std::string>> before;
        std::vector<QByteArray> bytes;
        for (QString const& path : paths)
            before.push_back(Leaves(path)), bytes.push_back(Bytes(path));

        ModalDriver driver;
        driver.Then(ModalDriver::Sequence(
            {TypeIntoPage("Dropped"), ModalDriver::PressNode("CancelButton")}));
        window->ShowFileInfo();
        for (int i = 0; i < count; ++i)
            EXPECT_EQ(Bytes(paths[i]), bytes[std::size_t(i)]) << "Cancel, file " << i;

        driver.Then(ModalDriver::Sequence(
            {TypeIntoPage("Keeper's cove"), ModalDriver::PressNode("OKButton")}));
        window->ShowFileInfo();
        EXPECT_EQ(driver.Unexpected(), 0);
        EXPECT_FALSE(window->HasUnsavedChanges());
        for (int i = 0; i < count; ++i)
        {
            auto const after = Leaves(paths[i]);
            std::vector<std::string> changed;
            for (auto const& [key, value] : after)
                if (!before[std::size_t(i)].count(key) || before[std::size_t(i)].at(key) != value)
                    changed.push_back(key + " = " + value);
            ASSERT_EQ(changed.size(), 1u) << count << " files, file " << i;
            EXPECT_NE(changed[0].find("Keeper's cove"), std::string::npos) << changed[0];
        }
        window = MakeWindow();
    }
}

TEST_F(FileInfoTest, SeveralFilesWithDifferentValuesShowMultipleValues)
{
    QStringList const paths = OpenPhotos(2);
    // Make the two differ in the first field of the page.
    QString shownOne, shownBoth;
    window->SelectFiles({0});
    ModalDriver driver;
    driver.Then(ModalDriver::Sequence(
        {TypeIntoPage("Only the first", &shownOne), ModalDriver::PressNode("OKButton")}));
    window->ShowFileInfo();
    window->SelectFiles({});
    driver.Then(ModalDriver::Sequence(
        {TypeIntoPage("x", &shownBoth), ModalDriver::PressNode("CancelButton")}));
    window->ShowFileInfo();
    EXPECT_NE(shownOne, shownBoth);
    EXPECT_TRUE(shownBoth.contains(QStringLiteral("Multiple"))) << shownBoth.toStdString();
}

TEST_F(FileInfoTest, AFileThatCannotBeWrittenKeepsTheEditAndSaysWhy)
{
    QStringList const paths = OpenPhotos(1);
    QFile::setPermissions(paths[0], QFile::ReadOwner);
    QByteArray const bytes = Bytes(paths[0]);
    ModalDriver driver;
    driver.Then(ModalDriver::Sequence(
        {TypeIntoPage("Kept in memory"), ModalDriver::PressNode("OKButton")}));
    window->ShowFileInfo();
    EXPECT_EQ(Bytes(paths[0]), bytes);
    ASSERT_FALSE(warnings.isEmpty());
    EXPECT_TRUE(warnings.back().contains(QFileInfo(paths[0]).fileName()))
        << warnings.back().toStdString();
    EXPECT_TRUE(window->HasUnsavedChanges());
    zephmetadata::MetaDataReadAccess const access(window->DocumentAt(0)->Provider());
    std::string packet;
    zephmetadata::xmp::SerializeToBuffer(*access, packet);
    EXPECT_NE(packet.find("Kept in memory"), std::string::npos);
}

} // namespace
