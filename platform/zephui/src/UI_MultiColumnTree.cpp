// The on-screen side of UI_MultiColumnTree: which rows are on screen, the
// recycled widgets they borrow, scrolling, drawing and the user's clicks. The
// row model is in UI_MultiColumnTreeRows.cpp.

#include "zephui/UI_MultiColumnTree.h"

#include "ControlSupport.h"
#include "TreeRowSlot.h"
#include "zephcore/QtStrings.h"
#include "zephui/Drawbot.h"
#include "zephui/QtDrawing.h"
#include "zephui/Theme.h"
#include "zephui/UI_MultiColumnTreeHeaderRow.h"
#include "zephui/UI_ScrollView.h"

#include <QApplication>
#include <QPainter>
#include <QWidget>

#include <algorithm>
#include <cmath>

namespace zephui
{

namespace
{

constexpr float kDisclosureWidth = 14.0f;
constexpr float kIndentStep = 14.0f;

} // namespace

// ---- Rows -------------------------------------------------------------------

boost::intrusive_ptr<UI_SubView> UI_MultiColumnTreeRow::GetCellView(unsigned long column) const
{
    if (!slot || column >= slot->cellViews.size())
        return nullptr;
    return slot->cellViews[column];
}

// ---- Construction and look --------------------------------------------------

UI_MultiColumnTree::UI_MultiColumnTree(unsigned long columns, float height)
    : rowHeight(height > 0.0f ? height : GetDefaultRowHeight()),
      columnWidths(std::max(1ul, columns), 100.0f), autoResizable(std::max(1ul, columns), false)
{
    scrollView = new UI_ScrollView(UI_ScrollView::kScrollVertical);
    scrollView->SetMovesContent(false);
    scrollView->GetScrollBarY()->SetLineStep(rowHeight);
    scrollView->UI_Show(true);
    ChildPushBack(scrollView);
    contentView = scrollView->GetContentView();
    scrollView->SetScrollChangedCallback([this] { OnScrolled(); });
}

UI_MultiColumnTree::~UI_MultiColumnTree()
{
    QObject::disconnect(focusWatch);
    scrollView->SetScrollChangedCallback({});
    for (RowPtr const& row : topRows)
        DetachSubtree(row.get());
    // The scroll view may outlive the tree; its row views must not.
    DropAllSlots();
    if (headerRow)
        headerRow->tree = nullptr;
}

void UI_MultiColumnTree::Init(Flags<unsigned long> flags)
{
    initFlags = flags.Get();
    UI_SizeChanged(UI_GetLocalRectF(false));
}

void UI_MultiColumnTree::SetSupportUserSelectableRows(bool selectable)
{
    userSelectableRows = selectable;
}

void UI_MultiColumnTree::SetDrawGridLines(bool horizontal, bool vertical)
{
    if (horizontal == horizontalGridLines && vertical == verticalGridLines)
        return;
    horizontalGridLines = horizontal;
    verticalGridLines = vertical;
    ++geometryGeneration;
    RequestLayout(true);
}

void UI_MultiColumnTree::SetIndicateFocus(bool indicate)
{
    indicateFocus = indicate;
    for (Row* row : rowsOnScreen)
        if (row->slot)
            row->slot->rowView->UI_Invalidate();
}

void UI_MultiColumnTree::SetNumberOfColumns(unsigned long columns)
{
    columns = std::max(1ul, columns);
    if (columns == columnWidths.size())
        return;
    columnWidths.resize(columns, 100.0f);
    autoResizable.resize(columns, false);
    DropAllSlots(); // every slot has one cell view per column
    RequestLayout(true);
}

void UI_MultiColumnTree::SetColumnWidth(unsigned long column, float width)
{
    if (column >= columnWidths.size() || columnWidths[column] == width)
        return;
    columnWidths[column] = std::max(1.0f, width);
    ++geometryGeneration;
    RequestLayout(true);
}

float UI_MultiColumnTree::GetColumnWidth(unsigned long column) const
{
    return column < columnWidths.size() ? columnWidths[column] : 0.0f;
}

void UI_MultiColumnTree::SetAutoResizableColumns(bool all)
{
    std::fill(autoResizable.begin(), autoResizable.end(), all);
    ++geometryGeneration;
    RequestLayout(true);
}

void UI_MultiColumnTree::SetAutoResizableColumns(std::vector<unsigned long> const& columns)
{
    std::fill(autoResizable.begin(), autoResizable.end(), false);
    for (unsigned long column : columns)
        if (column < autoResizable.size())
            autoResizable[column] = true;
    ++geometryGeneration;
    RequestLayout(true);
}

bool UI_MultiColumnTree::DrawsDisclosure() const
{
    return (initFlags & kTreeFlagNoDisclosure) == 0;
}

float UI_MultiColumnTree::GetIndentForDepth(int depth) const
{
    return DrawsDisclosure() ? 2.0f + kIndentStep * float(depth) + kDisclosureWidth : 2.0f;
}

std::vector<float> UI_MultiColumnTree::ColumnLefts(float rowWidth) const
{
    std::vector<float> widths = columnWidths;
    float total = 0.0f;
    for (float w : widths)
        total += w;
    std::size_t const autoCount =
        std::size_t(std::count(autoResizable.begin(), autoResizable.end(), true));
    if (autoCount > 0 && rowWidth > total)
    {
        float const share = (rowWidth - total) / float(autoCount);
        for (std::size_t i = 0; i < widths.size(); ++i)
            if (autoResizable[i])
                widths[i] += share;
    }
    std::vector<float> lefts(widths.size() + 1, 0.0f);
    for (std::size_t i = 0; i < widths.size(); ++i)
        lefts[i + 1] = lefts[i] + widths[i];
    return lefts;
}

boost::intrusive_ptr<UI_ScrollView> UI_MultiColumnTree::GetScrollView() const
{
    return scrollView;
}

void UI_MultiColumnTree::SetRowVisibilityChangedCallback(
    RowVisibilityChangedCallback const& callback)
{
    visibilityChanged = callback;
}

void UI_MultiColumnTree::SetRowCellKindCallback(RowCellKindCallback const& callback)
{
    cellKind = callback;
}

void UI_MultiColumnTree::SetDrawCellOfRowCallback(DrawCellOfRowCallback const& callback)
{
    drawCell = callback;
    for (Row* row : rowsOnScreen)
        if (row->slot)
            row->slot->rowView->UI_Invalidate();
}

float UI_MultiColumnTree::GetCellTextFontSize() const
{
    return zephui::GetFontSize(kText_Main_Large);
}

void UI_MultiColumnTree::DrawCellString(Drawbot* drawbot, UI_MultiColumnTreeRow* /*row*/,
                                        RectF const& cellRect, zephcore::UTF16String const& text,
                                        int colorID, float fontSize, float leftInset,
                                        std::string const& fontName,
                                        zephcore::UTF16String const& secondText,
                                        unsigned long flags, int truncation) const
{
    if (!drawbot || cellRect.IsEmpty())
        return;
    SupplierInterface const* supplier = drawbot->GetSupplier();
    auto const font = supplier->NewFont(
        fontName, fontSize > 0.0f ? fontSize : GetCellTextFontSize(), (flags & 1) ? 1 : 0);
    float const baseline = std::floor(
        cellRect.top + (cellRect.height + font->GetAscent() - font->GetDescent()) / 2.0f);
    float const left = cellRect.left + leftInset;
    float const room = cellRect.GetRight() - left - 2.0f;
    if (room <= 0.0f)
        return;
    drawbot->PushClip(cellRect);
    drawbot->DrawString(text, PointF(left, baseline), font.get(), GetColor(colorID), room,
                        truncation);
    if (!secondText.empty())
    {
        float const used = font->GetStringWidth(text) + 6.0f;
        if (used < room)
            drawbot->DrawString(secondText, PointF(left + used, baseline), font.get(),
                                GetColor(kColor_TextSecondary), room - used, truncation);
    }
    drawbot->PopClip();
}

void UI_MultiColumnTree::SetRowDisclosureChangedCallback(
    RowDisclosureChangedCallback const& callback)
{
    disclosureChanged = callback;
}

UI_MultiColumnTreeHeaderRow* UI_MultiColumnTree::GetHeaderRow()
{
    if (!headerRow)
    {
        headerRow = new UI_MultiColumnTreeHeaderRow(this);
        headerRow->UI_Show(true);
        ChildPushBack(headerRow);
        UI_SizeChanged(UI_GetLocalRectF(false));
    }
    return headerRow.get();
}

void UI_MultiColumnTree::UI_SizeChanged(RectF const& rect)
{
    UI_SubView::UI_SizeChanged(rect);
    float const inset = (initFlags & kTreeFlagFrame) ? 1.0f : 0.0f;
    float const header = headerRow ? UI_MultiColumnTreeHeaderRow::kHeight : 0.0f;
    if (headerRow)
        headerRow->UI_SetLocalRectF(
            RectF(inset, inset, std::max(0.0f, rect.width - 2 * inset), header));
    scrollView->UI_SetLocalRectF(RectF(inset, inset + header,
                                       std::max(0.0f, rect.width - 2 * inset),
                                       std::max(0.0f, rect.height - 2 * inset - header)));
    ++geometryGeneration;
    RequestLayout(true);
}

void UI_MultiColumnTree::UI_Draw(Drawbot* drawbot)
{
    RectF const local = UI_GetLocalRectF(false);
    drawbot->FillRect(local, GetColor(kColor_TreeBackground));
    if (initFlags & kTreeFlagFrame)
        drawbot->StrokeRect(RectF(0.5f, 0.5f, local.width - 1.0f, local.height - 1.0f),
                            GetColor(kColor_PanelFrame));
    UI_SubView::UI_Draw(drawbot);
}

// ---- Layout -----------------------------------------------------------------

UI_MultiColumnTree::ScDeferLayoutForOpenAndCloseRow::ScDeferLayoutForOpenAndCloseRow(
    UI_MultiColumnTree* owner)
    : tree(owner)
{
    if (tree)
        ++tree->deferDepth;
}

UI_MultiColumnTree::ScDeferLayoutForOpenAndCloseRow::ScDeferLayoutForOpenAndCloseRow(
    boost::intrusive_ptr<UI_MultiColumnTree> const& owner)
    : ScDeferLayoutForOpenAndCloseRow(owner.get())
{
}

UI_MultiColumnTree::ScDeferLayoutForOpenAndCloseRow::~ScDeferLayoutForOpenAndCloseRow()
{
    if (tree && --tree->deferDepth == 0)
        tree->LayoutRows();
}

void UI_MultiColumnTree::RequestLayout(bool now)
{
    layoutPending = true;
    if (now && deferDepth == 0)
        LayoutRows();
}

void UI_MultiColumnTree::LayoutRows()
{
    if (deferDepth > 0)
    {
        layoutPending = true;
        return;
    }
    if (inLayout)
    {
        layoutPending = true; // a callback changed the rows: go round once more
        return;
    }
    boost::intrusive_ptr<UI_MultiColumnTree> const keep(this);
    inLayout = true;
    int rounds = 0;
    do
    {
        layoutPending = false;
        LayoutOnce();
    } while (layoutPending && ++rounds < 8);
    layoutPending = false;
    inLayout = false;
}

void UI_MultiColumnTree::UpdateExtent()
{
    RectF const port = scrollView->GetViewportRectF();
    ignoreScroll = true;
    scrollView->SetContentRectF(
        RectF(0.0f, 0.0f, port.width, float(openedRows.size()) * rowHeight));
    ignoreScroll = false;
}

void UI_MultiColumnTree::LayoutOnce()
{
    ++layoutCount;
    WatchFocus();
    UpdateExtent();
    RectF const port = scrollView->GetViewportRectF();
    float const scrollY = scrollView->GetScrollPosition().y;
    std::size_t const count = openedRows.size();

    ++layoutStamp;
    std::vector<Row*> arrivedOnScreen;
    std::size_t first = 0;
    std::vector<Row*> now;
    if (count > 0 && port.height > 0.0f)
    {
        first = std::size_t(std::max(0.0f, std::floor(scrollY / rowHeight)));
        std::size_t last =
            std::size_t(std::max(1.0f, std::ceil((scrollY + port.height) / rowHeight))) - 1;
        last = std::min(last, count - 1);
        if (first <= last)
        {
            EnsureDisplayIndicesUpTo(last);
            now.assign(displayOrder.begin() + std::ptrdiff_t(first),
                       displayOrder.begin() + std::ptrdiff_t(last + 1));
        }
    }
    for (Row* row : now)
        row->layoutStamp = layoutStamp;

    // Rows that left: their cells go back to the pool, except those of the
    // row that holds the focus, which stay alive out of sight.
    Row* const focused = FocusedRow();
    std::vector<RowPtr> left;
    for (Row* row : rowsOnScreen)
    {
        if (row->layoutStamp == layoutStamp)
            continue;
        row->onScreen = false;
        left.push_back(row);
        if (row == focused && row->slot && row->inOpenedList)
            parkedRow = row;
        else
            ReleaseSlot(row);
    }
    if (parkedRow && parkedRow->layoutStamp != layoutStamp && parkedRow != focused)
    {
        ReleaseSlot(parkedRow);
        parkedRow = nullptr;
    }
    if (parkedRow && parkedRow->layoutStamp == layoutStamp)
        parkedRow = nullptr; // back on screen with the cells it kept

    std::vector<RowPtr> arrived;
    for (Row* row : now)
    {
        row->onScreen = true;
        // A row on screen shows whether it has children: make them now, not
        // while painting.
        if (row->childrenDeferred)
            MakeDeferredChildRows(row);
        if (!row->slot)
        {
            row->slot = AcquireSlot(row);
            row->slot->rowView->row = row;
            arrived.push_back(row);
        }
    }
    rowsOnScreen = std::move(now);

    for (std::size_t i = 0; i < rowsOnScreen.size(); ++i)
        PlaceSlot(rowsOnScreen[i], float(first + i) * rowHeight - scrollY, port.width);
    if (parkedRow)
        PlaceSlot(parkedRow, -2.0f * rowHeight, port.width);

    for (RowPtr const& row : left)
        NotifyVisibility(row.get());
    for (RowPtr const& row : arrived)
        if (row->onScreen && row->tree == this)
            NotifyVisibility(row.get());
}

void UI_MultiColumnTree::NotifyVisibility(Row* row)
{
    RowVisibilityChangedCallback const callback = visibilityChanged; // it may be replaced meanwhile
    if (callback && *callback)
        (*callback)(row);
}

void UI_MultiColumnTree::OnScrolled()
{
    if (ignoreScroll)
        return;
    RequestLayout(true);
}

// ---- Slots ------------------------------------------------------------------

TreeRowSlot* UI_MultiColumnTree::AcquireSlot(Row* row)
{
    std::uintptr_t const kind = cellKind && *cellKind ? (*cellKind)(row) : 0;
    // A slot that held a row of this kind, else the last one freed. Few
    // slots are free at a time: about a screenful. Without one of its kind, a
    // new slot is made while there are fewer than three screenfuls, so that
    // the rows of two pages scrolled to and fro all find cells of their kind.
    auto found = freeSlots.end();
    if (kind != 0)
        for (auto it = freeSlots.rbegin(); it != freeSlots.rend(); ++it)
            if ((*it)->cellKind == kind)
            {
                found = std::prev(it.base());
                break;
            }
    if (found == freeSlots.end() && !freeSlots.empty() &&
        (kind == 0 || allSlots.size() >= 3 * rowsOnScreen.size() + 8))
        found = freeSlots.end() - 1;
    if (found != freeSlots.end())
    {
        TreeRowSlot* const slot = *found;
        freeSlots.erase(found);
        slot->cellKind = kind;
        return slot;
    }
    auto slot = std::make_unique<TreeRowSlot>();
    slot->rowView = new TreeRowView(this);
    slot->rowView->UI_Show(true);
    // Into the content view first: a parentless widget would become a window.
    contentView->ChildPushBack(slot->rowView);
    for (std::size_t i = 0; i < columnWidths.size(); ++i)
    {
        boost::intrusive_ptr<UI_SubView> cell(new UI_SubView);
        cell->UI_Show(true);
        slot->rowView->ChildPushBack(cell);
        slot->cellViews.push_back(cell);
    }
    slot->cellKind = kind;
    allSlots.push_back(std::move(slot));
    return allSlots.back().get();
}

void UI_MultiColumnTree::ReleaseSlot(Row* row)
{
    TreeRowSlot* const slot = row->slot;
    if (!slot)
        return;
    row->slot = nullptr;
    slot->rowView->row = nullptr;
    // Empty, so that the next row never shows what this one held, unless the
    // owner refills cells by kind; the pooled row view waits out of sight
    // rather than hidden, which is cheaper.
    if (!cellKind || !*cellKind)
        for (auto const& cell : slot->cellViews)
            cell->DeleteChildren();
    RectF const rect = slot->rowView->UI_GetLocalRectF(true);
    slot->rowView->UI_SetLocalRectF(RectF(rect.left, -4.0f * rowHeight, rect.width, rect.height));
    freeSlots.push_back(slot);
}

void UI_MultiColumnTree::DropAllSlots()
{
    for (Row* row : rowsOnScreen)
    {
        ReleaseSlot(row);
        row->onScreen = false;
    }
    rowsOnScreen.clear();
    if (parkedRow)
        ReleaseSlot(parkedRow);
    parkedRow = nullptr;
    for (auto const& slot : allSlots)
        contentView->ChildRequestRemove(slot->rowView.get());
    freeSlots.clear();
    allSlots.clear();
}

void UI_MultiColumnTree::PlaceSlot(Row* row, float y, float width)
{
    TreeRowSlot* const slot = row->slot;
    slot->rowView->UI_SetLocalRectF(RectF(0.0f, y, width, rowHeight));
    slot->rowView->UI_Invalidate();
    if (slot->placedDepth == row->depth && slot->placedWidth == width &&
        slot->placedGeneration == geometryGeneration)
        return;
    slot->placedDepth = row->depth;
    slot->placedWidth = width;
    slot->placedGeneration = geometryGeneration;
    std::vector<float> const lefts = ColumnLefts(width);
    float const cellHeight = rowHeight - (horizontalGridLines ? 1.0f : 0.0f);
    std::size_t const columns = slot->cellViews.size();
    for (std::size_t c = 0; c < columns; ++c)
    {
        float left = lefts[c] + (c == 0 ? GetIndentForDepth(row->depth) : 0.0f);
        float right = c + 1 == columns ? std::max(lefts[c + 1], width) : lefts[c + 1];
        if (verticalGridLines && c + 1 < columns)
            right -= 1.0f;
        slot->cellViews[c]->UI_SetLocalRectF(
            RectF(left, 0.0f, std::max(1.0f, right - left), cellHeight));
    }
}

// ---- Focus ------------------------------------------------------------------

UI_MultiColumnTree::Row* UI_MultiColumnTree::FocusedRow() const
{
    QWidget const* const focus = QApplication::focusWidget();
    if (!focus)
        return nullptr;
    auto holds = [focus](Row* row)
    {
        QWidget const* const widget =
            row && row->slot ? row->slot->rowView->UI_GetWidgetIfMade() : nullptr;
        return widget && widget->isAncestorOf(focus);
    };
    if (holds(parkedRow))
        return parkedRow;
    for (Row* row : rowsOnScreen)
        if (holds(row))
            return row;
    return nullptr;
}

void UI_MultiColumnTree::WatchFocus()
{
    QWidget* const widget = contentView->UI_GetWidgetIfMade();
    if (!widget || watchedWidget == widget || !qApp)
        return;
    watchedWidget = widget;
    QObject::disconnect(focusWatch);
    focusWatch =
        QObject::connect(qApp, &QApplication::focusChanged, widget, [this] { OnFocusChanged(); });
}

void UI_MultiColumnTree::OnFocusChanged()
{
    if (parkedRow && FocusedRow() != parkedRow)
        RequestLayout(true); // the row kept for its focus can go back to the pool
    if (indicateFocus)
        for (Row* row : rowsOnScreen)
            if (row->slot)
                row->slot->rowView->UI_Invalidate();
}

// ---- Visibility, scrolling, disclosure ---------------------------------------

std::vector<UI_MultiColumnTree::RowPtr> UI_MultiColumnTree::GetVisibleRows()
{
    if (layoutPending && deferDepth == 0)
        LayoutRows();
    return std::vector<RowPtr>(rowsOnScreen.begin(), rowsOnScreen.end());
}

bool UI_MultiColumnTree::IsRowVisible(RowPtr const& row)
{
    if (layoutPending && deferDepth == 0 && !inLayout)
        LayoutRows();
    return row && row->tree == this && row->onScreen && row->inOpenedList;
}

void UI_MultiColumnTree::ScrollRowIntoView(RowPtr const& row, bool alignTop, int margin)
{
    if (!row || row->tree != this || !row->inOpenedList)
        return;
    std::size_t const index = DisplayIndexOf(row.get());
    if (index == Row::kNoIndex)
        return;
    UpdateExtent(); // the extent may lag behind rows added in a deferred scope
    float const port = scrollView->GetViewportRectF().height;
    float const top = float(index) * rowHeight;
    float const bottom = top + rowHeight;
    float y = scrollView->GetScrollPosition().y;
    if (alignTop || top - float(margin) < y)
        y = top - float(margin);
    else if (bottom + float(margin) > y + port)
        y = bottom + float(margin) - port;
    scrollView->ScrollTo(PointF(0.0f, y));
    if (layoutPending && deferDepth == 0)
        LayoutRows();
}

void UI_MultiColumnTree::ToggleRowByUser(UI_MultiColumnTreeRow* row)
{
    if (!row || row->tree != this)
        return;
    RowPtr const keep(row);
    bool const open = !row->open;
    if (open)
        OpenRow(keep);
    else
        CloseRow(keep);
    RowDisclosureChangedCallback const callback = disclosureChanged;
    if (callback && *callback)
        (*callback)(row, open);
}

// ---- Header -----------------------------------------------------------------

UI_MultiColumnTreeHeaderRow::UI_MultiColumnTreeHeaderRow(UI_MultiColumnTree* owner) : tree(owner) {}

UI_MultiColumnTreeHeaderColumn* UI_MultiColumnTreeHeaderRow::GetColumnAt(unsigned long index)
{
    if (!tree || index >= tree->GetNumberOfColumns())
        return nullptr;
    while (columns.size() <= index)
        columns.push_back(std::make_unique<UI_MultiColumnTreeHeaderColumn>());
    return columns[index].get();
}

void UI_MultiColumnTreeHeaderRow::ShowSortIndicator(bool show)
{
    sortIndicator = show;
    UI_Invalidate();
}

void UI_MultiColumnTreeHeaderRow::UI_Draw(Drawbot* drawbot)
{
    RectF const local = UI_GetLocalRectF(false);
    drawbot->FillRect(local, GetColor(kColor_SectionHeaderBackground));
    utils::DrawLineRect(drawbot, RectF(0.0f, local.height - 1.0f, local.width, 1.0f),
                        GetColor(kColor_TreeGridLine));
    QPainter* const painter = drawbot->GetPainter();
    if (!tree || !painter)
        return;
    float const rowWidth = std::max(0.0f, local.width - UI_ScrollBar::GetDefaultSize());
    std::vector<float> const lefts = tree->ColumnLefts(rowWidth);
    painter->save();
    painter->setFont(ControlFont());
    painter->setPen(ToQColor(GetColor(kColor_SectionHeaderText)));
    for (std::size_t c = 0; c + 1 < lefts.size(); ++c)
    {
        if (c > 0)
            utils::DrawLineRect(drawbot, RectF(lefts[c] - 1.0f, 3.0f, 1.0f, local.height - 6.0f),
                                GetColor(kColor_TreeGridLine));
        if (c < columns.size())
            painter->drawText(QRectF(lefts[c] + 4.0f, 0.0f,
                                     std::max(0.0f, lefts[c + 1] - lefts[c] - 8.0f), local.height),
                              Qt::AlignLeft | Qt::AlignVCenter,
                              painter->fontMetrics().elidedText(
                                  zephcore::ToQString(columns[c]->GetColumnName()), Qt::ElideRight,
                                  int(lefts[c + 1] - lefts[c] - 8.0f)));
    }
    painter->restore();
}

// ---- Row view ---------------------------------------------------------------

RectF TreeRowView::DisclosureRect() const
{
    if (!row || !tree->DrawsDisclosure())
        return RectF();
    float const right = tree->GetIndentForDepth(row->GetDepth());
    return RectF(right - kDisclosureWidth, 0.0f, kDisclosureWidth, UI_GetLocalRectF(false).height);
}

void TreeRowView::UI_Draw(Drawbot* drawbot)
{
    if (!row)
        return;
    RectF const local = UI_GetLocalRectF(false);
    if (tree->GetInitFlags() & UI_MultiColumnTree::kTreeFlagAlternateRowColors)
    {
        std::size_t const index = row->displayIndex;
        if (index != UI_MultiColumnTreeRow::kNoIndex && index % 2 == 1)
            drawbot->FillRect(local, GetColor(kColor_TreeRowAlternate));
    }
    ColorRGBA const grid = GetColor(kColor_TreeGridLine);
    if (tree->DrawsHorizontalGridLines())
        utils::DrawLineRect(drawbot, RectF(0.0f, local.height - 1.0f, local.width, 1.0f), grid);
    if (tree->DrawsVerticalGridLines())
    {
        std::vector<float> const lefts = tree->ColumnLefts(local.width);
        for (std::size_t c = 1; c + 1 < lefts.size(); ++c)
            utils::DrawLineRect(drawbot, RectF(lefts[c] - 1.0f, 0.0f, 1.0f, local.height), grid);
    }
    if (UI_MultiColumnTree::DrawCellOfRowCallback const callback = tree->GetDrawCellOfRowCallback();
        callback && *callback)
    {
        std::vector<float> const lefts = tree->ColumnLefts(local.width);
        float const height = local.height - (tree->DrawsHorizontalGridLines() ? 1.0f : 0.0f);
        for (std::size_t c = 0; c + 1 < lefts.size(); ++c)
        {
            float const left =
                lefts[c] + (c == 0 ? tree->GetIndentForDepth(row->GetDepth()) : 0.0f);
            float const right =
                c + 2 == lefts.size() ? std::max(lefts[c + 1], local.width) : lefts[c + 1];
            (*callback)(drawbot, row, static_cast<unsigned long>(c),
                        RectF(left, 0.0f, std::max(0.0f, right - left), height));
        }
    }
    if (row->CountChildRows() > 0 && tree->DrawsDisclosure())
    {
        RectF const box = DisclosureRect();
        utils::DrawDisclosureTriangle(
            drawbot, PointF(box.left + box.width / 2.0f, box.top + box.height / 2.0f),
            row->IsOpen(), GetColor(kColor_TreeDisclosure));
    }
    if (tree->IndicatesFocus())
    {
        QWidget const* const widget = UI_GetWidgetIfMade();
        QWidget const* const focus = QApplication::focusWidget();
        if (widget && focus && widget->isAncestorOf(focus))
            drawbot->StrokeRect(RectF(0.5f, 0.5f, local.width - 1.0f, local.height - 1.0f),
                                GetColor(kColor_FocusRing));
    }
}

bool TreeRowView::UI_DoMouseEvent(UI_Node* /*node*/, MouseEvent const& event)
{
    if (!row || !event.IsAction(MouseEvent::kActionPress) ||
        !event.IsButton(MouseEvent::kButtonLeft))
        return false;
    if (row->CountChildRows() == 0 || !DisclosureRect().Contains(event.GetPosition()))
        return false;
    tree->ToggleRowByUser(row);
    return true;
}

} // namespace zephui
