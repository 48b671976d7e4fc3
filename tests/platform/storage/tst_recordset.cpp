#include "common/TestDatenbank.h"
#include "platform/core/RuntimeError.h"
#include "platform/storage/Recordset.h"

#include <QDate>
#include <QTest>

using namespace platform;
using namespace platform::storage;

namespace {

const QString AlleKonten
    = QStringLiteral("SELECT * FROM Konten WHERE KontoJJ = ? ORDER BY KontoNr");

// Runs `f` and returns the RuntimeError number it raised (0 when none).
template<typename F> int fehlerVon(F &&f)
{
    try {
        f();
    } catch (const RuntimeError &e) {
        return e.nummer();
    }
    return 0;
}

} // namespace

class tst_Recordset : public QObject
{
    Q_OBJECT

private:
    std::shared_ptr<Database> m_db;
    QString m_ort;

    std::unique_ptr<Recordset> jahr(int jj = 2003)
    {
        return std::make_unique<Recordset>(m_db, AlleKonten, QVariantList {jj});
    }

    std::unique_ptr<Database> zweiterBenutzer() { return Database::openSeparate(m_ort); }

    QVariantList gespeichert(const QString &nr)
    {
        auto c = m_db->query(QStringLiteral("SELECT * FROM Konten WHERE KontoNr = ? AND "
                                            "KontoJJ = 2003"),
                             {nr});
        QVariantList werte;
        if (c->next()) {
            for (int i = 0; i < c->spaltenAnzahl(); ++i)
                werte.append(c->wert(i));
        }
        return werte;
    }

private slots:
    void init()
    {
        m_ort = testhilfe::neueDatenbank();
        m_db = Database::open(m_ort);
        m_db->execute(QStringLiteral(
            "CREATE TABLE Konten (KontoNr VARCHAR(6) NOT NULL, KontoJJ INTEGER NOT NULL, "
            "KontoBezeichnung VARCHAR(50), KontoTypus SMALLINT DEFAULT 0, "
            "KontoBilPosRöm VARCHAR(10), KontoBetrag DOUBLE PRECISION, KontoStornoDatum DATE, "
            "PRIMARY KEY (KontoNr, KontoJJ))"));
        m_db->execute(QStringLiteral("CREATE TABLE Salden (SSKontoNr VARCHAR(6), SSBetrag "
                                     "DOUBLE PRECISION)"));
        const QString ein = QStringLiteral("INSERT INTO Konten VALUES (?, ?, ?, ?, ?, ?, ?)");
        m_db->execute(ein, {"0001", 2003, "Kassa", 0, "I", 1.5, QDate(2003, 12, 31)});
        m_db->execute(ein, {"0002", 2003, "Bank", 1, QVariant(), QVariant(), QVariant()});
        m_db->execute(ein, {"0003", 2003, "Miete", 2, "II", 0.0, QVariant()});
        m_db->execute(ein, {"0001", 2004, "Kassa 04", 0, "I", 2.5, QVariant()});
    }

    void cleanup() { m_db.reset(); }

    // Steps "N" next, "P" previous, "F" first, "L" last, each with the expected
    // AbsolutePosition or "x" for error 3021.
    void bewegung_data()
    {
        QTest::addColumn<int>("jj");
        QTest::addColumn<QString>("schritte");
        QTest::newRow("leer") << 1999 << "N=x P=x F=x L=x";
        QTest::newRow("eine Zeile vor") << 2004 << "N=1 N=x P=0 P=-1 P=x N=0";
        QTest::newRow("eine Zeile erste/letzte") << 2004 << "L=0 F=0 P=-1 L=0";
        QTest::newRow("drei Zeilen") << 2003 << "N=1 N=2 N=3 N=x P=2 F=0 P=-1 N=0 L=2";
        QTest::newRow("von bof auf eof") << 2003 << "P=-1 F=0 L=2 N=3 P=2";
    }

