// Dialogs, message boxes, input and confirmation boxes and file dialogs, run
// modally and driven from inside their run by a ModalDriver as a user would;
// window places kept on screen and across runs; the desktop shim.

#include "ControlTestWindow.h"

#include "zephui/Desktop.h"
#include "zephui/FileDialogs.h"
#include "zephui/MessageBoxes.h"
#include "zephui/ModalDriver.h"
#include "zephui/MonitorInfo.h"
#include "zephui/PrefManager.h"
#include "zephui/UI_Dialog.h"
#include "zephui/UI_TextEdit.h"

#include "zephcore/QtStrings.h"

#include <QApplication>
#include <QDesktopServices>
#include <QFile>
#include <QFileDialog>
#include <QInputDialog>
#include <QTemporaryDir>

using namespace zephui;
using zephcore::ToQString;
using zephcore::ToUTF16;

namespace
{

// A small dialog: a text field, OK and Cancel, that counts its closings.
class CountingDialog : public UI_Dialog
{
public:
    explicit CountingDialog(HWND parent = nullptr) : UI_Dialog(ToUTF16("Counting"), parent)
    {
        UI_SetLocalRectF(RectF(100, 100, 300, 120));
        content->UI_SetLayoutBinding(kBindRightEdgeToParentRight | kBindBottomEdgeToParentBottom);
        zephtest::AddShown(this, content, RectF(0, 0, 300, 120));
        SetButtons(Add(new UI_TextButton(ToUTF16("OK")), RectF(120, 90, 80, 19), "ok"),
                   Add(new UI_TextButton(ToUTF16("Cancel")), RectF(210, 90, 80, 19), "cancel"));
    }
    void DefaultCloseOk() override
    {
        ++okCloses;
        typed = field->GetValue();
        UI_Dialog::DefaultCloseOk();
    }
    void DefaultCloseCancel() override
    {
        ++cancelCloses;
        UI_Dialog::DefaultCloseCancel();
    }
    template <class Node>
    boost::intrusive_ptr<Node> Add(Node* node, RectF const& rect, std::string const& id)
    {
        node->UI_SetNodeID(id);
        return zephtest::AddShown(content.get(), boost::intrusive_ptr<Node>(node), rect);
    }

    UI_SubViewPtr content{new UI_SubView};
    boost::intrusive_ptr<UI_TextEdit> field = Add(new UI_TextEdit, RectF(10, 10, 280, 22), "field");
    int okCloses = 0;
    int cancelCloses = 0;
    zephcore::UTF16String typed;
};

// Reads back a window's title and text as a user would see them.
struct Seen
{
    QString title;
    QString text;
    QMessageBox::Icon icon = QMessageBox::NoIcon;
};

ModalDriver::Action Look(Seen& seen)
{
    return [&seen](QWidget* window)
    {
        seen.title = window->windowTitle();
        if (auto* box = qobject_cast<QMessageBox*>(window))
        {
            seen.text = box->text();
            seen.icon = box->icon();
        }
        else if (auto* input = qobject_cast<QInputDialog*>(window))
            seen.text = input->labelText();
    };
}

// Receives the addresses the desktop is asked to open.
class UrlCatcher : public QObject
{
    Q_OBJECT
public:
    UrlCatcher()
    {
        for (char const* scheme : {"file", "https"})
            QDesktopServices::setUrlHandler(QString::fromLatin1(scheme), this, "Open");
    }
    ~UrlCatcher() override
    {
        for (char const* scheme : {"file", "https"})
            QDesktopServices::unsetUrlHandler(QString::fromLatin1(scheme));
    }
    QList<QUrl> opened;
public slots:
    void Open(QUrl const& url) { opened.push_back(url); }
};

} // namespace

