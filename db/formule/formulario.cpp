#include "db/formule/formulario.h"

#include "db/formule/pronostico.h"
#include "db/formule/rilettura.h"

namespace modTarvola::formule
{

namespace
{

constexpr double sogliaTratto = 0.82;
constexpr double sogliaParola = 0.95; // sotto la quale un tratto non va oltre
constexpr double sogliaTutto = 0.6;
constexpr int elementiAlPiu = 45;
constexpr size_t codaAlPiu = 8; // quanti pezzi può avere ciò che si sta scrivendo a metà

bool pausa(const QString &testo)
{
    return testo == QStringLiteral(".") || testo == QStringLiteral(";") ||
           testo == QStringLiteral(":");
}

// La parola che comincia il testo, con gli spazi davanti e dietro.
qsizetype primaParola(const QString &testo)
{
    qsizetype i = 0;
    const auto salta = [&](bool spazi) {
        while (i < testo.size() && testo.at(i).isSpace() == spazi)
            ++i;
    };
    salta(true);
    salta(false);
    salta(true);
    return i;
}

} // namespace

struct Formulario::Dentro {
    AttiLetti letti;
    Prove prove;
    Allineamento allineamento{letti};
    Pronte pronte;
    bool preparate = false;

    void prepara(const Caselle &caselle)
    {
        if (preparate && pronte.caselle == caselle)
            return;
        pronte = letti.prepara(caselle);
        preparate = true;
        allineamento.torna(0);
    }

    // Porta l'allineamento a ciò che è scritto, riprendendo da dove combacia.
    void allinea(const std::vector<Elemento> &elementi)
    {
        size_t uguali = 0;
        while (uguali < elementi.size() && uguali < allineamento.quanti() &&
               allineamento.scritto(uguali).testo == elementi[uguali].testo &&
               allineamento.scritto(uguali).chiavi == elementi[uguali].chiavi)
            ++uguali;
        allineamento.torna(uguali);
        for (size_t i = uguali; i < elementi.size(); ++i)
            allineamento.avanza(elementi[i]);
    }

    // Quanto di un testo si sarebbe indovinato, parola per parola.
    void prova(const Caselle &caselle, const QString &testo)
    {
        prepara(caselle);
        const auto elementi = letti.smonta(testo, pronte, false);
        allineamento.torna(0);
        const Pronosticatore pronosticatore(letti, pronte);
        qsizetype fine = 0;
        int luogo = 0;
        for (size_t i = 0; i < elementi.size(); ++i) {
            const auto guarda = [&](const QString &coda) {
                const Pronostico suo = pronosticatore.dopo(allineamento, i, coda, luogo);
                if (suo.primo.testo.isEmpty() || suo.fine)
                    return true;
                const QString detto = suo.primo.spazio + suo.primo.testo;
                const qsizetype dopo = fine + detto.size();
                const bool giusto = QStringView(testo).sliced(fine).startsWith(detto) &&
                                    (dopo >= testo.size() || !testo.at(dopo).isLetterOrNumber() ||
                                     !suo.primo.parola);
                prove.conta(suo, !coda.trimmed().isEmpty(), giusto);
                return giusto;
            };
            if (!guarda({}) && elementi[i].inizio + 1 < testo.size())
                guarda(testo.mid(fine, elementi[i].inizio + 1 - fine));
            allineamento.avanza(elementi[i]);
            fine = elementi[i].fine;
            luogo = luogoDopo(elementi[i]);
        }
    }

    // Ciò che sta per venire può essere già cominciato: si prova da ogni elemento degli ultimi.
    struct Inizio {
        Pronostico pronostico;
        size_t quanti = 0;
        QString coda;
    };
    Inizio inizio(const Pronosticatore &pronosticatore, const std::vector<Elemento> &elementi,
                  const QString &prima)
    {
        Inizio migliore;
        for (size_t indietro = 0; indietro <= std::min(codaAlPiu, elementi.size()); ++indietro) {
            const size_t quanti = elementi.size() - indietro;
            const QString sua = prima.sliced(quanti == 0 ? 0 : elementi[quanti - 1].fine);
            const int luogo = quanti == 0 ? 0 : luogoDopo(elementi[quanti - 1]);
            const bool aMeta = sua.isEmpty() && quanti > 0 && prima.back().isLetterOrNumber();
            const Pronostico suo = pronosticatore.dopo(allineamento, quanti, sua, luogo, aMeta);
            if (suo.peso > migliore.pronostico.peso)
                migliore = {suo, quanti, sua};
        }
        return migliore;
    }

