// The date field on a real line edit: display and stored forms, the check as
// the user types, and the fall-back of a bad commit.

#include "zephmetadataui/UI_DateTextEdit.h"

#include "../tree/TreeTestSupport.h"
#include "../ui/ControlTestWindow.h"

#include <zephcore/Strings.h>

#include <zephui/QtDrawing.h>
#include <zephui/Theme.h>

#include <QLineEdit>
#include <QTest>

#include <boost/date_time/posix_time/posix_time.hpp>

#include <gtest/gtest.h>

using zephmetadataui::UI_DateTextEdit;
using namespace boost::posix_time;
using boost::gregorian::date;

namespace
{

using treetest::U16;
using zephcore::ToStdString;

class DateEditTest : public ::testing::Test
{
protected:
    boost::intrusive_ptr<UI_DateTextEdit> edit{new UI_DateTextEdit(16, 0)};
    QLineEdit* line = qobject_cast<QLineEdit*>(edit->UI_GetWidget());
    // What the field shows, as opposed to GetValue's stored form.
    std::string Shown() const { return ToStdString(edit->UI_TextEdit::GetValue()); }
    void Type(char const* text, bool commit = false)
    {
        line->selectAll();
        QTest::keyClick(line, Qt::Key_Delete);
        QTest::keyClicks(line, QString::fromUtf8(text));
        if (commit)
            QTest::keyClick(line, Qt::Key_Return);
    }
};

} // namespace

TEST_F(DateEditTest, TypingChecksEachKeyButNeverReformatsAndTheWarningNamesTheFormat)
{
    edit->SetValue(U16("2009-05-12"));
    Type("2009/05/1");
    EXPECT_FALSE(edit->IsValid());
    EXPECT_EQ("2009/05/1", ToStdString(edit->GetValue())); // invalid: the raw text
    ASSERT_TRUE(edit->IsWarningShown());
    zephui::UI_Node* const warning = edit->GetAddonSubView()->ChildGet(0);
    ASSERT_TRUE(warning && warning->UI_IsShown());
    std::string const tip = ToStdString(warning->UI_GetToolTip());
    EXPECT_NE(std::string::npos, tip.find("YYYY/MM/DD HH:MM:SS \xC2\xB1HH:MM")) << tip;
    EXPECT_EQ(std::string::npos, tip.find("#{")) << tip;

    QTest::keyClicks(line, QStringLiteral("3"));
    EXPECT_TRUE(edit->IsValid());
    EXPECT_FALSE(edit->IsWarningShown());
    EXPECT_EQ("2009/05/13", Shown());
    EXPECT_EQ("2009-05-13", ToStdString(edit->GetValue()));
}

// A bad text committed brings back the last good committed date; with none,
// the value stays unknown (drawn in the theme's colour for it), or a bad value
// from the start comes back to itself.
TEST_F(DateEditTest, CommittingABadTextFallsBackWithAMessageForEachCommit)
{
    struct Case
    {
        char const* start;
        std::vector<char const*> commits;
        char const* shown;
        bool unknown;
    };
    Case const cases[] = {
        {"2009-05-12T14:30", {"2009/02/29"}, "2009-05-12 14:30", false},
        {"2009-05-12T14:30", {"2008/02/29 23:59:58", "nonsense"}, "2008-02-29 23:59:58", false},
        {"2009-05-12", {""}, "", true},
        {"2009-05-12", {"", "yesterday"}, "", true},
        {"sometime in May", {"2009/13/01"}, "sometime in May", false},
    };
    QColor const unknownColour =
        zephui::ToQColor(zephui::GetColor(zephui::kColor_UnknownValueText));
    for (Case const& c : cases)
    {
        SCOPED_TRACE(c.start + std::string(" then ") + c.commits.back());
        zephtest::MessageCounter messages;
        edit->NotifyWhenChanged(messages.callback);
        edit->SetValue(U16(c.start));
        for (char const* text : c.commits)
            Type(text, true);
        EXPECT_EQ(Shown(), c.shown);
        EXPECT_EQ(edit->IsValueUnknown(), c.unknown);
        EXPECT_EQ(line->palette().color(QPalette::Text) == unknownColour, c.unknown);
        EXPECT_EQ(edit->IsWarningShown(), !c.unknown && !edit->IsValid());
        EXPECT_EQ(messages.count, int(c.commits.size()));
    }
}

TEST_F(DateEditTest, DateTimeRoundTripsWithoutZone)
{
    ptime const when(date(2009, 5, 12), hours(14) + minutes(30) + seconds(5));
    edit->SetDateTime(when);
    EXPECT_EQ("2009-05-12 14:30:05", Shown());
    EXPECT_EQ(when, edit->GetDateTime());
    edit->SetValue(U16("2009-05-12T14:30:00Z"));
    EXPECT_EQ(ptime(date(2009, 5, 12), hours(14) + minutes(30)), edit->GetDateTime());
    // No time for what a ptime can not hold, or a date short of a day.
    for (char const* value : {"2009-05", "1399-01-01", "2009-02-30"})
    {
        edit->SetValue(U16(value));
        EXPECT_TRUE(edit->GetDateTime().is_not_a_date_time()) << value;
    }
    edit->SetDateTime(ptime(not_a_date_time)); // nothing to show, no crash
    EXPECT_FALSE(edit->IsValid());
    EXPECT_EQ("", Shown());
}
