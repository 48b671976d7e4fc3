#include "common/Fehlernummer.h"
#include "common/TestDatenbank.h"
#include "platform/storage/Recordset.h"

#include <QDate>
#include <QTest>

using namespace platform;
using namespace platform::storage;
using testhilfe::fehlerVon;

namespace {

std::vector<Kriterium> kriterien(const QStringList &felder, const QVariantList &werte)
{
    std::vector<Kriterium> k;
    for (int i = 0; i < felder.size(); ++i)
        k.push_back({felder[i], werte[i]});
    return k;
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
        return std::make_unique<Recordset>(
            m_db, "SELECT * FROM Konten WHERE KontoJJ = ? ORDER BY KontoNr", QVariantList {jj});
    }
    std::unique_ptr<Database> zweiterBenutzer() { return Database::openSeparate(m_ort); }
    QString nr(Recordset &rs) { return rs.feld("KontoNr").toString(); }
    void anfuegen(Recordset &rs, const QString &nr, int jj, const QVariant &bez = {})
    {
        rs.AddNew();
        rs.setFeld("KontoNr", nr);
        rs.setFeld("kontojj", jj);
        if (bez.isValid())
            rs.setFeld("KontoBezeichnung", bez);
        rs.Update();
    }
    // Account `nr` of 2003 as stored, in the table's column order (empty when missing).
    QVariantList gespeichert(const QString &nr)
    {
        auto c = m_db->query("SELECT * FROM Konten WHERE KontoNr = ? AND KontoJJ = 2003", {nr});
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
        m_db->execute(
            "CREATE TABLE Konten (KontoNr VARCHAR(6) NOT NULL, KontoJJ INTEGER NOT NULL, "
            "KontoBezeichnung VARCHAR(50), KontoTypus SMALLINT DEFAULT 0, "
            "KontoBilPosRöm VARCHAR(10), KontoBetrag DOUBLE PRECISION, KontoStornoDatum DATE, "
            "PRIMARY KEY (KontoNr, KontoJJ))");
        m_db->execute("CREATE TABLE Salden (SSKontoNr VARCHAR(6), SSBetrag DOUBLE PRECISION)");
        const QString ein = "INSERT INTO Konten VALUES (?, ?, ?, ?, ?, ?, ?)";
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
        for (const QString &schritt : schritte.split(' ')) {
            const QChar op = schritt[0];
            const int vorher = rs->AbsolutePosition();
            const int nummer = fehlerVon([&] {
                if (op == 'N')
                    rs->MoveNext();
                else if (op == 'P')
                    rs->MovePrevious();
                else if (op == 'F')
                    rs->MoveFirst();
                else
                    rs->MoveLast();
            });
            if (schritt.endsWith('x')) {
                QVERIFY2(nummer == fehlernummer::KeinAktuellerDatensatz, qPrintable(schritt));
                QCOMPARE(rs->AbsolutePosition(), vorher);
                continue;
            }
            QVERIFY2(nummer == 0, qPrintable(schritt));
            const int pos = schritt.mid(2).toInt();
            QCOMPARE(rs->AbsolutePosition(), pos);
            QCOMPARE(rs->eof(), pos == anzahl);
            QCOMPARE(rs->bof(), pos == -1);
            if (pos >= 0 && pos < anzahl)
                QCOMPARE(nr(*rs), QStringLiteral("000%1").arg(jj == 2004 ? 1 : pos + 1));
            else
                QCOMPARE(fehlerVon([&] { nr(*rs); }), fehlernummer::KeinAktuellerDatensatz);
        }
    }

