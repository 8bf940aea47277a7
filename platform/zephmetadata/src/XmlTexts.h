#pragma once
// Texts in XML attributes that read back exactly as written. XML cannot carry
// every string (control characters, bytes that are not UTF-8): such a text
// goes as the hex of its bytes, in an attribute of its own ("labelHex").

#include "zephmetadata/Types.h"

#include <QXmlStreamAttributes>
#include <QXmlStreamWriter>

namespace zephmetadata
{
namespace detail
{

bool XmlCanCarry(UTF8String const& text);
// Writes `name`, or `<name>Hex` when XML cannot carry the text.
void WriteText(QXmlStreamWriter& writer, char const* name, UTF8String const& text);
// The text of the attribute or of its hex form; false when neither is there
// or the hex is damaged.
bool ReadText(QXmlStreamAttributes const& attributes, char const* name, UTF8String& text);

} // namespace detail
} // namespace zephmetadata
