// The library's own resources: the images and the theme parameter file, both as
// committed in the source tree and as compiled into the library (":/zephmetadataui").

#include <QByteArray>
#include <QColor>
#include <QDir>
#include <QFile>
#include <QImage>
#include <QRegularExpression>
#include <QString>
#include <QStringList>
#include <QXmlStreamReader>

#include "zephmetadataui/Version.h"

#include <gtest/gtest.h>

#include <map>
#include <ostream>
#include <set>
#include <string>
#include <utility>
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

// ---------------------------------------------------------------------------
// Images

struct ImageSpec
{
    char const* name;
    int width;
    int height;
    bool scaled;
};

ImageSpec const kImages[] = {
    {"P_ICONWELL_N", 18, 18, false},
    {"P_ICONWELL_N_D", 18, 18, false},
    {"P_MONITORIN_N", 6, 26, false},
    {"P_MONITOROUT_N", 6, 26, false},
    {"SP_LINK_SM_N_D", 16, 16, true},
    {"SP_POWEREDBYXMP_105X15_N", 105, 15, true},
    {"SP_POWEREDBYXMP_105X15_N_D", 105, 15, true},
    {"SP_POWEREDBYXMP_72X33_N", 72, 33, true},
    {"SP_POWEREDBYXMP_72X33_N_D", 72, 33, true},
};

struct ImageVariant
{
    std::string base;
    std::string name;
    int width = 0;
    int height = 0;
};

// Every file the table implies: the base, and for scaled images "_AT_2X" at
// twice the pixels and "_AT_3TO2X" at three halves, rounded down.
std::vector<ImageVariant> AllVariants()
{
    std::vector<ImageVariant> variants;
    for (ImageSpec const& image : kImages)
    {
        variants.push_back({image.name, image.name, image.width, image.height});
        if (image.scaled)
        {
            variants.push_back({image.name, std::string(image.name) + "_AT_2X", image.width * 2,
                                image.height * 2});
            variants.push_back({image.name, std::string(image.name) + "_AT_3TO2X",
                                image.width * 3 / 2, image.height * 3 / 2});
        }
    }
    return variants;
}

QString SourceImagePath(std::string const& name)
{
    return SourcePath(QStringLiteral("resources/images/%1.png").arg(QString::fromStdString(name)));
}

QString CompiledImagePath(std::string const& name)
{
    return kResourceRoot + QStringLiteral("/PNG/%1.png").arg(QString::fromStdString(name));
}

// Share of pixels that are more than half opaque.
double Coverage(QImage const& image)
{
    QImage argb = image.convertToFormat(QImage::Format_ARGB32);
    int covered = 0;
    for (int y = 0; y < argb.height(); ++y)
        for (int x = 0; x < argb.width(); ++x)
            covered += qAlpha(argb.pixel(x, y)) > 127 ? 1 : 0;
    return double(covered) / (argb.width() * argb.height());
}

// Mean lightness of the pixels that are more than half opaque (the ink, not
// faint fills or edge smoothing), 0 to 1; -1 if there are none.
double InkLightness(QImage const& image)
{
    QImage argb = image.convertToFormat(QImage::Format_ARGB32);
    double sum = 0.0;
    int count = 0;
    for (int y = 0; y < argb.height(); ++y)
    {
        for (int x = 0; x < argb.width(); ++x)
        {
            QRgb const pixel = argb.pixel(x, y);
            if (qAlpha(pixel) > 127)
            {
                sum += QColor(pixel).lightnessF();
                ++count;
            }
        }
    }
    return count > 0 ? sum / count : -1.0;
}

void PrintTo(ImageVariant const& variant, std::ostream* out)
{
    *out << variant.name << " " << variant.width << "x" << variant.height;
}

class ImageVariantTest : public testing::TestWithParam<ImageVariant>
{
};

