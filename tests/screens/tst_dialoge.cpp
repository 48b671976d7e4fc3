// The three number and copy dialogs against their control tables: kind, caption, position at
// 15 twips per pixel, tab order, client size.
#include "platform/ui/DataControl.h"
#include "screens/Bildschirmstil.h"
#include "screens/InputFeld.h"
#include "ui_frmKoBeginn.h"
#include "ui_frmKrNeu.h"
#include "ui_frmNeu.h"

#include <QDialog>
#include <QFontMetrics>
#include <QLabel>
#include <QPushButton>
#include <QTest>
#include <memory>

namespace {

std::unique_ptr<QDialog> dialog(const QString &name)
{
    auto d = std::make_unique<QDialog>();
    if (name == QLatin1String("frmNeu"))
        Ui::frmNeu().setupUi(d.get());
    else if (name == QLatin1String("frmKrNeu"))
        Ui::frmKrNeu().setupUi(d.get());
    else
        Ui::frmKoBeginn().setupUi(d.get());
    return d;
}

QString beschriftung(QWidget *w)
{
    if (auto *l = qobject_cast<QLabel *>(w))
        return l->text();
    if (auto *b = qobject_cast<QPushButton *>(w))
        return b->text();
    if (auto *d = qobject_cast<platform::DataControl *>(w))
        return d->Caption();
    return {};
}

QString art(QWidget *w)
{
    if (qobject_cast<screens::InputFeld *>(w))
        return QStringLiteral("InputFeld");
    if (qobject_cast<platform::DataControl *>(w))
        return QStringLiteral("data");
    if (qobject_cast<QPushButton *>(w))
        return QStringLiteral("button");
    if (qobject_cast<QLabel *>(w))
        return QStringLiteral("label");
    return QString::fromLatin1(w->metaObject()->className());
}

} // namespace

class tst_Dialoge : public QObject
{
    Q_OBJECT

private slots:
    void steuerelemente_data();
    void steuerelemente();
    void fenster_data();
    void fenster();
    void tabulatorfolge_data();
    void tabulatorfolge();
    void nummernfelder_data();
    void nummernfelder();
};

void tst_Dialoge::steuerelemente_data()
{
    QTest::addColumn<QString>("dialog");
    QTest::addColumn<QString>("name");
    QTest::addColumn<QString>("art");
    QTest::addColumn<QString>("text");
    QTest::addColumn<QRect>("twips");

    const auto zeile = [](const char *d, const char *n, const char *a, const QString &t,
                          QRect r) {
        QTest::addRow("%s.%s", d, n) << QString::fromLatin1(d) << QString::fromUtf8(n)
                                     << QString::fromLatin1(a) << t << r;
    };
    zeile("frmKrNeu", "Label1", "label",
          QStringLiteral("um ein neues Kreditorenkonto zu eröffnen, geben Sie jetzt die neue "
                         "Kontonummer ein:"),
          {240, 360, 3375, 615});
    zeile("frmKrNeu", "inpNeuEröffKontoNr", "InputFeld", {}, {2400, 1200, 1215, 375});
    zeile("frmKrNeu", "cmdAbbrechen", "button", QStringLiteral("Vorgang abbrechen"),
          {240, 1800, 1335, 495});
    zeile("frmKrNeu", "cmdOK", "button", QStringLiteral("OK"), {2400, 1800, 1215, 495});
    zeile("frmKrNeu", "Label2", "label", QStringLiteral("neue Kontonummer:"),
          {600, 1320, 1455, 255});

    zeile("frmNeu", "Label1", "label",
          QStringLiteral("um ein neues Konto zu eröffnen, geben Sie jetzt die neue Kontonummer "
                         "4-, 5- oder 6-stellig ein:"),
          {240, 360, 3375, 615});
    zeile("frmNeu", "inpNeuEröffKontoNr", "InputFeld", {}, {2400, 1200, 1215, 375});
    zeile("frmNeu", "cmdOK", "button", QStringLiteral("OK"), {240, 1800, 1215, 495});
    zeile("frmNeu", "cmdAbbrechen", "button", QStringLiteral("Vorgang abbrechen"),
          {2280, 1800, 1335, 495});
    zeile("frmNeu", "Label2", "label", QStringLiteral("neue Kontonummer:"),
          {600, 1320, 1455, 255});

    zeile("frmKoBeginn", "inpÜbKontoNr", "InputFeld", {}, {5280, 2280, 975, 375});
    zeile("frmKoBeginn", "cmdKontoListe", "button", QStringLiteral("Konten Auswahlhilfe"),
          {240, 3120, 1215, 450});
    zeile("frmKoBeginn", "cmdAuswÜbernehmen", "button",
          QStringLiteral(" OK Kontendaten übernehmen"), {3120, 2880, 1695, 735});
    zeile("frmKoBeginn", "cmdAbbrechen", "button", QStringLiteral("Vorgang abbrechen"),
          {5040, 2880, 1215, 735});
    zeile("frmKoBeginn", "lblInfo", "label", QStringLiteral("#"), {240, 240, 6015, 1935});
    zeile("frmKoBeginn", "Label2", "label", QStringLiteral("übernehmen von Konto-Nr: "),
          {3120, 2400, 2175, 255});
    zeile("frmKoBeginn", "KKChkData", "data", QStringLiteral("KKChkData"),
          {120, 2520, 1695, 375});
}

