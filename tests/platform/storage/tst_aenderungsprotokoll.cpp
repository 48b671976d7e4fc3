#include "common/TestDatenbank.h"
#include "platform/storage/Aenderungsmelder.h"
#include "platform/storage/Aenderungsprotokoll.h"
#include "platform/storage/Recordset.h"
#include "platform/storage/Schema.h"

#include <QDir>
#include <QFile>
#include <QProcess>
#include <QRegularExpression>
#include <QSignalSpy>
#include <QThread>

using namespace platform::storage;

namespace {

const QString keinWert = QStringLiteral("∅");

QString alsZeile(const Protokolleintrag &e)
{
    return QStringList {e.tabelle,
                        e.jahr ? QString::number(*e.jahr) : keinWert,
                        e.konto,
                        e.feld,
                        e.alt.value_or(keinWert),
                        e.neu.value_or(keinWert)}
        .join(QLatin1Char('|'));
}

qint64 letzteNr(Database &db)
{
    return db.scalar(QStringLiteral("SELECT max(Nr) FROM Aenderungsprotokoll")).toLongLong();
}

// Entries after `nach`, oldest first, from both logged tables.
std::vector<Protokolleintrag> eintraegeNach(Database &db, qint64 nach)
{
    std::vector<Protokolleintrag> alle;
    for (const QString &t :
         {QStringLiteral("ObjKanzleiKontenstamm"), QStringLiteral("KreditorenKontenstamm")}) {
        for (Protokolleintrag &e : Aenderungsprotokoll::lesen(db, t)) {
            if (e.nr > nach)
                alle.push_back(std::move(e));
        }
    }
    std::sort(alle.begin(), alle.end(), [](auto &a, auto &b) { return a.nr < b.nr; });
    return alle;
}

} // namespace

class tst_aenderungsprotokoll : public QObject
{
    Q_OBJECT

    QString m_ort;
    std::shared_ptr<Database> m_db;

    // This program again, as another user's process (see initTestCase).
    std::unique_ptr<QProcess> anderer(const QString &auftrag = {})
    {
        auto p = std::make_unique<QProcess>();
        QProcessEnvironment env = QProcessEnvironment::systemEnvironment();
        env.insert(QStringLiteral("ZEP_ANDERER_SCHREIBER"), m_ort);
        if (!auftrag.isEmpty())
            env.insert(QStringLiteral("ZEP_SCHREIBER_AUFTRAG"), auftrag);
        p->setProcessEnvironment(env);
        p->setProcessChannelMode(QProcess::ForwardedErrorChannel);
        p->start(QCoreApplication::applicationFilePath(), {QStringLiteral("-silent")});
        return p;
    }

private slots:
    // This program started again as another user's process: with ZEP_ANDERER_SCHREIBER=ORT it
    // saves an account and ends. With ZEP_SCHREIBER_AUFTRAG=KONTO:RUNDEN:STARTDATEI as well, it
    // says "bereit", waits for the start file and saves the creditor account RUNDEN times, two
    // fields each time.
    void initTestCase()
    {
        const QString ort = qEnvironmentVariable("ZEP_ANDERER_SCHREIBER");
        if (ort.isEmpty())
            return;
        try {
            auto db = Database::openSeparate(ort);
            const QStringList auftrag = qEnvironmentVariable("ZEP_SCHREIBER_AUFTRAG").split(':');
            if (auftrag.size() < 3) {
                db->execute(
                    QStringLiteral("UPDATE ObjKanzleiKontenstamm SET KontoBezeichnung = 'Fremd'"));
            } else {
                std::printf("bereit\n");
                std::fflush(stdout);
                const QString start = auftrag.mid(2).join(QLatin1Char(':'));
                while (!QFile::exists(start))
                    QThread::msleep(2);
                for (int r = 0; r < auftrag[1].toInt(); ++r) {
                    db->execute(QStringLiteral("UPDATE KreditorenKontenstamm SET "
                                               "KrKontoBezeichnung = ?, KrKontoTypus = ? "
                                               "WHERE KrKontoNr = ?"),
                                {QStringLiteral("Runde %1").arg(r), QString::number(r % 2),
                                 auftrag[0].toInt()});
                }
            }
        } catch (const std::exception &e) {
            std::fprintf(stderr, "%s\n", e.what());
            std::_Exit(1);
        }
        std::_Exit(0);
    }

    void init()
    {
        m_ort = testhilfe::neueDatenbank();
        m_db = Database::open(m_ort);
        schemaAnlegen(*m_db);
        m_db->execute(QStringLiteral("INSERT INTO ObjKanzleiKontenstamm (KontoNr, KontoJJ, "
                                     "KontoBezeichnung) VALUES ('2000', 2025, 'Bank')"));
    }

