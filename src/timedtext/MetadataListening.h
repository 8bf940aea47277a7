#pragma once
// How a timed text view follows its provider: one listener, moved to the new
// provider when the host replaces it, and the new metadata read at once.

#include "contracts/Model.h"

#include <boost/function.hpp>
#include <boost/make_shared.hpp>
#include <boost/shared_ptr.hpp>

namespace zephmetadataui
{

using MetaDataListener = boost::shared_ptr<boost::function<void(__XMPMeta__*)>>;

// Replaces provider by newProvider (nothing happens when they are the same),
// moves the listener over, and calls changed with the new metadata.
inline void FollowProvider(boost::shared_ptr<MetaDataProvider>& provider,
                           boost::shared_ptr<MetaDataProvider> const& newProvider,
                           MetaDataListener& listener,
                           boost::function<void(__XMPMeta__*)> const& changed)
{
    if (newProvider == provider)
        return;
    provider = newProvider;
    // Emptied in place: the old provider may still hold it, and skips it.
    if (listener)
        listener->clear();
    listener.reset();
    if (provider)
    {
        listener = boost::make_shared<boost::function<void(__XMPMeta__*)>>(changed);
        provider->NotifyWhenMetaDataChanged(listener);
    }
    MetaDataReadAccess const access(provider);
    changed(*access);
}

} // namespace zephmetadataui
