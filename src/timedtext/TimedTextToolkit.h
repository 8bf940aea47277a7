#pragma once
// The further parts of the platform that the timed text views use, on top of
// the library's contracts: the scroll bar, mouse events, skins and colours,
// fonts, and the XMP toolkit's array and structure paths.

#include "contracts/Model.h"
#include "contracts/Toolkit.h"

#include <zephmetadata/XmpMeta.h>
#include <zephui/Drawbot.h>
#include <zephui/Events.h>
#include <zephui/Skin.h>
#include <zephui/Theme.h>
#include <zephui/UI_ScrollBar.h>

namespace zephmetadataui
{

using zephui::FontInterface;
using zephui::MouseEvent;
using zephui::SkinSet;
using zephui::ThemeProvider;
using zephui::TimedTextSkin;
using zephui::UI_ScrollBar;
using zephui::UI_ScrollBarPtr;
namespace xmp = zephmetadata::xmp;

} // namespace zephmetadataui
