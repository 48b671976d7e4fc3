// The account screen's layout against its control list: kind, group, caption, binding and tool
// tip of every control, the tab texts, and a tidy look (no overlaps, no clipped captions).
#include "platform/ui/DataControl.h"
#include "screens/Bildschirmstil.h"
#include "screens/Bindungen.h"
#include "screens/InputFeld.h"
#include "ui_frmKontenStamm.h"

#include <QCheckBox>
#include <QComboBox>
#include <QDialog>
#include <QGroupBox>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QTabBar>
#include <QTest>

namespace {

struct Soll
{
    const char *name;
    const char
        *art; // I InputFeld, C combo, L label, B button, K check box, T text box, F frame, D data
    const char *gruppe;
    const char *text; // nullptr: not checked
    const char *feld; // bound field of KKData, nullptr: unbound
};

const QString Verdicht = QStringLiteral(
    "Definition unterschiedliche Darstellungsmöglichkeiten des Kontos in BK-Objektabrechnung");

const Soll steuerelemente[] = {
    {"inpKontoNr", "I", "frmKontenStamm", nullptr, nullptr},
    {"lblBankltz", "L", "frmKontenStamm", "KontoNummer", nullptr},
    {"lblBuchjahrText", "L", "frmKontenStamm", "Buchungsjahr:", nullptr},
    {"lblBuchjahr", "L", "frmKontenStamm", "#", nullptr},
    {"cmdKontoEinlesen", "B", "frmKontenStamm", "Kontenstammsatz  lesen / speichern", nullptr},
    {"cmdKontoLöschen", "B", "frmKontenStamm", "Kontenstammsatz löschen    ", nullptr},
    {"cmdKontoNeueröff", "B", "frmKontenStamm", "Kontenstammsatz neu", nullptr},
    {"cmdKontoListe", "B", "frmKontenStamm", "Konten Auswahlhilfe", nullptr},
    {"cmdPruefliste", "B", "frmKontenStamm", "Prüfliste", nullptr},
    {"cmdExit", "B", "frmKontenStamm", "Beenden", nullptr},
    {"cmdVerlauf", "B", "frmKontenStamm", "Verlauf", nullptr},
    {"cmdHilfe", "B", "frmKontenStamm", "?", nullptr},
    {"cmdAbrPosStammAufruf", "B", "frmKontenStamm", "BK-Abr Positionenstamm", nullptr},
    {"cmdÖNORMPosStammAufruf", "B", "frmKontenStamm", "ÖNORM Positionenstamm", nullptr},
    {"KKData", "D", "frmKontenStamm", " vorwärts / rückwärts", nullptr},
    {"fraData", "F", "frmKontenStamm", "DataFrame", nullptr},
    {"KKChkData", "D", "fraData", "KKChkData", nullptr},
    {"SSData", "D", "fraData", "SSData", nullptr},
    {"ASLData", "D", "fraData", "ASLData", nullptr},
    {"BkBlockData", "D", "fraData", "BkBlockData", nullptr},
    {"BkPosData", "D", "fraData", "BkPosData", nullptr},
    {"BkPosChkData", "D", "fraData", "BkPosChkData", nullptr},
    {"BilPosData", "D", "fraData", "BilPosData", nullptr},
    {"Zl7BilPosData", "D", "fraData", "Zl7BilPosData", nullptr},
    {"fraBkUstSchl", "F", "frmKontenStamm", "gemeinsame Daten für BK- und Önorm-Abrechnung ",
     nullptr},
    // page 0
    {"inpKontoBezeichnung", "I", "frame1_0", nullptr, "KontoBezeichnung"},
    {"inpKontoTypus", "I", "frame1_0", nullptr, "KontoTypus"},
    {"cmbKontoTypus", "C", "frame1_0", nullptr, nullptr},
    {"inpKontoUstProz", "I", "frame1_0", nullptr, "KontoUstProz"},
    {"cmbKontoUstProz", "C", "frame1_0", nullptr, nullptr},
    {"inpKontoUstKtoNr", "I", "frame1_0", nullptr, "KontoUstKtoNr"},
    {"cmbKontoZusatzdatenJN", "C", "frame1_0", nullptr, nullptr},
    {"inpKontoVoranmPos", "I", "frame1_0", nullptr, "KontoVoranmPos"},
    {"cmbKontoVoranmPos", "C", "frame1_0", nullptr, nullptr},
    {"inpKontoVSTKuerz", "I", "frame1_0", nullptr, "KontoVSTKuerz"},
    {"inpKontoAnmerkung1", "I", "frame1_0", nullptr, "KontoAnmerkung1"},
    {"inpKontoAnmerkung2", "I", "frame1_0", nullptr, "KontoAnmerkung2"},
    {"chckPVAZusatz", "K", "frame1_0", "Steuerkonto Zusatzliste", nullptr},
    {"frm_pva", "F", "frame1_0", nullptr, nullptr},
    {"inpKtonummer", "I", "frm_pva", nullptr, "KontoSAPKtNr2"},
    {"inpKtonummer_alt", "T", "frm_pva", nullptr, nullptr},
    {"inpSAPKontoNr", "I", "frm_pva", nullptr, "KontoSAPKtNr"},
    {"inpSachkontoNr", "I", "frm_pva", nullptr, "KontoSachKTNr"},
    {"inpBuchungsArt", "I", "frm_pva", nullptr, "KontoBuchArt"},
    {"inpZLSperre", "I", "frm_pva", nullptr, "KontoZLSperre"},
    {"inpVerdichtKZ", "I", "frm_pva", nullptr, "KontoVerdichtKZ"},
    {"lblKtobez", "L", "frame1_0", "Konto-Bezeichnung:", nullptr},
    {"lblKontoBezeichnung", "L", "frame1_0", nullptr, nullptr},
    {"Label2", "L", "frame1_0", "Konto-Typus:", nullptr},
    {"Label3", "L", "frame1_0", "Konto-UstProzentsatz (Vorsteuer-Vorschlag):", nullptr},
    {"Label4", "L", "frame1_0", "Konto-UstKontoNummer:", nullptr},
    {"Label1", "L", "frame1_0", "=", nullptr},
    {"lblUstKontoBezeich", "L", "frame1_0", "#", nullptr},
    {"lblZusatzdatenJn", "L", "frame1_0", "ZusatzDaten J/N:", nullptr},
    {"lblVoranmPos", "L", "frame1_0", "Voranmeldungs-Position:", nullptr},
    {"Label8", "L", "frame1_0", "Anmerkungen zur Kontoverwendung:", nullptr},
    {"lblCode75", "L", "frame1_0", "Code 088 war bis zum Jahr 2008 Code 075!!!", nullptr},
    {"Label33", "L", "frame1_0", "Vorsteuerkürzungsschlüssel Zeile", nullptr},
    {"Label32", "L", "frm_pva", "SAP Kontonr:", nullptr},
    {"Label34", "L", "frm_pva", "Buchungsart:", nullptr},
    {"Label35", "L", "frm_pva", "ZL-Sperre:", nullptr},
    {"Label36", "L", "frm_pva", "Verdicht-KZ:", nullptr},
    // page 1
    {"inpBKENAbrDef", "I", "frame1_1", nullptr, "KontoBkENAbrDef"},
    {"cmbBkENAbrDef", "C", "frame1_1", nullptr, nullptr},
    {"inpBkEinnAusgPos", "I", "frame1_1", nullptr, "KontoBkEinnAusgPos"},
    {"cmbBkEinnAusgPos", "C", "frame1_1", nullptr, nullptr},
    {"inpBkAbrVerdichtKz", "I", "frame1_1", nullptr, "KontoBkAbrVerdichtKz"},
    {"cmbBkAbrVerdichtKz", "C", "frame1_1", nullptr, nullptr},
    {"inpAbrSchlPos", "I", "frame1_1", nullptr, "KontoAbrSchlPos"},
    {"inpEstgPflichtig", "I", "frame1_1", nullptr, "KontoEstgpflichtig"},
    {"cmbEstgPflichtig", "C", "frame1_1", nullptr, nullptr},
    {"Label5", "L", "frame1_1", "BK-Mieter-/Eigentümer-Abr:", nullptr},
    {"Label7", "L", "frame1_1", "Bk-Einn-/Ausg-/SV-Def:", nullptr},
    {"Label10", "L", "frame1_1", "Bk-Konto-Darstellung-Def in Abrechnung:", nullptr},
    {"Label6", "L", "frame1_1", "Bk-Abr-Aufteilungsschlüssel (Obj-Stamm/Obj-Schlüssel):", nullptr},
    {"Label31", "L", "frame1_1",
     "[NOTWENDIG für die Aufteilung dieses Kontos in der BK-Abrechnung]", nullptr},
    // page 2
    {"inpKostenArt", "I", "frame1_2", nullptr, "KontoÖNORMAbrKontenArt"},
    {"cmbKostenArt", "C", "frame1_2", nullptr, nullptr},
    {"inpAbrechPosition", "I", "frame1_2", nullptr, "KontoÖNORMAbrPos_I_II_III"},
    {"inpAbrechPosition2", "I", "frame1_2", nullptr, "KontoÖNORMAbrPos_ABC"},
    {"cmbAbrPos2", "C", "frame1_2", nullptr, nullptr},
    {"lblKostenArt", "L", "frame1_2", "KontenArt:", nullptr},
    {"lblAbrPos2", "L", "frame1_2", "ÖNORM A4000-Abrechnung Konto-Abrech.Position:", nullptr},
    // page 3
    {"inpHeEinnAusgPos", "I", "frame1_3", nullptr, "KontoHeEinnAusgPos"},
    {"cmbHeEinnAusgPos", "C", "frame1_3", nullptr, nullptr},
    {"inpHeAbrVerdichtKz", "I", "frame1_3", nullptr, "KontoHeAbrVerdichtKz"},
    {"cmbHeAbrVerdichtKz", "C", "frame1_3", nullptr, nullptr},
    {"Label13", "L", "frame1_3", "He-Einn-/Ausg-Def:", nullptr},
    {"Label11", "L", "frame1_3", "He-Konto-Darstellung-Def in Hauseigentümer-Abrechnung:", nullptr},
    {"Label12", "L", "frame1_3", "Label12", nullptr},
    // page 4
    {"inpBeiblPos", "I", "frame1_4", nullptr, "KontoBeiblPos"},
    {"cmbBeiblPos", "C", "frame1_4", nullptr, nullptr},
    {"inpBeiblVerdichtKz", "I", "frame1_4", nullptr, "KontoBeiblVerdichtKz"},
    {"cmbBeiblVerdichtKz", "C", "frame1_4", nullptr, nullptr},
    {"Label14", "L", "frame1_4", "Konto-Beiblattposition:", nullptr},
    {"Label15", "L", "frame1_4",
     "Definition der Konto-Darstellung in Beiblatt-Objektteil:", nullptr},
    // page 5
    {"inpKontoHmzResPos", "I", "frame1_5", nullptr, "KontoHmzResPos"},
    {"cmbKontoHmzResPos", "C", "frame1_5", nullptr, nullptr},
    {"inpKontoHmzResVerdichtKz", "I", "frame1_5", nullptr, "KontoHmzResVerdichtKz"},
    {"cmbKontoHmzResVerdichtKz", "C", "frame1_5", nullptr, nullptr},
    {"Label26", "L", "frame1_5", "Hauptmietzinsreserve- Position:", nullptr},
    {"Label27", "L", "frame1_5", "Hmz-Konto-Darstellung in Hauptmietzinsreserve:", nullptr},
    // shared frame of pages 2 and 3
    {"inpBkBlockPos", "I", "fraBkUstSchl", nullptr, "KontoBkBlockPos"},
    {"cmbBkBlockPos", "C", "fraBkUstSchl", nullptr, nullptr},
    {"inpAbrUstProz", "I", "fraBkUstSchl", nullptr, "KontoAbrUstProz"},
    {"cmbBkAbrUstProz", "C", "fraBkUstSchl", nullptr, nullptr},
    {"Label16", "L", "fraBkUstSchl", "BK-Block-Auswahl:", nullptr},
    {"Label18", "L", "fraBkUstSchl", "Abr.-UstProzentsatz:", nullptr},
    {"Label29", "L", "fraBkUstSchl", "[BK-Block: Blockbez. (Önorm-Schlüssel)]", nullptr},
    {"Label30", "L", "fraBkUstSchl", "[Ust-Satz des Kontos in BK-Abrechnung]", nullptr},
    // page 6
    {"inpKontoAbschlArt", "I", "frame1_6", nullptr, "KontoAbschlArt"},
    {"cmbKontoAbschlArt", "C", "frame1_6", nullptr, nullptr},
    {"inpKontoSbkGuvKontoNr", "I", "frame1_6", nullptr, "KontoSbkGuvKontoNr"},
    {"inpKontoEbkKontoNr", "I", "frame1_6", nullptr, "KontoEbkKontoNr"},
    {"inpBilPosAktPass", "I", "frame1_6", nullptr, "KontoBilPosAktPass"},
    {"inpBilZl7Pos1", "I", "frame1_6", nullptr, "KontoPos1"},
    {"inpBilZl7Pos2", "I", "frame1_6", nullptr, "KontoPos2"},
    {"inpBilZl7Pos3", "I", "frame1_6", nullptr, "KontoPos3"},
    {"inpKontoPVAKz", "I", "frame1_6", nullptr, "KontoPVAKz"},
    {"cmbKontoPVAKz", "C", "frame1_6", nullptr, nullptr},
    {"lblBilPosABC", "L", "frame1_6", nullptr, "KontoBilPosABC"},
    {"lblBilPosRöm", "L", "frame1_6", nullptr, "KontoBilPosRöm"},
    {"lblBilPosArab", "L", "frame1_6", nullptr, "KontoBilPosArab"},
    {"lblBilPosABCklein", "L", "frame1_6", nullptr, "KontoBilPosABCklein"},
    {"Label9", "L", "frame1_6", "Konto-Abschluß-Art:", nullptr},
    {"Label17", "L", "frame1_6", "SBK- / GUV-Konto:", nullptr},
    {"Label19", "L", "frame1_6", "EBK-Konto:", nullptr},
    {"lblSbkGuvKontoNrBezeich", "L", "frame1_6", "#", nullptr},
    {"lblEbkKontoNrBezeich", "L", "frame1_6", "#", nullptr},
    {"Label20", "L", "frame1_6", "Bilanz-Position:", nullptr},
    {"lblAktPass", "L", "frame1_6", "Akt/Pass", nullptr},
    {"lblBilPosText", "L", "frame1_6", "Text", nullptr},
    {"Label21", "L", "frame1_6", "A,B,C", nullptr},
    {"Label22", "L", "frame1_6", "I,II,III", nullptr},
    {"Label23", "L", "frame1_6", "1,2,3", nullptr},
    {"Label24", "L", "frame1_6", "a,b,c", nullptr},
    {"Label25", "L", "frame1_6", "Akt,Pass,Guv", nullptr},
    {"Label28", "L", "frame1_6", "Bilanz-Position: (analog ZL7)", nullptr},
    {"lblBilZl7PosText", "L", "frame1_6", "#", nullptr},
    {"cmdBilPosAuswahl", "B", "frame1_6", "Bilanzposition auswählen", nullptr},
    {"cmdBilPosStamm", "B", "frame1_6", "Bilanzposition Stamm", nullptr},
    {"cmdZl7BilPosAuswahl", "B", "frame1_6", "ZL7 Bilanzposition auswählen", nullptr},
    {"cmdZl7BilPosStamm", "B", "frame1_6", "ZL7 Bilanzposition Stamm", nullptr},
    {"cmdBilPosloeschen", "B", "frame1_6", "Bilanzposition leer setzen", nullptr},
};

QString art(const QWidget *w)
{
    if (qobject_cast<const screens::InputFeld *>(w))
        return QStringLiteral("I");
    if (qobject_cast<const platform::DataControl *>(w))
        return QStringLiteral("D");
    if (qobject_cast<const QComboBox *>(w))
        return QStringLiteral("C");
    if (qobject_cast<const QPushButton *>(w))
        return QStringLiteral("B");
    if (qobject_cast<const QCheckBox *>(w))
        return QStringLiteral("K");
    if (qobject_cast<const QLabel *>(w))
        return QStringLiteral("L");
    if (qobject_cast<const QGroupBox *>(w))
        return QStringLiteral("F");
    if (qobject_cast<const QLineEdit *>(w))
        return QStringLiteral("T");
    return QString::fromLatin1(w->metaObject()->className());
}

QString text(const QWidget *w)
{
    if (auto *l = qobject_cast<const QLabel *>(w))
        return l->text();
    if (auto *b = qobject_cast<const QAbstractButton *>(w))
        return b->text();
    if (auto *g = qobject_cast<const QGroupBox *>(w))
        return g->title();
    if (auto *d = qobject_cast<const platform::DataControl *>(w))
        return d->Caption();
    return {};
}

// The named group a control sits in: the nearest parent with an objectName.
QString gruppe(const QWidget *w)
{
    for (const QWidget *p = w->parentWidget(); p; p = p->parentWidget()) {
        if (!p->objectName().isEmpty())
            return p->objectName();
    }
    return {};
}

struct Bildschirm
{
    QDialog form;
    Ui::frmKontenStamm ui;
    Bildschirm()
    {
        ui.setupUi(&form);
        screens::bildschirmEinrichten(&form);
    }
};

} // namespace

