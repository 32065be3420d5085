// SPDX-License-Identifier: MIT
#pragma once

#include "engine/iocheckedsys.h"
#include "engine/markingmparam_vz.h"
#include "iosetup/iosetting.h"
#include "tests/iosetup/iosetupfixture.h"

#include <QCheckBox>
#include <QComboBox>
#include <QFile>
#include <QLineEdit>
#include <QPushButton>
#include <QSpinBox>

namespace tests {

/// The I/O dialog on the simulated card with a YLR laser, in a fresh root; the functions are put back at the end.
class IOSettingCase {
protected:
    void beginCase() {
        root = std::make_unique<TemporaryRoot>();
        card = std::make_unique<OpenCard>();
        MarkingMParam_VZ::Instance()->SetMarkCardType(MarkCardYLR);
        before = IOCheckedSys::Instance()->GetIOFunctions();
        IOSetting::Instance();
    }
    void endCase() {
        delete IOSetting::Instance();
        IOCheckedSys::Instance()->SetIOFunctions(before);
        card.reset();
        root.reset();
    }
    IOSetting& dialog() { return *IOSetting::Instance(); }
    QCheckBox* box(QString const& name) { return part<QCheckBox>(dialog(), name); }
    QSpinBox* spin(char const* name) { return part<QSpinBox>(dialog(), name); }
    QComboBox* combo(char const* name) { return part<QComboBox>(dialog(), name); }
    QPushButton* button(QString const& name) { return part<QPushButton>(dialog(), name); }
    QLineEdit* edit(QString const& name) { return part<QLineEdit>(dialog(), name); }
    QByteArray namesFile() const { return root->read(QStringLiteral("/ini/IOName.ini")); }
    /// What the program dresses its windows with.
    static QString styleSheet() {
        QFile style(sourcePath(QStringLiteral("resources/myQSS.qss")));
        if (!style.open(QIODevice::ReadOnly))
            qFatal("no style sheet");
        return QString::fromUtf8(style.readAll());
    }
    void restart() {
        delete IOSetting::Instance();
        IOSetting::Instance();
    }

    std::unique_ptr<TemporaryRoot> root;
    std::unique_ptr<OpenCard> card;
    QVector<IOFuncList> before;
};

} // namespace tests
