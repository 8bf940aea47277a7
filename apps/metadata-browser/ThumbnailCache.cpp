#include "ThumbnailCache.h"

#include <QFileInfo>
#include <QImageReader>

namespace browser
{

namespace
{

QImage MakeThumbnail(QString const& path, int edge)
{
    QImageReader reader(path);
    reader.setAutoTransform(true);
    QSize const size = reader.size();
    // Decoding at the small size is what keeps a folder of photographs cheap:
    // a JPEG decodes straight to an eighth of its size.
    if (size.isValid())
        reader.setScaledSize(size.scaled(edge, edge, Qt::KeepAspectRatio).expandedTo({1, 1}));
    QImage image = reader.read();
    if (!image.isNull() && (image.width() > edge || image.height() > edge))
        image = image.scaled(edge, edge, Qt::KeepAspectRatio, Qt::SmoothTransformation);
    return image;
}

} // namespace

ThumbnailCache::ThumbnailCache(int edge, int count, QObject* parent)
    : QObject(parent), edge(edge), made(count)
{
    pool.setMaxThreadCount(1);
    for (QByteArray const& format : QImageReader::supportedImageFormats())
        decodable.insert(QString::fromLatin1(format).toLower());
}

ThumbnailCache::~ThumbnailCache()
{
    pool.clear();
    pool.waitForDone();
}

QImage ThumbnailCache::Get(QString const& path, qint64 modified)
{
    QString const key = path + QLatin1Char('\n') + QString::number(modified);
    if (QImage const* image = made.object(key))
        return *image;
    if (pending.contains(key) || !decodable.contains(QFileInfo(path).suffix().toLower()))
        return QImage();
    pending.insert(key);
    int const size = edge;
    pool.start(
        [this, key, path, size]
        {
            QImage const image = MakeThumbnail(path, size);
            // Posted to this object: dropped with it if it goes first.
            QMetaObject::invokeMethod(
                this, [this, key, path, image] { Keep(key, path, image); }, Qt::QueuedConnection);
        });
    return QImage();
}

void ThumbnailCache::Keep(QString const& key, QString const& path, QImage const& image)
{
    if (!pending.remove(key))
        return;
    made.insert(key, new QImage(image));
    emit Ready(path);
}

void ThumbnailCache::WaitForAll()
{
    while (!pending.isEmpty())
    {
        pool.waitForDone();
        QCoreApplication::sendPostedEvents(this, QEvent::MetaCall);
    }
}

} // namespace browser
