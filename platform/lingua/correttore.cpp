#include "platform/lingua/correttore.h"

using parole::Parola;

Correttore::Correttore(QString testo, const dizionario::Dizionario &dizionario,
                       bool ignoraMaiuscole)
    : m_testo(std::move(testo)), m_dizionario(dizionario), m_ignoraMaiuscole(ignoraMaiuscole)
{
}

bool Correttore::daVedere(const Parola &parola) const
{
    const QString scritta = m_testo.mid(parola.inizio, parola.lunghezza);
    if (m_ignoraMaiuscole && scritta == scritta.toUpper())
        return false;
    return !m_ignorate.contains(scritta) && !m_dizionario.corretta(scritta);
}

bool Correttore::avanza()
{
    for (auto parola = parole::prossima(m_testo, m_deciso); parola;
         parola = parole::prossima(m_testo, m_deciso)) {
        if (daVedere(*parola)) {
            for (const Parola &pezzo : parole::pezzi(m_testo, *parola)) {
                if (daVedere(pezzo)) {
                    m_corrente = pezzo;
                    return true;
                }
            }
        }
        m_deciso = parola->inizio + parola->lunghezza;
    }
    return false;
}

QStringList Correttore::suggerimenti() const
{
    const qsizetype fine = m_corrente.inizio + m_corrente.lunghezza;
    const QChar ultima = m_testo.at(fine - 1);
    const bool elisa = m_corrente.lunghezza > 1 && parole::eApostrofo(ultima) &&
                       fine < m_testo.size() && m_testo.at(fine).isLetter();
    if (!elisa)
        return m_dizionario.suggerimenti(parola());
    QStringList trovati = m_dizionario.elisioni(parola());
    for (QString &trovato : trovati)
        trovato.back() = ultima;
    return trovati;
}

void Correttore::cambia(const QString &nuova, bool tutte)
{
    const QString vecchia = parola();
    m_testo.replace(m_corrente.inizio, m_corrente.lunghezza, nuova);
    m_deciso = m_corrente.inizio + nuova.size();
    if (tutte)
        cambiaLeAltre(vecchia, nuova);
}

void Correttore::cambiaLeAltre(const QString &vecchia, const QString &nuova)
{
    std::vector<Parola> uguali;
    for (auto trovata = parole::prossima(m_testo, m_deciso); trovata;
         trovata = parole::prossima(m_testo, trovata->inizio + trovata->lunghezza)) {
        for (const Parola &pezzo : parole::pezzi(m_testo, *trovata)) {
            if (QStringView(m_testo).sliced(pezzo.inizio, pezzo.lunghezza) == vecchia)
                uguali.push_back(pezzo);
        }
    }
    // Dal fondo, così i posti delle altre restano buoni.
    for (; !uguali.empty(); uguali.pop_back())
        m_testo.replace(uguali.back().inizio, uguali.back().lunghezza, nuova);
    // Chi vuole questa grafia la vuole dappertutto: non se ne chiede più.
    m_ignorate.insert(nuova);
}

void Correttore::ignora(bool tutte)
{
    if (tutte)
        m_ignorate.insert(parola());
    m_deciso = m_corrente.inizio + m_corrente.lunghezza;
}
