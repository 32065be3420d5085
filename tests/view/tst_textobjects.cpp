// SPDX-License-Identifier: MIT
// Placing and editing texts through their dialog.
#include "simengine/document/textedits.h"
#include "simengine/document/textmaker.h"
#include "simengine/view/fontdelegate.h"
#include "simengine/view/fontlistmodel.h"
#include "simengine/view/objectlistmodel.h"
#include "simengine/view/textdialog.h"
#include "simengine/view/textpreview.h"
#include "simengine/view/userfonts.h"
#include "support/waitfor.h"
#include "viewfixture.h"

#include <QCheckBox>
#include <QComboBox>
#include <QDoubleSpinBox>
#include <QFontDatabase>
#include <QLabel>
#include <QListView>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QTemporaryDir>

using namespace sim;
using tests::ViewFixture;

namespace {

/// The dialog of a view and its fields.
class Dialog {
public:
    explicit Dialog(ViewFixture& f) {
        for (TextDialog* dialog : f.canvas().findChildren<TextDialog*>()) {
            if (dialog->isVisible())
                m_dialog = dialog;
        }
    }

    bool isOpen() const { return m_dialog && m_dialog->isVisible(); }
    TextDialog* operator->() const { return m_dialog; }
    template<class Field>
    Field* field(const char* name) const {
        auto* found = m_dialog->findChild<Field*>(name);
        if (!found)
            qFatal("no field %s", name);
        return found;
    }
    void type(const QString& text) { field<QPlainTextEdit>("plainTextEditText")->setPlainText(text); }
    QString typed() const { return field<QPlainTextEdit>("plainTextEditText")->toPlainText(); }
    QDoubleSpinBox* height() const { return field<QDoubleSpinBox>("doubleSpinBoxHeight"); }
    QPushButton* ok() const { return field<QPushButton>("pushButtonOK"); }
    QString message() const { return field<QLabel>("labelMessage")->text(); }
    FontListModel* fonts() const { return m_dialog->findChild<FontListModel*>(); }
    QListView* list() const { return field<QListView>("listViewFonts"); }
    void choose(const QString& family, bool singleLine) {
        const int row = fonts()->rowOf(family, singleLine);
        if (row < 0)
            qFatal("no font %s", qPrintable(family));
        list()->setCurrentIndex(fonts()->index(row));
    }
    /// Confirms what was entered once the preview has followed it.
    void accept() {
        if (!tests::waitFor([this] { return ok()->isEnabled(); }))
            qFatal("the text cannot be confirmed: %s", qPrintable(message()));
        QTest::mouseClick(ok(), Qt::LeftButton);
    }
    void cancel() { QTest::mouseClick(field<QPushButton>("pushButtonCancel"), Qt::LeftButton); }

private:
    QPointer<TextDialog> m_dialog;
};

/// The dialog that a press on the drawing shows for a new text.
Dialog dialogForText(ViewFixture& f, double x = 0.0, double y = 0.0) {
    f.view.SetOperatorOnView(OperatorAddText);
    f.click(x, y);
    return Dialog(f);
}

const TextShape& textAt(ViewFixture& f, int index) {
    return std::get<TextShape>(f.state()->at(index)->shape());
}

void addText(ViewFixture& f, const QString& text) {
    TextSpec spec;
    spec.text = text;
    spec.family = QStringLiteral("rowmans");
    spec.height = 10.0;
    if (!f.session().addText(spec, {0, 0}))
        qFatal("the text was not added");
    f.session().document().select({});
}

/// The first file of a font that the packages install.
QByteArray anyFont() {
    QFile file(QStringLiteral("/usr/share/fonts/truetype/wqy/wqy-microhei.ttc"));
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

QByteArray utf16(const QString& text) {
    QByteArray bytes;
    for (const QChar unit : text) {
        bytes.append(char(unit.unicode() >> 8));
        bytes.append(char(unit.unicode()));
    }
    return bytes;
}

} // namespace

class tst_TextObjects : public QObject {
    Q_OBJECT

private slots:
    void a_press_asks_and_places_the_text_there() {
        ViewFixture f;
        f.view.SetCurrentLayerWithOutChangeLayer(3);
        Dialog dialog = dialogForText(f, -20, 10);
        QVERIFY(dialog.isOpen());
        QVERIFY(dialog->isModal());
        QVERIFY(!dialog.ok()->isEnabled());
        QCOMPARE(f.state()->count(), 0);
        dialog.type("H\nA1");
        dialog.height()->setValue(8.0);
        QTRY_VERIFY(dialog.ok()->isEnabled());
        dialog.accept();
        QCOMPARE(f.state()->count(), 1);
        QCOMPARE(textAt(f, 0).spec.text, QString("H\nA1"));
        QCOMPARE(textAt(f, 0).spec.height, 8.0);
        QVERIFY(textAt(f, 0).spec.singleLine);
        QCOMPARE(f.view.GetToolLayer(0), 3);
        QCOMPARE(f.selected(), QList<int>({0}));
        // the base line of the first line begins at the press
        const QTransform& placed = f.state()->at(0)->transform();
        QVERIFY(QLineF(placed.map(QPointF(0, 0)), {-20, 10}).length() < 0.2);
        QCOMPARE(f.view.GetOperatorOnView(), OperatorAddText);
        QTRY_VERIFY(!Dialog(f).isOpen());
        QCOMPARE(f.undoSteps(), 1);
    }

