#include "db/atto/scheda.h"

#include "db/schema/generi.h"

#include <algorithm>

namespace modTarvola::scheda
{

namespace
{

enum Altri {
    Battezzato = 1,
    Sposo = 2,
    Sposa = 3,
    Defunto = 4,
    Testimone = 5,
    Matrimonio = 18,
    Pubblicazioni = 19
};

// Una riga come si scrive qui sotto: i campi divisi da spazi; "~" davanti a quelli che il
// tabulatore salta, "-" a quelli che non si vedono finché sono vuoti.
Riga riga(const QString &posto, int evento, const QString &campi)
{
    Riga nuova{posto, evento, {}};
    const QStringList nomi = campi.split(u' ', Qt::SkipEmptyParts);
    for (const QString &nome : nomi) {
        const Uso uso = nome.front() == u'~'   ? Uso::Saltata
                        : nome.front() == u'-' ? Uso::Nascosta
                                               : Uso::Mostrata;
        nuova.caselle.append({uso == Uso::Mostrata ? nome : nome.sliced(1), uso});
    }
    return nuova;
}

const QString voce = QStringLiteral("voce");
const QString campiVoce = QStringLiteral("~Volume ~PaginaIniziale ~CodiceVoce Data");
const QString campiGenitore =
    QStringLiteral("Nome Cognome -Soprannome Precisazione ~Detto ~Vivente -Età");
// Di chi il mestiere si dice di rado.
const QString campiAltroGenitore =
    QStringLiteral("Nome Cognome -Soprannome ~Precisazione ~Detto ~Vivente -Età");
const QString campiPresente =
    QStringLiteral("Nome Cognome ~Sesso ~Precisazione -Detto -Vivente -Soprannome -Età");

// Nei battesimi il soprannome dei genitori ha sempre la sua casella.
QString conSoprannome(QString campi)
{
    return campi.replace(QStringLiteral("-Soprannome"), QStringLiteral("~Soprannome"));
}

Posto postoVoce()
{
    return {voce, QStringLiteral("Atto"), Come::Voce};
}

Posto genitore(const char *nome, const char *etichetta, int ruolo, const QString &di)
{
    return {QString::fromUtf8(nome),
            QString::fromUtf8(etichetta),
            Come::Genitore,
            ruolo,
            0,
            ruolo == Padre ? QStringLiteral("M") : QStringLiteral("F"),
            di};
}

// I posti che chiudono ogni scheda.
QList<Posto> postiFinali()
{
    return {{QStringLiteral("altre"), QStringLiteral("Altra persona"), Come::Altre, 40},
            {QStringLiteral("testo"), QStringLiteral("Testo"), Come::Testo, TestoRiportato},
            {QStringLiteral("nota"), QStringLiteral("Nota"), Come::Testo, Nota}};
}

QList<Riga> righeFinali()
{
    return {riga(QStringLiteral("altre"), 0, QStringLiteral("~Ruolo ") + campiPresente),
            riga(QStringLiteral("testo"), 0, QStringLiteral("Campolungo")),
            riga(QStringLiteral("nota"), 0, QStringLiteral("~Campolungo"))};
}

Scheda battesimo()
{
    const QString figlio = QStringLiteral("battezzato");
    Scheda scheda{RegistroBattesimi, CategoriaBattesimo, {}, {}};
    scheda.posti = {
        postoVoce(),
        {figlio, QStringLiteral("Battezzato/a"), Come::Principale, Battezzato},
        genitore("padre", "Padre", Padre, figlio),
        genitore("madre", "Madre", Madre, figlio),
        {QStringLiteral("padrini"), QStringLiteral("Padrino/Madrina"), Come::Elenco, Padrino}};
    scheda.posti += postiFinali();
    scheda.righe = {
        riga(voce, 0, campiVoce),
        riga(figlio, 0,
             QStringLiteral(
                 "Nome Cognome Sesso ~Legittimo -Detto -Vivente -Soprannome -Precisazione -Età")),
        riga(figlio, Nascita, QStringLiteral("Data ~Ora Luogo -Indirizzo -Causa -Valore")),
        riga(figlio, modTarvola::Battesimo,
             QStringLiteral("~Data -Ora ~Luogo -Indirizzo -Causa -Valore")),
        riga(QStringLiteral("padre"), 0, conSoprannome(campiGenitore)),
        riga(QStringLiteral("madre"), 0, conSoprannome(campiAltroGenitore)),
        riga(QStringLiteral("padrini"), 0, campiPresente)};
    scheda.righe += righeFinali();
    return scheda;
}

Scheda matrimonio()
{
    const QString sposo = QStringLiteral("sposo");
    const QString sposa = QStringLiteral("sposa");
    const QString coppia = QStringLiteral("coppia");
    const QString campi =
        QStringLiteral("Nome Cognome ~Età ~Precisazione -Sesso -Detto -Vivente -Soprannome "
                       "-Legittimo");
    Scheda scheda{RegistroMatrimoni, CategoriaMatrimonio, {}, {}};
    scheda.posti = {
        postoVoce(),
        {sposo, QStringLiteral("Sposo"), Come::Principale, Sposo, Marito, QStringLiteral("M"),
         sposa},
        genitore("padre_sposo", "Padre dello sposo", Padre, sposo),
        genitore("madre_sposo", "Madre dello sposo", Madre, sposo),
        {sposa, QStringLiteral("Sposa"), Come::Coniuge, Moglie, Sposa, QStringLiteral("F"), sposo},
        genitore("padre_sposa", "Padre della sposa", Padre, sposa),
        genitore("madre_sposa", "Madre della sposa", Madre, sposa),
        {coppia, QStringLiteral("Sposi"), Come::Coppia, FamigliaConiuge, 0, {}, sposo},
        {QStringLiteral("testimoni"), QStringLiteral("Testimone"), Come::Elenco, Testimone}};
    scheda.posti += postiFinali();
    scheda.righe = {
        riga(voce, 0, campiVoce),
        riga(sposo, 0, campi),
        riga(QStringLiteral("padre_sposo"), 0, campiAltroGenitore),
        riga(QStringLiteral("madre_sposo"), 0, campiAltroGenitore),
        riga(sposa, 0, campi),
        riga(QStringLiteral("padre_sposa"), 0, campiAltroGenitore),
        riga(QStringLiteral("madre_sposa"), 0, campiAltroGenitore),
        riga(coppia, Matrimonio, QStringLiteral("~Data -Ora ~Luogo -Indirizzo -Causa -Valore")),
        riga(coppia, Pubblicazioni, QStringLiteral("~Data -Ora ~Luogo -Indirizzo -Causa -Valore")),
        riga(QStringLiteral("testimoni"), 0, campiPresente)};
    scheda.righe += righeFinali();
    return scheda;
}

Scheda morte()
{
    const QString defunto = QStringLiteral("defunto");
    Scheda scheda{RegistroMorti, CategoriaMorte, {}, {}};
    scheda.posti = {
        postoVoce(),
        {defunto, QStringLiteral("Defunto/a"), Come::Principale, Defunto},
        genitore("padre", "Padre", Padre, defunto),
        genitore("madre", "Madre", Madre, defunto),
        {QStringLiteral("coniuge"), QStringLiteral("Coniuge"), Come::Coniuge, 0, 0, {}, defunto},
        {QStringLiteral("testimoni"), QStringLiteral("Testimone"), Come::Elenco, Testimone}};
    scheda.posti += postiFinali();
    scheda.righe = {
        riga(voce, 0, campiVoce),
        riga(defunto, 0,
             QStringLiteral(
                 "Nome Cognome Sesso Età ~Precisazione -Detto -Vivente -Soprannome -Legittimo")),
        riga(defunto, Morte, QStringLiteral("Data ~Ora Luogo Causa -Indirizzo -Valore")),
        riga(defunto, Sepoltura, QStringLiteral("Data ~Luogo -Ora -Indirizzo -Causa -Valore")),
        riga(QStringLiteral("padre"), 0, campiAltroGenitore),
        riga(QStringLiteral("madre"), 0, campiAltroGenitore),
        riga(QStringLiteral("coniuge"), 0, campiAltroGenitore),
        riga(QStringLiteral("testimoni"), 0, campiPresente)};
    scheda.righe += righeFinali();
    return scheda;
}

} // namespace

const Posto *Scheda::posto(const QString &nome) const
{
    const auto trovato = std::find_if(posti.begin(), posti.end(),
                                      [&nome](const Posto &uno) { return uno.nome == nome; });
    return trovato == posti.end() ? nullptr : &*trovato;
}

const Scheda *diTipo(int tipo)
{
    static const QList<Scheda> schede{battesimo(), matrimonio(), morte()};
    const auto trovata = std::find_if(schede.begin(), schede.end(),
                                      [tipo](const Scheda &una) { return una.tipo == tipo; });
    return trovata == schede.end() ? nullptr : &*trovata;
}

} // namespace modTarvola::scheda