    void bewegung()
    {
        QFETCH(int, jj);
        QFETCH(QString, schritte);
        auto rs = jahr(jj);
        const int anzahl = rs->RecordCount();
        // A fresh set stands on its first row, or on nothing with both ends true.
        QCOMPARE(rs->AbsolutePosition(), 0);
        QCOMPARE(rs->eof(), anzahl == 0);
        QCOMPARE(rs->bof(), anzahl == 0);
        for (const QString &schritt : schritte.split(QLatin1Char(' '))) {
            const QChar op = schritt[0];
            const QString erwartet = schritt.mid(2);
            const int vorher = rs->AbsolutePosition();
            const int nummer = fehlerVon([&] {
                if (op == QLatin1Char('N'))
                    rs->MoveNext();
                else if (op == QLatin1Char('P'))
                    rs->MovePrevious();
                else if (op == QLatin1Char('F'))
                    rs->MoveFirst();
                else
                    rs->MoveLast();
            });
            if (erwartet == QLatin1String("x")) {
                QVERIFY2(nummer == fehlernummer::KeinAktuellerDatensatz, qPrintable(schritt));
                QCOMPARE(rs->AbsolutePosition(), vorher);
                continue;
            }
            QVERIFY2(nummer == 0, qPrintable(schritt));
            const int pos = erwartet.toInt();
            QCOMPARE(rs->AbsolutePosition(), pos);
            QCOMPARE(rs->eof(), pos == anzahl);
            QCOMPARE(rs->bof(), pos == -1);
            if (pos >= 0 && pos < anzahl) {
                QCOMPARE(rs->feld("KontoNr").toString(),
                         QStringLiteral("000%1").arg(jj == 2004 ? 1 : pos + 1));
            } else {
                QCOMPARE(fehlerVon([&] { rs->feld("KontoNr"); }),
                         fehlernummer::KeinAktuellerDatensatz);
            }
        }
    }

    void findFirst_data()
    {
        QTest::addColumn<QStringList>("felder");
        QTest::addColumn<QVariantList>("werte");
        QTest::addColumn<int>("gefunden"); // -1: NoMatch

        QTest::newRow("Text genau") << QStringList {"KontoNr"} << QVariantList {"0002"} << 1;
        QTest::newRow("Text mit Blank") << QStringList {"KontoNr"} << QVariantList {"0002 "} << -1;
        QTest::newRow("Text andere Schreibung")
            << QStringList {"KontoBezeichnung"} << QVariantList {"bank"} << -1;
        QTest::newRow("Feldname klein") << QStringList {"kontonr"} << QVariantList {"0003"} << 2;
        QTest::newRow("Ganzzahl") << QStringList {"KontoTypus"} << QVariantList {2} << 2;
        QTest::newRow("Zahl als Text") << QStringList {"KontoTypus"} << QVariantList {"1"} << 1;
        QTest::newRow("Kein Zahltext") << QStringList {"KontoTypus"} << QVariantList {"eins"} << -1;
        QTest::newRow("Ganzzahl gegen Text") << QStringList {"KontoNr"} << QVariantList {3} << 2;
        QTest::newRow("Kommazahl") << QStringList {"KontoBetrag"} << QVariantList {1.5} << 0;
        QTest::newRow("Ganzzahl gegen Kommazahl")
            << QStringList {"KontoBetrag"} << QVariantList {0} << 2;
        QTest::newRow("Null") << QStringList {"KontoBilPosRöm"} << QVariantList {QVariant()} << 1;
        QTest::newRow("Null trifft keinen Wert")
            << QStringList {"KontoBetrag"} << QVariantList {7.0} << -1;
        QTest::newRow("Datum") << QStringList {"KontoStornoDatum"}
                               << QVariantList {QDate(2003, 12, 31)} << 0;
        QTest::newRow("Und") << QStringList {"KontoNr", "KontoTypus"} << QVariantList {"0001", 1}
                             << -1;
        QTest::newRow("Und trifft")
            << QStringList {"KontoJJ", "KontoTypus"} << QVariantList {2003, 2} << 2;
        QTest::newRow("anderes Jahr")
            << QStringList {"KontoBezeichnung"} << QVariantList {"Kassa 04"} << -1;
    }

    void findFirst()
    {
        QFETCH(QStringList, felder);
        QFETCH(QVariantList, werte);
        QFETCH(int, gefunden);
        std::vector<Kriterium> kriterien;
        for (int i = 0; i < felder.size(); ++i)
            kriterien.push_back({felder[i], werte[i]});
        auto rs = jahr();
        // Start off the first row, so that a hit and a miss are told apart by position.
        rs->MoveNext();
        rs->FindFirst(kriterien);
        QCOMPARE(rs->NoMatch(), gefunden < 0);
        QCOMPARE(rs->AbsolutePosition(), gefunden < 0 ? 1 : gefunden);
    }

