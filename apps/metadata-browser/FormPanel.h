#pragma once
// The browser's form panel: a chooser of the model's view definitions over
// the form of the selected file or files. Edits go to the same provider as
// the property tree's, so they mark the documents changed and save alike.

#include <zephmetadata/Definitions.h>

#include <boost/intrusive_ptr.hpp>
#include <boost/optional.hpp>
#include <boost/shared_ptr.hpp>

#include <set>

#include <QWidget>

class QComboBox;

namespace zephmetadata
{
class MetaDataProvider;
}
namespace zephmetadataui
{
class MetadataLayoutView;
}

namespace browser
{

class FormHost;

class FormPanel : public QWidget
{
    Q_OBJECT
public:
    explicit FormPanel(QWidget* parent = nullptr);
    ~FormPanel() override;

    // Shows the page chosen for this provider; null empties the panel.
    void SetProvider(boost::shared_ptr<zephmetadata::MetaDataProvider> const& provider);
    // Shows only these properties on every page, from now on.
    void SetIncludedPaths(std::set<zephmetadata::Path> const& paths);
    // Chooses a page by its view id; false if there is no such page.
    bool ChoosePage(QString const& viewName);

    QComboBox* PageChooser() const { return chooser; }
    // The form on show; null while nothing is selected.
    zephmetadataui::MetadataLayoutView* Form() const { return view.get(); }
    QWidget* FormWidget() const;

private:
    void ShowChosenPage();
    boost::shared_ptr<zephmetadata::ViewDefinition> ChosenDefinition() const;

    QComboBox* chooser = nullptr;
    FormHost* host = nullptr;
    boost::shared_ptr<zephmetadata::MetaDataProvider> provider;
    boost::intrusive_ptr<zephmetadataui::MetadataLayoutView> view;
    boost::optional<std::set<zephmetadata::Path>> includedPaths;
};

} // namespace browser
