#pragma once
// The questions a batch asks before it starts (which template and how it
// is merged; which value is set), and the list of files it could not save.

#include <zephmetadata/Types.h>

#include <QDialog>

#include <string>
#include <utility>
#include <vector>

class QButtonGroup;
class QComboBox;
class QLineEdit;
class QTreeWidget;

namespace browser
{

// "1 file", "3 files".
QString FileCount(int count);

// Asks for a template file and how its values go into each file.
class TemplateChoiceDialog : public QDialog
{
    Q_OBJECT
public:
    TemplateChoiceDialog(int fileCount, QWidget* parent);
    QString TemplatePath() const;
    zephmetadata::TemplateImportOptions Rule() const;

private:
    void Browse();

    QLineEdit* pathEdit = nullptr;
    QButtonGroup* rules = nullptr;
};

// One property a file holds, as offered for setting on other files.
struct PropertyChoice
{
    std::string schemaNamespace;
    std::string path; // with its prefix: "dc:title"
    QString text;     // the name and the start of the value
};

// Asks which of one file's properties is set, with its value, on the
// selected files.
class PropertyChoiceDialog : public QDialog
{
    Q_OBJECT
public:
    PropertyChoiceDialog(QString const& fromFile, int fileCount,
                         std::vector<PropertyChoice> const& choices, QWidget* parent);
    // The index of the chosen property in the choices.
    int Chosen() const;

private:
    QComboBox* properties = nullptr;
};

// Lists the files a batch could not save, each with the reason.
class FailureListDialog : public QDialog
{
    Q_OBJECT
public:
    FailureListDialog(QString const& summary,
                      std::vector<std::pair<QString, QString>> const& failures, QWidget* parent);
    QTreeWidget* List() const { return list; }

private:
    QTreeWidget* list = nullptr;
};

} // namespace browser