    // Large sets are searched through an index of the column, which must follow every change.
    void findFirstGrosseMenge_data()
    {
        QTest::addColumn<QString>("vorher"); // change of account 1003 after a first search
        QTest::addColumn<QStringList>("felder");
        QTest::addColumn<QVariantList>("werte");
        QTest::addColumn<bool>("weiter"); // FindNext after the FindFirst
        QTest::addColumn<QString>("erwartet"); // KontoNr, "" for NoMatch

        const QStringList bez {"KontoBezeichnung"};
        QTest::newRow("eindeutig")
            << "" << QStringList {"KontoNr"} << QVariantList {"1150"} << false << "1150";
        QTest::newRow("doppelt, der erste") << "" << bez << QVariantList {"B3"} << false << "1003";
        QTest::newRow("doppelt, FindNext") << "" << bez << QVariantList {"B3"} << true << "1010";
        QTest::newRow("fehlt") << "" << bez << QVariantList {"B9"} << false << "";
        QTest::newRow("mit Blank") << "" << bez << QVariantList {"B3 "} << false << "";
        QTest::newRow("und") << "" << QStringList {"KontoBezeichnung", "KontoTypus"}
                             << QVariantList {"B3", 2} << false << "1017";
        QTest::newRow("Zahl gegen Textspalte")
            << "" << QStringList {"KontoNr"} << QVariantList {1150} << false << "1150";
        QTest::newRow("Text gegen Zahlspalte")
            << "" << QStringList {"KontoTypus"} << QVariantList {"1"} << false << "1001";
        QTest::newRow("geändert, alter Wert")
            << "Edit" << bez << QVariantList {"B3"} << false << "1010";
        QTest::newRow("geändert, neuer Wert")
            << "Edit" << bez << QVariantList {"X"} << false << "1003";
        QTest::newRow("gelöscht") << "Delete" << bez << QVariantList {"B3"} << false << "1010";
        QTest::newRow("angefügt bleibt hinten")
            << "AddNew" << bez << QVariantList {"B3"} << false << "1003";
        QTest::newRow("angefügt gefunden")
            << "AddNew" << QStringList {"KontoNr"} << QVariantList {"0999"} << false << "0999";
        QTest::newRow("auf Null gesetzt")
            << "Null" << bez << QVariantList {"B3"} << false << "1010";
    }

    void findFirstGrosseMenge()
    {
        QFETCH(QString, vorher);
        QFETCH(QStringList, felder);
        QFETCH(QVariantList, werte);
        QFETCH(bool, weiter);
        QFETCH(QString, erwartet);
        m_db->execute("WITH RECURSIVE r(n) AS (SELECT 0 UNION ALL SELECT n + 1 FROM r WHERE n < "
                      "399) INSERT INTO Konten (KontoNr, KontoJJ, KontoBezeichnung, KontoTypus) "
                      "SELECT CAST(1000 + n AS VARCHAR(6)), 2005, 'B' || CAST(n % 7 AS "
                      "VARCHAR(2)), n % 3 FROM r");
        auto rs = jahr(2005);
        rs->FindFirst({{"KontoBezeichnung", "B3"}});
        QCOMPARE(rs->feld("KontoNr").toString(), QStringLiteral("1003"));
        if (vorher == QLatin1String("Delete")) {
            rs->Delete();
        } else if (vorher == QLatin1String("AddNew")) {
            rs->AddNew();
            rs->setFeld("KontoNr", "0999");
            rs->setFeld("KontoJJ", 2005);
            rs->setFeld("KontoBezeichnung", "B3");
            rs->Update();
        } else if (!vorher.isEmpty()) {
            rs->Edit();
            rs->setFeld("KontoBezeichnung",
                        vorher == QLatin1String("Edit") ? QVariant("X") : QVariant());
            rs->Update();
        }
        rs->MoveLast();
        std::vector<Kriterium> kriterien;
        for (int i = 0; i < felder.size(); ++i)
            kriterien.push_back({felder[i], werte[i]});
        rs->FindFirst(kriterien);
        if (weiter)
            rs->FindNext(kriterien);
        QCOMPARE(rs->NoMatch(), erwartet.isEmpty());
        if (!erwartet.isEmpty())
            QCOMPARE(rs->feld("KontoNr").toString(), erwartet);
    }

    void findNext()
    {
        auto rs = jahr();
        const std::vector<Kriterium> k {{"KontoJJ", 2003}};
        rs->MoveLast();
        rs->FindFirst(k);
        QCOMPARE(rs->AbsolutePosition(), 0);
        rs->FindNext(k);
        QCOMPARE(rs->AbsolutePosition(), 1);
        rs->FindNext(k);
        QCOMPARE(rs->AbsolutePosition(), 2);
        rs->FindNext(k);
        QVERIFY(rs->NoMatch());
        QCOMPARE(rs->AbsolutePosition(), 2);
        QCOMPARE(fehlerVon([&] {
                     rs->FindFirst({{"Gibtsnicht", 1}});
                 }),
                 fehlernummer::FeldNichtGefunden);
    }

