#include "zephui/InputCapture.h"

#include "zephui/UI_Node.h"
#include "zephui/UI_NodeManager.h"

namespace zephui
{

PointerCapture::PointerCapture(UI_Node* captureNode) : node(captureNode) {}

PointerCapture::~PointerCapture() = default;

void PointerCapture::Cancel()
{
    if (cancelled)
        return;
    cancelled = true;
    if (active)
        UI_NodeManager::Get()->CaptureCancelled(this);
}

bool PointerCapture::DoKeyboardEvent(KeyboardEvent const& event)
{
    if (event.IsActionKeyDown() && event.CompareCode(KeyboardCode(KeyboardCode::kKeyEscape)))
    {
        Cancel();
        return true;
    }
    return false;
}

InputCapture::InputCapture(UI_Node* captureNode, MouseEvent const& event)
    : PointerCapture(captureNode), startEvent(event)
{
}

} // namespace zephui