TEST_P(ImageVariantTest, CommittedFileHasTheTableSizeAndVisibleInk)
{
    ImageVariant const& variant = GetParam();
    QImage const image(SourceImagePath(variant.name));
    ASSERT_FALSE(image.isNull()) << variant.name << " is missing or unreadable";
    EXPECT_EQ(image.width(), variant.width) << variant.name;
    EXPECT_EQ(image.height(), variant.height) << variant.name;
    EXPECT_TRUE(image.hasAlphaChannel()) << variant.name << " must be transparent around its ink";
    EXPECT_GT(Coverage(image), 0.02) << variant.name << " is blank";
    EXPECT_LT(Coverage(image), 0.9) << variant.name << " has no transparent background";
}

TEST_P(ImageVariantTest, CompiledResourceIsTheCommittedFile)
{
    ImageVariant const& variant = GetParam();
    QByteArray const compiled = ReadAll(CompiledImagePath(variant.name));
    ASSERT_FALSE(compiled.isEmpty())
        << CompiledImagePath(variant.name).toStdString() << " is not compiled in";
    EXPECT_EQ(compiled, ReadAll(SourceImagePath(variant.name)));
    QImage const image(CompiledImagePath(variant.name));
    EXPECT_EQ(image.size(), QSize(variant.width, variant.height));
}

INSTANTIATE_TEST_SUITE_P(AllImages, ImageVariantTest, testing::ValuesIn(AllVariants()),
                         [](testing::TestParamInfo<ImageVariant> const& info)
                         { return info.param.name; });

std::vector<ImageVariant> ScaledSiblings()
{
    std::vector<ImageVariant> siblings;
    for (ImageVariant const& variant : AllVariants())
        if (variant.name != variant.base)
            siblings.push_back(variant);
    return siblings;
}

class ScaledSiblingTest : public testing::TestWithParam<ImageVariant>
{
};

TEST_P(ScaledSiblingTest, CoversAsMuchAsItsBaseWithTheSameInk)
{
    // A sibling drawn from the wrong source, or letterboxed, covers a
    // different share of its pixels than the base image does.
    ImageVariant const& variant = GetParam();
    QImage const base(SourceImagePath(variant.base));
    QImage const sibling(SourceImagePath(variant.name));
    ASSERT_FALSE(base.isNull());
    ASSERT_FALSE(sibling.isNull());
    EXPECT_NEAR(Coverage(sibling), Coverage(base), 0.08) << variant.name;
    EXPECT_NEAR(InkLightness(sibling), InkLightness(base), 0.08) << variant.name;
}

INSTANTIATE_TEST_SUITE_P(Siblings, ScaledSiblingTest, testing::ValuesIn(ScaledSiblings()),
                         [](testing::TestParamInfo<ImageVariant> const& info)
                         { return info.param.name; });

std::set<QString> ExpectedImageFiles()
{
    std::set<QString> names;
    for (ImageVariant const& variant : AllVariants())
        names.insert(QString::fromStdString(variant.name) + QStringLiteral(".png"));
    return names;
}

TEST(ResourcesTest, ResourcesRegisterWhenTheLibraryLoads)
{
    // Hosts need no Q_INIT_RESOURCE: the library registers its resources as it
    // loads. Calling into it here also keeps the linker from dropping it.
    ASSERT_NE(zephmetadataui::VersionString(), nullptr);
    EXPECT_TRUE(QFile::exists(kResourceRoot + QStringLiteral("/PNG/SP_LINK_SM_N_D.png")));
    EXPECT_TRUE(QFile::exists(kResourceRoot + QStringLiteral("/XML/METADATAUITHEME.xml")));
    EXPECT_FALSE(QFile::exists(kResourceRoot + QStringLiteral("/PNG/SP_LINK_SM_N_D.svg")));
}

TEST(ResourcesTest, ImagesAreExactlyThoseOfTheTableInTreeAndLibrary)
{
    std::set<QString> const expected = ExpectedImageFiles();
    ASSERT_EQ(expected.size(), 19u);

    QStringList const committed = QDir(SourcePath(QStringLiteral("resources/images")))
                                      .entryList({QStringLiteral("*.png")}, QDir::Files);
    EXPECT_EQ(std::set<QString>(committed.begin(), committed.end()), expected);

    QStringList const compiled =
        QDir(kResourceRoot + QStringLiteral("/PNG")).entryList(QDir::Files);
    EXPECT_EQ(std::set<QString>(compiled.begin(), compiled.end()), expected);
}

