// SPDX-License-Identifier: MIT
#include "shell/alarmrecorder.h"

#include "engine/marklog.h"
#include "support/approot.h"

#include <QDateTime>
#include <QPointer>

namespace tessera {

namespace {

qint64 wallClock() {
    return QDateTime::currentMSecsSinceEpoch();
}

} // namespace

AlarmRecorder::AlarmRecorder(QString const& file, QObject* parent, Clock now, int limit)
    : QObject(parent)
    , m_Now(now ? std::move(now) : Clock(wallClock))
    , m_History(limit)
    , m_Writer(file, m_Now(), limit) {
    m_Writer.SetStateListener([this](QString const& error) {
        QMetaObject::invokeMethod(
            this, [this, error] { OnStoreState(error); }, Qt::QueuedConnection);
    });
}

AlarmRecorder::~AlarmRecorder() {
    m_Writer.Save(m_History.EndAll(m_Now()));
}

QString AlarmRecorder::File() {
    return rootPath(QStringLiteral("/AlarmHistory/alarms.db"));
}

void AlarmRecorder::Look(AlarmSnapshot const& snapshot) {
    if (snapshot == m_Snapshot)
        return;
    m_Snapshot = snapshot;
    Take(m_History.Update(ActiveAlarms(snapshot), m_Now()));
}

void AlarmRecorder::Acknowledge(QVector<qint64> const& numbers, QString const& user) {
    const qint64 now = m_Now();
    QVector<AlarmEntry> changed;
    for (qint64 number : numbers) {
        if (number > 0) {
            if (const std::optional<AlarmEntry> entry = m_History.Acknowledge(number, user, now))
                changed.append(*entry);
            continue;
        }
        const AlarmAcknowledge what{number, now, user};
        m_Writer.AcknowledgeOlder(what);
        emit OlderAcknowledged(what, false);
    }
    Take(changed);
}

void AlarmRecorder::AcknowledgeAll(QString const& user) {
    const AlarmAcknowledge older{0, m_Now(), user};
    Take(m_History.AcknowledgeAll(user, older.ms));
    m_Writer.AcknowledgeAllOlder(older);
    emit OlderAcknowledged(older, true);
}

/// The functions run on the writer's thread and hand over to this object, whose end takes back what is under way.
void AlarmRecorder::ReadOlder(qint64 below, int count, QObject* context, ReadDone done) {
    const QPointer<QObject> asker(context);
    m_Writer.Read(std::min<qint64>(below, 1), count, [=](QVector<AlarmEntry> const& older, QString const& error) {
        QMetaObject::invokeMethod(
            this,
            [=] {
                if (asker)
                    done(older, error);
            },
            Qt::QueuedConnection);
    });
}

void AlarmRecorder::Export(QString const& file, QObject* context, ExportDone done) {
    const QPointer<QObject> asker(context);
    m_Writer.Export(file, [=](QString const& error) {
        QMetaObject::invokeMethod(
            this,
            [=] {
                if (asker)
                    done(error);
            },
            Qt::QueuedConnection);
    });
}

void AlarmRecorder::Take(QVector<AlarmEntry> const& changed) {
    if (changed.isEmpty())
        return;
    m_Writer.Save(changed);
    emit Changed(changed);
}

/// Told once for as long as it lasts.
void AlarmRecorder::OnStoreState(QString const& error) {
    m_StoreError = error;
    if (!error.isEmpty())
        MarkLog::Instance()->ShowNote_Error(QStringLiteral("the alarm history is not stored: ") + error);
    emit StoreStateChanged(error);
}

} // namespace tessera
