#pragma once

#include <QDialog>
#include <QStringList>
#include <vector>

class QLineEdit;
class QTableView;
class QLabel;
class QSortFilterProxyModel;

namespace siblings {

// A list to choose one row from, filtered as the user types: a row stays when its first column
// starts with the text or any other column contains it (case ignored). The filter line keeps the
// focus; Up/Down and Page Up/Down move in the list, Enter or a double click chooses the current
// row (the first one when none is current), Escape cancels.
class Auswahlliste : public QDialog
{
    Q_OBJECT

public:
    Auswahlliste(const QString &titel, const QStringList &spalten, std::vector<QStringList> zeilen,
                 QWidget *parent = nullptr);
    ~Auswahlliste() override;

    QLineEdit *filter() const { return m_filter; }
    QTableView *tabelle() const { return m_tabelle; }
    // Rows shown under the current filter.
    int sichtbareZeilen() const;
    // The chosen row (index into the rows handed over), -1 when none was chosen.
    int gewaehlt() const { return m_gewaehlt; }
    // Chooses the current row (the first visible one when none is current) and closes.
    void waehlen();

protected:
    bool eventFilter(QObject *obj, QEvent *ev) override;

private:
    void filterSetzen(const QString &text);

    QLineEdit *m_filter = nullptr;
    QTableView *m_tabelle = nullptr;
    QLabel *m_anzahl = nullptr;
    QSortFilterProxyModel *m_proxy = nullptr;
    int m_gewaehlt = -1;
};

} // namespace siblings
