// The kontenstamm program as a user starts it: bad options and unreadable databases end with a
// German message and exit code 2; --init and --demo make databases that open again.
#include <QFileInfo>
#include <QProcess>
#include <QScopeGuard>
#include <QTemporaryDir>
#include <QTest>

class tst_Host : public QObject
{
    Q_OBJECT

private slots:
    void abbruchMitCode2_data();
    void abbruchMitCode2();
    void initUndDemoLegenDatenbankAn();
    void jahreswerkzeugeOhneBildschirm();

private:
    struct Ergebnis
    {
        int code = -1;
        QString aus;
        QString fehler;
    };
    Ergebnis starten(const QStringList &argumente);
    QTemporaryDir m_dir;
    bool m_ohneBildschirm = false;
    QByteArray m_eingabe; // standard input of the next start
};

tst_Host::Ergebnis tst_Host::starten(const QStringList &argumente)
{
    QProcess p;
    QProcessEnvironment env = QProcessEnvironment::systemEnvironment();
    env.insert(QStringLiteral("QT_QPA_PLATFORM"), QStringLiteral("offscreen"));
    env.insert(QStringLiteral("XDG_DATA_HOME"), m_dir.filePath(QStringLiteral("daten")));
    if (m_ohneBildschirm) {
        env.remove(QStringLiteral("QT_QPA_PLATFORM"));
        env.remove(QStringLiteral("DISPLAY"));
        env.remove(QStringLiteral("WAYLAND_DISPLAY"));
    }
    p.setProcessEnvironment(env);
    p.start(QStringLiteral(ZEP_KONTENSTAMM), argumente);
    p.write(m_eingabe);
    p.closeWriteChannel();
    Ergebnis e;
    if (!p.waitForFinished(120000)) {
        p.kill();
        return e;
    }
    e.code = p.exitStatus() == QProcess::NormalExit ? p.exitCode() : -1;
    e.aus = QString::fromUtf8(p.readAllStandardOutput());
    e.fehler = QString::fromUtf8(p.readAllStandardError());
    return e;
}

void tst_Host::abbruchMitCode2_data()
{
    QTest::addColumn<QStringList>("argumente");
    QTest::addColumn<QString>("meldungEnthaelt");
    QTest::newRow("unbekannte Option") << QStringList {"--gibtsnicht"} << "--gibtsnicht";
    QTest::newRow("Jahr keine Zahl") << QStringList {"--jahr", "zweitausend"} << "zweitausend";
    QTest::newRow("Datei fehlt") << QStringList {"--datenbank", "/nirgends/kanzlei.zdb", "--jahr",
                                                 "2024"}
                                 << "Fehler";
    QTest::newRow("keine Datenbank")
        << QStringList {"--datenbank", QStringLiteral(ZEP_KONTENSTAMM), "--jahr", "2024"}
        << "Fehler";
}

void tst_Host::abbruchMitCode2()
{
    QFETCH(QStringList, argumente);
    QFETCH(QString, meldungEnthaelt);
    const Ergebnis e = starten(argumente);
    QCOMPARE(e.code, 2);
    QVERIFY2(e.fehler.contains(meldungEnthaelt), qPrintable(e.fehler));
}

void tst_Host::initUndDemoLegenDatenbankAn()
{
    const QString leer = m_dir.filePath(QStringLiteral("leer.zdb"));
    Ergebnis e = starten({QStringLiteral("--init"), leer});
    QCOMPARE(e.code, 0);
    QVERIFY(QFileInfo::exists(leer));

    const QString demo = m_dir.filePath(QStringLiteral("demo.zdb"));
    e = starten({QStringLiteral("--demo"), demo});
    QCOMPARE(e.code, 0);
    QVERIFY2(e.aus.contains(QStringLiteral("ObjKanzleiKontenstamm")), qPrintable(e.aus));

    // A second --init on the same file must not overwrite it.
    const QByteArray vorher = [&] {
        QFile f(demo);
        return f.open(QIODevice::ReadOnly) ? f.readAll() : QByteArray();
    }();
    e = starten({QStringLiteral("--init"), demo});
    QCOMPARE(e.code, 2);
    QFile f(demo);
    QVERIFY(f.open(QIODevice::ReadOnly));
    QCOMPARE(f.readAll(), vorher);
}

