#pragma once

#include "db/formule/allineamento.h"

#include <array>

// Che cosa viene dopo, a giudicare da ciò che venne negli atti arrivati allo stesso posto.
namespace modTarvola::formule
{

struct Candidato {
    QString spazio;
    QString testo;
    int chiave = 0; // della casella da cui viene; 0: una parola ferma
    int luogo = 0;
    bool parola = true;
    double sicurezza = 0;
};

struct Pronostico {
    Candidato primo;         // senza testo: niente, o la fine
    bool fine = false;       // il testo è finito
    double fiducia = 1;      // che si sia ancora nella formula, qualunque cosa venga
    double peso = 0;         // quanto somigliano, in tutto, gli atti che lo dicono
    double spazioSicuro = 0; // che uno spazio venga comunque
};

// Quanto spesso i pronostici di un registro furono giusti, secondo quanto se ne era sicuri.
class Prove
{
public:
    void conta(const Pronostico &pronostico, bool cominciata, bool giusto);
    // Da 0 a 1. `cominciata`: della parola c'è già qualche lettera.
    double sicurezza(const Pronostico &pronostico, bool cominciata) const;

private:
    struct Conto {
        double giusti = 0;
        double tutti = 0;
    };
    static constexpr size_t gradi = 7;
    static constexpr size_t specie = 4;
    static size_t quale(const Pronostico &pronostico, bool cominciata);

    std::array<Conto, gradi * specie> m_conti;
};

class Pronosticatore
{
public:
    Pronosticatore(const AttiLetti &letti, const Pronte &pronte) : m_letti(letti), m_pronte(pronte)
    {
    }

    // Ciò che viene dopo i primi `quanti` elementi dell'allineamento, se comincia con `coda` e non
    // è già tutto in essa.
    // `aMeta`: l'ultimo elemento potrebbe essere solo l'inizio di una parola; allora vale quel che
    // dicono gli atti in cui sta intero.
    Pronostico dopo(const Allineamento &allineamento, size_t quanti, const QString &coda, int luogo,
                    bool aMeta = false) const;

private:
    struct Campione {
        const AttoLetto *atto = nullptr;
        const Elemento *elemento = nullptr; // nullo: l'atto finisce lì
        const Elemento *prima = nullptr;    // quello che lo precede
        double peso = 0;
        double fila = 0; // quanto combacia ciò che lo precede, da 0 a 1
        int etichetta = 0;
    };
    struct Scelta {
        int etichetta = -1;
        double sicurezza = 0;
        double regola = 0; // quanto spesso scegliere così è stato giusto
    };
    struct Ripetuta {
        int etichetta = -1;
        double giusti = 0;
        double provati = 0;
    };
    struct Bilancio {
        double tutti = 0;
        double altre = 0;  // di chi non è la scelta
        double fila = 0;   // in media
        double ignote = 0; // quanto è probabile ciò che non si è mai visto
        double spazioSicuro = 0;
    };
    // Fra ciò che può venire, e comincia con la coda.
    struct Gara {
        QString coda;
        qsizetype lettere = 0; // della coda
        double somma = 0;
        double consistenti = 0;
        double ignoti = 0; // di chi si sa la casella ma non la forma
        double massa = 0;
        Candidato migliore;
        void prova(const Candidato &suo, double sua, double peso);
    };
    enum class Completa { Si, No, Forse };
    using Campioni = std::vector<Campione>;

    const AttiLetti::Reso &reso(int chiave, int luogo) const;
    Campioni campioni(const Allineamento &allineamento, size_t quanti, bool aMeta,
                      double &costo) const;
    std::vector<int> spiegazioni(const Campioni &campioni, const Allineamento &allineamento,
                                 size_t quanti) const;
    std::vector<int> etichette(Campioni &campioni, const Allineamento &allineamento,
                               size_t quanti) const;
    Scelta sceglie(const Campioni &campioni, const std::vector<int> &tutte) const;
    Ripetuta ultimaVolta(const Campioni &campioni, int tratto, bool ancheVuoto) const;
    Scelta perTratto(const Campioni &campioni, int tratto) const;
    Bilancio bilancio(const Campioni &campioni, int scelta) const;
    void gareggia(Candidato suo, int etichetta, double sua, double peso, Gara &gara) const;
    bool corre(const Campioni &campioni, const Scelta &scelta, const Bilancio &conti, int luogo,
               Gara &gara) const;
    double solitario(int etichetta) const;
    Candidato candidato(int etichetta, const Campioni &campioni, int luogo) const;
    double ambigua(int chiave, const Campioni &campioni, const Allineamento &allineamento,
                   size_t quanti, int luogo) const;
    void concorda(const Campioni &campioni, Candidato &candidato) const;
    double preferenza(int chiave, const Allineamento &allineamento, size_t quanti) const;
    double rottura(const Campioni &campioni, const Allineamento &allineamento, size_t quanti) const;
    Completa completa(Candidato &candidato, const QString &coda) const;
    bool compiuta(const Elemento &scritto, const Elemento &letto) const;
    double seguito(const Allineamento &allineamento, size_t quanti,
                   const std::vector<Elemento> &elementi, size_t dove) const;
    bool novita(const Campioni &campioni, const Allineamento &allineamento, size_t quanti) const;

    const AttiLetti &m_letti;
    const Pronte &m_pronte;
    mutable QHash<quint64, AttiLetti::Reso> m_resi;
};

} // namespace modTarvola::formule
