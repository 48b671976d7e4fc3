#pragma once

#include <QDialog>

// The general-ledger account master screen. For now a plain modal screen with its caption, the
// booking year and a close button; the register pages and the record lifecycle are built on it.
class frmKontenStamm : public QDialog
{
    Q_OBJECT

public:
    explicit frmKontenStamm(QWidget *parent = nullptr);
};
