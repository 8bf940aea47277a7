// The smallest host: a Qt window that shows the metadata of one file in the
// library's property tree, with a find box. The README quotes this file.

#include <zephmetadata/FileProvider.h>
#include <zephmetadata/PathDefinitions.h>
#include <zephmetadataui/MetadataView.h>
#include <zephmetadataui/Module.h>
#include <zephui/NodeHostWidget.h>

#include <QApplication>
#include <QLineEdit>
#include <QVBoxLayout>

#include <boost/make_shared.hpp>

int main(int argc, char** argv)
{
    QApplication app(argc, argv);
    zephmetadataui::Initialize(); // once, before any view
    {
        // The metadata of the file named on the command line.
        auto provider = boost::make_shared<zephmetadata::FileProvider>(
            zephcore::UTF8to16(std::string_view(argc > 1 ? argv[1] : "")));

        // The property tree over the common schemas, hosted in a QWidget.
        boost::intrusive_ptr<zephmetadataui::MetadataView> view(
            new zephmetadataui::MetadataView(zephmetadata::CommonSchemaDefinitions(), provider));

        QWidget window;
        auto* layout = new QVBoxLayout(&window);
        auto* find = new QLineEdit(&window);
        layout->addWidget(find);
        layout->addWidget(new zephui::NodeHostWidget(view, &window), 1);
        QObject::connect(find, &QLineEdit::textChanged,
                         [view](QString const& text)
                         {
                             view->SetRapidFindString(zephcore::UTF16String(
                                 reinterpret_cast<unsigned short const*>(text.utf16()),
                                 std::size_t(text.size())));
                         });
        window.resize(640, 800);
        window.show();
        app.exec();
    }
    zephmetadataui::Terminate(); // after the last view is gone
    return 0;
}
