#include "zephui/Messages.h"

#include "zephui/Drawbot.h"

namespace zephui
{

UI_PictureSupplyMessage::UI_PictureSupplyMessage(UI_ControlView* control,
                                                 Flags<unsigned long> stateFlags,
                                                 SupplierInterface const* supplier)
    : control(control), stateFlags(stateFlags), supplier(supplier)
{
}

UI_PictureSupplyMessage::~UI_PictureSupplyMessage() = default;

void UI_PictureSupplyMessage::SetImage(boost::intrusive_ptr<ImageInterface> const& answer) const
{
    image = answer;
}

boost::intrusive_ptr<ImageInterface> UI_PictureSupplyMessage::GetImage() const
{
    return image;
}

} // namespace zephui
