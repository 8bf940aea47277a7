#include "zephui/UI_Popup.h"

#include "ControlSupport.h"
#include "zephui/NodeWidget.h"

#include "zephcore/QtStrings.h"

#include <QComboBox>
#include <QFontMetricsF>
#include <QLineEdit>
#include <QStandardItemModel>

#include <boost/make_shared.hpp>

#include <cmath>

#include <limits>

namespace zephui
{

namespace
{

class PopupWidget : public NodeWidget<QComboBox>
{
public:
    PopupWidget(UI_Popup* popup) : NodeWidget<QComboBox>(popup), popup(popup) {}

    void showPopup() override
    {
        if (GetNode())
            popup->BeforeShowMenu();
        QComboBox::showPopup();
    }

protected:
    void wheelEvent(QWheelEvent* event) override
    {
        // Without the focus the wheel belongs to whatever scrolls around us.
        if (!hasFocus())
        {
            event->ignore();
            return;
        }
        NodeWidget<QComboBox>::wheelEvent(event);
    }

private:
    UI_Popup* popup;
};

bool IsSeparatorText(zephcore::UTF16String const& text)
{
    return text.size() == 1 && text[0] == u'-';
}

} // namespace

UI_Popup::UI_Popup(int popupType, unsigned long /*flags*/) : type(popupType) {}

QWidget* UI_Popup::CreateWidget()
{
    auto* combo = new PopupWidget(this);
    combo->setFont(ControlFont());
    combo->setMinimumSize(0, 0);
    combo->setFocusPolicy(Qt::StrongFocus);
    combo->setSizeAdjustPolicy(QComboBox::AdjustToMinimumContentsLengthWithIcon);
    combo->setInsertPolicy(QComboBox::NoInsert);
    QObject::connect(combo, qOverload<int>(&QComboBox::activated), combo,
                     [this](int index) { OnActivated(index); });
    Fill(combo);
    return combo;
}

void UI_Popup::SetPopupType(int newType)
{
    if (newType == type)
        return;
    type = newType;
    Rebuild();
}

void UI_Popup::SetPreShowMenuCallback(boost::function<void()> const& callback)
{
    preShow = boost::make_shared<boost::function<void()>>(callback);
}

void UI_Popup::BeforeShowMenu()
{
    NodeEventScope scope(this);
    boost::shared_ptr<boost::function<void()>> const callback = preShow;
    if (callback && *callback)
        (*callback)();
}

void UI_Popup::AddItem(zephcore::UTF16String const& text)
{
    InsertItem(int(items.size()), text);
}

void UI_Popup::SetItems(std::vector<zephcore::UTF16String> const& texts)
{
    items.clear();
    items.reserve(texts.size());
    for (zephcore::UTF16String const& text : texts)
    {
        Item item;
        item.separator = IsSeparatorText(text);
        item.text = item.separator ? zephcore::UTF16String() : UI_ProcessStringAndSetMnemonic(text);
        items.push_back(item);
    }
    value = -1;
    freeText.clear();
    Rebuild();
}

void UI_Popup::AddSeparator()
{
    InsertItem(int(items.size()), zephcore::AsciiToUTF16("-"));
}

void UI_Popup::InsertItem(int index, zephcore::UTF16String const& text)
{
    index = std::clamp(index, 0, int(items.size()));
    Item item;
    item.separator = IsSeparatorText(text);
    item.text = item.separator ? zephcore::UTF16String() : UI_ProcessStringAndSetMnemonic(text);
    items.insert(items.begin() + index, item);
    if (value >= index)
        ++value;
    Rebuild();
}

void UI_Popup::RemoveItem(int index)
{
    if (index < 0 || index >= int(items.size()))
        return;
    items.erase(items.begin() + index);
    if (value == index)
        value = -1;
    else if (value > index)
        --value;
    Rebuild();
}

void UI_Popup::DeleteAllItems()
{
    items.clear();
    value = -1;
    freeText.clear();
    Rebuild();
}

zephcore::UTF16String UI_Popup::GetItemText(int index) const
{
    return index >= 0 && index < int(items.size()) ? items[std::size_t(index)].text
                                                   : zephcore::UTF16String();
}

void UI_Popup::DisableItem(int index, bool disable)
{
    if (index < 0 || index >= int(items.size()))
        return;
    items[std::size_t(index)].disabled = disable;
    Rebuild();
}

bool UI_Popup::IsItemDisabled(int index) const
{
    return index >= 0 && index < int(items.size()) && items[std::size_t(index)].disabled;
}

bool UI_Popup::IsSeparator(int index) const
{
    return index >= 0 && index < int(items.size()) && items[std::size_t(index)].separator;
}

int UI_Popup::GetValue() const
{
    return IsValueUnknown() ? -1 : value;
}

void UI_Popup::SetValue(int index)
{
    value = index >= 0 && index < int(items.size()) && !items[std::size_t(index)].separator ? index
                                                                                            : -1;
    freeText.clear();
    if (IsValueUnknown())
        SetValueKnown();
    ApplyValue();
}

zephcore::UTF16String UI_Popup::GetValueString() const
{
    if (IsValueUnknown())
        return {};
    if (auto* combo = qobject_cast<QComboBox*>(UI_GetWidgetIfMade());
        combo && type == kPopupEditable && combo->lineEdit())
        return zephcore::ToUTF16(combo->lineEdit()->text());
    return value >= 0 ? items[std::size_t(value)].text : freeText;
}

void UI_Popup::SetValueString(zephcore::UTF16String const& text, bool selectItem)
{
    int found = -1;
    for (std::size_t i = 0; i < items.size() && selectItem; ++i)
        if (!items[i].separator && items[i].text == text)
        {
            found = int(i);
            break;
        }
    value = found;
    freeText = found >= 0 ? zephcore::UTF16String() : text;
    if (IsValueUnknown())
        SetValueKnown();
    ApplyValue();
}

void UI_Popup::KnownValueStateChanged()
{
    ApplyValue();
}

void UI_Popup::Rebuild()
{
    if (auto* combo = qobject_cast<QComboBox*>(UI_GetWidgetIfMade()))
        Fill(combo);
}

void UI_Popup::Fill(QComboBox* combo)
{
    applying = true;
    {
        QSignalBlocker const block(combo);
        combo->setEditable(type == kPopupEditable);
        if (QLineEdit* line = combo->lineEdit(); line && !line->property("zephConnected").toBool())
        {
            line->setProperty("zephConnected", true);
            // Typed text is a value like any other: never cut at Qt's default.
            line->setMaxLength(std::numeric_limits<int>::max());
            QObject::connect(line, &QLineEdit::returnPressed, combo, [this] { CommitTypedText(); });
            QObject::connect(line, &QLineEdit::editingFinished, combo,
                             [this] { CommitTypedText(); });
        }
        combo->clear();
        for (Item const& item : items)
        {
            if (item.separator)
                combo->insertSeparator(combo->count());
            else
                combo->addItem(zephcore::ToQString(item.text));
        }
        if (auto* model = qobject_cast<QStandardItemModel*>(combo->model()))
            for (std::size_t i = 0; i < items.size(); ++i)
                if (items[i].disabled && !items[i].separator)
                    if (QStandardItem* row = model->item(int(i)))
                        row->setEnabled(false);
    }
    applying = false;
    ApplyValueTo(combo);
}

void UI_Popup::ApplyValue()
{
    if (auto* combo = qobject_cast<QComboBox*>(UI_GetWidgetIfMade()))
        ApplyValueTo(combo);
}

void UI_Popup::ApplyValueTo(QComboBox* combo)
{
    applying = true;
    QSignalBlocker const block(combo);
    if (IsValueUnknown())
    {
        combo->setCurrentIndex(-1);
        combo->setPlaceholderText(QString());
        if (combo->lineEdit())
            combo->lineEdit()->clear();
    }
    else if (value >= 0)
        combo->setCurrentIndex(value);
    else
    {
        combo->setCurrentIndex(-1);
        if (combo->lineEdit())
            combo->lineEdit()->setText(zephcore::ToQString(freeText));
        else
            combo->setPlaceholderText(zephcore::ToQString(freeText));
    }
    applying = false;
}

void UI_Popup::OnActivated(int index)
{
    if (applying || index < 0 || index >= int(items.size()))
        return;
    NodeEventScope scope(this);
    Item const& item = items[std::size_t(index)];
    if (item.separator || item.disabled)
    {
        ApplyValue();
        return;
    }
    bool const changed = index != value || IsValueUnknown();
    value = index;
    freeText.clear();
    SetValueKnown();
    if (changed || alwaysNotify)
        SendValueChangedMessage();
}

void UI_Popup::ChooseItem(int index)
{
    if (auto* combo = qobject_cast<QComboBox*>(UI_GetWidget()))
    {
        {
            QSignalBlocker const block(combo);
            combo->setCurrentIndex(index);
        }
        OnActivated(index);
    }
}

void UI_Popup::CommitTypedText()
{
    auto* combo = qobject_cast<QComboBox*>(UI_GetWidgetIfMade());
    if (applying || !combo || !combo->lineEdit() || type != kPopupEditable)
        return;
    NodeEventScope scope(this);
    zephcore::UTF16String const typed = zephcore::ToUTF16(combo->lineEdit()->text());
    if (typed.empty() && !emptyStringsAllowed)
    {
        ApplyValue();
        return;
    }
    int found = -1;
    for (std::size_t i = 0; i < items.size(); ++i)
        if (!items[i].separator && items[i].text == typed)
            found = int(i);
    bool const changed =
        IsValueUnknown() ? !typed.empty() : (found != value || (found < 0 && typed != freeText));
    if (!changed)
        return;
    value = found;
    freeText = found >= 0 ? zephcore::UTF16String() : typed;
    SetValueKnown();
    SendValueChangedMessage();
}

PointF UI_Popup::UI_GetRecommendedSize(Drawbot*)
{
    QFontMetricsF const metrics(ControlFont());
    float widest = 0.0f;
    for (Item const& item : items)
        widest = std::max(widest, float(metrics.horizontalAdvance(zephcore::ToQString(item.text))));
    return PointF(std::ceil(widest + 40.0f), 21.0f);
}

} // namespace zephui
