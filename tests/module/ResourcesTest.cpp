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

QByteArray ReadAll(QString const& path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

QString Source(QString const& relative)
{
    return QStringLiteral(ZEPH_SOURCE_DIR "/resources/") + relative;
}

// The share of pixels more than half opaque (the ink, not faint fills or edge
// smoothing) and their mean lightness, 0 to 1.
std::pair<double, double> Ink(QImage const& image)
{
    QImage const argb = image.convertToFormat(QImage::Format_ARGB32);
    double lightness = 0.0;
    int count = 0;
    for (int y = 0; y < argb.height(); ++y)
        for (int x = 0; x < argb.width(); ++x)
            if (qAlpha(argb.pixel(x, y)) > 127)
                lightness += QColor(argb.pixel(x, y)).lightnessF(), ++count;
    return {double(count) / (argb.width() * argb.height()), count > 0 ? lightness / count : -1.0};
}

} // namespace

TEST(ResourcesTest, CompiledResourcesAreExactlyTheCommittedFilesWithoutQInitResource)
{
    // Hosts need no Q_INIT_RESOURCE: the library registers its resources as it
    // loads. Calling into it here also keeps the linker from dropping it.
    ASSERT_NE(zephmetadataui::VersionString(), nullptr);
    QStringList const committed =
        QDir(Source("images")).entryList({QStringLiteral("*.png")}, QDir::Files);
    ASSERT_FALSE(committed.isEmpty());
    QStringList const compiled =
        QDir(QStringLiteral(":/zephmetadataui/PNG")).entryList(QDir::Files);
    EXPECT_EQ(std::set<QString>(compiled.begin(), compiled.end()),
              std::set<QString>(committed.begin(), committed.end()));
    for (QString const& name : committed)
        EXPECT_EQ(ReadAll(":/zephmetadataui/PNG/" + name), ReadAll(Source("images/" + name)))
            << name.toStdString() << " differs from its compiled copy";
    QByteArray const theme = ReadAll(QStringLiteral(":/zephmetadataui/XML/METADATAUITHEME.xml"));
    ASSERT_FALSE(theme.isEmpty()) << "the theme is not compiled into the library";
    EXPECT_EQ(theme, ReadAll(Source("theme/METADATAUITHEME.xml")));
}

TEST(ResourcesTest, EveryImageShowsInkAndMatchesItsBaseAndItsLightSibling)
{
    // "_AT_2X" has twice the pixels of its base, "_AT_3TO2X" three halves
    // (rounded down); a sibling drawn from the wrong source, or letterboxed,
    // covers a different share of its pixels or has other ink. "_N_D" images
    // are for dark interfaces: their ink is lighter than their "_N" sibling's.
    int siblings = 0, darkPairs = 0;
    for (QString const& name :
         QDir(Source("images")).entryList({QStringLiteral("*.png")}, QDir::Files))
    {
        SCOPED_TRACE(name.toStdString());
        QImage const image(Source("images/" + name));
        ASSERT_FALSE(image.isNull());
        EXPECT_TRUE(image.hasAlphaChannel());
        auto const [coverage, lightness] = Ink(image);
        EXPECT_GT(coverage, 0.02) << "blank";
        EXPECT_LT(coverage, 0.9) << "no transparent background";
        QString const light = QString(name).replace(QLatin1String("_N_D"), QLatin1String("_N"));
        if (light != name && QFile::exists(Source("images/" + light)))
        {
            ++darkPairs;
            QImage const lightImage(Source("images/" + light));
            EXPECT_EQ(image.size(), lightImage.size());
            EXPECT_GT(lightness, Ink(lightImage).second + 0.1);
        }
        int const at = int(name.indexOf(QLatin1String("_AT_")));
        if (at < 0)
        {
            // The drawing it was made from, on the same pixel grid.
            QString const svg = "images/src/" + QString(name).replace(".png", ".svg");
            QString const viewBox =
                QString("viewBox=\"0 0 %1 %2\"").arg(image.width()).arg(image.height());
            EXPECT_TRUE(ReadAll(Source(svg)).contains(viewBox.toUtf8())) << svg.toStdString();
            continue;
        }
        ++siblings;
        bool const twice = name.endsWith(QLatin1String("_AT_2X.png"));
        ASSERT_TRUE(twice || name.endsWith(QLatin1String("_AT_3TO2X.png")));
        QString const other = name.left(at) + (twice ? "_AT_3TO2X.png" : "_AT_2X.png");
        EXPECT_TRUE(QFile::exists(Source("images/" + other))) << "a scaled image has both siblings";
        QImage const base(Source("images/" + name.left(at) + ".png"));
        ASSERT_FALSE(base.isNull()) << "no base image";
        EXPECT_EQ(image.size(),
                  twice ? base.size() * 2 : QSize(base.width() * 3 / 2, base.height() * 3 / 2));
        auto const [baseCoverage, baseLightness] = Ink(base);
        EXPECT_NEAR(coverage, baseCoverage, 0.08);
        EXPECT_NEAR(lightness, baseLightness, 0.08);
    }
    EXPECT_GT(siblings, 0);
    EXPECT_GT(darkPairs, 0);
}

