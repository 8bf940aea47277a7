#pragma once
// The ground of the browser's tests: the library started over a configuration
// folder of the test's own, a temporary folder for the files, a window that
// neither asks before closing nor shows message boxes (its warnings are
// collected), and a reader of the files that goes through exempi alone.

#include "BrowserWindow.h"
#include "FormPanel.h"

#include <zephmetadata/Access.h>
#include <zephmetadata/FileProvider.h>
#include <zephmetadata/PathDefinitions.h>
#include <zephmetadata/Values.h>
#include <zephmetadata/XmpMeta.h>
#include <zephmetadataui/MetadataView.h>
#include <zephmetadataui/Module.h>
#include <zephui/ModalDriver.h>
#include <zephui/PrefManager.h>

#include <zephcore/QtStrings.h>

#include <exempi/xmp.h>

#include <boost/make_shared.hpp>

#include <QAction>
#include <QFile>
#include <QLineEdit>
#include <QMenuBar>
#include <QPlainTextEdit>
#include <QTemporaryDir>
#include <QTest>

#include <gtest/gtest.h>

#include <map>

namespace browsertest
{

using zephmetadata::Path;
using zephui::ModalDriver;
using Leaves = std::map<std::string, std::string>;
using ProviderPtr = boost::shared_ptr<zephmetadata::MetaDataProvider>;

inline zephmetadata::UTF8String U8(std::string_view text)
{
    return zephcore::ToUTF8(text);
}

inline QString const kHeadline = QStringLiteral("Boats head out as the season opens");
inline Path const kHeadlinePath(U8("http://ns.adobe.com/photoshop/1.0/"), U8("Headline"));

class BrowserFixture : public testing::Test
{
protected:
    void SetUp() override
    {
        ASSERT_TRUE(folder.isValid());
        // The custom definitions, the kept preferences and the windows' places
        // go here; set before the library starts, which loads the custom
        // schemas found there.
        oldConfig = qgetenv("XDG_CONFIG_HOME");
        qputenv("XDG_CONFIG_HOME", folder.filePath("config").toUtf8());
        zephui::PrefManager::SetSettingsFile(zephcore::ToUTF16(folder.filePath("places.ini")));
        zephmetadataui::Initialize();
        window = MakeWindow();
    }
    void TearDown() override
    {
        window.reset();
        zephmetadataui::Terminate();
        qputenv("XDG_CONFIG_HOME", oldConfig);
    }
    std::unique_ptr<browser::BrowserWindow> MakeWindow()
    {
        auto made = std::make_unique<browser::BrowserWindow>();
        made->SetWarningSink([this](QString const& text) { warnings << text; });
        made->SetCloseQuestion([] { return QMessageBox::Discard; });
        return made;
    }

    // A writable copy of a sample file in the folder.
    QString CopySample(QString const& name, QString const& as = QString())
    {
        QString const target = folder.filePath(as.isEmpty() ? name : as);
        QFile::copy(QStringLiteral(ZEPH_SOURCE_DIR "/samples/") + name, target);
        QFile::setPermissions(target, QFile::ReadOwner | QFile::WriteOwner | QFile::ReadGroup);
        return target;
    }
    // Opens these files or folders and waits until every file is read.
    void Open(QStringList const& paths)
    {
        window->Open(paths);
        window->Loader().WaitForAll();
    }
    void Trigger(QString const& menuItem)
    {
        for (QAction* action : window->menuBar()->findChildren<QAction*>())
            if (action->text() == menuItem)
                return action->trigger();
        ADD_FAILURE() << "no menu item " << menuItem.toStdString();
    }

    // Shows the window, tall enough for every schema row, with every schema
    // open and the tree narrowed to rows holding the text, so that the rows a
    // test wants are on screen.
    void Find(QString const& text)
    {
        window->resize(1280, 1600);
        window->show();
        ASSERT_TRUE(QTest::qWaitForWindowExposed(window.get()));
        auto const schemas = zephmetadata::CommonSchemaDefinitions();
        window->MetadataPanel()->SetOpenedSchemaRows({schemas.begin(), schemas.end()});
        window->FindBox()->clear();
        QTest::keyClicks(window->FindBox(), text);
        QCoreApplication::processEvents();
    }
    // The value field of the tree that shows this text.
    QLineEdit* TreeField(QString const& text) const
    {
        QWidget* const tree = window->MetadataPanel()->UI_GetWidget();
        for (QLineEdit* field : tree ? tree->findChildren<QLineEdit*>() : QList<QLineEdit*>())
            if (field->isVisible() && field->text() == text)
                return field;
        return nullptr;
    }
    // Types over a field's text, as a user does, and commits with Enter.
    static void TypeOver(QWidget* field, QString const& text)
    {
        field->setFocus();
        QTest::keyClick(field, Qt::Key_A, Qt::ControlModifier);
        QTest::keyClicks(field, text);
        QTest::keyClick(field, Qt::Key_Return);
    }
    // The text field of the form panel that shows this text, or this grey
    // placeholder when it has none of its own.
    QWidget* FormField(QString const& text) const
    {
        for (QWidget* field : window->Forms()->findChildren<QWidget*>())
        {
            bool const plain = qobject_cast<QPlainTextEdit*>(field);
            QString const own = field->property(plain ? "plainText" : "text").toString();
            if ((plain || qobject_cast<QLineEdit*>(field)) && field->isVisible() &&
                (own.isEmpty() ? field->property("placeholderText").toString() : own) == text)
                return field;
        }
        return nullptr;
    }
    // The value the browser holds for the file at this row.
    std::string Held(int row, Path const& path) const
    {
        return ValueOf(window->DocumentAt(row)->Provider(), path);
    }
    // Every leaf of the packet the browser holds for the file at this row.
    Leaves HeldLeaves(int row) const
    {
        std::string packet;
        zephmetadata::xmp::SerializeToBuffer(
            *zephmetadata::MetaDataReadAccess(window->DocumentAt(row)->Provider()), packet);
        return LeavesOf(xmp_new(packet.c_str(), packet.size()));
    }

