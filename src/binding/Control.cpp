#include "zephmetadataui/Control.h"

namespace zephmetadataui
{

Control::Control(boost::intrusive_ptr<zephui::UI_SubView> const& view,
                 boost::function<void()> const& disconnect)
    : view(view), disconnect(disconnect)
{
}

Control::~Control()
{
    if (disconnect)
        disconnect();
    // Members go in reverse order: the disconnect call first, then the view.
}

namespace
{

template <class Signature>
void EmptyInPlace(boost::shared_ptr<boost::function<Signature>> const& holder)
{
    if (holder && !holder->empty())
        holder->clear();
}

} // namespace

void Disconnect(boost::shared_ptr<boost::function<void(zephui::Message*)>> const& changed,
                boost::shared_ptr<boost::function<void(__XMPMeta__*)>> const& metadataChanged,
                boost::shared_ptr<boost::function<void()>> const& xmpWritingChanged,
                boost::shared_ptr<boost::function<void(zephui::Message*)>> const& extraChanged)
{
    // Emptied in place: the senders still hold the holders, and skip them.
    EmptyInPlace(changed);
    EmptyInPlace(metadataChanged);
    EmptyInPlace(xmpWritingChanged);
    EmptyInPlace(extraChanged);
}

} // namespace zephmetadataui
