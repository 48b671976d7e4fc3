// The bundled list and position master components on both engines: filtering and choosing in
// the lists (keyboard only), what the components return, and the maintenance of the four
// position masters with unique keys and used positions kept.
#include "common/TestDatenbank.h"
#include "platform/core/CreateObject.h"
#include "platform/storage/Schema.h"
#include "platform/ui/MsgBox.h"
#include "siblings/Auswahlliste.h"
#include "siblings/zelAbrPosStamm.h"
#include "siblings/zelAllgError.h"

#include <QApplication>
#include <QLineEdit>
#include <QTableView>
#include <QTableWidget>
#include <QTimer>
#include <functional>

using namespace platform;
using platform::storage::Database;
using siblings::Stamm;
using siblings::Stammpflege;

namespace {
// Runs `schritt` on the list dialog once it is shown modally.
void inListe(std::function<void(siblings::Auswahlliste &)> schritt)
{
    auto versuch = std::make_shared<std::function<void(int)>>();
    *versuch = [schritt, versuch](int rest) {
        if (auto *d = qobject_cast<siblings::Auswahlliste *>(QApplication::activeModalWidget())) {
            schritt(*d);
            return;
        }
        if (rest > 0)
            QTimer::singleShot(10, [versuch, rest] { (*versuch)(rest - 1); });
    };
    QTimer::singleShot(0, [versuch] { (*versuch)(300); });
}
} // namespace

class TestGeschwisterkomponenten : public QObject
{
    Q_OBJECT

private:
    QString m_ort;
    std::shared_ptr<Database> m_db;
    std::unique_ptr<MsgBoxProtokoll> m_boxen;

    QVariantList info(int jahr = 2024)
    {
        QVariantList i(101);
        i[0] = m_ort;
        i[10] = jahr;
        i[11] = qint16(jahr);
        i[39] = QStringLiteral("zelKontenStamm");
        return i;
    }
    void konto(const QString &nr, const QString &name, int jahr = 2024, const QString &zus = {})
    {
        testhilfe::konto(*m_db, nr, name, jahr, zus);
    }
    qlonglong zeilen(const QString &tabelle)
    {
        return m_db->scalar("SELECT COUNT(*) FROM " + tabelle).toLongLong();
    }

private slots:
    void initTestCase() { siblingsRegistrieren(); }
    void init()
    {
        m_ort = testhilfe::neueDatenbank();
        m_db = Database::open(m_ort);
        platform::storage::schemaAnlegen(*m_db);
        konto("1000", "Kassa");
        konto("1200", "Bank Austria");
        konto("2000", "Lieferanten");
        konto("5000", "Anderes Jahr", 2023);
        m_boxen = std::make_unique<MsgBoxProtokoll>();
        // OK boxes need no script; every question must be answered by the test.
        m_boxen->setAntwortFunktion(
            [](const MsgBoxEintrag &e) { return (e.buttons & 7) == vbOKOnly ? vbOK : 0; });
    }
    void cleanup()
    {
        QVERIFY2(m_boxen->warnungen().isEmpty(), qPrintable(m_boxen->warnungen().join('\n')));
        QCOMPARE(m_boxen->offeneAntworten(), 0);
        m_boxen.reset();
        m_db.reset();
    }

    // --- lists ---

