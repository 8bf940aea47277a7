// The browser's file list over real files in temporary folders: the order
// people count in, sorting by each column, pictures of image files, and
// files that cannot be read.

#include "BrowserFixture.h"
#include "FileTableModel.h"
#include "ThumbnailCache.h"

#include <QHeaderView>
#include <QTableView>

namespace
{

using namespace browsertest;

class FileListTest : public BrowserFixture
{
protected:
    // A sidecar with a title, a rating, a creation date and a description.
    void Write(char const* name, QString const& title, int rating, QString const& date,
               QString const& description = QString())
    {
        WriteSidecar(folder.filePath(name),
                     QString("xmp:Rating='%1' xmp:CreateDate='%2'").arg(rating).arg(date),
                     Alt("dc:title", title) +
                         (description.isEmpty() ? QString() : Alt("dc:description", description)));
    }

    // The column's texts from the top of the list down.
    QStringList Shown(int column = browser::FileTableModel::kName) const
    {
        QStringList texts;
        QAbstractItemModel* model = window->FileList()->model();
        for (int row = 0; row < model->rowCount(); ++row)
            texts << model->index(row, column).data().toString();
        return texts;
    }

    void ClickHeader(int column)
    {
        QHeaderView* header = window->FileList()->horizontalHeader();
        QTest::mouseClick(header->viewport(), Qt::LeftButton, Qt::NoModifier,
                          QPoint(header->sectionViewportPosition(column) + 10, 5));
    }
};

} // namespace

TEST_F(FileListTest, NamesSortAsNumbersAndEachColumnSortsBothWays)
{
    Write("p10.xmp", "Beacon", 2, "2021-03-01T08:00:00");
    Write("p2.xmp", "anchor", 5, "2023-07-15T12:00:00");
    Write("P1.xmp", "Drift", 0, "2022-01-01T00:00:00");
    Write("p100.xmp", "cove", 4, "2020-12-31T23:59:00");
    window->show();
    ASSERT_TRUE(QTest::qWaitForWindowExposed(window.get()));
    Open({folder.path()});
    EXPECT_EQ(Shown(), (QStringList{"P1.xmp", "p2.xmp", "p10.xmp", "p100.xmp"}))
        << "numbers in names count as numbers, whatever the case";

    using Model = browser::FileTableModel;
    // Each column's names, top down, ascending.
    std::pair<int, QStringList> const sorts[] = {
        {Model::kTitle, {"p2.xmp", "p10.xmp", "p100.xmp", "P1.xmp"}},
        {Model::kRating, {"P1.xmp", "p10.xmp", "p100.xmp", "p2.xmp"}},
        {Model::kDate, {"p100.xmp", "p10.xmp", "P1.xmp", "p2.xmp"}},
        {Model::kName, {"P1.xmp", "p2.xmp", "p10.xmp", "p100.xmp"}},
    };
    for (auto const& [column, ascending] : sorts)
    {
        ClickHeader(column);
        if (window->FileList()->horizontalHeader()->sortIndicatorOrder() != Qt::AscendingOrder)
            ClickHeader(column);
        EXPECT_EQ(Shown(), ascending) << "column " << column;
        ClickHeader(column);
        QStringList descending = ascending;
        std::reverse(descending.begin(), descending.end());
        EXPECT_EQ(Shown(), descending) << "column " << column << " the other way";
    }
}

