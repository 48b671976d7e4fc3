#include "screens/Bildschirmstil.h"

#include <QAbstractItemView>
#include <QComboBox>
#include <QFont>
#include <QFontMetrics>
#include <QLabel>
#include <QPainter>
#include <QProxyStyle>
#include <QPushButton>
#include <QScrollBar>
#include <QShortcut>
#include <QStyleOptionButton>
#include <QTabBar>

namespace screens {

namespace {

class UmbrechenderKnopfStil : public QProxyStyle
{
public:
    void drawControl(ControlElement element, const QStyleOption *option, QPainter *painter,
                     const QWidget *widget) const override
    {
        const auto *knopf = qstyleoption_cast<const QStyleOptionButton *>(option);
        if (element != CE_PushButtonLabel || !knopf || !knopf->icon.isNull()) {
            QProxyStyle::drawControl(element, option, painter, widget);
            return;
        }
        const QRect feld
            = subElementRect(SE_PushButtonContents, option, widget).adjusted(2, 0, -2, 0);
        // The original's captions carry runs of blanks where they wanted the line to break.
        const QString text = knopf->text.simplified();
        if (option->fontMetrics.horizontalAdvance(text) <= feld.width()) {
            QProxyStyle::drawControl(element, option, painter, widget);
            return;
        }
        painter->save();
        painter->setPen(knopf->palette.color(knopf->state & State_Enabled ? QPalette::Active
                                                                          : QPalette::Disabled,
                                             QPalette::ButtonText));
        painter->drawText(feld, Qt::AlignCenter | Qt::TextWordWrap | Qt::TextShowMnemonic, text);
        painter->restore();
    }
};

QStyle *knopfStil()
{
    static auto *stil = new UmbrechenderKnopfStil;
    return stil;
}

// Whether `r` lies inside the parent of `w` and clear of its siblings.
bool platzFrei(const QWidget *w, const QRect &r)
{
    const QWidget *eltern = w->parentWidget();
    if (!eltern || !eltern->rect().contains(r))
        return false;
    for (const QObject *o : eltern->children()) {
        const auto *n = qobject_cast<const QWidget *>(o);
        if (n && n != w && !n->isWindow() && !n->isHidden() && n->geometry().intersects(r))
            return false;
    }
    return true;
}

// A one-line caption longer than its label (the font differs from the one the positions were
// made for) grows into the free room beside it, to the right or else to the left.
void beschriftungenFreistellen(QWidget *form)
{
    for (QLabel *l : form->findChildren<QLabel *>()) {
        if (l->wordWrap() || l->height() <= 1 || l->text().isEmpty())
            continue;
        const int noetig = l->fontMetrics().horizontalAdvance(l->text()) + 2;
        if (noetig <= l->width())
            continue;
        QRect r = l->geometry();
        r.setWidth(noetig);
        if (!platzFrei(l, r))
            r.moveRight(l->geometry().right());
        if (platzFrei(l, r))
            l->setGeometry(r);
    }
}

// A small dialog is made wide enough for its title next to the window's buttons; its controls
// move to the middle.
void titelFreistellen(QWidget *form)
{
    if (form->parentWidget() && !form->isWindow())
        return;
    QFont titel = form->font();
    titel.setBold(true);
    // Room for the icon and the window's buttons in the title bar.
    const int noetig = QFontMetrics(titel).horizontalAdvance(form->windowTitle()) + 120;
    const int dazu = noetig - form->width();
    if (dazu <= 0)
        return;
    for (QObject *o : form->children()) {
        if (auto *w = qobject_cast<QWidget *>(o); w && !w->isWindow())
            w->move(w->x() + dazu / 2, w->y());
    }
    form->resize(noetig, form->height());
}

} // namespace

void listenBreiteAnpassen(QWidget *form)
{
    for (QComboBox *kombi : form->findChildren<QComboBox *>()) {
        QAbstractItemView *liste = kombi->view();
        const int breite = liste->sizeHintForColumn(0)
            + liste->verticalScrollBar()->sizeHint().width() + 2 * liste->frameWidth() + 8;
        liste->setMinimumWidth(qMax(kombi->width(), breite));
    }
}

void bildschirmEinrichten(QWidget *form)
{
    QFont::insertSubstitutions(QStringLiteral("MS Sans Serif"),
                               {QStringLiteral("DejaVu Sans Condensed"),
                                QStringLiteral("Liberation Sans Narrow"),
                                QStringLiteral("Arial Narrow"), QStringLiteral("Arial")});
    QFont schrift(QStringLiteral("MS Sans Serif"));
    schrift.setPointSizeF(8);
    form->setFont(schrift);
    for (QPushButton *knopf : form->findChildren<QPushButton *>())
        knopf->setStyle(knopfStil());
    beschriftungenFreistellen(form);
    titelFreistellen(form);
    // A tab strip cannot get its tabs from a layout file; they travel in its "Tabs" property.
    for (QTabBar *reiter : form->findChildren<QTabBar *>()) {
        if (reiter->count() > 0)
            continue;
        for (const QString &text : reiter->property("Tabs").toStringList())
            reiter->addTab(text);
    }
}

void knopfTasten(QWidget *form, const std::vector<std::pair<QKeySequence, QPushButton *>> &tasten)
{
    for (const auto &[taste, knopf] : tasten) {
        auto *k = new QShortcut(taste, form);
        k->setObjectName(knopf->objectName());
        QObject::connect(k, &QShortcut::activated, form, [form, knopf = knopf] {
            if (!knopf->isVisible() || !knopf->isEnabled())
                return;
            if (form->focusWidget() != knopf) {
                knopf->setFocus(Qt::ShortcutFocusReason);
                if (form->focusWidget() != knopf)
                    return;
            }
            knopf->click();
        });
    }
}

} // namespace screens
