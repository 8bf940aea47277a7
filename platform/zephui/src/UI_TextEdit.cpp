#include "zephui/UI_TextEdit.h"

#include "ControlSupport.h"
#include "zephui/NodeWidget.h"
#include "zephui/QtDrawing.h"

#include "zephcore/QtStrings.h"

#include <QApplication>
#include <QClipboard>
#include <QFontDatabase>
#include <QLineEdit>

#include <QPlainTextEdit>
#include <QScrollBar>
#include <QTextBlock>
#include <limits>

#include <algorithm>

namespace zephui
{

namespace
{

QLineEdit* AsLine(QWidget* widget)
{
    return qobject_cast<QLineEdit*>(widget);
}
QPlainTextEdit* AsPlain(QWidget* widget)
{
    return qobject_cast<QPlainTextEdit*>(widget);
}

} // namespace

UI_TextEdit::UI_TextEdit(unsigned long flagsWord, int align) : flags(flagsWord), alignment(align) {}

QWidget* UI_TextEdit::CreateWidget()
{
    QWidget* widget = nullptr;
    if (IsMultiLine())
    {
        auto* edit = new NodeWidget<QPlainTextEdit>(this);
        edit->setTabChangesFocus(true);
        edit->setLineWrapMode((flags & kTextEditWrap) ? QPlainTextEdit::WidgetWidth
                                                      : QPlainTextEdit::NoWrap);
        edit->setVerticalScrollBarPolicy(
            (flags & kTextEditVerticalScrollBar) ? Qt::ScrollBarAlwaysOn : Qt::ScrollBarAsNeeded);
        if (flags & kTextEditNoFrame)
            edit->setFrameShape(QFrame::NoFrame);
        QObject::connect(edit, &QPlainTextEdit::textChanged, edit, [this] { OnUserEdit(); });
        widget = edit;
    }
    else
    {
        auto* edit = new NodeWidget<QLineEdit>(this);
        edit->setFrame((flags & kTextEditNoFrame) == 0);
        // Qt cuts a line edit's text at 32,767 characters by default; a
        // value is never cut.
        edit->setMaxLength(std::numeric_limits<int>::max());
        QObject::connect(edit, &QLineEdit::textEdited, edit, [this] { OnUserEdit(); });
        // Enter commits; a focus loss commits through UI_FocusChanged.
        QObject::connect(edit, &QLineEdit::returnPressed, edit, [this] { CommitEdit(); });
        widget = edit;
    }
    widget->setMinimumSize(0, 0);
    QFont font = (flags & kTextEditFixedPitch) ? QFontDatabase::systemFont(QFontDatabase::FixedFont)
                                               : ControlFont();
    if (flags & kTextEditFixedPitch)
        font.setPixelSize(ControlFont().pixelSize());
    widget->setFont(font);
    widget->setContextMenuPolicy(Qt::DefaultContextMenu);
    applying = true;
    if (auto* line = AsLine(widget))
    {
        line->setText(zephcore::ToQString(text));
        // A long value shows its beginning, as it reads, not its end.
        line->setCursorPosition(0);
    }
    else if (auto* plain = AsPlain(widget))
        plain->setPlainText(zephcore::ToQString(text));
    applying = false;
    ApplyLookTo(widget);
    return widget;
}

zephcore::UTF16String UI_TextEdit::GetValue() const
{
    QWidget* const widget = UI_GetWidgetIfMade();
    if (auto* line = AsLine(widget))
        return zephcore::ToUTF16(line->text());
    if (auto* plain = AsPlain(widget))
        return zephcore::ToUTF16(plain->toPlainText());
    return text;
}

void UI_TextEdit::SetValue(zephcore::UTF16String const& value)
{
    text = value;
    committed = value;
    ApplyText();
}

void UI_TextEdit::ApplyText()
{
    QWidget* const widget = UI_GetWidgetIfMade();
    applying = true;
    if (auto* line = AsLine(widget))
    {
        if (line->text() != zephcore::ToQString(text))
        {
            line->setText(zephcore::ToQString(text));
            if (!line->hasFocus())
                line->setCursorPosition(0);
        }
    }
    else if (auto* plain = AsPlain(widget))
    {
        if (plain->toPlainText() != zephcore::ToQString(text))
            plain->setPlainText(zephcore::ToQString(text));
    }
    applying = false;
}

void UI_TextEdit::ApplyLook()
{
    if (QWidget* const widget = UI_GetWidgetIfMade())
        ApplyLookTo(widget);
}

void UI_TextEdit::ApplyLookTo(QWidget* widget)
{
    QString const placeholder = IsValueUnknown() ? zephcore::ToQString(unknownText) : QString();
    QPalette palette = widget->palette();
    palette.setColor(QPalette::PlaceholderText, ToQColor(GetColor(kColor_UnknownValueText)));
    if (hasCustomColor)
        palette.setColor(QPalette::Text, ToQColor(customColor));
    else
        palette.setColor(QPalette::Text, QApplication::palette(widget).color(QPalette::Text));
    widget->setPalette(palette);
    if (auto* line = AsLine(widget))
    {
        line->setReadOnly(readOnly);
        line->setPlaceholderText(placeholder);
        line->setAlignment(alignment == 1   ? Qt::AlignHCenter
                           : alignment == 2 ? Qt::AlignRight
                                            : Qt::AlignLeft);
        line->setTextMargins(0, 0, int(addonWidth), 0);
    }
    else if (auto* plain = AsPlain(widget))
    {
        plain->setReadOnly(readOnly);
        plain->setPlaceholderText(placeholder);
    }
}

void UI_TextEdit::SetReadOnlyMode(bool value)
{
    if (value == readOnly)
        return;
    readOnly = value;
    ApplyLook();
}

void UI_TextEdit::SetUnknownStateText(zephcore::UTF16String const& value)
{
    unknownText = value;
    ApplyLook();
}

void UI_TextEdit::KnownValueStateChanged()
{
    if (IsValueUnknown())
    {
        // An unknown value shows no text of its own, only the grey placeholder.
        text.clear();
        committed.clear();
        ApplyText();
    }
    ApplyLook();
}

void UI_TextEdit::OnUserEdit()
{
    if (applying)
        return;
    NodeEventScope scope(this);
    SendInteractiveValueChangedMessage();
}

void UI_TextEdit::CommitEdit()
{
    if (readOnly)
        return;
    zephcore::UTF16String const now = GetValue();
    if (now == committed)
        return;
    NodeEventScope scope(this);
    text = now;
    committed = now;
    SetValueKnown();
    SendValueChangedMessage();
}

void UI_TextEdit::UI_FocusChanged(bool hasFocus)
{
    UI_InteractiveControlView::UI_FocusChanged(hasFocus);
    auto* const line = AsLine(UI_GetWidgetIfMade());
    if (!hasFocus)
    {
        CommitEdit();
        // Left alone, a long value shows its beginning again.
        if (line)
            line->setCursorPosition(0);
    }
    else if (line && !line->hasSelectedText())
    {
        // Focus given by the program types at the end; Tab has selected all
        // already, and a click places the cursor after this.
        line->end(false);
    }
}

void UI_TextEdit::SetSelection(std::pair<int, int> const& range)
{
    QWidget* const widget = UI_GetWidget();
    int const start = std::max(0, std::min(range.first, range.second));
    int const end = std::max(range.first, range.second);
    if (auto* line = AsLine(widget))
    {
        int const length = int(line->text().size());
        line->setSelection(std::min(start, length),
                           std::min(end, length) - std::min(start, length));
    }
    else if (auto* plain = AsPlain(widget))
    {
        QTextCursor cursor = plain->textCursor();
        int const length = plain->document()->characterCount() - 1;
        cursor.setPosition(std::min(start, length));
        cursor.setPosition(std::min(end, length), QTextCursor::KeepAnchor);
        plain->setTextCursor(cursor);
    }
}

std::pair<int, int> UI_TextEdit::GetSelection() const
{
    QWidget* const widget = UI_GetWidgetIfMade();
    if (auto* line = AsLine(widget))
    {
        if (!line->hasSelectedText())
            return {line->cursorPosition(), line->cursorPosition()};
        return {line->selectionStart(), line->selectionEnd()};
    }
    if (auto* plain = AsPlain(widget))
    {
        QTextCursor const cursor = plain->textCursor();
        return {cursor.selectionStart(), cursor.selectionEnd()};
    }
    return {0, 0};
}

void UI_TextEdit::SelectAll()
{
    QWidget* const widget = UI_GetWidget();
    if (auto* line = AsLine(widget))
        line->selectAll();
    else if (auto* plain = AsPlain(widget))
        plain->selectAll();
}

void UI_TextEdit::Cut()
{
    if (!CanCut())
        return;
    QWidget* const widget = UI_GetWidget();
    if (auto* line = AsLine(widget))
        line->cut();
    else if (auto* plain = AsPlain(widget))
        plain->cut();
    OnUserEdit();
}

void UI_TextEdit::Copy()
{
    QWidget* const widget = UI_GetWidget();
    if (auto* line = AsLine(widget))
        line->copy();
    else if (auto* plain = AsPlain(widget))
        plain->copy();
}

void UI_TextEdit::Paste()
{
    if (!CanPaste())
        return;
    QWidget* const widget = UI_GetWidget();
    if (auto* line = AsLine(widget))
        line->paste();
    else if (auto* plain = AsPlain(widget))
        plain->paste();
    OnUserEdit();
}

bool UI_TextEdit::CanCut() const
{
    return !readOnly && CanCopy();
}

bool UI_TextEdit::CanCopy() const
{
    std::pair<int, int> const range = GetSelection();
    return range.second > range.first;
}

bool UI_TextEdit::CanPaste() const
{
    return !readOnly && QApplication::clipboard() && !QApplication::clipboard()->text().isEmpty();
}

void UI_TextEdit::ScrollToSelection()
{
    if (auto* plain = AsPlain(UI_GetWidget()))
        plain->ensureCursorVisible();
}

void UI_TextEdit::ScrollToBegin()
{
    ScrollTo(0);
}

void UI_TextEdit::ScrollTo(int position)
{
    QWidget* const widget = UI_GetWidget();
    if (auto* line = AsLine(widget))
        line->setCursorPosition(std::max(0, position));
    else if (auto* plain = AsPlain(widget))
    {
        QTextCursor cursor = plain->textCursor();
        cursor.setPosition(std::clamp(position, 0, plain->document()->characterCount() - 1));
        plain->setTextCursor(cursor);
        plain->ensureCursorVisible();
    }
}

void UI_TextEdit::ScrollTo(bool up)
{
    if (auto* plain = AsPlain(UI_GetWidget()))
    {
        QScrollBar* bar = plain->verticalScrollBar();
        int const lines = QApplication::wheelScrollLines();
        bar->setValue(bar->value() + (up ? -lines : lines) * bar->singleStep());
    }
}

void UI_TextEdit::SetAddonSubviewWidth(float width)
{
    addonWidth = std::max(0.0f, width);
    ApplyLook();
    PlaceAddon();
}

boost::intrusive_ptr<UI_SubView> UI_TextEdit::GetAddonSubView()
{
    if (!addon)
    {
        addon = new UI_SubView;
        addon->UI_Show(true);
        ChildPushBack(addon);
        PlaceAddon();
    }
    return addon;
}

void UI_TextEdit::PlaceAddon()
{
    if (!addon)
        return;
    RectF const local = UI_GetLocalRectF(false);
    addon->UI_SetLocalRectF(RectF(std::max(0.0f, local.width - addonWidth - 1.0f), 1.0f, addonWidth,
                                  std::max(0.0f, local.height - 2.0f)));
}

void UI_TextEdit::SetCustomTextColor(ColorRGBA const& color)
{
    hasCustomColor = true;
    customColor = color;
    ApplyLook();
}

void UI_TextEdit::ClearCustomTextColor()
{
    hasCustomColor = false;
    ApplyLook();
}

void UI_TextEdit::UI_SizeChanged(RectF const& rect)
{
    UI_InteractiveControlView::UI_SizeChanged(rect);
    PlaceAddon();
}

PointF UI_TextEdit::UI_GetRecommendedSize(Drawbot*)
{
    RectF const local = UI_GetLocalRectF(false);
    return PointF(std::max(local.width, 100.0f),
                  IsMultiLine() ? std::max(local.height, 38.0f) : 21.0f);
}

} // namespace zephui
