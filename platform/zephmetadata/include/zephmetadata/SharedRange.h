#pragma once
// Iterators that keep the vector they walk alive: the model hands out ranges
// of values made on the fly, and a caller may keep just the two iterators.

#include "zephmetadata/Types.h"

#include <boost/iterator/iterator_facade.hpp>
#include <boost/range/iterator_range.hpp>

#include <cstddef>
#include <memory>
#include <vector>

namespace zephmetadata
{

template <class T>
class SharedVectorIterator
    : public boost::iterator_facade<SharedVectorIterator<T>, T const,
                                    boost::bidirectional_traversal_tag, T const&>
{
public:
    SharedVectorIterator() = default;
    SharedVectorIterator(std::shared_ptr<std::vector<T> const> values, std::size_t index)
        : values(std::move(values)), index(index)
    {
    }

private:
    friend class boost::iterator_core_access;
    T const& dereference() const { return (*values)[index]; }
    bool equal(SharedVectorIterator const& other) const
    {
        return index == other.index && values == other.values;
    }
    void increment() { ++index; }
    void decrement() { --index; }

    std::shared_ptr<std::vector<T> const> values;
    std::size_t index = 0;
};

template <class T> IteratorRange<T> MakeSharedRange(std::shared_ptr<std::vector<T> const> values)
{
    if (!values)
        values = std::make_shared<std::vector<T> const>();
    std::size_t const count = values->size();
    return IteratorRange<T>(boost::make_iterator_range(SharedVectorIterator<T>(values, 0),
                                                       SharedVectorIterator<T>(values, count)));
}

} // namespace zephmetadata
