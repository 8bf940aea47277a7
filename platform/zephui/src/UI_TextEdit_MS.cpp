#include "zephui/UI_TextEdit_MS.h"

namespace zephui
{

UI_TextEdit_MS::UI_TextEdit_MS()
    : UI_TextEdit(kTextEditStandard | kTextEditMultiLine | kTextEditWrap)
{
}

// Out of line, so that the class has one home for its type information.
UI_TextEdit_MS::~UI_TextEdit_MS() = default;

} // namespace zephui