    void a_finger_places_a_text_too() {
        ViewFixture f;
        QTouchDevice* screen = QTest::createTouchDevice();
        f.view.SetOperatorOnView(OperatorAddText);
        QTest::touchEvent(&f.canvas(), screen).press(0, f.pixel(5, 5), &f.canvas());
        QVERIFY(!Dialog(f).isOpen());
        QTest::touchEvent(&f.canvas(), screen).release(0, f.pixel(5, 5), &f.canvas());
        QVERIFY(Dialog(f).isOpen());
    }

    void cancel_and_a_dragged_second_press_add_nothing() {
        ViewFixture f;
        Dialog dialog = dialogForText(f);
        dialog.type("A");
        dialog.cancel();
        QTRY_VERIFY(!Dialog(f).isOpen());
        f.click(0, 0, {}, Qt::RightButton);
        QCOMPARE(f.view.GetOperatorOnView(), OperatorSelect);
        QCOMPARE(f.state()->count(), 0);
        QCOMPARE(f.undoSteps(), 0);
    }

    void a_read_only_document_asks_for_no_text() {
        ViewFixture f;
        addText(f, "H");
        f.view.SetReadOnly(true);
        QVERIFY(!dialogForText(f, 20, 20).isOpen());
        const QString today = QDate::currentDate().toString("yyyy-MM-dd");
        QVERIFY(QString::fromUtf8(f.root.read("/日志文件/" + today + ".log")).contains("文档只读"));
        f.view.SetOperatorOnView(OperatorSelect);
        QTest::mouseDClick(&f.canvas(), Qt::LeftButton, {}, f.pixel(1.905, 5));
        QVERIFY(!Dialog(f).isOpen());
    }

    void what_cannot_be_marked_is_told_and_not_taken_data() {
        QTest::addColumn<QString>("text");
        QTest::addColumn<bool>("outline");
        QTest::addColumn<QString>("message");
        QTest::newRow("empty") << "" << false << "文字内容为空";
        QTest::newRow("blank") << "  " << false << "文字没有可打标的内容";
        QTest::newRow("strokes lack") << "A中文中" << false << "字体中没有这些字符: 中文";
        QTest::newRow("tab") << "A\tB" << false << "文字含有控制字符: U+0009";
        QTest::newRow("too long") << QString(10001, 'A') << false << "文字超过10000个字符";
        QTest::newRow("no font has it") << QString::fromUcs4(U"\U0010FFFD") << true
                                        << "字体中没有这些字符: " + QString::fromUcs4(U"\U0010FFFD");
    }
    void what_cannot_be_marked_is_told_and_not_taken() {
        QFETCH(QString, text);
        QFETCH(bool, outline);
        QFETCH(QString, message);
        ViewFixture f;
        Dialog dialog = dialogForText(f);
        if (outline)
            dialog.choose("WenQuanYi Micro Hei", false);
        else
            dialog.choose("rowmans", true);
        dialog.type("A");
        QTRY_VERIFY(dialog.ok()->isEnabled());
        dialog.type(text);
        // confirmed at once, before the preview has followed
        QTest::mouseClick(dialog.ok(), Qt::LeftButton);
        QVERIFY(dialog.isOpen());
        QCOMPARE(dialog.message(), message);
        QVERIFY(!dialog.ok()->isEnabled());
        QCOMPARE(dialog->findChild<TextPreview*>()->sizeText(), QString());
        QCOMPARE(f.state()->count(), 0);
    }

