#pragma once
// The UI toolkit as the library sees it. Everything of the library reaches
// zephui through here; the names below are brought into the library's
// namespace so that code reads as the toolkit's own.

#include "contracts/Core.h"

#include <zephui/Drawbot.h>
#include <zephui/DrawbotImageResourceCache.h>
#include <zephui/Events.h>
#include <zephui/Geometry.h>
#include <zephui/InputCapture.h>
#include <zephui/Messages.h>
#include <zephui/ResourceManager.h>
#include <zephui/Skin.h>
#include <zephui/Theme.h>
#include <zephui/UI_Button.h>
#include <zephui/UI_Checkbox.h>
#include <zephui/UI_Container.h>
#include <zephui/UI_ControlView.h>
#include <zephui/UI_HotTextNumber.h>
#include <zephui/UI_Node.h>
#include <zephui/UI_NodeManager.h>
#include <zephui/UI_Popup.h>
#include <zephui/UI_SectionView.h>
#include <zephui/UI_SplitterView.h>
#include <zephui/UI_StarRating.h>
#include <zephui/UI_StaticText.h>
#include <zephui/UI_SubView.h>
#include <zephui/UI_TextEdit.h>
#include <zephui/UI_URLEdit.h>

namespace zephmetadataui
{

// Geometry and flags.
using zephui::ColorRGBA;
using zephui::Flags;
using zephui::PointF;
using zephui::RectF;

// Nodes.
using zephui::UI_Container;
using zephui::UI_ControlView;
using zephui::UI_InteractiveControlView;
using zephui::UI_Node;
using zephui::UI_NodeManager;
using zephui::UI_NodePtr;
using zephui::UI_SectionView;
using zephui::UI_SplitterView;
using zephui::UI_SubView;
using zephui::UI_SubViewPtr;

// Controls.
using zephui::CheckboxValue;
using zephui::UI_Button;
using zephui::UI_Checkbox;
using zephui::UI_HotTextNumber;
using zephui::UI_PictureButton;
using zephui::UI_Popup;
using zephui::UI_StarRating;
using zephui::UI_StaticText;
using zephui::UI_TextEdit;
using zephui::UI_URLEdit;

// Input.
using zephui::InputCapture;
using zephui::MouseEvent;
using zephui::PointerEvent;

// Messages and callbacks.
using zephui::ConstMessage;
using zephui::ConstMessageCallback;
using zephui::Message;
using zephui::MessageCallback;
using zephui::UI_ButtonChangedMessage;
using zephui::UI_ControlMessage;
using zephui::UI_PictureSupplyMessage;

// Drawing, themes and resources.
using zephui::Drawbot;
using zephui::DrawbotImageResourceCache;
using zephui::FontInterface;
using zephui::GetFontName;
using zephui::GetIconType;
using zephui::ImageFileType;
using zephui::ImageInterface;
using zephui::kImageFileTypePNG;
using zephui::kTruncationMiddle;
using zephui::OS_ResourceManager;
using zephui::ResourceManager;
using zephui::SkinSet;
using zephui::SplitterViewSkin;
using zephui::SupplierInterface;
using zephui::TextTruncation;

} // namespace zephmetadataui
