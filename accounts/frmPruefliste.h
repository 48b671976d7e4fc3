#pragma once

#include "accounts/regeln/Jahrespruefung.h"

#include <QDialog>
#include <vector>

class QTreeWidget;

// The faulty definitions of every account of the booking year, one line each (account, page,
// field, message). Enter or a double click on a line closes the list with that line chosen.
class frmPruefliste : public QDialog
{
    Q_OBJECT

public:
    frmPruefliste(std::vector<kontenregeln::Kontobefund> befunde, int jahr,
                  QWidget *parent = nullptr);

    // The line chosen (-1: closed without a choice).
    int gewaehlt() const { return m_gewaehlt; }
    const kontenregeln::Kontobefund &befund(int i) const { return m_befunde.at(size_t(i)); }
    QTreeWidget *liste() const { return m_liste; }

    void waehlen();

private:
    void hilfeEinrichten();

    std::vector<kontenregeln::Kontobefund> m_befunde;
    QTreeWidget *m_liste = nullptr;
    int m_gewaehlt = -1;
};
