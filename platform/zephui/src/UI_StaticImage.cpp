#include "zephui/UI_StaticImage.h"

#include "zephui/Drawbot.h"
#include "zephui/UI_NodeManager.h"

#include <cmath>

namespace zephui
{

void UI_StaticImage::SetImageName(std::string const& name)
{
    imageName = name;
    UI_Invalidate();
}

void UI_StaticImage::SetImageSupplyFunction(ConstMessageCallback const& supply)
{
    imageSupply = supply;
    UI_Invalidate();
}

boost::intrusive_ptr<ImageInterface> UI_StaticImage::GetImage() const
{
    if (imageSupply && *imageSupply)
    {
        Flags<unsigned long> state;
        state.Set(UI_PictureSupplyMessage::kStateDisabled, UI_IsDisabled());
        UI_PictureSupplyMessage message(const_cast<UI_StaticImage*>(this), state,
                                        UI_GetDrawSupplier());
        ConstMessageCallback const supply = imageSupply;
        (*supply)(&message);
        return message.GetImage();
    }
    if (imageName.empty())
        return nullptr;
    return UI_NodeManager::Get()->GetImage(UI_GetDrawSupplier(), imageName);
}

void UI_StaticImage::UI_Draw(Drawbot* drawbot)
{
    boost::intrusive_ptr<ImageInterface> const image = GetImage();
    if (image)
    {
        RectF const local = UI_GetLocalRectF(false);
        drawbot->DrawImage(image.get(),
                           PointF(std::floor((local.width - image->GetWidth()) / 2.0f),
                                  std::floor((local.height - image->GetHeight()) / 2.0f)),
                           UI_IsDisabled() ? 0.4f : 1.0f);
    }
    UI_ControlView::UI_Draw(drawbot);
}

PointF UI_StaticImage::UI_GetRecommendedSize(Drawbot*)
{
    boost::intrusive_ptr<ImageInterface> const image = GetImage();
    return image ? PointF(std::ceil(image->GetWidth()), std::ceil(image->GetHeight()))
                 : PointF(0.0f, 0.0f);
}

} // namespace zephui
