#pragma once
// Window places kept across runs: each window's rectangle (frame included,
// in screen coordinates) by the id of its node, in a settings file. Every
// change is written at once, so a crash loses nothing. A file that is
// damaged or can't be written costs only the remembered places.

#include "zephui/Geometry.h"
#include "zephui/zephui_export.h"

#include "zephcore/Strings.h"

#include <memory>

class QSettings;

namespace zephui
{

class ZEPHUI_EXPORT PrefManager
{
public:
    // The application's manager. Made on the first call with create true;
    // null before that.
    static PrefManager* GetPrefManager(bool create = false);
    // Where the places are kept; the default is "zephui/WindowPlaces.ini" in
    // the user's configuration folder. Hosts and tests may choose another file.
    static void SetSettingsFile(zephcore::UTF16String const& path);
    static zephcore::UTF16String GetSettingsFile();

    ~PrefManager();
    PrefManager(PrefManager const&) = delete;
    PrefManager& operator=(PrefManager const&) = delete;

    // False, with rect untouched, when nothing usable is stored for the id.
    bool GetWindowPositionAndSize(zephcore::UTF16String const& id, RectF& rect) const;
    // False when the file could not be written.
    bool SetWindowPositionAndSize(zephcore::UTF16String const& id, RectF const& rect);

private:
    explicit PrefManager(zephcore::UTF16String const& path);
    std::unique_ptr<QSettings> settings;
};

} // namespace zephui
