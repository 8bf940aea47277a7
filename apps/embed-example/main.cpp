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

#include <cstdio>

int main(int argc, char** argv)
{
    QApplication app(argc, argv);
    bool checkFailed = false;
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
        // "--check" (the installed-package test): show once and say whether
        // the file's metadata was read, then leave.
        if (app.arguments().contains(QStringLiteral("--check")))
        {
            QCoreApplication::processEvents();
            std::printf("metadata read: %s\n", provider->HasMetadata() ? "yes" : "no");
            checkFailed = !provider->HasMetadata();
        }
        else
            app.exec();
    }
    zephmetadataui::Terminate(); // after the last view is gone
    return checkFailed ? 1 : 0;
}