    void findFirst_data()
    {
        QTest::addColumn<QStringList>("felder");
        QTest::addColumn<QVariantList>("werte");
        QTest::addColumn<int>("weiter"); // FindNext calls after the FindFirst
        QTest::addColumn<int>("gefunden"); // -1: NoMatch

        const QStringList nr {"KontoNr"};
        const QStringList typ {"KontoTypus"};
        const QStringList betrag {"KontoBetrag"};
        QTest::newRow("Text genau") << nr << QVariantList {"0002"} << 0 << 1;
        QTest::newRow("Text mit Blank") << nr << QVariantList {"0002 "} << 0 << -1;
        QTest::newRow("Text andere Schreibung")
            << QStringList {"KontoBezeichnung"} << QVariantList {"bank"} << 0 << -1;
        QTest::newRow("Feldname klein")
            << QStringList {"kontonr"} << QVariantList {"0003"} << 0 << 2;
        QTest::newRow("Ganzzahl") << typ << QVariantList {2} << 0 << 2;
        QTest::newRow("Zahl als Text") << typ << QVariantList {"1"} << 0 << 1;
        QTest::newRow("Kein Zahltext") << typ << QVariantList {"eins"} << 0 << -1;
        QTest::newRow("Ganzzahl gegen Text") << nr << QVariantList {3} << 0 << 2;
        QTest::newRow("Kommazahl") << betrag << QVariantList {1.5} << 0 << 0;
        QTest::newRow("Ganzzahl gegen Kommazahl") << betrag << QVariantList {0} << 0 << 2;
        QTest::newRow("Kommazahl gegen Ganzzahl") << typ << QVariantList {2.0} << 0 << 2;
        QTest::newRow("Wahr ist -1") << typ << QVariantList {true} << 0 << -1;
        QTest::newRow("Null") << QStringList {"KontoBilPosRöm"} << QVariantList {QVariant()} << 0
                              << 1;
        QTest::newRow("Null trifft keinen Wert") << betrag << QVariantList {7.0} << 0 << -1;
        QTest::newRow("Datum") << QStringList {"KontoStornoDatum"}
                               << QVariantList {QDate(2003, 12, 31)} << 0 << 0;
        QTest::newRow("Und") << QStringList {"KontoNr", "KontoTypus"} << QVariantList {"0001", 1}
                             << 0 << -1;
        QTest::newRow("Und trifft")
            << QStringList {"KontoJJ", "KontoTypus"} << QVariantList {2003, 2} << 0 << 2;
        QTest::newRow("anderes Jahr")
            << QStringList {"KontoBezeichnung"} << QVariantList {"Kassa 04"} << 0 << -1;
        QTest::newRow("FindNext") << QStringList {"KontoJJ"} << QVariantList {2003} << 2 << 2;
        // A FindNext past the last match keeps the position of the last one found.
        QTest::newRow("FindNext ohne weiteren")
            << QStringList {"KontoJJ"} << QVariantList {2003} << 3 << -2;
    }

    void findFirst()
    {
        QFETCH(QStringList, felder);
        QFETCH(QVariantList, werte);
        QFETCH(int, weiter);
        QFETCH(int, gefunden);
        auto rs = jahr();
        // Start off the first row, so that a hit and a miss are told apart by position.
        rs->MoveNext();
        rs->FindFirst(kriterien(felder, werte));
        for (int i = 0; i < weiter; ++i)
            rs->FindNext(kriterien(felder, werte));
        QCOMPARE(rs->NoMatch(), gefunden < 0);
        QCOMPARE(rs->AbsolutePosition(), gefunden == -1 ? 1 : gefunden == -2 ? 2 : gefunden);
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
        const QStringList nr {"KontoNr"};
        QTest::newRow("eindeutig") << "" << nr << QVariantList {"1150"} << false << "1150";
        QTest::newRow("doppelt, der erste") << "" << bez << QVariantList {"B3"} << false << "1003";
        QTest::newRow("doppelt, FindNext") << "" << bez << QVariantList {"B3"} << true << "1010";
        QTest::newRow("fehlt") << "" << bez << QVariantList {"B9"} << false << "";
        QTest::newRow("mit Blank") << "" << bez << QVariantList {"B3 "} << false << "";
        QTest::newRow("und") << "" << QStringList {"KontoBezeichnung", "KontoTypus"}
                             << QVariantList {"B3", 2} << false << "1017";
        QTest::newRow("Zahl gegen Textspalte")
            << "" << nr << QVariantList {1150} << false << "1150";
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
            << "AddNew" << nr << QVariantList {"0999"} << false << "0999";
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
        QCOMPARE(nr(*rs), QStringLiteral("1003"));
        if (vorher == "Delete") {
            rs->Delete();
        } else if (vorher == "AddNew") {
            anfuegen(*rs, "0999", 2005, "B3");
        } else if (!vorher.isEmpty()) {
            rs->Edit();
            rs->setFeld("KontoBezeichnung", vorher == "Edit" ? QVariant("X") : QVariant());
            rs->Update();
        }
        rs->MoveLast();
        rs->FindFirst(kriterien(felder, werte));
        if (weiter)
            rs->FindNext(kriterien(felder, werte));
        QCOMPARE(rs->NoMatch(), erwartet.isEmpty());
        if (!erwartet.isEmpty())
            QCOMPARE(nr(*rs), erwartet);
    }