TEST(ResourcesTest, EveryImageKeepsItsSvgSource)
{
    for (ImageSpec const& image : kImages)
    {
        QByteArray const svg =
            ReadAll(SourcePath(QStringLiteral("resources/images/src/%1.svg").arg(image.name)));
        ASSERT_FALSE(svg.isEmpty()) << image.name;
        // The source draws on the same pixel grid as the 1x image.
        QString const viewBox =
            QStringLiteral("viewBox=\"0 0 %1 %2\"").arg(image.width).arg(image.height);
        EXPECT_TRUE(svg.contains(viewBox.toUtf8()))
            << image.name << " lacks " << viewBox.toStdString();
    }
}

TEST(ResourcesTest, DarkVariantsDrawLighterInkThanLightOnes)
{
    // "_D" images are for dark interfaces: their ink must be the lighter one.
    std::pair<char const*, char const*> const pairs[] = {
        {"P_ICONWELL_N", "P_ICONWELL_N_D"},
        {"SP_POWEREDBYXMP_105X15_N", "SP_POWEREDBYXMP_105X15_N_D"},
        {"SP_POWEREDBYXMP_72X33_N", "SP_POWEREDBYXMP_72X33_N_D"},
        {"SP_POWEREDBYXMP_72X33_N_AT_2X", "SP_POWEREDBYXMP_72X33_N_D_AT_2X"},
    };
    for (auto const& [light, dark] : pairs)
    {
        QImage const lightImage(SourceImagePath(light));
        QImage const darkImage(SourceImagePath(dark));
        ASSERT_FALSE(lightImage.isNull()) << light;
        ASSERT_FALSE(darkImage.isNull()) << dark;
        EXPECT_EQ(lightImage.size(), darkImage.size()) << dark;
        EXPECT_GT(InkLightness(darkImage), InkLightness(lightImage) + 0.1) << dark;
    }
}

// ---------------------------------------------------------------------------
// Theme

struct KeyFrame
{
    QString name;
    QString t;
    QString v;
    QString h;
    QString s;
    QString a;
    QString hold;
};

struct FontSize
{
    QString name;
    QString size;
    QString scheme;
};

struct Theme
{
    QString error;
    QString root;
    std::vector<std::pair<QString, QString>> entities; // in declaration order
    std::map<QString, QString> entityValues;
    std::vector<KeyFrame> keyFrames;
    std::vector<FontSize> fontSizes;
    int themeGroups = 0;
};

Theme ParseTheme(QByteArray const& data)
{
    Theme theme;
    QXmlStreamReader reader(data);
    std::vector<QString> groupT; // t of the enclosing Theme groups
    while (!reader.atEnd())
    {
        reader.readNext();
        if (reader.isDTD())
        {
            for (QXmlStreamEntityDeclaration const& entity : reader.entityDeclarations())
            {
                theme.entities.emplace_back(entity.name().toString(), entity.value().toString());
                theme.entityValues[entity.name().toString()] = entity.value().toString();
            }
        }
        else if (reader.isStartElement())
        {
            QXmlStreamAttributes const attributes = reader.attributes();
            auto const name = reader.name();
            if (theme.root.isEmpty())
                theme.root = name.toString();
            if (name == QLatin1String("Theme"))
            {
                ++theme.themeGroups;
                groupT.push_back(attributes.value(QLatin1String("t")).toString());
            }
            else if (name == QLatin1String("KeyFrame"))
            {
                KeyFrame frame;
                frame.name = attributes.value(QLatin1String("name")).toString();
                frame.t = attributes.hasAttribute(QLatin1String("t"))
                              ? attributes.value(QLatin1String("t")).toString()
                              : (groupT.empty() ? QString() : groupT.back());
                frame.v = attributes.value(QLatin1String("v")).toString();
                frame.h = attributes.value(QLatin1String("h")).toString();
                frame.s = attributes.value(QLatin1String("s")).toString();
                frame.a = attributes.value(QLatin1String("a")).toString();
                frame.hold = attributes.value(QLatin1String("hold")).toString();
                theme.keyFrames.push_back(frame);
            }
            else if (name == QLatin1String("FontSize"))
            {
                theme.fontSizes.push_back({attributes.value(QLatin1String("name")).toString(),
                                           attributes.value(QLatin1String("size")).toString(),
                                           attributes.value(QLatin1String("scheme")).toString()});
            }
        }
        else if (reader.isEndElement() && reader.name() == QLatin1String("Theme"))
        {
            groupT.pop_back();
        }
    }
    if (reader.hasError())
        theme.error = reader.errorString() + QStringLiteral(" at line %1").arg(reader.lineNumber());
    return theme;
}

