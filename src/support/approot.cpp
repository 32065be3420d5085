// SPDX-License-Identifier: MIT
#include "support/approot.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QFileInfo>

#include <mutex>

namespace tessera {
namespace {

struct RootState {
    std::mutex mutex;
    QString chosen;           // set by the launcher, absolute, empty when not set
    QString environmentValue; // TESSERA_ROOT as it was when environmentRoot was resolved
    QString environmentRoot;
};

RootState& rootState() {
    // Never destroyed: workers that end during exit may still ask for a path.
    static RootState* const state = new RootState;
    return *state;
}

QString absoluteClean(const QString& directory) {
    return QDir::cleanPath(QDir(directory).absolutePath());
}

QString programDirectory() {
    if (QCoreApplication::instance() != nullptr)
        return QDir::cleanPath(QCoreApplication::applicationDirPath());
    return QFileInfo(QFile::symLinkTarget(QStringLiteral("/proc/self/exe"))).absolutePath();
}

} // namespace

QString applicationRoot() {
    RootState& state = rootState();
    const std::lock_guard<std::mutex> lock(state.mutex);
    if (!state.chosen.isEmpty())
        return state.chosen;
    const QString value = qEnvironmentVariable("TESSERA_ROOT");
    if (value.isEmpty())
        return programDirectory();
    if (value != state.environmentValue) {
        state.environmentRoot = absoluteClean(value);
        state.environmentValue = value;
    }
    return state.environmentRoot;
}

void setApplicationRoot(const QString& directory) {
    const QString chosen = directory.isEmpty() ? QString() : absoluteClean(directory);
    RootState& state = rootState();
    const std::lock_guard<std::mutex> lock(state.mutex);
    state.chosen = chosen;
}

QString rootPath(const QString& relative) {
    const QString root = applicationRoot();
    if (relative.isEmpty())
        return root;
    const bool needsSlash = !relative.startsWith(QLatin1Char('/')) && !root.endsWith(QLatin1Char('/'));
    if (relative.startsWith(QLatin1Char('/')) && root.endsWith(QLatin1Char('/')))
        return root + relative.mid(1);
    return needsSlash ? root + QLatin1Char('/') + relative : root + relative;
}

} // namespace tessera
