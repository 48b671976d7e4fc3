// The account screen with its siblings, offscreen on both engines: copying the definitions of an
// existing account into a new one (frmKoBeginn), deleting an account, and the calls of the
// position master component with stand-ins registered through CreateObject.
#include "accounts/KontenstammTestBasis.h"
#include "accounts/Kontentexte.h"

#include <QComboBox>
#include <QLabel>
#include <QPushButton>

using namespace platform;
namespace mks = mdlKontenStamm;

// Stands in for the position master component: records each call and returns the chosen value
// the test put in place. `s_waehrend` runs inside the call (a master maintained meanwhile).
class PositionenAttrappe : public QObject
{
    Q_OBJECT
public:
    static inline QStringList s_aufrufe; // "method|current component"
    static inline QVariantList s_info;
    static inline QVariant s_auswahl;
    static inline std::function<void()> s_waehrend;

    Q_INVOKABLE void BilanzPosAuswahl(const QVariant &i) { aufruf("BilanzPosAuswahl", i); }
    Q_INVOKABLE void Zl7PosAuswahl(const QVariant &i) { aufruf("Zl7PosAuswahl", i); }
    Q_INVOKABLE void BilanzPosStamm(const QVariant &i) { aufruf("BilanzPosStamm", i); }
    Q_INVOKABLE void Zl7PosStamm(const QVariant &i) { aufruf("Zl7PosStamm", i); }
    Q_INVOKABLE void AbrPosStamm(const QVariant &i) { aufruf("AbrPosStamm", i); }
    Q_INVOKABLE void BkBlockStamm(const QVariant &i) { aufruf("BkBlockStamm", i); }
    Q_INVOKABLE QVariant Auswahl() const { return s_auswahl; }

private:
    void aufruf(const char *name, const QVariant &info)
    {
        s_aufrufe << QString::fromUtf8(name) + u'|' + mks::AktuellesProgramm;
        s_info = info.toList();
        if (s_waehrend)
            s_waehrend();
    }
};

namespace {
// Each copied field with a value that differs from its initial one.
struct Kopie
{
    const char *feld;
    QVariant wert;
};
const Kopie Kopien[] = {
    {"KontoTypus", 1},
    {"KontoAnmerkung1", "Anmerkung eins"},
    {"KontoAnmerkung2", "Anmerkung zwei"},
    {"KontoUstProz", 20},
    {"KontoUstKtoNr", "2000"},
    {"KontoBkENAbrDef", 1},
    {"KontoBkBlockPos", 2},
    {"KontoBkEinnAusgPos", 1},
    {"KontoBkAbrVerdichtKz", 3},
    {"KontoAbrSchlPos", 5},
    {"KontoVSTKuerz", 6},
    {"KontoAbrUstProz", 20},
    {"KontoBkEinnUstProz", 10},
    {"KontoÖNORMAbrPos_I_II_III", 3},
    {"KontoÖNORMAbrPos_ABC", 12},
    {"KontoÖNORMAbrBlockPos", 4},
    {"KontoÖNORMAbrKontenArt", 1},
    {"KontoHeEinnAusgPos", 2},
    {"KontoHeAbrVerdichtKz", 1},
    {"KontoBeiblPos", 4},
    {"KontoBeiblVerdichtKz", 2},
    {"KontoHmzresPos", 3},
    {"KontoHmzresVerdichtKz", 1},
    {"KontoErhbeitrPos", 2},
    {"KontoErhbeitrVerdichtKz", 1},
    {"KontoVoranmPos", 22},
    {"KontoStornoDatum", 20030501},
    {"KontoZusatzdatenJN", 1},
    {"KontoAbschlArt", 2},
    {"KontoSbkGuvKontoNr", "1000"},
    {"KontoEbkKontoNr", "1200"},
};
} // namespace

class TestKontenstammGeschwister : public KontenstammTestBasis
{
    Q_OBJECT

private:
    std::unique_ptr<KomponentenRegistrierung> m_liste;
    std::unique_ptr<KomponentenRegistrierung> m_positionen;