Theme const& CommittedTheme()
{
    static Theme const theme =
        ParseTheme(ReadAll(SourcePath(QStringLiteral("resources/theme/METADATAUITHEME.xml"))));
    return theme;
}

constexpr int kColorCount = 375;

// Colour entities in declaration order.
std::vector<std::pair<QString, QString>> ColorEntities(Theme const& theme)
{
    std::vector<std::pair<QString, QString>> colors;
    for (auto const& entity : theme.entities)
        if (entity.first.startsWith(QLatin1String("kColor_")))
            colors.push_back(entity);
    return colors;
}

double Number(QString const& text, bool* ok)
{
    return text.toDouble(ok);
}

TEST(ResourcesTest, ThemeIsWellFormedUtf8WithTheExpectedRoot)
{
    QByteArray const data =
        ReadAll(SourcePath(QStringLiteral("resources/theme/METADATAUITHEME.xml")));
    ASSERT_FALSE(data.isEmpty());
    EXPECT_TRUE(data.startsWith("<?xml version=\"1.0\" encoding=\"UTF-8\"?>"));
    Theme const& theme = CommittedTheme();
    EXPECT_TRUE(theme.error.isEmpty()) << theme.error.toStdString();
    EXPECT_EQ(theme.root, QStringLiteral("ThemeParameters"));
    EXPECT_GT(theme.themeGroups, 0);
}

TEST(ResourcesTest, ThemeNumbersEveryColourOnceInDeclarationOrder)
{
    auto const colors = ColorEntities(CommittedTheme());
    ASSERT_EQ(colors.size(), size_t(kColorCount));
    std::set<QString> names;
    for (int id = 0; id < kColorCount; ++id)
    {
        EXPECT_EQ(colors[id].second, QString::number(id)) << colors[id].first.toStdString();
        names.insert(colors[id].first);
    }
    EXPECT_EQ(names.size(), size_t(kColorCount)) << "a colour name is declared twice";
    EXPECT_EQ(CommittedTheme().entityValues.at(QStringLiteral("kColor_ListBoxContentDivider")),
              QStringLiteral("236"));
}

TEST(ResourcesTest, ThemeDeclaresBrightnessFlipTextAndSchemeConstants)
{
    std::map<QString, QString> const& values = CommittedTheme().entityValues;
    std::pair<char const*, char const*> const expected[] = {
        {"Dark", "0.0"},
        {"Medium", "0.5"},
        {"Light", "1.0"},
        {"kCSTextFlipT", "0.5"},
        {"kCSTextFlipT2", "0.501"},
        {"kFocusColor_LightH", "204"},
        {"kText_Main_Large", "0"},
        {"kText_Main_Small", "1"},
        {"kText_Title", "2"},
        {"kFontSizeScheme_Small", "0"},
        {"kFontSizeScheme_Regular", "1"},
        {"kFontSizeScheme_Large", "2"},
    };
    for (auto const& [name, value] : expected)
    {
        auto const found = values.find(QString::fromLatin1(name));
        ASSERT_NE(found, values.end()) << name;
        EXPECT_EQ(found->second, QString::fromLatin1(value)) << name;
    }
    // Each accent family has hue, saturation and value for both ends.
    QRegularExpression const family(QStringLiteral("^k(\\w+)Color_(Light|Dark)([HSV])$"));
    std::map<QString, int> parts;
    for (auto const& [name, value] : values)
    {
        QRegularExpressionMatch const match = family.match(name);
        if (match.hasMatch())
            ++parts[match.captured(1)];
    }
    EXPECT_GE(parts.size(), 4u);
    for (auto const& [name, count] : parts)
        EXPECT_EQ(count, 6) << name.toStdString();
}