    void bookmarksNachLoeschen()
    {
        auto rs = jahr();
        const Recordset::Bookmark erste = rs->bookmark();
        rs->MoveLast();
        const Recordset::Bookmark dritte = rs->bookmark();
        rs->MoveFirst();
        rs->Delete();
        rs->setBookmark(dritte);
        QCOMPARE(rs->feld("KontoNr").toString(), QStringLiteral("0003"));
        QCOMPARE(rs->AbsolutePosition(), 1);
        QCOMPARE(fehlerVon([&] { rs->setBookmark(erste); }), fehlernummer::KeinAktuellerDatensatz);
        QCOMPARE(rs->feld("KontoNr").toString(), QStringLiteral("0003"));

        // Appended rows get new bookmarks; old ones keep their row.
        rs->AddNew();
        rs->setFeld("KontoNr", "0000");
        rs->setFeld("KontoJJ", 2003);
        rs->Update();
        rs->MoveLast();
        QVERIFY(rs->bookmark() != erste);
        rs->setBookmark(dritte);
        QCOMPARE(rs->feld("KontoNr").toString(), QStringLiteral("0003"));

        // Bookmarks of the rows before a Requery name nothing afterwards.
        rs->Requery();
        QCOMPARE(fehlerVon([&] { rs->setBookmark(dritte); }), fehlernummer::KeinAktuellerDatensatz);
    }

    void loeschenUndWeiter_data()
    {
        QTest::addColumn<int>("zeile");
        QTest::addColumn<bool>("vor");
        QTest::addColumn<QString>("danach"); // "" for eof/bof
        QTest::newRow("Mitte, weiter") << 1 << true << "0003";
        QTest::newRow("Mitte, zurück") << 1 << false << "0001";
        QTest::newRow("letzte, weiter") << 2 << true << "";
        QTest::newRow("erste, zurück") << 0 << false << "";
        QTest::newRow("erste, weiter") << 0 << true << "0002";
    }

    void loeschenUndWeiter()
    {
        QFETCH(int, zeile);
        QFETCH(bool, vor);
        QFETCH(QString, danach);
        auto rs = jahr();
        for (int i = 0; i < zeile; ++i)
            rs->MoveNext();
        const QString nr = rs->feld("KontoNr").toString();
        rs->Delete();
        QCOMPARE(rs->RecordCount(), 2);
        QVERIFY(gespeichert(nr).isEmpty());
        QCOMPARE(fehlerVon([&] { rs->feld("KontoNr"); }), fehlernummer::KeinAktuellerDatensatz);
        QVERIFY(!rs->eof() && !rs->bof());
        if (vor)
            rs->MoveNext();
        else
            rs->MovePrevious();
        if (danach.isEmpty())
            QVERIFY(vor ? rs->eof() : rs->bof());
        else
            QCOMPARE(rs->feld("KontoNr").toString(), danach);
    }

    void einzigeZeileLoeschen()
    {
        auto rs = jahr(2004);
        rs->Delete();
        QCOMPARE(rs->RecordCount(), 0);
        QVERIFY(rs->eof());
        QVERIFY(rs->bof());
        QCOMPARE(fehlerVon([&] { rs->MoveLast(); }), fehlernummer::KeinAktuellerDatensatz);
        QCOMPARE(m_db->scalar("SELECT count(*) FROM Konten WHERE KontoJJ = 2004").toInt(), 0);
    }

    void klon()
    {
        auto rs = jahr();
        rs->MoveLast();
        auto klon = rs->Clone();
        QCOMPARE(klon->AbsolutePosition(), 0);
        QCOMPARE(rs->AbsolutePosition(), 2);
        klon->MoveNext();
        QCOMPARE(rs->AbsolutePosition(), 2);

        // An edit through the clone is what the original reads.
        klon->MoveLast();
        klon->Edit();
        klon->setFeld("KontoBezeichnung", "Miete neu");
        klon->Update();
        QCOMPARE(rs->feld("KontoBezeichnung").toString(), QStringLiteral("Miete neu"));

        // A row deleted through the clone leaves the original without a current row; its
        // neighbours stay where they were.
        klon->MoveFirst();
        rs->MoveNext(); // eof
        rs->MovePrevious();
        rs->MovePrevious(); // "0002"
        klon->MoveNext();
        klon->Delete();
        QCOMPARE(rs->RecordCount(), 2);
        QCOMPARE(fehlerVon([&] { rs->feld("KontoNr"); }), fehlernummer::KeinAktuellerDatensatz);
        rs->MoveNext();
        QCOMPARE(rs->feld("KontoNr").toString(), QStringLiteral("0003"));

        // Appended through the original: the clone sees it.
        rs->AddNew();
        rs->setFeld("KontoNr", "0004");
        rs->setFeld("KontoJJ", 2003);
        rs->Update();
        QCOMPARE(klon->RecordCount(), 3);
        klon->MoveLast();
        QCOMPARE(klon->feld("KontoNr").toString(), QStringLiteral("0004"));
    }