    void saldo(const QString &nr, int jahr, int buNr = 1)
    {
        m_db->execute("INSERT INTO ObjKanzleiSalden (SSObjNr, SSBuNr, SSJJ, SSKontoNr) "
                      "VALUES (1, ?, ?, ?)",
                      {buNr, jahr, nr});
    }
    // Fills every copied field of `nr` but the column `fehlt`.
    void quelleFuellen(const QString &nr, const QString &fehlt = {})
    {
        for (const Kopie &k : Kopien) {
            if (fehlt == QString::fromUtf8(k.feld))
                continue;
            m_db->execute(QStringLiteral("UPDATE ObjKanzleiKontenstamm SET %1 = ? WHERE KontoNr "
                                         "= ? AND KontoJJ = 2003")
                              .arg(QString::fromUtf8(k.feld)),
                          {k.wert, nr});
        }
        // Not copied: the ZL7 position and the designation stay the new account's own.
        m_db->execute("UPDATE ObjKanzleiKontenstamm SET KontoPos1 = 7 WHERE KontoNr = ?", {nr});
        m_db->execute("INSERT INTO AbrPosBkAbr (AbrPosBkPos1, AbrPosBkPos2, AbrPosBkPosText) "
                      "VALUES (3, 0, 'Kopf'), (3, 12, 'Wasser')");
        m_db->execute("INSERT INTO AbrPosBkBlöcke (BkBlockPos, BkBlockText, BkBlockSchlPos) "
                      "VALUES (2, 'Heizung', 7)");
    }
    // Opens account `nr` as the opening button does after its dialog.
    void eroeffnen(const QString &nr)
    {
        mks::NeueKontoNr = mks::festeLaenge6(nr);
        m_form->Neueröffnung();
    }
    QString letzterHinweis() { return m_boxen->letzter().text; }

private slots:
    void init()
    {
        basisInit();
        ListeAttrappe::s_aufrufe = 0;
        ListeAttrappe::s_auswahl = QVariant();
        PositionenAttrappe::s_aufrufe.clear();
        PositionenAttrappe::s_auswahl = QVariant();
        PositionenAttrappe::s_waehrend = {};
        m_liste = std::make_unique<KomponentenRegistrierung>(
            "zelDiverseListen", [] { return std::make_unique<ListeAttrappe>(); });
        m_positionen = std::make_unique<KomponentenRegistrierung>(
            "zelAbrPosStamm", [] { return std::make_unique<PositionenAttrappe>(); });
    }
    void cleanup()
    {
        basisCleanup();
        m_liste.reset();
        m_positionen.reset();
    }

    // --- copying definitions ---

