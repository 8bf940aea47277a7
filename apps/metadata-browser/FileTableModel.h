#pragma once
// The file list as a table: one row per opened file, in the order the files
// arrived (the window's documents), with a proxy that sorts names as people
// count (p2 before p10) and keeps only the files a find matches.

#include <QAbstractTableModel>
#include <QCollator>
#include <QHash>
#include <QSortFilterProxyModel>

#include <memory>
#include <string>
#include <vector>

namespace browser
{

class Document;
class ThumbnailCache;

class FileTableModel : public QAbstractTableModel
{
    Q_OBJECT
public:
    enum Column
    {
        kName,
        kType,
        kTitle,
        kRating,
        kDate,
        kColumnCount
    };

    FileTableModel(std::vector<std::unique_ptr<Document>> const& documents,
                   ThumbnailCache& thumbnails, QObject* parent = nullptr);

    int rowCount(QModelIndex const& parent = QModelIndex()) const override;
    int columnCount(QModelIndex const& parent = QModelIndex()) const override;
    QVariant data(QModelIndex const& index, int role) const override;
    QVariant headerData(int section, Qt::Orientation orientation, int role) const override;

    // The documents from `first` on were added at the end.
    void DocumentsAdded(int first);
    // What the rows show changed (an edit, a save, a new read).
    void RowChanged(int row);
    void AllRowsChanged();

    // Whether row a sorts before row b by the column; names compare as
    // numbers where they hold digits, every column falls back on the name.
    bool Less(int a, int b, int column) const;
    // Whether the file's labels or values hold the folded text.
    bool Holds(int row, std::string const& folded) const;
    // The row of the file at this path; -1 when it is not listed.
    int RowOf(QString const& path) const { return rowOfPath.value(path, -1); }

private:
    void OnThumbnailReady(QString const& path);

    std::vector<std::unique_ptr<Document>> const& documents;
    ThumbnailCache& thumbnails;
    int rows = 0;
    QCollator collator;
    std::vector<QCollatorSortKey> nameKeys;
    QHash<QString, int> rowOfPath;
};

class FileSortProxy : public QSortFilterProxyModel
{
    Q_OBJECT
public:
    explicit FileSortProxy(FileTableModel& files, QObject* parent = nullptr);

    // Keeps the files whose labels or values hold the text, folded as the
    // property tree's find folds it; empty keeps every file.
    void SetFindText(QString const& text);

protected:
    bool lessThan(QModelIndex const& left, QModelIndex const& right) const override;
    bool filterAcceptsRow(int sourceRow, QModelIndex const& sourceParent) const override;

private:
    FileTableModel& files;
    std::string folded;
};

} // namespace browser