    void fonts_are_listed_with_the_single_line_ones_marked() {
        ViewFixture f;
        Dialog dialog = dialogForText(f);
        FontListModel* fonts = dialog.fonts();
        const int all = fonts->rowCount();
        QCOMPARE(fonts->index(0).data().toString(), QString("罗马体"));
        QVERIFY(fonts->index(0).data(FontListModel::SingleLineRole).toBool());
        QVERIFY(fonts->rowOf("WenQuanYi Micro Hei", false) > 0);
        dialog.choose("WenQuanYi Micro Hei", false);
        auto* kind = dialog.field<QComboBox>("comboBoxFontKind");
        kind->setCurrentIndex(FontListModel::SingleLineFonts);
        const int single = fonts->rowCount();
        for (int row = 0; row < single; ++row)
            QVERIFY(fonts->index(row).data(FontListModel::SingleLineRole).toBool());
        // the chosen font stays although the list does not show it
        QCOMPARE(dialog->spec().family, QString("WenQuanYi Micro Hei"));
        QVERIFY(!dialog->spec().singleLine);
        kind->setCurrentIndex(FontListModel::OutlineFonts);
        QCOMPARE(fonts->rowCount() + single, all);
        QCOMPARE(dialog.list()->currentIndex().data().toString(), QString("WenQuanYi Micro Hei"));
    }

    void bold_is_for_outline_fonts() {
        ViewFixture f;
        Dialog dialog = dialogForText(f);
        dialog.type("B");
        dialog.choose("WenQuanYi Micro Hei", false);
        auto* bold = dialog.field<QCheckBox>("checkBoxBold");
        QVERIFY(bold->isEnabled());
        bold->setChecked(true);
        QVERIFY(dialog->spec().bold);
        dialog.choose("rowmans", true);
        QVERIFY(!bold->isEnabled());
        QVERIFY(!dialog->spec().bold);
        dialog.choose("WenQuanYi Micro Hei", false);
        dialog.accept();
        QVERIFY(textAt(f, 0).spec.bold);
    }

    void the_next_text_begins_with_the_last_style() {
        ViewFixture f;
        {
            Dialog dialog = dialogForText(f);
            dialog.type("A");
            dialog.choose("futural", true);
            dialog.height()->setValue(2.75);
            dialog.field<QComboBox>("comboBoxAlign")->setCurrentIndex(2);
            dialog.accept();
        }
        QTRY_VERIFY(!Dialog(f).isOpen());
        f.click(10, 10);
        Dialog dialog(f);
        QVERIFY(dialog.isOpen());
        QCOMPARE(dialog.typed(), QString());
        QCOMPARE(dialog->spec().family, QString("futural"));
        QCOMPARE(dialog->spec().height, 2.75);
        QCOMPARE(int(dialog->spec().align), int(TextAlign::Right));
        dialog.cancel();
    }

    void the_preview_tells_the_size() {
        ViewFixture f;
        Dialog dialog = dialogForText(f);
        dialog.choose("rowmans", true);
        dialog.height()->setValue(21.0);
        dialog.type("H");
        auto* preview = dialog->findChild<TextPreview*>();
        QTRY_COMPARE(preview->sizeText(), QString("14.000 × 21.000 mm"));
        dialog.type("");
        QTRY_COMPARE(preview->sizeText(), QString());
    }

