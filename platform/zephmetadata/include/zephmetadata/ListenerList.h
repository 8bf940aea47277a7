#pragma once
// A list of listener holders that subscribers leave by emptying their callable
// in place. Walking tolerates that, and tolerates holders added or removed by
// a listener while the list is being walked.

#include <boost/function.hpp>
#include <boost/shared_ptr.hpp>

#include <algorithm>
#include <vector>

namespace zephmetadata
{

template <class Signature> class ListenerList
{
public:
    using Holder = boost::shared_ptr<boost::function<Signature>>;

    void Add(Holder const& holder)
    {
        if (holder)
            holders.push_back(holder);
    }

    void Remove(Holder const& holder)
    {
        holders.erase(std::remove(holders.begin(), holders.end(), holder), holders.end());
        ++removals;
    }

    bool Empty() const { return holders.empty(); }

    // Walks a snapshot: a listener may add or remove holders, or empty any of
    // them, and the walk neither breaks nor calls an emptied one. The snapshot
    // keeps each holder alive while it runs.
    template <class... Args> void Notify(Args const&... args)
    {
        std::vector<Holder> const snapshot = holders;
        unsigned const removalsAtStart = removals;
        for (Holder const& holder : snapshot)
        {
            // Emptied in place: the subscriber left, skip it.
            if (!*holder)
                continue;
            // Removed by an earlier listener of this walk: do not call it.
            if (removals != removalsAtStart &&
                std::find(holders.begin(), holders.end(), holder) == holders.end())
                continue;
            (*holder)(args...);
        }
        Prune();
    }

private:
    // An emptied holder that only this list still holds can never be filled
    // again; drop it so lists do not grow with departed subscribers.
    void Prune()
    {
        holders.erase(std::remove_if(holders.begin(), holders.end(),
                                     [](Holder const& h) { return !*h && h.use_count() == 1; }),
                      holders.end());
    }

    std::vector<Holder> holders;
    unsigned removals = 0;
};

} // namespace zephmetadata