class tst_LayoutKontenstamm : public QObject
{
    Q_OBJECT

private slots:
    void steuerelement_data();
    void steuerelement();
    void formUndSeiten();
    void sichtbarBeimLaden();
    void bindungen();
    void tooltips_data();
    void tooltips();
    void tabfolge();
    void nichtsUeberlapptNichtsAbgeschnitten_data();
    void nichtsUeberlapptNichtsAbgeschnitten();
};

void tst_LayoutKontenstamm::steuerelement_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<QString>("art");
    QTest::addColumn<QString>("gruppe");
    QTest::addColumn<QString>("text");
    for (const Soll &s : steuerelemente) {
        QTest::newRow(s.name) << QString::fromUtf8(s.name) << QString::fromLatin1(s.art)
                              << QString::fromLatin1(s.gruppe)
                              << (s.text ? QString::fromUtf8(s.text) : QString());
    }
}

void tst_LayoutKontenstamm::steuerelement()
{
    QFETCH(QString, name);
    QFETCH(QString, art);
    QFETCH(QString, gruppe);
    QFETCH(QString, text);
    Bildschirm b;
    QWidget *w = b.form.findChild<QWidget *>(name);
    QVERIFY2(w, qPrintable(name));
    QCOMPARE(::art(w), art);
    QCOMPARE(::gruppe(w), gruppe);
    if (!text.isNull())
        QCOMPARE(::text(w), text);
    if (auto *d = qobject_cast<platform::DataControl *>(w)) {
        QCOMPARE(d->Connect(), QStringLiteral("Access"));
        QVERIFY(d->DatabaseName().isEmpty());
    }
}

