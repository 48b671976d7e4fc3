#pragma once

#include <QDialog>
#include <memory>

namespace Ui {
class frmKreditorenKontenStamm;
}
namespace platform {
class DataControl;
class Fokus;
} // namespace platform
class QComboBox;
class QLineEdit;
class QPushButton;

namespace creditors {

// The creditor account master screen: browse the creditor accounts, read one by number, correct
// its name and type, open new ones (through frmKrNeu) and delete those without postings.
// Expects the session state (database path, booking year, call information) set as the
// component's call sets it, and is shown modally. Its working values live in mdlKreditoren.
//
// The procedures below are those the creditor rules name; they are public because frmKrNeu calls
// KRChkSelect and because KrBuchungenLöschen and KrKontoNrPrüfen, which no flow of the screen
// calls, must still be reachable with their behaviour.
class frmKreditorenKontenStamm : public QDialog
{
    Q_OBJECT

public:
    explicit frmKreditorenKontenStamm(QWidget *parent = nullptr);
    ~frmKreditorenKontenStamm() override;

    // Loads every creditor account into KRData; a hint box when there is none.
    void KrKontenSelect();
    // Does the account KrSuchNr exist? Result in KrGefunden. False when the look-up could not
    // run (reported to the error report): nothing may go ahead on its answer.
    bool KRChkSelect();
    // Moves to the account typed in inpKrKontoNr or handles the missing number.
    void KrDirektlesen();
    void KontoTypusAnzeigen();
    void KrKontoNrVerlassen();
    // The record checks; the result is in the component's check-failed flag.
    void Fehlerprüfungen();
    void KontoBezeichnungPrüfen();
    void KontoTypusPrüfen();
    // Selects the postings of the number in inpKrKontoNr into KbData. False when the look-up
    // could not run (reported): KrBuchungenVorhanden then says nothing.
    bool KrBuchungenSelect();
    // Writes a new account KrNeuNr with its initial values and shows it.
    void KrKontoAnlegen();
    // Removes the balances and postings of the account in inpKrKontoNr (never the account).
    // Errors of the database are not trapped.
    void KrBuchungenLöschen();
    void KrKontoNrPrüfen();

    // The save-time check handed the row about to be written; non-zero refuses the save.
    // Nothing is checked at save time yet, so it always agrees.
    static int SpeichernPrüfen(platform::DataControl &daten, const QString &tabelle,
                               const QString &kontoNr);

    // The controls, for the host's tests and the number dialog.
    Ui::frmKreditorenKontenStamm &ui() { return *m_ui; }
    platform::Fokus &fokus() { return *m_fokus; }

    // Button handlers (connected to the buttons; callable like pressing the button).
    void cmdKontoEinlesen_Click();
    void cmdKontoLöschen_Click();
    void cmdKontoListe_Click();
    void cmdKontoNeueröff_Click();
    void cmdExit_Click();
    // cmdVerlauf and Ctrl+H: the changes of the account shown, from the change log.
    void kontoVerlaufZeigen();
    // Another user's save or delete of the account shown appears as a bar in the window.
    void fremdeAenderungBeobachten();

protected:
    bool eventFilter(QObject *obj, QEvent *ev) override;
    void closeEvent(QCloseEvent *ev) override;
    void showEvent(QShowEvent *ev) override;

public:
    // Escape and the dialog's own reject go through closing, so the checks run.
    void reject() override;

private:
    void Form_Load();
    void Form_KeyDown(int &keyCode);
    void Form_KeyPress(int &keyAscii);
    void Form_QueryUnload(bool &cancel);
    void KRData_Reposition();
    void KRData_Validate(int &action, bool &save);
    void cmbKontoTypus_Click();
    void cmbKontoTypus_KeyDown(int &keyCode);
    void cmbKontoTypus_Validate(bool &cancel);
    void inpKrKontoNr_GotFocus();
    void inpKrKontoNr_LostFocus();
    void inpKrKontoBezeichnung_LostFocus();
    void inpKrKontoTypus_LostFocus();

    void verbinden();
    void formMerken();
    void titelZeigen();
    // The combo shows `text` without selecting an entry (what the original set as its Text).
    void kombiText(const QString &text);
    bool hatZeilen() const;
    bool aktuelleZeile() const;
    // The number of the current row as text, "" when there is none.
    QString aktuelleNrText() const;
    // Puts the current row's number back into inpKrKontoNr (nothing when there is no row).
    void aktuelleNrZurueck();

    std::unique_ptr<Ui::frmKreditorenKontenStamm> m_ui;
    platform::Fokus *m_fokus = nullptr;
    QString m_titel; // the caption as the layout gives it (titelZeigen adds to it)
    bool m_formGemerkt = false;
};

// Runs the creditor account master modally for the session set up by the component's call and
// returns the dialog's result. Errors while loading or showing it go to the error report.
int kreditorenKontenstammZeigen(QWidget *parent = nullptr);

} // namespace creditors
