#pragma once
// The browser's playback time line: play and pause, a playhead the user can
// drag, in and out points set at the playhead, and the time. Playing advances
// the playhead one frame per tick of a timer at the track's frame rate; every
// move of the playhead is told, so a transcript can follow it.

#include <zephmediatypes/TickTime.h>

#include <QWidget>

#include <functional>

class QLabel;
class QPushButton;
class QSlider;
class QTimer;

namespace browser
{

using zephmediatypes::TickTime;

class PlaybackBar : public QWidget
{
    Q_OBJECT
public:
    explicit PlaybackBar(QWidget* parent = nullptr);

    // The length of the media and its frame rate (frames a second); the
    // playhead goes back to the start, playing stops.
    void SetMedia(TickTime duration, double framesPerSecond);
    TickTime Duration() const { return duration; }
    TickTime Playhead() const { return playhead; }
    // Moves the playhead (kept inside the media) and tells the listener.
    void SetPlayhead(TickTime time);
    TickTime InPoint() const { return inPoint; }
    TickTime OutPoint() const { return outPoint; }
    bool IsPlaying() const;
    void SetPlaying(bool play);
    // One frame of playing, as the timer does it.
    void Step();

    void SetPlayheadListener(std::function<void(TickTime)> listener)
    {
        playheadMoved = std::move(listener);
    }
    void SetRangeListener(std::function<void(TickTime, TickTime)> listener)
    {
        rangeChanged = std::move(listener);
    }

    QPushButton* PlayButton() const { return playButton; }
    QSlider* Slider() const { return slider; }
    QPushButton* InButton() const { return inButton; }
    QPushButton* OutButton() const { return outButton; }
    QString TimeText() const;

private:
    void ShowPlayhead();
    TickTime FrameLength() const;

    QPushButton* playButton = nullptr;
    QSlider* slider = nullptr;
    QPushButton* inButton = nullptr;
    QPushButton* outButton = nullptr;
    QLabel* timeLabel = nullptr;
    QTimer* timer = nullptr;
    TickTime duration = zephmediatypes::kTime_Zero;
    TickTime playhead = zephmediatypes::kTime_Zero;
    TickTime inPoint = zephmediatypes::kTime_Invalid;
    TickTime outPoint = zephmediatypes::kTime_Invalid;
    double framesPerSecond = 25.0;
    std::function<void(TickTime)> playheadMoved;
    std::function<void(TickTime, TickTime)> rangeChanged;
};

} // namespace browser