    // Sets a value as an edit does, through the provider the views use.
    static void Edit(ProviderPtr const& provider, Path const& path, char const* value)
    {
        zephmetadata::MetaDataUpdateAccess access(provider);
        ASSERT_TRUE(zephmetadata::SetValue(*access, path, U8(value)));
        access.AddChange(path);
    }
    static std::string ValueOf(ProviderPtr const& provider, Path const& path)
    {
        zephmetadata::UTF8String value;
        zephmetadata::GetValue(*zephmetadata::MetaDataReadAccess(provider), path, value, nullptr);
        return zephcore::ToStdString(value);
    }
    // A value as another reader of the file sees it now.
    static std::string ValueInFile(QString const& file, Path const& path)
    {
        return ValueOf(boost::make_shared<zephmetadata::FileProvider>(zephcore::ToUTF16(file)),
                       path);
    }
    // Every leaf of a file's XMP as exempi alone reads it: "namespace path"
    // to its value.
    static Leaves FileLeaves(QString const& path)
    {
        XmpFilePtr file = xmp_files_open_new(QFile::encodeName(path).constData(),
                                             XmpOpenFileOptions(XMP_OPEN_READ | XMP_OPEN_ONLYXMP));
        XmpPtr const xmp = file ? xmp_files_get_new_xmp(file) : nullptr;
        if (file)
            xmp_files_close(file, XMP_CLOSE_NOOPTION), xmp_files_free(file);
        return LeavesOf(xmp);
    }
    // What differs from before to after, but the date a save stamps, as it
    // must: "key = value" or "key removed".
    static std::vector<std::string> Changes(Leaves const& before, Leaves const& after)
    {
        std::vector<std::string> changed;
        for (auto const& [key, value] : after)
            if ((!before.count(key) || before.at(key) != value) &&
                key.find(" xmp:MetadataDate") == std::string::npos)
                changed.push_back(key + " = " + value);
        for (auto const& [key, value] : before)
            if (!after.count(key))
                changed.push_back(key + " removed");
        return changed;
    }
    static void WriteFile(QString const& path, QByteArray const& bytes)
    {
        QFile file(path);
        ASSERT_TRUE(file.open(QIODevice::WriteOnly));
        file.write(bytes);
    }
    // A property of a language alternative with its default text.
    static QString Alt(QString const& property, QString const& text)
    {
        return "<" + property + "><rdf:Alt><rdf:li xml:lang='x-default'>" + text +
               "</rdf:li></rdf:Alt></" + property + ">";
    }
    // A sidecar whose description has these attributes and this content, with
    // the dc, xmp and photoshop prefixes declared.
    static void WriteSidecar(QString const& path, QString const& attributes, QString const& content)
    {
        WriteFile(path, ("<x:xmpmeta xmlns:x='adobe:ns:meta/'><rdf:RDF "
                         "xmlns:rdf='http://www.w3.org/1999/02/22-rdf-syntax-ns#'><rdf:Description "
                         "rdf:about='' xmlns:dc='http://purl.org/dc/elements/1.1/' "
                         "xmlns:xmp='http://ns.adobe.com/xap/1.0/' "
                         "xmlns:photoshop='http://ns.adobe.com/photoshop/1.0/' " +
                         attributes + ">" + content + "</rdf:Description></rdf:RDF></x:xmpmeta>")
                            .toUtf8());
    }

    QTemporaryDir folder;
    std::unique_ptr<browser::BrowserWindow> window;
    QStringList warnings;

private:
    static Leaves LeavesOf(XmpPtr xmp)
    {
        Leaves leaves;
        if (!xmp)
            return leaves;
        XmpIteratorPtr it = xmp_iterator_new(xmp, nullptr, nullptr, XMP_ITER_JUSTLEAFNODES);
        XmpStringPtr schema = xmp_string_new(), name = xmp_string_new(), value = xmp_string_new();
        uint32_t options = 0;
        while (xmp_iterator_next(it, schema, name, value, &options))
            leaves[std::string(xmp_string_cstr(schema)) + " " + xmp_string_cstr(name)] =
                xmp_string_cstr(value);
        xmp_string_free(schema), xmp_string_free(name), xmp_string_free(value);
        xmp_iterator_free(it), xmp_free(xmp);
        return leaves;
    }

    QByteArray oldConfig;
};

inline QByteArray Bytes(QString const& path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

} // namespace browsertest
