#pragma once

#include "platform/motore/ado.h"
#include "platform/riparazione/pagine.h"

#include <optional>
#include <vector>

// Il file nuovo in cui finiscono le righe salvate, e ciò che se ne deve sapere per riempirlo.
namespace salvataggio
{

struct Tabella {
    QString nome;
    QStringList colonne;
    int chiaveIntera = -1; // la colonna che è la chiave interna
    bool conRowid = true;
    QStringList indici;    // senza quello che è la tabella stessa
    QStringList testimoni; // gli indici che nominano i codici
    // Il posto fra le colonne di ciascun valore di una riga del file, -1 se non ne ha; vuoto se i
    // valori stanno come le colonne.
    QList<qsizetype> posti;
    QHash<QString, QList<int>> ordine; // per indice, la colonna della tabella che sta a ogni posto
    QString conChiave; // l'istruzione che inserisce la riga; vuota se non ha chiave interna
    QString senzaChiave;
    qint64 salvate = 0;
    // Falso se una cella del suo albero non era una sua riga.
    bool sana = true;
};

class Salvate
{
public:
    explicit Salvate(ado::Connection &nuovo);

    std::vector<Tabella> &tabelle() { return m_tabelle; }
    // Vero se la riga è entrata, con la sua chiave interna o, se è presa, con un'altra; una che
    // ripete un codice non entra. L'ultima colonna, se è lunga, si legge dal carico.
    bool inserisce(Tabella &tabella, qint64 chiave, const QList<pagine::Valore> &riga,
                   pagine::Carico &carico);

    // Vero se la coppia è già entrata.
    bool contiene(const Tabella &tabella, const QList<pagine::Valore> &coppia);

    // Le righe che gli indici nominano: ciò che alla fine ne manca è perduto.
    void aspetta(const Tabella &tabella, const QString &indice, qint64 chiave,
                 const QByteArray &codice);
    bool aspettata(const Tabella &tabella, const QByteArray &codice);
    bool aspettata(const Tabella &tabella, const QByteArray &codice, qint64 chiave);
    // Il codice che almeno tanti indici danno alla riga con quella chiave; vuoto se non c'è.
    QByteArray codiceDi(const Tabella &tabella, qint64 chiave, qsizetype testimoni);
    // La chiave che almeno tanti indici danno a quel codice.
    std::optional<qint64> chiaveDi(const Tabella &tabella, const QByteArray &codice,
                                   qsizetype testimoni);
    // Quante ne mancano fra quelle che almeno tanti indici nominano.
    qint64 perdute(const Tabella &tabella, qsizetype testimoni);

private:
    QStringList nomi(const QString &istruzione, const QString &valore = {}) const;
    Tabella descrive(const QString &nome) const;
    void descriveIndici(Tabella &tabella) const;
    bool entra(const QString &istruzione, const QVariantList &valori) const;
    void riempieLungo(const Tabella &tabella, qint64 lunghezza, pagine::Carico &carico) const;

    ado::Connection &m_nuovo;
    std::vector<Tabella> m_tabelle;
};

} // namespace salvataggio
