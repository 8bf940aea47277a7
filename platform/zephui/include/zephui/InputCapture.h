#pragma once
// Pointer captures: while one runs (UI_NodeManager::BeginInputCapture), all
// pointer input goes to it instead of the nodes, until the button is released
// or the capture is cancelled (Escape, a new capture, its node's death).

#include "zephui/Events.h"
#include "zephui/zephui_export.h"

#include "zephcore/RefCounted.h"

#include <boost/intrusive_ptr.hpp>

namespace zephui
{

class UI_Node;

class ZEPHUI_EXPORT PointerCapture : public zephcore::RefCountedObject
{
public:
    ~PointerCapture() override;
    virtual bool HasBeenCancelled() const { return cancelled; }
    // Marks the capture cancelled, lets it set its cursor, then ends it.
    virtual void Cancel();
    // Called when the capture starts.
    virtual void Begin() {}
    // The end notification: the last call, after a release or a cancel.
    virtual void CaptureEnded() {}
    virtual bool ShouldIgnoreKeyboardEvents() const { return false; }
    // Key events while the capture runs; the base cancels on Escape.
    virtual bool DoKeyboardEvent(KeyboardEvent const& event);
    // The cursor notification: after each pointer event, and once more on
    // cancel. Set the cursor through the resource manager's DisplayCursor.
    virtual bool DoCursor(PointF const& /*position*/) { return false; }
    virtual void DoTimerNotify() {}
    // The mouse notification: every pointer event, its position in the
    // coordinates of the capture's node (drag 3 while the button is held,
    // release 2 last).
    virtual bool DoMouseEvent(MouseEvent const& /*event*/) { return false; }

    UI_Node* GetNode() const { return node; }
    bool IsActive() const { return active; }

protected:
    explicit PointerCapture(UI_Node* node);

private:
    friend class UI_NodeManager;
    UI_Node* node = nullptr; // the node keeps the capture's life short: see UI_NodeManager
    bool cancelled = false;
    bool active = false;
    bool ended = false;
};

class ZEPHUI_EXPORT InputCapture : public PointerCapture
{
public:
    // event: the press that begins the capture.
    InputCapture(UI_Node* node, MouseEvent const& event);
    MouseEvent const& GetStartEvent() const { return startEvent; }

private:
    MouseEvent startEvent;
};

using InputCapturePtr = boost::intrusive_ptr<InputCapture>;

} // namespace zephui