void tst_LayoutKontenstamm::formUndSeiten()
{
    Bildschirm b;
    QCOMPARE(b.form.objectName(), QStringLiteral("frmKontenStamm"));
    QCOMPARE(b.form.windowTitle(),
             QStringLiteral("KontenStamm (Sachkonten, Objekt-,Kanzleikonten)"));
    auto *reiter = b.form.findChild<QTabBar *>(QStringLiteral("TabStrip1"));
    QVERIFY(reiter);
    const QStringList soll {"Allgemein",          "BkAbr-Definitionen", "ÖN-A4000-Definitionen",
                            "HeAbr-Definitionen", "Beibl-Definitionen", "HMZ-Definitionen",
                            "Abschl-Definitionen"};
    QCOMPARE(reiter->count(), soll.size());
    for (int i = 0; i < soll.size(); ++i)
        QCOMPARE(reiter->tabText(i), soll.at(i));
    const QStringList titel {
        "Frame1(0)",       "Frame1(1, Bk-Abr)", "Frame1(2, Önorm)",        "Frame1(3, He-Abr)",
        "Frame1(4,Beibl)", "Frame1(5,HMZ)",     "Frame1(6) Abschlussdaten"};
    QRect flaeche;
    for (int i = 0; i < 7; ++i) {
        auto *f = b.form.findChild<QGroupBox *>(QStringLiteral("frame1_%1").arg(i));
        QVERIFY(f);
        QCOMPARE(f->property("Caption").toString(), titel.at(i));
        QCOMPARE(f->parentWidget(), &b.form);
        // All pages share one place below the tab strip.
        if (i == 0)
            flaeche = f->geometry();
        QCOMPARE(f->geometry(), flaeche);
    }
    QVERIFY(flaeche.top() >= reiter->geometry().bottom());
    // The shared VAT key frame lies over the page area.
    auto *bk = b.form.findChild<QWidget *>(QStringLiteral("fraBkUstSchl"));
    QVERIFY(flaeche.contains(bk->geometry()));
}