TEST(ResourcesTest, ThemeColoursAreCurvesAcrossTheWholeBrightnessAxis)
{
    Theme const& theme = CommittedTheme();
    ASSERT_EQ(theme.keyFrames.size(), 1428u);
    std::map<int, std::set<double>> times;
    for (KeyFrame const& frame : theme.keyFrames)
    {
        bool ok = false;
        // Entity references in attributes arrive expanded: the name is the id.
        int const id = frame.name.toInt(&ok);
        ASSERT_TRUE(ok) << "key frame without a colour id: " << frame.name.toStdString();
        ASSERT_TRUE(id >= 0 && id < kColorCount) << id;
        ASSERT_FALSE(frame.v.isEmpty()) << "colour " << id << " has a key frame without v";
        double const t = Number(frame.t, &ok);
        ASSERT_TRUE(ok && t >= 0.0 && t <= 1.0)
            << "colour " << id << " t=" << frame.t.toStdString();
        EXPECT_TRUE(times[id].insert(t).second)
            << "colour " << id << " has two key frames at " << t;
        double const v = Number(frame.v, &ok);
        EXPECT_TRUE(ok && v >= 0.0 && v <= 1.0)
            << "colour " << id << " v=" << frame.v.toStdString();
        for (QString const& unit : {frame.s, frame.a})
        {
            if (!unit.isEmpty())
            {
                double const value = Number(unit, &ok);
                EXPECT_TRUE(ok && value >= 0.0 && value <= 1.0)
                    << "colour " << id << ": " << unit.toStdString();
            }
        }
        if (!frame.h.isEmpty())
        {
            double const hue = Number(frame.h, &ok);
            EXPECT_TRUE(ok && hue >= 0.0 && hue < 360.0)
                << "colour " << id << " h=" << frame.h.toStdString();
        }
        EXPECT_TRUE(frame.hold.isEmpty() || frame.hold == QLatin1String("true") ||
                    frame.hold == QLatin1String("false"))
            << "colour " << id << " hold=" << frame.hold.toStdString();
    }
    ASSERT_EQ(times.size(), size_t(kColorCount)) << "a colour has no key frame";
    for (auto const& [id, at] : times)
    {
        EXPECT_EQ(*at.begin(), 0.0) << "colour " << id << " starts late";
        EXPECT_EQ(*at.rbegin(), 1.0) << "colour " << id << " ends early";
    }
}

TEST(ResourcesTest, ThemeTextFlipsHoldUpToTheSecondFlipPoint)
{
    // A held frame at the first flip point must be followed by the same
    // colour's frame at the second, or the step would be a ramp.
    Theme const& theme = CommittedTheme();
    std::set<QString> heldAtFlip;
    std::set<QString> atSecondFlip;
    for (KeyFrame const& frame : theme.keyFrames)
    {
        if (frame.t == QLatin1String("0.5") && frame.hold == QLatin1String("true"))
            heldAtFlip.insert(frame.name);
        if (frame.t == QLatin1String("0.501"))
            atSecondFlip.insert(frame.name);
    }
    EXPECT_GT(heldAtFlip.size(), 100u);
    EXPECT_EQ(heldAtFlip, atSecondFlip);
    // Normal text is among them: light on dark interfaces, dark on light ones.
    EXPECT_EQ(heldAtFlip.count(QStringLiteral("305")), 1u);
}

