#pragma once
// The node: a counted object in a tree of nodes, owning one QWidget that
// mirrors its place in the tree. A node keeps its own state (rectangle, shown,
// disabled, tool tip, id, user data) and applies it to its widget whenever
// the widget exists, so every operation works with or without a widget.
//
// Coordinates: a node's local coordinates have their origin at its top left.
// UI_GetLocalRectF(false) is (0, 0, width, height); UI_GetLocalRectF(true) and
// UI_SetLocalRectF take the rectangle in the parent's local coordinates.
// Widths and heights may be negative while a parent is still empty (bindings
// add the parent's growth later); the widget then has a size of zero.
//
// Lifetime: a node dies at a count of zero and deletes its widget (later, if an
// event of the node tree is being handled). A parent that dies first detaches
// the widgets of children still held elsewhere, so Qt never deletes a widget
// under a living node; a widget that Qt deletes anyway leaves the node working
// without one.

#include "zephui/Events.h"
#include "zephui/Geometry.h"
#include "zephui/UI_Container.h"
#include "zephui/zephui_export.h"

#include "zephcore/RefCounted.h"
#include "zephcore/Strings.h"

#include <boost/any.hpp>
#include <boost/intrusive_ptr.hpp>

#include <QPointer>

#include <string>
#include <vector>

class QWidget;
class QEvent;

namespace zephui
{

class Drawbot;
class SupplierInterface;
class OSMenu;
class TimerManager;
class UI_Node;
struct NodeDispatch;

// A widget property: a parentless node widget with it set to true shows as a
// window of its own (dialogs show as windows anyway).
ZEPHUI_EXPORT extern char const* const kTopLevelNodeProperty;

// Bits of UI_SetLayoutBinding: which edges follow the parent when it resizes.
enum LayoutBinding : unsigned char
{
    kBindLeftEdgeToParentRight = 0x01,
    kBindTopEdgeToParentBottom = 0x02,
    kBindRightEdgeToParentRight = 0x04,
    kBindBottomEdgeToParentBottom = 0x08,
    kBindCenterHorizontal = 0x10, // keeps its width, centred in the parent
    kBindCenterVertical = 0x20,   // keeps its height, centred in the parent
    // 0x05 moves with the right edge, 0x0c grows with the parent, 0x0e stays at
    // the bottom and stretches across, 0x30 stays in the middle.
};

// Reasons of UI_GainKeyboardFocus.
enum FocusReason
{
    kFocusReasonAdvance = 0,
    kFocusReasonAdvanceBackward = 1,
    kFocusReasonMouse = 2,
    kFocusReasonProgram = 3
};

// Results of the layout interface used by layout scripts.
struct ZEPHUI_EXPORT LayoutExtents
{
    float width = 0.0f;
    float height = 0.0f;
};
struct ZEPHUI_EXPORT LayoutPlace
{
    RectF rect;
};

class ZEPHUI_EXPORT UI_NodeBase : public zephcore::RefCountedObject,
                                  public UI_Container,
                                  public ThemeClient,
                                  public SkinSetClient
{
public:
    Theme const* GetTheme() const override;
    SkinSet const* UI_GetCurrentSkinSet() const override;
    bool IsANode() const override { return true; }

protected:
    UI_NodeBase() = default;
    ~UI_NodeBase() override = default;
    Theme const* GetClientTheme() const override { return GetTheme(); }
    virtual UI_NodeBase const* GetParentNodeBase() const = 0;
};

// Drag and drop callbacks; a node that is a drop target gets them.
class ZEPHUI_EXPORT UI_DragDropHandler
{
public:
    virtual ~UI_DragDropHandler() = default;
    virtual bool UI_DragEnter(PointF const& /*point*/, std::vector<std::string> const& /*formats*/)
    {
        return false;
    }
    virtual bool UI_DragMove(PointF const& /*point*/) { return false; }
    virtual void UI_DragLeave() {}
    virtual bool UI_Drop(PointF const& /*point*/, std::vector<std::string> const& /*formats*/)
    {
        return false;
    }
};

class ZEPHUI_EXPORT UI_Node : public UI_NodeBase, public UI_DragDropHandler
{
public:
    UI_Node();