    void bookmarks()
    {
        auto rs = jahr();
        const Recordset::Bookmark erste = rs->bookmark();
        rs->MoveLast();
        const Recordset::Bookmark dritte = rs->bookmark();
        rs->MoveFirst();
        rs->Delete();
        rs->setBookmark(dritte);
        QCOMPARE(nr(*rs), QStringLiteral("0003"));
        QCOMPARE(rs->AbsolutePosition(), 1);
        QCOMPARE(fehlerVon([&] { rs->setBookmark(erste); }), fehlernummer::KeinAktuellerDatensatz);
        QCOMPARE(nr(*rs), QStringLiteral("0003"));
        // Appended rows get new bookmarks; old ones keep their row.
        anfuegen(*rs, "0000", 2003);
        rs->MoveLast();
        QVERIFY(rs->bookmark() != erste);
        rs->setBookmark(dritte);
        QCOMPARE(nr(*rs), QStringLiteral("0003"));
        // Bookmarks of the rows before a Requery name nothing afterwards.
        rs->Requery();
        QCOMPARE(fehlerVon([&] { rs->setBookmark(dritte); }), fehlernummer::KeinAktuellerDatensatz);
    }

    void loeschenUndWeiter_data()
    {
        QTest::addColumn<int>("jj");
        QTest::addColumn<int>("zeile");
        QTest::addColumn<bool>("vor");
        QTest::addColumn<QString>("danach"); // "" for eof/bof
        QTest::newRow("Mitte, weiter") << 2003 << 1 << true << "0003";
        QTest::newRow("Mitte, zurück") << 2003 << 1 << false << "0001";
        QTest::newRow("letzte, weiter") << 2003 << 2 << true << "";
        QTest::newRow("erste, zurück") << 2003 << 0 << false << "";
        QTest::newRow("erste, weiter") << 2003 << 0 << true << "0002";
        QTest::newRow("einzige") << 2004 << 0 << true << "";
    }

    void loeschenUndWeiter()
    {
        QFETCH(int, jj);
        QFETCH(int, zeile);
        QFETCH(bool, vor);
        QFETCH(QString, danach);
        auto rs = jahr(jj);
        const int anzahl = rs->RecordCount() - 1;
        rs->setAbsolutePosition(zeile);
        rs->Delete();
        QCOMPARE(rs->RecordCount(), anzahl);
        QCOMPARE(m_db->scalar("SELECT count(*) FROM Konten WHERE KontoJJ = ?", {jj}).toInt(),
                 anzahl);
        QCOMPARE(fehlerVon([&] { nr(*rs); }), fehlernummer::KeinAktuellerDatensatz);
        // Between its neighbours, or at both ends of a set now empty.
        QCOMPARE(rs->eof(), anzahl == 0);
        QCOMPARE(rs->bof(), anzahl == 0);
        if (anzahl == 0) {
            QCOMPARE(fehlerVon([&] { rs->MoveLast(); }), fehlernummer::KeinAktuellerDatensatz);
            return;
        }
        if (vor)
            rs->MoveNext();
        else
            rs->MovePrevious();
        if (danach.isEmpty())
            QVERIFY(vor ? rs->eof() : rs->bof());
        else
            QCOMPARE(nr(*rs), danach);
    }

