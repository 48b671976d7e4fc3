#include "Sprache.h"

#include <QCoreApplication>
#include <QLibraryInfo>
#include <QPointer>
#include <QTranslator>

namespace platform {

bool deutscheStandardtexte()
{
    // Both belong to the application object they were tried with.
    static QPointer<QTranslator> uebersetzung;
    static QPointer<QCoreApplication> vergeblich;
    QCoreApplication *app = QCoreApplication::instance();
    if (uebersetzung)
        return true;
    if (!app || app == vergeblich)
        return false;
    auto *t = new QTranslator(app);
    if (!t->load(QStringLiteral("qtbase_de"),
                 QLibraryInfo::path(QLibraryInfo::TranslationsPath))) {
        qWarning("Qts deutsche Texte (qtbase_de.qm) fehlen in %s; die Standardknöpfe bleiben "
                 "englisch.",
                 qPrintable(QLibraryInfo::path(QLibraryInfo::TranslationsPath)));
        delete t;
        vergeblich = app;
        return false;
    }
    QCoreApplication::installTranslator(t);
    uebersetzung = t;
    return true;
}

} // namespace platform
