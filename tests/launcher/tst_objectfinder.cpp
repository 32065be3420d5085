// SPDX-License-Identifier: MIT
#include "automation/objectfinder.h"

#include <QDialog>
#include <QMainWindow>
#include <QPushButton>
#include <QVBoxLayout>
#include <QtTest>

using tessera::ObjectFinder;

class TestObjectFinder : public QObject {
    Q_OBJECT

    QMainWindow m_window;
    QWidget* m_panel = nullptr;
    QDialog* m_first = nullptr;
    QDialog* m_second = nullptr;

    static QPushButton* addButton(QWidget* parent, char const* name) {
        auto* button = new QPushButton(parent);
        button->setObjectName(QString::fromLatin1(name));
        return button;
    }

    ObjectFinder::Found find(QString const& path) const {
        return ObjectFinder::find(path, {const_cast<QMainWindow*>(&m_window)});
    }

private slots:
    void initTestCase() {
        m_window.setObjectName(QStringLiteral("Main"));
        m_panel = new QWidget(&m_window);
        m_panel->setObjectName(QStringLiteral("panel"));
        addButton(m_panel, "only");
        m_first = new QDialog(&m_window);
        m_first->setObjectName(QStringLiteral("First"));
        auto* frame = new QWidget(m_first);
        frame->setObjectName(QStringLiteral("frame"));
        addButton(frame, "start");
        m_second = new QDialog(&m_window);
        m_second->setObjectName(QStringLiteral("Second"));
        addButton(m_second, "start");
        for (int i = 0; i < 2; ++i)
            addButton(new QWidget(m_panel), "twin")->setText(QString::number(i));
        for (int i = 0; i < 3; ++i)
            addButton(m_second, "same")->setText(QString::number(i));
    }

    void unique_name_is_found() {
        QCOMPARE(find("only").object, m_panel->findChild<QPushButton*>("only"));
        QCOMPARE(find("Main").object, static_cast<QObject*>(&m_window));
        QCOMPARE(find("QMainWindow").object, static_cast<QObject*>(&m_window));
    }

    void name_that_occurs_twice_is_ambiguous_and_lists_both() {
        ObjectFinder::Found const found = find("start");
        QVERIFY(!found.object);
        QVERIFY(found.ambiguous);
        QCOMPARE(found.candidates, QStringList({"Main/First/frame/start", "Main/Second/start"}));
    }

    void path_tells_equal_names_apart() {
        QCOMPARE(find("Second/start").object, m_second->findChild<QPushButton*>("start"));
        QCOMPARE(find("First/start").object, m_first->findChild<QPushButton*>("start"));
        QCOMPARE(find("Main/First/start").object, m_first->findChild<QPushButton*>("start"));
        QCOMPARE(find("QMainWindow/Second/start").object, m_second->findChild<QPushButton*>("start"));
    }

    void ancestors_count_in_their_order_only() {
        QVERIFY(!find("frame/First/start").object);
        QVERIFY(!find("frame/First/start").ambiguous);
    }

    void listed_paths_find_their_object() {
        for (QString const& name : {QStringLiteral("start"), QStringLiteral("twin"), QStringLiteral("same"),
                                    QStringLiteral("QPushButton"), QStringLiteral("QDialog")}) {
            ObjectFinder::Found const found = find(name);
            QVERIFY(found.ambiguous);
            for (QString const& path : found.candidates) {
                ObjectFinder::Found const again = find(path);
                QVERIFY2(again.object, qPrintable(path));
                QCOMPARE(ObjectFinder::fullPath(again.object), path);
            }
        }
    }

    void index_picks_among_equally_named_siblings() {
        QCOMPARE(find("Second/same[2]").object->property("text").toString(), QStringLiteral("2"));
        QVERIFY(!find("Second/same[3]").object);
    }

    void unknown_name_lists_similar_ones_data() {
        QTest::addColumn<QString>("wanted");
        QTest::addColumn<QString>("listed");
        QTest::newRow("typing error") << "onyl"
                                      << "Main/panel/only";
        QTest::newRow("case") << "ONLY"
                              << "Main/panel/only";
        QTest::newRow("part") << "star"
                              << "Main/Second/start";
    }
    void unknown_name_lists_similar_ones() {
        QFETCH(QString, wanted);
        QFETCH(QString, listed);
        ObjectFinder::Found const found = find(wanted);
        QVERIFY(!found.object);
        QVERIFY(!found.ambiguous);
        QVERIFY2(found.candidates.contains(listed), qPrintable(found.candidates.join(' ')));
    }

    void name_near_to_none_lists_the_windows() {
        for (QString const& name : {QStringLiteral("zzz"), QString(1 << 20, QLatin1Char('x')), QStringLiteral("/")}) {
            ObjectFinder::Found const found = find(name);
            QVERIFY(!found.object);
            QVERIFY(!found.ambiguous);
            QCOMPARE(found.candidates, QStringList("Main"));
        }
    }

    void empty_paths_find_nothing() {
        QVERIFY(!find("").object);
        QVERIFY(!find("/").object);
    }

    void two_windows_of_one_name_are_ambiguous() {
        QWidget a;
        QWidget b;
        a.setObjectName("w");
        b.setObjectName("w");
        ObjectFinder::Found const found = ObjectFinder::find("w", {&a, &b});
        QVERIFY(!found.object);
        QVERIFY(found.ambiguous);
    }
};

QTEST_MAIN(TestObjectFinder)
#include "tst_objectfinder.moc"