    void klon()
    {
        auto rs = jahr();
        rs->MoveLast();
        auto klon = rs->Clone();
        QCOMPARE(klon->AbsolutePosition(), 0);
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
        rs->MovePrevious(); // "0002"
        klon->setAbsolutePosition(1);
        klon->Delete();
        QCOMPARE(rs->RecordCount(), 2);
        QCOMPARE(fehlerVon([&] { nr(*rs); }), fehlernummer::KeinAktuellerDatensatz);
        rs->MoveNext();
        QCOMPARE(nr(*rs), QStringLiteral("0003"));
        // Appended through the original: the clone sees it.
        anfuegen(*rs, "0004", 2003);
        QCOMPARE(klon->RecordCount(), 3);
        klon->MoveLast();
        QCOMPARE(nr(*klon), QStringLiteral("0004"));
    }

    void requery()
    {
        auto rs = jahr();
        rs->MoveLast();
        auto anderer = zweiterBenutzer();
        anderer->execute("INSERT INTO Konten (KontoNr, KontoJJ) VALUES ('0000', 2003)");
        anderer->execute("UPDATE Konten SET KontoBezeichnung = 'Bank2' WHERE KontoNr = '0002'");
        QCOMPARE(rs->RecordCount(), 3);
        rs->Requery();
        QCOMPARE(rs->RecordCount(), 4);
        QCOMPARE(rs->AbsolutePosition(), 0);
        QCOMPARE(nr(*rs), QStringLiteral("0000"));
        rs->FindFirst({{"KontoNr", "0002"}});
        QCOMPARE(rs->feld("KontoBezeichnung").toString(), QStringLiteral("Bank2"));
    }

    void addNew()
    {
        auto rs = jahr();
        rs->MoveNext();
        rs->AddNew();
        QCOMPARE(rs->editMode(), EditMode::Neu);
        QVERIFY(rs->feld("KontoBezeichnung").isNull());
        rs->setFeld("KontoBezeichnung", "Neu");
        QCOMPARE(rs->feld("KontoBezeichnung").toString(), QStringLiteral("Neu"));
        rs->setFeld("KontoNr", "0001");
        rs->setFeld("KontoJJ", 2003);
        // A key that exists: nothing written, the caller may fix the key and save again.
        QCOMPARE(fehlerVon([&] { rs->Update(); }), fehlernummer::DoppelterSchluessel);
        QCOMPARE(rs->RecordCount(), 3);
        QCOMPARE(rs->editMode(), EditMode::Neu);
        QCOMPARE(gespeichert("0001").value(2).toString(), QStringLiteral("Kassa"));
        rs->setFeld("KontoNr", "0009");
        rs->Update();
        QCOMPARE(rs->editMode(), EditMode::Keiner);
        QCOMPARE(rs->RecordCount(), 4);
        QCOMPARE(nr(*rs), QStringLiteral("0002")); // the row before AddNew stays current
        rs->MoveLast();
        QCOMPARE(nr(*rs), QStringLiteral("0009"));
        // Read back from the database: the default is there, with the engine's type.
        QCOMPARE(rs->feld("KontoTypus"), QVariant::fromValue<qlonglong>(0));
        QVERIFY(rs->feld("KontoBetrag").isNull());
        QCOMPARE(gespeichert("0009").value(2).toString(), QStringLiteral("Neu"));
        rs->AddNew();
        rs->CancelUpdate();
        QCOMPARE(rs->RecordCount(), 4);
    }

