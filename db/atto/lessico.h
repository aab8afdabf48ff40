#pragma once

#include <QByteArray>
#include <QStringList>

#include <vector>

namespace modTarvola
{

// I testi che una colonna ha già, ciascuno una volta, con quante volte e quanto di recente fu
// scritto. Un testo si trova dall'inizio di ogni sua parola, senza badare a maiuscole, accenti e
// apostrofi. Sta in poca memoria: i byte dei testi di seguito, e per ognuno pochi numeri; oltre il
// limite dato escono i testi più rari (Manku e Motwani, "Approximate frequency counts over data
// streams", 2002).
class Lessico
{
public:
    // Quanti byte può tenere in tutto.
    explicit Lessico(size_t limite) : m_limite(limite) {}

    // Un'altra volta il testo, UTF-8; `recente` cresce con gli atti (0: non fra i recenti), il
    // sesso è quello della persona, o 0. I testi vuoti o troppo lunghi non contano.
    void conta(QByteArrayView testo, quint32 recente = 0, char sesso = 0);
    // Vero se il testo, scritto proprio così, c'è già.
    bool ha(QByteArrayView testo) { return trova(testo) != nullptr; }
    // Da chiamare quando si è finito di contare: prima, ciò che è nuovo non si trova.
    void ordina();
    // Come ordina, e rende la memoria che serve soltanto a contare: non si conterà più.
    void chiude();

    // I testi che in una delle parole cominciano come quello dato (già piegato, UTF-8), dal più
    // scritto; a parità chi comincia così dal principio, poi il più recente. Si possono volere solo
    // quelli che cominciano così dal principio.
    QStringList cerca(QByteArrayView piegato, size_t quanti, bool dalPrincipio = false) const;
    // Quante volte un testo che ha quella prima parola (piegata) è di un maschio e di una femmina.
    std::pair<quint32, quint32> sessi(QByteArrayView parola) const;
    size_t quanti() const { return m_voci.size(); }
    size_t byte() const;

private:
    struct Voce {
        quint32 posto; // del testo fra i byte; segue la sua forma piegata
        quint16 lungo;
        quint16 piegato;
        quint32 volte;
        quint32 recente;
        quint32 maschi;
        quint32 femmine;
    };
    struct Inizio {
        quint32 voce;
        quint32 dove; // nella forma piegata
    };
    QByteArrayView testo(const Voce &voce) const { return vista(voce.posto, voce.lungo); }
    QByteArrayView piegato(const Voce &voce) const
    {
        return vista(voce.posto + voce.lungo, voce.piegato);
    }
    QByteArrayView vista(size_t posto, size_t lungo) const;
    QByteArrayView da(const Inizio &inizio) const;
    std::vector<Inizio>::const_iterator primo(QByteArrayView piegato) const;
    Voce *trova(QByteArrayView testo);
    void aggiunge(QByteArrayView testo, const QString &pulito);
    void riposta();
    void sfoltisce();

    size_t m_limite;
    std::vector<char> m_byte;
    std::vector<Voce> m_voci;
    std::vector<quint32> m_posti; // tavola aperta: il numero della voce più uno, o 0
    std::vector<Inizio> m_inizi;  // in ordine di ciò che vi comincia
    size_t m_ordinate = 0;        // quante voci sono già fra gli inizi
};

} // namespace modTarvola