    // Come se il candidato fosse già scritto.
    Pronostico oltre(const Pronosticatore &pronosticatore, const Candidato &candidato)
    {
        Elemento nuovo;
        nuovo.testo = letti.testi().numero(candidato.testo);
        nuovo.luogo = candidato.luogo;
        nuovo.parola = candidato.parola;
        nuovo.variabile = candidato.testo.front().isUpper() || candidato.testo.front().isDigit();
        if (candidato.chiave != 0)
            nuovo.chiavi = {candidato.chiave};
        allineamento.avanza(nuovo);
        return pronosticatore.dopo(allineamento, allineamento.quanti(), {}, luogoDopo(nuovo));
    }

    // Aggiunge a `esito` finché si è sicuri; il tratto resta negativo se nulla lo chiude.
    void prosegue(const Pronosticatore &pronosticatore, Pronostico &adesso, const QString &coda,
                  Seguito &esito)
    {
        double sicuro = 1;
        esito.tratto = -1;
        const auto chiude = [&esito](qsizetype dove) {
            if (esito.tratto < 0)
                esito.tratto = dove;
        };
        for (int i = 0; i < elementiAlPiu; ++i) {
            const Candidato primo = adesso.primo;
            if (adesso.fine || primo.testo.isEmpty())
                break;
            const double sua = prove.sicurezza(adesso, i == 0 && !coda.trimmed().isEmpty());
            sicuro *= sua;
            if (sicuro < (i == 0 ? sogliaTratto : sogliaTutto))
                break;
            const bool casella = primo.chiave != 0;
            if (i > 0 && (sua < sogliaParola || sicuro < sogliaTratto))
                chiude(esito.testo.size());
            if (i > 0 && casella)
                chiude(esito.testo.size() + primo.spazio.size());
            esito.testo += (primo.spazio + primo.testo).sliced(i == 0 ? coda.size() : 0);
            if (casella || pausa(primo.testo))
                chiude(esito.testo.size());
            adesso = oltre(pronosticatore, primo);
        }
    }

    int luogoDopo(const Elemento &elemento)
    {
        return elemento.chiavi.empty()
                   ? letti.testi().numero(letti.testi().testo(elemento.testo).toLower())
                   : elemento.luogo;
    }
};

Formulario::Formulario() : m_dentro(std::make_unique<Dentro>()) {}
Formulario::~Formulario() = default;
Formulario::Formulario(Formulario &&) noexcept = default;
Formulario &Formulario::operator=(Formulario &&) noexcept = default;

void Formulario::impara(const Caselle &caselle, const QString &testo, bool nelRegistro, bool prova)
{
    if (testo.trimmed().isEmpty())
        return;
    if (prova && nelRegistro && m_dentro->letti.atti().size() > 1)
        m_dentro->prova(caselle, testo);
    m_dentro->letti.aggiunge(caselle, testo, nelRegistro);
    m_dentro->allineamento.azzera();
    m_dentro->preparate = false;
}

Seguito Formulario::seguito(const Caselle &caselle, const QString &prima) const
{
    Dentro &in = *m_dentro;
    Seguito esito;
    if (in.letti.atti().empty())
        return esito;
    in.prepara(caselle);
    const auto elementi = in.letti.smonta(prima, in.pronte, false);
    in.allinea(elementi);
    const Pronosticatore pronosticatore(in.letti, in.pronte);

    const Dentro::Inizio inizio = in.inizio(pronosticatore, elementi, prima);
    Pronostico adesso = inizio.pronostico;
    if (adesso.fine || adesso.primo.testo.isEmpty())
        return esito;
    in.allineamento.torna(inizio.quanti);
    in.prosegue(pronosticatore, adesso, inizio.coda, esito);
    if (esito.testo.trimmed().isEmpty())
        return {};
    constexpr double spazioSicuro = 0.9;
    if (adesso.spazioSicuro >= spazioSicuro && !adesso.fine)
        esito.testo += u' ';
    if (esito.tratto < 0)
        esito.tratto = esito.testo.size();
    while (esito.tratto < esito.testo.size() && esito.testo.at(esito.tratto).isSpace())
        ++esito.tratto;
    esito.parola = primaParola(esito.testo);
    return esito;
}

QMap<scheda::Indirizzo, Lettura> Formulario::caselle(const QString &testo,
                                                     const Caselle &note) const
{
    return Rilettura(m_dentro->letti, testo, note).legge();
}

} // namespace modTarvola::formule