    void kopieUebernimmtGenauDieEinunddreissigFelder_data()
    {
        QTest::addColumn<QString>("fehlt"); // a column an older database lacks
        QTest::newRow("vollständig") << QString();
        QTest::newRow("ohne KontoErhbeitrPos") << "KontoErhbeitrPos";
    }
    void kopieUebernimmtGenauDieEinunddreissigFelder()
    {
        QFETCH(QString, fehlt);
        if (!fehlt.isEmpty()) {
            storage::Tabelle alt = *storage::tabelle("ObjKanzleiKontenstamm");
            std::erase_if(alt.spalten, [&](const storage::Spalte &sp) { return sp.name == fehlt; });
            m_db->execute("DROP TABLE ObjKanzleiKontenstamm");
            m_db->execute(storage::ddl(alt, m_db->engine()));
        }
        standardKonten();
        quelleFuellen("1200", fehlt);
        oeffnen();
        QString text;
        QString vorschlag;
        m_kopierDialog = [&](frmKoBeginn &d) {
            text = d.findChild<QLabel *>("lblInfo")->text();
            vorschlag = d.findChild<QLineEdit *>("inpÜbKontoNr")->text();
            d.findChild<QLineEdit *>("inpÜbKontoNr")->setText("1200");
            d.findChild<QPushButton *>("cmdAuswÜbernehmen")->click();
        };
        eroeffnen("4711");
        QCOMPARE(m_kopierDialoge, 1);
        QCOMPARE(vorschlag, QString());
        if (!fehlt.isEmpty()) {
            // The field that fails is reported, the copy goes on with the others.
            QCOMPARE(FehlerDialogAttrappe::s_berichte.filter("KontendatenÜbernehmenCheck"),
                     QStringList {"3265|zelKontenStamm, in KontendatenÜbernehmenCheck"});
            FehlerDialogAttrappe::s_berichte.clear();
        }
        QVERIFY(text.startsWith("Ein neuer, leerer Konten-Stammsatz wurde angelegt.\r\n\r\n"
                                "Sie können jetzt die Kontendaten von einem bereits vorhandenen "
                                "Kontoenstamm automatisch"));
        for (const Kopie &k : Kopien) {
            if (fehlt != QString::fromUtf8(k.feld)) {
                QCOMPARE(gespeichert("4711", QString::fromUtf8(k.feld)).toString(),
                         gespeichert("1200", QString::fromUtf8(k.feld)).toString());
            }
        }
        QCOMPARE(gespeichert("4711", "KontoBezeichnung").toString(), "Sachkonto-Nr 4711");
        QCOMPARE(gespeichert("4711", "KontoPos1").toInt(), 0);
        QVERIFY(letzterHinweis().startsWith("Übernahme der Kontendaten beendet.\r\n\r\n"));
        // The screen shows the copied definitions.
        QCOMPARE(aktuell(), "4711");
        QCOMPARE(c<QComboBox>("cmbKontoTypus")->currentText(), "Objektkonto");
        QCOMPARE(c<QLineEdit>("inpKontoAnmerkung1")->text(), "Anmerkung eins");
        QVERIFY(!kk()->bearbeitet());
        QCOMPARE(mks::UebernahmeKontoNr, "1200");

        // The next copy proposes the last source.
        m_kopierDialog = [&](frmKoBeginn &d) {
            vorschlag = d.findChild<QLineEdit *>("inpÜbKontoNr")->text();
            d.reject();
        };
        eroeffnen("4712");
        QCOMPARE(vorschlag, "1200");
        FehlerDialogAttrappe::s_berichte.clear(); // the initial values lacking their column
    }

    // F1 in the copy dialog opens the help at its number field (an anchor with an umlaut).
    void f1ImKopierdialog()
    {
        standardKonten();
        oeffnen();
        QString anker;
        m_kopierDialog = [&](frmKoBeginn &d) {
            auto *feld = d.findChild<QLineEdit *>("inpÜbKontoNr");
            feld->setFocus();
            QTest::keyClick(feld, Qt::Key_F1);
            anker = hilfeAnker();
            d.reject();
        };
        eroeffnen("4711");
        QCOMPARE(anker, "inpÜbKontoNr");
    }

    void kopieOhneAuswahl_data()
    {
        QTest::addColumn<QString>("weg");
        QTest::newRow("abbrechen") << "abbrechen";
        QTest::newRow("escape") << "escape";
        QTest::newRow("leer ok") << "leer";
    }
    void kopieOhneAuswahl()
    {
        QFETCH(QString, weg);
        standardKonten();
        quelleFuellen("1200");
        mks::UebernahmeKontoNr = "1200";
        oeffnen();
        m_kopierDialog = [&](frmKoBeginn &d) {
            if (weg == u"abbrechen") {
                d.findChild<QPushButton *>("cmdAbbrechen")->click();
            } else if (weg == u"escape") {
                QTest::keyClick(&d, Qt::Key_Escape);
            } else {
                d.findChild<QLineEdit *>("inpÜbKontoNr")->clear();
                d.findChild<QPushButton *>("cmdAuswÜbernehmen")->click();
            }
        };
        eroeffnen("4711");
        QVERIFY(!m_form->findChild<frmKoBeginn *>());
        QCOMPARE(gespeichert("4711", "KontoTypus").toInt(), 0);
        QCOMPARE(gespeichert("4711", "KontoAnmerkung1").toString(), QString());
        QCOMPARE(m_boxen->letzter().titel,
                 "Kontrollieren und verändern Sie die provisorischen Feldinhalte");
        QVERIFY(!letzterHinweis().startsWith("Übernahme"));
    }