TEST(ResourcesTest, ThemeNumbersTheColourListAndGivesEachColourAWholeCurve)
{
    // colors.txt is the source of the theme: a stale theme file differs from it.
    std::vector<QString> listed;
    for (QByteArray line : ReadAll(Source("theme/colors.txt")).split('\n'))
    {
        line = line.left(line.indexOf('#') < 0 ? line.size() : line.indexOf('#')).trimmed();
        QList<QByteArray> const fields = line.split(' ');
        if (line.isEmpty())
            continue;
        ASSERT_TRUE(fields.size() == 2 && fields[0].toInt() == int(listed.size())) << line.data();
        listed.push_back(QString::fromLatin1(fields[1]));
    }
    ASSERT_FALSE(listed.empty());

    QXmlStreamReader reader(ReadAll(Source("theme/METADATAUITHEME.xml")));
    std::vector<QString> declared; // colour entities in declaration order
    std::map<int, std::set<double>> times;
    std::vector<QString> groupT; // t of the enclosing Theme groups
    while (!reader.atEnd())
    {
        reader.readNext();
        QXmlStreamAttributes const attributes = reader.attributes();
        if (reader.isDTD())
        {
            for (QXmlStreamEntityDeclaration const& entity : reader.entityDeclarations())
                if (entity.name().startsWith(QLatin1String("kColor_")))
                {
                    EXPECT_EQ(entity.value().toString(), QString::number(declared.size()));
                    declared.push_back(entity.name().toString());
                }
        }
        else if (reader.name() == QLatin1String("Theme"))
            reader.isStartElement() ? groupT.push_back(attributes.value("t").toString())
                                    : groupT.pop_back();
        else if (reader.isStartElement() && reader.name() == QLatin1String("KeyFrame"))
        {
            // Entity references in attributes arrive expanded: the name is the id.
            bool ok = false;
            int const id = attributes.value("name").toInt(&ok);
            ASSERT_TRUE(ok && id >= 0 && id < int(listed.size())) << "colour " << id;
            QString const t = attributes.hasAttribute("t") ? attributes.value("t").toString()
                              : groupT.empty()             ? QString()
                                                           : groupT.back();
            double const at = t.toDouble(&ok);
            ASSERT_TRUE(ok && at >= 0.0 && at <= 1.0) << "colour " << id;
            EXPECT_TRUE(times[id].insert(at).second) << "colour " << id << " twice at " << at;
            double const v = attributes.value("v").toDouble(&ok);
            EXPECT_TRUE(ok && v >= 0.0 && v <= 1.0) << "colour " << id;
        }
    }
    ASSERT_FALSE(reader.hasError())
        << reader.errorString().toStdString() << " at line " << reader.lineNumber();
    EXPECT_EQ(declared, listed);
    ASSERT_EQ(times.size(), listed.size()) << "a colour has no key frame";
    for (auto const& [id, at] : times)
        EXPECT_TRUE(*at.begin() == 0.0 && *at.rbegin() == 1.0) << "colour " << id << " partial";
}