// The screen opens on the first page; the behaviour code shows the other pages, the shared
// frame only on pages 2 and 3, and never the helper data controls.
void tst_LayoutKontenstamm::sichtbarBeimLaden()
{
    Bildschirm b;
    for (int i = 0; i < 7; ++i) {
        auto *f = b.form.findChild<QWidget *>(QStringLiteral("frame1_%1").arg(i));
        QVERIFY(f);
        QCOMPARE(f->isVisibleTo(&b.form), i == 0);
    }
    QVERIFY(!b.form.findChild<QWidget *>(QStringLiteral("fraBkUstSchl"))->isVisibleTo(&b.form));
    const auto daten = b.form.findChildren<platform::DataControl *>();
    QCOMPARE(daten.size(), 9);
    for (const platform::DataControl *d : daten) {
        QCOMPARE(d->isVisibleTo(&b.form), d->objectName() == QLatin1String("KKData"));
    }
}

void tst_LayoutKontenstamm::bindungen()
{
    Bildschirm b;
    const int gebunden = screens::bindungenHerstellen(&b.form);
    int soll = 1; // inpKontoZusatzDatenJN below
    for (const Soll &s : steuerelemente) {
        QWidget *w = b.form.findChild<QWidget *>(QString::fromUtf8(s.name));
        QVERIFY(w);
        if (!s.feld) {
            QVERIFY2(w->property("DataField").toString().isEmpty(), s.name);
            continue;
        }
        ++soll;
        QCOMPARE(w->property("DataSource").toString(), QStringLiteral("KKData"));
        QCOMPARE(w->property("DataField").toString(), QString::fromUtf8(s.feld));
    }
    auto *zusatz = b.form.findChild<QWidget *>(QStringLiteral("inpKontoZusatzDatenJN"));
    QVERIFY(zusatz);
    QCOMPARE(zusatz->property("DataSource").toString(), QStringLiteral("kkdata"));
    QCOMPARE(zusatz->property("DataField").toString(), QStringLiteral("KontoZusatzdatenJn"));
    QCOMPARE(gebunden, soll);
}