    void unbekannteQuelleHaeltDenDialogOffen_data()
    {
        QTest::addColumn<QString>("eingabe");
        QTest::addColumn<QString>("text");
        QTest::newRow("4444") << "4444"
                              << "Ausgewählte Kontonummer 4444 ist nicht existent.";
        // Only an input left empty means "copy nothing".
        QTest::newRow("nur Blanks") << "   "
                                    << "Ausgewählte Kontonummer  ist nicht existent.";
    }
    void unbekannteQuelleHaeltDenDialogOffen()
    {
        QFETCH(QString, eingabe);
        QFETCH(QString, text);
        standardKonten();
        oeffnen();
        bool nochOffen = false;
        m_kopierDialog = [&](frmKoBeginn &d) {
            d.findChild<QLineEdit *>("inpÜbKontoNr")->setText(eingabe);
            d.findChild<QPushButton *>("cmdAuswÜbernehmen")->click();
            nochOffen = d.isVisible();
            // The list fills the input.
            ListeAttrappe::s_auswahl = "2000";
            d.findChild<QPushButton *>("cmdKontoListe")->click();
            QCOMPARE(d.findChild<QLineEdit *>("inpÜbKontoNr")->text(), "2000");
            d.reject();
        };
        eroeffnen("4711");
        QVERIFY(nochOffen);
        QCOMPARE(m_boxen->eintraege().at(0).titel, "Kontonummer nicht existent");
        QCOMPARE(m_boxen->eintraege().at(0).text, text);
        QCOMPARE(ListeAttrappe::s_aufrufe, 1);
        QCOMPARE(gespeichert("4711", "KontoTypus").toInt(), 0);
    }

    void verrechnungskontoAlsQuelleUndKopieAufSichSelbst()
    {
        standardKonten();
        konto("999998", "Internes Verrechnungskonto");
        oeffnen();
        m_kopierDialog = [](frmKoBeginn &d) {
            d.findChild<QLineEdit *>("inpÜbKontoNr")->setText("999998");
            d.findChild<QPushButton *>("cmdAuswÜbernehmen")->click();
        };
        eroeffnen("4711");
        QVERIFY(letzterHinweis().startsWith("Übernahme der Kontendaten beendet."));
        m_kopierDialog = [](frmKoBeginn &d) {
            d.findChild<QLineEdit *>("inpÜbKontoNr")->setText("4712");
            d.findChild<QPushButton *>("cmdAuswÜbernehmen")->click();
        };
        eroeffnen("4712");
        QCOMPARE(gespeichert("4712", "KontoBezeichnung").toString(), "Sachkonto-Nr 4712");
        QCOMPARE(gespeichert("4712", "KontoAbrUstProz").toInt(), 100);
    }

    // --- deleting ---