TEST(DialogTest, EachWayOfClosingGivesItsResultThroughTheOverridableCloses)
{
    struct Case
    {
        char const* name;
        ModalDriver::Action action;
        int result, oks, cancels;
        char const* typed; // what the dialog took on OK
    };
    Case const cases[] = {
        {"typed, then OK",
         ModalDriver::Sequence({ModalDriver::TypeInto("field", QStringLiteral("Keeper 2")),
                                ModalDriver::PressNode("ok")}),
         kDialogResultOK, 1, 0, "Keeper 2"},
        {"Cancel button", ModalDriver::PressNode("cancel"), kDialogResultCancel, 0, 1, ""},
        {"Return presses the default button", ModalDriver::Return(), kDialogResultOK, 1, 0, ""},
        {"Escape", ModalDriver::Escape(), kDialogResultCancel, 0, 1, ""},
        {"close box", [](QWidget* window) { window->close(); }, kDialogResultCancel, 0, 1, ""},
    };
    for (Case const& c : cases)
    {
        boost::intrusive_ptr<CountingDialog> dialog(new CountingDialog);
        ModalDriver driver;
        driver.Then(c.action);
        EXPECT_EQ(dialog->RunModal(), c.result) << c.name;
        EXPECT_EQ(dialog->okCloses, c.oks) << c.name;
        EXPECT_EQ(dialog->cancelCloses, c.cancels) << c.name;
        EXPECT_EQ(dialog->typed, ToUTF16(c.typed)) << c.name;
        EXPECT_FALSE(dialog->UI_IsShown()) << c.name;
        EXPECT_EQ(driver.Unexpected(), 0) << c.name;
    }
    // A window that opens with no action left is cancelled and counted.
    boost::intrusive_ptr<CountingDialog> dialog(new CountingDialog);
    ModalDriver driver;
    EXPECT_EQ(dialog->RunModal(), kDialogResultCancel);
    EXPECT_EQ(driver.Unexpected(), 1);
}

// Size limits hold for the content and the user's resize; a window's place
// is read and set whole from any node in it, and centring uses the screen.
TEST(DialogTest, SizeLimitsHoldAndThePlaceIsTheWindows)
{
    boost::intrusive_ptr<CountingDialog> dialog(new CountingDialog);
    dialog->SetMinimumSize(400, 200);
    // The content grows with the window by its binding.
    EXPECT_EQ(dialog->content->UI_GetLocalRectF(true), RectF(0, 0, 400, 200));
    dialog->SetMaximumSize(400, 10000);
    dialog->SetContentSize(900, 500);
    dialog->UI_GetWidget()->resize(900, 500); // as the user would drag it
    EXPECT_EQ(dialog->UI_GetWidget()->size(), QSize(400, 500));

    UI_SetGlobalStructureRect(dialog.get(), RectF(40, 50, 320, 240));
    EXPECT_EQ(UI_GetGlobalStructureRect(dialog->field.get()), RectF(40, 50, 320, 240));
    dialog->Center();
    RectF const screen = OS_MonitorInfo().GetPrimaryWorkArea();
    RectF const r = UI_GetGlobalStructureRect(dialog.get());
    EXPECT_FLOAT_EQ(r.left + r.width / 2, screen.left + screen.width / 2);
    EXPECT_FLOAT_EQ(r.top + r.height / 2, screen.top + screen.height / 2);
}

TEST(MonitorInfoTest, RectanglesOffEveryMonitorComeBackOnScreen)
{
    MonitorInfo const monitors({{RectF(0, 0, 1920, 1080), RectF(0, 0, 1920, 1040), true},
                                {RectF(1920, 0, 1280, 1024), RectF(1920, 0, 1280, 1024), false}});
    struct Case
    {
        RectF stored, expected;
    };
    Case const cases[] = {
        // On a monitor: unchanged.
        {RectF(100, 100, 600, 400), RectF(100, 100, 600, 400)},
        {RectF(2000, 500, 600, 400), RectF(2000, 500, 600, 400)},
        // Partly off the right monitor, title still grabbable: unchanged.
        {RectF(3100, 100, 600, 400), RectF(3100, 100, 600, 400)},
        // On a third monitor that is gone: onto the primary one.
        {RectF(5000, 300, 600, 400), RectF(1320, 300, 600, 400)},
        // Above every monitor: pulled down so its title can be grabbed.
        {RectF(200, -300, 600, 400), RectF(200, 0, 600, 400)},
        // Larger than its monitor: shrunk to the work area.
        {RectF(-4000, 0, 2500, 1500), RectF(0, 0, 1920, 1040)},
    };
    for (Case const& c : cases)
    {
        RectF r = c.stored;
        monitors.EnsureRectIsVisible(r);
        EXPECT_EQ(r, c.expected) << c.stored.left << "," << c.stored.top;
    }
}

TEST(MessageBoxTest, EachBoxShowsItsLocalisedTextsAndSign)
{
    struct Case
    {
        char const* name;
        void (*show)(zephcore::UTF16String const&, zephcore::UTF16String const&, UI_Node*);
        QMessageBox::Icon icon;
    };
    Case const cases[] = {
        {"stop", &messagebox::ShowStop, QMessageBox::Critical},
        {"info", &messagebox::ShowInfo, QMessageBox::Information},
        {"error", &SimpleErrorMessageBox, QMessageBox::Warning},
    };
    for (Case const& c : cases)
    {
        Seen seen;
        ModalDriver driver;
        driver.Then(ModalDriver::Sequence({Look(seen), ModalDriver::PressButton("OK")}));
        c.show(ToUTF16("$$$/test/box/Title=Missing Property Name"),
               ToUTF16("The property must have a name."), nullptr);
        EXPECT_EQ(seen.title, QStringLiteral("Missing Property Name")) << c.name;
        EXPECT_EQ(seen.text, QStringLiteral("The property must have a name.")) << c.name;
        EXPECT_EQ(seen.icon, c.icon) << c.name;
        EXPECT_EQ(driver.Unexpected(), 0) << c.name;
    }
}