TEST_F(FileListTest, RowsShowTheSummaryAPictureOfImagesAndUnreadableFilesInRed)
{
    Write("rated.xmp", "Harbour", 3, "2024-05-01T10:30:00+02:00");
    QFile::copy(QStringLiteral(ZEPH_SOURCE_DIR "/samples/storm-night-scene12.png"),
                folder.filePath("scene.png"));
    WriteFile(folder.filePath("deep.xmp"), QByteArray("<a>").repeated(500)); // nests too deep
    Open({folder.path()});
    ASSERT_EQ(Shown(), (QStringList{"deep.xmp", "rated.xmp", "scene.png"}));

    using Model = browser::FileTableModel;
    QAbstractItemModel* model = window->FileList()->model();
    EXPECT_EQ(Shown(Model::kTitle)[1], "Harbour");
    EXPECT_EQ(Shown(Model::kRating)[1], QString::fromUtf8("★★★☆☆"));
    EXPECT_EQ(Shown(Model::kDate)[1], "2024-05-01 10:30");
    EXPECT_EQ(Shown(Model::kType), (QStringList{"XMP", "XMP", "PNG"}));

    QModelIndex const brokenName = model->index(0, Model::kName);
    EXPECT_EQ(brokenName.data(Qt::ForegroundRole).value<QBrush>().color(), QColor(176, 40, 40));
    QString const reason = window->DocumentAt(window->FileRowOf(0))->Error();
    ASSERT_FALSE(reason.isEmpty());
    EXPECT_TRUE(brokenName.data(Qt::ToolTipRole).toString().endsWith(reason))
        << brokenName.data(Qt::ToolTipRole).toString().toStdString();

    QModelIndex const picture = model->index(2, Model::kName);
    picture.data(Qt::DecorationRole); // a row on screen asks for its picture
    ASSERT_TRUE(QTest::qWaitFor([&] { return !picture.data(Qt::DecorationRole).isNull(); }));
    QPixmap const thumbnail = picture.data(Qt::DecorationRole).value<QPixmap>();
    EXPECT_EQ(std::max(thumbnail.width(), thumbnail.height()), window->Thumbnails().Edge());
    EXPECT_TRUE(model->index(1, Model::kName).data(Qt::DecorationRole).isNull())
        << "a sidecar has no picture";
}

TEST_F(FileListTest, FindKeepsTheFilesWhoseLabelsOrValuesHoldTheTextFolded)
{
    Write("street.xmp", "Corner of the Straße", 1, "2020-01-01",
          QString::fromUtf8("Cafe\u0301 at dawn")); // decomposed: e and an accent
    Write("harbour.xmp", "HARBOUR lights", 2, "2020-01-02");
    Write("boats.xmp", "Boats", 3, "2020-01-03",
          QString::fromUtf8("Leaving the harbour, café closed"));
    Open({folder.path()});

    // What is typed, and the files kept.
    std::pair<char const*, QStringList> const finds[] = {
        {"harbour", {"boats.xmp", "harbour.xmp"}},
        {"Harbour L", {"harbour.xmp"}},
        {"STRASSE", {"street.xmp"}},                  // folded as the tree folds
        {"caf\u00e9", {"boats.xmp", "street.xmp"}},   // composed or not
        {"description", {"boats.xmp", "street.xmp"}}, // a label of a value the file has
        {"rating", {"boats.xmp", "harbour.xmp", "street.xmp"}},
        {"lights closed", {}}, // never across two values
        {"", {"boats.xmp", "harbour.xmp", "street.xmp"}},
    };
    for (auto const& [typed, kept] : finds)
    {
        window->FileFindBox()->clear();
        // Typed key by key; QTest has keys for ASCII only.
        for (QChar c : QString::fromUtf8(typed))
        {
            if (c.unicode() < 0x80)
                QTest::keyClick(window->FileFindBox(), c.toLatin1());
            else
                window->FileFindBox()->insert(c);
        }
        EXPECT_EQ(Shown(), kept) << typed;
    }

    // An edit not yet saved is found too.
    QTest::keyClicks(window->FileFindBox(), "lighthouse");
    window->SelectFiles({0});
    Edit(window->DocumentAt(0)->Provider(),
         zephmetadata::Path(U8("http://purl.org/dc/elements/1.1/"), U8("dc:title")), "Lighthouse");
    ASSERT_TRUE(QTest::qWaitFor([&] { return Shown().size() == 1; }));
    EXPECT_EQ(Shown(), QStringList{window->DocumentAt(0)->FileName() + " *"});
}
