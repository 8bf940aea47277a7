// MetadataView: the rapid find, over labels and values folded and
// normalised, with the folded texts kept between keystrokes.

#include "tree/MetadataViewPrivate.h"
#include "zephmetadataui/MetadataView.h"

#include "contracts/Model.h"
#include "tree/TreeToolkit.h"

#include <boost/make_shared.hpp>

namespace zephmetadataui
{

namespace
{

bool IsAscii(UTF16String const& text)
{
    for (unsigned short c : text)
        if (c >= 0x80)
            return false;
    return true;
}

// Folding of ASCII is lower-casing, and ASCII is its own normal form, so most
// values need no trip through the Unicode tables.
UTF16String FoldAndNormalize(UTF16String const& text)
{
    if (IsAscii(text))
    {
        UTF16String folded(text);
        for (unsigned short& c : folded)
            if (c >= 'A' && c <= 'Z')
                c = static_cast<unsigned short>(c + ('a' - 'A'));
        return folded;
    }
    return zephcore::NormalizedString(zephcore::FoldCase(text), zephcore::kNormalizationFormKC);
}

} // namespace

void MetadataView::SetRapidFindString(UTF16String const& text)
{
    UTF16String const folded =
        zephcore::NormalizedString(zephcore::FoldCase(text), zephcore::kNormalizationFormKC);
    if (folded == rapidFindString)
        return;
    rapidFindString = folded;
    PopulateTreeValues();
}

// For a host whose values changed without a report: read them all again.
void MetadataView::RefilterMetadataFieldsForRapidFindString()
{
    d->foldedValues.clear();
    PopulateTreeValues();
}

bool MetadataView::MatchesRapidFindString(UTF16String const& text) const
{
    if (text.size() < rapidFindString.size() && IsAscii(text))
        return false;
    return FoldAndNormalize(text).find(rapidFindString) != UTF16String::npos;
}

bool MetadataView::ValueMatchesRapidFindString(Path const& path)
{
    // A field named through an array (of an empty array) has no value to read.
    if (!provider || zephmetadata::IsPathOfAnyItem(path))
        return false;
    if (provider != d->foldedValuesProvider.lock())
    {
        ForgetFoldedValues();
        d->foldedValuesProvider = provider;
        // Holds a plain pointer: the view removes it before it dies.
        d->foldedValuesListener = boost::make_shared<boost::function<void(__XMPMeta__*)>>(
            [this](__XMPMeta__*) { d->foldedValues.clear(); });
        provider->NotifyWhenMetaDataChanged(d->foldedValuesListener);
    }
    auto known = d->foldedValues.find(path);
    if (known == d->foldedValues.end())
    {
        Private::FoldedValue folded;
        UTF8String value;
        {
            MetaDataReadAccess const access(provider);
            folded.present = GetValue(*access, path, value, nullptr);
        }
        if (folded.present)
            folded.folded = FoldAndNormalize(zephcore::UTF8to16(value));
        known = d->foldedValues.emplace(path, std::move(folded)).first;
    }
    return known->second.present && known->second.folded.find(rapidFindString) != UTF16String::npos;
}

void MetadataView::ForgetFoldedValues()
{
    d->foldedValues.clear();
    ProviderPtr const previous = d->foldedValuesProvider.lock();
    if (previous && d->foldedValuesListener)
        previous->RemoveMetaDataChangedNotification(d->foldedValuesListener);
    // Emptied in place too, in case the provider still calls it.
    if (d->foldedValuesListener)
        d->foldedValuesListener->clear();
    d->foldedValuesListener.reset();
    d->foldedValuesProvider.reset();
}

bool MetadataView::MatchesRapidFindString(EntryPtr const& entry)
{
    Private::FoldedLabel& cached = d->foldedLabels[entry.get()];
    if (cached.folded.empty() || cached.label != entry->label)
    {
        cached.label = entry->label;
        cached.folded = FoldAndNormalize(entry->label);
    }
    return cached.folded.find(rapidFindString) != UTF16String::npos;
}

} // namespace zephmetadataui