    void requery()
    {
        auto rs = jahr();
        rs->MoveLast();
        auto anderer = zweiterBenutzer();
        anderer->execute("INSERT INTO Konten (KontoNr, KontoJJ, KontoBezeichnung) VALUES "
                         "('0000', 2003, 'Neu')");
        anderer->execute("UPDATE Konten SET KontoBezeichnung = 'Bank2' WHERE KontoNr = '0002'");
        QCOMPARE(rs->RecordCount(), 3);
        rs->Requery();
        QCOMPARE(rs->RecordCount(), 4);
        QCOMPARE(rs->AbsolutePosition(), 0);
        QCOMPARE(rs->feld("KontoNr").toString(), QStringLiteral("0000"));
        rs->FindFirst({{"KontoNr", "0002"}});
        QCOMPARE(rs->feld("KontoBezeichnung").toString(), QStringLiteral("Bank2"));
    }

    void addNewHaengtAnUndBleibt()
    {
        auto rs = jahr();
        rs->MoveNext();
        rs->AddNew();
        QCOMPARE(rs->editMode(), EditMode::Neu);
        QVERIFY(rs->feld("KontoBezeichnung").isNull());
        rs->setFeld("KontoNr", "0009");
        rs->setFeld("kontojj", 2003);
        rs->setFeld("KontoBezeichnung", "Neu");
        QCOMPARE(rs->feld("KontoBezeichnung").toString(), QStringLiteral("Neu"));
        rs->Update();
        QCOMPARE(rs->editMode(), EditMode::Keiner);
        QCOMPARE(rs->RecordCount(), 4);
        QCOMPARE(rs->feld("KontoNr").toString(), QStringLiteral("0002"));
        rs->MoveLast();
        QCOMPARE(rs->feld("KontoNr").toString(), QStringLiteral("0009"));
        // Read back from the database: the default is there, with the engine's type.
        QCOMPARE(rs->feld("KontoTypus"), QVariant::fromValue<qlonglong>(0));
        QVERIFY(rs->feld("KontoBetrag").isNull());
        QCOMPARE(gespeichert("0009").value(2).toString(), QStringLiteral("Neu"));
    }

    void doppelterSchluessel()
    {
        auto rs = jahr();
        rs->AddNew();
        rs->setFeld("KontoNr", "0001");
        rs->setFeld("KontoJJ", 2003);
        rs->setFeld("KontoBezeichnung", "Doppelt");
        QCOMPARE(fehlerVon([&] { rs->Update(); }), fehlernummer::DoppelterSchluessel);
        QCOMPARE(rs->RecordCount(), 3);
        QCOMPARE(rs->editMode(), EditMode::Neu);
        QCOMPARE(gespeichert("0001").value(2).toString(), QStringLiteral("Kassa"));
        // The caller may fix the key and save again.
        rs->setFeld("KontoNr", "0005");
        rs->Update();
        QCOMPARE(rs->RecordCount(), 4);
        rs->AddNew();
        rs->CancelUpdate();
        QCOMPARE(rs->editMode(), EditMode::Keiner);
        QCOMPARE(rs->RecordCount(), 4);
    }

    void editSchreibtNurGeaenderteFelder()
    {
        // The other user changes a column this query does not select: kept.
        auto rs = std::make_unique<Recordset>(
            m_db,
            "SELECT KontoNr, KontoJJ, KontoBezeichnung FROM Konten WHERE KontoJJ = 2003 "
            "ORDER BY KontoNr");
        rs->Edit();
        rs->setFeld("KontoBezeichnung", "Kassa neu");
        // PostgreSQL reports the names folded to lower case.
        QCOMPARE(rs->geaenderteFelder().size(), 1);
        QCOMPARE(rs->geaenderteFelder()[0].toLower(), QStringLiteral("kontobezeichnung"));
        zweiterBenutzer()->execute("UPDATE Konten SET KontoTypus = 7 WHERE KontoNr = '0001' "
                                   "AND KontoJJ = 2003");
        rs->Update();
        QCOMPARE(rs->feld("KontoBezeichnung").toString(), QStringLiteral("Kassa neu"));
        const QVariantList zeile = gespeichert("0001");
        QCOMPARE(zeile.value(2).toString(), QStringLiteral("Kassa neu"));
        QCOMPARE(zeile.value(3).toInt(), 7);

        // Assigning the value as read is no change: nothing is written, no conflict arises.
        auto alle = jahr();
        alle->MoveNext();
        alle->Edit();
        alle->setFeld("KontoBezeichnung", "Bank");
        QVERIFY(alle->geaenderteFelder().isEmpty());
        zweiterBenutzer()->execute("UPDATE Konten SET KontoTypus = 8 WHERE KontoNr = '0002'");
        alle->Update();
        QCOMPARE(alle->editMode(), EditMode::Keiner);
        QCOMPARE(gespeichert("0002").value(3).toInt(), 8);
    }