    void cleanup() { m_db.reset(); }

    // Every way of writing an account leaves one entry per changed field, in the same
    // transaction, and the chain stays intact.
    void schreibwege_data()
    {
        QTest::addColumn<QString>("sql"); // empty: the record set of the screens
        QTest::addColumn<QString>("quelle");
        QTest::addColumn<int>("anzahl"); // -1: every value the row held
        QTest::addColumn<QStringList>("erwartet");
        const QString k = QStringLiteral("ObjKanzleiKontenstamm|2025|2000|");
        QTest::newRow("Bildschirm ändert ein Feld")
            << QString() << protokollquelle::Bildschirm << 1
            << QStringList {k + QStringLiteral("KontoBezeichnung|Bank|Girokonto")};
        QTest::newRow("Nachbarkomponente ändert zwei Felder")
            << QStringLiteral("UPDATE ObjKanzleiKontenstamm SET KontoBezeichnung = 'Kassa', "
                              "KontoTypus = 2 WHERE KontoNr = '2000'")
            << protokollquelle::Bildschirm << 2
            << QStringList {k + QStringLiteral("KontoBezeichnung|Bank|Kassa"),
                            k + QStringLiteral("KontoTypus|0|2")};
        QTest::newRow("gleicher Wert: kein Eintrag")
            << QStringLiteral("UPDATE ObjKanzleiKontenstamm SET KontoBezeichnung = 'Bank'")
            << protokollquelle::Bildschirm << 0 << QStringList {};
        QTest::newRow("Import legt an, Vorgabewerte ohne Eintrag")
            << QStringLiteral("INSERT INTO ObjKanzleiKontenstamm (KontoNr, KontoJJ, "
                              "KontoBezeichnung, KontoTypus) VALUES ('3000', 2026, 'Miete', 0)")
            << protokollquelle::Import << 3
            << QStringList {
                   QStringLiteral("ObjKanzleiKontenstamm|2026|3000|KontoNr|∅|3000"),
                   QStringLiteral("ObjKanzleiKontenstamm|2026|3000|KontoBezeichnung|∅|Miete")};
        QTest::newRow("Löschen hält jeden Wert fest")
            << QStringLiteral("DELETE FROM ObjKanzleiKontenstamm WHERE KontoNr = '2000'")
            << protokollquelle::Jahreswechsel << -1
            << QStringList {k + QStringLiteral("KontoBezeichnung|Bank|∅"),
                            k + QStringLiteral("KontoTypus|0|∅"),
                            k + QStringLiteral("KontoNr|2000|∅")};
        QTest::newRow("Kreditor")
            << QStringLiteral("INSERT INTO KreditorenKontenstamm (KrKontoNr, "
                              "KrKontoBezeichnung) VALUES (33000, 'Installateur')")
            << protokollquelle::Bildschirm << 2
            << QStringList {QStringLiteral(
                   "KreditorenKontenstamm|∅|33000|KrKontoBezeichnung|∅|Installateur")};
    }

    void schreibwege()
    {
        QFETCH(QString, sql);
        QFETCH(QString, quelle);
        QFETCH(int, anzahl);
        QFETCH(QStringList, erwartet);
        if (anzahl < 0) {
            auto c = m_db->query(QStringLiteral("SELECT * FROM ObjKanzleiKontenstamm"));
            QVERIFY(c->next());
            anzahl = 0;
            for (int i = 0; i < c->spaltenAnzahl(); ++i)
                anzahl += c->art(i) == Wertart::Null ? 0 : 1;
        }
        const qint64 vorher = letzteNr(*m_db);
        {
            const Protokollquelle q(*m_db, quelle);
            if (sql.isEmpty()) {
                Recordset rs(m_db, QStringLiteral("SELECT * FROM ObjKanzleiKontenstamm"));
                rs.Edit();
                rs.setFeld(QStringLiteral("KontoBezeichnung"), QStringLiteral("Girokonto"));
                rs.Update();
            } else {
                m_db->execute(sql);
            }
        }
        const auto neu = eintraegeNach(*m_db, vorher);
        QStringList zeilen;
        static const QRegularExpression utc(
            QStringLiteral("^\\d{4}-\\d\\d-\\d\\dT\\d\\d:\\d\\d:\\d\\d\\.\\d{3}Z$"));
        for (const Protokolleintrag &e : neu) {
            zeilen << alsZeile(e);
            QCOMPARE(e.quelle, quelle);
            QVERIFY2(utc.match(e.zeit).hasMatch(), qPrintable(e.zeit));
            QVERIFY(!e.wer.isEmpty());
            QVERIFY(!e.arbeitsplatz.isEmpty());
        }
        QVERIFY2(zeilen.size() == anzahl, qPrintable(zeilen.join('\n')));
        for (const QString &z : erwartet)
            QVERIFY2(zeilen.contains(z), qPrintable(z + QStringLiteral("\n") + zeilen.join('\n')));
        QCOMPARE(Aenderungsprotokoll::pruefen(*m_db).fehlerNr, 0);
    }

