#pragma once
// A popup menu on a QComboBox: list-only, or editable (the user may type a
// value that is no item). Items may be separators or disabled. A choice by
// the user sends NotifyWhenChanged when it changes the value (always, with
// SetAlwaysNotify); typed text is committed on Enter or focus loss. The wheel
// changes nothing unless the popup has the focus, so a scrolled form under
// the pointer scrolls instead.

#include "zephui/UI_ControlView.h"
#include "zephui/zephui_export.h"

#include <boost/function.hpp>
#include <boost/shared_ptr.hpp>

#include <vector>

class QComboBox;

namespace zephui
{

class ZEPHUI_EXPORT UI_Popup : public UI_ControlView
{
public:
    enum PopupType
    {
        kPopupListOnly = 0,
        kPopupEditable = 1
    };

    explicit UI_Popup(int type = kPopupListOnly, unsigned long flags = 0);

    void SetPopupType(int type);
    int GetPopupType() const { return type; }
    // The flags of the text field of an editable popup; kept for callers.
    void SetEditTextFlags(unsigned long value) { editTextFlags = value; }
    // With false, an editable popup never commits an empty text.
    void SetEmptyStringsAllowed(bool allowed) { emptyStringsAllowed = allowed; }
    // With true, choosing the chosen item again notifies again.
    void SetAlwaysNotify(bool always) { alwaysNotify = always; }
    // The menu's look; both looks are Qt's list here.
    void SetShouldUseCustomDrawnMenu(bool custom) { customDrawnMenu = custom; }
    // Called just before the menu opens, so its items can be refreshed.
    void SetPreShowMenuCallback(boost::shared_ptr<boost::function<void()>> const& callback)
    {
        preShow = callback;
    }
    void SetPreShowMenuCallback(boost::function<void()> const& callback);

    // Item text "-" is a separator, as is AddSeparator.
    void AddItem(zephcore::UTF16String const& text);
    // Replaces all items at once (a "-" is a separator), in one refill of
    // the on-screen list rather than one per item.
    void SetItems(std::vector<zephcore::UTF16String> const& texts);
    void AddSeparator();
    void InsertItem(int index, zephcore::UTF16String const& text);
    void RemoveItem(int index);
    void DeleteAllItems();
    int CountItems() const { return int(items.size()); }
    zephcore::UTF16String GetItemText(int index) const;
    void DisableItem(int index, bool disable = true);
    bool IsItemDisabled(int index) const;
    bool IsSeparator(int index) const;

    // The chosen item, or -1 when the shown text is no item.
    int GetValue() const;
    void SetValue(int index);
    // The text shown.
    zephcore::UTF16String GetValueString() const;
    // Chooses the item with this text; if there is none, shows the text alone
    // (typed into an editable popup, or as the label of a list-only one).
    // With selectItem false the text is shown without choosing an item.
    void SetValueString(zephcore::UTF16String const& text, bool selectItem = true);

    // Chooses an item as the user would (notifies).
    void ChooseItem(int index);

    void KnownValueStateChanged() override;
    PointF UI_GetRecommendedSize(Drawbot* drawbot) override;

    // Internal: the menu is about to open.
    void BeforeShowMenu();

protected:
    QWidget* CreateWidget() override;

private:
    struct Item
    {
        zephcore::UTF16String text;
        bool separator = false;
        bool disabled = false;
    };

    void Rebuild();
    void Fill(QComboBox* combo);
    void ApplyValue();
    void ApplyValueTo(QComboBox* combo);
    void OnActivated(int index);
    void CommitTypedText();

    int type = kPopupListOnly;
    unsigned long editTextFlags = 0;
    bool emptyStringsAllowed = false;
    bool alwaysNotify = false;
    bool customDrawnMenu = false;
    bool applying = false;
    std::vector<Item> items;
    int value = -1;
    zephcore::UTF16String freeText; // shown when value is -1
    boost::shared_ptr<boost::function<void()>> preShow;
};

using UI_PopupPtr = boost::intrusive_ptr<UI_Popup>;

} // namespace zephui
