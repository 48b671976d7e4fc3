// Wiring the data controls of a screen: connect strings, the refused property, the password setter.
#include "frame/DatenSteuerungen.h"
#include "frame/mdlKontenStamm.h"
#include "platform/storage/Database.h"
#include "platform/ui/DataControl.h"
#include "platform/ui/MsgBox.h"

#include <QFile>
#include <QGuiApplication>
#include <QScreen>
#include <QLineEdit>
#include <QTemporaryDir>
#include <QTest>

using namespace platform;
namespace mks = mdlKontenStamm;

namespace {

// A control that calls itself a data control but has no Connect property: the wiring must pass
// over it without a report.
class VerweigernderDatenbaustein : public QWidget
{
    Q_OBJECT
    Q_CLASSINFO("TypeName", "Data")
    Q_PROPERTY(QString DatabaseName MEMBER m_name)

public:
    using QWidget::QWidget;
    QString m_name = QStringLiteral("unverändert");
};

QByteArray dateiInhalt(const QString &pfad)
{
    QFile f(pfad);
    return f.open(QIODevice::ReadOnly) ? f.readAll() : QByteArray();
}

} // namespace

class tst_DatenSteuerungen : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void connectAusSlot4_data();
    void connectAusSlot4();
    void bildschirmOhneDatensteuerungBleibtUnberuehrt();
    void verweigerteEigenschaftWirdUebergangen();
    void passwortSetzenVerschluesselt();
    void bildschirmaufloesungDesSchirms();
    void passwortSetzenAufGeschuetzteDateiZeigtEnglischeMeldung();
};

void tst_DatenSteuerungen::init()
{
    mks::AufrufInfo = QVariantList(mks::AufrufInfoGroesse);
    mks::AktuellesProgramm = QStringLiteral("frmKontenStamm");
    mks::VerbindungsArt.clear();
}

// The connect prefix from slot 4 of the call information (written back there), except for the
// document import, which brings its own and leaves slot 4 alone.
void tst_DatenSteuerungen::connectAusSlot4_data()
{
    QTest::addColumn<QString>("programm");
    QTest::addColumn<QString>("verbindungsArt");
    QTest::addColumn<QVariant>("slot4");
    QTest::addColumn<QString>("praefix");
    QTest::addColumn<QString>("slot4Danach");
    const QString gl = QStringLiteral("frmKontenStamm");
    const QString a2000 = QStringLiteral("Access 2000;");
    const QString access = QStringLiteral("Access;");
    QTest::newRow("Access 2000") << gl << QString() << QVariant(a2000) << a2000 << a2000;
    QTest::newRow("Access") << gl << QString() << QVariant(access) << access << access;
    QTest::newRow("Access 97") << gl << QString() << QVariant(QStringLiteral("Access 97;"))
                               << access << access;
    QTest::newRow("leer") << gl << QString() << QVariant(QString()) << access << access;
    QTest::newRow("Null") << gl << QString() << QVariant() << access << access;
    QTest::newRow("Kleinschreibung") << gl << QString() << QVariant(QStringLiteral("access 2000;"))
                                     << access << access;
    QTest::newRow("ohne Strichpunkt") << gl << QString() << QVariant(QStringLiteral("Access 2000"))
                                      << access << access;
    QTest::newRow("Zahl") << gl << QString() << QVariant(2000) << access << access;
    const QString import = QStringLiteral("ZELDokImport");
    QTest::newRow("Import 2000") << import << a2000 << QVariant(QStringLiteral("Jet;")) << a2000
                                 << QStringLiteral("Jet;");
    QTest::newRow("Import anderes") << import << QStringLiteral("irgendwas") << QVariant(a2000)
                                    << access << a2000;
}

void tst_DatenSteuerungen::connectAusSlot4()
{
    QFETCH(QString, programm);
    QFETCH(QString, verbindungsArt);
    QFETCH(QVariant, slot4);
    QFETCH(QString, praefix);
    QFETCH(QString, slot4Danach);
    mks::AktuellesProgramm = programm;
    mks::VerbindungsArt = verbindungsArt;
    mks::AufrufInfo[mks::slot::VerbindungsArt] = slot4;
    QWidget form;
    auto *kk = new DataControl(&form);
    kk->setObjectName(QStringLiteral("KKData"));
    kk->setConnect(QStringLiteral("Access"));
    kk->setDatabaseName(QStringLiteral("/daten/kanzlei.zdb"));
    auto *versteckt = new DataControl(new QWidget(&form));
    versteckt->setConnect(QStringLiteral("Access"));
    frame::DatenSteuerungenVerbinden(&form, false);
    const QString erwartet = praefix + QStringLiteral("pwd=kellerabteil4;");
    QCOMPARE(kk->Connect(), erwartet);
    QCOMPARE(versteckt->Connect(), erwartet);
    QCOMPARE(kk->DatabaseName(), QStringLiteral("/daten/kanzlei.zdb"));
    QCOMPARE(mks::AufrufInfo.at(mks::slot::VerbindungsArt).toString(), slot4Danach);
}

