#include "VideoItem.h"

#include "AbstractScene.h"
#include "PictureReader.h"

#include <QGraphicsRectItem>
#include <QMenu>
#include <QPainter>

namespace {

// Without a frame for this long (nanoseconds) the rate reads 0.
constexpr qint64 RateTimeout = 2'000'000'000;

} // namespace

VideoItem::VideoItem(QGraphicsItem* parent, int id, void*)
    : FrameItem(parent, new QGraphicsRectItem, 1) {
    initIdentity(id);
    m_clock.start();
}

VideoItem::~VideoItem() {
    // A push in progress ends before the members go.
    QMutexLocker lock(&m_mutex);
    m_stopped = true;
}

bool VideoItem::isRunning() const {
    QMutexLocker lock(&m_mutex);
    return !m_stopped;
}

qint64 VideoItem::receivedFrames() const {
    QMutexLocker lock(&m_mutex);
    return m_received;
}

qint64 VideoItem::droppedFrames() const {
    QMutexLocker lock(&m_mutex);
    return m_dropped;
}

qint64 VideoItem::refusedFrames() const {
    QMutexLocker lock(&m_mutex);
    return m_refused;
}

double VideoItem::frameRate() const {
    QMutexLocker lock(&m_mutex);
    const qint64 ring = qint64(m_arrivals.size());
    const qint64 n = std::min(m_received, ring);
    if (n < 2)
        return 0;
    const qint64 newest = m_arrivals[size_t((m_received - 1) % ring)];
    const qint64 oldest = m_arrivals[size_t((m_received - n) % ring)];
    if (m_clock.nsecsElapsed() - newest > RateTimeout || newest <= oldest)
        return 0;
    return (n - 1) * 1e9 / double(newest - oldest);
}

void VideoItem::setFrame(const QImage& frame) {
    const bool allowed = PictureReader::sizeAllowed(frame.size());
    QMutexLocker lock(&m_mutex);
    if (m_stopped)
        return;
    if (!allowed) {
        ++m_refused;
        return;
    }
    m_arrivals[size_t(m_received % qint64(m_arrivals.size()))] = m_clock.nsecsElapsed();
    ++m_received;
    if (!m_pending.isNull())
        ++m_dropped;
    m_pending = frame;
    if (m_posted)
        return;
    m_posted = true;
    lock.unlock();
    QMetaObject::invokeMethod(this, &VideoItem::takeFrame, Qt::QueuedConnection);
}

void VideoItem::takeFrame() {
    QMutexLocker lock(&m_mutex);
    m_posted = false;
    if (m_pending.isNull())
        return;
    if (!m_frame.isNull() && !m_framePainted)
        ++m_dropped;
    m_frame = m_pending;
    m_pending = QImage();
    lock.unlock();
    m_framePainted = false;
    update();
}

void VideoItem::videoStarted(void* camera, cameraInfos* infos) {
    {
        QMutexLocker lock(&m_mutex);
        m_stopped = false;
        m_pending = QImage();
        m_received = m_dropped = m_refused = 0;
    }
    m_camera = camera;
    m_cameraName = infos ? infos->name : QString();
    m_frame = QImage();
    m_painted = 0;
    update();
}

// A stop for another camera than the one started is not this item's.
void VideoItem::videoStopped(void* camera) {
    if (camera && m_camera && camera != m_camera)
        return;
    {
        QMutexLocker lock(&m_mutex);
        m_stopped = true;
        m_pending = QImage();
    }
    m_frame = QImage();
    update();
}

void VideoItem::fillContextMenu(QMenu* menu) {
    createMenuAction(menu, QIcon(), tr("Snapshot"), false, nullptr, Snapshot)
        ->setEnabled(!m_frame.isNull() && hostScene());
}

void VideoItem::applyContextMenu(int data) {
    if (data == Snapshot)
        snapshot();
}

void VideoItem::snapshot() {
    AbstractScene* host = hostScene();
    if (!host || m_frame.isNull())
        return;
    QImage still = m_frame;
    host->setImage(still);
    emit itemChanged(this, QStringLiteral("Snapshot"), &still);
}

void VideoItem::paint(QPainter* painter, const QStyleOptionGraphicsItem*, QWidget*) {
    const QRectF r = frame();
    painter->save();
    painter->fillRect(r, Qt::black);
    painter->setFont(m_font);
    if (m_frame.isNull()) {
        painter->setPen(Qt::white);
        painter->drawText(r, Qt::AlignCenter, tr("no signal"));
    } else {
        QRectF target(QPointF(0, 0), QSizeF(m_frame.size()).scaled(r.size(), Qt::KeepAspectRatio));
        target.moveCenter(r.center());
        painter->setRenderHint(QPainter::SmoothPixmapTransform);
        painter->drawImage(target, m_frame);
        if (!m_framePainted) {
            m_framePainted = true;
            ++m_painted;
        }
    }
    const double rate = frameRate();
    if (rate > 0) {
        painter->setPen(m_pen.color());
        painter->drawText(r.adjusted(4, 2, -4, -2), Qt::AlignLeft | Qt::AlignTop,
                          tr("%1 fps").arg(rate, 0, 'f', 1));
    }
    painter->restore();
}