    // A write that fails leaves no entry behind: the entries are part of its transaction.
    void rollbackNimmtEintraegeMit()
    {
        const qint64 vorher = letzteNr(*m_db);
        m_db->begin();
        m_db->execute(QStringLiteral("UPDATE ObjKanzleiKontenstamm SET KontoBezeichnung = 'X'"));
        m_db->rollback();
        QCOMPARE(letzteNr(*m_db), vorher);
    }

    // Whatever is done to the log outside the product shows at the first entry concerned.
    void kette_data()
    {
        QTest::addColumn<QString>("eingriff");
        QTest::addColumn<qint64>("fehlerNr");
        QTest::newRow("unberührt") << QString() << qint64(0);
        QTest::newRow("alter Wert überschrieben")
            << QStringLiteral("UPDATE Aenderungsprotokoll SET Alt = 'Sparbuch' WHERE Nr = 4")
            << qint64(4);
        QTest::newRow("Benutzer überschrieben")
            << QStringLiteral("UPDATE Aenderungsprotokoll SET Wer = 'chef' WHERE Nr = 2")
            << qint64(2);
        QTest::newRow("Eintrag gelöscht")
            << QStringLiteral("DELETE FROM Aenderungsprotokoll WHERE Nr = 3") << qint64(3);
        QTest::newRow("erster Eintrag gelöscht")
            << QStringLiteral("DELETE FROM Aenderungsprotokoll WHERE Nr = 1") << qint64(1);
        // Changing an entry and fitting its hash breaks the link to the next one.
        QTest::newRow("Hash nachgerechnet") << QStringLiteral("nachrechnen") << qint64(5);
    }

    void kette()
    {
        QFETCH(QString, eingriff);
        QFETCH(qint64, fehlerNr);
        for (const char *name : {"Girokonto", "Sparbuch", "Kassa"}) {
            m_db->execute(QStringLiteral("UPDATE ObjKanzleiKontenstamm SET KontoBezeichnung = ?"),
                          {QString::fromLatin1(name)});
        }
        QCOMPARE(letzteNr(*m_db), 6);
        const auto alle = eintraegeNach(*m_db, 0);
        if (eingriff == QStringLiteral("nachrechnen")) {
            Protokolleintrag e = alle[3];
            e.neu = QStringLiteral("Festgeld");
            m_db->execute(QStringLiteral("UPDATE Aenderungsprotokoll SET Neu = ?, Hash = ? "
                                         "WHERE Nr = 4"),
                          {*e.neu, Aenderungsprotokoll::hashBerechnen(e, alle[2].hash)});
        } else if (!eingriff.isEmpty()) {
            m_db->execute(eingriff);
        }
        const Pruefergebnis p = Aenderungsprotokoll::pruefen(*m_db, alle[2].hash);
        QCOMPARE(p.fehlerNr, fehlerNr);
        QCOMPARE(p.meldung.isEmpty(), fehlerNr == 0);
        QCOMPARE(p.bisGefunden, fehlerNr == 0 || fehlerNr > 3);
        if (fehlerNr == 0) {
            // The engine's hash and the check's agree.
            QCOMPARE(p.letzterHash, alle.back().hash);
            QCOMPARE(Aenderungsprotokoll::hashBerechnen(alle[1], alle[0].hash), alle[1].hash);
            QVERIFY(!Aenderungsprotokoll::pruefen(*m_db, QStringLiteral("ab12")).bisGefunden);
        }
    }

