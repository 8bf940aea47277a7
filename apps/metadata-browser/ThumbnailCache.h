#pragma once
// Small pictures of image files for the file list, made on a worker thread
// and kept in memory by path and modification time, so a file changed on
// disk gets a new one.

#include <QCache>
#include <QImage>
#include <QObject>
#include <QSet>
#include <QThreadPool>

namespace browser
{

class ThumbnailCache : public QObject
{
    Q_OBJECT
public:
    // Pictures fit a square of `edge` pixels; at most `count` are kept.
    explicit ThumbnailCache(int edge, int count = 2000, QObject* parent = nullptr);
    ~ThumbnailCache() override;

    int Edge() const { return edge; }
    // The picture when it is made; otherwise starts making it and returns a
    // null image (also for files that are no picture the platform decodes).
    QImage Get(QString const& path, qint64 modified);
    // Blocks until the pictures asked for are made and kept (tests, screenshots).
    void WaitForAll();

signals:
    void Ready(QString const& path);

private:
    void Keep(QString const& key, QString const& path, QImage const& image);

    int edge;
    QThreadPool pool;
    QCache<QString, QImage> made;
    QSet<QString> pending;
    QSet<QString> decodable; // file suffixes, lower case
};

} // namespace browser
