#pragma once
// Messages that controls send, and the lists of shared callables they send
// them to. Whoever registers a callable keeps the shared holder; it leaves by
// emptying the callable in place, and the list then skips it.

#include "zephui/Geometry.h"
#include "zephui/zephui_export.h"

#include <boost/function.hpp>
#include <boost/intrusive_ptr.hpp>
#include <boost/shared_ptr.hpp>

#include <vector>

namespace zephui
{

class UI_ControlView;
class SupplierInterface;
class ImageInterface;

class ZEPHUI_EXPORT Message
{
public:
    virtual ~Message() = default;
};

// A message whose sender only asks for something (an image, say).
class ZEPHUI_EXPORT ConstMessage
{
public:
    virtual ~ConstMessage() = default;
};

using MessageCallback = boost::shared_ptr<boost::function<void(Message*)>>;
using ConstMessageCallback = boost::shared_ptr<boost::function<void(ConstMessage*)>>;

class ZEPHUI_EXPORT UI_ControlMessage : public Message
{
public:
    explicit UI_ControlMessage(UI_ControlView* control) : control(control) {}
    UI_ControlView* GetControl() const { return control; }

private:
    UI_ControlView* control = nullptr;
};

// Sent by buttons and checkboxes; carries the modifiers held at the click.
class ZEPHUI_EXPORT UI_ButtonChangedMessage : public UI_ControlMessage
{
public:
    UI_ButtonChangedMessage(UI_ControlView* control, Flags<unsigned char> modKeys)
        : UI_ControlMessage(control), modKeys(modKeys)
    {
    }
    Flags<unsigned char> GetModKeys() const { return modKeys; }

private:
    Flags<unsigned char> modKeys;
};

// Asks the image supply function for a picture. State bit 0 is set for a
// button that is on; the answer goes to SetImage.
class ZEPHUI_EXPORT UI_PictureSupplyMessage : public ConstMessage
{
public:
    enum StateBits : unsigned long
    {
        kStateOn = 0x01,
        kStateDown = 0x02,
        kStateDisabled = 0x04,
        kStateRollover = 0x08,
    };

    UI_PictureSupplyMessage(UI_ControlView* control, Flags<unsigned long> stateFlags,
                            SupplierInterface const* supplier);
    ~UI_PictureSupplyMessage() override;

    UI_ControlView* GetControl() const { return control; }
    Flags<unsigned long> GetStateFlags() const { return stateFlags; }
    SupplierInterface const* GetDrawSupplier() const { return supplier; }
    void SetImage(boost::intrusive_ptr<ImageInterface> const& image) const;
    boost::intrusive_ptr<ImageInterface> GetImage() const;

private:
    UI_ControlView* control = nullptr;
    Flags<unsigned long> stateFlags;
    SupplierInterface const* supplier = nullptr;
    mutable boost::intrusive_ptr<ImageInterface> image;
};

// An ordered list of shared callables. Notify walks a snapshot, and tests each
// holder just before calling it, so a holder emptied during the walk (even by
// an earlier callable) is skipped; emptied holders are dropped at the next Add.
template <class Signature> class CallbackList
{
public:
    using Holder = boost::shared_ptr<boost::function<Signature>>;

    void Add(Holder const& holder)
    {
        Prune();
        if (holder)
            holders.push_back(holder);
    }
    void Remove(Holder const& holder)
    {
        for (auto it = holders.begin(); it != holders.end(); ++it)
            if (*it == holder)
            {
                holders.erase(it);
                return;
            }
    }
    void Clear() { holders.clear(); }
    bool IsEmpty() const
    {
        for (auto const& h : holders)
            if (h && *h)
                return false;
        return true;
    }
    std::size_t Count() const { return holders.size(); }

    template <class... Args> void Notify(Args&&... args) const
    {
        std::vector<Holder> const snapshot = holders;
        for (auto const& h : snapshot)
            if (h && *h)
                (*h)(args...);
    }

private:
    void Prune()
    {
        std::vector<Holder> kept;
        kept.reserve(holders.size());
        for (auto& h : holders)
            if (h && *h)
                kept.push_back(h);
        holders.swap(kept);
    }

    std::vector<Holder> holders;
};

} // namespace zephui
