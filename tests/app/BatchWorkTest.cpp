// Batches of the browser over real files in a temporary folder, driven
// through its Batch menu: a template applied by each rule, saving past a file
// that cannot be written, and Cancel between two files.

#include "BatchWork.h"
#include "BrowserFixture.h"

#include <QComboBox>
#include <QPushButton>
#include <QRadioButton>
#include <QStatusBar>
#include <QTreeWidget>

#include <set>

namespace
{

using namespace browsertest;

class BatchWorkTest : public BrowserFixture
{
protected:
    // Files "f1.xmp"... with their own title, keyword and headline, open and
    // all selected.
    QStringList OpenFiles(int count)
    {
        QStringList paths;
        for (int i = 1; i <= count; ++i)
        {
            paths << folder.filePath(QString("f%1.xmp").arg(i));
            WriteSidecar(paths.back(), "photoshop:Headline='Own headline'",
                         Content(QString("Own %1").arg(i), "own"));
        }
        Open(paths);
        window->SelectFiles({});
        return paths;
    }
    static QString Content(QString const& title, QString const& keyword)
    {
        return Alt("dc:title", title) + "<dc:subject><rdf:Bag><rdf:li>" + keyword +
               "</rdf:li></rdf:Bag></dc:subject>";
    }
};

// The title, keywords and photoshop values, sorted, on one line.
std::string Flatten(Leaves const& leaves)
{
    std::set<std::string> shown;
    for (auto const& [key, value] : leaves)
        if ((key.find(" dc:") != std::string::npos ||
             key.find(" photoshop:") != std::string::npos) &&
            key.find("/?") == std::string::npos)
            shown.insert(key.substr(key.find(' ') + 1) + "=" + value);
    std::string text;
    for (std::string const& leaf : shown)
        text += (text.empty() ? "" : " ") + leaf;
    return text;
}

TEST_F(BatchWorkTest, TemplateReachesEverySelectedFileByTheChosenRule)
{
    // Rows: a rule, and what a file (title "Own", keyword "own", headline)
    // holds after a template with another title, keyword and a city.
    // (%1: the file's number, %2: its headline)
    std::pair<char const*, char const*> const rules[] = {
        {"clearAndReplace", "dc:subject[1]=template dc:title[1]=From template "
                            "photoshop:City=Portsmouth"},
        {"keepAndReplace", "dc:subject[1]=template dc:title[1]=From template "
                           "photoshop:City=Portsmouth photoshop:Headline=%2"},
        {"keepAndAppend", "dc:subject[1]=own dc:subject[2]=template dc:title[1]=Own %1 "
                          "photoshop:City=Portsmouth photoshop:Headline=%2"}};
    for (auto const& [button, expected] : rules)
    {
        SCOPED_TRACE(button);
        window = MakeWindow();
        QStringList const paths = OpenFiles(3);
        QString const templatePath = folder.filePath("template.xmp");
        WriteSidecar(templatePath, "photoshop:City='Portsmouth'",
                     Content("From template", "template"));
        // An unsaved edit of one file goes into the batch with it.
        Edit(window->DocumentAt(1)->Provider(), kHeadlinePath, "Edited");

        ModalDriver driver;
        driver
            .Then(ModalDriver::Sequence(
                {ModalDriver::Type(templatePath),
                 [button = button](QWidget* dialog)
                 { zephui::ClickWidget(dialog->findChild<QRadioButton*>(button)); },
                 ModalDriver::PressButton("Apply")}))
            .Then([](QWidget*) {}); // the progress
        Trigger("Apply &Template to Selected Files...");
        EXPECT_EQ(driver.Pending(), 0);
        EXPECT_EQ(driver.Unexpected(), 0) << "no file is listed as failed";

        for (int row = 0; row < 3; ++row)
        {
            std::string const holds = QString(expected)
                                          .replace("%1", QString::number(row + 1))
                                          .replace("%2", row == 1 ? "Edited" : "Own headline")
                                          .toStdString();
            EXPECT_EQ(Flatten(FileLeaves(paths[row])), holds) << "in the file " << row;
            EXPECT_EQ(Flatten(HeldLeaves(row)), holds) << "as the browser holds it, " << row;
            EXPECT_FALSE(window->DocumentAt(row)->IsModified());
        }
    }
}

TEST_F(BatchWorkTest, SaveAllSavesEveryFileButTheReadOnlyOneAndListsItWithTheReason)
{
    // GIVEN five edited files, the third read-only
    QStringList const paths = OpenFiles(5);
    for (int row = 0; row < 5; ++row)
        Edit(window->DocumentAt(row)->Provider(), kHeadlinePath, "Batch");
    QFile::setPermissions(paths[2], QFile::ReadOwner | QFile::ReadGroup);
    QByteArray const lockedBytes = Bytes(paths[2]);

    // WHEN all are saved in the background
    QStringList listed;
    ModalDriver driver;
    driver
        .Then([](QWidget*) {}) // the progress
        .Then(
            [&](QWidget* dialog)
            {
                auto* list = dialog->findChild<QTreeWidget*>();
                for (int i = 0; list && i < list->topLevelItemCount(); ++i)
                    listed << list->topLevelItem(i)->text(0) + " | " +
                                  list->topLevelItem(i)->text(1);
                ModalDriver::PressButton("Close")(dialog);
            });
    Trigger("Save &All in Background...");
    EXPECT_EQ(driver.Pending(), 0);

    // THEN the others hold the edit, and the read-only one is listed and kept
    ASSERT_EQ(listed.size(), 1) << listed.join("\n").toStdString();
    EXPECT_TRUE(listed.front().startsWith(paths[2] + " | ")) << listed.front().toStdString();
    EXPECT_TRUE(listed.front().contains("read-only")) << listed.front().toStdString();
    EXPECT_EQ(Bytes(paths[2]), lockedBytes);
    for (int row : {0, 1, 3, 4})
    {
        EXPECT_EQ(Flatten(FileLeaves(paths[row])),
                  QString("dc:subject[1]=own dc:title[1]=Own %1 photoshop:Headline=Batch")
                      .arg(row + 1)
                      .toStdString());
        EXPECT_FALSE(window->DocumentAt(row)->IsModified());
    }
    EXPECT_TRUE(window->DocumentAt(2)->IsModified()) << "its edit is kept for another try";
    EXPECT_TRUE(window->statusBar()->currentMessage().startsWith("Saved 4 files."))
        << window->statusBar()->currentMessage().toStdString();
}

TEST_F(BatchWorkTest, CancelAfterTheFirstFileLeavesTheOthersUntouched)
{
    // GIVEN four files, the first with an edited headline, all selected
    QStringList const paths = OpenFiles(4);
    Edit(window->DocumentAt(0)->Provider(), kHeadlinePath, "Chosen");
    std::vector<QByteArray> before;
    for (QString const& path : paths)
        before.push_back(Bytes(path));

    // WHEN its headline is set on all of them and Cancel is pressed once the
    // first file is done
    std::vector<int> reported;
    window->Batch().SetProgressListener(
        [&](int done, int)
        {
            reported.push_back(done);
            if (done == 1)
                zephui::ClickWidget(window->Batch().CancelButton());
        });
    ModalDriver driver;
    driver
        .Then(
            [](QWidget* dialog)
            {
                auto* properties = dialog->findChild<QComboBox*>();
                properties->setCurrentIndex(
                    properties->findText("photoshop:Headline", Qt::MatchStartsWith));
                ModalDriver::PressButton("Set")(dialog);
            })
        .Then([](QWidget*) {}); // the progress
    Trigger("Set &Value on Selected Files...");
    EXPECT_EQ(driver.Pending(), 0);
    EXPECT_EQ(driver.Unexpected(), 0);

    // THEN the first file is saved with it, and no other was started
    EXPECT_EQ(reported, std::vector<int>{1});
    EXPECT_EQ(Flatten(FileLeaves(paths[0])),
              "dc:subject[1]=own dc:title[1]=Own 1 photoshop:Headline=Chosen");
    EXPECT_FALSE(window->HasUnsavedChanges());
    for (int row = 1; row < 4; ++row)
        EXPECT_EQ(Bytes(paths[row]), before[std::size_t(row)]) << "file " << row;
    EXPECT_TRUE(window->statusBar()->currentMessage().contains("3 files left as they were"))
        << window->statusBar()->currentMessage().toStdString();
}

} // namespace