void tst_DatenSteuerungen::bildschirmOhneDatensteuerungBleibtUnberuehrt()
{
    mks::AufrufInfo[mks::slot::VerbindungsArt] = QStringLiteral("Jet;");
    QWidget form;
    auto *feld = new QLineEdit(&form);
    feld->setProperty("Connect", QStringLiteral("Access"));
    MsgBoxProtokoll boxen;
    frame::DatenSteuerungenVerbinden(&form, true);
    QCOMPARE(feld->property("Connect").toString(), QStringLiteral("Access"));
    QCOMPARE(mks::AufrufInfo.at(mks::slot::VerbindungsArt).toString(), QStringLiteral("Jet;"));
    QCOMPARE(boxen.anzahl(), 0);
}

void tst_DatenSteuerungen::verweigerteEigenschaftWirdUebergangen()
{
    QWidget form;
    auto *fremd = new VerweigernderDatenbaustein(&form);
    auto *dc = new DataControl(&form);
    MsgBoxProtokoll boxen;
    frame::DatenSteuerungenVerbinden(&form, false);
    QCOMPARE(fremd->m_name, QStringLiteral("unverändert"));
    QCOMPARE(dc->Connect(), QStringLiteral("Access;pwd=kellerabteil4;"));
    QCOMPARE(boxen.anzahl(), 0);
}

void tst_DatenSteuerungen::passwortSetzenVerschluesselt()
{
    QTemporaryDir dir;
    const QString pfad = dir.filePath(QStringLiteral("offen.zdb"));
    {
        auto db = storage::Database::create(pfad, QString());
        db->execute(QStringLiteral("CREATE TABLE t (a INTEGER)"));
        db->execute(QStringLiteral("INSERT INTO t VALUES (?)"), {42});
    }
    QVERIFY(dateiInhalt(pfad).startsWith("SQLite format 3"));

    QWidget form;
    auto *dc = new DataControl(&form);
    dc->setDatabaseName(pfad);
    MsgBoxProtokoll boxen;
    frame::DatenSteuerungenVerbinden(&form, true);
    QCOMPARE(boxen.anzahl(), 0);
    QVERIFY(!dateiInhalt(pfad).startsWith("SQLite format 3"));
    auto db = storage::Database::openSeparate(pfad);
    QCOMPARE(db->scalar(QStringLiteral("SELECT a FROM t")).toInt(), 42);
}

void tst_DatenSteuerungen::passwortSetzenAufGeschuetzteDateiZeigtEnglischeMeldung()
{
    QTemporaryDir dir;
    const QString pfad = dir.filePath(QStringLiteral("geschuetzt.zdb"));
    storage::Database::create(pfad).reset();
    const QByteArray vorher = dateiInhalt(pfad);

    MsgBoxProtokoll boxen;
    boxen.antworte(vbOK);
    frame::DBPasswortSetzen(pfad);
    QCOMPARE(boxen.anzahl(), 1);
    QCOMPARE(boxen.letzter().titel, QStringLiteral("An Error has Occured!"));
    QVERIFY2(boxen.letzter().text.startsWith(QStringLiteral("The following error has occured.\r\n\r\n"
                                                            "Error Number: ")),
             qPrintable(boxen.letzter().text));
    QVERIFY(boxen.letzter().text.contains(QStringLiteral("\r\nError Source: Set_DBPassword\r\n"
                                                         "Error Description: ")));
    QCOMPARE(dateiInhalt(pfad), vorher);
}

void tst_DatenSteuerungen::bildschirmaufloesungDesSchirms()
{
    const QSize s = QGuiApplication::primaryScreen()->size();
    QCOMPARE(frame::Bildschirmaufloesung(),
             QStringLiteral("%1 X %2").arg(s.width()).arg(s.height()));
    QCOMPARE(mks::BildschirmBreite, qint16(s.width()));
    QCOMPARE(mks::BildschirmHoehe, qint16(s.height()));
}

QTEST_MAIN(tst_DatenSteuerungen)
#include "tst_datensteuerungen.moc"