void tst_Host::jahreswerkzeugeOhneBildschirm()
{
    const QString demo = m_dir.filePath(QStringLiteral("werkzeuge.zdb"));
    QCOMPARE(starten({QStringLiteral("--demo"), demo}).code, 0);
    m_ohneBildschirm = true;
    const auto ende = qScopeGuard([this] { m_ohneBildschirm = false; });
    const QStringList db {QStringLiteral("--datenbank"), demo};

    Ergebnis e = starten(QStringList {"pruefen", "2026"} + db);
    QCOMPARE(e.code, 0);
    QVERIFY2(e.aus.contains("Zusammenfassung: 314 Konten des Buchungsjahres 2026 geprüft, 0 "
                            "fehlerhaft"),
             qPrintable(e.aus + e.fehler));

    e = starten(QStringList {"jahreswechsel", "2026", "2027", "--vorschau"} + db);
    QCOMPARE(e.code, 0);
    QVERIFY(e.aus.contains("Vorschau: es wurde nichts geschrieben."));
    e = starten(QStringList {"jahreswechsel", "2026", "2027"} + db);
    QVERIFY2(e.aus.contains("314 Konten wurden von 2026 nach 2027 übernommen"), qPrintable(e.aus));
    e = starten(QStringList {"jahreswechsel", "2026", "2027"} + db);
    QVERIFY2(e.aus.contains("0 Konten wurden von 2026 nach 2027 übernommen, 0 Konten haben "
                            "abweichende Definitionen, 314 sind gleich"),
             qPrintable(e.aus));

    const QString csv = m_dir.filePath(QStringLiteral("2027.csv"));
    e = starten(QStringList {"export", "2027", csv} + db);
    QCOMPARE(e.code, 0);
    e = starten(QStringList {"import", "2030", csv, "--probelauf"} + db);
    QCOMPARE(e.code, 0);
    QVERIFY(e.aus.contains("Probelauf: nichts geschrieben."));
    e = starten(QStringList {"import", "2030", csv} + db);
    QCOMPARE(e.code, 0);
    // A second import finds every account there already: errors, exit code 1, nothing written.
    e = starten(QStringList {"import", "2030", csv} + db);
    QCOMPARE(e.code, 1);
    QVERIFY(e.aus.contains("Feld KontoNr: Konto 999998 ist im Buchungsjahr 2030 bereits "
                           "vorhanden"));
    e = starten(QStringList {"import", "2030", m_dir.filePath("fehlt.csv")} + db);
    QCOMPARE(e.code, 1);
    QVERIFY(e.aus.contains("kann nicht gelesen werden"));
    e = starten(QStringList {"pruefen", "2026", "--datenbank", "/nirgends/k.zdb"});
    QCOMPARE(e.code, 2);

    // The administrator's console reads, from the command line or standard input, and never
    // writes.
    const auto inhalt = [&] {
        QFile f(demo);
        return f.open(QIODevice::ReadOnly) ? f.readAll() : QByteArray();
    };
    const QByteArray vorher = inhalt();
    e = starten(
        {"sql", demo, "SELECT count(*) AS n FROM ObjKanzleiKontenstamm WHERE KontoJJ = 2030"});
    QCOMPARE(e.code, 0);
    QCOMPARE(e.aus, "n\n314\n");
    m_eingabe = "PRAGMA cipher_version;\nDELETE\n  FROM ObjKanzleiKontenstamm;\nSELECT 7;";
    e = starten({"sql", demo});
    m_eingabe.clear();
    QCOMPARE(e.code, 1);
    QVERIFY2(e.aus.startsWith("cipher_version\n4.") && e.aus.endsWith("7\n7\n"), qPrintable(e.aus));
    QVERIFY2(e.fehler.contains("readonly"), qPrintable(e.fehler));
    QCOMPARE(inhalt(), vorher);
}

QTEST_GUILESS_MAIN(tst_Host)
#include "tst_host.moc"
