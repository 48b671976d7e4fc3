#include "frmKontenStamm.h"

#include "frame/mdlKontenStamm.h"

#include <QDialogButtonBox>
#include <QLabel>
#include <QPushButton>
#include <QVBoxLayout>

frmKontenStamm::frmKontenStamm(QWidget *parent)
    : QDialog(parent)
{
    setObjectName(QStringLiteral("frmKontenStamm"));
    setWindowTitle(QStringLiteral("KontenStamm (Sachkonten, Objekt-,Kanzleikonten)"));
    auto *layout = new QVBoxLayout(this);
    auto *jahr = new QLabel(QStringLiteral("Buchungsjahr: %1").arg(mdlKontenStamm::Buchungsjahr));
    jahr->setObjectName(QStringLiteral("lblBuchjahr"));
    layout->addWidget(jahr);
    auto *knoepfe = new QDialogButtonBox(this);
    auto *exit = knoepfe->addButton(QStringLiteral("Beenden"), QDialogButtonBox::RejectRole);
    exit->setObjectName(QStringLiteral("cmdExit"));
    connect(knoepfe, &QDialogButtonBox::rejected, this, &QDialog::reject);
    layout->addWidget(knoepfe);
}
