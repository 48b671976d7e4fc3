#pragma once

#include <QDialog>
#include <QHash>
#include <QPointer>
#include <QString>
#include <QVariant>
#include <QVariantList>
#include <functional>
#include <memory>
#include <optional>
#include <utility>
#include <vector>

namespace kontenregeln {
struct KontoDefinition;
}
namespace Ui {
class frmKontenStamm;
}
namespace platform {
class DataControl;
class Fokus;
} // namespace platform
class QComboBox;
class QLineEdit;

// The general-ledger account master screen for the booking year of the session: loads the
// year's accounts into KKData (opening the internal clearing account in an empty year), shows
// them one by one, reads an account by number, opens new accounts through frmNeu, keeps
// allocation key 0 and guards every save of KKData with the record checks.
//
// Expects the session state (database path, booking year, call information) set as the
// component's call sets it; the working values shared with the dialogs live in mdlKontenStamm.
// The procedures keep the names the record lifecycle gives them and are public so that the
// dialogs (frmNeu calls KKChkSelect) and the later units of the screen can call them.
class frmKontenStamm : public QDialog
{
    Q_OBJECT

public:
    explicit frmKontenStamm(QWidget *parent = nullptr);
    ~frmKontenStamm() override;

    Ui::frmKontenStamm &ui() { return *m_ui; }
    platform::Fokus &fokus() { return *m_fokus; }

    // --- loading (Kontenauswahl.cpp / frmKontenStamm.cpp) ---
    // Selects the booking year's accounts into KKData; an empty year gets the internal clearing
    // account through Neueröffnung.
    void KontenSelect();

    // --- reading by number (Kontolesen.cpp) ---
    // Does the account LeseNr exist in the booking year? Result in KontoGefunden; KKChkData
    // then holds that account. False when the look-up could not run (reported to the error
    // report): nothing may then be read, opened or copied on its answer.
    bool KKChkSelect();
    // Moves KKData to the account typed in inpKontoNr, or handles the missing number.
    void KontoDirektLesen();
    // The form rule of a typed account number; result in the check-failed flag.
    void KontoNrFormPrüfen();

    // --- opening (Neueroeffnung.cpp) ---
    // Adds the account NeueKontoNr with its initial values and shows it. Asks nothing.
    void Neueröffnung();
    // Offers the copy of definitions into the new account; sets the closing note.
    void KontendatenÜbernehmenCheck();
    // The number `nr` was opened by another user just before this opening wrote it: says so
    // and shows that account.
    bool neuLesenUndFinden(const QString &nr);
    void vonAnderemEroeffnet(const QString &nr);

    // --- allocation key 0 (Schluessel0.cpp) ---
    void AslSelect();
    void Schl0Anlegen();

    // --- the save gate (Speichern.cpp) and the record checks (Pruefungen.cpp) ---
    // The record checks of the current account for the register page shown; result in the
    // check-failed flag. While they fail, the record cannot be left, the page not changed and
    // the screen not closed.
    void Fehlerprüfungen_0();
    void KontoBezeichnungPrüfen();
    void UstKontoQuerPrüfen();
    void Zl7PositionPrüfen();
    void KontoZusatzDatenJNPrüfen();
    // The entries of page 1 that are otherwise checked only when their field is left (the two
    // flag fields, the additional-data flag); a record is never left or its page changed with
    // one of them wrong. Result in the check-failed flag, with the page and the focus on the
    // field.
    void Eingabeprüfungen();
    // The type guard when the type shown differs from the one accepted for the record: asks,
    // and puts the accepted type back when the change is refused.
    void TypwechselPrüfen();
    // Looks up `nummer` among the year's accounts without moving KKData; returns the text for
    // the name label and sets the check-failed flag (with a message naming `feldname`) when the
    // number is not there. "0000" and "" are no reference.
    QString KontoNrCheck(const QString &nummer, const QString &feldname);
    // The type guard for a change from `alterTyp` to the type in inpKontoTypus.
    void KontoTypusPrüfen(int alterTyp);
    // Selects the year's balance rows of account `nr` into SSData. False when the look-up
    // could not run (reported); nothing may then go ahead on its answer.
    bool SsCheckSelect(const QString &nr);

    // --- deleting (Loeschen.cpp) ---
    void cmdKontoLöschen_Click();
    // cmdVerlauf and Ctrl+H: the changes of the account shown, from the change log.
    void kontoVerlaufZeigen();
    // Another user's save or delete of the account shown appears as a bar in the window.
    void fremdeAenderungBeobachten();