void tst_Dialoge::steuerelemente()
{
    QFETCH(QString, dialog);
    QFETCH(QString, name);
    QFETCH(QString, art);
    QFETCH(QString, text);
    QFETCH(QRect, twips);

    const auto d = ::dialog(dialog);
    auto *w = d->findChild<QWidget *>(name);
    QVERIFY2(w, qPrintable(name));
    QCOMPARE(::art(w), art);
    if (!text.isNull())
        QCOMPARE(beschriftung(w), text);
    const auto px = [](int t) { return int(std::lround(t / 15.0)); };
    QCOMPARE(w->geometry(),
             QRect(px(twips.x()), px(twips.y()), px(twips.width()), px(twips.height())));
    if (auto *dc = qobject_cast<platform::DataControl *>(w)) {
        QCOMPARE(dc->Connect(), QStringLiteral("Access"));
        QVERIFY(dc->DatabaseName().isEmpty());
    }
}

void tst_Dialoge::fenster_data()
{
    QTest::addColumn<QString>("dialog");
    QTest::addColumn<QString>("titel");
    QTest::addColumn<QSize>("twips");
    QTest::newRow("frmNeu") << "frmNeu" << QStringLiteral("neuen Kontenstamm eröffnen")
                            << QSize(3780, 2400);
    QTest::newRow("frmKrNeu") << "frmKrNeu"
                              << QStringLiteral("neuen Kreditoren-Kontenstamm eröffnen")
                              << QSize(3780, 2400);
    QTest::newRow("frmKoBeginn") << "frmKoBeginn"
                                 << QStringLiteral("Daten von vorhandenem Konto übernehmen")
                                 << QSize(6435, 3810);
}

void tst_Dialoge::fenster()
{
    QFETCH(QString, dialog);
    QFETCH(QString, titel);
    QFETCH(QSize, twips);
    const auto d = ::dialog(dialog);
    QCOMPARE(d->objectName(), dialog);
    QCOMPARE(d->windowTitle(), titel);
    QCOMPARE(d->size(), QSize(int(std::lround(twips.width() / 15.0)),
                              int(std::lround(twips.height() / 15.0))));
    // As the screen shows it: no caption cut off, the title beside the window's buttons, no
    // navigation bar of a data control that works unseen.
    screens::bildschirmEinrichten(d.get());
    for (QLabel *l : d->findChildren<QLabel *>()) {
        if (!l->wordWrap())
            QVERIFY2(l->fontMetrics().horizontalAdvance(l->text()) <= l->width(),
                     qPrintable(l->objectName()));
        QVERIFY2(d->rect().contains(l->geometry()), qPrintable(l->objectName()));
    }
    QFont fett = d->font();
    fett.setBold(true);
    QVERIFY(QFontMetrics(fett).horizontalAdvance(titel) + 100 <= d->width());
    for (auto *dc : d->findChildren<platform::DataControl *>())
        QVERIFY(!dc->isVisibleTo(d.get()));
    for (QWidget *w : d->findChildren<QWidget *>()) {
        if (qobject_cast<QPushButton *>(w) || qobject_cast<screens::InputFeld *>(w))
            QVERIFY2(w->toolTip().size() > 10, qPrintable(w->objectName()));
    }
}

void tst_Dialoge::tabulatorfolge_data()
{
    QTest::addColumn<QString>("dialog");
    QTest::addColumn<QStringList>("folge");
    QTest::newRow("frmNeu") << "frmNeu"
                            << QStringList {"inpNeuEröffKontoNr", "cmdAbbrechen", "cmdOK"};
    QTest::newRow("frmKrNeu") << "frmKrNeu"
                              << QStringList {"inpNeuEröffKontoNr", "cmdAbbrechen", "cmdOK"};
    QTest::newRow("frmKoBeginn")
        << "frmKoBeginn"
        << QStringList {"inpÜbKontoNr", "cmdKontoListe", "cmdAuswÜbernehmen", "cmdAbbrechen"};
}

void tst_Dialoge::tabulatorfolge()
{
    QFETCH(QString, dialog);
    QFETCH(QStringList, folge);
    const auto d = ::dialog(dialog);
    for (int i = 0; i + 1 < folge.size(); ++i) {
        QWidget *w = d->findChild<QWidget *>(folge.at(i));
        QVERIFY(w);
        // The next focusable control in the chain (labels and data-control parts are passed).
        QWidget *n = w->nextInFocusChain();
        while (n && n != w && (n->focusPolicy() == Qt::NoFocus || n->objectName().isEmpty()))
            n = n->nextInFocusChain();
        QVERIFY(n);
        QCOMPARE(n->objectName(), folge.at(i + 1));
    }
}

void tst_Dialoge::nummernfelder_data()
{
    QTest::addColumn<QString>("dialog");
    QTest::newRow("frmNeu") << "frmNeu";
    QTest::newRow("frmKrNeu") << "frmKrNeu";
}

void tst_Dialoge::nummernfelder()
{
    QFETCH(QString, dialog);
    const auto d = ::dialog(dialog);
    auto *f = d->findChild<screens::InputFeld *>(QStringLiteral("inpNeuEröffKontoNr"));
    QVERIFY(f);
    QCOMPARE(f->anzdezimalen(), 0);
    QVERIFY(f->keinminus());
    QVERIFY(f->keintausendpkt());
    QCOMPARE(f->maxwert(), 6);
    QVERIFY(f->zulaessig(QStringLiteral("123456")));
    QVERIFY(!f->zulaessig(QStringLiteral("1234567")));
    QVERIFY(!f->zulaessig(QStringLiteral("-12")));
    QVERIFY(!f->zulaessig(QStringLiteral("12,5")));
    QVERIFY(!f->zulaessig(QStringLiteral("1.000")));
    QVERIFY(!f->zulaessig(QStringLiteral("12a")));
}

QTEST_MAIN(tst_Dialoge)
#include "tst_dialoge.moc"
