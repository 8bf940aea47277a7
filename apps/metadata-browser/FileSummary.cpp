#include "FileSummary.h"

#include <zephcore/QtStrings.h>

#include <zephmetadata/PathDefinitions.h>
#include <zephmetadata/XmpMeta.h>

#include <QFileInfo>

#include <cstring>
#include <unordered_set>

namespace browser
{

namespace
{

char const kDublinCore[] = "http://purl.org/dc/elements/1.1/";
char const kXmpBasic[] = "http://ns.adobe.com/xap/1.0/";
char const kPhotoshop[] = "http://ns.adobe.com/photoshop/1.0/";
char const kExif[] = "http://ns.adobe.com/exif/1.0/";

std::string Key(std::string const& schemaNamespace, std::string const& path)
{
    return schemaNamespace + '\n' + path;
}

// "xmpDM:Tracks[2]/xmpDM:markers[10]/xmpDM:name" -> "xmpDM:Tracks/xmpDM:markers/xmpDM:name"
std::string WithoutItems(std::string const& path)
{
    std::string plain;
    plain.reserve(path.size());
    bool inSubscript = false;
    for (char c : path)
    {
        if (c == '[')
            inSubscript = true;
        else if (c == ']')
            inSubscript = false;
        else if (!inSubscript)
            plain += c;
    }
    return plain;
}

// The last step's name without its prefix: what a property nobody defined is
// called in the tree.
std::string LocalName(std::string const& plainPath)
{
    std::size_t const slash = plainPath.rfind('/');
    std::string step = slash == std::string::npos ? plainPath : plainPath.substr(slash + 1);
    std::size_t const colon = step.find(':');
    return colon == std::string::npos ? step : step.substr(colon + 1);
}

} // namespace

std::shared_ptr<SearchLabels const> SearchLabels::FromDefinitions()
{
    auto made = std::make_shared<SearchLabels>();
    for (auto const& schema : zephmetadata::CommonSchemaDefinitions())
    {
        for (zephmetadata::Path const& path : zephmetadata::DescendantLeafPaths(schema))
        {
            auto const entry = zephmetadata::PathEntryDefinition(path);
            if (!entry || entry->label.empty())
                continue;
            made->labels.emplace(Key(zephcore::ToStdString(path.schemaNamespace),
                                     WithoutItems(zephcore::ToStdString(path.propertyName))),
                                 FoldForFind(zephcore::ToQString(entry->label)));
        }
    }
    return made;
}

std::string const* SearchLabels::Find(std::string const& key) const
{
    auto const found = labels.find(key);
    return found == labels.end() ? nullptr : &found->second;
}

std::string FoldForFind(QString const& text)
{
    zephcore::UTF16String const wide(reinterpret_cast<unsigned short const*>(text.utf16()),
                                     std::size_t(text.size()));
    return zephcore::ToStdString(
        zephcore::NormalizedString(zephcore::FoldCase(wide), zephcore::kNormalizationFormKC));
}

FileSummary SummarizeFile(QString const& path, __XMPMeta__* meta, SearchLabels const& labels)
{
    FileSummary summary;
    QFileInfo const info(path);
    summary.path = path;
    summary.name = info.fileName();
    summary.type = info.suffix().toUpper();
    summary.modified = info.lastModified().toMSecsSinceEpoch();
    if (!meta)
        return summary;

    // Each label once, however many items carry it.
    std::unordered_set<std::string> labelled;
    QString createDate, dateCreated, exifDate, modifyDate;
    zephmetadata::xmp::Iterator walk(meta, "", "",
                                     zephmetadata::xmp::Iterator::kJustLeafNodes |
                                         zephmetadata::xmp::Iterator::kOmitQualifiers);
    zephmetadata::xmp::Node node;
    while (walk.Next(node))
    {
        if (node.path.empty())
            continue;
        std::string const plain = WithoutItems(node.path);
        std::string key = Key(node.schemaNamespace, plain);
        if (labelled.insert(key).second)
        {
            std::string const* label = labels.Find(key);
            summary.searchText +=
                label ? *label : FoldForFind(QString::fromStdString(LocalName(plain)));
            summary.searchText += '\n';
        }
        QString const value = QString::fromStdString(node.value);
        if (!value.isEmpty())
        {
            summary.searchText += FoldForFind(value);
            summary.searchText += '\n';
        }

        char const* ns = node.schemaNamespace.c_str();
        // The first item of a language alternative is its default.
        if (summary.title.isEmpty() && !std::strcmp(ns, kDublinCore) && plain == "dc:title")
            summary.title = value;
        else if (!std::strcmp(ns, kXmpBasic) && plain == "xmp:Rating")
        {
            bool ok = false;
            int const rating = value.toInt(&ok);
            if (ok)
                summary.rating = rating;
        }
        else if (!std::strcmp(ns, kXmpBasic) && plain == "xmp:CreateDate")
            createDate = value;
        else if (!std::strcmp(ns, kXmpBasic) && plain == "xmp:ModifyDate")
            modifyDate = value;
        else if (!std::strcmp(ns, kPhotoshop) && plain == "photoshop:DateCreated")
            dateCreated = value;
        else if (!std::strcmp(ns, kExif) && plain == "exif:DateTimeOriginal")
            exifDate = value;
    }
    // When the picture was made, as precisely as the file says.
    for (QString const* date : {&dateCreated, &exifDate, &createDate, &modifyDate})
    {
        if (!date->isEmpty())
        {
            summary.date = *date;
            break;
        }
    }
    summary.searchText.shrink_to_fit();
    return summary;
}

} // namespace browser