TEST(ResourcesTest, ThemeFontSizesFollowTheTable)
{
    Theme const& theme = CommittedTheme();
    ASSERT_EQ(theme.fontSizes.size(), 9u);
    // text id -> sizes in the Small, Regular and Large schemes
    std::map<QString, std::vector<int>> const expected = {
        {QStringLiteral("1"), {8, 9, 13}},   // kText_Main_Small
        {QStringLiteral("0"), {9, 11, 15}},  // kText_Main_Large
        {QStringLiteral("2"), {11, 13, 17}}, // kText_Title
    };
    std::set<std::pair<QString, QString>> seen;
    for (FontSize const& font : theme.fontSizes)
    {
        bool ok = false;
        int const scheme = font.scheme.toInt(&ok);
        ASSERT_TRUE(ok && scheme >= 0 && scheme <= 2) << font.scheme.toStdString();
        auto const row = expected.find(font.name);
        ASSERT_NE(row, expected.end()) << font.name.toStdString();
        EXPECT_EQ(font.size.toInt(), row->second[scheme])
            << "text " << font.name.toStdString() << " scheme " << scheme;
        EXPECT_TRUE(seen.insert({font.name, font.scheme}).second) << "duplicate font size";
    }
}

TEST(ResourcesTest, ThemeNamesMatchTheColourList)
{
    // colors.txt is the source of the theme: a stale theme file differs from it.
    QByteArray const list = ReadAll(SourcePath(QStringLiteral("resources/theme/colors.txt")));
    ASSERT_FALSE(list.isEmpty());
    auto const colors = ColorEntities(CommittedTheme());
    ASSERT_EQ(colors.size(), size_t(kColorCount));
    int count = 0;
    for (QByteArray line : list.split('\n'))
    {
        line = line.left(line.indexOf('#') < 0 ? line.size() : line.indexOf('#')).trimmed();
        if (line.isEmpty())
            continue;
        QList<QByteArray> const fields = line.split(' ');
        ASSERT_EQ(fields.size(), 2) << line.toStdString();
        ASSERT_EQ(fields[0].toInt(), count) << line.toStdString();
        EXPECT_EQ(colors[count].first, QString::fromLatin1(fields[1])) << "colour " << count;
        ++count;
    }
    EXPECT_EQ(count, kColorCount);
}

TEST(ResourcesTest, ThemeColourIdsAgreeWithTheToolkit)
{
    QByteArray const header =
        ReadAll(SourcePath(QStringLiteral("platform/zephui/include/zephui/Theme.h")));
    if (header.isEmpty())
        GTEST_SKIP() << "the toolkit declares no colour ids";
    std::map<QString, QString> const& values = CommittedTheme().entityValues;
    QRegularExpression const enumerator(QStringLiteral("\\b(kColor_\\w+)\\s*=\\s*(\\d+)"));
    int checked = 0;
    for (QRegularExpressionMatch const& match : enumerator.globalMatch(QString::fromUtf8(header)))
    {
        if (match.captured(1) == QLatin1String("kColorCount"))
        {
            EXPECT_EQ(match.captured(2).toInt(), kColorCount);
            continue;
        }
        auto const found = values.find(match.captured(1));
        ASSERT_NE(found, values.end())
            << match.captured(1).toStdString() << " is missing from the theme";
        EXPECT_EQ(found->second, match.captured(2)) << match.captured(1).toStdString();
        ++checked;
    }
    EXPECT_GT(checked, 0);
}

TEST(ResourcesTest, CompiledThemeIsTheCommittedFile)
{
    QByteArray const compiled = ReadAll(kResourceRoot + QStringLiteral("/XML/METADATAUITHEME.xml"));
    ASSERT_FALSE(compiled.isEmpty()) << "the theme is not compiled into the library";
    EXPECT_EQ(compiled, ReadAll(SourcePath(QStringLiteral("resources/theme/METADATAUITHEME.xml"))));
    Theme const theme = ParseTheme(compiled);
    EXPECT_TRUE(theme.error.isEmpty());
    EXPECT_EQ(theme.keyFrames.size(), 1428u);
}

} // namespace