    // 1. Rectangle, visibility, drawing.
    ~UI_Node() override;
    virtual bool UI_IsSubView() const { return false; }
    // Translation by the node's place in its parent.
    virtual ScaleMatrixF UI_GetSelfToParentMatrix() const;
    virtual bool UI_HitTest(PointF const& localPoint) const;
    virtual RectT<int> UI_GetLocalRect(bool inParentCoordinates = false) const;
    virtual RectF UI_GetLocalRectF(bool inParentCoordinates = false) const;
    virtual void UI_SetLocalRect(RectT<int> const& rect);
    // Sets the rectangle in the parent's coordinates. A change of size calls
    // UI_SizeChanged at once (not later through Qt).
    virtual void UI_SetLocalRectF(RectF const& rect);
    virtual void UI_Show(bool show);
    virtual bool UI_IsShown() const { return shown; }
    virtual bool UI_AreAllParentsVisible() const;
    // True if this node or an ancestor is disabled.
    virtual bool UI_IsDisabled() const;
    // Null rect: the whole node. Paints later.
    virtual void UI_Invalidate(RectF const* rect = nullptr, Flags<unsigned long> flags = 0);
    // Paints what is invalid now, if the node is on screen.
    virtual void UI_UpdateNow(int flags = -1);
    virtual void UI_SetOpacity(float opacity);
    // True for a node anywhere below this one.
    virtual bool UI_IsChild(UI_Node const* node) const;
    virtual void UI_SetParent(UI_Node* newParent);
    virtual bool UI_SupportsDrawbot() const { return true; }
    // Draws the node's own content. Child nodes are widgets that Qt paints over
    // it afterwards, so the base draws nothing; overrides may still call it.
    virtual void UI_Draw(Drawbot* drawbot);
    virtual void UI_NotifyBeforeFocusChangeWithOS() {}
    virtual bool UI_UseDrawbotCache() const { return false; }
    virtual int UI_GetDrawSegments() const { return 1; }
    // The supplier for the display this node is on (never null).
    virtual SupplierInterface const* UI_GetDrawSupplier() const;

    // 2. Input. `node` is the node the event is for: the deepest node under the
    // pointer, or the node that has the keyboard focus. Return true to take it.
    virtual bool UI_DoPrePointerEvent(UI_Node* /*node*/, PointerEvent const& /*event*/)
    {
        return false;
    }
    virtual bool UI_DoPointerEvent(UI_Node* /*node*/, PointerEvent const& /*event*/)
    {
        return false;
    }
    // Called on mouse filter nodes (UI_NodeManager::AddAndRemoveMouseEventFilterNode)
    // for events in their subtree, before the node under the pointer sees them.
    virtual bool UI_DoPreMouseEvent(UI_Node* /*node*/, MouseEvent const& /*event*/)
    {
        return false;
    }
    // Offered to the node under the pointer, then up the tree until one takes it.
    virtual bool UI_DoMouseEvent(UI_Node* /*node*/, MouseEvent const& /*event*/) { return false; }
    virtual bool UI_DoMouseActivate(UI_Node* /*node*/, MouseEvent const& /*event*/)
    {
        return false;
    }
    // On pointer moves; set a cursor with the resource manager's DisplayCursor
    // and return true, or return false to leave it to the parent.
    virtual bool UI_DoCursor(UI_Node* /*node*/, PointF const& /*point*/,
                             Flags<unsigned long> /*flags*/)
    {
        return false;
    }
    virtual bool UI_InvalidateOnMouseOverChange() const { return false; }
    virtual bool UI_IsMouseOver() const;
    // Called on keyboard filter nodes (UI_NodeManager::AddAndRemoveKeyboardEventFilterNode)
    // for every key event, before anything else sees it (Tab included).
    virtual bool UI_DoPreKeyboardEvent(UI_Node* /*node*/, KeyboardEvent const& /*event*/)
    {
        return false;
    }
    // Offered to the focused node, then (if its Qt control did not use the key)
    // up the tree. Tab and Shift+Tab go up the tree before Qt moves the focus;
    // taking them keeps the focus where it is.
    virtual bool UI_DoKeyboardEvent(UI_Node* /*node*/, KeyboardEvent const& /*event*/)
    {
        return false;
    }
    virtual bool UI_InvalidateOnKeyboardFocusChange() const { return false; }
    // Plain nodes take no focus unless this says so; controls follow their Qt control.
    virtual bool UI_WantsKeyboardFocus() const { return wantsKeyboardFocus; }
    virtual bool UI_WantsKeyboardFocusFromAdvance() const { return UI_WantsKeyboardFocus(); }
    // Moves the focus here (reason: FocusReason); a node that takes no focus
    // itself passes it to its first child that does. Also called when Tab
    // brings the focus in, with reason 0 or 1; an override returning false
    // passes it on.
    virtual bool UI_GainKeyboardFocus(int reason);
    virtual void UI_PrepareForKeyboardFocusFromAdvance(bool /*forward*/) {}
    virtual void UI_LoseKeyboardFocus();
    virtual void UI_UpdateKeyboardFocusStateDueToLoss() {}
    // includeChildren: also true when a node below has the focus.
    virtual bool UI_HasKeyboardFocus(bool includeChildren = false) const;

