#include "zephui/Desktop.h"

#include "zephcore/Files.h"
#include "zephcore/QtStrings.h"

#include <QDesktopServices>
#include <QUrl>

namespace zephui
{

HWND GetDesktopWindow()
{
    return nullptr;
}

bool ShellExecuteW(HWND /*owner*/, zephcore::UTF16String const& verb,
                   zephcore::UTF16String const& file, zephcore::UTF16String const& /*parameters*/,
                   zephcore::UTF16String const& /*directory*/, int /*showMode*/)
{
    QString const action = zephcore::ToQString(verb);
    if (action != QLatin1String("open") && action != QLatin1String("explore"))
        return false;
    QString const path = zephcore::ToQString(zephcore::NormalizePath(file));
    return QDesktopServices::openUrl(QUrl::fromLocalFile(path));
}

bool OpenURLInDefaultBrowser(zephcore::UTF16String const& url)
{
    QUrl const address(zephcore::ToQString(url), QUrl::StrictMode);
    return address.isValid() && !address.scheme().isEmpty() && QDesktopServices::openUrl(address);
}

} // namespace zephui
