#pragma once
// One step of the browser's undo history: the edits of one moment, over
// one file or several (an edit of a selection reaches each file).

#include "Document.h"

#include <QUndoCommand>

#include <vector>

namespace browser
{

class EditStep : public QUndoCommand
{
public:
    struct Entry
    {
        Document* document;
        std::uint64_t generation; // the document's when recorded
        RecordedChange change;
    };

    explicit EditStep(std::vector<Entry> entries);

    // The edits are made already when the step is pushed: its first redo
    // does nothing.
    void redo() override;
    void undo() override;

private:
    std::vector<Entry> entries;
    bool made = true;
};

} // namespace browser