    // Writers in separate processes at once: no entry lost, no fork of the chain.
    void gleichzeitigeSchreiber()
    {
        constexpr int schreiber = 4;
        constexpr int runden = 25;
        const QString start = QDir(QDir::tempPath())
                                  .filePath(QStringLiteral("zep-start-%1-%2")
                                                .arg(QCoreApplication::applicationPid())
                                                .arg(int(testhilfe::aktuelleEngine())));
        QFile::remove(start);
        std::vector<std::unique_ptr<QProcess>> prozesse;
        for (int i = 0; i < schreiber; ++i) {
            m_db->execute(QStringLiteral("INSERT INTO KreditorenKontenstamm (KrKontoNr) "
                                         "VALUES (?)"),
                          {33000 + i});
            prozesse.push_back(
                anderer(QStringLiteral("%1:%2:%3").arg(33000 + i).arg(runden).arg(start)));
        }
        const qint64 vorher = letzteNr(*m_db);
        // All of them write at the same moment, not one after the other as they happen to start.
        for (auto &p : prozesse) {
            while (!p->canReadLine())
                QVERIFY2(p->waitForReadyRead(60000), qPrintable(p->errorString()));
        }
        QFile(start).open(QIODevice::WriteOnly);
        for (auto &p : prozesse) {
            QVERIFY(p->waitForFinished(120000));
            QCOMPARE(p->exitCode(), 0);
        }
        QFile::remove(start);
        for (int i = 0; i < schreiber; ++i) {
            QCOMPARE(m_db->scalar(QStringLiteral("SELECT count(*) FROM Aenderungsprotokoll "
                                                 "WHERE Nr > ? AND Konto = ?"),
                                  {vorher, QString::number(33000 + i)})
                         .toInt(),
                     runden * 2);
        }
        QCOMPARE(letzteNr(*m_db), vorher + schreiber * runden * 2);
        const Pruefergebnis p = Aenderungsprotokoll::pruefen(*m_db);
        QVERIFY2(p.fehlerNr == 0, qPrintable(p.meldung));
        QCOMPARE(p.anzahl, vorher + schreiber * runden * 2);
    }

    // Another process's save reaches the screen within two seconds; its own saves do not.
    void andererBenutzerWirdGemeldet()
    {
        Aenderungsmelder melder(m_db);
        QSignalSpy spy(&melder, &Aenderungsmelder::geaendert);
        m_db->execute(QStringLiteral("UPDATE ObjKanzleiKontenstamm SET KontoTypus = 2"));
        QTest::qWait(700);
        QCOMPARE(spy.count(), 0);
        auto p = anderer();
        QVERIFY(p->waitForFinished(60000));
        QCOMPARE(p->exitCode(), 0);
        QTRY_COMPARE_WITH_TIMEOUT(spy.count(), 1, 2000);
        const QList<QVariant> m = spy.front();
        QCOMPARE(m[0].toString(), QStringLiteral("ObjKanzleiKontenstamm"));
        QCOMPARE(m[1].toInt(), 2025);
        QCOMPARE(m[2].toString(), QStringLiteral("2000"));
        QVERIFY(!m[3].toString().isEmpty());
        QCOMPARE(m[4].toStringList(), QStringList {QStringLiteral("KontoBezeichnung")});
        QCOMPARE(m[5].toBool(), false);
    }

    // A database from before the log gets it at the next open; its data stay as they were.
    void aeltereDatenbank()
    {
        if (m_db->engine() == Engine::PostgreSql) {
            m_db->execute(QStringLiteral("DROP TABLE Aenderungsprotokoll; "
                                         "DROP FUNCTION zep_protokoll_v1 CASCADE"));
        } else {
            for (const char *t : {"ObjKanzleiKontenstamm", "KreditorenKontenstamm"}) {
                for (const char *a : {"e", "a", "l"})
                    m_db->execute(QStringLiteral("DROP TRIGGER zep_protokoll_v1_%1_%2")
                                      .arg(QLatin1String(t), QLatin1String(a)));
            }
            m_db->execute(QStringLiteral("DROP TABLE Aenderungsprotokoll"));
        }
        m_db->execute(QStringLiteral("UPDATE ObjKanzleiKontenstamm SET KontoTypus = 3"));
        QVERIFY(!m_db->hasTable(Aenderungsprotokoll::tabelle));
        m_db.reset();
        m_db = Database::open(m_ort);
        QVERIFY(m_db->hasTable(Aenderungsprotokoll::tabelle));
        QCOMPARE(letzteNr(*m_db), 0);
        QCOMPARE(m_db->scalar(QStringLiteral("SELECT KontoBezeichnung || KontoTypus FROM "
                                             "ObjKanzleiKontenstamm"))
                     .toString(),
                 QStringLiteral("Bank3"));
        m_db->execute(QStringLiteral("UPDATE ObjKanzleiKontenstamm SET KontoTypus = 4"));
        QCOMPARE(letzteNr(*m_db), 1);
    }
};

ZEP_ENGINE_TEST_MAIN(tst_aenderungsprotokoll)
#include "tst_aenderungsprotokoll.moc"
