// Text fields: never a commit on a no-op, whatever the value; the unknown
// state; read-only mode; multi-line fields. (Commits of typed text on Enter
// and focus loss, the web address field among them, are driven through the
// bound fields' tests.)

#include "ControlTestWindow.h"

#include "zephui/UI_TextEdit.h"

#include "zephcore/QtStrings.h"
#include "zephcore/Strings.h"

#include <QImage>
#include <QPlainTextEdit>

using namespace zephui;
using zephcore::AsciiToUTF16;
using zephtest::MessageCounter;

namespace
{

struct TextEditFixture : testing::Test
{
    zephtest::ControlTestWindow window;
    UI_TextEditPtr edit =
        window.Add(UI_TextEditPtr(new UI_TextEdit(16, 0)), RectF(10, 10, 200, 21));
    UI_TextEditPtr other =
        window.Add(UI_TextEditPtr(new UI_TextEdit(16, 0)), RectF(10, 40, 200, 21));
    MessageCounter changed;
    MessageCounter typed;

    void SetUp() override
    {
        edit->NotifyWhenChanged(changed.callback);
        edit->NotifyWhenChangedInteractively(typed.callback);
        ASSERT_TRUE(window.ShowActive());
    }
    QLineEdit* Line() { return qobject_cast<QLineEdit*>(edit->UI_GetWidget()); }
    // Focus, the given typing, Enter, then the focus elsewhere.
    void Visit(char const* typing = "")
    {
        ASSERT_TRUE(edit->UI_GainKeyboardFocus(kFocusReasonProgram));
        QTest::keyClicks(Line(), typing);
        QTest::keyClick(Line(), Qt::Key_Return);
        other->UI_GainKeyboardFocus(kFocusReasonProgram);
    }
};

} // namespace

TEST_F(TextEditFixture, ALongValueShowsItsBeginningUntilTheUserMovesIn)
{
    QString const longText =
        QStringLiteral("Opening words of a caption far too long for the field to hold at once");
    other->UI_GainKeyboardFocus(kFocusReasonProgram);
    edit->SetValue(zephcore::ToUTF16(longText));
    EXPECT_EQ(Line()->cursorPosition(), 0);
    QImage const shown = Line()->grab().toImage();

    // The same value with the cursor at its end shows other pixels: the
    // check above is what decides which part is seen.
    Line()->setCursorPosition(int(longText.size()));
    EXPECT_NE(Line()->grab().toImage(), shown);

    // A field being typed in keeps its cursor when its value is set.
    edit->UI_GainKeyboardFocus(kFocusReasonProgram);
    Line()->setCursorPosition(5);
    edit->SetValue(zephcore::ToUTF16(longText + "!"));
    EXPECT_EQ(Line()->text(), longText + "!");
    EXPECT_NE(Line()->cursorPosition(), 0);
}

TEST_F(TextEditFixture, UnknownStateShowsItsTextUntilTheUserTypes)
{
    edit->SetValue(AsciiToUTF16("single"));
    edit->SetUnknownStateText(AsciiToUTF16("<Multiple Values>"));
    edit->SetValueUnknown();
    EXPECT_EQ(Line()->placeholderText(), QStringLiteral("<Multiple Values>"));

    Visit();
    EXPECT_EQ(changed.count, 0) << "passing through leaves the unknown value alone";
    EXPECT_TRUE(edit->IsValueUnknown());
    Visit("one");
    EXPECT_EQ(changed.count, 1);
    EXPECT_FALSE(edit->IsValueUnknown());
}

TEST_F(TextEditFixture, ReadOnlyModeTakesNoTyping)
{
    edit->SetValue(AsciiToUTF16("fixed"));
    edit->SetReadOnlyMode(true);
    Visit("xyz");
    EXPECT_EQ(edit->GetValue(), AsciiToUTF16("fixed"));
    EXPECT_EQ(changed.count, 0);
}

TEST_F(TextEditFixture, InAMultiLineFieldEnterBreaksTheLineAndFocusLossCommits)
{
    UI_TextEditPtr lines =
        window.Add(UI_TextEditPtr(new UI_TextEdit(21, 0)), RectF(10, 70, 200, 60));
    MessageCounter committed;
    lines->NotifyWhenChanged(committed.callback);
    auto* plain = qobject_cast<QPlainTextEdit*>(lines->UI_GetWidget());
    ASSERT_TRUE(plain);
    lines->UI_GainKeyboardFocus(kFocusReasonProgram);
    QTest::keyClicks(plain, "one");
    QTest::keyClick(plain, Qt::Key_Return);
    QTest::keyClicks(plain, "two");
    EXPECT_EQ(committed.count, 0);
    other->UI_GainKeyboardFocus(kFocusReasonProgram);
    EXPECT_EQ(committed.count, 1);
    EXPECT_EQ(lines->GetValue(), AsciiToUTF16("one\ntwo"));
}

// A value of any length and any characters, set by the program, survives a
// visit of the field: focus, Enter, focus away, and the value is neither cut
// nor written back, and nothing is sent.
TEST_F(TextEditFixture, AVisitWithoutAnEditKeepsAnyValueWhole)
{
    std::string longText(100000, 'x');
    longText.replace(40000, 11, "\nline two\t");
    std::vector<zephcore::UTF16String> const values{zephcore::UTF8to16(std::string_view(longText)),
                                                    AsciiToUTF16("first line\nsecond line"),
                                                    AsciiToUTF16("  padded  ")};
    for (zephcore::UTF16String const& value : values)
    {
        edit->SetValue(value);
        Visit();
        EXPECT_EQ(changed.count, 0);
        EXPECT_EQ(typed.count, 0);
        EXPECT_EQ(edit->GetValue().size(), value.size());
        EXPECT_TRUE(edit->GetValue() == value);
    }
    // An edit at the end of a long value keeps all that came before.
    edit->SetValue(values[0]);
    ASSERT_TRUE(edit->UI_GainKeyboardFocus(kFocusReasonProgram));
    Line()->end(false);
    QTest::keyClicks(Line(), "!");
    QTest::keyClick(Line(), Qt::Key_Return);
    EXPECT_EQ(changed.count, 1);
    EXPECT_EQ(edit->GetValue().size(), values[0].size() + 1);
}
