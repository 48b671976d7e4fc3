#pragma once

#include <QDialog>
#include <memory>

namespace Ui {
class frmKoBeginn;
}
class frmKontenStamm;

// Asks, right after an account was opened, for an existing account of the year whose
// definitions the new one takes over. Proposes the source of the last copy (UebernahmeKontoNr).
// OK with a number the year does not hold says so and stays open; OK with a number or an empty
// input sets UebernahmeKontoNr and closes; cancel, Escape and closing set UebernahmeAbgebrochen.
class frmKoBeginn : public QDialog
{
    Q_OBJECT

public:
    explicit frmKoBeginn(frmKontenStamm *screen);
    ~frmKoBeginn() override;

    Ui::frmKoBeginn &ui() { return *m_ui; }

    void cmdAuswÜbernehmen_Click();
    void cmdAbbrechen_Click();
    void cmdKontoListe_Click();

    void reject() override;

private:
    void Form_Load();

    std::unique_ptr<Ui::frmKoBeginn> m_ui;
    frmKontenStamm *m_screen;
    bool m_uebernommen = false;
};
