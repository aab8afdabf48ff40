#pragma once

#include "db/schema/tabelle.h"
#include "platform/anteriore/jet_righe.h"
#include "platform/motore/ado.h"

#include <functional>

// Come una tabella del formato anteriore diventa una tabella dell'archivio.
namespace modTarvola
{

// Una lettura della fonte, dalla prima all'ultima riga.
struct Lettura {
    Lettura(jet::Pagine &file, const jet::Tabella &tabella)
        : pagine(file), righe(file, tabella), residuo(file.byte())
    {
    }
    // Quante pagine si sono lette fin qui, con quelle dei campi lunghi.
    qint64 pagineLette() const { return righe.pagineLette() + byteLunghi / jet::byteDiPagina; }

    jet::Pagine &pagine;
    jet::Scorritore righe;
    qint64 residuo;        // i byte che i campi lunghi possono ancora occupare
    qint64 byteLunghi = 0; // portati fin qui
};

// Che cosa è un campo lungo: un testo, già letto, o byte da portare a pezzi.
struct ContenutoLungo {
    enum Specie { Nulla, Testo, Byte };
    Specie specie = Nulla;
    QString testo;
    qint64 lunghezza = 0; // dei byte
    bool intero = true;
};

struct RigaLetta {
    QVariantList valori; // non validi i Null
    ContenutoLungo lungo;
    qint64 guasti = 0; // i valori presi in parte, o Null perché illeggibili
};

class Corrispondenza
{
public:
    // Accosta le colonne per nome. Fallisce con ado::Errore se manca una colonna della chiave.
    Corrispondenza(const catalogo::Tabella &tabella, jet::Tabella fonte);

    const QString &tabella() const { return m_tabella; }
    const jet::Tabella &fonte() const { return m_fonte; }
    const QStringList &colonne() const { return m_nomi; }
    const QList<qsizetype> &chiave() const { return m_chiave; }
    const QStringList &ignote() const { return m_ignote; }     // vi sono soltanto nella fonte
    const QStringList &mancanti() const { return m_mancanti; } // soltanto nell'archivio

    // I valori della riga su cui sta la lettura, nell'ordine delle colonne: le date in ISO, il
    // testo vuoto Null. `massimo` sono i byte che un campo può avere nell'archivio.
    RigaLetta legge(Lettura &lettura, qint64 massimo) const;

    // Il posto del campo lungo fra le colonne, -1 se la tabella non ne ha.
    qsizetype postoLungo() const { return m_lungo; }
    // Porta a pezzi i byte del campo lungo della riga; la funzione rende falso per smettere.
    void porta(Lettura &lettura, const std::function<bool(const QByteArray &)> &perPezzo) const;

private:
    jet::Campo campoLungo(const Lettura &lettura) const;
    ContenutoLungo contenutoLungo(Lettura &lettura, const QVariant &genere, qint64 massimo) const;
    void accosta(const QString &nome, bool obbligatoria);
    struct Valore {
        QVariant valore;
        bool intero = true;
    };
    static Valore numero(const jet::Scorritore &riga, const jet::Colonna &colonna);
    Valore valore(Lettura &lettura, qsizetype colonna) const;
    Valore testo(Lettura &lettura, const jet::Colonna &colonna, catalogo::Specie specie) const;

    QString m_tabella;
    jet::Tabella m_fonte;
    QStringList m_nomi;
    QList<catalogo::Specie> m_specie;
    QList<qsizetype> m_chiave;
    QList<qsizetype> m_fonti; // il posto nella fonte, -1 per le mancanti
    qsizetype m_lungo = -1;
    QStringList m_ignote;
    QStringList m_mancanti;
};

} // namespace modTarvola