    void kontenlisteFiltern_data()
    {
        QTest::addColumn<QString>("methode");
        QTest::addColumn<QString>("filter");
        QTest::addColumn<QList<Qt::Key>>("tasten");
        QTest::addColumn<int>("sichtbar");
        QTest::addColumn<QVariant>("gewaehlt");
        const QString k = QStringLiteral("KontenListe");
        using Tasten = QList<Qt::Key>;
        QTest::newRow("alle, erste") << k << "" << Tasten {Qt::Key_Return} << 3 << QVariant("1000");
        QTest::newRow("alle, zweite")
            << k << "" << Tasten {Qt::Key_Down, Qt::Key_Return} << 3 << QVariant("1200");
        QTest::newRow("nummer") << k << "12" << Tasten {Qt::Key_Return} << 1 << QVariant("1200");
        QTest::newRow("name") << k << "LIEF" << Tasten {Qt::Key_Return} << 1 << QVariant("2000");
        QTest::newRow("nummernanfang, nicht mitte") << k << "00" << Tasten {} << 0 << QVariant();
        QTest::newRow("escape") << k << "" << Tasten {Qt::Key_Escape} << 3 << QVariant();
        QTest::newRow("nichts gefunden")
            << k << "xyz" << Tasten {Qt::Key_Return, Qt::Key_Escape} << 0 << QVariant();
        QTest::newRow("kreditoren") << QStringLiteral("KreditorenListe") << "stadt"
                                    << Tasten {Qt::Key_Return} << 1 << QVariant("30002");
    }
    void kontenlisteFiltern()
    {
        QFETCH(QString, methode);
        QFETCH(QString, filter);
        QFETCH(QList<Qt::Key>, tasten);
        QFETCH(int, sichtbar);
        QFETCH(QVariant, gewaehlt);
        int gesehen = -1;
        inListe([&](siblings::Auswahlliste &d) {
            QTest::keyClicks(d.filter(), filter);
            gesehen = d.sichtbareZeilen();
            for (Qt::Key t : tasten)
                QTest::keyClick(d.filter(), t);
            if (d.isVisible())
                d.reject();
        });
        m_db->execute("INSERT INTO KreditorenKontenstamm (KrKontoNr, KrKontoBezeichnung) VALUES "
                      "(30001, 'Hausbetreuung'), (30002, 'Stadtwerke')");
        auto liste = CreateObject("zelDiverseListen");
        aufrufen(liste.get(), qPrintable(methode), {QVariant(info())});
        QCOMPARE(gesehen, sichtbar);
        const QVariant ergebnis = aufrufen(liste.get(), "AuswahlNr");
        QCOMPARE(ergebnis.isNull(), gewaehlt.isNull());
        if (!gewaehlt.isNull())
            QCOMPARE(ergebnis.toString(), gewaehlt.toString());
    }

    void listeOhneDatenbank()
    {
        QVariantList i = info();
        i[0] = QString();
        auto liste = CreateObject("zelDiverseListen");
        aufrufen(liste.get(), "KontenListe", {QVariant(i)});
        QVERIFY(aufrufen(liste.get(), "AuswahlNr").isNull());
        QCOMPARE(m_boxen->anzahl(), 1);
        i[0] = QStringLiteral("/nirgends/kanzlei.zdb");
        aufrufen(liste.get(), "KontenListe", {QVariant(i)});
        QVERIFY(m_boxen->letzter().text.startsWith("Die Auswahlliste kann nicht geladen werden"));
    }

    void positionWaehlen_data()
    {
        QTest::addColumn<QString>("methode");
        QTest::addColumn<QString>("filter");
        QTest::addColumn<QVariantList>("erwartet");
        QTest::newRow("bilanz") << "BilanzPosAuswahl"
                                << "kassa" << QVariantList {1, "B", "II", "1", "a"};
        QTest::newRow("zl7") << "Zl7PosAuswahl"
                             << "1 2 3" << QVariantList {1, 2, 3};
    }
    void positionWaehlen()
    {
        QFETCH(QString, methode);
        QFETCH(QString, filter);
        QFETCH(QVariantList, erwartet);
        m_db->execute("INSERT INTO BilanzPos (BilPosAktPass, BilPosABC, BilPosRöm, BilPosArab, "
                      "BilPosABCklein, BilPosText) VALUES (1, 'B', 'II', '1', 'a', 'Kassa'), "
                      "(2, 'A', '', '', '', 'Eigenkapital')");
        m_db->execute("INSERT INTO BilanzPosZL7 (BilZl7Pos1, BilZl7Pos2, BilZl7Pos3, "
                      "BilZl7PosText) VALUES (1, 2, 3, 'Forderungen'), (1, 2, 4, 'Sonstige')");
        inListe([&](siblings::Auswahlliste &d) {
            QTest::keyClicks(d.filter(), filter);
            QTest::keyClick(d.filter(), Qt::Key_Return);
        });
        auto pos = CreateObject("zelAbrPosStamm");
        aufrufen(pos.get(), qPrintable(methode), {QVariant(info())});
        const QVariantList ergebnis = aufrufen(pos.get(), "Auswahl").toList();
        QCOMPARE(ergebnis.size(), erwartet.size());
        for (qsizetype i = 0; i < erwartet.size(); ++i)
            QCOMPARE(ergebnis[i].toString(), erwartet[i].toString());
    }

    // --- maintaining the masters ---