void tst_LayoutKontenstamm::tooltips_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<QString>("tip");
    QTest::newRow("cmbBkENAbrDef")
        << "cmbBkENAbrDef"
        << "Für welche Abrechnungsart (Mieter oder Eigentümer-Abrechnung) gilt das Konto";
    QTest::newRow("cmbBkEinnAusgPos")
        << "cmbBkEinnAusgPos"
        << "Definition ob Konto ein Einnahmen- oder Ausgabenkonto ist";
    QTest::newRow("cmbBkAbrVerdichtKz") << "cmbBkAbrVerdichtKz" << Verdicht;
    QTest::newRow("cmbKontoHmzResVerdichtKz") << "cmbKontoHmzResVerdichtKz" << Verdicht;
    QTest::newRow("inpAbrSchlPos")
        << "inpAbrSchlPos"
        << "NOTWENDIG für die Aufteilung dieses Kontos in der BK-Abrechnung";
    QTest::newRow("cmbBkBlockPos")
        << "cmbBkBlockPos"
        << "In welchen BK-Block mündet das Konto [BK-Block: Blockbez. (Önorm-Schlüssel)]";
    QTest::newRow("cmbBkAbrUstProz") << "cmbBkAbrUstProz"
                                     << "Ust-Satz des Kontos in BK-Abrechnung";
    // The shortcuts are named in the tips of their buttons.
    QTest::newRow("cmdKontoNeueröff") << "cmdKontoNeueröff"
                                      << "Ein neues Konto in diesem Buchungsjahr eröffnen (Strg+N)";
    QTest::newRow("cmdVerlauf") << "cmdVerlauf"
                                << "Die Änderungen des angezeigten Kontos aus dem "
                                   "Änderungsprotokoll zeigen; ein alter Wert lässt sich wieder "
                                   "übernehmen (Strg+H)";
    QTest::newRow("cmdExit") << "cmdExit"
                             << "Den Kontenstamm schließen; das angezeigte Konto wird vorher "
                                "geprüft und gespeichert (Strg+Q, Esc)";
    QTest::newRow("inpKontoTypus") << "inpKontoTypus"
                                   << "Konto-Typus: Code eingeben oder rechts aus der Liste wählen";
    QTest::newRow("inpKontoEbkKontoNr")
        << "inpKontoEbkKontoNr"
        << "EBK-Konto: Kontonummer eines Kontos dieses Buchungsjahres";
    // Every button and every code field or combo has a tip.
    Bildschirm b;
    for (QWidget *w : b.form.findChildren<QWidget *>()) {
        if ((qobject_cast<QPushButton *>(w) && w->parentWidget()->objectName() != "KKData")
            || qobject_cast<screens::InputFeld *>(w) || qobject_cast<QComboBox *>(w))
            QTest::addRow("%s hat einen", qPrintable(w->objectName())) << w->objectName() << "*";
    }
}

