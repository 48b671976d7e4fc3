// Renders the screens of the component to PNG files without a display, for the README and for
// checking the layouts by eye: kontenstamm-screenshots ZIELORDNER
#include "accounts/frmKontenStamm.h"
#include "jahr/Demodaten.h"
#include "frame/Hilfedokument.h"
#include "frame/Hilfefenster.h"
#include "frame/mdlKontenStamm.h"
#include "platform/storage/Database.h"
#include "platform/ui/DataControl.h"
#include "screens/Bildschirmstil.h"
#include "screens/Bindungen.h"
#include "ui_frmKoBeginn.h"
#include "ui_frmKrNeu.h"
#include "ui_frmKreditorenKontenStamm.h"
#include "ui_frmNeu.h"
#if __has_include("ui_frmKontenStamm.h")
#include "ui_frmKontenStamm.h"
#define ZEP_MIT_KONTENSTAMM 1
#endif

#include <QApplication>
#include <QDialog>
#include <QDir>
#include <QLineEdit>
#include <QTabBar>
#include <QTemporaryDir>
#include <QTextStream>
#include <functional>

namespace {

QString g_ziel;
int g_fehler = 0;

void speichern(QWidget *w, const QString &name)
{
    w->show();
    QApplication::processEvents();
    const QString datei = QDir(g_ziel).filePath(name + QStringLiteral(".png"));
    if (!w->grab().save(datei)) {
        QTextStream(stderr) << "Konnte " << datei << " nicht schreiben.\n";
        ++g_fehler;
        return;
    }
    QTextStream(stdout) << datei << '\n';
}

template<class Ui> void bildschirm(const QString &name)
{
    QDialog d;
    Ui ui;
    ui.setupUi(&d);
    screens::bildschirmEinrichten(&d);
    screens::bindungenHerstellen(&d);
    speichern(&d, name);
}

#ifdef ZEP_MIT_KONTENSTAMM
// One picture per register page: the page's frame alone is shown, the shared frame of the
// operating-cost VAT key on the second and third page.
void kontenstamm()
{
    QDialog d;
    Ui::frmKontenStamm ui;
    ui.setupUi(&d);
    screens::bildschirmEinrichten(&d);
    screens::bindungenHerstellen(&d);
    auto *reiter = d.findChild<QTabBar *>(QStringLiteral("TabStrip1"));
    for (int seite = 0; seite < 7; ++seite) {
        for (int i = 0; i < 7; ++i) {
            if (auto *f = d.findChild<QWidget *>(QStringLiteral("frame1_%1").arg(i)))
                f->setVisible(i == seite);
        }
        if (auto *bk = d.findChild<QWidget *>(QStringLiteral("fraBkUstSchl")))
            bk->setVisible(seite == 1 || seite == 2);
        if (reiter && seite < reiter->count())
            reiter->setCurrentIndex(seite);
        speichern(&d, QStringLiteral("frmKontenStamm-seite%1").arg(seite + 1));
    }
}
#endif

// The screen as a user sees it: an account of the demo database's last year, on its first
// and its second page.
void kontenstammMitKonto()
{
    QTemporaryDir ordner;
    const QString pfad = ordner.filePath(QStringLiteral("demo.zdb"));
    jahr::demoDatenbankAnlegen(*platform::storage::Database::create(pfad));
    namespace mks = mdlKontenStamm;
    mks::zuruecksetzen();
    mks::DatenbankPfad = pfad;
    mks::Buchungsjahr = jahr::demoLetztesJahr;
    mks::VerarbeitungsBuchungsjahr = jahr::demoLetztesJahr;
    mks::AktuellesProgramm = QStringLiteral("frmKontenStamm");
    mks::AufrufInfo[mks::slot::Hilfedatei] = QStringLiteral(ZEP_HILFE_QUELLE);
    frmKontenStamm form;
    auto &kk = *form.ui().KKData;
    kk.rs().MoveFirst();
    for (int i = 1; i < 17; ++i)
        kk.rs().MoveNext();
    speichern(&form, QStringLiteral("frmKontenStamm-konto"));
    form.seiteZeigen(2);
    speichern(&form, QStringLiteral("frmKontenStamm-konto-seite2"));
    form.ui().KKData->schliessen();
}

// The help window on the shipped help: at a field's section, and with a search under way.
void hilfe()
{
    const auto dokument = frame::Hilfedokument::laden(QStringLiteral(ZEP_HILFE_QUELLE));
    if (!dokument) {
        QTextStream(stderr) << "Die Hilfedatei " << ZEP_HILFE_QUELLE << " fehlt.\n";
        ++g_fehler;
        return;
    }
    frame::Hilfefenster fenster;
    fenster.zeigen(dokument, QStringLiteral("inpBkEinnAusgPos"));
    speichern(&fenster, QStringLiteral("frmHilfe"));
    fenster.zeigen(dokument, QStringLiteral("inpKontoUstKtoNr"));
    fenster.suchfeld()->setText(QStringLiteral("UstKontoNummer"));
    speichern(&fenster, QStringLiteral("frmHilfe-suche"));
}

} // namespace

int main(int argc, char **argv)
{
    QApplication app(argc, argv);
    g_ziel = argc > 1 ? QString::fromLocal8Bit(argv[1]) : QStringLiteral(".");
    if (!QDir().mkpath(g_ziel)) {
        QTextStream(stderr) << "Zielordner " << g_ziel << " lässt sich nicht anlegen.\n";
        return 2;
    }
#ifdef ZEP_MIT_KONTENSTAMM
    kontenstamm();
    kontenstammMitKonto();
#else
    QTextStream(stderr) << "frmKontenStamm: Layout noch nicht vorhanden, übersprungen.\n";
#endif
    bildschirm<Ui::frmNeu>(QStringLiteral("frmNeu"));
    bildschirm<Ui::frmKoBeginn>(QStringLiteral("frmKoBeginn"));
    bildschirm<Ui::frmKreditorenKontenStamm>(QStringLiteral("frmKreditorenKontenStamm"));
    bildschirm<Ui::frmKrNeu>(QStringLiteral("frmKrNeu"));
    hilfe();
    return g_fehler == 0 ? 0 : 1;
}
