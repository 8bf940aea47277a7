#pragma once
// Several providers shown as one, for a selection of files. Reading a value
// gives it when every member agrees, and kGetValueMultiple with empty text
// when they differ; every write goes to all members. The handle it hands out
// is a tree of its own (a copy of the first member) that the value functions
// recognise and look through.

#include "zephmetadata/Provider.h"
#include "zephmetadata/zephmetadata_export.h"

#include <vector>

namespace zephmetadata
{

class ZEPHMETADATA_EXPORT MultiObjectProvider : public MetaDataProvider
{
public:
    explicit MultiObjectProvider(std::vector<boost::shared_ptr<MetaDataProvider>> members);
    ~MultiObjectProvider() override;

    std::vector<boost::shared_ptr<MetaDataProvider>> const& Members() const { return members; }

    // Applicable if it applies to any member; writable if every member is.
    bool QueryPathStatus(Path const& path, PathStatus status) const override;
    std::string DebugDescription(bool verbose, int indent) override;

protected:
    __XMPMeta__* MetaDataAccess() const override { return combined; }

private:
    // Hands the changed paths to every member and wakes their listeners.
    void WriteChanges(std::vector<Path> const& paths) override;
    // Takes the members' present trees again (after a member changed alone).
    void Rebuild();
    void OnMemberChanged(__XMPMeta__*);

    std::vector<boost::shared_ptr<MetaDataProvider>> members;
    std::vector<ChangedListener> memberListeners;
    __XMPMeta__* combined = nullptr;
    bool writing = false;
};

} // namespace zephmetadata
