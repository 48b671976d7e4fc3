#pragma once

#include <QDialog>
#include <memory>

namespace Ui {
class frmNeu;
}
class frmKontenStamm;

// The number dialog for a new general-ledger account. Proposes NeueroeffnungsNr; refuses an
// empty number, one of fewer than 4 characters and one that exists in the booking year (asking
// the screen's KKChkSelect), each time with the focus back in the input. On OK the typed number
// is NeueKontoNr (6 characters) and the dialog is accepted; the cancel button sets
// DialogAbgebrochen and ImNummernfeldBleiben.
class frmNeu : public QDialog
{
    Q_OBJECT

public:
    explicit frmNeu(frmKontenStamm *screen);
    ~frmNeu() override;

    Ui::frmNeu &ui() { return *m_ui; }

    void cmdOK_Click();
    void cmdAbbrechen_Click();

private:
    void Form_Load();

    std::unique_ptr<Ui::frmNeu> m_ui;
    frmKontenStamm *m_screen;
};