    // 3. Capture, tool tips, sizes, data.
    virtual void UI_DoTimerNotify(int /*timerID*/) {}
    virtual void UI_SetCapture();
    virtual void UI_ReleaseCapture();
    virtual bool UI_ReceivesEventsFromOS() const { return true; }
    virtual zephcore::UTF16String UI_GetToolTip() const { return toolTip; }
    virtual float UI_GetToolTipWidth() const { return toolTipWidth; }
    // A width above 0 wraps the tip's lines to at most that many pixels.
    virtual void UI_SetToolTip(zephcore::UTF16String const& text, float width = 0.0f);
    // The size the node would like; the base gives its present size.
    virtual PointF UI_GetRecommendedSize(Drawbot* drawbot);
    virtual void UI_SetDropTarget(bool accept);
    virtual void CommitChangeTransaction() {}
    virtual void measure(LayoutExtents& result);
    virtual void measure_vertical(LayoutExtents& result, LayoutPlace const& placedHorizontal);
    virtual void place(LayoutPlace const& placement);
    virtual void get_placement(LayoutPlace& placement) const;
    virtual void SetUserData(boost::any const& data) { userData = data; }
    virtual boost::any const& GetUserData() const { return userData; }
    virtual float GetViewScaleFactor() const;

    // 4. Notifications and layout.
    virtual void UI_ActivationChanged(bool /*active*/) {}
    // The node's size changed (rect: its local rectangle). The base lays out the
    // children if UI_SetLayoutsChildren(true) was called.
    virtual void UI_SizeChanged(RectF const& rect);
    virtual void UI_DisabledStateChanged() {}
    // The node joined or left a parent.
    virtual void UI_NodeChanged() {}
    virtual void UI_NodeParentScaleChanged() {}
    // Any Qt event of the node's widget, before the toolkit handles it.
    virtual bool UI_HandleOSEvent(QEvent* /*event*/) { return false; }
    virtual bool UI_DispatchCursor(PointF const& point);
    virtual bool UI_DispatchEvent(MouseEvent const& event);
    // Hands a key on to the parent's UI_DoKeyboardEvent.
    virtual bool UI_DispatchKeyboardCharEventToParent(KeyboardEvent const& event);
    virtual void UI_GetOSControlClipRects(std::vector<RectF>& /*rects*/) const {}
    virtual void UI_MouseOverChanged(bool /*over*/) {}
    // The node's own widget gained or lost the focus.
    virtual void UI_FocusChanged(bool /*hasFocus*/) {}
    virtual bool UI_SetKeyboardFocusWithOS();
    virtual void UI_ClearKeyboardFocusWithOS();
    virtual bool UI_IsDrawbotCacheValid() const { return false; }
    virtual UI_Node* UI_GetPointerProxy() { return this; }
    virtual TimerManager* UI_GetTimerManager() { return nullptr; }
    virtual TimerManager const* UI_GetTimerManager() const { return nullptr; }
    virtual bool UI_DisplaysToolTipForChild(UI_Node const* /*child*/) const { return false; }
    // From this node's coordinates to those of the root.
    virtual ScaleMatrixF UI_GetMatrix() const;
    virtual void UI_SetLayoutsChildren(bool layouts);
    virtual void UI_SetLayoutBinding(Flags<unsigned char> binding);
    virtual void UI_SetSubViewLayoutFlags(Flags<unsigned long> flags)
    {
        subViewLayoutFlags = flags;
    }
    // Moves the children by their layout bindings for a resize from oldSize to newSize.
    virtual void UI_LayoutChildren(PointF const& oldSize, PointF const& newSize);

