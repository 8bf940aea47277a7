#pragma once
// Reads files on a worker thread and hands them back to the user-interface
// thread in batches, in the order they were asked for, with progress on the
// way. Past the first few files of a load only the summaries come back: a
// folder of 100,000 files must not hold 100,000 packets on the way.

#include "Document.h"

#include <QMutex>
#include <QObject>
#include <QStringList>
#include <QThreadPool>

#include <atomic>
#include <functional>
#include <memory>
#include <vector>

namespace browser
{

class FileLoader : public QObject
{
    Q_OBJECT
public:
    explicit FileLoader(QObject* parent = nullptr);
    ~FileLoader() override;

    // Where finished files go, on the user-interface thread, in the order
    // the files were asked for: all that finished since the last batch.
    void SetLoadedHandler(std::function<void(std::vector<LoadedFile>)> handler)
    {
        loaded = std::move(handler);
    }
    // The labels the files' summaries search; set before the first load.
    void SetSearchLabels(std::shared_ptr<SearchLabels const> value) { labels = std::move(value); }
    // Starts reading; a load already running goes on and its results come too.
    void Load(QStringList const& paths);
    bool IsBusy() const { return done < total; }
    // Blocks until every started load has finished (for tests and shutdown).
    void WaitForAll();
    // Stops reading for good, dropping what was not handed over (shutdown).
    void Stop();

    // How many files of each load come with their packet.
    static constexpr int kPacketsKeptPerLoad = 8;
    static constexpr int kDeliveryMilliseconds = 100;

signals:
    void Progress(int done, int total, QString const& current);
    void AllLoaded();

private:
    void DeliverFinished();

    std::function<void(std::vector<LoadedFile>)> loaded;
    std::shared_ptr<SearchLabels const> labels;
    int done = 0;
    int total = 0;
    // Filled by the reader, emptied by the user-interface thread.
    QMutex finishedLock;
    std::vector<LoadedFile> finished;
    bool deliveryPosted = false;
    std::atomic<bool> stopping{false};
    QThreadPool pool;
};

// Expands folders (not recursively) into the media files they hold, keeps
// files as they are, and drops what does not exist.
QStringList ExpandPaths(QStringList const& paths);

} // namespace browser
