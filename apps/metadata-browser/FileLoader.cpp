#include "FileLoader.h"

#include <QDirIterator>
#include <QElapsedTimer>
#include <QFileInfo>
#include <QMutexLocker>

#include <algorithm>

#ifdef __GLIBC__
#include <malloc.h>
#endif

namespace browser
{

FileLoader::FileLoader(QObject* parent) : QObject(parent)
{
    // One reader thread: files are read one after another, in order.
    pool.setMaxThreadCount(1);
#ifdef __GLIBC__
    // The reader thread parses a packet into a tree that the user-interface
    // thread then owns. In an arena of its own the reader pays for fresh
    // pages as that arena grows, and the parse's scratch memory stays
    // stranded there afterwards; with one arena for the process both are
    // reused. Opening a 4 MB packet took about a third longer without it.
    // The threads rarely allocate at the same time, so they do not contend.
    mallopt(M_ARENA_MAX, 1);
#endif
}

FileLoader::~FileLoader()
{
    Stop();
}

void FileLoader::Stop()
{
    stopping = true;
    pool.waitForDone();
    QMutexLocker const lock(&finishedLock);
    finished.clear();
}

void FileLoader::Load(QStringList const& paths)
{
    if (paths.isEmpty())
        return;
    if (!IsBusy())
        done = total = 0;
    total += int(paths.size());
    emit Progress(done, total, QFileInfo(paths.front()).fileName());
    pool.start(
        [this, paths, labels = labels]
        {
            QElapsedTimer sinceDelivery;
            sinceDelivery.start();
            for (int i = 0; i < paths.size() && !stopping; ++i)
            {
                LoadedFile file = LoadFile(paths[i], *labels);
                if (i >= kPacketsKeptPerLoad)
                    file.meta.reset();
                QMutexLocker const lock(&finishedLock);
                finished.push_back(std::move(file));
                // One delivery at a time, and a few a second: every delivery
                // makes the list sort its new rows in, which costs far more
                // per file one by one than in batches. The first file goes
                // at once, to be shown.
                bool const due = i == 0 || i + 1 == paths.size() ||
                                 sinceDelivery.elapsed() >= kDeliveryMilliseconds;
                if (!deliveryPosted && due)
                {
                    sinceDelivery.restart();
                    deliveryPosted = true;
                    QMetaObject::invokeMethod(this, &FileLoader::DeliverFinished,
                                              Qt::QueuedConnection);
                }
            }
        });
}

void FileLoader::DeliverFinished()
{
    std::vector<LoadedFile> batch;
    {
        QMutexLocker const lock(&finishedLock);
        batch.swap(finished);
        deliveryPosted = false;
    }
    if (batch.empty())
        return;
    done += int(batch.size());
    QString const last = QFileInfo(batch.back().path).fileName();
    if (loaded)
        loaded(std::move(batch));
    emit Progress(done, total, last);
    if (!IsBusy())
        emit AllLoaded();
}

void FileLoader::WaitForAll()
{
    pool.waitForDone();
    DeliverFinished();
}

QStringList ExpandPaths(QStringList const& paths)
{
    static QStringList const kSkipped = {"txt", "md", "json", "ini", "log"};
    QStringList files;
    for (QString const& path : paths)
    {
        QFileInfo const info(path);
        if (info.isDir())
        {
            // No sorting by the file system: the list sorts, and a folder of
            // 100,000 files would wait for it.
            QStringList inFolder;
            QDirIterator entries(path, QDir::Files);
            while (entries.hasNext())
            {
                QString const file = entries.next();
                if (!kSkipped.contains(entries.fileInfo().suffix().toLower()))
                    inFolder << QFileInfo(file).absoluteFilePath();
            }
            std::sort(inFolder.begin(), inFolder.end());
            files << inFolder;
        }
        else if (info.isFile())
        {
            files << info.absoluteFilePath();
        }
    }
    return files;
}

} // namespace browser
