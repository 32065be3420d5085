// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include "simengine/view/scenepainter.h"

#include <QImage>
#include <QObject>
#include <QThreadPool>

namespace sim {

/// What a picture of a document's objects shows.
struct SceneOrder {
    StatePtr state;
    ViewTransform transform;
    PenColors colors;
    QRectF fieldMm;
    bool withSelection = true;
    QSize pixels; ///< device pixels
    double ratio = 1.0;
};

/// A picture and what it took to draw it.
struct ScenePicture {
    SceneOrder order;
    QImage image;
    /// Of the drawing thread itself; without end when there was no memory for the objects, which it does not show then.
    double workMs = 0.0;
};

/// Grid and objects as an order says. Any thread; the cache belongs to the caller.
ScenePicture drawScene(SceneCache& cache, const SceneOrder& order);

/// Draws pictures on a thread of its own, one at a time, so that a large document does not hold up the main thread,
/// which handles the input poll. Used on the main thread.
class SceneDrawer : public QObject {
    Q_OBJECT
public:
    explicit SceneDrawer(QObject* parent);
    /// Gives up the picture that is being drawn.
    ~SceneDrawer() override;

    bool isBusy() const { return m_busy; }
    /// What has been drawn so far; goes on to be there when the drawer is gone.
    std::shared_ptr<const Cancellation> work() const { return m_work; }
    /// Nothing while a picture is being drawn.
    void draw(const SceneOrder& order);

signals:
    /// For each draw() that was begun, with the objects or without.
    void drawn(const sim::ScenePicture& picture);

private:
    ScenePicture drawContained(const SceneOrder& order, QString& fault);
    void take(const ScenePicture& picture, const QString& fault);

    const std::shared_ptr<Cancellation> m_work = std::make_shared<Cancellation>();
    QThreadPool m_pool;
    SceneCache m_cache; ///< of the drawing thread while it is busy
    bool m_busy = false;
    bool m_failed = false; ///< the last picture
};

} // namespace sim
