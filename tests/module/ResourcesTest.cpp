// The library's own resources: compiled into the library (":/zephmetadataui")
// as committed, scaled and dark images that match their base image, and a
// theme file that agrees with the colour list it is made from.

#include <QByteArray>
#include <QColor>
#include <QDir>
#include <QFile>
#include <QImage>
#include <QString>
#include <QStringList>
#include <QXmlStreamReader>

#include "zephmetadataui/Version.h"

#include <gtest/gtest.h>

#include <map>
#include <set>
#include <vector>

namespace
{

QString const kResourceRoot = QStringLiteral(":/zephmetadataui");

QString SourcePath(QString const& relative)
{
    return QStringLiteral(ZEPH_SOURCE_DIR "/") + relative;
}

QByteArray ReadAll(QString const& path)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        return {};
    return file.readAll();
}

QString ImagePath(QString const& name)
{
    return SourcePath(QStringLiteral("resources/images/") + name);
}

QStringList CommittedImages()
{
    return QDir(SourcePath(QStringLiteral("resources/images")))
        .entryList({QStringLiteral("*.png")}, QDir::Files);
}

// Share of pixels that are more than half opaque.
double Coverage(QImage const& image)
{
    QImage const argb = image.convertToFormat(QImage::Format_ARGB32);
    int covered = 0;
    for (int y = 0; y < argb.height(); ++y)
        for (int x = 0; x < argb.width(); ++x)
            covered += qAlpha(argb.pixel(x, y)) > 127 ? 1 : 0;
    return double(covered) / (argb.width() * argb.height());
}

// Mean lightness, 0 to 1, of the pixels more than half opaque (the ink, not
// faint fills or edge smoothing).
double InkLightness(QImage const& image)
{
    QImage const argb = image.convertToFormat(QImage::Format_ARGB32);
    double sum = 0.0;
    int count = 0;
    for (int y = 0; y < argb.height(); ++y)
        for (int x = 0; x < argb.width(); ++x)
            if (qAlpha(argb.pixel(x, y)) > 127)
            {
                sum += QColor(argb.pixel(x, y)).lightnessF();
                ++count;
            }
    return count > 0 ? sum / count : -1.0;
}

} // namespace

TEST(ResourcesTest, CompiledResourcesAreExactlyTheCommittedFilesWithoutQInitResource)
{
    // Hosts need no Q_INIT_RESOURCE: the library registers its resources as it
    // loads. Calling into it here also keeps the linker from dropping it.
    ASSERT_NE(zephmetadataui::VersionString(), nullptr);
    QStringList const committed = CommittedImages();
    ASSERT_FALSE(committed.isEmpty());
    QStringList const compiled =
        QDir(kResourceRoot + QStringLiteral("/PNG")).entryList(QDir::Files);
    EXPECT_EQ(std::set<QString>(compiled.begin(), compiled.end()),
              std::set<QString>(committed.begin(), committed.end()));
    for (QString const& name : committed)
        EXPECT_EQ(ReadAll(kResourceRoot + QStringLiteral("/PNG/") + name), ReadAll(ImagePath(name)))
            << name.toStdString() << " differs from its compiled copy";

    QByteArray const theme = ReadAll(kResourceRoot + QStringLiteral("/XML/METADATAUITHEME.xml"));
    ASSERT_FALSE(theme.isEmpty()) << "the theme is not compiled into the library";
    EXPECT_EQ(theme, ReadAll(SourcePath(QStringLiteral("resources/theme/METADATAUITHEME.xml"))));
}

TEST(ResourcesTest, EveryImageShowsInkOnATransparentGroundAndKeepsItsSource)
{
    for (QString const& name : CommittedImages())
    {
        SCOPED_TRACE(name.toStdString());
        QImage const image(ImagePath(name));
        ASSERT_FALSE(image.isNull());
        EXPECT_TRUE(image.hasAlphaChannel());
        EXPECT_GT(Coverage(image), 0.02) << "blank";
        EXPECT_LT(Coverage(image), 0.9) << "no transparent background";
        if (name.contains(QLatin1String("_AT_")))
            continue;
        // The drawing it was made from, on the same pixel grid as the 1x image.
        QString const svg = QStringLiteral("resources/images/src/") +
                            QString(name).replace(QLatin1String(".png"), QLatin1String(".svg"));
        QString const viewBox =
            QStringLiteral("viewBox=\"0 0 %1 %2\"").arg(image.width()).arg(image.height());
        EXPECT_TRUE(ReadAll(SourcePath(svg)).contains(viewBox.toUtf8())) << svg.toStdString();
    }
}

