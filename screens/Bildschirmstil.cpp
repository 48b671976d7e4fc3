#include "screens/Bildschirmstil.h"

#include <QFont>
#include <QPainter>
#include <QProxyStyle>
#include <QPushButton>
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

} // namespace

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
    // A tab strip cannot get its tabs from a layout file; they travel in its "Tabs" property.
    for (QTabBar *reiter : form->findChildren<QTabBar *>()) {
        if (reiter->count() > 0)
            continue;
        for (const QString &text : reiter->property("Tabs").toStringList())
            reiter->addTab(text);
    }
}

} // namespace screens
