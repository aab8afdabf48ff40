#pragma once

#include "db/formule/atti_letti.h"

// Dove, in ogni atto già letto, si è arrivati con ciò che è scritto finora.
namespace modTarvola::formule
{

// Le righe di un allineamento globale con costi che si dimenticano andando avanti (Needleman e
// Wunsch, 1970, con uno sconto a ogni elemento). Una riga vale per tutti gli atti insieme.
class Allineamento
{
public:
    explicit Allineamento(AttiLetti &letti) : m_letti(letti) {}

    // Torna a quando erano scritti i primi `quanti` elementi.
    void torna(size_t quanti);
    void avanza(const Elemento &elemento);
    size_t quanti() const { return m_scritti.size(); }
    const Elemento &scritto(size_t quale) const { return m_scritti[quale]; }
    // Da chiamare quando gli atti letti cambiano.
    void azzera();

    struct Posto {
        int elemento = 0; // il primo dell'atto non ancora raggiunto
        float costo = 0;
    };
    // Il posto più probabile in ogni atto, dopo i primi `quanti` elementi.
    std::vector<Posto> posti(size_t quanti) const;

private:
    using Riga = std::vector<float>;
    void comincia();
    const std::vector<float> &costi(const Elemento &elemento);
    static float fra(const Elemento &scritto, const Elemento &letto,
                     const std::vector<float> &costi);

    AttiLetti &m_letti;
    std::vector<size_t> m_inizi; // dove comincia ogni atto nella riga
    std::vector<Riga> m_righe;
    std::vector<Elemento> m_scritti;
    QHash<int, std::vector<float>> m_costi;
};

} // namespace modTarvola::formule
