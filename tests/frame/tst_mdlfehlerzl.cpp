// The common error report, the structure notice and the help-file check.
#include "frame/mdlFehlerZL.h"
#include "frame/mdlKontenStamm.h"
#include "platform/core/CreateObject.h"
#include "platform/ui/MsgBox.h"

#include <QApplication>
#include <QLineEdit>
#include <QTemporaryFile>
#include <QTest>

using platform::MsgBoxProtokoll;
using platform::RuntimeError;

// Stands in for the suite's error dialog and remembers what it was handed.
class FalscherFehlerDialog : public QObject
{
    Q_OBJECT
public:
    static inline QVariantList s_werte;
    static inline int s_fehlerBeimAnzeigen = 0;

    Q_INVOKABLE void Uebergeben(int nr, const QString &text, const QString &datei,
                                const QString &kontext, const QString &programm,
                                const QString &ort, const QString &z1, const QString &z2, bool f)
    {
        s_werte = {nr, text, datei, kontext, programm, ort, z1, z2, f};
    }
    Q_INVOKABLE void Anzeigen()
    {
        if (s_fehlerBeimAnzeigen)
            RuntimeError::ausloesen(s_fehlerBeimAnzeigen);
    }
    Q_INVOKABLE qint16 Ergebnis() const { return 6; }
};

class TestMdlFehlerZL : public QObject
{
    Q_OBJECT

private slots:
    void init()
    {
        mdlKontenStamm::zuruecksetzen();
        FalscherFehlerDialog::s_werte.clear();
        FalscherFehlerDialog::s_fehlerBeimAnzeigen = 0;
    }

    // Help file and help context go to the dialog only with help: the context is that of the
    // control the user is in, else the screen that runs.
    void neunWerteInDieserReihenfolge_data()
    {
        QTest::addColumn<QString>("hilfedatei");
        QTest::addColumn<QString>("fokus");
        QTest::addColumn<QString>("kontext");
        QTest::newRow("without help") << QString() << "inpKontoUstKtoNr"
                                      << "0";
        QTest::newRow("focus in a field") << ZEP_HILFE_QUELLE << "inpKontoUstKtoNr"
                                          << "inpKontoUstKtoNr";
        QTest::newRow("no focus") << ZEP_HILFE_QUELLE << QString() << "frmKontenStamm";
    }
    void neunWerteInDieserReihenfolge()
    {
        QFETCH(QString, hilfedatei);
        QFETCH(QString, fokus);
        QFETCH(QString, kontext);
        platform::KomponentenRegistrierung fake(QStringLiteral("zelAllgError"), [] {
            return std::make_unique<FalscherFehlerDialog>();
        });
        MsgBoxProtokoll boxen;
        boxen.setAntwortFunktion([](const platform::MsgBoxEintrag &) { return platform::vbOK; });
        mdlKontenStamm::AufrufInfo[7] = hilfedatei;
        mdlFehlerZL::HilfeAufrufChk();
        boxen.leeren();
        QWidget form;
        form.setObjectName(QStringLiteral("frmKontenStamm"));
        auto *feld = new QLineEdit(&form);
        feld->setObjectName(QStringLiteral("inpKontoUstKtoNr"));
        if (!fokus.isEmpty()) {
            form.show();
            QApplication::setActiveWindow(&form);
            QVERIFY(QTest::qWaitForWindowActive(&form));
            feld->setFocus();
            QTRY_COMPARE(QApplication::focusWidget(), feld);
        }
        mdlKontenStamm::AktuellesProgramm = QStringLiteral("frmKontenStamm");
        mdlFehlerZL::FehlerMelden(QStringLiteral("zelKontenStamm, in KKChkSelect"),
                                  RuntimeError(3078, QStringLiteral("Tabelle fehlt")));
        const QVariantList erwartet{3078, QStringLiteral("Tabelle fehlt"), hilfedatei,
                                    kontext, QStringLiteral("frmKontenStamm"),
                                    QStringLiteral("zelKontenStamm, in KKChkSelect"), QString(),
                                    QString(), false};
        QCOMPARE(FalscherFehlerDialog::s_werte, erwartet);
        QCOMPARE(mdlKontenStamm::FehlerAntwort, qint16(6));
        QVERIFY(mdlKontenStamm::FehlerOrt.isEmpty());
        QCOMPARE(boxen.anzahl(), 0);
    }

