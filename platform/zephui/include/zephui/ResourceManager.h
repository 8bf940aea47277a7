#pragma once
// Named binary resources by type ("PNG", "XML", "EVE") and name. Names are
// found without regard to case, and without their file extension.

#include "zephui/zephui_export.h"
#include <cstdint>
#include <memory>
#include <string>
#include <vector>

namespace zephui
{

// Pointer shapes of DisplayCursor.
enum CursorShape
{
    kCursorArrow = 0,
    kCursorIBeam = 1,
    kCursorWait = 2,
    kCursorCross = 3,
    kCursorPointingHand = 4,
    kCursorForbidden = 5,
    kCursorOpenHand = 6,
    kCursorClosedHand = 7,
    kCursorMove = 8,
    kCursorHelp = 9,
    kCursorResizeHorizontal = 10,
    kCursorResizeVertical = 11,
};

class ZEPHUI_EXPORT ResourceManager
{
public:
    virtual ~ResourceManager() = default;
    // False (and data emptied) if there is no such resource.
    virtual bool GetBinary(std::string const& type, std::string const& name,
                           std::vector<std::uint8_t>& data) const = 0;
    virtual bool HasBinary(std::string const& type, std::string const& name) const = 0;
    // The names of one type, in upper case, sorted.
    virtual void GetResourceDataNames(std::string const& type,
                                      std::vector<std::string>& names) const = 0;
    // Sets the pointer shape (CursorShape) for the node under the pointer or
    // the running capture.
    virtual void DisplayCursor(int shape) const;
};

// Resources of one library: Qt resources compiled into it under
// ":/<library>/<TYPE>/<NAME>.<ext>", or any folder laid out the same way.
class ZEPHUI_EXPORT OS_ResourceManager : public ResourceManager
{
public:
    // root: ":/zephui" or a folder path; holds one subfolder per type.
    explicit OS_ResourceManager(std::string root);
    // The resources of the shared library that contains this address (any
    // function or object of it); its file name, without "lib" and the
    // suffixes, names the root: libzephui.so gives ":/zephui".
    explicit OS_ResourceManager(void const* addressInLibrary);
    ~OS_ResourceManager() override;

    bool GetBinary(std::string const& type, std::string const& name,
                   std::vector<std::uint8_t>& data) const override;
    bool HasBinary(std::string const& type, std::string const& name) const override;
    void GetResourceDataNames(std::string const& type,
                              std::vector<std::string>& names) const override;
    std::string const& GetRoot() const { return root; }

    // The root for a library address, as the constructor finds it.
    static std::string RootForAddress(void const* addressInLibrary);

private:
    struct Index;
    std::string FindPath(std::string const& type, std::string const& name) const;
    std::string root;
    std::unique_ptr<Index> index;
};

} // namespace zephui
