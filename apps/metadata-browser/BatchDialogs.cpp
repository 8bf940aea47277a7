#include "BatchDialogs.h"

#include <QButtonGroup>
#include <QComboBox>
#include <QDialogButtonBox>
#include <QFileDialog>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QRadioButton>
#include <QTreeWidget>
#include <QVBoxLayout>

namespace browser
{

QString FileCount(int count)
{
    return count == 1 ? QObject::tr("1 file") : QObject::tr("%1 files").arg(count);
}

TemplateChoiceDialog::TemplateChoiceDialog(int fileCount, QWidget* parent) : QDialog(parent)
{
    setWindowTitle(tr("Apply Template"));
    auto* layout = new QVBoxLayout(this);
    layout->addWidget(new QLabel(
        tr("Apply a template to the %1 selected. Each is saved.").arg(FileCount(fileCount)), this));
    auto* pathRow = new QHBoxLayout;
    pathEdit = new QLineEdit(this);
    pathEdit->setPlaceholderText(tr("Template file (.xmp)"));
    pathEdit->setMinimumWidth(360);
    auto* browse = new QPushButton(tr("Browse..."), this);
    connect(browse, &QPushButton::clicked, this, &TemplateChoiceDialog::Browse);
    pathRow->addWidget(pathEdit, 1);
    pathRow->addWidget(browse);
    layout->addLayout(pathRow);

    rules = new QButtonGroup(this);
    struct Rule
    {
        zephmetadata::TemplateImportOptions option;
        char const* name;
        QString text;
    };
    Rule const choices[] = {
        {zephmetadata::kTemplateImportClearAndReplace, "clearAndReplace",
         tr("Clear and replace: each file keeps only the template's properties")},
        {zephmetadata::kTemplateImportKeepAndReplace, "keepAndReplace",
         tr("Keep and replace: the template's properties replace the file's own")},
        {zephmetadata::kTemplateImportKeepAndAppend, "keepAndAppend",
         tr("Keep and append: the file's values stay; the template adds what is missing")},
    };
    for (Rule const& rule : choices)
    {
        auto* button = new QRadioButton(rule.text, this);
        button->setObjectName(rule.name);
        rules->addButton(button, rule.option);
        layout->addWidget(button);
    }
    rules->button(zephmetadata::kTemplateImportKeepAndReplace)->setChecked(true);
    auto* note =
        new QLabel(tr("A file's identity and history stay its own whichever way is chosen."), this);
    note->setEnabled(false);
    layout->addWidget(note);

    auto* buttons = new QDialogButtonBox(QDialogButtonBox::Cancel, this);
    QPushButton* apply = buttons->addButton(tr("Apply"), QDialogButtonBox::AcceptRole);
    apply->setDefault(true);
    apply->setEnabled(false);
    connect(pathEdit, &QLineEdit::textChanged, apply,
            [apply](QString const& text) { apply->setEnabled(!text.trimmed().isEmpty()); });
    connect(buttons, &QDialogButtonBox::accepted, this, &QDialog::accept);
    connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
    layout->addWidget(buttons);
}

void TemplateChoiceDialog::Browse()
{
    QString const path = QFileDialog::getOpenFileName(this, tr("Choose a Template"), QString(),
                                                      tr("Metadata templates (*.xmp)"));
    if (!path.isEmpty())
        pathEdit->setText(path);
}

QString TemplateChoiceDialog::TemplatePath() const
{
    return pathEdit->text().trimmed();
}

zephmetadata::TemplateImportOptions TemplateChoiceDialog::Rule() const
{
    return zephmetadata::TemplateImportOptions(rules->checkedId());
}

PropertyChoiceDialog::PropertyChoiceDialog(QString const& fromFile, int fileCount,
                                           std::vector<PropertyChoice> const& choices,
                                           QWidget* parent)
    : QDialog(parent)
{
    setWindowTitle(tr("Set Value on Selected Files"));
    auto* layout = new QVBoxLayout(this);
    layout->addWidget(
        new QLabel(tr("Set this value of %1, as it is now, on the %2 selected. Each is saved.")
                       .arg(fromFile, FileCount(fileCount)),
                   this));
    properties = new QComboBox(this);
    properties->setMinimumWidth(360);
    for (PropertyChoice const& choice : choices)
        properties->addItem(choice.text);
    layout->addWidget(properties);
    auto* buttons = new QDialogButtonBox(QDialogButtonBox::Cancel, this);
    buttons->addButton(tr("Set"), QDialogButtonBox::AcceptRole)->setDefault(true);
    connect(buttons, &QDialogButtonBox::accepted, this, &QDialog::accept);
    connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
    layout->addWidget(buttons);
}

int PropertyChoiceDialog::Chosen() const
{
    return properties->currentIndex();
}

FailureListDialog::FailureListDialog(QString const& summary,
                                     std::vector<std::pair<QString, QString>> const& failures,
                                     QWidget* parent)
    : QDialog(parent)
{
    setWindowTitle(tr("Files Not Saved"));
    resize(640, 320);
    auto* layout = new QVBoxLayout(this);
    auto* text = new QLabel(summary, this);
    text->setWordWrap(true);
    layout->addWidget(text);
    list = new QTreeWidget(this);
    list->setHeaderLabels({tr("File"), tr("Reason")});
    list->setRootIsDecorated(false);
    list->setWordWrap(true);
    for (auto const& [file, reason] : failures)
        new QTreeWidgetItem(list, {file, reason});
    list->resizeColumnToContents(0);
    layout->addWidget(list, 1);
    auto* buttons = new QDialogButtonBox(QDialogButtonBox::Close, this);
    connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
    layout->addWidget(buttons);
}

} // namespace browser