    // Container side, mirrored into the widget tree.
    bool ChildRequestRemove(UI_Node* child) override;
    void ChildPushBack(boost::intrusive_ptr<UI_Node> const& child) override;
    void SetThemeName(std::string const& name) override;

    // Plain operations.
    void UI_Hide() { UI_Show(false); }
    void UI_SetEnabled(bool enabled) { UI_SetDisabled(!enabled); }
    void UI_SetDisabled(bool disable);
    bool UI_IsOwnDisabled() const { return disabled; }
    void UI_SetNodeID(std::string const& id) { nodeID = id; }
    std::string const& UI_GetNodeID() const { return nodeID; }
    // The first node with this id at or below this one, depth first.
    UI_Node* UI_ChildGetFromID(std::string const& id) const;
    bool UI_IsChildOf(UI_Node const* ancestor) const;
    UI_Node* UI_GetParentNode() const { return parent; }
    UI_Node* UI_GetRootNode() const;
    static ScaleMatrixF UI_GetSelfToSpecificParentMatrix(UI_Node const* node,
                                                         UI_Node const* ancestor);
    PointF UI_GlobalToLocalF(PointF const& global) const;
    PointF UI_LocalToGlobalF(PointF const& local) const;
    bool UI_GetLayoutsChildren() const { return layoutsChildren; }
    Flags<unsigned char> UI_GetLayoutBinding() const { return layoutBinding; }
    Flags<unsigned long> UI_GetSubViewLayoutFlags() const { return subViewLayoutFlags; }
    float UI_GetOpacity() const { return opacity; }
    // Shows the menu at a local point and waits; the chosen item's number, or 0.
    int UI_DoContextMenu(OSMenu* menu, PointF const& localPoint);

    // The widget that shows this node, made on first call. Null once Qt
    // deleted it (its window closed); the node then works on without one.
    QWidget* UI_GetWidget();
    QWidget* UI_GetWidgetIfMade() const;

protected:
    // Makes the widget; the default is a plain forwarding widget. Controls
    // return a Qt control wrapped in NodeWidget<...> (see NodeWidget.h).
    virtual QWidget* CreateWidget();
    // Installs a widget made elsewhere (from a control's constructor, say), in
    // place of any earlier one, and applies the node's state to it.
    void SetWidget(QWidget* newWidget);
    // Applies the node's state (geometry, shown, enabled, tool tip, focus policy).
    void ApplyStateToWidget();
    // Re-reads UI_WantsKeyboardFocus into the widget's focus policy.
    void UpdateFocusPolicy();
    void SetWantsKeyboardFocusFlag(bool wants);

    UI_NodeBase const* GetParentNodeBase() const override { return parent; }

private:
    friend struct NodeDispatch;
    friend class UI_NodeManager;
    friend class NodeHostWidget;

    void ApplyGeometry();
    void ApplyVisibility();
    void ApplyToolTip();
    void DetachChildWidget(UI_Node* child);
    void AttachChildWidget(UI_Node* child);
    void ReleaseWidget();
    // Qt resized the widget (a host, a layout): take the size over.
    void WidgetResized(int width, int height);

    UI_Node* parent = nullptr;
    QPointer<QWidget> widget;
    bool widgetMade = false;
    RectF frame;
    PointF layoutSize;
    bool shown = false;
    bool disabled = false;
    bool wantsKeyboardFocus = false;
    bool applyingGeometry = false;
    zephcore::UTF16String toolTip;
    float toolTipWidth = 0.0f;
    std::string nodeID;
    boost::any userData;
    bool layoutsChildren = false;
    Flags<unsigned char> layoutBinding;
    Flags<unsigned long> subViewLayoutFlags;
    float opacity = 1.0f;
    bool dropTarget = false;
};

using UI_NodePtr = boost::intrusive_ptr<UI_Node>;

} // namespace zephui
