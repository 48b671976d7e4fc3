#include "zelKontenStamm.h"

#include "accounts/frmKontenStamm.h"
#include "creditors/frmKreditorenKontenStamm.h"
#include "frame/DatenSteuerungen.h"
#include "frame/mdlFehlerZL.h"
#include "frame/mdlKontenStamm.h"
#include "platform/core/RuntimeError.h"
#include "platform/core/VbWerte.h"
#include "platform/ui/Anmeldung.h"
#include "platform/ui/Fehlerfalle.h"
#include "platform/ui/MsgBox.h"
#include "platform/ui/Sprache.h"
#include "siblings/zelAllgError.h"

#include <QWidget>

using namespace mdlKontenStamm;
using platform::RuntimeError;
namespace vb = platform::vb;

namespace {

// The tables each screen reads when it loads, and the one it changes.
const QStringList KontenTabellen = {
    QStringLiteral("ObjKanzleiKontenstamm"), QStringLiteral("ObjKanzleiSalden"),
    QStringLiteral("AllgSchluesselDaten"),   QStringLiteral("BilanzPos"),
    QStringLiteral("BilanzPosZL7"),          QStringLiteral("AbrPosBkAbr"),
    QStringLiteral("AbrPosBkBlöcke"),
};
const QStringList KreditorenTabellen
    = {QStringLiteral("KreditorenKontenstamm"), QStringLiteral("KreditorenBuchungen")};

// A slot of the host's array, with the runtime's bounds check.
const QVariant &aufrufSlot(const QVariantList &info, int index)
{
    if (index < 0 || index >= info.size())
        RuntimeError::ausloesen(platform::fehlernummer::IndexAusserhalb);
    return info.at(index);
}

} // namespace

zelKontenStamm::zelKontenStamm(QObject *parent)
    : QObject(parent)
{
    AufrufInfo = QVariantList(AufrufInfoGroesse);
    siblingsRegistrieren();
    mdlFehlerZL::alsFehlerberichtEinrichten();
    platform::anmeldungEinrichten();
    // A host of the suite may bring its own application object: the screens speak German all
    // the same.
    platform::deutscheStandardtexte();
}

zelKontenStamm::~zelKontenStamm()
{
    delete m_frmKontenStamm.data();
    emit dllKontenStammEvent(3);
}

void zelKontenStamm::enden() { }

bool zelKontenStamm::sitzungUebernehmen(QVariantList &Info)
{
    AufrufInfo = Info;
    // Both slots are read before they are combined: an array without index 42 ends the call
    // with the subscript error also when slot 2 alone would decide.
    const bool zahl98 = vb::gleich(aufrufSlot(AufrufInfo, slot::Zahl2), 98);
    const bool variante2 = vb::gleich(aufrufSlot(AufrufInfo, slot::HostVariante), 2);
    if (zahl98 || variante2)
        Sondereinstieg = true;

    DatenbankPfad = vb::CStr(aufrufSlot(AufrufInfo, slot::Datenbank));
    AufrufText1 = vb::CStr(aufrufSlot(AufrufInfo, slot::Text1));
    AufrufZahl2 = vb::CInt(aufrufSlot(AufrufInfo, slot::Zahl2));

    AufrufInfo[slot::VerbindungsArt] = aufrufSlot(Info, slot::VerbindungsArt);
    NurAnzeige = vb::gleich(aufrufSlot(AufrufInfo, slot::Aufrufart), AufrufartNurAnzeige);
    AufrufText4 = vb::CStr(aufrufSlot(AufrufInfo, slot::VerbindungsArt));

    Buchungsjahr = vb::CInt(aufrufSlot(AufrufInfo, slot::Buchungsjahr));
    VerarbeitungsBuchungsjahr = vb::CInt(aufrufSlot(AufrufInfo, slot::VerarbeitungsBuchungsjahr));

    if (VerarbeitungsBuchungsjahr == 0) {
        platform::MsgBox(QStringLiteral("das VerarbeitungsBuchungsjahr = 0\r\n"
                                        "Aufruf von Kontenstamm abgebrochen"),
                         platform::vbOKOnly, QStringLiteral("in zelKontenStamm"));
        return false;
    }
    return true;
}

