#pragma once

#include "db/formule/declinazioni.h"
#include "db/formule/formulario.h"
#include "db/formule/pezzi.h"
#include "db/formule/resa.h"

#include <QHash>

#include <array>
#include <vector>

// Gli atti già letti, smontati: ogni testo come una fila di elementi, parole ferme o caselle.
namespace modTarvola::formule
{

// Numeri al posto dei testi: lo zero è il testo vuoto.
class Nomi
{
public:
    int numero(const QString &testo);
    // Lo zero se non ne ha ancora uno.
    int cerca(const QString &testo) const { return m_numeri.value(testo); }
    const QString &testo(int numero) const { return m_testi[static_cast<size_t>(numero)]; }
    int quanti() const { return static_cast<int>(m_testi.size()); }

private:
    QHash<QString, int> m_numeri;
    std::vector<QString> m_testi{QString()};
};

// Una chiave dice da quale casella viene un elemento, in quale forma e in quale veste.
struct Chiave {
    static int di(int casella, int forma, Veste veste)
    {
        return ((casella << 9) + forma) * vesti + static_cast<int>(veste);
    }
    static int casella(int chiave) { return (chiave / vesti) >> 9; }
    static int forma(int chiave) { return (chiave / vesti) & 511; }
    static Veste veste(int chiave) { return static_cast<Veste>(chiave % vesti); }
};

struct Elemento {
    int testo = 0;  // senza gli spazi davanti
    int spazio = 0; // quelli davanti
    int luogo = 0;  // l'ultima parola ferma che lo precede
    bool parola = false;
    bool variabile = false;  // una parola con la maiuscola, o un numero
    bool sicura = false;     // non solo somiglia a ciò che sta in una casella
    std::vector<int> chiavi; // in ordine; nessuna: non può che essere una parola ferma
    qsizetype inizio = 0;
    qsizetype fine = 0;
};

// Ciò che di un atto può decidere le parole del testo: per ogni tratto, il suo valore; 0 se manca.
using Tratti = std::vector<int>;

struct AttoLetto {
    std::vector<Elemento> elementi;
    Tratti tratti;
    std::vector<char> piene; // per casella
    Caselle caselle;
    double peso = 1; // del registro, o di un altro
};

// Le caselle di un atto pronte a essere trovate in un testo.
struct Pronte {
    struct Voce {
        QStringList pezzi; // minuscoli
        QString testo;
        int casella = 0;
        int forma = 0;
        int grafia = 0;
        QString base;       // la prima grafia
        bool varia = false; // ha più grafie
    };
    struct Nome {
        int casella = 0;
        QStringList parole;
    };
    QHash<QString, std::vector<Voce>> voci; // per primo pezzo
    std::vector<Nome> nomi;                 // ciò che si può declinare
    QHash<int, QStringList> grafie;         // per casella e forma
    Tratti tratti;
    std::vector<char> piene;
    Caselle caselle;
};

class AttiLetti
{
public:
    Pronte prepara(const Caselle &caselle);
    // Smonta un testo con le caselle del suo atto; se `impara`, ne ricorda le grafie.
    std::vector<Elemento> smonta(const QString &testo, const Pronte &pronte, bool impara);
    void aggiunge(const Caselle &caselle, const QString &testo, bool nelRegistro);
    // Il testo che una chiave dà in un atto, prima il più probabile; vuoto se la casella manca.
    struct Reso {
        QString testo;
        double sicurezza = 0;
    };
    Reso reso(int chiave, int luogo, const Pronte &pronte) const;
    // Il luogo della formula in cui sta una casella che segue quella parola.
    QString luogo(int chiave, int parola) const;
    // Le altre grafie che la chiave potrebbe dare.
    QStringList altreGrafie(int chiave, const Pronte &pronte) const;

    const std::vector<AttoLetto> &atti() const { return m_atti; }
    Nomi &testi() { return m_testi; }
    const Nomi &testi() const { return m_testi; }
    const QString &testo(int numero) const { return m_testi.testo(numero); }
    // Il numero che un testo minuscolo dice in quella forma di una casella: di una data "g12",
    // "m3", "a1743"; degli altri campi il valore intero. Vuoto se non lo dice.
    QString rovescio(const scheda::Indirizzo &dove, int forma, const QString &testo) const;
    const scheda::Indirizzo &casella(int numero) const
    {
        return m_indirizzi[static_cast<size_t>(numero)];
    }
    const QString &posto(int casella) const
    {
        return m_indirizzi[static_cast<size_t>(casella)].posto;
    }
    int quantiTratti() const { return m_nomiTratti.quanti(); }
    // Quanto è probabile, prima di ogni prova, che un tratto decida una parola.
    double fiducia(int tratto) const { return m_fiducia[static_cast<size_t>(tratto)]; }
    bool diSesso(int tratto) const { return m_diSesso[static_cast<size_t>(tratto)] != 0; }
    // Il posto di cui il tratto dice se qualcosa c'è; vuoto se dice altro.
    const QString &presenza(int tratto) const { return m_presenza[static_cast<size_t>(tratto)]; }
    const Declinazioni &declinazioni() const { return m_declinazioni; }
    // In quanti atti con quel valore del tratto sta la parola.
    int volte(int testo, int tratto, int valore) const;

private:
    int casellaDi(const scheda::Indirizzo &dove);
    void tratto(Tratti &tratti, const QString &nome, const QString &valore, double fiducia,
                bool sesso = false);
    void trattiDi(Pronte &pronte);
    void trattiDiData(Tratti &tratti, const QString &nome, qint64 giorno);
    void trattiDiCasella(Tratti &tratti, const QString &nome, const QString &campo,
                         const QString &valore);
    void trattiDiCoppie(Tratti &tratti, const QList<QPair<QString, qint64>> &giorni,
                        const QList<QPair<QString, QString>> &uguali);
    // Le voci di un valore, ancora senza casella.
    struct Voci {
        QList<Resa> rese;
        std::vector<Pronte::Voce> voci;
    };
    const Voci &vociDi(const scheda::Indirizzo &dove, const QString &valore);
    qsizetype trova(const QString &testo, const std::vector<Pezzo> &pezzi, size_t da,
                    const Pronte &pronte, Elemento &elemento, bool impara);
    qsizetype trovaNomi(const QString &testo, const std::vector<Pezzo> &pezzi, size_t da,
                        const Pronte &pronte, qsizetype lunghi, Elemento &elemento);
    void imparaForme(const AttoLetto &atto, const Pronte &pronte);

    std::vector<AttoLetto> m_atti;
    Nomi m_testi;
    QMap<scheda::Indirizzo, int> m_caselle;
    std::vector<scheda::Indirizzo> m_indirizzi{scheda::Indirizzo()};
    Nomi m_nomiTratti;
    Nomi m_valori;
    std::vector<double> m_fiducia{0};
    std::vector<char> m_diSesso{0};
    std::vector<QString> m_presenza; // il posto di cui il tratto dice che qualcosa c'è
    QHash<QString, Voci> m_voci;
    mutable QHash<QString, QHash<QString, QString>> m_rovesci; // per forma: testo, numero
    Declinazioni m_declinazioni;
    QHash<QString, int> m_grafiaDi; // di un numero: la grafia vista l'ultima volta
    QHash<int, int> m_grafiaForma;  // di una forma
    QHash<quint64, int> m_volte;    // testo e valore del tratto di sesso
};

} // namespace modTarvola::formule
