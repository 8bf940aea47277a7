#include "zephmetadataui/TriSectionSplitterView.h"

#include "contracts/Toolkit.h"
#include "widgets/TriSectionSplitterViewCapture.h"

#include <boost/bind/bind.hpp>
#include <boost/make_shared.hpp>

#include <algorithm>
#include <cassert>

namespace zephmetadataui
{

namespace
{

float const kBarHeight = 6.0f;
// Both bars, as the height sums count them.
float const kBarsHeight = 12.0f;
float const kHeaderHeight = UI_SectionView::kDefaultHeaderHeight;
// Below this the percentages still divide this much: the panels overflow the
// view rather than shrink to nothing.
float const kMinimumHeight = kHeaderHeight * 3.0f + 6.0f;

} // namespace

TriSectionSplitterView::TriSectionSplitterView(UI_SubViewPtr const& c0, UI_SubViewPtr const& c1,
                                               UI_SubViewPtr const& c2, SectionFactory factory)
{
    for (MetadataSectionViewPtr& section : sections)
        section = factory ? factory() : new MetadataSectionView(UTF16String(), true);
    sectionChanged = boost::make_shared<boost::function<void(MetadataSectionViewPtr)>>(
        boost::bind(&TriSectionSplitterView::OnSectionChanged, this, boost::placeholders::_1));
    for (MetadataSectionViewPtr const& section : sections)
        section->SetSectionViewChangedFxn(sectionChanged);
    std::array<UI_SubViewPtr, 3> const contents{c0, c1, c2};
    for (std::size_t i = 0; i < sections.size(); ++i)
        if (contents[i])
            sections[i]->GetContentView()->ChildPushBack(contents[i]);
    for (MetadataSectionViewPtr const& section : sections)
    {
        ChildPushBack(section);
        section->UI_Show(true);
    }
}

TriSectionSplitterView::~TriSectionSplitterView()
{
    // The panels may outlive this view in the host's hands.
    sectionChanged->clear();
}

MetadataSectionViewPtr TriSectionSplitterView::GetSectionView(int index) const
{
    if (index < 0 || index >= int(sections.size()))
        return nullptr;
    return sections[std::size_t(index)];
}

float TriSectionSplitterView::GetSplitterPercentage(bool first) const
{
    return first ? firstPercentage : secondPercentage;
}

void TriSectionSplitterView::SetSplitterPercentage(bool first, float value)
{
    (first ? firstPercentage : secondPercentage) = value;
    Relayout(first);
}

void TriSectionSplitterView::SetSectionImages(int index, boost::intrusive_ptr<ImageInterface> first,
                                              boost::intrusive_ptr<ImageInterface> second)
{
    assert(index >= 0 && index < 3);
    sections[std::size_t(index)]->SetImages(std::move(first), std::move(second));
}

void TriSectionSplitterView::SetSectionPrimaryText(int index, UTF16String const& text)
{
    assert(index >= 0 && index < 3);
    sections[std::size_t(index)]->SetPrimaryText(text);
}

void TriSectionSplitterView::SetSectionSecondaryText(int index, UTF16String const& text)
{
    assert(index >= 0 && index < 3);
    sections[std::size_t(index)]->SetSecondaryText(text);
}

void TriSectionSplitterView::SetSectionViewChangedFxn(SectionViewChangedFxn const& fxn)
{
    sectionViewChangedFxn = fxn;
}

void TriSectionSplitterView::SetSplitterChangedFxn(SplitterChangedFxn const& fxn)
{
    splitterChangedFxn = fxn;
}

bool TriSectionSplitterView::IsOpen(int index) const
{
    return sections[std::size_t(index)]->GetOpened();
}

float TriSectionSplitterView::OpenFraction() const
{
    float fraction = 1.0f;
    if (!IsOpen(0))
        fraction -= firstPercentage;
    if (!IsOpen(1))
        fraction -= secondPercentage;
    if (!IsOpen(2))
        fraction -= 1.0f - firstPercentage - secondPercentage;
    return fraction;
}

float TriSectionSplitterView::Available() const
{
    return std::max(UI_GetLocalRectF(false).height - kBarsHeight - kHeaderHeight * 3.0f,
                    kMinimumHeight);
}

float TriSectionSplitterView::SectionHeight(int index) const
{
    if (!IsOpen(index))
        return kHeaderHeight;
    if (index < 2)
    {
        float const fraction = OpenFraction();
        if (fraction == 0.0f)
            return kHeaderHeight;
        float const share = index == 0 ? firstPercentage : secondPercentage;
        return std::max(share / fraction * Available(), 0.0f) + kHeaderHeight;
    }
    // The last panel takes what the others leave, so rounding leaves no gap.
    float const height = std::max(UI_GetLocalRectF(false).height, kMinimumHeight);
    return std::max(height - SectionHeight(0) - SectionHeight(1) - kBarsHeight - kHeaderHeight,
                    0.0f) +
           kHeaderHeight;
}

float TriSectionSplitterView::SectionTop(int index) const
{
    float top = UI_GetLocalRectF(false).top;
    for (int i = 0; i < index; ++i)
        top += SectionHeight(i) + kBarHeight;
    return top;
}

RectF TriSectionSplitterView::SplitterRect(int index) const
{
    RectF const local = UI_GetLocalRectF(false);
    // One pixel over the panel above.
    return RectF(local.left, SectionTop(index) + SectionHeight(index) - 1.0f, local.width,
                 kBarHeight);
}

void TriSectionSplitterView::UI_SizeChanged(RectF const& rect)
{
    for (int i = 0; i < 3; ++i)
        sections[std::size_t(i)]->UI_SetLocalRectF(
            RectF(rect.left, SectionTop(i), rect.width, SectionHeight(i)));
}

void TriSectionSplitterView::Relayout(bool first)
{
    UI_SizeChanged(UI_GetLocalRectF(false));
    if (splitterChangedFxn && *splitterChangedFxn)
        (*splitterChangedFxn)(first);
}

void TriSectionSplitterView::OnSectionChanged(MetadataSectionViewPtr const& section)
{
    UI_SizeChanged(UI_GetLocalRectF(false));
    auto const found = std::find(sections.begin(), sections.end(), section);
    int const index = found == sections.end() ? -1 : int(found - sections.begin());
    if (sectionViewChangedFxn && *sectionViewChangedFxn)
        (*sectionViewChangedFxn)(index);
}

void TriSectionSplitterView::UI_Draw(Drawbot* drawbot)
{
    UI_SubView::UI_Draw(drawbot);
    SkinSet const* skins = UI_GetCurrentSkinSet();
    auto const skin = skins ? boost::dynamic_pointer_cast<SplitterViewSkin>(
                                  skins->GetSkinWithMap("UI_SplitterView"))
                            : nullptr;
    for (int i = 0; i < 2; ++i)
    {
        RectF const bar = SplitterRect(i);
        if (skin)
            skin->Draw(drawbot, UI_GetThemeProvider(), bar, !(bar.height > bar.width));
        else
            UI_SplitterView::Draw(bar, drawbot);
    }
}

bool TriSectionSplitterView::UI_DoCursor(UI_Node* node, PointF const& point, Flags<unsigned long>)
{
    if (node != this || !(SplitterRect(0).Contains(point) || SplitterRect(1).Contains(point)))
        return false;
    UI_NodeManager::Get()->GetResourceManager()->DisplayCursor(zephui::kCursorResizeVertical);
    return true;
}

bool TriSectionSplitterView::UI_DoMouseEvent(UI_Node* node, MouseEvent const& event)
{
    if (node != this || !event.IsAction(PointerEvent::kActionPress) ||
        event.GetButton() != MouseEvent::kButtonLeft)
        return false;
    bool const open0 = IsOpen(0), open1 = IsOpen(1), open2 = IsOpen(2);
    PointF const point = event.GetPosition();
    bool first = false;
    if (SplitterRect(0).Contains(point) && open0 && (open1 || open2))
        first = true;
    else if (SplitterRect(1).Contains(point) && open2 && (open0 || open1))
        first = false;
    else
        return false;
    UI_NodeManager::Get()->BeginInputCapture(
        boost::intrusive_ptr<InputCapture>(new TriSectionSplitterViewCapture(this, event, first)));
    return true;
}

} // namespace zephmetadataui