void tst_LayoutKontenstamm::tooltips()
{
    QFETCH(QString, name);
    QFETCH(QString, tip);
    Bildschirm b;
    QWidget *w = b.form.findChild<QWidget *>(name);
    QVERIFY(w);
    if (tip == u"*")
        QVERIFY2(w->toolTip().size() > 10, qPrintable(w->toolTip()));
    else
        QCOMPARE(w->toolTip(), tip);
}

// Tab goes from the number to the name, then through the first page's fields row by row, and
// reaches the buttons only after every field of every page.
void tst_LayoutKontenstamm::tabfolge()
{
    Bildschirm b;
    QList<QWidget *> folge;
    QWidget *start = b.form.findChild<QWidget *>(QStringLiteral("inpKontoNr"));
    for (QWidget *w = start; folge.size() < 200; w = w->nextInFocusChain()) {
        if (w == start && !folge.isEmpty())
            break;
        if (w->focusPolicy() & Qt::TabFocus)
            folge.append(w);
    }
    QCOMPARE(folge.at(1)->objectName(), QStringLiteral("inpKontoBezeichnung"));
    const auto platz = [&](const char *name) {
        return folge.indexOf(b.form.findChild<QWidget *>(QString::fromUtf8(name)));
    };
    QVERIFY(platz("inpKontoTypus") < platz("cmbKontoTypus"));
    QVERIFY(platz("cmbKontoTypus") < platz("inpKontoUstProz"));
    QVERIFY(platz("inpKontoAnmerkung2") < platz("inpKtonummer"));
    QVERIFY(platz("inpBkAbrVerdichtKz") < platz("inpBkBlockPos"));
    const int knoepfe = platz("cmdKontoEinlesen");
    for (QWidget *w : folge) {
        if (qobject_cast<QLineEdit *>(w) || qobject_cast<QComboBox *>(w)
            || qobject_cast<QCheckBox *>(w))
            QVERIFY2(folge.indexOf(w) < knoepfe, qPrintable(w->objectName()));
    }
}

