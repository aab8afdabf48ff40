#pragma once

#include "platform/motore/ado.h"

#include <QStringList>

#include <limits>
#include <vector>

// Gli elenchi del visualizzatore: per ogni tabella e ambito, le chiavi delle righe e le righe.
namespace modTarvola
{

// Che cosa elencare. L'ambito è 0 (la voce, il registro o l'archivio corrente), 4 (il registro),
// 6 (l'archivio) o 7 (tutto); i dettagli valgono per i soli individui.
struct Richiesta {
    QString TipoTabella;
    int Ambito = 0;
    bool dettagli = false;
    QString ArchivioLocale;
    QString RegistroLocale;
    QString VoceLocale;
    // La colonna di Traduzioni con le etichette dei dettagli.
    QString ColonnaLingua = QStringLiteral("L1");
};

class Elenco
{
public:
    // Prepara l'elenco; fallisce con Errore se la tabella non ha quell'ambito.
    Elenco(Richiesta richiesta, ado::Connection &connessione);

    const QStringList &colonne() const { return m_colonne; }
    // Una colonna si può ordinare se viene da una tabella e le colonne sono meno di dieci.
    bool ordinabile(int colonna) const;

    // Vero se la colonna contiene date, o istanti.
    bool diDate(int colonna) const { return m_date.value(colonna); }

    // Le chiavi che seguono quella data (-1: dal principio), nell'ordine in cui le righe furono
    // scritte; al massimo `quante`, se non sono `tutte` e l'elenco si può leggere a pezzi.
    static constexpr int tutte = std::numeric_limits<int>::max();
    std::vector<qint64> chiaviDopo(qint64 chiave, int quante) const;
    // Vero se dopo un pezzo pieno ce ne possono essere altri.
    bool aPezzi() const { return m_aPezzi; }
    // Tutte le chiavi nell'ordine di una colonna, come lo vuole un lettore italiano: Null prima di
    // tutto, maiuscole e minuscole alla pari, È accanto a E.
    std::vector<qint64> chiaviOrdinate(int colonna) const;
    // I valori di una riga, uno per colonna; vuoto se la riga non c'è più.
    QVariantList riga(qint64 chiave) const;
    // La chiave del record col codice dato; -1 se non c'è.
    qint64 chiaveDi(const QString &codice) const;

private:
    QVariantList codici() const;
    bool unArchivioSolo() const;

    Richiesta m_richiesta;
    ado::Connection *m_connessione;
    QString m_condizione;
    QString m_condizioneDeiPezzi;
    bool m_aPezzi = false;
    QString m_lettura;
    QStringList m_colonne;
    QList<bool> m_date;
};

} // namespace modTarvola
