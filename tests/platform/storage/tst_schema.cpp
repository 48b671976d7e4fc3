// The schema catalogue on both engines: tables, columns, keys, defaults, sort order and the
// question which columns an older database lacks.
#include "common/TestDatenbank.h"
#include "platform/core/RuntimeError.h"
#include "platform/storage/Schema.h"

#include <QTest>

using namespace platform::storage;

namespace {

std::shared_ptr<Database> neueDb()
{
    return Database::open(testhilfe::neueDatenbank());
}

bool enthaelt(const QStringList &liste, const QString &name)
{
    return liste.contains(name, Qt::CaseInsensitive);
}

// The catalogue's table without the column `ohne`: a database of an older release.
Tabelle ohneSpalte(const QString &tabellenName, const QString &ohne)
{
    Tabelle t = *tabelle(tabellenName);
    std::erase_if(t.spalten,
                  [&](const Spalte &s) { return s.name.compare(ohne, Qt::CaseInsensitive) == 0; });
    return t;
}

} // namespace

class TestSchema : public QObject
{
    Q_OBJECT

private slots:
    void katalogIstInSichStimmig()
    {
        QCOMPARE(schemaKatalog().size(), std::size_t(10));
        for (const Tabelle &t : schemaKatalog()) {
            QVERIFY2(!t.schluessel.isEmpty(), qPrintable(t.name));
            for (const QString &k : t.schluessel)
                QVERIFY2(t.spalte(k), qPrintable(t.name + QLatin1Char('.') + k));
            QSet<QString> namen;
            for (const Spalte &s : t.spalten) {
                QVERIFY2(!namen.contains(s.name.toLower()), qPrintable(s.name));
                namen.insert(s.name.toLower());
                if (s.typ == Spaltentyp::Text)
                    QVERIFY2(s.laenge > 0, qPrintable(s.name));
            }
        }
        // 2 keys + 50 data columns (KontoVSTKuerz is written twice but exists once).
        QCOMPARE(tabelle(QStringLiteral("objkanzleikontenstamm"))->spalten.size(), std::size_t(52));
        QVERIFY(tabelle(QStringLiteral("KreditorenKontenstamm")));
        QVERIFY(!tabelle(QStringLiteral("Kontenstamm")));
    }

    void schemaAnlegen_data()
    {
        QTest::addColumn<QString>("name");
        for (const Tabelle &t : schemaKatalog())
            QTest::newRow(qPrintable(t.name)) << t.name;
    }

    void schemaAnlegen()
    {
        QFETCH(QString, name);
        auto db = neueDb();
        platform::storage::schemaAnlegen(*db);
        const Tabelle &t = *tabelle(name);
        QVERIFY(db->hasTable(name));
        const QStringList spalten = db->columns(name);
        QCOMPARE(spalten.size(), qsizetype(t.spalten.size()));
        for (const Spalte &s : t.spalten)
            QVERIFY2(enthaelt(spalten, s.name), qPrintable(s.name));
        const QStringList schluessel = db->primaryKey(name);
        QCOMPARE(schluessel.size(), t.schluessel.size());
        for (const QString &k : t.schluessel)
            QVERIFY2(enthaelt(schluessel, k), qPrintable(k));
        QVERIFY(platform::storage::fehlendeSpalten(*db, name).isEmpty());
        QVERIFY(!db->inTransaction());
    }

    void neueZeileErhaeltAnfangswerte()
    {
        auto db = neueDb();
        platform::storage::schemaAnlegen(*db);
        db->execute(QStringLiteral("INSERT INTO ObjKanzleiKontenstamm (KontoNr, KontoJJ) "
                                   "VALUES (?, ?)"),
                    {QStringLiteral("0001"), 2025});
        auto c = db->query(QStringLiteral("SELECT * FROM ObjKanzleiKontenstamm"));
        QVERIFY(c->next());
        const Tabelle &t = *tabelle(QStringLiteral("ObjKanzleiKontenstamm"));
        for (int i = 0; i < c->spaltenAnzahl(); ++i) {
            const Spalte *s = t.spalte(c->spaltenName(i));
            QVERIFY2(s, qPrintable(c->spaltenName(i)));
            if (!s->anfangswert.isValid())
                continue;
            if (s->typ == Spaltentyp::Text) {
                QCOMPARE(c->art(i), Wertart::Text);
                QCOMPARE(c->wert(i).toString(), QString());
            } else {
                QCOMPARE(c->art(i), Wertart::Ganzzahl);
                QCOMPARE(c->ganzzahl(i), s->anfangswert.toLongLong());
            }
        }
        QCOMPARE(
            db->scalar(QStringLiteral("SELECT KontoAbrUstProz FROM ObjKanzleiKontenstamm")).toInt(),
            100);
        QCOMPARE(
            db->scalar(QStringLiteral("SELECT KontoPVAZusatz FROM ObjKanzleiKontenstamm")).toInt(),
            -1);
    }

