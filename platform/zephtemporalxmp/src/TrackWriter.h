#pragma once
// Writes a track's changed markers back into its marker array.

#include "zephtemporalxmp/XMPTrack.h"

#include <exempi/xmp.h>

#include <cstdint>

namespace zephtemporalxmp
{
namespace detail
{

struct SaveContext
{
    XmpPtr meta = nullptr;
    // The tree is not at the instance the tracks were read or last saved at.
    bool treeMovedOn = false;
    std::uint64_t pass = 0; // unique per save
};

// True when the tree changed. Unchanged markers stay as they are; when the
// kept ones are still in the array's order, only the removed and the new or
// changed items are touched, else the array is written again in list order.
bool SaveTrack(XMPTrack& track, SaveContext const& context);

} // namespace detail
} // namespace zephtemporalxmp
