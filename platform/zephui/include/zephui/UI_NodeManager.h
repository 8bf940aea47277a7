#pragma once
// The process-wide manager of the node tree: keyboard and mouse filter nodes,
// pointer captures, cursors, the toolkit's resources and images. It watches
// the application's events through an application event filter, installed
// when the manager is first asked for (a QApplication must exist by then).

#include "zephui/Drawbot.h"
#include "zephui/Geometry.h"
#include "zephui/InputCapture.h"
#include "zephui/zephui_export.h"

#include <boost/intrusive_ptr.hpp>

#include <memory>
#include <string>
#include <vector>

class QObject;
class QEvent;
class QWidget;

namespace zephui
{

class UI_Node;
class ResourceManager;
class DrawbotImageResourceCache;

class ZEPHUI_EXPORT UI_NodeManager
{
public:
    // The manager, made on first call. The argument is kept for callers that
    // pass it; the manager always exists.
    static UI_NodeManager* Get(bool unused = false);

    // The toolkit's own resources (":/zephui"); DisplayCursor sets the pointer shape.
    ResourceManager const* GetResourceManager() const;
    // An image of the toolkit's resources ("SP_Info_Sm_N"), for the supplier's scale.
    boost::intrusive_ptr<ImageInterface> GetImage(SupplierInterface const* supplier,
                                                  std::string const& name,
                                                  int fileType = kImageFileTypePNG) const;
    // The scale from layout units to screen pixels: 1 here, as Qt scales itself.
    ScaleMatrixF GetScaleMatrix() const;

    // Routes all pointer input to the capture until it ends; a running
    // capture is cancelled first. Takes the capture's first cursor.
    void BeginInputCapture(boost::intrusive_ptr<InputCapture> const& capture);
    void BeginPointerCapture(boost::intrusive_ptr<PointerCapture> const& capture);
    PointerCapture* GetCurrentCapture() const;
    // Cancels the running capture, if any.
    void CancelCapture();

    // Sets the pointer shape (CursorShape) for the running capture, or for the
    // node under the pointer while its UI_DoCursor runs.
    void DisplayCursor(int shape);
    // The shape last set by DisplayCursor (for tests and hosts).
    int GetDisplayedCursor() const { return displayedCursor; }

    // While it lives, the node gets UI_DoPreKeyboardEvent for all key events.
    class AddAndRemoveKeyboardEventFilterNode
    {
    public:
        AddAndRemoveKeyboardEventFilterNode(UI_NodeManager* manager, UI_Node* node);
        ~AddAndRemoveKeyboardEventFilterNode();
        AddAndRemoveKeyboardEventFilterNode(AddAndRemoveKeyboardEventFilterNode const&) = delete;
        AddAndRemoveKeyboardEventFilterNode&
        operator=(AddAndRemoveKeyboardEventFilterNode const&) = delete;

    private:
        UI_NodeManager* manager;
        UI_Node* node;
    };

    // While it lives, the node gets UI_DoPreMouseEvent for mouse events on
    // itself and the nodes below it, before they do.
    class AddAndRemoveMouseEventFilterNode
    {
    public:
        AddAndRemoveMouseEventFilterNode(UI_NodeManager* manager, UI_Node* node);
        ~AddAndRemoveMouseEventFilterNode();
        AddAndRemoveMouseEventFilterNode(AddAndRemoveMouseEventFilterNode const&) = delete;
        AddAndRemoveMouseEventFilterNode&
        operator=(AddAndRemoveMouseEventFilterNode const&) = delete;

    private:
        UI_NodeManager* manager;
        UI_Node* node;
    };

    // The node that has the keyboard focus, or null.
    UI_Node* GetFocusNode() const;
    // Moves the focus to the next (or previous) Tab stop of the focused
    // window, as Tab would; for a UI_DoKeyboardEvent that takes Tab but still
    // wants the focus to move (and then looks at where it went). False if
    // there is no focus or no other stop.
    bool AdvanceKeyboardFocus(bool forward);

    // Node bookkeeping (called by UI_Node).
    void NodeDying(UI_Node* node);
    // The cursor dispatch of one pointer move: starts at the widget under the pointer.
    void BeginCursorDispatch(QWidget* widget);
    void EndCursorDispatch(bool taken);
    bool IsCursorTaken() const;

    ~UI_NodeManager();

private:
    UI_NodeManager();
    class EventFilter;
    friend class EventFilter;
    bool FilterEvent(QObject* receiver, QEvent* event);
    bool FilterKey(QObject* receiver, QEvent* event);
    bool FilterMouse(QObject* receiver, QEvent* event);
    bool FilterCaptureMouse(QObject* receiver, QEvent* event);
    void EndCapture();
    void ApplyCaptureCursor(PointF const& position);
    friend class PointerCapture;
    void CaptureCancelled(PointerCapture* capture);
    void EnsureFilterInstalled();

    struct Private;
    std::unique_ptr<Private> d;
    int displayedCursor = 0;
};

} // namespace zephui
