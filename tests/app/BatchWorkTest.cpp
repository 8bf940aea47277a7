// Batches of the browser over real files in a temporary folder, driven
// through its Batch menu: a template applied by each rule, saving past a file
// that cannot be written, and Cancel between two files.

#include "BatchWork.h"

#include "BrowserFixture.h"
#include "BrowserWindow.h"
#include <zephcore/QtStrings.h>

#include <zephmetadata/Access.h>
#include <zephmetadata/FileProvider.h>
#include <zephmetadata/Values.h>
#include <zephmetadataui/Module.h>
#include <zephui/ModalDriver.h>

#include <QComboBox>
#include <QFile>
#include <QMenuBar>
#include <QPushButton>
#include <QRadioButton>
#include <QStatusBar>
#include <QTemporaryDir>
#include <QTreeWidget>

#include <gtest/gtest.h>

#include <boost/make_shared.hpp>

#include <algorithm>

namespace
{

using browsertest::Bytes;
using zephui::ModalDriver;

char const kPhotoshop[] = "http://ns.adobe.com/photoshop/1.0/";
zephmetadata::Path const kHeadline(zephcore::ToUTF8(std::string_view(kPhotoshop)),
                                   zephcore::ToUTF8(std::string_view("Headline")));

// A sidecar with a title, keywords and, when given, a headline and a city.
void WriteSidecar(QString const& path, QString const& title, QStringList const& keywords,
                  QString const& headline, QString const& city = QString())
{
    QString items;
    for (QString const& keyword : keywords)
        items += "<rdf:li>" + keyword + "</rdf:li>";
    QFile file(path);
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    file.write(QStringLiteral(
                   "<x:xmpmeta xmlns:x='adobe:ns:meta/'><rdf:RDF "
                   "xmlns:rdf='http://www.w3.org/1999/02/22-rdf-syntax-ns#'><rdf:Description "
                   "rdf:about='' xmlns:dc='http://purl.org/dc/elements/1.1/' "
                   "xmlns:photoshop='http://ns.adobe.com/photoshop/1.0/'%3%4><dc:title><rdf:Alt>"
                   "<rdf:li xml:lang='x-default'>%1</rdf:li></rdf:Alt></dc:title>"
                   "<dc:subject><rdf:Bag>%2</rdf:Bag></dc:subject>"
                   "</rdf:Description></rdf:RDF></x:xmpmeta>")
                   .arg(title, items,
                        headline.isEmpty() ? QString() : " photoshop:Headline='" + headline + "'",
                        city.isEmpty() ? QString() : " photoshop:City='" + city + "'")
                   .toUtf8());
}

// The title, keywords and photoshop values of a tree, sorted, on one line.
std::string Flatten(__XMPMeta__* meta)
{
    std::vector<std::string> leaves;
    for (char const* schema : {"http://purl.org/dc/elements/1.1/", kPhotoshop})
    {
        zephmetadata::xmp::Iterator it(meta, schema, nullptr,
                                       zephmetadata::xmp::Iterator::kJustLeafNodes);
        zephmetadata::xmp::Node node;
        while (it.Next(node))
        {
            if (node.path.find("/?") == std::string::npos)
                leaves.push_back(node.path + "=" + node.value);
        }
    }
    std::sort(leaves.begin(), leaves.end());
    std::string text;
    for (std::string const& leaf : leaves)
        text += (text.empty() ? "" : " ") + leaf;
    return text;
}

std::string FlattenFile(QString const& path)
{
    zephmetadata::xmp::MetaPtr meta = zephmetadata::ReadMetadataFromFile(zephcore::ToUTF16(path));
    return meta ? Flatten(meta.get()) : "unreadable";
}

void Edit(browser::Document* document, char const* headline)
{
    zephmetadata::MetaDataUpdateAccess access(document->Provider());
    ASSERT_TRUE(
        zephmetadata::SetValue(*access, kHeadline, zephcore::ToUTF8(std::string_view(headline))));
    access.AddChange(kHeadline);
}

// Clicks a radio button of a dialog by its name.
ModalDriver::Action Choose(QString const& name)
{
    return [name](QWidget* window) { zephui::ClickWidget(window->findChild<QRadioButton*>(name)); };
}

class BatchWorkTest : public browsertest::BrowserFixture
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
            WriteSidecar(paths.back(), QString("Own %1").arg(i), {"own"}, "Own headline");
        }
        window->Open(paths);
        window->Loader().WaitForAll();
        window->SelectFiles({});
        return paths;
    }

    void Trigger(QString const& text)
    {
        for (QAction* action : window->menuBar()->findChildren<QAction*>())
        {
            if (action->text() == text)
            {
                action->trigger();
                return;
            }
        }
        ADD_FAILURE() << "no menu item " << text.toStdString();
    }
};