TEST(MessageBoxTest, InputBoxGivesTheTypedTextOnlyAfterOK)
{
    Seen seen;
    zephcore::UTF16String value = ToUTF16("start");
    {
        ModalDriver driver;
        driver.Then(ModalDriver::Sequence(
            {Look(seen), ModalDriver::Type("Night shoot"), ModalDriver::PressButton("OK")}));
        EXPECT_TRUE(SimpleInputBox(ToUTF16("$$$/test/Save/Title=Save Settings"),
                                   ToUTF16("$$$/test/Save/Label=Name:"), value));
    }
    EXPECT_EQ(ToQString(value), QStringLiteral("Night shoot"));
    EXPECT_EQ(seen.title, QStringLiteral("Save Settings"));
    EXPECT_EQ(seen.text, QStringLiteral("Name:"));

    ModalDriver driver;
    driver.Then(ModalDriver::Sequence({ModalDriver::Type("dropped"), ModalDriver::Escape()}));
    EXPECT_FALSE(
        SimpleInputBox(ToUTF16("Save"), ToUTF16("Name:"), value, ToUTF16("Keep"), ToUTF16("Drop")));
    EXPECT_EQ(ToQString(value), QStringLiteral("Night shoot"));
}

TEST(MessageBoxTest, ConfirmationIsTheConfirmButtonAlone)
{
    std::pair<ModalDriver::Action, bool> const cases[] = {
        {ModalDriver::PressButton("Delete"), true},
        {ModalDriver::PressButton("Cancel"), false},
        {ModalDriver::Escape(), false},
        {ModalDriver::Return(), true},
    };
    for (auto const& [answer, confirmed] : cases)
    {
        Seen seen;
        ModalDriver driver;
        driver.Then(ModalDriver::Sequence({Look(seen), answer}));
        EXPECT_EQ(SimpleConfirmationBox(ToUTF16("Delete Settings"), ToUTF16("Delete 'a'?"),
                                        ToUTF16("&Delete")),
                  confirmed);
        EXPECT_EQ(seen.icon, QMessageBox::Question);
    }
}

TEST(FileDialogTest, OpenDialogListsTheFiltersAndGivesTheChosenFile)
{
    QTemporaryDir folder;
    QString const path = folder.filePath(QStringLiteral("night.xmp"));
    QFile(path).open(QIODevice::WriteOnly);
    std::vector<FileDialogFilterInfo> const filters = {
        {ToUTF16("$$$/test/filter/xmp=XMP Files (*.xmp)"), ToUTF16("xmp"), {}},
        {ToUTF16("All Files (*.*)"), ToUTF16("*"), {}}};

    OS_FileOpenDialog open(nullptr, filters, 1, kFileDialogPathMustExist);
    open.SetDefaultDirectory(ToUTF16(folder.path()));
    open.SetWindowTitle(ToUTF16("$$$/test/import/title=Import Template"));
    QStringList seen; // the filters, the chosen one, the folder and the title
    auto const look = [&seen](QWidget* window)
    {
        auto* d = qobject_cast<QFileDialog*>(window);
        seen = d->nameFilters() << d->selectedNameFilter() << d->directory().path()
                                << d->windowTitle();
    };
    ModalDriver driver;
    driver.Then(ModalDriver::Sequence({look, ModalDriver::ChooseFile(path)}));
    EXPECT_EQ(open.RunModal(), OS_NavigationDialog::kResponseOK);
    EXPECT_EQ(ToQString(open.GetFile().FullPath()), path);
    EXPECT_EQ(seen, (QStringList{QStringLiteral("XMP Files (*.xmp)"),
                                 QStringLiteral("All Files (*)"), QStringLiteral("All Files (*)"),
                                 folder.path(), QStringLiteral("Import Template")}));

    driver.Then(ModalDriver::Escape());
    EXPECT_EQ(open.RunModal(), OS_NavigationDialog::kResponseCancel);
    EXPECT_TRUE(open.GetFile().FullPath().empty());
}