    void stammPflegen_data()
    {
        QTest::addColumn<int>("stamm");
        QTest::addColumn<QStringList>("zeile");
        QTest::addColumn<QString>("verwendung"); // makes account 1000 use the row
        QTest::newRow("bilanz") << 0 << QStringList {"1", "B", "II", "1", "a", "Kassa"}
                                << "KontoBilPosAktPass = 1, KontoBilPosABC = 'B', "
                                   "KontoBilPosRöm = 'II', KontoBilPosArab = '1', "
                                   "KontoBilPosABCklein = 'a'";
        QTest::newRow("zl7") << 1 << QStringList {"1", "2", "3", "Forderungen"}
                             << "KontoPos1 = 1, KontoPos2 = 2, KontoPos3 = 3";
        QTest::newRow("abrpos") << 2 << QStringList {"3", "12", "Wasser"}
                                << "KontoÖNORMAbrPos_I_II_III = 3, KontoÖNORMAbrPos_ABC = 12";
        QTest::newRow("bkblock") << 3 << QStringList {"2", "Heizung", "4"} << "KontoBkBlockPos = 2";
    }
    void stammPflegen()
    {
        QFETCH(int, stamm);
        QFETCH(QStringList, zeile);
        QFETCH(QString, verwendung);
        const Stamm *staemme[]
            = {&Stamm::bilanzPos(), &Stamm::zl7(), &Stamm::abrPos(), &Stamm::bkBloecke()};
        const Stamm &s = *staemme[stamm];
        Stammpflege pflege(s, m_db, 2024);
        QVERIFY(pflege.neu(zeile));
        QCOMPARE(zeilen(s.tabelle), 1);
        QCOMPARE(pflege.tabelle()->rowCount(), 1);

        // The same key once more is refused.
        QVERIFY(!pflege.neu(zeile));
        QVERIFY(m_boxen->letzter().text.contains("ist bereits vorhanden"));
        QCOMPARE(zeilen(s.tabelle), 1);

        // A number field with letters is refused.
        QStringList falsch = zeile;
        falsch[0] = "eins";
        QVERIFY(!pflege.neu(falsch));
        QCOMPARE(m_boxen->letzter().titel, "Eingabefehler");

        // The text can change; used by an account of the year, the row keeps its key and stays.
        QStringList geaendert = zeile;
        geaendert.back() = zeile.back() == u"4" ? "5" : "Neuer Text";
        QVERIFY(pflege.aendern(0, geaendert));
        m_db->execute("UPDATE ObjKanzleiKontenstamm SET " + verwendung + " WHERE KontoNr = '1000'");
        QVERIFY(!pflege.loeschen(0));
        QVERIFY2(m_boxen->letzter().text.contains("von 1 Konten verwendet (z.B. Konto 1000)"),
                 qPrintable(m_boxen->letzter().text));
        QStringList andererSchluessel = geaendert;
        andererSchluessel[0] = "7";
        QVERIFY(!pflege.aendern(0, andererSchluessel));
        QCOMPARE(zeilen(s.tabelle), 1);

        // Used only in another year: deleted after the question.
        m_db->execute("UPDATE ObjKanzleiKontenstamm SET KontoJJ = 2023 WHERE KontoNr = '1000'");
        m_boxen->antworte(vbNo);
        QVERIFY(!pflege.loeschen(0));
        QCOMPARE(zeilen(s.tabelle), 1);
        m_boxen->antworte(vbYes);
        QVERIFY(pflege.loeschen(0));
        QCOMPARE(zeilen(s.tabelle), 0);
        QCOMPARE(pflege.tabelle()->rowCount(), 0);
    }

    void textZuLang()
    {
        Stammpflege pflege(Stamm::bkBloecke(), m_db, 2024);
        QVERIFY(!pflege.neu({"1", QString(61, 'x'), "0"}));
        QVERIFY(m_boxen->letzter().text.contains("höchstens 60 Zeichen"));
        QVERIFY(!pflege.neu({"70000", "Block", "0"}));
        QVERIFY(m_boxen->letzter().text.contains("zwischen 0 und 32767"));
        // Values that look like SQL are stored as they are.
        QVERIFY(pflege.neu({"1", "x'); DROP TABLE AbrPosBkBlöcke; --", "0"}));
        QCOMPARE(m_db->scalar("SELECT BkBlockText FROM AbrPosBkBlöcke").toString(),
                 "x'); DROP TABLE AbrPosBkBlöcke; --");
    }
};

ZEP_ENGINE_TEST_MAIN(TestGeschwisterkomponenten)
#include "tst_geschwisterkomponenten.moc"
