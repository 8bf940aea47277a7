#pragma once
// Builds the tracks and their markers from a tree's xmpDM:Tracks, in one
// pass of the toolkit's iterator.

#include "zephtemporalxmp/XMPTrack.h"

#include <exempi/xmp.h>

#include <list>

namespace zephtemporalxmp
{
namespace detail
{

// Appends one XMPTrack per structure item of xmpDM:Tracks.
void ReadTracks(XmpPtr meta, std::list<XMPTrack>& tracks);

} // namespace detail
} // namespace zephtemporalxmp
