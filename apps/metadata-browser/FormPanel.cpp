#include "FormPanel.h"

#include <zephmetadata/ViewDefinitions.h>
#include <zephmetadataui/MetadataLayoutView.h>
#include <zephui/NodeHostWidget.h>

#include <QComboBox>
#include <QResizeEvent>
#include <QVBoxLayout>

namespace browser
{

// Hosts the form; after each resize the rows are placed again, so that long
// values wrap at the new width.
class FormHost : public zephui::NodeHostWidget
{
public:
    using NodeHostWidget::NodeHostWidget;

protected:
    void resizeEvent(QResizeEvent* event) override
    {
        NodeHostWidget::resizeEvent(event);
        if (auto* form = dynamic_cast<zephmetadataui::MetadataLayoutView*>(GetRootNode()))
            form->Relayout();
    }
};

namespace
{

QString ToQString(zephcore::UTF16String const& text)
{
    return QString::fromUtf16(reinterpret_cast<char16_t const*>(text.data()),
                              qsizetype(text.size()));
}

} // namespace

FormPanel::FormPanel(QWidget* parent) : QWidget(parent)
{
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(6, 6, 6, 6);
    layout->setSpacing(4);
    chooser = new QComboBox(this);
    zephmetadata::LoadAllViewDefinitions();
    for (auto const& definition : zephmetadata::CommonViewDefinitions())
    {
        if (definition->isRawView)
            continue;
        chooser->addItem(ToQString(definition->GetLabel()),
                         QString::fromUtf8(reinterpret_cast<char const*>(definition->name.data()),
                                           qsizetype(definition->name.size())));
        chooser->setItemData(chooser->count() - 1, ToQString(definition->GetDescription()),
                             Qt::ToolTipRole);
    }
    connect(chooser, &QComboBox::currentIndexChanged, this, [this] { ShowChosenPage(); });
    host = new FormHost(nullptr, this);
    layout->addWidget(chooser);
    layout->addWidget(host, 1);
}

FormPanel::~FormPanel()
{
    host->SetRootNode(nullptr);
}

QWidget* FormPanel::FormWidget() const
{
    return host;
}

boost::shared_ptr<zephmetadata::ViewDefinition> FormPanel::ChosenDefinition() const
{
    QByteArray const name = chooser->currentData().toString().toUtf8();
    return zephmetadata::GetViewDefinitionForName(zephmetadata::UTF8String(
        reinterpret_cast<unsigned char const*>(name.constData()), std::size_t(name.size())));
}

bool FormPanel::ChoosePage(QString const& viewName)
{
    int const index = chooser->findData(viewName);
    if (index < 0)
        return false;
    chooser->setCurrentIndex(index);
    return true;
}

void FormPanel::SetProvider(boost::shared_ptr<zephmetadata::MetaDataProvider> const& shown)
{
    provider = shown;
    ShowChosenPage();
}

void FormPanel::SetIncludedPaths(std::set<zephmetadata::Path> const& paths)
{
    includedPaths = paths;
    ShowChosenPage();
}

void FormPanel::ShowChosenPage()
{
    // A form is bound to one provider: another file gets a form of its own.
    host->SetRootNode(nullptr);
    view.reset();
    auto const definition = ChosenDefinition();
    if (!provider || !definition)
        return;
    view = new zephmetadataui::MetadataLayoutView(definition, provider);
    if (includedPaths)
        view->SetIncludedPaths(*includedPaths);
    host->SetRootNode(view);
    view->Layout();
}

} // namespace browser