    void editRundreise()
    {
        // Every kind of value binds back as read, so a second edit finds its row again.
        auto rs = jahr();
        rs->Edit();
        rs->setFeld("KontoBetrag", 0.1 + 0.2);
        rs->setFeld("KontoStornoDatum", QDate(2004, 2, 29));
        rs->setFeld("KontoBilPosRöm", "IV");
        rs->Update();
        QCOMPARE(rs->feld("KontoStornoDatum").toDate(), QDate(2004, 2, 29));
        QCOMPARE(rs->feld("KontoBetrag").toDouble(), 0.1 + 0.2);
        rs->Edit();
        rs->setFeld("kontobilposröm", "V");
        rs->Update();
        auto neu = jahr();
        QCOMPARE(neu->feld("KontoBilPosRöm").toString(), QStringLiteral("V"));
        QCOMPARE(neu->feld("KONTOBILPOSRöm").toString(), QStringLiteral("V"));
        QCOMPARE(neu->feld("KontoStornoDatum").toDate(), QDate(2004, 2, 29));
        neu->Delete();
        QVERIFY(gespeichert("0001").isEmpty());
    }

    void konflikt_data()
    {
        QTest::addColumn<QString>("anderer");
        QTest::addColumn<bool>("loeschen");
        // Update writes on top of another user's change of other fields (the field he changed).
        QTest::addColumn<QString>("zusammen");
        QTest::newRow("gleiches Feld, Update")
            << "UPDATE Konten SET KontoTypus = 7, KontoBezeichnung = 'Fremd' WHERE KontoNr = '0002'"
            << false << "";
        QTest::newRow("anderes Feld, Update")
            << "UPDATE Konten SET KontoBezeichnung = 'Fremd' WHERE KontoNr = '0002'" << false
            << "kontobezeichnung";
        QTest::newRow("Null wird Wert, Update")
            << "UPDATE Konten SET KontoBetrag = 3.5 WHERE KontoNr = '0002'" << false
            << "kontobetrag";
        QTest::newRow("gelöscht, Update")
            << "DELETE FROM Konten WHERE KontoNr = '0002'" << false << "";
        QTest::newRow("geändert, Delete")
            << "UPDATE Konten SET KontoBezeichnung = 'Fremd' WHERE KontoNr = '0002'" << true << "";
        QTest::newRow("gelöscht, Delete")
            << "DELETE FROM Konten WHERE KontoNr = '0002'" << true << "";
    }

    void konflikt()
    {
        QFETCH(QString, anderer);
        QFETCH(bool, loeschen);
        QFETCH(QString, zusammen);
        auto rs = jahr();
        rs->MoveNext();
        if (!loeschen) {
            rs->Edit();
            rs->setFeld("KontoTypus", 5);
        }
        zweiterBenutzer()->execute(anderer);
        const QVariantList vorher = gespeichert("0002");

        int nummer = fehlerVon([&] {
            if (loeschen)
                rs->Delete();
            else
                rs->Update();
        });
        if (!zusammen.isEmpty()) {
            // Both changes stored, and the set shows them.
            QCOMPARE(nummer, 0);
            QCOMPARE(rs->fremdGeaenderteFelder().join(u',').toLower(), zusammen);
            const QString sql = "SELECT KontoTypus, " + zusammen + " FROM Konten WHERE KontoNr = ?";
            auto zweiter = zweiterBenutzer();
            auto c = zweiter->query(sql, {QStringLiteral("0002")});
            QVERIFY(c->next());
            QCOMPARE(c->wert(0).toInt(), 5);
            QCOMPARE(rs->feld("KontoTypus").toInt(), 5);
            QCOMPARE(rs->feld(zusammen).toString(), c->wert(1).toString());
            return;
        }
        QCOMPARE(nummer, fehlernummer::DatensatzGeaendert);
        QCOMPARE(gespeichert("0002"), vorher);
        QCOMPARE(rs->RecordCount(), 3);
        // Nothing silently reloaded: the set still shows what this user read.
        if (loeschen) {
            QCOMPARE(rs->feld("KontoBezeichnung").toString(), QStringLiteral("Bank"));
        } else {
            QCOMPARE(rs->editMode(), EditMode::Bearbeiten);
            QCOMPARE(rs->feld("KontoTypus").toInt(), 5);
        }
        QCOMPARE(rs->gespeicherteZeile(), vorher);
        if (!loeschen) {
            rs->CancelUpdate();
            QCOMPARE(rs->feld("KontoTypus").toInt(), 1);
        }
    }

