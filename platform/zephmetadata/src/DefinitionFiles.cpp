// Where definition files come from: the files compiled into the library, and
// the user's custom definitions folder.

#include "DefinitionLoader.h"
#include "DefinitionRegistry.h"
#include "zephmetadata/CustomDefinitions.h"
#include "zephmetadata/ErrorLog.h"
#include "zephmetadata/PathDefinitions.h"

#include <zephcore/Files.h>
#include <zephcore/QtStrings.h>

#include <QDir>
#include <QFile>

#include <exempi/xmp.h>

#include <algorithm>

// The definition files are compiled in as a Qt resource, so that an installed
// library finds them wherever it lies.
static void InitDefinitionResources()
{
    Q_INIT_RESOURCE(definitions);
}

namespace zephmetadata
{

using detail::DefinitionLoader;
using detail::Registry;

namespace
{

char const* const kResourceFolder = ":/zephmetadata/definitions";

std::vector<UTF16String> XmlFilesIn(QString const& folder)
{
    std::vector<UTF16String> paths;
    QDir const dir(folder);
    for (QString const& name : dir.entryList({QStringLiteral("*.xml")}, QDir::Files, QDir::Name))
    {
        // Saved display settings may share a folder with definitions; they are
        // no definitions and would only fill the error log.
        if (name.endsWith(QLatin1String("xmp_view_settings.xml")))
            continue;
        paths.push_back(zephcore::ToUTF16(dir.filePath(name)));
    }
    return paths;
}

std::vector<UTF16String> BuiltInFiles()
{
    InitDefinitionResources();
    std::vector<UTF16String> files = XmlFilesIn(QString::fromLatin1(kResourceFolder));
#ifdef ZEPH_DEFINITIONS_DIR
    if (files.empty())
        files = XmlFilesIn(QString::fromUtf8(ZEPH_DEFINITIONS_DIR));
#endif
    return files;
}

} // namespace

namespace detail
{
void LoadViewsOfFolder(UTF16String const& folder)
{
    DefinitionLoader loader(DefinitionLoader::kViewsOnly);
    for (UTF16String const& path : XmlFilesIn(zephcore::ToQString(folder)))
        loader.AddFile(path);
    loader.Finish();
}
} // namespace detail

void LoadDefinitions()
{
    Registry& registry = Registry::Get();
    if (registry.definitionsLoaded)
        return;
    registry.definitionsLoaded = true;
    if (!registry.toolkitStarted)
        registry.toolkitStarted = xmp_init();
    DefinitionLoader loader;
    for (UTF16String const& path : BuiltInFiles())
        loader.AddFile(path);
    for (UTF16String const& path :
         XmlFilesIn(zephcore::ToQString(CustomDefinitionsUserDirectory())))
        loader.AddFile(path);
    loader.Finish();
    registry.viewsLoaded = true;
}

void UnloadDefinitions()
{
    Registry& registry = Registry::Get();
    registry.Clear();
    if (registry.toolkitStarted)
    {
        xmp_terminate();
        registry.toolkitStarted = false;
    }
}

int LoadDefinitionFiles(std::vector<UTF16String> const& paths)
{
    Registry& registry = Registry::Get();
    if (!registry.toolkitStarted)
        registry.toolkitStarted = xmp_init();
    DefinitionLoader loader;
    int read = 0;
    for (UTF16String const& path : paths)
        read += loader.AddFile(path) ? 1 : 0;
    loader.Finish();
    return read;
}

} // namespace zephmetadata
