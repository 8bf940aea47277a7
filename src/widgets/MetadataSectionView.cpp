#include "zephmetadataui/MetadataSectionView.h"

#include "contracts/Toolkit.h"

#include <cmath>

namespace zephmetadataui
{

namespace
{

char const* const kSeparatorKey = "$$$/zephmetadataui/TriSectionSplitterView/StringSeparator=: ";

float const kTextLeft = 24.0f;
float const kTextBaseline = 14.5f;
float const kFontSize = 11.0f;
float const kGap = 3.0f;
// The image is centred in the header's first 18 pixels, two pixels down.
float const kImageBand = 18.0f;

} // namespace

MetadataSectionView::MetadataSectionView(UTF16String const& label, bool opened)
    : UI_SectionView(label, opened)
{
    SetHeaderHeight(kDefaultHeaderHeight);
}

void MetadataSectionView::SetImages(boost::intrusive_ptr<ImageInterface> first,
                                    boost::intrusive_ptr<ImageInterface> second)
{
    firstImage = std::move(first);
    secondImage = std::move(second);
}

void MetadataSectionView::SetPrimaryText(UTF16String const& text)
{
    primaryText = text;
    UI_Invalidate();
}

void MetadataSectionView::SetSecondaryText(UTF16String const& text)
{
    secondaryText = text;
    UI_Invalidate();
}

void MetadataSectionView::SetSectionViewChangedFxn(SectionViewChangedFxn const& fxn)
{
    sectionViewChangedFxn = fxn;
}

void MetadataSectionView::NotifySectionViewChanged()
{
    if (sectionViewChangedFxn && *sectionViewChangedFxn)
        (*sectionViewChangedFxn)(MetadataSectionViewPtr(this));
}

void MetadataSectionView::DoSetOpened(bool open)
{
    UI_SectionView::DoSetOpened(open);
    NotifySectionViewChanged();
}

void MetadataSectionView::UI_SizeChanged(RectF const& rect)
{
    UI_SectionView::UI_SizeChanged(rect);
    UI_SubViewPtr const content = GetContentView();
    if (UI_Node* first = content->ChildGet(0))
        first->UI_SetLocalRectF(content->UI_GetLocalRectF(false));
}

void MetadataSectionView::UI_Draw(Drawbot* drawbot)
{
    UI_SectionView::UI_Draw(drawbot);
    RectF const local = UI_GetLocalRectF(false);
    // Under the dark theme this is the fixed light blue-grey (0.85, 0.85, 0.9)
    // of the header's design; a fixed colour would vanish on a light header.
    ColorRGBA const textColor = GetColor(zephui::kColor_SectionHeaderText);
    SupplierInterface const* supplier = drawbot->GetSupplier();
    auto const bold = supplier->NewFont(GetFontName(0), kFontSize, "Bold");
    drawbot->DrawString(primaryText, PointF(kTextLeft, kTextBaseline), bold.get(), textColor);
    float const primaryWidth = bold->GetStringWidth(primaryText);

    ImageInterface const* image = nullptr;
    if (firstImage && secondImage)
        image = GetIconType() == 2 ? firstImage.get() : secondImage.get();
    else
        image = firstImage ? firstImage.get() : secondImage.get();

    if (!secondaryText.empty())
    {
        static UTF16String const separator = zephcore::Localizer::Get().GetString(kSeparatorKey);
        drawbot->DrawString(separator, PointF(kTextLeft + primaryWidth, kTextBaseline), bold.get(),
                            textColor);
        float const left = kTextLeft + primaryWidth + bold->GetStringWidth(separator) + kGap;
        float room = local.left + local.width - left - kGap;
        if (image)
            room -= image->GetWidth() + kGap;
        if (room > 0.0f)
        {
            auto const plain = supplier->NewFont(GetFontName(0), kFontSize, "");
            drawbot->DrawString(secondaryText, PointF(left, kTextBaseline), plain.get(), textColor,
                                room, kTruncationMiddle);
        }
    }

    if (image)
    {
        float const imageLeft = std::floor(local.left + local.width - (image->GetWidth() + kGap));
        float const imageTop =
            std::floor((kImageBand - image->GetHeight()) * 0.5f + local.top + 1.0f + 1.0f);
        // An image that would touch the primary text is left out.
        if (imageLeft > primaryWidth + kTextLeft + 5.0f)
            drawbot->GetSurface()->DrawImage(image, PointF(imageLeft, imageTop), 1.0f);
    }
}

} // namespace zephmetadataui
