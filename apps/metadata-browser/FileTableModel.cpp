#include "FileTableModel.h"

#include "Document.h"
#include "ThumbnailCache.h"

#include <QBrush>
#include <QFont>
#include <QIcon>
#include <QPixmap>

namespace browser
{

namespace
{

QString Stars(int rating)
{
    if (rating == FileSummary::kNoRating)
        return QString();
    if (rating < 0)
        return FileTableModel::tr("Rejected");
    int const stars = std::min(rating, 5);
    return QString(stars, QChar(0x2605)) + QString(5 - stars, QChar(0x2606));
}

// "2024-05-01T10:30:00+02:00" -> "2024-05-01 10:30": the zone and seconds
// would only widen the column.
QString ShortDate(QString const& date)
{
    return date.left(16).replace(QLatin1Char('T'), QLatin1Char(' '));
}

} // namespace

FileTableModel::FileTableModel(std::vector<std::unique_ptr<Document>> const& documents,
                               ThumbnailCache& thumbnails, QObject* parent)
    : QAbstractTableModel(parent), documents(documents), thumbnails(thumbnails)
{
    // The C locale compares code units and knows no numbers; names are
    // then collated as in English.
    if (collator.locale().language() == QLocale::C)
        collator.setLocale(QLocale(QLocale::English, QLocale::UnitedStates));
    collator.setNumericMode(true);
    collator.setCaseSensitivity(Qt::CaseInsensitive);
    connect(&thumbnails, &ThumbnailCache::Ready, this, &FileTableModel::OnThumbnailReady);
}

int FileTableModel::rowCount(QModelIndex const& parent) const
{
    return parent.isValid() ? 0 : rows;
}

int FileTableModel::columnCount(QModelIndex const& parent) const
{
    return parent.isValid() ? 0 : kColumnCount;
}

QVariant FileTableModel::data(QModelIndex const& index, int role) const
{
    if (!index.isValid() || index.row() >= rows)
        return QVariant();
    Document const& document = *documents[std::size_t(index.row())];
    FileSummary const& summary = document.Summary();
    switch (role)
    {
    case Qt::DisplayRole:
        switch (index.column())
        {
        case kName:
            return summary.name + (document.IsModified() ? QStringLiteral(" *") : QString());
        case kType:
            return summary.type;
        case kTitle:
            return summary.title;
        case kRating:
            return Stars(summary.rating);
        case kDate:
            return ShortDate(summary.date);
        }
        break;
    case Qt::DecorationRole:
        if (index.column() == kName && summary.error.isEmpty())
        {
            QImage const image = thumbnails.Get(summary.path, summary.modified);
            if (!image.isNull())
                return QPixmap::fromImage(image);
        }
        break;
    case Qt::ForegroundRole:
        if (!summary.error.isEmpty())
            return QBrush(QColor(176, 40, 40));
        if (!document.Damage().isEmpty())
            return QBrush(QColor(170, 100, 0));
        break;
    case Qt::FontRole:
        if (document.IsModified())
        {
            QFont font;
            font.setItalic(true);
            return font;
        }
        break;
    case Qt::ToolTipRole:
        if (!summary.error.isEmpty())
            return summary.path + "\n" + summary.error;
        if (!document.Damage().isEmpty())
            return summary.path + "\n" + tr("Damaged metadata: %1").arg(document.Damage());
        return summary.path;
    case Qt::TextAlignmentRole:
        return QVariant(Qt::AlignLeft | Qt::AlignVCenter);
    }
    return QVariant();
}

QVariant FileTableModel::headerData(int section, Qt::Orientation orientation, int role) const
{
    if (orientation != Qt::Horizontal || role != Qt::DisplayRole)
        return QAbstractTableModel::headerData(section, orientation, role);
    switch (section)
    {
    case kName:
        return tr("Name");
    case kType:
        return tr("Type");
    case kTitle:
        return tr("Title");
    case kRating:
        return tr("Rating");
    case kDate:
        return tr("Date");
    }
    return QVariant();
}

void FileTableModel::DocumentsAdded(int first)
{
    int const last = int(documents.size()) - 1;
    if (first > last)
        return;
    beginInsertRows(QModelIndex(), first, last);
    nameKeys.reserve(documents.size());
    for (int row = first; row <= last; ++row)
    {
        FileSummary const& summary = documents[std::size_t(row)]->Summary();
        nameKeys.push_back(collator.sortKey(summary.name));
        rowOfPath.insert(summary.path, row);
    }
    rows = last + 1;
    endInsertRows();
}

void FileTableModel::RowChanged(int row)
{
    if (row >= 0 && row < rows)
        emit dataChanged(index(row, 0), index(row, kColumnCount - 1));
}

void FileTableModel::AllRowsChanged()
{
    if (rows > 0)
        emit dataChanged(index(0, 0), index(rows - 1, kColumnCount - 1));
}

bool FileTableModel::Less(int a, int b, int column) const
{
    FileSummary const& left = documents[std::size_t(a)]->Summary();
    FileSummary const& right = documents[std::size_t(b)]->Summary();
    int order = 0;
    switch (column)
    {
    case kType:
        order = left.type.compare(right.type, Qt::CaseInsensitive);
        break;
    case kTitle:
        order = left.title.compare(right.title, Qt::CaseInsensitive);
        break;
    case kRating:
        order = left.rating - right.rating;
        break;
    case kDate:
        order = left.date.compare(right.date);
        break;
    default:
        break;
    }
    if (order != 0)
        return order < 0;
    order = nameKeys[std::size_t(a)].compare(nameKeys[std::size_t(b)]);
    // Names equal to the collator (two folders) keep the order they came in.
    return order != 0 ? order < 0 : a < b;
}

bool FileTableModel::Holds(int row, std::string const& folded) const
{
    return documents[std::size_t(row)]->Summary().searchText.find(folded) != std::string::npos;
}

void FileTableModel::OnThumbnailReady(QString const& path)
{
    int const row = RowOf(path);
    if (row < 0)
        return;
    QModelIndex const cell = index(row, kName);
    emit dataChanged(cell, cell, {Qt::DecorationRole});
}

FileSortProxy::FileSortProxy(FileTableModel& files, QObject* parent)
    : QSortFilterProxyModel(parent), files(files)
{
    setSourceModel(&files);
    setDynamicSortFilter(true);
}

bool FileSortProxy::lessThan(QModelIndex const& left, QModelIndex const& right) const
{
    return files.Less(left.row(), right.row(), left.column());
}

} // namespace browser

namespace browser
{

void FileSortProxy::SetFindText(QString const& text)
{
    std::string fresh = text.isEmpty() ? std::string() : FoldForFind(text);
    // A keystroke that changes only the case filters nothing anew.
    if (fresh == folded)
        return;
    folded = std::move(fresh);
    invalidateFilter();
}

bool FileSortProxy::filterAcceptsRow(int sourceRow, QModelIndex const&) const
{
    return folded.empty() || files.Holds(sourceRow, folded);
}

} // namespace browser
