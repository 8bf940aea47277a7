#include "History.h"

#include "ExempiSupport.h"

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <ctime>
#include <random>
#include <vector>

namespace zephtemporalxmp
{
namespace detail
{

namespace
{

constexpr char const* kHistory = "History";

std::vector<std::string> Steps(std::string const& part)
{
    std::vector<std::string> steps;
    std::string step;
    for (char c : part)
    {
        if (c == '/' || c == ':')
        {
            if (!step.empty())
                steps.push_back(step);
            step.clear();
        }
        else if (c != ' ' && c != '\t')
        {
            step += c;
        }
    }
    if (!step.empty())
        steps.push_back(step);
    return steps;
}

std::string Now()
{
    std::time_t const now = std::time(nullptr);
    std::tm local{};
    localtime_r(&now, &local);
    long const offset = local.tm_gmtoff / 60;
    char text[64];
    std::snprintf(text, sizeof text, "%04d-%02d-%02dT%02d:%02d:%02d%c%02ld:%02ld",
                  local.tm_year + 1900, local.tm_mon + 1, local.tm_mday, local.tm_hour,
                  local.tm_min, local.tm_sec, offset < 0 ? '-' : '+', std::labs(offset) / 60,
                  std::labs(offset) % 60);
    return text;
}

struct Event
{
    std::string instanceID;
    std::string changed;
    bool hasChanged = false;
};

std::vector<Event> ReadHistory(XmpPtr meta)
{
    std::string const event = PrefixOf(kResourceEventNS, "stEvt");
    std::vector<Event> events;
    int const count = CountItems(meta, kMediaManagementNS, kHistory);
    for (int i = 1; i <= count; ++i)
    {
        std::string const item = ItemPath(kHistory, static_cast<std::size_t>(i)) + "/" + event;
        Event entry;
        GetText(meta, kMediaManagementNS, item + "instanceID", entry.instanceID);
        entry.hasChanged = GetText(meta, kMediaManagementNS, item + "changed", entry.changed);
        events.push_back(std::move(entry));
    }
    return events;
}

bool AnyPartOverlaps(std::string const& changed, std::string const& part)
{
    std::size_t start = 0;
    while (start <= changed.size())
    {
        std::size_t end = changed.find(';', start);
        if (end == std::string::npos)
            end = changed.size();
        std::string const one = changed.substr(start, end - start);
        if (one.find_first_not_of(" \t") != std::string::npos && PartsOverlap(one, part))
            return true;
        start = end + 1;
    }
    return false;
}

} // namespace

std::string CurrentInstanceID(XmpPtr meta)
{
    std::string id;
    GetText(meta, kMediaManagementNS, "InstanceID", id);
    return id;
}

std::string NewInstanceID()
{
    static std::mt19937_64 generator{std::random_device{}()};
    std::uint64_t high = generator();
    std::uint64_t low = generator();
    // Version 4, variant 1.
    high = (high & ~0xF000ULL) | 0x4000ULL;
    low = (low & ~(3ULL << 62)) | (2ULL << 62);
    char text[48];
    std::snprintf(text, sizeof text, "xmp.iid:%08llx-%04llx-%04llx-%04llx-%012llx",
                  static_cast<unsigned long long>(high >> 32),
                  static_cast<unsigned long long>((high >> 16) & 0xFFFF),
                  static_cast<unsigned long long>(high & 0xFFFF),
                  static_cast<unsigned long long>(low >> 48),
                  static_cast<unsigned long long>(low & 0xFFFFFFFFFFFFULL));
    return text;
}

bool RecordSave(XmpPtr meta, std::string const& instanceID, std::string const& part)
{
    if (!xmp_set_property(meta, kMediaManagementNS, "InstanceID", instanceID.c_str(), 0))
        return false;
    std::uint32_t options = 0;
    std::string unused;
    bool const present = GetText(meta, kMediaManagementNS, kHistory, unused, &options);
    if (present && !(options & XMP_PROP_VALUE_IS_ARRAY))
        return true;
    if (!present && !SetNode(meta, kMediaManagementNS, kHistory, "", kSeqOptions))
        return true;
    std::size_t const count =
        static_cast<std::size_t>(CountItems(meta, kMediaManagementNS, kHistory));
    std::string const item = ItemPath(kHistory, count + 1);
    if (!InsertStructItem(meta, kMediaManagementNS, kHistory, count + 1, count))
        return true;
    std::string const field = item + "/" + PrefixOf(kResourceEventNS, "stEvt");
    std::string const agent = "zephtemporalxmp " ZEPH_VERSION;
    xmp_set_property(meta, kMediaManagementNS, (field + "action").c_str(), "saved", 0);
    xmp_set_property(meta, kMediaManagementNS, (field + "instanceID").c_str(), instanceID.c_str(),
                     0);
    xmp_set_property(meta, kMediaManagementNS, (field + "when").c_str(), Now().c_str(), 0);
    xmp_set_property(meta, kMediaManagementNS, (field + "softwareAgent").c_str(), agent.c_str(), 0);
    xmp_set_property(meta, kMediaManagementNS, (field + "changed").c_str(), part.c_str(), 0);
    return true;
}

bool PartChangedSince(XmpPtr meta, std::string const& instanceID, std::string const& part)
{
    std::string const current = CurrentInstanceID(meta);
    if (instanceID.empty())
        return true;
    if (instanceID == current)
        return false;
    std::vector<Event> const events = ReadHistory(meta);
    std::size_t from = 0;
    for (std::size_t i = events.size(); i-- > 0;)
    {
        if (events[i].instanceID == instanceID)
        {
            from = i + 1;
            break;
        }
    }
    if (from == 0)
        return true; // an instance the history does not know
    for (std::size_t i = from; i < events.size(); ++i)
    {
        // An event that names no part may have changed anything.
        if (!events[i].hasChanged || AnyPartOverlaps(events[i].changed, part))
            return true;
        if (events[i].instanceID == current)
            return false;
    }
    // The tree moved on to an instance its history does not record.
    return true;
}

bool PartsOverlap(std::string const& a, std::string const& b)
{
    std::vector<std::string> const stepsA = Steps(a);
    std::vector<std::string> const stepsB = Steps(b);
    std::size_t const common = std::min(stepsA.size(), stepsB.size());
    for (std::size_t i = 0; i < common; ++i)
    {
        if (stepsA[i] != stepsB[i])
            return false;
    }
    return true;
}

} // namespace detail
} // namespace zephtemporalxmp
