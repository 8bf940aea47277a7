// The date field on a real line edit: display and stored forms, the check as
// the user types, and the fall-back of a bad commit.

#include "zephmetadataui/UI_DateTextEdit.h"

#include <zephcore/Strings.h>

#include <zephui/QtDrawing.h>
#include <zephui/Theme.h>

#include <QLineEdit>
#include <QTest>

#include <boost/date_time/posix_time/posix_time.hpp>
#include <boost/make_shared.hpp>

#include <gtest/gtest.h>

using zephmetadataui::UI_DateTextEdit;

namespace
{

zephcore::UTF16String U16(char const* text)
{
    return zephcore::UTF8to16(std::string_view(text));
}
std::string S(zephcore::UTF16String const& text)
{
    return zephcore::ToStdString(text);
}

class DateEditTest : public ::testing::Test
{
protected:
    boost::intrusive_ptr<UI_DateTextEdit> edit{new UI_DateTextEdit(16, 0)};
    QLineEdit* line = nullptr;

    void SetUp() override
    {
        edit->UI_Show(true);
        edit->UI_SetLocalRectF(zephui::RectF(0, 0, 240, 22));
        line = qobject_cast<QLineEdit*>(edit->UI_GetWidget());
        ASSERT_NE(nullptr, line);
    }
    // What the field shows, as opposed to GetValue's stored form.
    std::string Shown() const { return S(edit->UI_TextEdit::GetValue()); }
    void Type(char const* text)
    {
        line->selectAll();
        QTest::keyClick(line, Qt::Key_Delete);
        QTest::keyClicks(line, QString::fromUtf8(text));
    }
};

} // namespace

TEST_F(DateEditTest, StartsEmptyAndUnknownWithTheFormatAsPlaceholder)
{
    EXPECT_EQ("UI_DateTextEdit", edit->UI_GetNodeID());
    EXPECT_FALSE(edit->IsValid());
    EXPECT_EQ("YYYY/MM/DD HH:MM:SS", S(edit->GetUnknownStateText()));
    EXPECT_FALSE(edit->IsWarningShown());
    EXPECT_TRUE(edit->GetDateTime().is_not_a_date_time());
}

TEST_F(DateEditTest, StoredDatesAreShownInDisplayFormAndHandedOutStored)
{
    edit->SetValue(U16("2009-05-12T14:30:00+02:00"));
    EXPECT_TRUE(edit->IsValid());
    EXPECT_EQ("2009-05-12 14:30 +02:00", Shown());
    EXPECT_EQ("2009-05-12T14:30+02:00",
              S(edit->GetValue())); // the toolkit's ISO text drops :00 seconds
    EXPECT_FALSE(edit->IsWarningShown());

    edit->SetValue(U16("2009-05-12T14:30:05-05:00"));
    EXPECT_EQ("2009-05-12 14:30:05 -05:00", Shown());
    edit->SetValue(U16("2009-05"));
    EXPECT_EQ("2009-05", Shown());
    EXPECT_EQ(boost::posix_time::ptime(boost::posix_time::not_a_date_time), edit->GetDateTime());
}

TEST_F(DateEditTest, TypingChecksEachKeyButNeverReformats)
{
    edit->SetValue(U16("2009-05-12"));
    Type("2009/05/1");
    EXPECT_FALSE(edit->IsValid());
    EXPECT_TRUE(edit->IsWarningShown());
    EXPECT_EQ("2009/05/1", S(edit->GetValue())); // invalid: the raw text

    QTest::keyClicks(line, QStringLiteral("3"));
    EXPECT_TRUE(edit->IsValid());
    EXPECT_FALSE(edit->IsWarningShown());
    EXPECT_EQ("2009/05/13", Shown());
    EXPECT_EQ("2009-05-13", S(edit->GetValue()));
}