    void a_double_click_edits_the_text_in_its_place_data() {
        QTest::addColumn<QPointF>("place");
        QTest::addColumn<bool>("touch");
        QTest::newRow("on a letter") << QPointF(1.905, 5) << false;
        QTest::newRow("between the letters") << QPointF(9.9, 2.5) << false;
        QTest::newRow("finger") << QPointF(1.905, 5) << true;
    }
    void a_double_click_edits_the_text_in_its_place() {
        QFETCH(QPointF, place);
        QFETCH(bool, touch);
        ViewFixture f;
        addText(f, "HH");
        const Box before = f.bounds(0);
        if (touch) {
            QTouchDevice* screen = QTest::createTouchDevice();
            for (int tap = 0; tap < 2; ++tap) {
                QTest::touchEvent(&f.canvas(), screen).press(0, f.pixel(place.x(), place.y()), &f.canvas());
                QTest::touchEvent(&f.canvas(), screen).release(0, f.pixel(place.x(), place.y()), &f.canvas());
            }
        } else {
            QTest::mouseDClick(&f.canvas(), Qt::LeftButton, {}, f.pixel(place.x(), place.y()));
        }
        Dialog dialog(f);
        QVERIFY(dialog.isOpen());
        QCOMPARE(dialog.typed(), QString("HH"));
        QCOMPARE(dialog.height()->value(), 10.0);
        dialog.type("HHH");
        dialog.accept();
        QCOMPARE(f.state()->count(), 1);
        QCOMPARE(textAt(f, 0).spec.text, QString("HHH"));
        QCOMPARE(f.bounds(0).minX, before.minX);
        QCOMPARE(f.bounds(0).minY, before.minY);
        QVERIFY(f.bounds(0).width() > before.width() + 5.0);
        f.view.Undo();
        QCOMPARE(textAt(f, 0).spec.text, QString("HH"));
    }

    void an_edit_without_a_change_is_no_step() {
        ViewFixture f;
        addText(f, "H");
        f.session().document().select({0});
        // to a height that the box does not show to the last digit
        f.view.ScaleSelectedObj(1.0 / 3.0, 1.0 / 3.0, 0, 0);
        const StatePtr before = f.state();
        QTest::mouseDClick(&f.canvas(), Qt::LeftButton, {}, f.pixel(0.635, 2));
        Dialog dialog(f);
        QVERIFY(dialog.isOpen());
        QVERIFY(qAbs(dialog.height()->value() - 3.333) < 1e-9);
        dialog.accept();
        QTRY_VERIFY(!Dialog(f).isOpen());
        QCOMPARE(f.state()->objects, before->objects);
    }

    void a_scaled_text_gets_the_height_that_is_entered() {
        ViewFixture f;
        addText(f, "H");
        f.session().document().select({0});
        f.view.ScaleSelectedObj(2, 2, 0, 0);
        QTest::mouseDClick(&f.canvas(), Qt::LeftButton, {}, f.pixel(3.81, 10));
        Dialog dialog(f);
        QCOMPARE(dialog.height()->value(), 20.0);
        dialog.height()->setValue(8.0);
        dialog.accept();
        QVERIFY(qAbs(f.bounds(0).height() - 8.0) < 1e-9);
    }

    void a_text_that_was_removed_meanwhile_is_left_alone() {
        ViewFixture f;
        addText(f, "H");
        QTest::mouseDClick(&f.canvas(), Qt::LeftButton, {}, f.pixel(1.905, 5));
        Dialog dialog(f);
        dialog.type("new");
        f.view.Undo();
        QCOMPARE(f.state()->count(), 0);
        dialog.accept();
        QCOMPARE(f.state()->count(), 0);
    }

    void a_font_that_is_not_installed_is_told() {
        ViewFixture f;
        TextSpec spec;
        spec.text = "H";
        spec.family = "WenQuanYi Micro Hei";
        spec.singleLine = false;
        spec.height = 20.0;
        TextShape shape = makeText(spec).shape;
        shape.spec.family = "No Such Family";
        f.add(shape);
        QTest::mouseDClick(&f.canvas(), Qt::LeftButton, {}, f.pixel(f.bounds(0).minX + 0.2, f.bounds(0).center().y()));
        Dialog dialog(f);
        QVERIFY(dialog.isOpen());
        QCOMPARE(dialog.list()->currentIndex().data(FontListModel::InstalledRole).toBool(), false);
        QVERIFY2(dialog.message().startsWith("字体未安装,改用: "), qPrintable(dialog.message()));
        QVERIFY(dialog.ok()->isEnabled());
        QCOMPARE(dialog->spec().family, QString("No Such Family"));
    }