TEST(ResourcesTest, ScaledSiblingsAreTheirBaseAtTheirScale)
{
    // "_AT_2X" has twice the pixels of its base, "_AT_3TO2X" three halves
    // (rounded down); a sibling drawn from the wrong source, or letterboxed,
    // covers a different share of its pixels or has other ink.
    int siblings = 0;
    for (QString const& name : CommittedImages())
    {
        int const at = int(name.indexOf(QLatin1String("_AT_")));
        if (at < 0)
            continue;
        SCOPED_TRACE(name.toStdString());
        ++siblings;
        QString const baseName = name.left(at) + QStringLiteral(".png");
        bool const twice = name.endsWith(QLatin1String("_AT_2X.png"));
        ASSERT_TRUE(twice || name.endsWith(QLatin1String("_AT_3TO2X.png")));
        QString const other = name.left(at) + (twice ? QStringLiteral("_AT_3TO2X.png")
                                                     : QStringLiteral("_AT_2X.png"));
        EXPECT_TRUE(QFile::exists(ImagePath(other))) << "a scaled image comes with both siblings";
        QImage const base(ImagePath(baseName));
        QImage const sibling(ImagePath(name));
        ASSERT_FALSE(base.isNull()) << "no base image";
        QSize const expected =
            twice ? base.size() * 2 : QSize(base.width() * 3 / 2, base.height() * 3 / 2);
        EXPECT_EQ(sibling.size(), expected);
        EXPECT_NEAR(Coverage(sibling), Coverage(base), 0.08);
        EXPECT_NEAR(InkLightness(sibling), InkLightness(base), 0.08);
    }
    EXPECT_GT(siblings, 0);
}

TEST(ResourcesTest, DarkVariantsDrawLighterInkThanLightOnes)
{
    // "_N_D" images are for dark interfaces: their ink is the lighter one.
    int pairs = 0;
    for (QString const& dark : CommittedImages())
    {
        if (!dark.contains(QLatin1String("_N_D")))
            continue;
        QString const light = QString(dark).replace(QLatin1String("_N_D"), QLatin1String("_N"));
        if (!QFile::exists(ImagePath(light)))
            continue; // a dark-only image
        SCOPED_TRACE(dark.toStdString());
        ++pairs;
        QImage const darkImage(ImagePath(dark));
        QImage const lightImage(ImagePath(light));
        EXPECT_EQ(darkImage.size(), lightImage.size());
        EXPECT_GT(InkLightness(darkImage), InkLightness(lightImage) + 0.1);
    }
    EXPECT_GT(pairs, 0);
}

TEST(ResourcesTest, ThemeNumbersTheColourListAndGivesEachColourAWholeCurve)
{
    // colors.txt is the source of the theme: a stale theme file differs from it.
    std::vector<QString> listed;
    for (QByteArray line :
         ReadAll(SourcePath(QStringLiteral("resources/theme/colors.txt"))).split('\n'))
    {
        line = line.left(line.indexOf('#') < 0 ? line.size() : line.indexOf('#')).trimmed();
        if (line.isEmpty())
            continue;
        QList<QByteArray> const fields = line.split(' ');
        ASSERT_EQ(fields.size(), 2) << line.toStdString();
        ASSERT_EQ(fields[0].toInt(), int(listed.size())) << line.toStdString();
        listed.push_back(QString::fromLatin1(fields[1]));
    }
    ASSERT_FALSE(listed.empty());

    QXmlStreamReader reader(
        ReadAll(SourcePath(QStringLiteral("resources/theme/METADATAUITHEME.xml"))));
    std::vector<QString> declared; // colour entities in declaration order
    std::map<int, std::set<double>> times;
    std::vector<QString> groupT; // t of the enclosing Theme groups
    while (!reader.atEnd())
    {
        reader.readNext();
        if (reader.isDTD())
        {
            for (QXmlStreamEntityDeclaration const& entity : reader.entityDeclarations())
                if (entity.name().startsWith(QLatin1String("kColor_")))
                {
                    EXPECT_EQ(entity.value().toString(), QString::number(declared.size()));
                    declared.push_back(entity.name().toString());
                }
        }
        else if (reader.isStartElement() && reader.name() == QLatin1String("Theme"))
            groupT.push_back(reader.attributes().value(QLatin1String("t")).toString());
        else if (reader.isEndElement() && reader.name() == QLatin1String("Theme"))
            groupT.pop_back();
        else if (reader.isStartElement() && reader.name() == QLatin1String("KeyFrame"))
        {
            QXmlStreamAttributes const attributes = reader.attributes();
            // Entity references in attributes arrive expanded: the name is the id.
            bool ok = false;
            int const id = attributes.value(QLatin1String("name")).toInt(&ok);
            ASSERT_TRUE(ok && id >= 0 && id < int(listed.size()))
                << attributes.value(QLatin1String("name")).toString().toStdString();
            QString const t = attributes.hasAttribute(QLatin1String("t"))
                                  ? attributes.value(QLatin1String("t")).toString()
                              : groupT.empty() ? QString()
                                               : groupT.back();
            double const at = t.toDouble(&ok);
            ASSERT_TRUE(ok && at >= 0.0 && at <= 1.0) << "colour " << id;
            EXPECT_TRUE(times[id].insert(at).second) << "colour " << id << " twice at " << at;
            double const v = attributes.value(QLatin1String("v")).toDouble(&ok);
            EXPECT_TRUE(ok && v >= 0.0 && v <= 1.0) << "colour " << id;
        }
    }
    ASSERT_FALSE(reader.hasError())
        << reader.errorString().toStdString() << " at line " << reader.lineNumber();
    EXPECT_EQ(declared, listed);
    ASSERT_EQ(times.size(), listed.size()) << "a colour has no key frame";
    for (auto const& [id, at] : times)
    {
        EXPECT_EQ(*at.begin(), 0.0) << "colour " << id << " starts late";
        EXPECT_EQ(*at.rbegin(), 1.0) << "colour " << id << " ends early";
    }
}
