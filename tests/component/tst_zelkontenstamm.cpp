// The public class as a host sees it: the call cycle, the session values it sets, its events.
#include "frame/DatenSteuerungen.h"
#include "frame/mdlKontenStamm.h"
#include "platform/core/RuntimeError.h"
#include "platform/storage/Database.h"
#include "platform/storage/Recordset.h"
#include "platform/storage/Schema.h"
#include "platform/ui/MsgBox.h"
#include "zelKontenStamm.h"

#include <QApplication>
#include <QDialog>
#include <QLabel>
#include <QLineEdit>
#include <QRegularExpression>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>
#include <QTimer>

using platform::MsgBoxProtokoll;
using platform::RuntimeError;

namespace {

QVariantList info(int verarbeitungsjahr = 2025)
{
    QVariantList i(101);
    i[0] = QStringLiteral("/tmp/nicht-vorhanden.zdb");
    i[2] = 0;
    i[4] = QStringLiteral("Access 2000;");
    i[7] = QStringLiteral(ZEP_HILFE_QUELLE);
    i[9] = 0;
    i[10] = 2025;
    i[11] = verarbeitungsjahr;
    i[42] = 0;
    return i;
}

// Runs `schritt` on the modal screen once the call shows it.
void imModalen(const std::function<void(QDialog &)> &schritt)
{
    QTimer::singleShot(0, [schritt] {
        auto *modal = qobject_cast<QDialog *>(QApplication::activeModalWidget());
        QVERIFY(modal);
        schritt(*modal);
    });
}

QString text(QDialog &d, const char *name)
{
    if (auto *l = d.findChild<QLabel *>(QString::fromUtf8(name)))
        return l->text();
    if (auto *e = d.findChild<QLineEdit *>(QString::fromUtf8(name)))
        return e->text();
    return QStringLiteral("<%1 fehlt>").arg(QString::fromUtf8(name));
}

std::shared_ptr<platform::storage::Database> datenbank(const QString &pfad)
{
    auto db = platform::storage::Database::create(pfad);
    platform::storage::schemaAnlegen(*db);
    return db;
}

int fehlernummerVon(const std::function<void()> &f)
{
    try {
        f();
    } catch (const RuntimeError &e) {
        return e.nummer();
    }
    return 0;
}

} // namespace

class TestZelKontenStamm : public QObject
{
    Q_OBJECT

private slots:
    void init() { mdlKontenStamm::zuruecksetzen(); }

    // The processing year 0 aborts before any screen, on either entry.
    void verarbeitungsjahrNullBrichtAb_data()
    {
        QTest::addColumn<bool>("kreditoren");
        QTest::newRow("Kontenstamm") << false;
        QTest::newRow("Kreditoren") << true;
    }
    void verarbeitungsjahrNullBrichtAb()
    {
        QFETCH(bool, kreditoren);
        MsgBoxProtokoll boxen;
        zelKontenStamm k;
        QSignalSpy ereignisse(&k, &zelKontenStamm::dllKontenStammEvent);
        QVariantList i = info(0);
        if (kreditoren)
            k.KreditorenBildschirm_Aufruf(i);
        else
            k.Kontenstamm_Aufruf(i);
        QCOMPARE(boxen.anzahl(), 1);
        QCOMPARE(boxen.letzter().text,
                 QStringLiteral("das VerarbeitungsBuchungsjahr = 0\r\n"
                                "Aufruf von Kontenstamm abgebrochen"));
        QCOMPARE(boxen.letzter().titel, QStringLiteral("in zelKontenStamm"));
        QCOMPARE(boxen.letzter().buttons, int(platform::vbOKOnly));
        QVERIFY(!k.bildschirm());
        QCOMPARE(ereignisse.count(), 0);
    }

