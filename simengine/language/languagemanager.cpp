// SPDX-License-Identifier: GPL-2.0-or-later
#include "engine/languagemanager.h"

#include "simengine/params/inifile.h"
#include "support/approot.h"

#include <QTranslator>
#include <atomic>

namespace sim {

namespace {

constexpr char kContext[] = "Tessera"; ///< the one context of the .ts file
constexpr char kChinese[] = "zh_CN";
constexpr char kEnglish[] = "en";

/// The texts of both languages and the choice between them. They are loaded once and then only read, so every thread
/// may look up while the main thread changes the choice. A key is its own Chinese text but for a few keys in Latin
/// letters.
class Texts {
public:
    Texts()
        : m_file(tessera::rootPath(QStringLiteral("/ini/Language.ini"))) {
        m_loaded = m_englishTexts.load(QStringLiteral(":/translations/tessera_en.qm")) &&
                   m_chineseTexts.load(QStringLiteral(":/translations/tessera_zh_CN.qm"));
        QString const stored = m_file.value(QStringLiteral("Language"), QStringLiteral("Current")).value_or(QString());
        m_english = m_loaded && stored == QLatin1String(kEnglish);
    }

    bool english() const { return m_english; }

    QString translate(char const* key) const {
        QString const text = (m_english ? m_englishTexts : m_chineseTexts).translate(kContext, key);
        return text.isEmpty() ? QString::fromUtf8(key) : text;
    }

    bool choose(QString const& language) {
        bool const english = language == QLatin1String(kEnglish);
        if (!english && language != QLatin1String(kChinese))
            return false;
        if (english && !m_loaded)
            return false;
        m_english = english;
        return m_file.change([&language](IniDocument& document) {
            return document.setValue(QStringLiteral("Language"), QStringLiteral("Current"), language);
        });
    }

private:
    IniFile m_file;
    QTranslator m_englishTexts;
    QTranslator m_chineseTexts;
    bool m_loaded = false;
    std::atomic<bool> m_english{false};
};

Texts& texts() {
    static Texts instance;
    return instance;
}

} // namespace

} // namespace sim

QString LanguageManager::GetLanText(char const* key) {
    return sim::texts().translate(key);
}

QString LanguageManager::GetLanText(QString const& key) {
    return sim::texts().translate(key.toUtf8().constData());
}

QString LanguageManager::GetCurrentLan() {
    return QLatin1String(sim::texts().english() ? sim::kEnglish : sim::kChinese);
}

bool LanguageManager::SetCurrentLan(QString const& language) {
    return sim::texts().choose(language);
}