void tst_LayoutKontenstamm::nichtsUeberlapptNichtsAbgeschnitten_data()
{
    QTest::addColumn<QString>("gruppe");
    for (const char *g : {"frmKontenStamm", "frame1_0", "frame1_1", "frame1_2", "frame1_3",
                          "frame1_4", "frame1_5", "frame1_6", "frm_pva", "fraBkUstSchl", "fraData"})
        QTest::newRow(g) << QString::fromLatin1(g);
}

void tst_LayoutKontenstamm::nichtsUeberlapptNichtsAbgeschnitten()
{
    QFETCH(QString, gruppe);
    Bildschirm b;
    QWidget *g = gruppe == b.form.objectName() ? &b.form : b.form.findChild<QWidget *>(gruppe);
    QVERIFY(g);
    QList<QWidget *> kinder;
    for (QWidget *w : g->findChildren<QWidget *>(Qt::FindDirectChildrenOnly)) {
        // The page frames and the shared frame are stacked by design; only one shows at a time.
        if (w->objectName().startsWith(QLatin1String("frame1_"))
            || w->objectName() == QLatin1String("fraBkUstSchl")
            || w->objectName() == QLatin1String("fraData") || w->objectName().isEmpty())
            continue;
        kinder.append(w);
    }
    for (int i = 0; i < kinder.size(); ++i) {
        QVERIFY2(g->rect().contains(kinder[i]->geometry()), qPrintable(kinder[i]->objectName()));
        for (int j = i + 1; j < kinder.size(); ++j) {
            QVERIFY2(!kinder[i]->geometry().intersects(kinder[j]->geometry()),
                     qPrintable(kinder[i]->objectName() + QLatin1String(" / ")
                                + kinder[j]->objectName()));
        }
        auto *l = qobject_cast<QLabel *>(kinder[i]);
        // A one-pixel label is the designed separator line.
        if (l && !l->wordWrap() && l->height() > 1) {
            QVERIFY2(l->fontMetrics().horizontalAdvance(l->text()) <= l->width(),
                     qPrintable(l->objectName()));
        }
        auto *k = qobject_cast<QPushButton *>(kinder[i]);
        if (k) {
            // Buttons wrap onto two lines where they are high enough for them.
            const int zeilen = k->height() >= 2 * k->fontMetrics().height() + 6 ? 2 : 1;
            const QStringList woerter = k->text().simplified().split(QLatin1Char(' '));
            int laengstes = 0;
            for (const QString &w : woerter)
                laengstes = qMax(laengstes, k->fontMetrics().horizontalAdvance(w));
            QVERIFY2(laengstes <= k->width() - 8, qPrintable(k->objectName()));
            QVERIFY2(k->fontMetrics().horizontalAdvance(k->text().simplified())
                         <= zeilen * (k->width() - 8),
                     qPrintable(k->objectName()));
        }
    }
}

QTEST_MAIN(tst_LayoutKontenstamm)
#include "tst_layout_kontenstamm.moc"
