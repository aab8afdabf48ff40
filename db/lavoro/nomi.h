#pragma once

#include "platform/motore/ado.h"

#include <QHash>

// I nomi con cui chi lavora riconosce ciò che ha fatto.
namespace modTarvola
{

// Un'eliminazione in corso: di che cosa era, e quanto va con lei.
class Tolti
{
public:
    // Va fatto prima che il record sparisca.
    Tolti(ado::Connection &connessione, const QString &codice);
    void conta(const QString &tabella, int quante) { m_quante[tabella] += quante; }
    // Quanti dei testi e file tolti erano file.
    void diCuiFile(int quanti);
    // "Eliminata la voce 12 con 7 individui, 3 famiglie, 9 eventi, 1 testo".
    QString nome() const;

private:
    QString m_tabella;
    QString m_record;
    QHash<QString, int> m_quante;
};

} // namespace modTarvola
