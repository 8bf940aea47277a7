#pragma once
// The further parts of the toolkit that the property tree uses, on top of
// the library's toolkit contract: the tree, scroll views, the controls of a
// row, key and mouse events, captures, skins and colours.

#include "contracts/Model.h"
#include "contracts/Toolkit.h"

#include <zephui/Events.h>
#include <zephui/InputCapture.h>
#include <zephui/Skin.h>
#include <zephui/Theme.h>
#include <zephui/UI_Button.h>
#include <zephui/UI_Checkbox.h>
#include <zephui/UI_MultiColumnTree.h>
#include <zephui/UI_MultiColumnTreeRow.h>
#include <zephui/UI_ScrollBar.h>
#include <zephui/UI_ScrollView.h>
#include <zephui/UI_StaticText.h>

namespace zephmetadataui
{

using zephui::GetColor;
using zephui::InputCapture;
using zephui::kColor_ListBoxContentDivider;
using zephui::KeyboardCode;
using zephui::KeyboardEvent;
using zephui::ListBoxSkin;
using zephui::MouseEvent;
using zephui::ScaleMatrixF;
using zephui::SkinSet;
using zephui::UI_Checkbox;
using zephui::UI_MultiColumnTree;
using zephui::UI_MultiColumnTreeRow;
using zephui::UI_PictureButton;
using zephui::UI_ScrollBar;
using zephui::UI_ScrollView;
using zephui::UI_ScrollViewPtr;
using zephui::UI_StaticText;
namespace utils = zephui::utils;

} // namespace zephmetadataui
