#include "zephmetadata/MultiObjectProvider.h"

#include "CombinedHandles.h"
#include "zephmetadata/XmpMeta.h"

#include <boost/make_shared.hpp>

namespace zephmetadata
{

MultiObjectProvider::MultiObjectProvider(std::vector<boost::shared_ptr<MetaDataProvider>> list)
{
    for (auto& member : list)
        if (member)
            members.push_back(std::move(member));
    // The listeners hold a plain pointer: they are emptied before this dies.
    for (auto const& member : members)
    {
        auto listener = boost::make_shared<boost::function<void(__XMPMeta__*)>>(
            [this](__XMPMeta__* meta) { OnMemberChanged(meta); });
        member->NotifyWhenMetaDataChanged(listener);
        memberListeners.push_back(listener);
    }
    Rebuild();
}

MultiObjectProvider::~MultiObjectProvider()
{
    for (auto const& listener : memberListeners)
        *listener = boost::function<void(__XMPMeta__*)>();
    detail::UnregisterCombined(combined);
    xmp::MetaDeleter()(combined);
}

bool MultiObjectProvider::QueryPathStatus(Path const& path, PathStatus status) const
{
    if (members.empty())
        return false;
    if (status == kPathStatusApplicable)
    {
        for (auto const& member : members)
            if (member->QueryPathStatus(path, status))
                return true;
        return false;
    }
    for (auto const& member : members)
        if (!member->QueryPathStatus(path, status))
            return false;
    return true;
}

std::string MultiObjectProvider::DebugDescription(bool verbose, int indent)
{
    std::string text(indent > 0 ? static_cast<std::size_t>(indent) : 0, ' ');
    text += "MultiObjectProvider of " + std::to_string(members.size());
    if (verbose)
        for (auto const& member : members)
            text += "\n" + member->DebugDescription(false, indent + 2);
    return text;
}

void MultiObjectProvider::WriteChanges(std::vector<Path> const& paths)
{
    writing = true;
    for (auto const& member : members)
    {
        member->WriteChanges(paths);
        member->NotifyMetaDataChanged();
    }
    writing = false;
}

void MultiObjectProvider::Rebuild()
{
    std::vector<__XMPMeta__*> trees;
    for (auto const& member : members)
        if (__XMPMeta__* meta = member->MetaDataAccess())
            trees.push_back(meta);
    detail::UnregisterCombined(combined);
    xmp::MetaDeleter()(combined);
    combined = trees.empty() ? nullptr : xmp::Clone(trees.front()).release();
    detail::RegisterCombined(combined, std::move(trees));
}

void MultiObjectProvider::OnMemberChanged(__XMPMeta__*)
{
    // Our own writes already reached the combined tree.
    if (writing)
        return;
    Rebuild();
    NotifyMetaDataChanged();
}

} // namespace zephmetadata
