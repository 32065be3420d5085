// SPDX-License-Identifier: MIT
#include "shell/lazyicon.h"

#include <QIconEngine>
#include <QPainter>

namespace tessera {

namespace {

class LazyEngine : public QIconEngine {
public:
    explicit LazyEngine(QString const& file)
        : m_file(file) {}

    void paint(QPainter* painter, QRect const& rect, QIcon::Mode mode, QIcon::State state) override {
        icon().paint(painter, rect, Qt::AlignCenter, mode, state);
    }
    QPixmap pixmap(QSize const& size, QIcon::Mode mode, QIcon::State state) override {
        return icon().pixmap(size, mode, state);
    }
    QSize actualSize(QSize const& size, QIcon::Mode mode, QIcon::State state) override {
        return icon().actualSize(size, mode, state);
    }
    QList<QSize> availableSizes(QIcon::Mode mode, QIcon::State state) const override {
        return icon().availableSizes(mode, state);
    }
    QIconEngine* clone() const override { return new LazyEngine(m_file); }
    QString key() const override { return QStringLiteral("tessera lazy icon"); }

private:
    QIcon const& icon() const {
        if (m_icon.isNull())
            m_icon = QIcon(m_file);
        return m_icon;
    }

    QString m_file;
    mutable QIcon m_icon;
};

} // namespace

QIcon LazyIcon(QString const& file) {
    return QIcon(new LazyEngine(file));
}

} // namespace tessera