    void editSchreibtNurGeaenderteFelder()
    {
        // The other user changes a column this query does not select: kept.
        Recordset rs(m_db,
                     "SELECT KontoNr, KontoJJ, KontoBezeichnung FROM Konten WHERE "
                     "KontoJJ = 2003 ORDER BY KontoNr");
        rs.Edit();
        rs.setFeld("KontoBezeichnung", "Kassa neu");
        // PostgreSQL reports the names folded to lower case.
        QCOMPARE(rs.geaenderteFelder().join(',').toLower(), QStringLiteral("kontobezeichnung"));
        zweiterBenutzer()->execute("UPDATE Konten SET KontoTypus = 7 WHERE KontoNr = '0001'");
        rs.Update();
        QCOMPARE(rs.feld("KontoBezeichnung").toString(), QStringLiteral("Kassa neu"));
        QCOMPARE(gespeichert("0001").value(2).toString(), QStringLiteral("Kassa neu"));
        QCOMPARE(gespeichert("0001").value(3).toInt(), 7);

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
        const QString bez = "UPDATE Konten SET KontoBezeichnung = 'Fremd' WHERE KontoNr = '0002'";
        const QString weg = "DELETE FROM Konten WHERE KontoNr = '0002'";
        QTest::newRow("gleiches Feld, Update")
            << "UPDATE Konten SET KontoTypus = 7, KontoBezeichnung = 'Fremd' WHERE KontoNr = '0002'"
            << false << "";
        QTest::newRow("anderes Feld, Update") << bez << false << "kontobezeichnung";
        QTest::newRow("Null wird Wert, Update")
            << "UPDATE Konten SET KontoBetrag = 3.5 WHERE KontoNr = '0002'" << false
            << "kontobetrag";
        QTest::newRow("gelöscht, Update") << weg << false << "";
        QTest::newRow("geändert, Delete") << bez << true << "";
        QTest::newRow("gelöscht, Delete") << weg << true << "";
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
        const int nummer = fehlerVon([&] {
            if (loeschen)
                rs->Delete();
            else
                rs->Update();
        });
        if (!zusammen.isEmpty()) {
            // Both changes stored, and the set shows them.
            QCOMPARE(nummer, 0);
            QCOMPARE(rs->fremdGeaenderteFelder().join(',').toLower(), zusammen);
            auto c = zweiterBenutzer()->query("SELECT KontoTypus, " + zusammen
                                              + " FROM Konten WHERE KontoNr = '0002'");
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
        QCOMPARE(rs->feld("KontoBezeichnung").toString(), QStringLiteral("Bank"));
        QCOMPARE(rs->gespeicherteZeile(), vorher);
        if (!loeschen) {
            QCOMPARE(rs->editMode(), EditMode::Bearbeiten);
            QCOMPARE(rs->feld("KontoTypus").toInt(), 5);
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
        QTest::addColumn<int>("anzahl"); // rows afterwards
        QTest::newRow("Edit") << "Edit" << 2 << 3;
        QTest::newRow("AddNew") << "AddNew" << 2 << 4;
        QTest::newRow("Delete") << "Delete" << 1 << 2;
        QTest::newRow("Edit nach Requery") << "Requery" << 2 << 3;
    }

    void speichernRundreisen()
    {
        QFETCH(QString, art);
        QFETCH(int, rundreisen);
        QFETCH(int, anzahl);
        auto rs = jahr();
        if (art == "Requery")
            rs->Requery();
        const qint64 vorher = m_db->roundTrips();
        if (art == "Delete") {
            rs->Delete();
        } else if (art == "AddNew") {
            anfuegen(*rs, "0009", 2003, "Neu");
        } else {
            rs->Edit();
            rs->setFeld("KontoBezeichnung", "Neu");
            rs->Update();
        }
        const bool pg = testhilfe::aktuelleEngine() == Engine::PostgreSql;
        QCOMPARE(m_db->roundTrips() - vorher, pg ? rundreisen : 0);
        QCOMPARE(jahr()->RecordCount(), anzahl);
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
        const auto pruefen = [&](Recordset &r) {
            QCOMPARE(r.RecordCount(), erwartet.size());
            r.MoveFirst();
            for (int i = 0; i < erwartet.size(); ++i, r.MoveNext())
                QVERIFY2(r.feld("Inhalt").toString() == text(i, erwartet[i]),
                         qPrintable(QString::number(i)));
        };
        pruefen(rs);
        const int mitte = int(erwartet.size()) / 2;
        rs.setAbsolutePosition(mitte);
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
        QCOMPARE(fehlerVon([&] {
                     rs->FindFirst({{"Gibtsnicht", 1}});
                 }),
                 fehlernummer::FeldNichtGefunden);
        QCOMPARE(fehlerVon([&] { rs->setFeld("KontoNr", "x"); }), fehlernummer::KeinEditModus);
        QCOMPARE(fehlerVon([&] { rs->Update(); }), fehlernummer::KeinEditModus);
        QCOMPARE(fehlerVon([&] { rs->CancelUpdate(); }), fehlernummer::KeinEditModus);
        QCOMPARE(fehlerVon([&] { rs->setAbsolutePosition(3); }),
                 fehlernummer::KeinAktuellerDatensatz);
        rs->Edit();
        QCOMPARE(fehlerVon([&] { rs->setFeld("Gibtsnicht", 1); }), fehlernummer::FeldNichtGefunden);
        // A move drops the pending edit.
        rs->MoveNext();
        QCOMPARE(rs->editMode(), EditMode::Keiner);

        auto leer = jahr(1999);
        QCOMPARE(fehlerVon([&] { leer->Edit(); }), fehlernummer::KeinAktuellerDatensatz);
        QCOMPARE(fehlerVon([&] { leer->Delete(); }), fehlernummer::KeinAktuellerDatensatz);
        QCOMPARE(fehlerVon([&] { leer->bookmark(); }), fehlernummer::KeinAktuellerDatensatz);
        // AddNew needs no current row.
        anfuegen(*leer, "0001", 1999);
        QCOMPARE(leer->RecordCount(), 1);
        QCOMPARE(fehlerVon([&] { Recordset(m_db, "SELECT * FROM GibtsNicht"); }),
                 fehlernummer::TabelleNichtGefunden);
    }

    void nichtAktualisierbar_data()
    {
        QTest::addColumn<QString>("sql");
        QTest::addColumn<bool>("aktualisierbar");
        QTest::addColumn<QString>("tabelle"); // "" when the query names no single table
        QTest::newRow("einfach") << "SELECT * FROM Konten" << true << "Konten";
        QTest::newRow("klein, Alias")
            << "select * from Konten k where k.KontoJJ = 2003" << true << "Konten";
        QTest::newRow("Unterabfrage in Auswahl")
            << "SELECT (SELECT max(SSBetrag) FROM Salden) AS m, KontoNr, KontoJJ FROM Konten"
            << true << "Konten";
        QTest::newRow("Komma") << "SELECT * FROM Konten, Salden" << false << "";
        QTest::newRow("Join") << "SELECT * FROM Konten INNER JOIN Salden ON SSKontoNr = KontoNr"
                              << false << "";
        QTest::newRow("Distinct") << "SELECT DISTINCT KontoNr, KontoJJ FROM Konten" << false << "";
        QTest::newRow("Gruppiert")
            << "SELECT KontoNr, KontoJJ FROM Konten GROUP BY KontoNr, KontoJJ" << false << "";
        QTest::newRow("Schlüssel fehlt")
            << "SELECT KontoNr, KontoBezeichnung FROM Konten" << false << "Konten";
        QTest::newRow("ohne Primärschlüssel") << "SELECT * FROM Salden" << false << "Salden";
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
};

ZEP_ENGINE_TEST_MAIN(tst_Recordset)

#include "tst_recordset.moc"
