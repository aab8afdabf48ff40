#pragma once

#include "platform/motore/ado.h"

// Le chiavi interne delle righe tolte, perché tornino al loro posto negli elenchi: il motore le
// rimetterebbe in fondo.
namespace modTarvola::storia
{

class Chiavi
{
public:
    // Annota le righe della tabella che soddisfano la condizione.
    void annota(ado::Connection &connessione, const QString &tabella, const QString &dove,
                const QVariantList &valori);
    // Rimette al loro posto le righe annotate che ci sono e portano uno dei codici dati.
    void rimette(ado::Connection &connessione, const QHash<QString, QStringList> &codici) const;

    QByteArray byte() const;
    static Chiavi da(const QByteArray &byte);

private:
    // Per tabella, il numero del codice e la chiave.
    QHash<QString, QHash<qint64, qint64>> m_chiavi;
};

} // namespace modTarvola::storia
