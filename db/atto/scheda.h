#pragma once

#include <QList>
#include <QString>

// Come si legge un atto dall'alto in basso: le persone di ogni tipo di registro, i loro campi e i
// loro eventi nell'ordine in cui stanno sulla pagina. La finestra, le tabelle che si importano e
// quelle che si esportano prendono le caselle da qui; un tipo nuovo è una tavola in più.
namespace modTarvola::scheda
{

// Come ciò che sta in un posto della pagina sta nell'atto.
enum class Come {
    Voce,       // i campi dell'atto
    Principale, // una persona della voce, con il suo ruolo
    Coniuge,    // chi sta con un'altra persona nella sua famiglia di coniugi
    Genitore,   // uno della coppia della famiglia d'origine di un'altra persona
    Coppia,     // la famiglia di coniugi di una persona, con i suoi eventi
    Elenco,     // ogni persona della voce con quel ruolo
    Altre,      // ogni persona che nessun altro posto comprende
    Testo       // il primo testo del genere dato
};

struct Posto {
    QString nome;
    QString etichetta;
    Come come = Come::Voce;
    int ruolo = 0; // con cui la persona nasce; di un testo il genere; 0: quello del sesso
    int altroRuolo =
        0; // con cui può stare altrimenti: principale il coniuge, coniuge il principale
    QString sesso = {}; // che il ruolo dice da sé
    QString di = {};    // il posto della persona da cui dipende
};

enum class Uso { Mostrata, Saltata, Nascosta };

struct Casella {
    QString campo;
    Uso uso = Uso::Mostrata; // finché chi trascrive non sceglie altrimenti
    bool operator==(const Casella &) const = default;
};

// Una riga della pagina: le caselle di un posto, o di un suo evento.
struct Riga {
    QString posto;
    int evento = 0;
    QList<Casella> caselle;
};

struct Scheda {
    int tipo = 0;      // del registro
    int categoria = 0; // in cui stanno i ruoli che una voce così offre
    QList<Posto> posti;
    QList<Riga> righe;

    // Il posto col nome dato; nullo se la scheda non l'ha.
    const Posto *posto(const QString &nome) const;
};

// La scheda di un tipo di registro; nulla se non ne ha.
const Scheda *diTipo(int tipo);

} // namespace modTarvola::scheda