    void dialogFehlt()
    {
        platform::entferneKomponente(QStringLiteral("zelAllgError"));
        MsgBoxProtokoll boxen;
        mdlFehlerZL::FehlerMelden(QStringLiteral("ort"), RuntimeError(5, QStringLiteral("x")));
        mdlFehlerZL::FehlerMelden(QStringLiteral("ort"), RuntimeError(5, QStringLiteral("y")));
        QCOMPARE(boxen.texte(),
                 QStringList(2, QStringLiteral("das allgem. Fehlermeldungsprogramm zelAllgError "
                                               "konnte nicht aufgerufen werden")));
    }

    void fehlerDesDialogs_data()
    {
        QTest::addColumn<int>("nummer");
        QTest::addColumn<QStringList>("texte");
        QTest::newRow("482 silent") << 482 << QStringList();
        QTest::newRow("other") << 13
                               << QStringList{QStringLiteral(
                                      "Problem beim Aufruf des allg. Fehlermeldungsprogrammes "
                                      "zelAllgError: \r\n\r\nFehlerNr: 13 Typen unverträglich")};
    }
    void fehlerDesDialogs()
    {
        QFETCH(int, nummer);
        QFETCH(QStringList, texte);
        platform::KomponentenRegistrierung fake(QStringLiteral("zelAllgError"), [] {
            return std::make_unique<FalscherFehlerDialog>();
        });
        FalscherFehlerDialog::s_fehlerBeimAnzeigen = nummer;
        MsgBoxProtokoll boxen;
        mdlFehlerZL::FehlerMelden(QStringLiteral("ort"), RuntimeError(5, QStringLiteral("x")));
        QCOMPARE(boxen.texte(), texte);
        QVERIFY(mdlKontenStamm::FehlerOrt.isEmpty());
    }

    void strukturMeldung()
    {
        MsgBoxProtokoll boxen;
        mdlFehlerZL::DatenbankStrukturMelden(3265);
        QCOMPARE(boxen.anzahl(), 1);
        QCOMPARE(boxen.letzter().titel, QStringLiteral("unkomplette Datenbanktabelle:"));
        const QString text = boxen.letzter().text;
        QVERIFY(text.startsWith(QStringLiteral("Fehler-Nr: 3265\r\n\r\n")));
        QVERIFY(text.contains(QStringLiteral("wurde für die Verarbeitung in diesem Programm "
                                             "wurde um 1 oder mehrere Daten-Felder erweitert")));
        QVERIFY(text.endsWith(QStringLiteral("\r\n\r\nAnschließend können Sie diese "
                                             "Verarbeitung problemlos starten.")));
    }

    void hilfe()
    {
        MsgBoxProtokoll boxen;
        mdlFehlerZL::HilfeAufrufChk();
        QVERIFY(!mdlKontenStamm::HilfeVorhanden);
        QCOMPARE(boxen.letzter().text,
                 QStringLiteral("Die Definition für den App.Helpfile = leer\r\n"
                                "Es kann keine Onlinehilfe angezeigt werden !"));

        mdlKontenStamm::AufrufInfo[7] = QStringLiteral("/nicht/da/hilfe.html");
        mdlFehlerZL::HilfeAufrufChk();
        QVERIFY(!mdlKontenStamm::HilfeVorhanden);
        QCOMPARE(boxen.letzter().text,
                 QStringLiteral("Die Hilfedatei (App.HelpFile) /nicht/da/hilfe.html ist nicht "
                                "auffindbar.\r\nEs kann keine Onlinehilfe angezeigt werden !"));

        QTemporaryFile datei;
        QVERIFY(datei.open());
        mdlKontenStamm::AufrufInfo[7] = datei.fileName();
        boxen.leeren();
        mdlFehlerZL::HilfeAufrufChk();
        QVERIFY(mdlKontenStamm::HilfeVorhanden);
        QCOMPARE(boxen.anzahl(), 0);
        QCOMPARE(mdlFehlerZL::hilfedatei(), datei.fileName());
    }
};

QTEST_MAIN(TestMdlFehlerZL)
#include "tst_mdlfehlerzl.moc"
