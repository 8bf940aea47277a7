#pragma once
// Reads files on a worker thread and hands each finished provider back to
// the user-interface thread, with progress on the way.

#include "Document.h"

#include <QFutureWatcher>
#include <QObject>
#include <QStringList>
#include <QThreadPool>

#include <functional>
#include <vector>

namespace browser
{

class FileLoader : public QObject
{
    Q_OBJECT
public:
    explicit FileLoader(QObject* parent = nullptr);
    ~FileLoader() override;

    // Where each finished file goes, on the user-interface thread, in the
    // order the files were asked for.
    void SetLoadedHandler(std::function<void(LoadedFile)> handler) { loaded = std::move(handler); }
    // The labels the files' summaries search; set before the first load.
    void SetSearchLabels(std::shared_ptr<SearchLabels const> value) { labels = std::move(value); }
    // Starts reading; a load already running goes on and its results come too.
    void Load(QStringList const& paths);
    bool IsBusy() const { return pending > 0; }
    // Blocks until every started load has finished (for tests and shutdown).
    void WaitForAll();

signals:
    void Progress(int done, int total, QString const& current);
    void AllLoaded();

private:
    void DeliverFinished();

    std::function<void(LoadedFile)> loaded;
    std::shared_ptr<SearchLabels const> labels;
    int pending = 0;
    int done = 0;
    int total = 0;
    std::vector<QFutureWatcher<LoadedFile>*> watchers;
    QThreadPool pool;
};

// Expands folders (not recursively) into the media files they hold, keeps
// files as they are, and drops what does not exist.
QStringList ExpandPaths(QStringList const& paths);

} // namespace browser
