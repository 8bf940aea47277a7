#pragma once
// An image, drawn centred in the node. The picture comes from the image
// supply function if there is one (asked with a UI_PictureSupplyMessage at
// each draw), else from the toolkit's images under the image name.

#include "zephui/UI_ControlView.h"
#include "zephui/zephui_export.h"

#include <string>

namespace zephui
{

class ImageInterface;

class ZEPHUI_EXPORT UI_StaticImage : public UI_ControlView
{
public:
    UI_StaticImage() = default;

    void SetImageName(std::string const& name);
    std::string const& GetImageName() const { return imageName; }
    void SetImageSupplyFunction(ConstMessageCallback const& supply);
    // The picture that would be drawn now; null if there is none.
    boost::intrusive_ptr<ImageInterface> GetImage() const;

    void UI_Draw(Drawbot* drawbot) override;
    PointF UI_GetRecommendedSize(Drawbot* drawbot) override;

private:
    std::string imageName;
    ConstMessageCallback imageSupply;
};

using UI_StaticImagePtr = boost::intrusive_ptr<UI_StaticImage>;

} // namespace zephui
