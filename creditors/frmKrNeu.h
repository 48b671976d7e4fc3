#pragma once

#include <QDialog>
#include <memory>

namespace Ui {
class frmKrNeu;
}

namespace creditors {

class frmKreditorenKontenStamm;

// The number dialog for a new creditor account. Shows KrNeuNr, refuses 0 and numbers that exist
// already (asking the creditor screen's KRChkSelect), and on OK leaves the typed number in
// KrNeuNrText, six characters. Closed any other way than by OK it counts as cancelled
// (KrNeuAbbruch, set by the screen from the dialog's result).
class frmKrNeu : public QDialog
{
    Q_OBJECT

public:
    explicit frmKrNeu(frmKreditorenKontenStamm *screen);
    ~frmKrNeu() override;

    Ui::frmKrNeu &ui() { return *m_ui; }

    void cmdOK_Click();
    void cmdAbbrechen_Click();

private:
    void Form_Load();

    std::unique_ptr<Ui::frmKrNeu> m_ui;
    frmKreditorenKontenStamm *m_screen;
};

} // namespace creditors
