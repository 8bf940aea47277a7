// Any bytes as a dialog archive: the archive either builds a dialog whose
// nodes follow a resize, or throws ArchiveError; nothing else.

#include <zephui/ResourceManager.h>
#include <zephui/UI_ArchivedDialog.h>
#include <zephui/UI_TextEdit.h>

#include <QApplication>

#include <cstddef>
#include <cstdint>

using namespace zephui;

namespace
{

// One archive, whatever name is asked for.
class OneArchive : public ResourceManager
{
public:
    bool GetBinary(std::string const& type, std::string const& /*name*/,
                   std::vector<std::uint8_t>& out) const override
    {
        out.clear();
        if (type != "XML")
            return false;
        out = data;
        return true;
    }
    bool HasBinary(std::string const& type, std::string const& /*name*/) const override
    {
        return type == "XML";
    }
    void GetResourceDataNames(std::string const& /*type*/,
                              std::vector<std::string>& names) const override
    {
        names.clear();
    }

    std::vector<std::uint8_t> data;
};

UI_NodePtr Create(zephcore::UTF16String const& className)
{
    if (className != zephcore::AsciiToUTF16("TextEditMultilineWithVerticalScrollbar"))
        return nullptr;
    return new UI_TextEdit(69, 0);
}

} // namespace

extern "C" int LLVMFuzzerInitialize(int* argc, char*** argv)
{
    qputenv("QT_QPA_PLATFORM", "offscreen");
    static QApplication app(*argc, *argv);
    return 0;
}

extern "C" int LLVMFuzzerTestOneInput(std::uint8_t const* data, std::size_t size)
{
    static OneArchive resources;
    resources.data.assign(data, data + size);
    try
    {
        UI_ArchivedDialogPtr const dialog(new UI_ArchivedDialog(
            nullptr, &resources, "fuzz", zephcore::AsciiToUTF16("Fuzz"), HWND(nullptr), 0, Create));
        RectF const size = dialog->UI_GetLocalRectF(false);
        dialog->SetContentSize(size.width + 37.0f, size.height + 23.0f);
    }
    catch (ArchiveError const&)
    {
    }
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    return 0;
}
