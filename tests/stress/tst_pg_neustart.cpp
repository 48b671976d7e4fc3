// The PostgreSQL server restarted while a record is being edited: the save in between fails with
// a German message and writes nothing, the typed values stay on screen, and once the server is
// back the next save goes through on a new connection. The test starts a cluster of its own, so
// that restarting it disturbs no other test.
#include "platform/core/RuntimeError.h"
#include "common/TestDatenbank.h"
#include "platform/storage/Database.h"
#include "platform/storage/Schema.h"
#include "platform/ui/DataControl.h"
#include "platform/ui/MsgBox.h"

#include <QApplication>
#include <QLineEdit>
#include <QProcess>
#include <QTemporaryDir>
#include <QTest>
#include <QUrlQuery>

using namespace platform;
using platform::storage::Database;

class TestPgNeustart : public QObject
{
    Q_OBJECT

private:
    QTemporaryDir m_zustand;
    QString m_uri;
    QString m_clusterDir;

    bool skript(const QStringList &argumente, QString *ausgabe = nullptr)
    {
        QProcess p;
        QProcessEnvironment env = QProcessEnvironment::systemEnvironment();
        env.insert("ZEP_PG_STATE", m_zustand.filePath("cluster.state"));
        env.insert("ZEP_PG_PORT",
                   QString::number(55000 + QCoreApplication::applicationPid() % 900));
        p.setProcessEnvironment(env);
        p.setProcessChannelMode(QProcess::ForwardedErrorChannel);
        p.start(QStringLiteral(ZEP_PG_SKRIPT), argumente);
        if (!p.waitForFinished(180000) || p.exitCode() != 0)
            return false;
        if (ausgabe)
            *ausgabe = QString::fromUtf8(p.readAllStandardOutput()).trimmed();
        return true;
    }

private slots:
    void initTestCase()
    {
        QVERIFY(skript({"start"}, &m_uri));
        m_clusterDir = QUrlQuery(QUrl(m_uri).query()).queryItemValue("host");
        QVERIFY(!m_clusterDir.isEmpty());
    }
    void cleanupTestCase()
    {
        if (!m_clusterDir.isEmpty())
            skript({"stop", m_clusterDir});
    }

    void speichernNachNeustart()
    {
        auto db = Database::open(m_uri);
        platform::storage::schemaAnlegen(*db);
        testhilfe::konto(*db, QStringLiteral("1000"), QStringLiteral("Kassa"), 2024);
        MsgBoxProtokoll boxen;
        boxen.setAntwortFunktion([](const MsgBoxEintrag &) { return int(vbOK); });
        QWidget fenster;
        auto *dc = new DataControl(&fenster);
        dc->setDatabaseName(m_uri);
        dc->setRecordSource("SELECT * FROM ObjKanzleiKontenstamm WHERE KontoJJ = ?", {2024});
        auto *name = new QLineEdit(&fenster);
        dc->bind(name, "KontoBezeichnung");
        QVERIFY(dc->Refresh());
        QList<int> fehler;
        connect(dc, &DataControl::Error, [&](int nr, int &) { fehler << nr; });

        name->setText("Kassa neu");
        QVERIFY(skript({"restart", m_clusterDir}));
        // The connection is gone: refused with a message, nothing lost, nothing written.
        QVERIFY(!dc->UpdateRecord());
        QCOMPARE(fehler, QList<int> {fehlernummer::DatenbankNichtErreichbar});
        QCOMPARE(boxen.anzahl(), 1);
        QVERIFY2(boxen.letzter().text.contains("Verbindung")
                     || boxen.letzter().text.contains("3151"),
                 qPrintable(boxen.letzter().text));
        QCOMPARE(name->text(), "Kassa neu");
        QVERIFY(dc->bearbeitet());

        // The server is back: the next action reconnects and saves what was typed.
        QVERIFY(dc->UpdateRecord());
        QVERIFY(!dc->bearbeitet());
        auto andere = Database::openSeparate(m_uri);
        QCOMPARE(andere->scalar("SELECT KontoBezeichnung FROM ObjKanzleiKontenstamm").toString(),
                 "Kassa neu");
    }
};

int main(int argc, char **argv)
{
    QApplication app(argc, argv);
    TestPgNeustart t;
    return QTest::qExec(&t, argc, argv);
}
#include "tst_pg_neustart.moc"
