#include "frame/FormSkalieren.h"

#include "frame/DatenSteuerungen.h"
#include "frame/Skalierung.h"
#include "frame/mdlKontenStamm.h"

#include <QAbstractItemView>
#include <QAbstractSpinBox>
#include <QComboBox>
#include <QFrame>
#include <QHeaderView>
#include <QTableView>
#include <QTreeView>
#include <QWidget>
#include <cmath>
#include <vector>

namespace frame {

float SkalierFaktor = 0;

namespace {

// The controls of a screen as the original's control collection had them: every widget the
// layout named, nested ones included; the inner parts of composite widgets (a combo's edit
// field, a view's viewport and scroll bars, a data control's buttons) are not controls.
std::vector<QWidget *> steuerelemente(QWidget *formular)
{
    std::vector<QWidget *> liste;
    for (QWidget *w : formular->findChildren<QWidget *>()) {
        if (w->isWindow() || w->objectName().isEmpty()
            || w->objectName().startsWith(QLatin1String("qt_")))
            continue;
        bool innen = false;
        for (QWidget *p = w->parentWidget(); p && p != formular; p = p->parentWidget()) {
            if (qobject_cast<QAbstractItemView *>(p) || qobject_cast<QComboBox *>(p)
                || qobject_cast<QAbstractSpinBox *>(p)
                || p->metaObject()->indexOfClassInfo("TypeName") >= 0) {
                innen = true;
                break;
            }
        }
        if (!innen)
            liste.push_back(w);
    }
    return liste;
}

bool istLinie(const QWidget *w)
{
    const auto *f = qobject_cast<const QFrame *>(w);
    return f && (f->frameShape() == QFrame::HLine || f->frameShape() == QFrame::VLine);
}

int mal(int wert, float faktor)
{
    return int(std::lround(double(wert) * double(faktor)));
}

QFont vergroessert(QFont schrift, float faktor)
{
    if (schrift.pointSizeF() > 0)
        schrift.setPointSizeF(schrift.pointSizeF() * double(faktor));
    else if (schrift.pixelSize() > 0)
        schrift.setPixelSize(mal(schrift.pixelSize(), faktor));
    return schrift;
}

} // namespace

void formSkalierenMit(QWidget *formular, bool positionen, bool schriften, float faktor)
{
    if (faktor <= 0)
        return;
    const auto liste = steuerelemente(formular);
    // Each control owns its font, as in the original; read them all before the form's font
    // changes, so nothing is enlarged twice through inheritance.
    std::vector<QFont> schriftenVorher;
    schriftenVorher.reserve(liste.size());
    for (QWidget *w : liste)
        schriftenVorher.push_back(w->font());

    if (positionen) {
        const QRect g = formular->geometry();
        formular->move(mal(g.x(), faktor), mal(g.y(), faktor));
        formular->resize(mal(g.width(), faktor), mal(g.height(), faktor));
    }
    if (schriften)
        formular->setFont(vergroessert(formular->font(), faktor));

    for (size_t i = 0; i < liste.size(); ++i) {
        QWidget *w = liste[i];
        const QRect g = w->geometry();
        w->setGeometry(mal(g.x(), faktor), g.y(), mal(g.width(), faktor), mal(g.height(), faktor));
        if (!istLinie(w)) {
            if (auto *tabelle = qobject_cast<QTableView *>(w)) {
                QHeaderView *kopf = tabelle->horizontalHeader();
                for (int s = 0; s < kopf->count(); ++s)
                    kopf->resizeSection(s, mal(kopf->sectionSize(s), faktor));
            } else if (auto *baum = qobject_cast<QTreeView *>(w)) {
                QHeaderView *kopf = baum->header();
                for (int s = 0; s < kopf->count(); ++s)
                    kopf->resizeSection(s, mal(kopf->sectionSize(s), faktor));
            }
        }
        if (schriftenVorher[i].family() != QLatin1String("Small Fonts"))
            w->setFont(vergroessert(schriftenVorher[i], faktor));
        else
            w->setFont(schriftenVorher[i]);
    }
}

void FormSkalieren(QWidget *formular, bool &Positionen, bool &Schriften, double &Faktor)
{
    Bildschirmaufloesung();
    if (mdlKontenStamm::BildschirmBreite == 800)
        return;
    SkalierFaktor = 0;
    if (Faktor == 0)
        Faktor = 0.7;
    SkalierFaktor = SkalierFaktorErmitteln(mdlKontenStamm::BildschirmBreite);
    if (SkalierFaktor > 0)
        formSkalierenMit(formular, Positionen, Schriften, SkalierFaktor);
}

} // namespace frame
