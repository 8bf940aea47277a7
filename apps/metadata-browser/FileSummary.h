#pragma once
// What the file list keeps of a file that is neither selected nor edited:
// the columns it shows and the text that find across files searches, a few
// hundred bytes however big the file's packet is.

#include <zephmetadata/Types.h>

#include <QString>

#include <memory>
#include <string>
#include <unordered_map>

namespace browser
{

struct FileSummary
{
    static constexpr int kNoRating = -2; // xmp:Rating runs from -1 (rejected) to 5

    QString path;
    QString name;
    QString type;
    QString title;
    QString date; // as stored: ISO 8601, so the text sorts as time does
    int rating = kNoRating;
    // Labels and values of the file's properties, each folded as the
    // property tree's find folds, as UTF-8, one per line: a search for text
    // without a line break never spans two of them.
    std::string searchText;
    qint64 modified = 0; // the file's modification time, ms since the epoch
    QString error;       // why it could not be read
    QString damage;      // why its packet is damaged
};

// The folded labels of every leaf the definitions know, by namespace and
// path without item subscripts ("xmpDM:Tracks/xmpDM:markers/xmpDM:name").
// Built once on the user-interface thread from the definitions; read-only
// afterwards, so workers may share it.
class SearchLabels
{
public:
    static std::shared_ptr<SearchLabels const> FromDefinitions();
    // Null when the definitions do not know the leaf.
    std::string const* Find(std::string const& key) const;

private:
    std::unordered_map<std::string, std::string> labels;
};

// Folds text for find as the property tree does (case folding, then
// compatibility composition), as UTF-8.
std::string FoldForFind(QString const& text);

// The summary of a file read into meta (null when unreadable); safe on a
// worker thread: it reads meta and labels and touches nothing shared.
FileSummary SummarizeFile(QString const& path, __XMPMeta__* meta, SearchLabels const& labels);

} // namespace browser
