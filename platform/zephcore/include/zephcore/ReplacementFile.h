#pragma once
// The new version of a file, made beside it under a short hidden name and
// renamed over it only once it is complete and on disk, so a failed or killed
// save leaves the old file whole.
//
// The new version gets the old file's mode, owner and group (where the
// process may) and extended attributes. A symbolic link is followed: its
// target is replaced and the link stays. A file with other (hard-linked)
// names is refused, since a rename would part them, and so is a file without
// any write permission bit, whoever runs the process.

#include "zephcore/Strings.h"
#include "zephcore/zephcore_export.h"

#include <cstddef>
#include <string>

namespace zephcore
{

class ZEPHCORE_EXPORT ReplacementFile
{
public:
    explicit ReplacementFile(UTF16String const& target);
    // Removes the new version unless it was committed.
    ~ReplacementFile();
    ReplacementFile(ReplacementFile const&) = delete;
    ReplacementFile& operator=(ReplacementFile const&) = delete;

    // Makes the new version, empty or as a copy of the old file. False, with
    // Problem(), when the target may not be replaced or nothing can be made.
    bool Begin(bool copyOfTarget);
    // Appends to the new version; false unless every byte was written.
    bool Write(char const* data, std::size_t size);
    // Puts the new version on disk with the old file's attributes and renames
    // it over the target.
    bool Commit();

    // The file that is replaced, after symbolic links.
    std::string const& TargetPath() const { return target; }
    // The new version, for writers that take a path; its name keeps the
    // target's extension.
    std::string const& WorkPath() const { return work; }
    // Why the last step failed, for the user.
    std::string const& Problem() const { return problem; }

private:
    bool Fail(std::string const& message, bool withReason);

    std::string target;
    std::string work;
    std::string problem;
    bool hadOld = false;
    unsigned oldMode = 0;
    unsigned oldOwner = 0;
    unsigned oldGroup = 0;
    int fd = -1;
    bool committed = false;
};

// Removes new versions of this file left behind by saves that were killed:
// only names of our own pattern, and only those no running save holds.
ZEPHCORE_EXPORT void RemoveStaleReplacements(UTF16String const& target);

} // namespace zephcore
