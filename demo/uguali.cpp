#include "demo/uguali.h"

#include "db/archivio/connessioni.h"
#include "db/schema/tabelle.h"

#include <QCryptographicHash>
#include <QHash>

#include <algorithm>

using namespace Qt::StringLiterals;
using namespace modTarvola;

namespace uguali
{

namespace
{

struct Riga {
    QString detta;      // la tabella e i valori, senza codici né ore
    QByteArray nome;    // ciò che di lei si sa finora, coi suoi legami
    QString codice;     // vuoto se non ne ha
    QStringList legami; // i codici che nomina, nell'ordine delle colonne
};

QByteArray impronta(const QByteArray &byte)
{
    return QCryptographicHash::hash(byte, QCryptographicHash::Sha1);
}

Riga legge(const catalogo::Tabella &tabella, const ado::Riga &letta)
{
    Riga riga;
    riga.detta = tabella.nome.toString();
    for (int i = 0; i < letta.colonne(); ++i) {
        const catalogo::Colonna *colonna = tabella.colonna(letta.nome(i));
        const bool chiave = colonna == tabella.colonne.data();
        if (colonna->specie == catalogo::Specie::Codice) {
            const QString codice = letta.testo(i).toUpper();
            if (chiave && tabella.forma == catalogo::Forma::Record)
                riga.codice = codice;
            else
                riga.legami.append(codice);
        } else if (!letta.nullo(i)) {
            const bool ora = letta.nome(i) == u"Creazione"_s || letta.nome(i) == u"Modifica"_s;
            riga.detta += u" %1=\"%2\""_s.arg(letta.nome(i), ora ? u"…"_s : letta.testo(i));
        }
    }
    riga.nome = impronta(riga.detta.toUtf8());
    return riga;
}

class Archivio
{
public:
    explicit Archivio(const QString &percorso)
    {
        ado::Connection connessione;
        connessione.Open(stringaDiConnessione(percorso));
        for (const catalogo::Tabella &tabella : catalogo::tutte())
            connessione.leggi({u"SELECT * FROM "_s + tabella.nome.toString(), {}, {}},
                              [&](const ado::Riga &letta) {
                                  m_righe.append(legge(tabella, letta));
                                  return true;
                              });
    }

    // Ogni riga impara chi sono quelle che nomina e quelle che la nominano.
    void sapeDiPiu()
    {
        QHash<QString, QByteArray> nomi;
        for (const Riga &riga : std::as_const(m_righe))
            nomi.insert(riga.codice, riga.nome);
        nomi.remove({});
        QHash<QString, QByteArrayList> nominati;
        for (const Riga &riga : std::as_const(m_righe)) {
            for (qsizetype i = 0; i < riga.legami.size(); ++i)
                nominati[riga.legami.at(i)].append(riga.nome + QByteArray::number(i));
        }
        for (Riga &riga : m_righe) {
            QByteArray tutto = riga.nome;
            for (const QString &legame : std::as_const(riga.legami))
                tutto += legame.isEmpty() ? "-" : nomi.value(legame, "?");
            QByteArrayList chi = riga.codice.isEmpty() ? QByteArrayList() : nominati[riga.codice];
            std::sort(chi.begin(), chi.end());
            riga.nome = impronta(tutto + '|' + chi.join('+'));
        }
    }

    // Le righe di questo che l'altro non ha, ciascuna con chi nomina. Una coppia, finché non si sa
    // chi nomina, è uguale a tutte le altre: `coppie` dice se contarla.
    QStringList inPiuDi(const Archivio &altro, bool coppie) const
    {
        QHash<QByteArray, int> sue;
        for (const Riga &riga : altro.m_righe)
            ++sue[riga.nome];
        QStringList avanzano;
        for (const Riga &riga : m_righe) {
            if (--sue[riga.nome] < 0 && (coppie || !riga.codice.isEmpty()))
                avanzano.append(inParole(riga));
        }
        return avanzano;
    }

private:
    QString inParole(const Riga &riga) const
    {
        QString parole = riga.detta;
        for (const QString &legame : riga.legami) {
            const auto suo = std::find_if(m_righe.begin(), m_righe.end(), [&](const Riga &altra) {
                return !legame.isEmpty() && altra.codice == legame;
            });
            parole += u" → "_s + (suo == m_righe.end() ? u"nothing"_s : suo->detta.left(120));
        }
        return parole;
    }

    QList<Riga> m_righe;
};

} // namespace

QStringList differenze(const QString &uno, const QString &altro)
{
    Archivio primo(uno);
    Archivio secondo(altro);
    // Da una riga a quella più lontana, passando per i legami: dall'operatore di un evento al suo
    // archivio. Si comincia da ciò che le righe dicono da sole, che è più facile da leggere.
    constexpr int lontano = 12;
    for (int passi = 0; passi <= lontano; ++passi) {
        QStringList diverse;
        for (const QString &riga : primo.inPiuDi(secondo, passi > 0))
            diverse.append(u"only in %1: %2"_s.arg(uno, riga));
        for (const QString &riga : secondo.inPiuDi(primo, passi > 0))
            diverse.append(u"only in %1: %2"_s.arg(altro, riga));
        if (!diverse.isEmpty())
            return diverse;
        primo.sapeDiPiu();
        secondo.sapeDiPiu();
    }
    return {};
}

} // namespace uguali
