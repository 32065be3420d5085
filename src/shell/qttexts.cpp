// SPDX-License-Identifier: MIT
#include "shell/qttexts.h"

#include <QCoreApplication>
#include <QLibraryInfo>
#include <QTranslator>

namespace tessera {

namespace {

constexpr char kName[] = "qtTexts"; ///< object name of the translator, a child of the application

} // namespace

bool SetQtLanguage(QString const& language) {
    delete qApp->findChild<QTranslator*>(QLatin1String(kName), Qt::FindDirectChildrenOnly);
    if (language == QLatin1String("en"))
        return true;
    auto* translator = new QTranslator(qApp);
    translator->setObjectName(QLatin1String(kName));
    return translator->load(QStringLiteral("qtbase_") + language,
                            QLibraryInfo::location(QLibraryInfo::TranslationsPath)) &&
           QCoreApplication::installTranslator(translator);
}

} // namespace tessera