void zelKontenStamm::Kontenstamm_Aufruf(QVariantList &Info)
{
    if (!sitzungUebernehmen(Info))
        return;
    AktuellesProgramm = QStringLiteral("frmKontenStamm");
    // A database that cannot be reached or read is said once, before any screen loads.
    const auto db = frame::sitzungOeffnen(KontenTabellen, KontenTabellen.front());
    if (!db)
        return;
    platform::Falle(QStringLiteral("zelKontenStamm, in Kontenstamm_Aufruf"), [this] {
        bildschirmLaden();
        m_frmKontenStamm->exec();
        // Closed by the user: unloaded. Hidden by ausblenden: stays loaded for einblenden.
        if (m_entladen)
            delete m_frmKontenStamm.data();
    });
}

void zelKontenStamm::KreditorenBildschirm_Aufruf(QVariantList &Info)
{
    if (!sitzungUebernehmen(Info))
        return;
    const auto db = frame::sitzungOeffnen(KreditorenTabellen, KreditorenTabellen.front());
    if (!db)
        return;
    platform::Falle(QStringLiteral("zelKontenStamm, in KreditorenBildschirm_Aufruf"),
                    [] { creditors::kreditorenKontenstammZeigen(); });
}

void zelKontenStamm::KreditorenKontenstamm_Aufruf(QVariantList &)
{
    platform::MsgBox(QStringLiteral("der Kreditorenstamm wurde durch die AdDaten ersetzt"));
}

void zelKontenStamm::einblenden()
{
    if (!m_frmKontenStamm)
        RuntimeError::ausloesen(platform::fehlernummer::ObjektvariableNichtFestgelegt);
    m_frmKontenStamm->setVisible(true);
    m_frmKontenStamm->setWindowState(Qt::WindowNoState);
}

void zelKontenStamm::ausblenden()
{
    if (!m_frmKontenStamm)
        RuntimeError::ausloesen(platform::fehlernummer::ObjektvariableNichtFestgelegt);
    m_frmKontenStamm->setVisible(false);
}

void zelKontenStamm::SetzenFocus()
{
    if (!m_frmKontenStamm)
        RuntimeError::ausloesen(platform::fehlernummer::ObjektvariableNichtFestgelegt);
    QWidget *aktiv = m_frmKontenStamm->focusWidget();
    if (!aktiv)
        RuntimeError::ausloesen(platform::fehlernummer::ObjektvariableNichtFestgelegt);
    aktiv->setFocus();
}

bool zelKontenStamm::Programmende_OK() const
{
    return mdlKontenStamm::Programmende_OK;
}

void zelKontenStamm::setProgrammende_OK(bool wert)
{
    mdlKontenStamm::Programmende_OK = wert;
}

void zelKontenStamm::EreignisMelden(qint16 eventnr)
{
    emit dllKontenStammEvent(eventnr);
}

QDialog *zelKontenStamm::bildschirm() const
{
    return m_frmKontenStamm;
}

void zelKontenStamm::bildschirmLaden()
{
    bildschirmEntladen();
    // Loading reads the session just taken over: the call's database and booking year.
    m_entladen = false;
    m_frmKontenStamm = new frmKontenStamm();
    connect(m_frmKontenStamm.data(), &QDialog::finished, this, [this] { m_entladen = true; });
}

void zelKontenStamm::bildschirmEntladen()
{
    if (!m_frmKontenStamm)
        return;
    // A screen of an earlier call that was only hidden: closing it runs its checks and writes
    // its edits; while they refuse, the user finishes it before the new year is loaded.
    m_frmKontenStamm->setVisible(true);
    while (m_frmKontenStamm && !m_entladen && !m_frmKontenStamm->close())
        m_frmKontenStamm->exec();
    delete m_frmKontenStamm.data();
}