    // Every save, the first of a connection included, costs at most the statement and the
    // read-back: what the record set needs about its table it learnt while loading.
    void speichernRundreisen_data()
    {
        QTest::addColumn<QString>("art");
        QTest::addColumn<int>("rundreisen"); // on PostgreSQL; the file database has none
        QTest::newRow("Edit") << "Edit" << 2;
        QTest::newRow("AddNew") << "AddNew" << 2;
        QTest::newRow("Delete") << "Delete" << 1;
        QTest::newRow("Edit nach Requery") << "Requery" << 2;
    }

    void speichernRundreisen()
    {
        QFETCH(QString, art);
        QFETCH(int, rundreisen);
        auto rs = jahr();
        if (art == QLatin1String("Requery"))
            rs->Requery();
        const qint64 vorher = m_db->roundTrips();
        if (art == QLatin1String("Delete")) {
            rs->Delete();
        } else {
            if (art == QLatin1String("AddNew")) {
                rs->AddNew();
                rs->setFeld("KontoNr", "0009");
                rs->setFeld("KontoJJ", 2003);
            } else {
                rs->Edit();
            }
            rs->setFeld("KontoBezeichnung", "Neu");
            rs->Update();
        }
        const bool pg = testhilfe::aktuelleEngine() == Engine::PostgreSql;
        QCOMPARE(m_db->roundTrips() - vorher, pg ? rundreisen : 0);
        QCOMPARE(jahr()->RecordCount(),
                 art == QLatin1String("AddNew")       ? 4
                     : art == QLatin1String("Delete") ? 2
                                                      : 3);
    }

    // A column another program added after this connection described the table is written.
    void spalteVonAnderemProgramm()
    {
        auto rs = jahr();
        zweiterBenutzer()->execute("ALTER TABLE Konten ADD COLUMN KontoNeu INTEGER");
        rs = jahr();
        rs->Edit();
        rs->setFeld("KontoNeu", 5);
        rs->Update();
        QCOMPARE(m_db->scalar("SELECT KontoNeu FROM Konten WHERE KontoNr = '0001' AND "
                              "KontoJJ = 2003")
                     .toInt(),
                 5);
    }

    // Rows are packed into blocks of up to 1 MB; a row never straddles two of them.
    void textlaengen_data()
    {
        QTest::addColumn<QList<int>>("laengen"); // of the rows' texts, repeated 'x' times
        QTest::addColumn<int>("wiederholt");
        QTest::addColumn<int>("neu"); // length written into the middle row afterwards
        QTest::newRow("viele über Blockgrenzen") << QList<int> {0, 400, 7} << 1500 << 100;
        QTest::newRow("größer als ein Block") << QList<int> {10, 2100000, 10} << 1 << 10;
        QTest::newRow("klein wird groß") << QList<int> {300} << 5 << 1500000;
        QTest::newRow("knapp unter einem Block") << QList<int> {1048500, 1048500} << 2 << 5;
        // Up to 127 bytes a text's length rides in its tag byte.
        QTest::newRow("Länge im Tag") << QList<int> {127, 128, 0, 126, 129} << 3 << 127;
        QTest::newRow("Länge danach") << QList<int> {128} << 2 << 128000;
    }

    void textlaengen()
    {
        QFETCH(QList<int>, laengen);
        QFETCH(int, wiederholt);
        QFETCH(int, neu);
        m_db->execute("CREATE TABLE Texte (Nr INTEGER PRIMARY KEY, Inhalt TEXT)");
        const auto text = [](int nr, int laenge) {
            return QString(laenge, QChar(u'a' + nr % 26));
        };
        QList<int> erwartet;
        for (int w = 0; w < wiederholt; ++w)
            erwartet += laengen;
        {
            Transaktion t(*m_db);
            for (int i = 0; i < erwartet.size(); ++i)
                m_db->execute("INSERT INTO Texte VALUES (?, ?)", {i, text(i, erwartet[i])});
            t.commit();
        }
        Recordset rs(m_db, "SELECT * FROM Texte ORDER BY Nr");
        const int mitte = int(erwartet.size()) / 2;
        const auto pruefen = [&](Recordset &r) {
            QCOMPARE(r.RecordCount(), erwartet.size());
            r.MoveFirst();
            for (int i = 0; i < erwartet.size(); ++i, r.MoveNext())
                QVERIFY2(r.feld("Inhalt").toString() == text(i, erwartet[i]),
                         qPrintable(QString::number(i)));
        };
        pruefen(rs);
        rs.MoveFirst();
        for (int i = 0; i < mitte; ++i)
            rs.MoveNext();
        rs.Edit();
        rs.setFeld("Inhalt", text(mitte, neu));
        rs.Update();
        erwartet[mitte] = neu;
        pruefen(rs);
        rs.Requery();
        pruefen(rs);
    }