    // --- code lists and combos (Definitionen.cpp) ---
    // Shows the stored value of the combo's hidden field as the combo's item.
    void Texteinsetzen(QComboBox *kombi);
    // A choice in a definition combo: stores the item's value in its hidden field.
    void Kombi_Click(QComboBox *kombi);

    // --- position masters (Positionen.cpp) ---
    // With `gemerkt` (showing a record) a text read before in this screen is shown without a
    // look-up: paging through a year costs no query per record for the two position labels.
    void BilanzPosSelect(bool gemerkt = false);
    // False when the look-up could not run (reported).
    bool Zl7BilanzPosSelect(bool gemerkt = false);
    void BkPOS2DataSelect();
    void BkBlockPosSelect();
    void cmbAbrPos2_Texteinsetzen();
    void cmbBkBlockPos_Texteinsetzen();
    // The settlement positions' table was missing when the list was filled.
    bool abrPositionenFehlen() const { return m_abrPosFehlen; }

    // --- sibling components (Geschwister.cpp) ---
    // Calls `methode` of a new instance of component `progId` with the session's parameter
    // array (slots 0, 11 and 39 set), then `ergebnis` (if given) for its result. Hourglass
    // meanwhile; the focus goes back into the combo that had it. Null when nothing was chosen.
    QVariant geschwisterAufruf(const QString &progId, const char *methode, const char *ergebnis,
                               const QString &fehlerOrt);
    void cmdKontoListe_Click();
    void cmdBilPosAuswahl_Click();
    void cmdZl7BilPosAuswahl_Click();
    void cmdBilPosStamm_Click();
    void cmdZl7BilPosStamm_Click();
    void cmdÖNORMPosStammAufruf_Click();
    void cmdAbrPosStammAufruf_Click();
    void cmdBilPosloeschen_Click();

    // --- the whole year's check (Pruefliste.cpp) ---
    // Lists the faulty definitions of every account of the year; a chosen line shows its
    // account on its page with the focus in the field.
    void cmdPruefliste_Click();
    // Shows account `nr` on register page `seite` with the focus in control `feld`.
    void befundZeigen(const QString &nr, int seite, const QString &feld);
    // The save hook handed every record about to be written; true refuses the save. Nothing
    // refuses a save at this place yet.
    static bool SpeichernVerweigert(platform::DataControl &daten, const QString &kontoNr,
                                    const QString &tabelle);

    // Button handlers (connected; callable like pressing the button).
    void cmdKontoEinlesen_Click();
    void cmdKontoNeueröff_Click();
    void cmdExit_Click();
    void cmdHilfe_Click();

    // Event handlers of KKData.
    void KKData_Reposition();
    void KKData_Validate(int &Action, bool &Save);
    void KKData_Error(int DataErr, int &Response);

    // Key preview of the screen with the original's key codes (33, 34, 112, 113, 27).
    void Form_KeyDown(int &KeyCode);
    void Form_QueryUnload(bool &Cancel);

    // Screen flags of the record lifecycle, readable for the later units and the tests.
    bool oeffnungUnterdrueckt() const { return m_unterdrueckung1; }
    bool anzeigeUnterdrueckt() const { return m_unterdrueckung2; }
    bool fuellt() const { return m_fuellt; }
    // Set by a check that corrected the record itself: the record is written on leaving it.
    void setKorrigiert(bool an) { m_korrigiert = an; }
    // Switches the record checks off (the screen's own flag).
    void setPruefungenAus(bool an) { m_pruefungenAus = an; }
    // The closing note of the last copy of definitions ("" when nothing was copied).
    QString abschlussNotiz() const { return m_abschlussNotiz; }
    void setAbschlussNotiz(const QString &notiz) { m_abschlussNotiz = notiz; }

    // Shows the current record in every field, label and combo.
    void anzeigen();

    // Register page shown (1 to 7, as the checks count them).
    int seite() const { return m_seite; }
    // Shows a page without the change guard (the checks use it to show a faulty field).
    void seiteZeigen(int seite);
    // The change guard before the user leaves the page shown; true cancels the change.
    void TabStrip1_BeforeClick(bool &Cancel);

    // Escape and the dialog's own reject go through closing, so the checks run.
    void reject() override;

