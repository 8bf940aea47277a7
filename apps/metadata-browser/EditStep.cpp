#include "EditStep.h"

#include <QObject>

#include <set>

namespace browser
{

EditStep::EditStep(std::vector<Entry> entries) : entries(std::move(entries))
{
    std::set<QString> files;
    std::set<std::string> properties;
    for (Entry const& entry : this->entries)
    {
        files.insert(entry.document->FileName());
        properties.insert(entry.change.property);
    }
    QString const what = properties.size() == 1 && !properties.begin()->empty()
                             ? QString::fromStdString(*properties.begin())
                             : QObject::tr("metadata");
    setText(files.size() == 1 ? QObject::tr("Edit of %1 in %2").arg(what, *files.begin())
                              : QObject::tr("Edit of %1 in %2 files").arg(what).arg(files.size()));
}

void EditStep::redo()
{
    if (made)
    {
        made = false;
        return;
    }
    for (Entry const& entry : entries)
    {
        // A file reverted or read again since holds other edits now.
        if (entry.document->Generation() == entry.generation)
            entry.document->Replay(entry.change, false);
    }
}

void EditStep::undo()
{
    for (auto it = entries.rbegin(); it != entries.rend(); ++it)
    {
        if (it->document->Generation() == it->generation)
            it->document->Replay(it->change, true);
    }
}

} // namespace browser