    void schluesselVerbietetDoppelte_data()
    {
        QTest::addColumn<QString>("sql");
        QTest::addColumn<QVariantList>("zeile");
        QTest::newRow("Konto") << QStringLiteral(
            "INSERT INTO ObjKanzleiKontenstamm (KontoNr, KontoJJ) VALUES (?, ?)")
                               << QVariantList {QStringLiteral("2800"), 2025};
        QTest::newRow("Kreditor") << QStringLiteral(
            "INSERT INTO KreditorenKontenstamm (KrKontoNr) VALUES (?)")
                                  << QVariantList {33001};
        QTest::newRow("Bilanzposition")
            << QStringLiteral("INSERT INTO BilanzPos (BilPosAktPass, BilPosABC, BilPosRöm, "
                              "BilPosArab, BilPosABCklein) VALUES (?, ?, ?, ?, ?)")
            << QVariantList {1, QStringLiteral("A"), QStringLiteral("II"), QStringLiteral("3"),
                             QStringLiteral("")};
        QTest::newRow("Kreditorensaldo")
            << QStringLiteral("INSERT INTO KreditorenSalden (KsKontoNr, KsJJ) VALUES (?, ?)")
            << QVariantList {33001, 2025};
    }

    void schluesselVerbietetDoppelte()
    {
        QFETCH(QString, sql);
        QFETCH(QVariantList, zeile);
        auto db = neueDb();
        platform::storage::schemaAnlegen(*db);
        db->execute(sql, zeile);
        try {
            db->execute(sql, zeile);
            QFAIL("doppelter Schlüssel angenommen");
        } catch (const platform::RuntimeError &e) {
            QCOMPARE(e.nummer(), platform::fehlernummer::DoppelterSchluessel);
        }
    }

    void kontoNrSortiertByteweise()
    {
        auto db = neueDb();
        platform::storage::schemaAnlegen(*db);
        const QStringList nummern {QStringLiteral("a100"), QStringLiteral("1000"),
                                   QStringLiteral("B100"), QStringLiteral("0001"),
                                   QStringLiteral("10 1"), QStringLiteral("999998"),
                                   QStringLiteral("10")};
        for (const QString &nr : nummern) {
            db->execute(QStringLiteral("INSERT INTO ObjKanzleiKontenstamm (KontoNr, KontoJJ) "
                                       "VALUES (?, 2025)"),
                        {nr});
        }
        QStringList gelesen;
        auto c = db->query(
            QStringLiteral("SELECT KontoNr FROM ObjKanzleiKontenstamm ORDER BY KontoNr"));
        while (c->next())
            gelesen << c->wert(0).toString();
        QStringList erwartet = nummern;
        std::sort(erwartet.begin(), erwartet.end(),
                  [](const QString &a, const QString &b) { return a.toUtf8() < b.toUtf8(); });
        QCOMPARE(gelesen, erwartet);
    }

    void idWirdVergeben()
    {
        auto db = neueDb();
        platform::storage::schemaAnlegen(*db);
        for (int i = 0; i < 2; ++i) {
            db->execute(QStringLiteral("INSERT INTO ObjKanzleiSalden (SSObjNr, SSBuNr, SSJJ, "
                                       "SSKontoNr) VALUES (0, 0, 2025, ?)"),
                        {QStringLiteral("2800")});
            db->execute(QStringLiteral("INSERT INTO KreditorenBuchungen (KbKontoNr, KbJJ) "
                                       "VALUES (33001, 2025)"));
        }
        QCOMPARE(
            db->scalar(QStringLiteral("SELECT COUNT(DISTINCT SSId) FROM ObjKanzleiSalden")).toInt(),
            2);
        QCOMPARE(db->scalar(QStringLiteral("SELECT COUNT(DISTINCT KbId) FROM KreditorenBuchungen"))
                     .toInt(),
                 2);
    }

