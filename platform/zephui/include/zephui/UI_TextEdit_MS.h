#pragma once
// A multi-line text box: a text field whose lines wrap at its width.

#include "zephui/UI_TextEdit.h"
#include "zephui/zephui_export.h"

namespace zephui
{

class ZEPHUI_EXPORT UI_TextEdit_MS : public UI_TextEdit
{
public:
    UI_TextEdit_MS();
    ~UI_TextEdit_MS() override;
};

using UI_TextEdit_MSPtr = boost::intrusive_ptr<UI_TextEdit_MS>;

} // namespace zephui