    void closing_the_view_closes_the_dialog() {
        auto f = std::make_unique<ViewFixture>();
        dialogForText(*f);
        QPointer<TextDialog> dialog = f->canvas().findChild<TextDialog*>();
        QVERIFY(dialog);
        f.reset();
        QVERIFY(!dialog);
    }

    void the_list_shows_the_text() {
        ViewFixture f;
        addText(f, "LOT 4711\n2026");
        addText(f, QString(500, 'x'));
        f.session().document().edit([](const DocumentState& state) { return edits::setName(state, 1, "long"); });
        ObjectListModel model(f.session(), nullptr);
        QCOMPARE(model.index(0).data().toString(), QString("1  LOT 4711 / 2026"));
        QCOMPARE(model.index(1).data().toString(), QString("2  long"));
        f.session().document().edit([](const DocumentState& state) { return edits::setName(state, 1, QString()); });
        model.refresh();
        QVERIFY(model.index(1).data().toString().size() < 100);
        QVERIFY(!model.index(0).data(Qt::DecorationRole).value<QIcon>().isNull());
    }

    void a_font_that_comes_while_the_program_runs_can_be_used_at_once() {
        const QString family = "SteelSign Micro Hei";
        QByteArray font = anyFont();
        QVERIFY2(font.size() > 1000, "the font of the package is missing");
        font.replace(utf16("WenQuanYi"), utf16("SteelSign"));
        font.replace("WenQuanYi", "SteelSign");
        QTemporaryDir folder;
        registerNewFonts(folder.path());
        QVERIFY(!QFontDatabase().families().contains(family));
        QFile file(folder.filePath("Steel.TTF"));
        QVERIFY(file.open(QIODevice::WriteOnly));
        file.write(font);
        file.close();
        QFile other(folder.filePath("broken.ttf"));
        QVERIFY(other.open(QIODevice::WriteOnly));
        other.write("no font at all");
        other.close();
        registerNewFonts(folder.path());
        QVERIFY(QFontDatabase().families().contains(family));
        ViewFixture f;
        Dialog dialog = dialogForText(f);
        dialog.type("H中");
        dialog.choose(family, false);
        QTRY_VERIFY(dialog.ok()->isEnabled());
        QCOMPARE(dialog.message(), QString());
        dialog.accept();
        QCOMPARE(textAt(f, 0).spec.family, family);
        // not loaded again and again
        const int count = QFontDatabase().families().size();
        registerNewFonts(folder.path());
        QCOMPARE(QFontDatabase().families().size(), count);
    }

    void the_dialog_is_for_fingers_and_fits_the_small_screen() {
        ViewFixture f;
        Dialog dialog = dialogForText(f);
        QVERIFY(dialog->width() <= 1024 && dialog->height() <= 600);
        QVERIFY(dialog->minimumSizeHint().width() <= 1024 && dialog->minimumSizeHint().height() <= 560);
        int looked = 0;
        for (const QWidget* widget : dialog->findChildren<QWidget*>()) {
            if (!qobject_cast<const QAbstractButton*>(widget) && !qobject_cast<const QComboBox*>(widget) &&
                !qobject_cast<const QAbstractSpinBox*>(widget))
                continue;
            if (!widget->isVisible() ||
                !widget->objectName().contains(QRegularExpression("^(push|check|combo|double)")))
                continue;
            QVERIFY2(widget->height() >= 40, qPrintable(widget->objectName()));
            ++looked;
        }
        QVERIFY(looked >= 9);
        QVERIFY(FontDelegate::kRowHeight >= 40);
    }
};

QTEST_MAIN(tst_TextObjects)
#include "tst_textobjects.moc"