    // The title: the screen's caption, where the user is in the year ("Konto 17 von 314"), a
    // "*" while the record shown has unsaved changes, and "nur Anzeige" in view-only mode.
    void titelZeigen();

protected:
    bool eventFilter(QObject *obj, QEvent *ev) override;
    void closeEvent(QCloseEvent *ev) override;

private:
    void Form_Load();
    void hilfeEinrichten();
    void verbinden();
    void inpKontoNr_GotFocus();
    void inpKontoNr_Validate(bool &Cancel);
    void inpKontoNr_LostFocus();
    void inpKontoBezeichnung_GotFocus();
    void inpKontoBezeichnung_LostFocus();
    void TabStrip1_Click();
    void seiteEinrichten();
    void definitionenVerbinden();
    void kombisFuellen();
    void referenzFeld_Validate(QWidget *feld, bool &Cancel);
    void flagFeld_Validate(QWidget *feld, bool &Cancel);
    // Folds an accepted lower-case letter; false, with the message, for any other entry.
    bool flagFeldPrüfen(QLineEdit *feld);
    void kontoTypus_Validate();
    // The page-change guard before the tab bar acts on a click or key; true swallows the event.
    bool registerVorWechsel(QEvent *ev);
    // The page guard for a change to page index `ziel` (0-based): leaves the field being edited,
    // then runs the checks of the page shown. False when the change is refused.
    bool seiteFreigeben(int ziel);
    // Ctrl+Tab and Ctrl+Shift+Tab: the next or previous page, through the same guard as a click.
    void seiteWeiter(int schritt);
    // Keyboard shortcuts of the main buttons; each acts as a click, field check first.
    void tastenkuerzelEinrichten();
    // Readable text on the locked pages of view-only mode.
    void anzeigeFarben();
    // The typed number stays unread when the focus goes to one of these (see the number
    // field's Validate).
    bool nummerBleibtUngelesen() const;
    void chckPVAZusatz_Click();
    // Errors of the settlement position controls (a missing table is said once).
    void positionsFehler(int DataErr, int &Response);
    // The balance-sheet position of the record as stored, and its text.
    void bilanzPositionZeigen();
    // The settlement positions and blocks after their masters were maintained.
    void positionslistenNeu();
    // The labels beside the three reference fields, looked up for the record shown.
    void referenzNamenZeigen();
    // The stored definitions as the fields of the screen hold them now.
    kontenregeln::KontoDefinition definitionAmSchirm() const;

    bool hatZeilen() const;
    bool aktuelleZeile() const;
    // KontoNr of the current record, right-trimmed ("" without a current record).
    QString aktuelleNr() const;
    // Puts the current record's number back into inpKontoNr (clears it in an empty year).
    void aktuelleNrZurueck();

    std::unique_ptr<Ui::frmKontenStamm> m_ui;
    platform::Fokus *m_fokus = nullptr;

    // The first and second suppression flags of the opening, the VAT-label flag.
    bool m_unterdrueckung1 = false;
    bool m_unterdrueckung2 = false;
    bool m_ustLabelFlag = false;
    bool m_korrigiert = false;
    bool m_pruefungenAus = false;
    // Set while a record is shown, so that program changes of the combos write nothing.
    bool m_fuellt = false;
    // Text of inpKontoNr when it received the focus.
    QString m_letzteNr;
    // The number text the form rule rejected last ("" otherwise).
    QString m_abgelehnteNr;
    QString m_abschlussNotiz;
    // The text of the reference field that last received the focus; none after a list call.
    std::optional<QString> m_erinnert;
    // The combo that had the focus last: a sibling call puts the focus back there.
    QComboBox *m_letzteKombi = nullptr;
    // The type code (as its field shows it) accepted for the record shown: the stored one, or
    // one the type guard let through.
    QString m_typAngenommen;
    // Register page shown (1 to 7).
    int m_seite = 1;
    // Set while the screen switches pages itself: no change guard then.
    bool m_seiteIntern = false;
    // The page (1 to 7) the guard let the tab bar change to; 0 when none.
    int m_freigegebeneSeite = 0;
    // A refused click on a page header: its release is swallowed as well.
    bool m_registerLoslassenSchlucken = false;
    bool m_abrPosFehlen = false;
    // Texts of balance-sheet positions read in this screen, by the look-up's parameters; emptied
    // when the user may have edited the masters (their sibling screens).
    QHash<QString, QString> m_positionsTexte;
    // The screen's caption as the layout gives it (titelZeigen adds to it).
    QString m_titel;
    // The control that had the focus before the "?" button took it.
    QPointer<QWidget> m_feldVorHilfe;
};