TEST_F(DateEditTest, CommittingABadTextBringsTheLastGoodDateBack)
{
    int commits = 0;
    auto const counter = boost::make_shared<boost::function<void(zephui::Message*)>>(
        [&](zephui::Message*) { ++commits; });
    edit->NotifyWhenChanged(counter);
    edit->SetValue(U16("2009-05-12T14:30"));

    Type("2009/02/29");
    QTest::keyClick(line, Qt::Key_Return);
    EXPECT_EQ(1, commits);
    EXPECT_TRUE(edit->IsValid());
    EXPECT_EQ("2009-05-12 14:30", Shown());
    EXPECT_FALSE(edit->IsWarningShown());

    Type("2008/02/29 23:59:58");
    QTest::keyClick(line, Qt::Key_Return);
    EXPECT_EQ("2008-02-29T23:59:58", S(edit->GetValue()));
    Type("nonsense");
    QTest::keyClick(line, Qt::Key_Return);
    EXPECT_EQ("2008-02-29 23:59:58", Shown()); // the last good date is the committed one
    counter->clear();
}

TEST_F(DateEditTest, EmptyCommitMakesTheValueUnknownAndForgetsTheLastGoodDate)
{
    edit->SetValue(U16("2009-05-12"));
    Type("");
    QTest::keyClick(line, Qt::Key_Return);
    EXPECT_TRUE(edit->IsValueUnknown());
    EXPECT_EQ("", Shown());

    // With no good date to go back to, a bad text leaves the value unknown.
    Type("yesterday");
    QTest::keyClick(line, Qt::Key_Return);
    EXPECT_TRUE(edit->IsValueUnknown());
    EXPECT_FALSE(edit->IsWarningShown());
}

TEST_F(DateEditTest, BadValueFromTheStartIsShownWithTheWarningAndComesBackToItself)
{
    edit->SetValue(U16("sometime in May"));
    EXPECT_FALSE(edit->IsValid());
    EXPECT_TRUE(edit->IsWarningShown());
    EXPECT_EQ("sometime in May", S(edit->GetValue()));

    Type("2009/13/01");
    QTest::keyClick(line, Qt::Key_Return);
    EXPECT_EQ("sometime in May", Shown());
}

TEST_F(DateEditTest, DateTimeRoundTripsWithoutZone)
{
    using namespace boost::posix_time;
    using boost::gregorian::date;
    ptime const when(date(2009, 5, 12), hours(14) + minutes(30) + seconds(5));
    edit->SetDateTime(when);
    EXPECT_TRUE(edit->IsValid());
    EXPECT_EQ("2009-05-12 14:30:05", Shown());
    EXPECT_EQ(when, edit->GetDateTime());

    edit->SetValue(U16("1399-01-01"));
    EXPECT_TRUE(edit->GetDateTime().is_not_a_date_time());
    edit->SetValue(U16("2009-02-30")); // the parser stops, Boost would throw
    EXPECT_TRUE(edit->GetDateTime().is_not_a_date_time());
    edit->SetValue(U16("2009-05-12T14:30:00Z"));
    EXPECT_EQ(ptime(date(2009, 5, 12), hours(14) + minutes(30)), edit->GetDateTime());

    edit->SetDateTime(ptime(not_a_date_time)); // nothing to show, no crash
    EXPECT_FALSE(edit->IsValid());
    EXPECT_EQ("", Shown());
}

TEST_F(DateEditTest, AnUnknownValueIsDrawnInTheThemesUnknownColourUntilAValueIsSet)
{
    QColor const unknown = zephui::ToQColor(zephui::GetColor(zephui::kColor_UnknownValueText));
    edit->SetValue(U16("2009-05-12"));
    QColor const known = line->palette().color(QPalette::Text);
    ASSERT_NE(unknown, known);
    edit->SetValueUnknown();
    EXPECT_EQ(unknown, line->palette().color(QPalette::Text));
    edit->SetValue(U16("2010-01-01"));
    EXPECT_FALSE(edit->IsValueUnknown());
    EXPECT_EQ("2010-01-01", Shown());
    EXPECT_EQ(known, line->palette().color(QPalette::Text));
}

TEST_F(DateEditTest, TheWarningNamesTheFormatInReadableSigns)
{
    Type("2009/05/1");
    ASSERT_TRUE(edit->IsWarningShown());
    zephui::UI_Node* const warning = edit->GetAddonSubView()->ChildGet(0);
    ASSERT_TRUE(warning && warning->UI_IsShown());
    std::string const tip = S(warning->UI_GetToolTip());
    EXPECT_NE(std::string::npos, tip.find("YYYY/MM/DD HH:MM:SS \xC2\xB1HH:MM")) << tip;
    EXPECT_EQ(std::string::npos, tip.find("#{")) << tip;
}
