#include "accounts/frmKoBeginn.h"

#include "accounts/Kontentexte.h"
#include "accounts/frmKontenStamm.h"
#include "frame/FormSkalieren.h"
#include "frame/Onlinehilfe.h"
#include "frame/mdlKontenStamm.h"
#include "platform/ui/DataControl.h"
#include "platform/ui/MsgBox.h"
#include "screens/Bildschirmstil.h"
#include "ui_frmKoBeginn.h"

#include <QLabel>
#include <QLineEdit>
#include <QPushButton>

using platform::MsgBox;
namespace mks = mdlKontenStamm;
namespace texte = kontentexte;

frmKoBeginn::frmKoBeginn(frmKontenStamm *screen)
    : QDialog(screen)
    , m_ui(std::make_unique<Ui::frmKoBeginn>())
    , m_screen(screen)
{
    m_ui->setupUi(this);
    screens::bildschirmEinrichten(this);
    connect(m_ui->cmdAuswÜbernehmen, &QPushButton::clicked, this,
            &frmKoBeginn::cmdAuswÜbernehmen_Click);
    connect(m_ui->cmdAbbrechen, &QPushButton::clicked, this, &frmKoBeginn::cmdAbbrechen_Click);
    connect(m_ui->cmdKontoListe, &QPushButton::clicked, this, &frmKoBeginn::cmdKontoListe_Click);
    new frame::F1Hilfe(this);
    Form_Load();
}

frmKoBeginn::~frmKoBeginn() = default;

void frmKoBeginn::Form_Load()
{
    mks::UebernahmeAbgebrochen = false;
    m_ui->lblInfo->setText(texte::uebernahmeInfo());
    m_ui->inpÜbKontoNr->setText(texte::rtrim(mks::UebernahmeKontoNr));
    const auto *kk = m_screen->findChild<platform::DataControl *>(QStringLiteral("KKData"));
    if (kk) {
        m_ui->KKChkData->setDatabaseName(kk->DatabaseName());
        m_ui->KKChkData->setConnect(kk->Connect());
    }
    m_ui->cmdAuswÜbernehmen->setDefault(true);
    bool positionen = true;
    bool schriften = true;
    double faktor = 0;
    frame::FormSkalieren(this, positionen, schriften, faktor);
}

void frmKoBeginn::cmdAuswÜbernehmen_Click()
{
    const QString eingabe = m_ui->inpÜbKontoNr->text();
    const QString nr = eingabe.trimmed();
    // Only an input left empty copies nothing; blanks are a number that does not exist.
    if (!eingabe.isEmpty()) {
        mks::LeseNr = mks::festeLaenge6(nr);
        // A look-up that could not run has been reported; the dialog stays open.
        const bool gelesen = m_screen->KKChkSelect();
        if (gelesen && !mks::KontoGefunden) {
            MsgBox(texte::uebernahmeNichtExistent(nr), platform::vbOKOnly,
                   texte::TitelUebernahmeNichtExistent);
        }
        if (!gelesen || !mks::KontoGefunden) {
            m_ui->inpÜbKontoNr->setFocus();
            return;
        }
    }
    mks::UebernahmeKontoNr = nr;
    m_uebernommen = true;
    accept();
}

void frmKoBeginn::cmdAbbrechen_Click()
{
    reject();
}

void frmKoBeginn::reject()
{
    // Escape, the cancel button and closing the window: nothing is copied.
    if (!m_uebernommen)
        mks::UebernahmeAbgebrochen = true;
    QDialog::reject();
}

void frmKoBeginn::cmdKontoListe_Click()
{
    const QVariant gewaehlt = m_screen->geschwisterAufruf(
        QStringLiteral("zelDiverseListen"), "KontenListe", "AuswahlNr", texte::OrtKoBeginnListe);
    const QString nr = gewaehlt.isNull() ? QString() : texte::rtrim(gewaehlt.toString());
    if (!nr.isEmpty() && nr != u"0")
        m_ui->inpÜbKontoNr->setText(nr);
    m_ui->inpÜbKontoNr->setFocus();
}
