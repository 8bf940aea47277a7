#pragma once
// Small helpers shared by the controls' sources.

#include "zephui/Events.h"
#include "zephui/QtEvents.h"
#include "zephui/Theme.h"

#include <QApplication>
#include <QFont>

namespace zephui
{

// The interface font at the theme's size (or size, if above 0).
inline QFont ControlFont(float size = 0.0f, bool bold = false)
{
    QFont font = QApplication::font();
    font.setPixelSize(int(size > 0.0f ? size : GetFontSize(kText_Main_Large)));
    font.setBold(bold);
    return font;
}

// The modifiers held now, in the toolkit's bits.
inline Flags<unsigned char> ModifiersNow()
{
    return ModifiersFromQt(QApplication::keyboardModifiers());
}

} // namespace zephui
