#include "accounts/frmNeu.h"

#include "accounts/Kontentexte.h"
#include "accounts/frmKontenStamm.h"
#include "frame/FormSkalieren.h"
#include "frame/Onlinehilfe.h"
#include "frame/mdlKontenStamm.h"
#include "platform/ui/MsgBox.h"
#include "screens/Bildschirmstil.h"
#include "ui_frmNeu.h"

#include <QLineEdit>
#include <QPushButton>

using platform::MsgBox;
namespace mks = mdlKontenStamm;
namespace texte = kontentexte;

frmNeu::frmNeu(frmKontenStamm *screen)
    : QDialog(screen)
    , m_ui(std::make_unique<Ui::frmNeu>())
    , m_screen(screen)
{
    m_ui->setupUi(this);
    screens::bildschirmEinrichten(this);
    connect(m_ui->cmdOK, &QPushButton::clicked, this, &frmNeu::cmdOK_Click);
    connect(m_ui->cmdAbbrechen, &QPushButton::clicked, this, &frmNeu::cmdAbbrechen_Click);
    new frame::F1Hilfe(this);
    Form_Load();
}

frmNeu::~frmNeu() = default;

void frmNeu::Form_Load()
{
    m_ui->inpNeuEröffKontoNr->setText(texte::rtrim(mks::NeueroeffnungsNr));
    m_ui->cmdOK->setDefault(true);
    bool positionen = true;
    bool schriften = true;
    double faktor = 0;
    frame::FormSkalieren(this, positionen, schriften, faktor);
}

void frmNeu::cmdOK_Click()
{
    auto *feld = m_ui->inpNeuEröffKontoNr;
    const QString nr = texte::rtrim(feld->text());
    if (nr.isEmpty()) {
        MsgBox(texte::NeuLeer, platform::vbOKOnly, texte::TitelNeuLeer);
        feld->setFocus();
        return;
    }
    // No upper bound and no leading zeros added: the user types "0001" for account 1.
    if (nr.size() < 4) {
        MsgBox(texte::neuZuKurz(), platform::vbOKOnly, texte::TitelNeuStellen);
        feld->setFocus();
        return;
    }
    mks::NeueKontoNr = mks::festeLaenge6(nr);
    mks::LeseNr = mks::festeLaenge6(nr);
    // Not knowing whether it exists (the look-up has been reported), the number is not taken.
    if (!m_screen->KKChkSelect()) {
        feld->setFocus();
        return;
    }
    if (mks::KontoGefunden) {
        MsgBox(texte::BereitsExistent);
        feld->setFocus();
        return;
    }
    accept();
}

void frmNeu::cmdAbbrechen_Click()
{
    mks::DialogAbgebrochen = true;
    mks::ImNummernfeldBleiben = true;
    reject();
}