// Rows: a rule, and what a file (title "Own", keyword "own", headline) holds
// after a template with another title, keyword and a city.
struct RuleCase
{
    char const* button;
    char const* expected; // %1: the file's number, %2: its headline
};

class BatchTemplateTest : public BatchWorkTest, public testing::WithParamInterface<RuleCase>
{
};

} // namespace

TEST_P(BatchTemplateTest, TemplateReachesEverySelectedFileByTheChosenRule)
{
    QStringList const paths = OpenFiles(3);
    QString const templatePath = folder.filePath("template.xmp");
    WriteSidecar(templatePath, "From template", {"template"}, QString(), "Portsmouth");
    // An unsaved edit of one file goes into the batch with it.
    Edit(window->DocumentAt(1), "Edited");

    ModalDriver driver;
    driver
        .Then(ModalDriver::Sequence({ModalDriver::Type(templatePath), Choose(GetParam().button),
                                     ModalDriver::PressButton("Apply")}))
        .Then([](QWidget*) {}); // the progress
    Trigger("Apply &Template to Selected Files...");
    EXPECT_EQ(driver.Pending(), 0);
    EXPECT_EQ(driver.Unexpected(), 0) << "no file is listed as failed";

    for (int row = 0; row < 3; ++row)
    {
        std::string const expected = QString(GetParam().expected)
                                         .replace("%1", QString::number(row + 1))
                                         .replace("%2", row == 1 ? "Edited" : "Own headline")
                                         .toStdString();
        EXPECT_EQ(FlattenFile(paths[row]), expected) << "in the file " << row;
        browser::Document* document = window->DocumentAt(row);
        EXPECT_EQ(Flatten(*zephmetadata::MetaDataReadAccess(document->Provider())), expected)
            << "as the browser holds it, file " << row;
        EXPECT_FALSE(document->IsModified());
    }
    EXPECT_FALSE(window->HasUnsavedChanges());
}

INSTANTIATE_TEST_SUITE_P(
    Rules, BatchTemplateTest,
    testing::Values(RuleCase{"clearAndReplace", "dc:subject[1]=template dc:title[1]=From template "
                                                "photoshop:City=Portsmouth"},
                    RuleCase{"keepAndReplace", "dc:subject[1]=template dc:title[1]=From template "
                                               "photoshop:City=Portsmouth photoshop:Headline=%2"},
                    RuleCase{"keepAndAppend",
                             "dc:subject[1]=own dc:subject[2]=template dc:title[1]=Own %1 "
                             "photoshop:City=Portsmouth photoshop:Headline=%2"}),
    [](testing::TestParamInfo<RuleCase> const& info) { return std::string(info.param.button); });

TEST_F(BatchWorkTest, SaveAllSavesEveryFileButTheReadOnlyOneAndListsItWithTheReason)
{
    // GIVEN five edited files, the third read-only
    QStringList const paths = OpenFiles(5);
    for (int row = 0; row < 5; ++row)
        Edit(window->DocumentAt(row), "Batch");
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
        EXPECT_EQ(FlattenFile(paths[row]),
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
    Edit(window->DocumentAt(0), "Chosen");
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
    EXPECT_EQ(FlattenFile(paths[0]),
              "dc:subject[1]=own dc:title[1]=Own 1 photoshop:Headline=Chosen");
    EXPECT_FALSE(window->HasUnsavedChanges());
    for (int row = 1; row < 4; ++row)
        EXPECT_EQ(Bytes(paths[row]), before[std::size_t(row)]) << "file " << row;
    EXPECT_TRUE(window->statusBar()->currentMessage().contains("3 files left as they were"))
        << window->statusBar()->currentMessage().toStdString();
}
