#pragma once
// The browser's display preferences: which properties the property tree
// shows, chosen in the library's preferences dialog and kept across runs as a
// saved-settings file in the user's configuration folder. Schemas and
// properties the user makes there are written to their files and shown in
// the tree. Also the conversion of generic panels from a folder the user
// chooses.

#include <zephmetadata/Path.h>

#include <boost/intrusive_ptr.hpp>

#include <QString>

#include <functional>
#include <set>

namespace zephmetadataui
{
class MetadataView;
}

namespace browser
{

class PreferencesWiring
{
public:
    using WarningSink = std::function<void(QString const&)>;

    // The tree is the one whose shown properties are chosen; it is also the
    // parent of the dialogs.
    PreferencesWiring(zephmetadataui::MetadataView* tree, WarningSink warn);
    ~PreferencesWiring();
    PreferencesWiring(PreferencesWiring const&) = delete;
    PreferencesWiring& operator=(PreferencesWiring const&) = delete;

    // Where a chosen set goes besides the tree (the forms).
    void SetShowInForms(std::function<void(std::set<zephmetadata::Path> const&)> show)
    {
        showInForms = std::move(show);
    }
    // Shows in the tree the properties the user kept at the last run; with
    // none kept (or a file that cannot be read) the tree shows all.
    void Restore();
    // Runs the preferences dialog over the tree's shown properties and every
    // known schema. OK shows and keeps the chosen set; with OK or Cancel the
    // schemas changed are written and new ones appear in the tree. True for OK.
    bool EditPreferences();
    // Asks for the folder that holds the panels, then runs the conversion
    // dialog on it.
    void ConvertPanels();

    // The file of the shown set, and the folder of the sets the user named.
    static QString ShownSetFile();
    static QString SavedSetsFolder();

private:
    // Shows the known schemas, the new ones too, with these properties.
    void ShowInTree(std::set<zephmetadata::Path> const& paths);
    void Keep(std::set<zephmetadata::Path> const& paths);

    boost::intrusive_ptr<zephmetadataui::MetadataView> tree;
    WarningSink warn;
    std::function<void(std::set<zephmetadata::Path> const&)> showInForms;
};

} // namespace browser
