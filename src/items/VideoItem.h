#pragma once

#include "FrameItem.h"
#include "ItemTypes.h"

#include <QElapsedTimer>
#include <QImage>
#include <QMutex>

#include <array>

// A rectangle showing the live frames a host pushes, for hosts that show a camera. videoStarted and
// videoStopped start and stop it; with no frame it shows "no signal"; it shows the frame rate it
// receives. "Snapshot" in its menu copies the frame shown into the scene's image, so that measuring
// goes on on a still.
//
// setFrame may be called from any thread, for every frame: the item keeps only the newest frame it
// has not shown yet and takes it on its own thread through one queued call, so frames it has no
// time to paint are dropped, never queued. A frame must own its pixels (QVideoFrame::toImage gives
// such); frames beyond the picture limits, and null ones, are refused. Stop pushing frames (or call
// videoStopped) before deleting the item.
class GRAPHICSOBJECTS_EXPORT VideoItem : public FrameItem {
    Q_OBJECT
public:
    GRAPHICSOBJECTS_ITEM(VideoItem)
    enum MenuCommand { Snapshot = -1 };

    ~VideoItem() override;

    // The frame shown, null before the first one and once stopped.
    QImage currentFrame() const { return m_frame; }
    bool isRunning() const;
    QString cameraName() const { return m_cameraName; }
    // Since the start: frames received, dropped (replaced before they were painted), refused; and
    // frames painted, each counted once.
    qint64 receivedFrames() const;
    qint64 droppedFrames() const;
    qint64 refusedFrames() const;
    qint64 paintedFrames() const { return m_painted; }
    // Frames per second over the last frames received; 0 before two frames or two seconds after the last.
    double frameRate() const;

    void fillContextMenu(QMenu* menu) override;
    void applyContextMenu(int data) override;
    void paint(QPainter* painter, const QStyleOptionGraphicsItem* option, QWidget* widget) override;

public slots:
    void setFrame(const QImage& frame);
    void videoStarted(void* camera, cameraInfos* infos) override;
    void videoStopped(void* camera) override;

protected:
    QSizeF clickSize() const override { return {320, 240}; }
    bool turns() const override { return false; }

private:
    void takeFrame();
    void snapshot();

    // Shared with the threads that push frames.
    mutable QMutex m_mutex;
    QImage m_pending;
    bool m_posted = false;
    bool m_stopped = false;
    qint64 m_received = 0;
    qint64 m_dropped = 0;
    qint64 m_refused = 0;
    std::array<qint64, 16> m_arrivals{}; // nanoseconds on m_clock, a ring
    QElapsedTimer m_clock;

    // The item's own thread only.
    QImage m_frame;
    bool m_framePainted = false;
    qint64 m_painted = 0;
    void* m_camera = nullptr;
    QString m_cameraName;
};
