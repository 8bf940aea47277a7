#pragma once
// Shared by the node and its host widget: a focus change made by
// UI_GainKeyboardFocus itself must not be taken for a user's Tab.

namespace zephui
{

bool IsInsideGainKeyboardFocus(); // UI_Node.cpp

} // namespace zephui
