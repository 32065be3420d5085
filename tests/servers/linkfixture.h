// SPDX-License-Identifier: MIT
#pragma once

#include "servers/stationclient.h"
#include "simengine/servers/stationlink.h"

#include <QStringList>
#include <gtest/gtest.h>
#include <mutex>
#include <poll.h>

/// A running link and its log. The test is the thread that takes the orders.
class LinkFixture : public ::testing::Test {
protected:
    using Client = tests::StationClient;

    static inline QByteArray const kKey = QByteArray(64, 'k');

    void start(sim::LinkLimits const& limits = {}) {
        link = std::make_unique<sim::StationLink>(kKey, limits, [this](bool, QString const& text) {
            std::lock_guard<std::mutex> const guard(m_logMutex);
            m_log.append(text);
        });
        QString error;
        ASSERT_TRUE(link->start(QStringLiteral("127.0.0.1"), 0, error)) << qPrintable(error);
        ASSERT_NE(link->port(), 0);
    }

    QStringList log() {
        std::lock_guard<std::mutex> const guard(m_logMutex);
        return m_log;
    }
    int logged(QString const& part) { return log().filter(part).size(); }
    /// Waits until a line that holds `part` is in the log.
    bool waitLogged(QString const& part) {
        return waitFor([&] { return logged(part) > 0; });
    }

    static bool waitFor(std::function<bool()> const& condition) {
        double const scale = std::max(1.0, qEnvironmentVariable("TESSERA_TIMEOUT_SCALE").toDouble());
        auto const end = std::chrono::steady_clock::now() + std::chrono::milliseconds(static_cast<int>(5000 * scale));
        while (!condition()) {
            if (std::chrono::steady_clock::now() >= end)
                return false;
            ::poll(nullptr, 0, 1);
        }
        return true;
    }

    /// The next order, or nothing when none comes in `ms`.
    std::optional<sim::StationOrder> order(int ms = 5000) {
        pollfd one{link->orderDescriptor(), POLLIN, 0};
        return ::poll(&one, 1, ms) == 1 ? link->takeOrder() : std::nullopt;
    }
    /// No order waits. What was sent before a reply that the test has read has been looked at.
    bool nothingOrdered() {
        pollfd one{link->orderDescriptor(), POLLIN, 0};
        return ::poll(&one, 1, 0) == 0;
    }

    static std::string reason(Client& client) {
        QJsonObject const message = client.message();
        return message.value("type").toString() == "refused" ? message.value("reason").toString().toStdString()
                                                             : "no refusal";
    }
    /// Gives an error line's number, 0 for anything else.
    static int errorLine(Client& client) {
        QJsonObject const message = client.message();
        return message.value("type").toString() == "error" ? message.value("line").toInt() : 0;
    }
    static bool pingPasses(Client& client) {
        return client.send("{\"type\":\"ping\",\"tag\":-7}\n") && client.line() == "{\"tag\":-7,\"type\":\"pong\"}";
    }

private:
    std::mutex m_logMutex;
    QStringList m_log;

protected:
    std::unique_ptr<sim::StationLink> link; ///< last: its thread writes the log
};
