#include "DialogTestSupport.h"

#include "dialogs/MetadataDialog.h"

#include <zephmetadata/Access.h>
#include <zephmetadata/XmpMeta.h>

#include <zephui/ModalDriver.h>
#include <zephui/NodeWidget.h>
#include <zephui/PrefManager.h>
#include <zephui/UI_TextEdit.h>

#include <QDir>
#include <QFile>
#include <QLineEdit>
#include <QTest>

#include <boost/make_shared.hpp>

#include <functional>

namespace dialogtest
{

void MapSettings::GetInt(std::string const& key, int& value)
{
    if (auto const found = ints.find(key); found != ints.end())
        value = found->second;
}
void MapSettings::GetBool(std::string const& key, bool& value)
{
    if (auto const found = bools.find(key); found != bools.end())
        value = found->second;
}
bool MapSettings::GetStringList(std::string const& key, std::vector<std::string>& value)
{
    auto const found = lists.find(key);
    if (found == lists.end())
        return false;
    value = found->second;
    return true;
}
void MapSettings::GetString(std::string const& key, std::string& value)
{
    if (auto const found = strings.find(key); found != strings.end())
        value = found->second;
}
void MapSettings::SetInt(std::string const& key, int value)
{
    ints[key] = value;
}
void MapSettings::SetBool(std::string const& key, bool value)
{
    bools[key] = value;
}
void MapSettings::SetStringList(std::string const& key, std::vector<std::string> const& value)
{
    lists[key] = value;
}
void MapSettings::SetString(std::string const& key, std::string const& value)
{
    strings[key] = value;
}

void DialogTest::SetUp()
{
    TreeTest::SetUp();
    ASSERT_TRUE(folder.isValid());
    oldConfigHome = qgetenv("XDG_CONFIG_HOME");
    qputenv("XDG_CONFIG_HOME", folder.filePath(QStringLiteral("config")).toUtf8());
    zephui::PrefManager::SetSettingsFile(
        treetest::U16(folder.filePath(QStringLiteral("places.ini")).toStdString()));
}

void DialogTest::TearDown()
{
    qputenv("XDG_CONFIG_HOME", oldConfigHome);
    TreeTest::TearDown();
}

QString DialogTest::CopyPhoto(QString const& name)
{
    QString const path = folder.filePath(name);
    QFile::copy(QString::fromStdString(treetest::SourcePath("samples/harbour-first-light.jpg")),
                path);
    QFile(path).setPermissions(QFile::ReadOwner | QFile::WriteOwner);
    return path;
}

boost::shared_ptr<zephmetadata::FileProvider> DialogTest::MakeProviderOf()
{
    QString const path = CopyPhoto(QStringLiteral("photo-%1.jpg").arg(++copies));
    return boost::make_shared<zephmetadata::FileProvider>(treetest::U16(path.toStdString()));
}

QString DialogTest::TemplateFolder() const
{
    return folder.filePath(QStringLiteral("config/Velmora/XMP/Metadata Templates"));
}

zephmetadataui::MetadataDialog* DialogOf(QWidget* window)
{
    return dynamic_cast<zephmetadataui::MetadataDialog*>(zephui::NodeForWidget(window));
}

namespace
{

zephui::UI_TextEdit* FirstField(zephui::UI_Node* node)
{
    if (auto* edit = dynamic_cast<zephui::UI_TextEdit*>(node))
        if (!edit->IsMultiLine() && !edit->UI_IsDisabled() &&
            qobject_cast<QLineEdit*>(edit->UI_GetWidget()) &&
            !qobject_cast<QLineEdit*>(edit->UI_GetWidget())->isReadOnly())
            return edit;
    for (std::size_t i = 0; i < node->ChildCount(); ++i)
        if (auto* found = FirstField(node->ChildGet(i)))
            return found;
    return nullptr;
}

} // namespace

std::string TypeIntoFirstField(zephmetadataui::MetadataDialog* dialog, std::string const& text)
{
    zephui::UI_TextEdit* field = dialog ? FirstField(dialog->GetCurrentPage()) : nullptr;
    if (!field)
    {
        ADD_FAILURE() << "no field to type into";
        return {};
    }
    std::string const before = treetest::ToStd(field->GetValue());
    QWidget* widget = field->UI_GetWidget();
    widget->setFocus();
    QTest::keyClick(widget, Qt::Key_A, Qt::ControlModifier);
    zephui::TypeIntoWidget(widget, QString::fromStdString(text));
    QTest::keyClick(widget, Qt::Key_Return);
    return before;
}

std::map<std::string, std::string> Leaves(__XMPMeta__* meta)
{
    std::map<std::string, std::string> leaves;
    if (!meta)
        return leaves;
    for (auto const& [ns, path] : zephmetadata::xmp::TopLevelProperties(meta))
        for (zephmetadata::xmp::Node const& node :
             zephmetadata::xmp::ReadSubtree(meta, ns.c_str(), path.c_str()))
            leaves[node.schemaNamespace + " " + node.path] = node.value;
    return leaves;
}

std::map<std::string, std::string>
LeavesOf(boost::shared_ptr<zephmetadata::MetaDataProvider> const& provider)
{
    zephmetadata::MetaDataReadAccess const access(provider);
    return Leaves(*access);
}

std::map<std::string, std::string> LeavesOfFile(QString const& path)
{
    return LeavesOf(
        boost::make_shared<zephmetadata::FileProvider>(treetest::U16(path.toStdString())));
}

} // namespace dialogtest
