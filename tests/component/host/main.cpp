// Creates the component, uses its property and releases it; prints every event it receives.
#include <zelKontenStamm.h>

#include <QApplication>
#include <QTextStream>

int main(int argc, char **argv)
{
    QApplication app(argc, argv);
    QTextStream out(stdout);
    auto *komponente = new zelKontenStamm;
    QObject::connect(komponente, &zelKontenStamm::dllKontenStammEvent,
                     [&out](qint16 nr) { out << "dllKontenStammEvent " << nr << Qt::endl; });
    komponente->setProperty("Programmende_OK", true);
    out << "Programmende_OK " << komponente->property("Programmende_OK").toBool() << Qt::endl;
    komponente->enden();
    delete komponente;
    return 0;
}