    void loeschen_data()
    {
        QTest::addColumn<QString>("nr");
        QTest::addColumn<int>("saldoJahr"); // 0: none
        QTest::addColumn<int>("antwort"); // 0: no question expected
        QTest::addColumn<bool>("geloescht");
        QTest::addColumn<QString>("danach");
        QTest::newRow("verrechnungskonto") << "999998" << 0 << 0 << false << "999998";
        QTest::newRow("nein") << "1200" << 0 << int(vbNo) << false << "1200";
        QTest::newRow("saldo im jahr") << "1200" << 2003 << int(vbYes) << false << "1200";
        QTest::newRow("saldo anderes jahr") << "1200" << 2002 << int(vbYes) << true << "999998";
        QTest::newRow("letztes") << "999998x" << 0 << int(vbYes) << true << "1200";
    }
    void loeschen()
    {
        QFETCH(QString, nr);
        QFETCH(int, saldoJahr);
        QFETCH(int, antwort);
        QFETCH(bool, geloescht);
        QFETCH(QString, danach);
        konto("1000", "Kassa");
        konto("1200", "Bank");
        konto("999998", "Internes Verrechnungskonto");
        // "999998x": the last account of the list is an ordinary one.
        const bool letztes = nr == u"999998x";
        if (letztes) {
            nr = "999999";
            konto(nr, "Letztes");
            danach = "999998";
        }
        if (saldoJahr)
            saldo(nr, saldoJahr);
        oeffnen();
        nummerLesen(nr);
        QCOMPARE(aktuell(), nr);
        const qlonglong vorher = konten();
        if (antwort)
            m_boxen->antworte(antwort);
        QTest::mouseClick(c<QPushButton>("cmdKontoLöschen"), Qt::LeftButton);
        QCOMPARE(konten(), geloescht ? vorher - 1 : vorher);
        QCOMPARE(aktuell(), danach);
        if (antwort == vbYes)
            QTRY_COMPARE(QApplication::focusWidget(), nrFeld());
        QVERIFY(!mks::LoeschungLaeuft);
        if (nr == u"999998") {
            QCOMPARE(m_boxen->anzahl(), 1);
            QCOMPARE(m_boxen->letzter().text,
                     "Internes Verrechnungskonto kann nicht gelöscht werten.");
        } else {
            QCOMPARE(m_boxen->eintraege().at(0).titel, "Bitte bestätigen Sie");
            QCOMPARE(m_boxen->eintraege().at(0).text, "Kontenstammsatz löschen ?");
        }
        if (saldoJahr == 2003) {
            QCOMPARE(m_boxen->letzter().titel, "Löschung nicht möglich");
            QVERIFY(m_boxen->letzter().text.startsWith(
                "Kontenstammsatz mit der Konto-Nr: 1200 ist nicht löschbar, da im Buchungsjahr: "
                "2003 Saldensätze"));
            QVERIFY(m_boxen->letzter().text.endsWith("insgesamt 1 SaldenSätze gefunden"));
        }
    }

    void einzigesKontoLoeschen()
    {
        konto("1000", "Kassa");
        oeffnen();
        m_boxen->antworte(vbYes);
        QTest::mouseClick(c<QPushButton>("cmdKontoLöschen"), Qt::LeftButton);
        QCOMPARE(konten(), 0);
        QCOMPARE(kk()->rs().RecordCount(), 0);
        QCOMPARE(nrFeld()->text(), QString());
    }

    // --- position masters ---

    void bilanzpositionWaehlenSpeichertSofort()
    {
        standardKonten();
        m_db->execute(
            "INSERT INTO BilanzPos (BilPosAktPass, BilPosABC, BilPosRöm, BilPosArab, "
            "BilPosABCklein, BilPosText) VALUES (1, 'B', 'II', '1', 'a', 'Kassenbestand')");
        oeffnen();
        m_form->seiteZeigen(7);
        PositionenAttrappe::s_auswahl = QVariantList {1, "B", "II ", "1", "a"};
        fokusAuf(c<QComboBox>("cmbKontoAbschlArt"));
        QTest::mouseClick(c<QPushButton>("cmdBilPosAuswahl"), Qt::LeftButton);
        QCOMPARE(PositionenAttrappe::s_aufrufe, QStringList {"BilanzPosAuswahl|zelAbrPosStamm"});
        QCOMPARE(PositionenAttrappe::s_info.value(0).toString(), m_ort);
        QCOMPARE(PositionenAttrappe::s_info.value(11).toInt(), 2003);
        QCOMPARE(PositionenAttrappe::s_info.value(39).toString(), "zelKontenStamm");
        QCOMPARE(mks::AktuellesProgramm, "frmKontenStamm");
        QCOMPARE(gespeichert("1000", "KontoBilPosAktPass").toInt(), 1);
        QCOMPARE(gespeichert("1000", "KontoBilPosRöm").toString(), "II");
        QCOMPARE(c<QLabel>("lblBilPosText")->text(), "Kassenbestand");
        QCOMPARE(c<QLabel>("lblBilPosRöm")->text(), "II");
        // The focus goes back into the combo the user was in.
        QTRY_COMPARE(QApplication::focusWidget(), c("cmbKontoAbschlArt"));
        QVERIFY(!QApplication::overrideCursor());

        c<QPushButton>("cmdBilPosloeschen")->click();
        QCOMPARE(gespeichert("1000", "KontoBilPosAktPass").toInt(), 0);
        QCOMPARE(gespeichert("1000", "KontoBilPosABC").toString(), QString());
        QCOMPARE(c<QLabel>("lblBilPosText")->text(), QString());
        // Leaving the record writes nothing more and asks nothing.
        taste(Qt::Key_PageDown);
        QCOMPARE(m_boxen->anzahl(), 0);
    }