TEST(FileDialogTest, SaveDialogAddsTheDefaultExtensionAndAsksBeforeReplacing)
{
    QTemporaryDir folder;
    std::vector<FileDialogFilterInfo> const filters = {
        {ToUTF16("XMP Files (*.xmp)"), ToUTF16("xmp"), ToUTF16("xmp")},
        {ToUTF16("All Files (*.*)"), ToUTF16("*"), {}}};
    OS_FileSaveAsDialog save(nullptr, filters, 0,
                             kFileDialogConfirmOverwrite | kFileDialogPathMustExist |
                                 kFileDialogAddDefaultExtension);
    save.SetDefaultDirectory(ToUTF16(folder.path()));
    save.SetDefaultFileName(ToUTF16("clip"));
    ModalDriver driver;
    driver.Then(ModalDriver::ChooseFile(folder.filePath(QStringLiteral("clip"))));
    ASSERT_EQ(save.RunModal(), OS_NavigationDialog::kResponseOK);
    QString const written = folder.filePath(QStringLiteral("clip.xmp"));
    EXPECT_EQ(ToQString(save.GetFile().FullPath()), written);

    // Choosing an existing file asks first; refusing keeps the dialog open.
    QFile(written).open(QIODevice::WriteOnly);
    driver.Then(ModalDriver::Sequence({ModalDriver::ChooseFile(written), ModalDriver::Escape()}))
        .Then(ModalDriver::PressButton("No"));
    EXPECT_EQ(save.RunModal(), OS_NavigationDialog::kResponseCancel);
    EXPECT_EQ(driver.Titles().size(), 3u);
}

TEST(PrefManagerTest, WindowPlacesSurviveARestartAndDamageCostsOnlyThePlace)
{
    QTemporaryDir folder;
    QString const file = folder.filePath(QStringLiteral("deep/er/places.ini"));
    // Each call is a new run that reads the file again.
    auto const run = [&]
    {
        PrefManager::SetSettingsFile(ToUTF16(file));
        return PrefManager::GetPrefManager(true);
    };
    // (The library's dialogs keep their places through it in their own tests.)
    EXPECT_TRUE(run()->SetWindowPositionAndSize(ToUTF16("Other [id] = x"), RectF(1, 2.5f, 3, 4)));
    RectF rect;
    EXPECT_TRUE(run()->GetWindowPositionAndSize(ToUTF16("Other [id] = x"), rect));
    EXPECT_EQ(rect, RectF(1, 2.5f, 3, 4));

    // A damaged file: no place, no crash; it is kept aside and a new one made.
    QFile damaged(file);
    ASSERT_TRUE(damaged.open(QIODevice::WriteOnly));
    damaged.write("[windows]\n4d657461=12 x\n\x01\x02 garbage \xff\n");
    damaged.close();
    EXPECT_FALSE(run()->GetWindowPositionAndSize(ToUTF16("Meta"), rect));
    EXPECT_TRUE(QFile::exists(file + QStringLiteral(".damaged")));
    EXPECT_TRUE(run()->SetWindowPositionAndSize(ToUTF16("Meta"), RectF(1, 1, 9, 9)));
    EXPECT_TRUE(run()->GetWindowPositionAndSize(ToUTF16("Meta"), rect));

    // A place that can't be written says so.
    PrefManager::SetSettingsFile(ToUTF16("/proc/zephui-cannot-write/places.ini"));
    EXPECT_FALSE(PrefManager::GetPrefManager()->SetWindowPositionAndSize(ToUTF16("Meta"), rect));
    PrefManager::SetSettingsFile(ToUTF16(folder.filePath(QStringLiteral("after.ini"))));
}

TEST(DesktopTest, FoldersAndAddressesGoToTheDesktop)
{
    UrlCatcher catcher;
    QTemporaryDir folder;
    EXPECT_TRUE(
        ShellExecuteW(GetDesktopWindow(), ToUTF16("explore"), ToUTF16(folder.path()), {}, {}, 1));
    EXPECT_FALSE(ShellExecuteW(nullptr, ToUTF16("print"), ToUTF16(folder.path()), {}, {}, 1));
    EXPECT_TRUE(OpenURLInDefaultBrowser(ToUTF16("https://example.org/xmp")));
    EXPECT_FALSE(OpenURLInDefaultBrowser(ToUTF16("not an address")));
    ASSERT_EQ(catcher.opened.size(), 2);
    EXPECT_EQ(catcher.opened[0].toLocalFile(), folder.path());
    EXPECT_EQ(catcher.opened[1].toString(), QStringLiteral("https://example.org/xmp"));
}

#include "DialogTest.moc"
