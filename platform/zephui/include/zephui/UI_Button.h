#pragma once
// Buttons on QPushButton. A click sends a UI_ButtonChangedMessage with the
// modifiers held. A spring-loaded button (the default) only clicks; one that
// is not toggles its value between 0 and 1 at each click, and keeps it.
// Picture buttons ask their image supply function for a picture whenever they
// draw, with a UI_PictureSupplyMessage carrying their state bits.

#include "zephui/UI_ControlView.h"
#include "zephui/zephui_export.h"

class QPushButton;

namespace zephui
{

class ImageInterface;

enum ButtonValue
{
    kButtonOff = 0,
    kButtonOn = 1
};

class ZEPHUI_EXPORT UI_Button : public UI_ControlView
{
public:
    UI_Button() = default;

    int GetValue() const { return value; }
    void SetValue(int newValue);
    void SetSpringLoaded(bool springLoaded);
    bool IsSpringLoaded() const { return springLoaded; }
    void SetDisplayBorderNever(bool never);
    void SetDisplayBorderAlways(bool always);
    void SetDisplayContainerNever(bool never);
    // With false, a click leaves the focus where it was.
    void SetChangeFocusOnClick(bool change);
    // Marks the button that Enter presses in a dialog.
    void SetDefaultAppearance(bool isDefault);

    void SetImageSupplyFunction(ConstMessageCallback const& supply);
    // The picture for the present state, from the supply function; null without one.
    boost::intrusive_ptr<ImageInterface> SupplyImage() const;

    // Clicks the button as the user would.
    void Click();

    void UI_Draw(Drawbot* drawbot) override;
    PointF UI_GetRecommendedSize(Drawbot* drawbot) override;

protected:
    QWidget* CreateWidget() override;
    void SetButtonText(zephcore::UTF16String const& text);
    zephcore::UTF16String const& GetButtonText() const { return text; }
    // Drawing of the picture and text over the button's face.
    virtual void DrawContent(Drawbot* drawbot, ImageInterface const* image);
    // True if DrawContent draws the text (the Qt button then shows none).
    virtual bool DrawsOwnText() const { return false; }
    void Apply();

private:
    void ApplyTo(QPushButton* button);
    void OnClicked();

    zephcore::UTF16String text;
    int value = kButtonOff;
    bool springLoaded = true;
    bool flat = false;
    bool changeFocusOnClick = true;
    bool isDefault = false;
    ConstMessageCallback imageSupply;
};

// A button with a text label.
class ZEPHUI_EXPORT UI_TextButton : public UI_Button
{
public:
    UI_TextButton() = default;
    explicit UI_TextButton(zephcore::UTF16String const& label) { SetText(label); }
    void SetText(zephcore::UTF16String const& label)
    {
        SetButtonText(UI_ProcessStringAndSetMnemonic(label));
    }
    zephcore::UTF16String const& GetText() const { return GetButtonText(); }
};

// A button that shows only a picture.
class ZEPHUI_EXPORT UI_PictureButton : public UI_Button
{
public:
    UI_PictureButton() = default;
};

// A button with a picture and a text beside it.
class ZEPHUI_EXPORT UI_PictureTextButton : public UI_Button
{
public:
    enum ImageAndTextAlignment
    {
        kImageLeftOfText = 0,
        kImageRightOfText = 1,
        kImageAboveText = 2
    };
    UI_PictureTextButton() { SetDisplayBorderNever(true); }
    void SetText(zephcore::UTF16String const& label)
    {
        SetButtonText(UI_ProcessStringAndSetMnemonic(label));
    }
    zephcore::UTF16String const& GetText() const { return GetButtonText(); }
    void SetImageAndTextAlignment(int alignment);
    PointF UI_GetRecommendedSize(Drawbot* drawbot) override;

protected:
    void DrawContent(Drawbot* drawbot, ImageInterface const* image) override;
    bool DrawsOwnText() const override { return true; }

private:
    int imageAlignment = kImageLeftOfText;
};

// A text drawn as a link: no border, the link colour, underlined; it clicks
// like a button. An image supply function may add a picture before the text.
class ZEPHUI_EXPORT UI_HotTextButton : public UI_Button
{
public:
    UI_HotTextButton();
    explicit UI_HotTextButton(zephcore::UTF16String const& label) : UI_HotTextButton()
    {
        SetText(label);
    }
    void SetText(zephcore::UTF16String const& label)
    {
        SetButtonText(UI_ProcessStringAndSetMnemonic(label));
    }
    zephcore::UTF16String const& GetText() const { return GetButtonText(); }
    PointF UI_GetRecommendedSize(Drawbot* drawbot) override;

protected:
    QWidget* CreateWidget() override;
    void DrawContent(Drawbot* drawbot, ImageInterface const* image) override;
    bool DrawsOwnText() const override { return true; }
};

using UI_ButtonPtr = boost::intrusive_ptr<UI_Button>;
using UI_TextButtonPtr = boost::intrusive_ptr<UI_TextButton>;
using UI_PictureButtonPtr = boost::intrusive_ptr<UI_PictureButton>;
using UI_PictureTextButtonPtr = boost::intrusive_ptr<UI_PictureTextButton>;
using UI_HotTextButtonPtr = boost::intrusive_ptr<UI_HotTextButton>;

} // namespace zephui