    void abgebrochenAendertNichts()
    {
        standardKonten();
        oeffnen();
        m_form->seiteZeigen(7);
        c<QPushButton>("cmdBilPosAuswahl")->click();
        c<QPushButton>("cmdZl7BilPosAuswahl")->click();
        QCOMPARE(PositionenAttrappe::s_aufrufe.size(), 2);
        QVERIFY(!kk()->bearbeitet());
        QCOMPARE(gespeichert("1000", "KontoBilPosAktPass").toInt(), 0);
    }

    void zl7PositionWaehlen()
    {
        standardKonten();
        m_db->execute("INSERT INTO BilanzPosZL7 (BilZl7Pos1, BilZl7Pos2, BilZl7Pos3, "
                      "BilZl7PosText) VALUES (1, 2, 3, 'Forderungen')");
        oeffnen();
        m_form->seiteZeigen(7);
        PositionenAttrappe::s_auswahl = QVariantList {1, 2, 3};
        c<QPushButton>("cmdZl7BilPosAuswahl")->click();
        QCOMPARE(c<QLineEdit>("inpBilZl7Pos3")->text(), "3");
        QCOMPARE(c<QLabel>("lblBilZl7PosText")->text(), "Forderungen");
        taste(Qt::Key_PageDown);
        QCOMPARE(aktuell(), "1200");
        QCOMPARE(gespeichert("1000", "KontoPos2").toInt(), 2);
    }

    void stammPflegeFrischtDieListenAuf_data()
    {
        QTest::addColumn<QString>("knopf");
        QTest::addColumn<QString>("methode");
        QTest::newRow("oenorm") << "cmdÖNORMPosStammAufruf"
                                << "AbrPosStamm";
        QTest::newRow("bk") << "cmdAbrPosStammAufruf"
                            << "AbrPosStamm";
    }
    void stammPflegeFrischtDieListenAuf()
    {
        QFETCH(QString, knopf);
        QFETCH(QString, methode);
        standardKonten();
        oeffnen();
        QCOMPARE(c<QComboBox>("cmbAbrPos2")->count(), 0);
        PositionenAttrappe::s_waehrend = [this] {
            m_db->execute("INSERT INTO AbrPosBkAbr (AbrPosBkPos1, AbrPosBkPos2, "
                          "AbrPosBkPosText) VALUES (4, 0, 'Kopf'), (4, 1, 'Neu')");
            m_db->execute("INSERT INTO AbrPosBkBlöcke (BkBlockPos, BkBlockText, "
                          "BkBlockSchlPos) VALUES (9, 'Neuer Block', 2)");
        };
        c<QPushButton>(qPrintable(knopf))->click();
        QCOMPARE(PositionenAttrappe::s_aufrufe.value(0), methode + "|zelAbrPosStamm");
        QCOMPARE(c<QComboBox>("cmbAbrPos2")->count(), 2);
        QCOMPARE(c<QComboBox>("cmbAbrPos2")->itemText(1), "Kopf  /  Neu");
        QCOMPARE(c<QComboBox>("cmbBkBlockPos")->itemText(1), "9: Neuer Block   (Schlüssel: 2)");
        QCOMPARE(c<QComboBox>("cmbAbrPos2")->currentText(), "Keine Definition");
        QVERIFY(!kk()->bearbeitet());
    }