    // A second call on the same object shows its own year, and its edits go to that year; the
    // first call ends either by closing or by the host hiding the screen.
    void jederAufrufLaedtSeinJahr_data()
    {
        QTest::addColumn<bool>("ersterAusgeblendet");
        QTest::newRow("closed") << false;
        QTest::newRow("hidden by the host") << true;
    }
    void jederAufrufLaedtSeinJahr()
    {
        QFETCH(bool, ersterAusgeblendet);
        QTemporaryDir dir;
        const QString pfad = dir.filePath(QStringLiteral("kanzlei.zdb"));
        auto db = datenbank(pfad);
        const QString einfuegen = QStringLiteral("INSERT INTO ObjKanzleiKontenstamm (KontoNr, "
                                                 "KontoJJ, KontoBezeichnung) VALUES (?, ?, ?)");
        db->execute(einfuegen, {QStringLiteral("1000"), 2025, QStringLiteral("Kassa")});
        db->execute(einfuegen, {QStringLiteral("0500"), 2026, QStringLiteral("Erlöse")});
        db->execute(einfuegen, {QStringLiteral("1000"), 2026, QStringLiteral("Kassa")});
        MsgBoxProtokoll boxen;
        zelKontenStamm k;
        QVariantList i = info(2003);
        i[0] = pfad;

        QStringList gesehen;
        imModalen([&](QDialog &d) {
            gesehen << d.objectName() + u' ' + text(d, "lblBuchjahr") + u' '
                    + text(d, "inpKontoNr");
            if (ersterAusgeblendet)
                k.ausblenden();
            else
                d.close();
        });
        k.Kontenstamm_Aufruf(i);
        QCOMPARE(bool(k.bildschirm()), ersterAusgeblendet);
        QCOMPARE(mdlKontenStamm::AktuellesProgramm, QStringLiteral("frmKontenStamm"));
        QCOMPARE(mdlKontenStamm::VerarbeitungsBuchungsjahr, qint16(2003));
        QCOMPARE(mdlKontenStamm::DatenbankPfad, pfad);

        i[10] = 2026;
        imModalen([&](QDialog &d) {
            gesehen << d.objectName() + u' ' + text(d, "lblBuchjahr") + u' '
                    + text(d, "inpKontoNr");
            d.findChild<QLineEdit *>(QStringLiteral("inpKontoBezeichnung"))
                ->setText(QStringLiteral("Erlöse Miete"));
            d.close();
        });
        k.Kontenstamm_Aufruf(i);
        QCOMPARE(gesehen,
                 (QStringList {QStringLiteral("frmKontenStamm 2025 1000"),
                               QStringLiteral("frmKontenStamm 2026 0500")}));
        QVERIFY(!k.bildschirm());
        const QString lesen = QStringLiteral("SELECT KontoJJ || ' ' || KontoNr || ' ' || "
                                             "KontoBezeichnung FROM ObjKanzleiKontenstamm "
                                             "ORDER BY KontoJJ, KontoNr");
        QStringList zeilen;
        for (platform::storage::Recordset rs(db, lesen); !rs.eof(); rs.MoveNext())
            zeilen << rs.feld(0).toString();
        QCOMPARE(zeilen,
                 (QStringList {QStringLiteral("2025 1000 Kassa"),
                               QStringLiteral("2026 0500 Erlöse Miete"),
                               QStringLiteral("2026 1000 Kassa")}));
        QCOMPARE(boxen.anzahl(), 0);
    }

    // The creditor screen is loaded anew as well: each call shows its own database and year.
    void kreditorenJederAufrufNeu()
    {
        QTemporaryDir dir;
        const QString einfuegen = QStringLiteral(
            "INSERT INTO KreditorenKontenstamm (KrKontoNr, KrKontoBezeichnung, KrKontoTypus, "
            "KrStornoDatum) VALUES (?, ?, '0', 0)");
        QStringList pfade;
        std::vector<std::shared_ptr<platform::storage::Database>> dbs;
        for (const char *name : {"a.zdb", "b.zdb"}) {
            pfade << dir.filePath(QString::fromLatin1(name));
            dbs.push_back(datenbank(pfade.last()));
        }
        dbs[0]->execute(einfuegen, {100, QStringLiteral("Alpha")});
        dbs[1]->execute(einfuegen, {200, QStringLiteral("Beta")});
        MsgBoxProtokoll boxen;
        zelKontenStamm k;
        QStringList gesehen;
        for (int n = 0; n < 2; ++n) {
            QVariantList i = info(2025);
            i[0] = pfade[n];
            i[10] = 2025 + n;
            imModalen([&, n](QDialog &d) {
                gesehen << text(d, "lblBuchjahr") + u' ' + text(d, "inpKrKontoNr");
                if (n == 1) {
                    d.findChild<QLineEdit *>(QStringLiteral("inpKrKontoBezeichnung"))
                        ->setText(QStringLiteral("Beta GmbH"));
                }
                d.close();
            });
            k.KreditorenBildschirm_Aufruf(i);
        }
        QCOMPARE(gesehen, (QStringList {QStringLiteral("2025 100"), QStringLiteral("2026 200")}));
        const QString name = QStringLiteral("SELECT KrKontoBezeichnung FROM KreditorenKontenstamm");
        QCOMPARE(dbs[0]->scalar(name).toString(), QStringLiteral("Alpha"));
        QCOMPARE(dbs[1]->scalar(name).toString(), QStringLiteral("Beta GmbH"));
        QCOMPARE(boxen.anzahl(), 0);
    }

