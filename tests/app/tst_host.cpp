// The kontenstamm program as a user starts it: bad options and unreadable databases end with a
// German message and exit code 2; --init and --demo make databases that open again.
#include <QProcess>
#include <QTemporaryDir>
#include <QTest>

class tst_Host : public QObject
{
    Q_OBJECT

private slots:
    void abbruchMitCode2_data();
    void abbruchMitCode2();
    void initUndDemoLegenDatenbankAn();

private:
    struct Ergebnis
    {
        int code = -1;
        QString aus;
        QString fehler;
    };
    Ergebnis starten(const QStringList &argumente);
    QTemporaryDir m_dir;
};

tst_Host::Ergebnis tst_Host::starten(const QStringList &argumente)
{
    QProcess p;
    QProcessEnvironment env = QProcessEnvironment::systemEnvironment();
    env.insert(QStringLiteral("QT_QPA_PLATFORM"), QStringLiteral("offscreen"));
    env.insert(QStringLiteral("XDG_DATA_HOME"), m_dir.filePath(QStringLiteral("daten")));
    p.setProcessEnvironment(env);
    p.start(QStringLiteral(ZEP_KONTENSTAMM), argumente);
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

QTEST_GUILESS_MAIN(tst_Host)
#include "tst_host.moc"
