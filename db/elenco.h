#pragma once

#include "platform/ado.h"

#include <QStringList>

#include <vector>

// Gli elenchi del visualizzatore: per ogni tabella e ambito, le chiavi delle righe e le righe.
namespace modTarvola
{

// Che cosa elencare. L'ambito è 0 (la voce, il registro o l'archivio corrente), 4 (il registro),
// 6 (l'archivio) o 7 (tutto).
struct Richiesta {
    QString TipoTabella;
    int Ambito = 0;
    QString ArchivioLocale;
    QString RegistroLocale;
    QString VoceLocale;
};

class Elenco
{
public:
    // Prepara l'elenco; fallisce con Errore se la tabella non ha quell'ambito.
    Elenco(Richiesta richiesta, ado::Connection &connessione);

    const QStringList &colonne() const { return m_colonne; }
    // Una colonna si può ordinare se viene da una tabella e le colonne sono meno di dieci.
    bool ordinabile(int colonna) const;
    // Le chiavi di tutte le righe, nell'ordine in cui furono scritte o in quello di una colonna
    // (-1: nessuna), come lo vuole un lettore italiano.
    std::vector<qint64> chiavi(int colonnaOrdine = -1) const;
    // I valori di una riga, uno per colonna; vuoto se la riga non c'è più.
    QVariantList riga(qint64 chiave) const;
    // La chiave del record col codice dato; -1 se non c'è.
    qint64 chiaveDi(const QString &codice) const;

private:
    ado::Comando comandoChiavi(const QString &altraColonna) const;
    std::vector<qint64> ordinate(const QString &colonna) const;

    Richiesta m_richiesta;
    ado::Connection *m_connessione;
    QStringList m_colonne;
    QString m_lettura;
};

} // namespace modTarvola