    void kreditorenBildschirmFuerDenHost()
    {
        QTemporaryDir dir;
        const QString pfad = dir.filePath(QStringLiteral("kanzlei.zdb"));
        platform::storage::schemaAnlegen(*platform::storage::Database::create(pfad));
        MsgBoxProtokoll boxen;
        boxen.setAntwortFunktion([](const platform::MsgBoxEintrag &) { return platform::vbOK; });
        zelKontenStamm k;
        QVariantList i = info(2003);
        i[0] = pfad;
        i[9] = mdlKontenStamm::AufrufartKreditorenNurAnzeige;
        QString gesehen;
        bool nurAnzeige = false;
        imModalen([&](QDialog &d) {
            gesehen = d.objectName();
            nurAnzeige = mdlKontenStamm::NurAnzeige;
            d.close();
        });
        k.KreditorenBildschirm_Aufruf(i);
        QCOMPARE(gesehen, QStringLiteral("frmKreditorenKontenStamm"));
        QVERIFY(nurAnzeige);
        QCOMPARE(mdlKontenStamm::DatenbankPfad, pfad);
    }

    void sondereinstiegBleibt()
    {
        MsgBoxProtokoll boxen;
        zelKontenStamm k;
        QVariantList i = info(0);
        i[42] = 2;
        k.Kontenstamm_Aufruf(i);
        QVERIFY(mdlKontenStamm::Sondereinstieg);
        QVariantList zweiter = info(0);
        k.Kontenstamm_Aufruf(zweiter);
        QVERIFY(mdlKontenStamm::Sondereinstieg);

        mdlKontenStamm::zuruecksetzen();
        QVariantList slot2 = info(0);
        slot2[2] = 98;
        k.Kontenstamm_Aufruf(slot2);
        QVERIFY(mdlKontenStamm::Sondereinstieg);
    }

    void nurAnzeigeJedesMalNeu()
    {
        MsgBoxProtokoll boxen;
        zelKontenStamm k;
        QVariantList i = info(0);
        i[9] = 20;
        k.Kontenstamm_Aufruf(i);
        QVERIFY(mdlKontenStamm::NurAnzeige);
        i[9] = 21;
        k.Kontenstamm_Aufruf(i);
        QVERIFY(!mdlKontenStamm::NurAnzeige);
    }

    // What the server lets the role do decides before the screen loads.
    void rechteDerRolle_data()
    {
        QTest::addColumn<QString>("recht"); // granted on every table
        QTest::newRow("nur lesen") << "SELECT";
        QTest::newRow("kein Leserecht") << "";
    }
    void rechteDerRolle()
    {
        QFETCH(QString, recht);
        const QString basis = qEnvironmentVariable("ZEP_TEST_PG_URI");
        if (basis.isEmpty())
            QSKIP("needs the PostgreSQL test cluster (ZEP_TEST_PG_URI)");
        static int n = 0;
        const QString name
            = QStringLiteral("zt_rechte_%1_%2").arg(QCoreApplication::applicationPid()).arg(++n);
        platform::storage::Database::openSeparate(basis)->execute("CREATE DATABASE " + name);
        QString uri = basis;
        uri.replace(QRegularExpression(QStringLiteral("^postgresql:///[^?]*")),
                    "postgresql:///" + name);
        {
            auto db = platform::storage::Database::openSeparate(uri);
            platform::storage::schemaAnlegen(*db);
            db->execute(QStringLiteral("INSERT INTO ObjKanzleiKontenstamm (KontoNr, KontoJJ, "
                                       "KontoBezeichnung) VALUES ('1000', 2025, 'Kassa')"));
            db->execute("CREATE ROLE " + name + " LOGIN");
            if (!recht.isEmpty())
                db->execute("GRANT " + recht + " ON ALL TABLES IN SCHEMA public TO " + name);
        }
        uri.replace(QRegularExpression(QStringLiteral("user=[^&]*")), "user=" + name);
        MsgBoxProtokoll boxen;
        zelKontenStamm k;
        QVariantList i = info(2025);
        i[0] = uri;
        QString titel;
        if (!recht.isEmpty()) {
            imModalen([&](QDialog &d) {
                titel = d.windowTitle();
                d.reject();
            });
        }
        k.Kontenstamm_Aufruf(i);
        if (recht.isEmpty()) {
            // One message naming the role and the missing right; no screen.
            QCOMPARE(boxen.anzahl(), 1);
            QVERIFY2(boxen.letzter().text.startsWith("Der Datenbankbenutzer \u201E" + name
                                                     + "\u201C darf die Tabellen "
                                                       "ObjKanzleiKontenstamm, "),
                     qPrintable(boxen.letzter().text));
            QVERIFY(boxen.letzter().text.contains("es fehlt das Recht SELECT"));
            QVERIFY(!k.bildschirm());
            return;
        }
        // View-only at once, said in the title; nothing is offered to be written.
        QVERIFY2(titel.endsWith(frame::NurLesenTitel), qPrintable(titel));
        QVERIFY(mdlKontenStamm::NurAnzeige);
        QCOMPARE(boxen.anzahl(), 0);
    }

