#include "db/lavoro/ripresa.h"

#include "db/lavoro/annunci.h"
#include "db/schema/tabelle.h"
#include "db/storia/ritorno.h"

#include <QHash>

#include <algorithm>

namespace modTarvola
{

namespace
{

// Di più righe di una tabella basta dire che è cambiata.
constexpr int moltiCambiamenti = 1000;

Cambiamento::Specie specieDi(const storia::Effetto &uno)
{
    switch (uno.specie) {
    case ado::Mutamento::Nuovo:
        return Cambiamento::Nuovo;
    case ado::Mutamento::Tolto:
        return Cambiamento::Eliminato;
    default:
        return Cambiamento::Cambiato;
    }
}

// Di una coppia si dice il record di cui i legami sono, come ogni altro lavoro.
QString codiceDi(const storia::Effetto &uno)
{
    return uno.tabella == QStringLiteral("OperatoriContesti") ? uno.chiave.constLast()
                                                              : uno.chiave.constFirst();
}

QList<Cambiamento> cambiamenti(const QList<storia::Effetto> &effetti)
{
    QHash<QString, int> quanti;
    QList<Cambiamento> tutti;
    for (const storia::Effetto &uno : effetti) {
        const int suoi = ++quanti[uno.tabella];
        if (suoi < moltiCambiamenti)
            tutti.append({uno.tabella, codiceDi(uno), specieDi(uno)});
        else if (suoi == moltiCambiamenti)
            tutti.append({uno.tabella, {}, specieDi(uno)});
    }
    return tutti;
}

// I passi da riprendere, nell'ordine; vuoto se quello dato non c'è più.
QList<storia::Passo> finoA(ado::Connection &connessione, const storia::Passo &passo)
{
    QList<storia::Passo> tutti = storia::elenco(connessione);
    if (passo.annullato)
        std::reverse(tutti.begin(), tutti.end());
    QList<storia::Passo> presi;
    for (const storia::Passo &uno : std::as_const(tutti)) {
        if (uno.annullato != passo.annullato)
            continue;
        presi.append(uno);
        if (uno.numero == passo.numero)
            return uno.quando == passo.quando && uno.nome == passo.nome ? presi
                                                                        : QList<storia::Passo>();
    }
    return {};
}

} // namespace

void riprendeFino(ado::Connection &connessione, const storia::Passo &passo,
                  const std::function<bool()> &procede)
{
    if (connessione.inTransazione())
        throw ado::Errore(ado::Causa::Altro, QStringLiteral("un'altra scrittura è in corso"));
    const auto verso = passo.annullato ? ado::Insieme::Avanti : ado::Insieme::Indietro;
    QList<storia::Effetto> effetti;
    {
        ado::Transazione transazione(connessione);
        const QList<storia::Passo> passi = finoA(connessione, passo);
        if (passi.isEmpty())
            throw ado::Errore(ado::Causa::Altro, QStringLiteral("il passo non c'è più"));
        const ado::Sorveglianza sorveglianza(connessione,
                                             [&procede] { return !procede || procede(); });
        for (const storia::Passo &uno : passi)
            effetti += storia::riprende(connessione, uno.numero, verso);
        transazione.conferma();
    }
    const QString nome =
        (passo.annullato ? QStringLiteral("Ripetuto: ") : QStringLiteral("Annullato: ")) +
        passo.nome;
    Annuncio annuncio{nome, connessione.Properties(QStringLiteral("Data Source")), &connessione,
                      cambiamenti(effetti)};
    annuncio.ripresa = true;
    // Ciò che è tornato lo è: chi ascolta non può farlo sembrare fallito.
    try {
        emit annunci().avvenuto(annuncio);
    } catch (const std::exception &errore) {
        qWarning("%s", errore.what());
    }
}

} // namespace modTarvola
