// File > File Info… in the browser: the dialog over one file or several,
// OK saving exactly the edit into each, Cancel leaving every byte, and a
// file that can't be written keeping the edit and saying why.

#include "BrowserFixture.h"

#include <zephui/NodeWidget.h>

namespace
{

using namespace browsertest;

// Types into the first field of the shown page, as a user would.
ModalDriver::Action TypeIntoPage(QString const& text)
{
    return [text](QWidget* window)
    {
        zephui::UI_Node* page = zephui::NodeForWidget(window)->UI_ChildGetFromID("PageSubView");
        for (QLineEdit* field : page->UI_GetWidget()->findChildren<QLineEdit*>())
            if (field->isVisible() && field->isEnabled() && !field->isReadOnly())
            {
                field->setFocus();
                QTest::keyClick(field, Qt::Key_A, Qt::ControlModifier);
                QTest::keyClicks(field, text);
                return QTest::keyClick(field, Qt::Key_Return);
            }
        ADD_FAILURE() << "no field on the page";
    };
}

class FileInfoTest : public BrowserFixture
{
protected:
    // Copies of the sample photo, open and all selected.
    QStringList OpenPhotos(int count)
    {
        QStringList paths;
        for (int i = 0; i < count; ++i)
            paths << CopySample("harbour-first-light.jpg",
                                QString("photo%1-%2.jpg").arg(count).arg(i));
        Open(paths);
        window->SelectFiles({});
        return paths;
    }
};

TEST_F(FileInfoTest, OkSavesExactlyTheEditIntoEachSelectedFileAndCancelNoByte)
{
    for (int count : {1, 2})
    {
        window = MakeWindow();
        QStringList const paths = OpenPhotos(count);
        std::vector<Leaves> before;
        std::vector<QByteArray> bytes;
        for (QString const& path : paths)
            before.push_back(FileLeaves(path)), bytes.push_back(Bytes(path));

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
            std::vector<std::string> const changed =
                Changes(before[std::size_t(i)], FileLeaves(paths[i]));
            ASSERT_EQ(changed.size(), 1u) << count << " files, file " << i;
            EXPECT_NE(changed[0].find("Keeper's cove"), std::string::npos) << changed[0];
        }
    }
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
    Leaves const held = HeldLeaves(0);
    EXPECT_TRUE(std::any_of(held.begin(), held.end(),
                            [](auto const& leaf) { return leaf.second == "Kept in memory"; }));
}

} // namespace
