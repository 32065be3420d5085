// SPDX-License-Identifier: MIT
#include "engine/filehelpers.h"

#include <QFile>
#include <QTemporaryDir>
#include <QtTest>

class TestFileHelpers : public QObject {
    Q_OBJECT

private:
    QTemporaryDir m_folder;

    QString put(QString const& name, QByteArray const& bytes) const {
        QFile file(m_folder.filePath(name));
        if (file.open(QIODevice::WriteOnly))
            file.write(bytes);
        return file.fileName();
    }

    static QByteArray bytes(QString const& path) {
        QFile file(path);
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray("(missing)");
    }

private slots:
    void copy_replaces_the_target() {
        QString const source = put("source.mkf", QByteArray(100000, 'n'));
        QString const target = put("target.mkf", "old");
        QVERIFY(CopyFile(source, target));
        QCOMPARE(bytes(target), QByteArray(100000, 'n'));
        QVERIFY(CopyFile(put("empty.mkf", ""), target));
        QCOMPARE(bytes(target), QByteArray());
    }

    void copy_without_a_source_leaves_the_target() {
        QString const target = put("kept.mkf", "old");
        QVERIFY(!CopyFile(m_folder.filePath("nothing.mkf"), target));
        QVERIFY(!CopyFile(m_folder.path(), target));
        QVERIFY(!CopyFile(target, QString()));
        QCOMPARE(bytes(target), QByteArray("old"));
    }

    void lists_follow_the_directory_object() {
        QTemporaryDir folder;
        for (char const* name : {"b.mkf", "a.b.mkf", "c.mdf"}) {
            QFile file(folder.filePath(name));
            QVERIFY(file.open(QIODevice::WriteOnly));
        }
        QVERIFY(QDir(folder.path()).mkpath("sub.mkf"));
        QDir dir(folder.path());
        dir.setSorting(QDir::Name);
        QCOMPARE(ListFiles(dir, true), QStringList({"a.b.mkf", "b.mkf", "c.mdf"}));
        QCOMPARE(ListFiles(dir, false), QStringList({"a.b", "b", "c"}));
        dir.setSorting(QDir::Name | QDir::Reversed);
        QCOMPARE(ListFiles(dir, true).first(), QString("c.mdf"));
        QVERIFY(ListFiles(QDir(folder.filePath("missing")), true).isEmpty());
        QSet<QString> names = {"kept"};
        GetFileExtInPath(folder.path(), ".mkf", names);
        QCOMPARE(names, QSet<QString>({"kept", "a.b", "b"}));
    }
};

QTEST_GUILESS_MAIN(TestFileHelpers)
#include "tst_filehelpers.moc"
