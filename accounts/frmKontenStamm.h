#pragma once

#include <QDialog>
#include <QString>
#include <memory>
#include <utility>
#include <vector>

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
    // then holds that account. Errors go to the error report.
    void KKChkSelect();
    // Moves KKData to the account typed in inpKontoNr, or handles the missing number.
    void KontoDirektLesen();
    // The form rule of a typed account number; result in the check-failed flag.
    void KontoNrFormPrüfen();

    // --- opening (Neueroeffnung.cpp) ---
    // Adds the account NeueKontoNr with its initial values and shows it. Asks nothing.
    void Neueröffnung();
    // Offers the copy of definitions into the new account; sets the closing note.
    void KontendatenÜbernehmenCheck();

    // --- allocation key 0 (Schluessel0.cpp) ---
    void AslSelect();
    void Schl0Anlegen();

    // --- the save gate (Speichern.cpp) ---
    // The record checks of the current account; result in the check-failed flag. While they
    // fail, the record cannot be left and the screen cannot be closed.
    void Fehlerprüfungen_0();
    void KontoBezeichnungPrüfen();
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

    // Register page shown (1 to 7, as the checks count them).
    int seite() const;
    void seiteZeigen(int seite);

    // Escape and the dialog's own reject go through closing, so the checks run.
    void reject() override;

protected:
    bool eventFilter(QObject *obj, QEvent *ev) override;
    void closeEvent(QCloseEvent *ev) override;

private:
    void Form_Load();
    void verbinden();
    void inpKontoNr_GotFocus();
    void inpKontoNr_Validate(bool &Cancel);
    void inpKontoNr_LostFocus();
    void inpKontoBezeichnung_GotFocus();
    void inpKontoBezeichnung_LostFocus();
    void TabStrip1_Click();
    void anzeigen();

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
    QString m_abschlussNotiz;
    // The definition combos in display order with their hidden code fields.
    std::vector<std::pair<QComboBox *, QLineEdit *>> m_kombis;
};
