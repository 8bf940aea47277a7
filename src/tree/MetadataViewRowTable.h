#pragma once
// An open-addressed table from a row's address to a small value, for the
// property tree: a rebuild of a long track fills it with a hundred thousand
// entries, which a node per entry makes slow to fill and to empty.

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <utility>
#include <vector>

namespace zephmetadataui
{

template <class Key, class Value> class MetadataViewRowTable
{
public:
    using Entry = std::pair<Key const*, Value>;

    class const_iterator
    {
    public:
        const_iterator(Entry const* at, Entry const* end) : at(at), end(end) { Skip(); }
        Entry const& operator*() const { return *at; }
        Entry const* operator->() const { return at; }
        const_iterator& operator++()
        {
            ++at;
            Skip();
            return *this;
        }
        bool operator==(const_iterator const& other) const { return at == other.at; }
        bool operator!=(const_iterator const& other) const { return at != other.at; }

    private:
        void Skip()
        {
            while (at != end && at->first == nullptr)
                ++at;
        }
        Entry const* at;
        Entry const* end;
    };

    const_iterator begin() const
    {
        return const_iterator(entries.data(), entries.data() + entries.size());
    }
    const_iterator end() const
    {
        return const_iterator(entries.data() + entries.size(), entries.data() + entries.size());
    }
    std::size_t size() const { return count; }

    const_iterator find(Key const* key) const
    {
        if (count == 0 || key == nullptr)
            return end();
        for (std::size_t i = Home(key);; i = (i + 1) & mask())
        {
            if (entries[i].first == key)
                return const_iterator(entries.data() + i, entries.data() + entries.size());
            if (entries[i].first == nullptr)
                return end();
        }
    }

    // Makes room for at least total entries, so that a long build does not
    // grow the table step by step.
    void reserve(std::size_t total)
    {
        std::size_t size = entries.empty() ? 64 : entries.size();
        while (total * 2 > size)
            size *= 2;
        if (size > entries.size())
            Rehash(size);
    }

    // Adds the key, or replaces its value.
    void set(Key const* key, Value const& value)
    {
        if ((count + 1) * 2 > entries.size())
            Grow();
        std::size_t i = Home(key);
        while (entries[i].first != nullptr && entries[i].first != key)
            i = (i + 1) & mask();
        if (entries[i].first == nullptr)
            ++count;
        entries[i] = Entry(key, value);
    }

    void erase(Key const* key)
    {
        if (count == 0 || key == nullptr)
            return;
        std::size_t i = Home(key);
        while (entries[i].first != key)
        {
            if (entries[i].first == nullptr)
                return;
            i = (i + 1) & mask();
        }
        // Shift back the entries that probed past the freed slot.
        for (std::size_t j = (i + 1) & mask(); entries[j].first != nullptr; j = (j + 1) & mask())
        {
            std::size_t const home = Home(entries[j].first);
            bool const stays = i <= j ? (i < home && home <= j) : (i < home || home <= j);
            if (!stays)
            {
                entries[i] = entries[j];
                i = j;
            }
        }
        entries[i] = Entry();
        --count;
    }

    // Keeps the room, so that the next build of the same size does not grow.
    void clear()
    {
        if (count == 0)
            return;
        std::fill(entries.begin(), entries.end(), Entry());
        count = 0;
    }

private:
    std::size_t mask() const { return entries.size() - 1; }
    std::size_t Home(Key const* key) const
    {
        // Rows made one after another lie close in memory: keeping their
        // order keeps a build's writes to the table close together too.
        std::uint64_t const h = reinterpret_cast<std::uintptr_t>(key) >> 4;
        return std::size_t(h ^ (h >> 20)) & mask();
    }
    void Grow() { Rehash(entries.empty() ? 64 : entries.size() * 2); }
    void Rehash(std::size_t size)
    {
        std::vector<Entry> old(size);
        old.swap(entries);
        count = 0;
        for (Entry const& entry : old)
            if (entry.first != nullptr)
                set(entry.first, entry.second);
    }

    std::vector<Entry> entries;
    std::size_t count = 0;
};

} // namespace zephmetadataui