    void fehlerErreichenDenHost_data()
    {
        QTest::addColumn<int>("groesse");
        QTest::addColumn<int>("slot");
        QTest::addColumn<QVariant>("wert");
        QTest::addColumn<int>("fehler");
        QTest::newRow("no index 42") << 42 << 0 << QVariant(QStringLiteral("x")) << 9;
        QTest::newRow("no index 42, slot 2 = 98") << 42 << 2 << QVariant(98) << 9;
        QTest::newRow("year text") << 101 << 10 << QVariant(QStringLiteral("zwei")) << 13;
        QTest::newRow("processing year text") << 101 << 11 << QVariant(QStringLiteral("x")) << 13;
        QTest::newRow("year overflow") << 101 << 10 << QVariant(70000) << 6;
        QTest::newRow("slot 2 text") << 101 << 2 << QVariant(QStringLiteral("zwei")) << 13;
    }
    void fehlerErreichenDenHost()
    {
        QFETCH(int, groesse);
        QFETCH(int, slot);
        QFETCH(QVariant, wert);
        QFETCH(int, fehler);
        MsgBoxProtokoll boxen;
        zelKontenStamm k;
        QVariantList i = info(2025);
        i.resize(groesse);
        i[slot] = wert;
        QCOMPARE(fehlernummerVon([&] { k.Kontenstamm_Aufruf(i); }), fehler);
        QCOMPARE(boxen.anzahl(), 0);
        QVERIFY(!k.bildschirm());
    }

    void kreditorenEinstiegNurHinweis()
    {
        MsgBoxProtokoll boxen;
        zelKontenStamm k;
        QVariantList leer;
        k.KreditorenKontenstamm_Aufruf(leer);
        QCOMPARE(
            boxen.texte(),
            QStringList {QStringLiteral("der Kreditorenstamm wurde durch die AdDaten ersetzt")});
        QCOMPARE(boxen.letzter().titel, platform::anwendungsTitel());
        QVERIFY(!k.bildschirm());
        QCOMPARE(mdlKontenStamm::DatenbankPfad, QString());
    }

    void freigabeMeldetEreignisDrei()
    {
        auto *k = new zelKontenStamm;
        QSignalSpy ereignisse(k, &zelKontenStamm::dllKontenStammEvent);
        k->EreignisMelden(7);
        delete k;
        QCOMPARE(ereignisse.count(), 2);
        QCOMPARE(ereignisse.at(0).at(0).value<qint16>(), qint16(7));
        QCOMPARE(ereignisse.at(1).at(0).value<qint16>(), qint16(3));
    }

    void programmendeOk()
    {
        zelKontenStamm k;
        QVERIFY(!k.property("Programmende_OK").toBool());
        k.setProperty("Programmende_OK", true);
        QVERIFY(k.Programmende_OK());
        QVERIFY(mdlKontenStamm::Programmende_OK);
    }

    void ohneBildschirmFehlerAnDenHost()
    {
        zelKontenStamm k;
        QCOMPARE(fehlernummerVon([&] { k.einblenden(); }), 91);
        QCOMPARE(fehlernummerVon([&] { k.ausblenden(); }), 91);
        QCOMPARE(fehlernummerVon([&] { k.SetzenFocus(); }), 91);
    }
};

QTEST_MAIN(TestZelKontenStamm)
#include "tst_zelkontenstamm.moc"
