#pragma once
// Five stars, drawn, for a rating from 0 to 5. A click on a star sets the
// rating to it (a click on the star of the present rating clears it); a drag
// along the stars follows the pointer. Digits 0 to 5 and the arrow keys set
// it from the keyboard. Live changes go to NotifyWhenChangedInteractively,
// the end of the gesture to NotifyWhenChanged.

#include "zephui/UI_ControlView.h"
#include "zephui/zephui_export.h"

namespace zephui
{

class ZEPHUI_EXPORT UI_StarRating : public UI_InteractiveControlView
{
public:
    enum StarSize
    {
        kStarSizeFromHeight = -1,
        kStarSizeSmall = 0,
        kStarSizeMedium = 1,
        kStarSizeLarge = 2
    };

    UI_StarRating();

    double GetValue() const { return value; }
    // Rounded to a whole star and kept within 0 to 5.
    void SetValue(double rating);
    // Without a call, the size follows the height: 19 small, 25 medium, 31 large.
    void SetStarSize(StarSize size);
    StarSize GetStarSize() const;
    // The side of one star in pixels, and the left edge of star index (0 to 4).
    float GetStarSide() const;
    float GetStarLeft(int index) const;

    void UI_Draw(Drawbot* drawbot) override;
    bool UI_DoMouseEvent(UI_Node* node, MouseEvent const& event) override;
    bool UI_DoKeyboardEvent(UI_Node* node, KeyboardEvent const& event) override;
    bool UI_InvalidateOnKeyboardFocusChange() const override { return true; }
    PointF UI_GetRecommendedSize(Drawbot* drawbot) override;

private:
    int RatingAt(float x) const;
    void ChangeByUser(double rating, bool finished);

    double value = 0.0;
    double valueAtPress = 0.0;
    StarSize starSize = kStarSizeFromHeight;
    bool tracking = false;
};

using UI_StarRatingPtr = boost::intrusive_ptr<UI_StarRating>;

} // namespace zephui
