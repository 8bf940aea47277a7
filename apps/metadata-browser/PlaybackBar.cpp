#include "PlaybackBar.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>
#include <QSignalBlocker>
#include <QSlider>
#include <QTimer>

#include <algorithm>
#include <cmath>

namespace browser
{

namespace
{

// The slider counts hundredths of a second: fine enough to drag, and an hour
// stays far inside an int.
constexpr double kSliderStepsPerSecond = 100.0;

QString Clock(TickTime time)
{
    double const seconds = std::max(0.0, time.ToSeconds());
    int const whole = int(seconds);
    return QString("%1:%2.%3")
        .arg(whole / 60)
        .arg(whole % 60, 2, 10, QChar('0'))
        .arg(int((seconds - whole) * 10.0));
}

} // namespace

PlaybackBar::PlaybackBar(QWidget* parent) : QWidget(parent)
{
    auto* layout = new QHBoxLayout(this);
    layout->setContentsMargins(6, 2, 6, 2);
    playButton = new QPushButton(tr("Play"), this);
    playButton->setCheckable(true);
    slider = new QSlider(Qt::Horizontal, this);
    inButton = new QPushButton(tr("Set In"), this);
    outButton = new QPushButton(tr("Set Out"), this);
    timeLabel = new QLabel(this);
    timeLabel->setMinimumWidth(140);
    layout->addWidget(playButton);
    layout->addWidget(slider, 1);
    layout->addWidget(timeLabel);
    layout->addWidget(inButton);
    layout->addWidget(outButton);

    timer = new QTimer(this);
    connect(timer, &QTimer::timeout, this, &PlaybackBar::Step);
    connect(playButton, &QPushButton::toggled, this, &PlaybackBar::SetPlaying);
    connect(slider, &QSlider::valueChanged, this,
            [this](int value)
            { SetPlayhead(TickTime::FromSeconds(value / kSliderStepsPerSecond)); });
    connect(inButton, &QPushButton::clicked, this,
            [this]
            {
                inPoint = playhead;
                if (outPoint != zephmediatypes::kTime_Invalid && outPoint < inPoint)
                    outPoint = zephmediatypes::kTime_Invalid;
                ShowPlayhead();
                if (rangeChanged)
                    rangeChanged(inPoint, outPoint);
            });
    connect(outButton, &QPushButton::clicked, this,
            [this]
            {
                outPoint = playhead;
                if (inPoint != zephmediatypes::kTime_Invalid && inPoint > outPoint)
                    inPoint = zephmediatypes::kTime_Invalid;
                ShowPlayhead();
                if (rangeChanged)
                    rangeChanged(inPoint, outPoint);
            });
    SetMedia(zephmediatypes::kTime_Zero, 25.0);
}

void PlaybackBar::SetMedia(TickTime length, double rate)
{
    SetPlaying(false);
    duration = std::max(length, zephmediatypes::kTime_Zero);
    framesPerSecond = rate > 0.0 && std::isfinite(rate) ? rate : 25.0;
    inPoint = outPoint = zephmediatypes::kTime_Invalid;
    {
        QSignalBlocker const quiet(slider);
        slider->setRange(0, int(std::ceil(duration.ToSeconds() * kSliderStepsPerSecond)));
    }
    setEnabled(duration > zephmediatypes::kTime_Zero);
    SetPlayhead(zephmediatypes::kTime_Zero);
}

void PlaybackBar::SetPlayhead(TickTime time)
{
    TickTime const kept = std::clamp(time, zephmediatypes::kTime_Zero, duration);
    bool const moved = kept != playhead;
    playhead = kept;
    ShowPlayhead();
    if (moved && playheadMoved)
        playheadMoved(playhead);
}

bool PlaybackBar::IsPlaying() const
{
    return timer->isActive();
}

void PlaybackBar::SetPlaying(bool play)
{
    if (play && playhead >= duration)
        SetPlayhead(zephmediatypes::kTime_Zero);
    if (play)
        timer->start(std::max(1, int(std::lround(1000.0 / framesPerSecond))));
    else
        timer->stop();
    QSignalBlocker const quiet(playButton);
    playButton->setChecked(play);
    playButton->setText(play ? tr("Pause") : tr("Play"));
}

TickTime PlaybackBar::FrameLength() const
{
    return TickTime::FromSeconds(1.0 / framesPerSecond);
}

void PlaybackBar::Step()
{
    SetPlayhead(playhead + FrameLength());
    if (playhead >= duration)
        SetPlaying(false);
}

QString PlaybackBar::TimeText() const
{
    return timeLabel->text();
}

void PlaybackBar::ShowPlayhead()
{
    {
        QSignalBlocker const quiet(slider);
        slider->setValue(int(std::lround(playhead.ToSeconds() * kSliderStepsPerSecond)));
    }
    QString text = Clock(playhead) + " / " + Clock(duration);
    if (inPoint != zephmediatypes::kTime_Invalid || outPoint != zephmediatypes::kTime_Invalid)
        text += tr("  [%1 – %2]")
                    .arg(inPoint == zephmediatypes::kTime_Invalid ? "…" : Clock(inPoint),
                         outPoint == zephmediatypes::kTime_Invalid ? "…" : Clock(outPoint));
    timeLabel->setText(text);
}

} // namespace browser
