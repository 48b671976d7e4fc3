#include "screens/Bindungen.h"

#include "platform/core/RuntimeError.h"
#include "platform/ui/DataControl.h"

#include <QWidget>

namespace screens {

int bindungenHerstellen(QWidget *form)
{
    const auto steuerungen = form->findChildren<platform::DataControl *>();
    int anzahl = 0;
    for (QWidget *w : form->findChildren<QWidget *>()) {
        const QString quelle = w->property("DataSource").toString();
        const QString feld = w->property("DataField").toString();
        if (quelle.isEmpty() || feld.isEmpty())
            continue;
        platform::DataControl *dc = nullptr;
        for (auto *s : steuerungen) {
            if (s->objectName().compare(quelle, Qt::CaseInsensitive) == 0) {
                dc = s;
                break;
            }
        }
        if (!dc) {
            throw platform::RuntimeError(
                3265,
                QStringLiteral("Das Steuerelement '%1' ist an die Datensteuerung '%2' gebunden, "
                               "die es auf '%3' nicht gibt.")
                    .arg(w->objectName(), quelle, form->objectName()));
        }
        dc->bind(w, feld);
        ++anzahl;
    }
    return anzahl;
}

} // namespace screens