    void datumUndBetragBleibenErhalten()
    {
        auto db = neueDb();
        platform::storage::schemaAnlegen(*db);
        db->execute(QStringLiteral("INSERT INTO AllgSchluesselDaten (SchlNummer, SchlAbDatum, "
                                   "SchlBisDatum) VALUES (0, ?, ?)"),
                    {QDate(1900, 1, 1), QDate(2099, 12, 31)});
        db->execute(QStringLiteral("INSERT INTO KreditorenSalden (KsKontoNr, KsJJ, "
                                   "KsHabenSumme) VALUES (1, 2025, ?)"),
                    {1234.56});
        auto c = db->query(QStringLiteral("SELECT SchlAbDatum, SchlBisDatum, SchlLangBezeich FROM "
                                          "AllgSchluesselDaten"));
        QVERIFY(c->next());
        QCOMPARE(c->wert(0).toDate(), QDate(1900, 1, 1));
        QCOMPARE(c->wert(1).toDate(), QDate(2099, 12, 31));
        QCOMPARE(c->wert(2).toString(), QString());
        QCOMPARE(db->scalar(QStringLiteral("SELECT KsHabenSumme FROM KreditorenSalden")).toDouble(),
                 1234.56);
    }

    void schemaAnlegenIstAtomar()
    {
        // A table of the same name stops the creation half-way; nothing may remain.
        auto db = neueDb();
        db->execute(QStringLiteral("CREATE TABLE BilanzPosZL7 (x integer)"));
        QVERIFY_THROWS_EXCEPTION(platform::RuntimeError, platform::storage::schemaAnlegen(*db));
        QVERIFY(!db->inTransaction());
        QVERIFY(!db->hasTable(QStringLiteral("ObjKanzleiKontenstamm")));
        QVERIFY(!db->hasTable(QStringLiteral("BilanzPos")));
        QVERIFY(db->hasTable(QStringLiteral("BilanzPosZL7")));
    }

    void fehlendeSpalten_data()
    {
        QTest::addColumn<QString>("tabellenName");
        QTest::addColumn<QString>("spalte");
        QTest::newRow("Zusatzdaten")
            << QStringLiteral("ObjKanzleiKontenstamm") << QStringLiteral("KontoZusatzDatenJN");
        QTest::newRow("Umlaut") << QStringLiteral("ObjKanzleiKontenstamm")
                                << QStringLiteral("KontoÖNORMAbrBlockPos");
        QTest::newRow("letzte") << QStringLiteral("ObjKanzleiKontenstamm")
                                << QStringLiteral("KontoEstgPflichtig");
        QTest::newRow("Block") << QStringLiteral("AbrPosBkBlöcke")
                               << QStringLiteral("BkBlockSchlPos");
        QTest::newRow("Salden") << QStringLiteral("ObjKanzleiSalden")
                                << QStringLiteral("SSHabenSumme");
    }

    void fehlendeSpalten()
    {
        QFETCH(QString, tabellenName);
        QFETCH(QString, spalte);
        auto db = neueDb();
        db->execute(ddl(ohneSpalte(tabellenName, spalte), db->engine()));
        QCOMPARE(platform::storage::fehlendeSpalten(*db, tabellenName), QStringList {spalte});
        // Any spelling of the table name.
        QCOMPARE(platform::storage::fehlendeSpalten(*db, tabellenName.toUpper()),
                 QStringList {spalte});
    }

    void fehlendeTabelleFehltGanz()
    {
        auto db = neueDb();
        QCOMPARE(platform::storage::fehlendeSpalten(*db, QStringLiteral("BilanzPos")),
                 tabelle(QStringLiteral("BilanzPos"))->spaltenNamen());
        try {
            platform::storage::fehlendeSpalten(*db, QStringLiteral("GibtEsNicht"));
            QFAIL("unbekannte Tabelle angenommen");
        } catch (const platform::RuntimeError &e) {
            QCOMPARE(e.nummer(), platform::fehlernummer::TabelleNichtGefunden);
        }
    }

    void postgresTextschluesselMitCollation()
    {
        const Tabelle &t = *tabelle(QStringLiteral("ObjKanzleiKontenstamm"));
        const QString pg = ddl(t, Engine::PostgreSql);
        QVERIFY(pg.contains(QStringLiteral("KontoNr varchar(6) COLLATE \"C\" NOT NULL")));
        QVERIFY(!pg.contains(QStringLiteral("KontoBezeichnung varchar(50) COLLATE")));
        QVERIFY(!ddl(t, Engine::SqlCipher).contains(QStringLiteral("COLLATE")));
        // Never quoted identifiers: PostgreSQL would keep their case and no query could find
        // them.
        QVERIFY(!pg.contains(QStringLiteral("\"KontoNr\"")));
    }
};

ZEP_ENGINE_TEST_MAIN(TestSchema)

#include "tst_schema.moc"
