#include "db/atto/atto.h"
#include "db/formule/formulario.h"
#include "db/schema/generi.h"

// Dagli atti di un archivio alle loro caselle e ai loro testi.
namespace modTarvola::formule
{

namespace
{

constexpr int attiAlPiu = 80;
constexpr int attiProvati = 10; // basta per sapere quanto fidarsi
const QString campoTesto = QStringLiteral("Campolungo");

// Gli atti del registro più vicini a quello dato, che non c'è; agli ultimi se è vuoto.
QStringList vicini(ado::Connection &connessione, const QString &registro, const QString &atto,
                   int quanti)
{
    const QString numero = QStringLiteral("CAST(substr(Codice, 2) AS INTEGER)");
    QStringList codici;
    connessione.leggi({QStringLiteral("SELECT Codice FROM Voci WHERE Registro = ?1 AND (?2 = '' OR "
                                      "%1 < CAST(substr(?2, 2) AS INTEGER)) ORDER BY %1 DESC "
                                      "LIMIT ?3")
                           .arg(numero),
                       {registro, atto.isNull() ? QStringLiteral("") : atto, quanti},
                       {}},
                      [&](const ado::Riga &riga) {
                          codici.append(riga.testo(0));
                          return true;
                      });
    return codici;
}

// Pochi altri registri del tipo, i più nuovi in fondo.
QStringList altriRegistri(ado::Connection &connessione, const QString &registro, int tipo)
{
    constexpr int pochi = 4;
    QStringList codici;
    connessione.leggi({QStringLiteral("SELECT Codice FROM Registri WHERE Tipo = ? AND Codice <> ? "
                                      "ORDER BY CAST(substr(Codice, 2) AS INTEGER) DESC LIMIT ?"),
                       {tipo, registro, pochi},
                       {}},
                      [&](const ado::Riga &riga) {
                          codici.prepend(riga.testo(0));
                          return true;
                      });
    return codici;
}

} // namespace

Caselle caselleDi(const scheda::SchedaAtto &atto)
{
    Caselle piene;
    for (const scheda::Riga &riga : atto.scheda().righe) {
        const scheda::Posto *posto = atto.scheda().posto(riga.posto);
        if (posto->come == scheda::Come::Testo && posto->ruolo == TestoRiportato)
            continue;
        const bool elenco =
            posto->come == scheda::Come::Elenco || posto->come == scheda::Come::Altre;
        const int quante = elenco ? atto.quante(riga.posto) : 1;
        for (int quale = 0; quale < quante; ++quale) {
            for (const scheda::Casella &casella : riga.caselle) {
                const scheda::Indirizzo dove{riga.posto, quale, riga.evento, casella.campo};
                const QString valore = atto.valore(dove).toString();
                if (!valore.isEmpty())
                    piene.insert(dove, valore);
            }
        }
    }
    return piene;
}

Formulario legge(ado::Connection &connessione, const QString &registro,
                 const std::function<bool()> &prosegue, const QString &atto)
{
    Formulario formulario;
    const scheda::Scheda *scheda = scheda::diTipo(nuovoAtto(connessione, registro).tipo);
    if (scheda == nullptr)
        return formulario;
    const auto impara = [&](const QStringList &codici, bool nelRegistro) {
        for (auto codice = codici.crbegin(); codice != codici.crend() && prosegue(); ++codice) {
            const auto letto = leggeAtto(connessione, *codice);
            if (!letto)
                continue;
            const scheda::SchedaAtto pagina(*scheda, *letto);
            const QString testo =
                pagina.valore({QStringLiteral("testo"), 0, 0, campoTesto}).toString();
            if (!testo.isEmpty())
                formulario.impara(caselleDi(pagina), testo, nelRegistro,
                                  codici.crend() - codice <= attiProvati);
        }
    };
    const QStringList suoi = vicini(connessione, registro, atto, attiAlPiu);
    if (suoi.size() < attiProvati) {
        const QStringList altri = altriRegistri(connessione, registro, scheda->tipo);
        for (const QString &altro : altri)
            impara(vicini(connessione, altro, {}, attiProvati), false);
    }
    impara(suoi, true);
    return formulario;
}

} // namespace modTarvola::formule
