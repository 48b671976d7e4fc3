#include "creditors/frmKrNeu.h"

#include "creditors/Kreditorenregeln.h"
#include "creditors/frmKreditorenKontenStamm.h"
#include "creditors/mdlKreditoren.h"
#include "frame/FormSkalieren.h"
#include "frame/Onlinehilfe.h"
#include "frame/mdlKontenStamm.h"
#include "platform/ui/MsgBox.h"
#include "screens/Bildschirmstil.h"
#include "ui_frmKrNeu.h"

#include <QPushButton>

using namespace creditors::mdlKreditoren;
namespace regeln = creditors::regeln;

namespace creditors {

frmKrNeu::frmKrNeu(frmKreditorenKontenStamm *screen)
    : QDialog(screen)
    , m_ui(std::make_unique<Ui::frmKrNeu>())
    , m_screen(screen)
{
    m_ui->setupUi(this);
    screens::bildschirmEinrichten(this);
    connect(m_ui->cmdOK, &QPushButton::clicked, this, &frmKrNeu::cmdOK_Click);
    connect(m_ui->cmdAbbrechen, &QPushButton::clicked, this, &frmKrNeu::cmdAbbrechen_Click);
    new frame::F1Hilfe(this);
    Form_Load();
}

frmKrNeu::~frmKrNeu() = default;

void frmKrNeu::Form_Load()
{
    m_ui->inpNeuEröffKontoNr->setText(QString::number(KrNeuNr));
    m_ui->cmdOK->setDefault(true);
    // Centred over the creditor screen as it was remembered at its load.
    const QSize eigen = frameGeometry().size();
    move(KrFormLeft + KrFormWidth / 2 - eigen.width() / 2,
         KrFormTop + KrFormHeight / 2 - eigen.height() / 2);
    bool positionen = true;
    bool schriften = true;
    double faktor = 0;
    frame::FormSkalieren(this, positionen, schriften, faktor);
}

void frmKrNeu::cmdOK_Click()
{
    auto *feld = m_ui->inpNeuEröffKontoNr;
    const QString wert = feld->text();
    if (regeln::istNull(wert)) {
        platform::MsgBox(regeln::TextNullUngueltig, platform::vbOKOnly, regeln::TitelNullUngueltig);
        feld->setFocus();
        return;
    }
    KrNeuNrText = mdlKontenStamm::festeLaenge6(wert);
    KrSuchNr = regeln::kontoNr(wert);
    // Not knowing whether it exists (the look-up has been reported), the number is not taken.
    if (!m_screen->KRChkSelect()) {
        feld->setFocus();
        return;
    }
    if (KrGefunden) {
        platform::MsgBox(regeln::TextBereitsExistent);
        feld->setFocus();
        return;
    }
    accept();
}

void frmKrNeu::cmdAbbrechen_Click()
{
    KrNeuAbbruch = true;
    reject();
}

} // namespace creditors
