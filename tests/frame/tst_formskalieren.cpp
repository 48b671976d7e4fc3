// Scaling a screen by the user's factor on real widgets.
#include "frame/FormSkalieren.h"
#include "frame/mdlKontenStamm.h"
#include "platform/ui/DataControl.h"

#include <QComboBox>
#include <QDialog>
#include <QGroupBox>
#include <QHeaderView>
#include <QLabel>
#include <QLineEdit>
#include <QTableWidget>
#include <QTemporaryDir>
#include <QTest>

namespace {

// A screen as the layouts build them: absolute positions, a frame with a field, a grid, a line,
// a "Small Fonts" label, a combo and a data control with inner widgets of their own.
struct Maske
{
    QDialog form;
    QLabel *label;
    QGroupBox *rahmen;
    QLineEdit *imRahmen;
    QTableWidget *tabelle;
    QFrame *linie;
    QLabel *klein;
    QComboBox *combo;
    platform::DataControl *daten;

    Maske()
    {
        form.setObjectName(QStringLiteral("frmTest"));
        form.setGeometry(40, 30, 400, 300);
        QFont f = form.font();
        f.setPointSizeF(8);
        form.setFont(f);
        label = neu<QLabel>(QStringLiteral("lblText"), &form, {10, 20, 100, 17});
        rahmen = neu<QGroupBox>(QStringLiteral("frame1_0"), &form, {8, 60, 300, 120});
        imRahmen = neu<QLineEdit>(QStringLiteral("inpFeld"), rahmen, {16, 24, 80, 21});
        tabelle = neu<QTableWidget>(QStringLiteral("grdListe"), &form, {8, 190, 300, 80});
        tabelle->setColumnCount(2);
        tabelle->horizontalHeader()->resizeSection(0, 60);
        tabelle->horizontalHeader()->resizeSection(1, 90);
        linie = neu<QFrame>(QStringLiteral("Line1"), &form, {8, 185, 300, 2});
        linie->setFrameShape(QFrame::HLine);
        klein = neu<QLabel>(QStringLiteral("lblKlein"), &form, {120, 20, 60, 12});
        QFont k(QStringLiteral("Small Fonts"));
        k.setPointSizeF(6);
        klein->setFont(k);
        combo = neu<QComboBox>(QStringLiteral("cmbTyp"), &form, {200, 20, 120, 21});
        daten = neu<platform::DataControl>(QStringLiteral("KKData"), &form, {10, 275, 200, 20});
    }

    template<class W> W *neu(const QString &name, QWidget *eltern, QRect g)
    {
        auto *w = new W(eltern);
        w->setObjectName(name);
        w->setGeometry(g);
        return w;
    }
};

} // namespace

class tst_FormSkalieren : public QObject
{
    Q_OBJECT

private slots:
    void faktor_data();
    void faktor();
    void ohnePositionenUndSchriftenBleibtDieMaske();
    void bildschirmMit800PunktenWirdNieSkaliert();
};

void tst_FormSkalieren::faktor_data()
{
    QTest::addColumn<float>("faktor");
    QTest::newRow("2,0") << 2.0f;
    QTest::newRow("1,5") << 1.5f;
}

void tst_FormSkalieren::faktor()
{
    QFETCH(float, faktor);
    Maske m;
    const auto mal = [faktor](int v) {
        return int(std::lround(v * double(faktor)));
    };
    const QRect innenVorher = m.daten->findChildren<QWidget *>().isEmpty()
        ? QRect()
        : m.daten->findChildren<QWidget *>().first()->geometry();

    frame::formSkalierenMit(&m.form, true, true, faktor);

    QCOMPARE(m.form.geometry(), QRect(mal(40), mal(30), mal(400), mal(300)));
    QCOMPARE(m.form.font().pointSizeF(), 8.0 * faktor);
    // Left, Width and Height grow; Top stays where it was designed.
    QCOMPARE(m.label->geometry(), QRect(mal(10), 20, mal(100), mal(17)));
    QCOMPARE(m.rahmen->geometry(), QRect(mal(8), 60, mal(300), mal(120)));
    QCOMPARE(m.imRahmen->geometry(), QRect(mal(16), 24, mal(80), mal(21)));
    QCOMPARE(m.combo->geometry(), QRect(mal(200), 20, mal(120), mal(21)));
    QCOMPARE(m.tabelle->horizontalHeader()->sectionSize(0), mal(60));
    QCOMPARE(m.tabelle->horizontalHeader()->sectionSize(1), mal(90));
    QCOMPARE(m.linie->geometry(), QRect(mal(8), 185, mal(300), mal(2)));
    // Each control's font once, not again through the form's enlarged font.
    QCOMPARE(m.label->font().pointSizeF(), 8.0 * faktor);
    QCOMPARE(m.imRahmen->font().pointSizeF(), 8.0 * faktor);
    QCOMPARE(m.klein->font().family(), QStringLiteral("Small Fonts"));
    QCOMPARE(m.klein->font().pointSizeF(), 6.0);
    // Inner parts of composite controls are not controls of the screen.
    if (!innenVorher.isNull())
        QCOMPARE(m.daten->findChildren<QWidget *>().first()->geometry().top(), innenVorher.top());
}

void tst_FormSkalieren::ohnePositionenUndSchriftenBleibtDieMaske()
{
    Maske m;
    frame::formSkalierenMit(&m.form, false, false, 2.0f);
    QCOMPARE(m.form.geometry(), QRect(40, 30, 400, 300));
    QCOMPARE(m.form.font().pointSizeF(), 8.0);
    QCOMPARE(m.label->geometry(), QRect(20, 20, 200, 34));
}

void tst_FormSkalieren::bildschirmMit800PunktenWirdNieSkaliert()
{
    // The offscreen display is 800 pixels wide; whatever the settings say, nothing changes.
    QTemporaryDir dir;
    qputenv("USERPROFILE", dir.path().toLocal8Bit());
    QFile ini(dir.filePath(QStringLiteral("ZEL-Settings.ini")));
    QVERIFY(ini.open(QIODevice::WriteOnly));
    ini.write("[Section1]\r\nSkalieren=1\r\n[Section2]\r\nSkFaktor=10\r\n");
    ini.close();
    if (QGuiApplication::primaryScreen()->size().width() != 800)
        QSKIP("Nur auf einem 800 Punkte breiten Bildschirm aussagekräftig.");
    Maske m;
    bool positionen = true;
    bool schriften = true;
    double faktor = 0;
    frame::FormSkalieren(&m.form, positionen, schriften, faktor);
    QCOMPARE(m.form.geometry(), QRect(40, 30, 400, 300));
    QCOMPARE(m.label->geometry(), QRect(10, 20, 100, 17));
    QCOMPARE(mdlKontenStamm::BildschirmBreite, qint16(800));
}

QTEST_MAIN(tst_FormSkalieren)
#include "tst_formskalieren.moc"