    void fehlerfaelle()
    {
        auto rs = jahr();
        QCOMPARE(fehlerVon([&] { rs->feld("Gibtsnicht"); }), fehlernummer::FeldNichtGefunden);
        QCOMPARE(fehlerVon([&] { rs->feld(99); }), fehlernummer::FeldNichtGefunden);
        QCOMPARE(fehlerVon([&] { rs->setFeld("KontoNr", "x"); }), fehlernummer::KeinEditModus);
        QCOMPARE(fehlerVon([&] { rs->Update(); }), fehlernummer::KeinEditModus);
        QCOMPARE(fehlerVon([&] { rs->CancelUpdate(); }), fehlernummer::KeinEditModus);
        rs->Edit();
        QCOMPARE(fehlerVon([&] { rs->setFeld("Gibtsnicht", 1); }), fehlernummer::FeldNichtGefunden);
        // A move drops the pending edit.
        rs->MoveNext();
        QCOMPARE(rs->editMode(), EditMode::Keiner);

        auto leer = jahr(1999);
        QCOMPARE(fehlerVon([&] { leer->feld("KontoNr"); }), fehlernummer::KeinAktuellerDatensatz);
        QCOMPARE(fehlerVon([&] { leer->Edit(); }), fehlernummer::KeinAktuellerDatensatz);
        QCOMPARE(fehlerVon([&] { leer->Delete(); }), fehlernummer::KeinAktuellerDatensatz);
        QCOMPARE(fehlerVon([&] { leer->bookmark(); }), fehlernummer::KeinAktuellerDatensatz);
        // AddNew needs no current row.
        leer->AddNew();
        leer->setFeld("KontoNr", "0001");
        leer->setFeld("KontoJJ", 1999);
        leer->Update();
        QCOMPARE(leer->RecordCount(), 1);
    }

    void nichtAktualisierbar_data()
    {
        QTest::addColumn<QString>("sql");
        QTest::addColumn<QString>("tabelle");
        QTest::addColumn<bool>("aktualisierbar");
        QTest::newRow("einfach") << "SELECT * FROM Konten"
                                 << "Konten" << true;
        QTest::newRow("klein, Alias") << "select * from Konten k where k.KontoJJ = 2003"
                                      << "Konten" << true;
        QTest::newRow("Unterabfrage in Auswahl")
            << "SELECT (SELECT max(SSBetrag) FROM Salden) AS m, KontoNr, KontoJJ FROM Konten"
            << "Konten" << true;
        QTest::newRow("Komma") << "SELECT * FROM Konten, Salden"
                               << "" << false;
        QTest::newRow("Join") << "SELECT * FROM Konten INNER JOIN Salden ON SSKontoNr = KontoNr"
                              << "" << false;
        QTest::newRow("Distinct") << "SELECT DISTINCT KontoNr, KontoJJ FROM Konten"
                                  << "" << false;
        QTest::newRow("Gruppiert") << "SELECT KontoNr, KontoJJ FROM Konten GROUP BY KontoNr, "
                                      "KontoJJ"
                                   << "" << false;
        QTest::newRow("Schlüssel fehlt") << "SELECT KontoNr, KontoBezeichnung FROM Konten"
                                         << "Konten" << false;
        QTest::newRow("ohne Primärschlüssel") << "SELECT * FROM Salden"
                                              << "Salden" << false;
    }

    void nichtAktualisierbar()
    {
        QFETCH(QString, sql);
        QFETCH(QString, tabelle);
        QFETCH(bool, aktualisierbar);
        Recordset rs(m_db, sql);
        QCOMPARE(rs.tabelle(), tabelle);
        const int erwartet = aktualisierbar ? 0 : fehlernummer::NichtAktualisierbar;
        QCOMPARE(fehlerVon([&] { rs.AddNew(); }), erwartet);
        QCOMPARE(rs.editMode(), aktualisierbar ? EditMode::Neu : EditMode::Keiner);
        if (aktualisierbar)
            rs.CancelUpdate();
        if (rs.RecordCount() > 0) {
            QCOMPARE(fehlerVon([&] { rs.Edit(); }), erwartet);
            if (!aktualisierbar)
                QCOMPARE(fehlerVon([&] { rs.Delete(); }), erwartet);
        }
    }

    void fehlendeTabelle()
    {
        QCOMPARE(fehlerVon([&] { Recordset rs(m_db, "SELECT * FROM GibtsNicht"); }),
                 fehlernummer::TabelleNichtGefunden);
    }
};

ZEP_ENGINE_TEST_MAIN(tst_Recordset)

#include "tst_recordset.moc"
