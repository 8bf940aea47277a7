#pragma once
// Follows one bar of a TriSectionSplitterView while the user drags it, and
// puts the percentages back if the drag is cancelled.

#include "contracts/Toolkit.h"

namespace zephmetadataui
{

class TriSectionSplitterView;

class TriSectionSplitterViewCapture : public InputCapture
{
public:
    TriSectionSplitterViewCapture(TriSectionSplitterView* view, MouseEvent const& event,
                                  bool isFirstSplitter);

    bool DoMouseEvent(MouseEvent const& event) override;
    bool DoCursor(PointF const& position) override;
    void CaptureEnded() override;

private:
    // Not counted: the manager ends the capture quietly when its node dies.
    TriSectionSplitterView* view;
    float lastY;
    float savedFirstPercentage;
    float savedSecondPercentage;
    bool isFirstSplitter;
};

} // namespace zephmetadataui
