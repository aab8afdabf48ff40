#pragma once

#include "db/formule/atti_letti.h"

#include <QDate>
#include <QSet>

// Da un testo alle sue caselle, per le formule degli atti già letti.
namespace modTarvola::formule
{

class Rilettura
{
public:
    Rilettura(const AttiLetti &letti, const QString &testo, const Caselle &note);
    QMap<scheda::Indirizzo, Lettura> legge();

private:
    struct Tratto { // di testo, in pezzi
        int chiave = 0;
        size_t da = 0;
        size_t quanti = 0;
    };
    struct Letto {
        QString valore;
        size_t da = 0;
        size_t quanti = 0;
        double peso = 0;
    };
    using Voti = QMap<scheda::Indirizzo, QList<Letto>>;

    std::vector<const AttoLetto *> simili() const;
    int chiaveDi(const Elemento &elemento) const;
    double costo(int chiave, size_t da, size_t quanti);
    double costoCasella(int chiave, size_t da, size_t quanti);
    double costoParola(int testo, size_t pezzo);
    static std::vector<Tratto> ripercorre(const std::vector<size_t> &passi,
                                          const std::vector<int> &chiavi, size_t pezzi);
    double allinea(const AttoLetto &atto, std::vector<Tratto> &tratti);
    QString scritto(size_t da, size_t quanti) const;
    QString valore(const Tratto &tratto) const;
    QString nome(const Tratto &tratto) const;
    QString numero(const Tratto &tratto) const;
    void date(const QMap<scheda::Indirizzo, QList<Tratto>> &sue, const QDate &base, double peso,
              Voti &voti) const;
    QDate ultimaData() const;
    void vota(const std::vector<Tratto> &tratti, const QDate &base, double peso, Voti &voti) const;
    void elegge(const Voti &voti, double tutti);
    void raccoglie();
    scheda::Indirizzo dataDiAtto() const;
    void perParole();      // ciò che dicono le parole attorno: il sesso, "ieri"
    void perUguaglianza(); // ciò che è sempre come un'altra casella
    void perPersona();     // ciò che si sa della stessa persona
    QString nota(const scheda::Indirizzo &dove) const;
    void mette(const scheda::Indirizzo &dove, const QString &valore);

    const AttiLetti &m_letti;
    QString m_testo;
    const Caselle &m_note;
    std::vector<Pezzo> m_pezzi;
    QStringList m_parole;
    QHash<quint64, double> m_noti;          // i costi delle caselle
    QHash<quint64, double> m_distanze;      // e quelli delle parole
    QHash<quint64, int> m_volte;            // di una chiave, o di un testo, dopo una parola ferma
    QHash<QString, QSet<QString>> m_valori; // per campo: i valori visti, e le loro parole
    QMap<scheda::Indirizzo, Lettura> m_lette;
};

} // namespace modTarvola::formule