    // Paging shows position texts the screen read before; after the master was edited from
    // here, the other accounts' texts are read again.
    void positionstextNachStammpflege_data()
    {
        QTest::addColumn<QString>("knopf");
        QTest::addColumn<QString>("setzen"); // on account 1200 (1000 keeps another position)
        QTest::addColumn<QString>("einfuegen");
        QTest::addColumn<QString>("anzeige");
        QTest::newRow("Bilanz") << "cmdBilPosStamm"
                                << "KontoBilPosAktPass = 1, KontoBilPosABC = 'C'"
                                << "INSERT INTO BilanzPos (BilPosAktPass, BilPosABC, BilPosRöm, "
                                   "BilPosArab, BilPosABCklein, BilPosText) "
                                   "VALUES (1, 'C', '', '', '', 'Neu angelegt')"
                                << "lblBilPosText";
        QTest::newRow("ZL7") << "cmdZl7BilPosStamm"
                             << "KontoPos1 = 4, KontoPos2 = 5, KontoPos3 = 6"
                             << "INSERT INTO BilanzPosZL7 (BilZl7Pos1, BilZl7Pos2, BilZl7Pos3, "
                                "BilZl7PosText) VALUES (4, 5, 6, 'Neu angelegt')"
                             << "lblBilZl7PosText";
    }
    void positionstextNachStammpflege()
    {
        QFETCH(QString, knopf);
        QFETCH(QString, setzen);
        QFETCH(QString, einfuegen);
        QFETCH(QString, anzeige);
        standardKonten();
        m_db->execute("UPDATE ObjKanzleiKontenstamm SET KontoBilPosAktPass = 2");
        m_db->execute("UPDATE ObjKanzleiKontenstamm SET " + setzen + " WHERE KontoNr = '1200'");
        oeffnen();
        fokusAuf(c<QLineEdit>("inpKontoBezeichnung"));
        taste(Qt::Key_PageDown);
        QCOMPARE(aktuell(), "1200");
        const QString vorher = c<QLabel>(qPrintable(anzeige))->text();
        taste(Qt::Key_PageUp);
        PositionenAttrappe::s_waehrend = [&] {
            m_db->execute(einfuegen);
        };
        m_form->seiteZeigen(7); // where the master's buttons are
        c<QPushButton>(qPrintable(knopf))->click();
        m_form->seiteZeigen(1);
        fokusAuf(c<QLineEdit>("inpKontoBezeichnung"));
        taste(Qt::Key_PageDown);
        QCOMPARE(aktuell(), "1200");
        QVERIFY(vorher != "Neu angelegt");
        QCOMPARE(c<QLabel>(qPrintable(anzeige))->text(), "Neu angelegt");
    }

    void fehlenderGeschwisterWirdGemeldet()
    {
        standardKonten();
        oeffnen();
        m_form->seiteZeigen(7);
        m_positionen.reset();
        c<QPushButton>("cmdZl7BilPosStamm")->click();
        QCOMPARE(FehlerDialogAttrappe::s_berichte,
                 QStringList {"429|zelKontenStamm, in cmdZl7BilPosStamm_Click"});
        FehlerDialogAttrappe::s_berichte.clear();
        QVERIFY(!QApplication::overrideCursor());
        QCOMPARE(mks::AktuellesProgramm, "frmKontenStamm");
    }
};

ZEP_ENGINE_TEST_MAIN(TestKontenstammGeschwister)
#include "tst_kontenstamm_geschwister.moc"
