#include "db/schema/tabelle.h"

#include "platform/errore.h"

#include <algorithm>

namespace modTarvola::catalogo
{

namespace
{

constexpr int lunghezzaCasella = 60;
constexpr int lunghezzaCodice = 11; // la lettera e il più grande dei numeri

constexpr QStringView archivi[] = {u"Archivi"};
constexpr QStringView registri[] = {u"Registri"};
constexpr QStringView voci[] = {u"Voci"};
constexpr QStringView individui[] = {u"Individui"};
constexpr QStringView famiglie[] = {u"Famiglie"};
constexpr QStringView operatori[] = {u"Operatori"};
constexpr QStringView generi[] = {u"Traduzioni"};
constexpr QStringView individuiEFamiglie[] = {u"Individui", u"Famiglie"};
constexpr QStringView operatoriEArchivi[] = {u"Operatori", u"Archivi"};
// Tutti i record possono avere testi, file e operatori; i testi e i file no.
constexpr QStringView nove[] = {u"Archivi",   u"Registri",      u"Voci",
                                u"Individui", u"Famiglie",      u"Eventi",
                                u"Luoghi",    u"Comunicazioni", u"Operatori"};

constexpr Colonna codice()
{
    return {.nome = u"Codice",
            .specie = Specie::Codice,
            .lunghezza = lunghezzaCodice,
            .obbligatoria = true};
}

constexpr Colonna testo(QStringView nome, QStringView etichetta = {},
                        Formato formato = Formato::Testo)
{
    return {.nome = nome,
            .formato = formato,
            .lunghezza = lunghezzaCasella,
            .etichetta = etichetta.isEmpty() ? nome : etichetta};
}

constexpr Colonna data(QStringView nome, QStringView etichetta, Formato formato = Formato::Data)
{
    return {.nome = nome,
            .specie = Specie::Giorno,
            .formato = formato,
            .lunghezza = lunghezzaCasella,
            .etichetta = etichetta};
}

constexpr Colonna istante(QStringView nome, QStringView predefinito = {})
{
    return {.nome = nome, .specie = Specie::Istante, .predefinito = predefinito};
}

constexpr Colonna scelta(QStringView nome, QStringView lettere)
{
    return {.nome = nome,
            .formato = Formato::Scelta,
            .lunghezza = 1,
            .etichetta = nome,
            .lettere = lettere};
}

constexpr Colonna genere(QStringView nome, QStringView etichetta = {})
{
    return {.nome = nome,
            .specie = Specie::Numero,
            .formato = Formato::Genere,
            .legame = Legame::Nominato,
            .etichetta = etichetta,
            .proprietari = generi};
}

constexpr Colonna di(QStringView nome, std::span<const QStringView> proprietari,
                     Legame legame = Legame::Sostenuto)
{
    return {.nome = nome,
            .specie = Specie::Codice,
            .lunghezza = lunghezzaCodice,
            .legame = legame,
            .proprietari = proprietari};
}

constexpr Colonna coppia(QStringView nome, std::span<const QStringView> proprietari,
                         Legame legame = Legame::Sostenuto)
{
    Colonna colonna = di(nome, proprietari, legame);
    colonna.obbligatoria = true;
    return colonna;
}

constexpr Colonna conAccanto(Colonna colonna, QStringView accanto)
{
    colonna.accanto = accanto;
    return colonna;
}

constexpr Colonna essenziale(Colonna colonna)
{
    colonna.essenziale = true;
    return colonna;
}

constexpr Colonna modifica = istante(u"Modifica");

constexpr Colonna diArchivi[] = {
    codice(), essenziale(testo(u"Nome")), testo(u"Abbreviazione", u"Abbreviato"), testo(u"Gruppo"),
    modifica,
};

constexpr Colonna diRegistri[] = {
    codice(),
    di(u"Archivio", archivi, Legame::Contenuto),
    genere(u"Tipo", u"Tipo"),
    essenziale(testo(u"Titolo")),
    testo(u"Abbreviazione", u"Abbreviato"),
    testo(u"EventiCitati", u"Eventi citati"),
    data(u"DataIniziale", u"Data iniziale"),
    data(u"DataFinale", u"Data finale"),
    testo(u"Supporto"),
    testo(u"Classe", u"Catalogazione"),
    testo(u"SottoClasse", u"Sub catalogo"),
    modifica,
};

constexpr Colonna diVoci[] = {
    codice(),
    di(u"Registro", registri, Legame::Contenuto),
    essenziale(testo(u"Volume")),
    data(u"Data", u"Data", Formato::DataEstesa),
    {.nome = u"PaginaIniziale",
     .specie = Specie::Numero,
     .formato = Formato::Pagina,
     .lunghezza = lunghezzaCasella,
     .etichetta = u"Pagina",
     .essenziale = true},
    essenziale(testo(u"CodiceVoce", u"Codice")),
    modifica,
};

constexpr Colonna diIndividui[] = {
    codice(),
    di(u"Voce", voci),
    essenziale(testo(u"Nome")),
    essenziale(testo(u"Cognome")),
    essenziale(testo(u"Soprannome")),
    essenziale(testo(u"Detto")),
    essenziale(testo(u"Precisazione")),
    essenziale(testo(u"Età")),
    scelta(u"Sesso", u"MF"),
    scelta(u"Legittimo", u"SN"),
    scelta(u"Vivente", u"SN"),
    genere(u"Ruolo", u"Ruolo"),
    istante(u"Creazione", u"datetime('now', 'localtime')"),
    modifica,
};

constexpr Colonna diFamiglie[] = {codice(), di(u"Voce", voci), genere(u"Ruolo"), modifica};

constexpr Colonna diMembri[] = {
    coppia(u"CodiceFamiglia", famiglie),
    coppia(u"CodiceIndividuo", individui),
};

constexpr Colonna diEventi[] = {
    codice(),
    conAccanto(di(u"IdProprietario", individuiEFamiglie), u"Tipo"),
    genere(u"Tipo", u"Tipo"),
    data(u"Data", u"Data"),
    {.nome = u"Ora",
     .specie = Specie::Istante,
     .formato = Formato::Ora,
     .lunghezza = lunghezzaCasella,
     .etichetta = u"Ora"},
    testo(u"Luogo"),
    testo(u"Indirizzo"),
    testo(u"Causa"),
    testo(u"Valore"),
    modifica,
};

constexpr Colonna diBinari[] = {
    codice(),
    genere(u"Tipo"),
    di(u"IdProprietario", nove),
    testo(u"Nome", u"Titolo"),
    {.nome = u"Campolungo", .specie = Specie::Lungo},
};

constexpr Colonna diLuoghi[] = {
    codice(),
    di(u"IdProprietario", operatoriEArchivi),
    testo(u"Indirizzo1", u"Indirizzo linea 1"),
    testo(u"Indirizzo2", u"Indirizzo linea 2"),
    testo(u"Indirizzo3", u"Indirizzo linea 3"),
    testo(u"Città"),
    testo(u"Stato"),
    testo(u"CodicePostale", u"Codice postale"),
    testo(u"Nazione"),
    modifica,
};

constexpr Colonna diComunicazioni[] = {
    codice(),
    di(u"IdProprietario", operatoriEArchivi),
    essenziale(testo(u"Telefono")),
    essenziale(testo(u"Cellulare")),
    essenziale(testo(u"Fax")),
    essenziale(testo(u"E-mail")),
    essenziale(testo(u"PaginaWeb", u"Pagina Web")),
    essenziale(testo(u"Altro1", u"Altro")),
    essenziale(testo(u"Altro2", u"Altro")),
    modifica,
};

constexpr Colonna diOperatori[] = {
    codice(),          essenziale(testo(u"Nome")),
    testo(u"Cognome"), testo(u"Password", u"Inserisci", Formato::Password),
    genere(u"Tipo"),   modifica,
};

constexpr Colonna diContesti[] = {
    coppia(u"CodiceOperatore", operatori, Legame::Nominato),
    coppia(u"CodiceContesto", nove),
};

constexpr Colonna diTraduzioni[] = {
    {.nome = u"Codice", .specie = Specie::Numero},
    {.nome = u"Tipo", .specie = Specie::Numero, .obbligatoria = true},
    {.nome = u"L1"},
};

constexpr Tabella tavole[] = {
    {u"Archivi", Forma::Record, diArchivi},
    {u"Registri", Forma::Record, diRegistri},
    {u"Voci", Forma::Record, diVoci},
    {u"Individui", Forma::Record, diIndividui},
    {u"Famiglie", Forma::Record, diFamiglie, u"Vuote"},
    {u"FamiglieConiugi", Forma::Coppie, diMembri},
    {u"FamiglieGenitori", Forma::Coppie, diMembri},
    {u"Eventi", Forma::Record, diEventi},
    {u"Binari", Forma::Record, diBinari},
    {u"Luoghi", Forma::Record, diLuoghi},
    {u"Comunicazioni", Forma::Record, diComunicazioni},
    {u"Operatori", Forma::Record, diOperatori, u"Soli"},
    {u"OperatoriContesti", Forma::Coppie, diContesti},
    {u"Traduzioni", Forma::Generi, diTraduzioni},
};

template <typename Condizione>
QList<Posto> posti(const Condizione &condizione)
{
    QList<Posto> trovati;
    for (const Tabella &tabella : tavole) {
        for (const Colonna &colonna : tabella.colonne) {
            if (condizione(colonna))
                trovati.append({&tabella, &colonna});
        }
    }
    return trovati;
}

bool nomina(const Colonna &colonna, QStringView tabella)
{
    return std::any_of(
        colonna.proprietari.begin(), colonna.proprietari.end(),
        [tabella](QStringView una) { return una.compare(tabella, Qt::CaseInsensitive) == 0; });
}

} // namespace

const Colonna *Tabella::colonna(QStringView cercata) const
{
    const auto posto = std::find_if(colonne.begin(), colonne.end(), [cercata](const Colonna &una) {
        return una.nome.compare(cercata, Qt::CaseInsensitive) == 0;
    });
    return posto == colonne.end() ? nullptr : &*posto;
}

QChar Tabella::lettera() const
{
    return forma == Forma::Record ? nome.front() : QChar();
}

const Colonna *Tabella::lunga() const
{
    const auto posto = std::find_if(colonne.begin(), colonne.end(),
                                    [](const Colonna &una) { return una.specie == Specie::Lungo; });
    return posto == colonne.end() ? nullptr : &*posto;
}

std::span<const Tabella> tutte()
{
    return tavole;
}

const Tabella *cerca(QStringView nome)
{
    for (const Tabella &una : tavole) {
        if (una.nome.compare(nome, Qt::CaseInsensitive) == 0)
            return &una;
    }
    return nullptr;
}

const Tabella &tabella(QStringView nome)
{
    const Tabella *trovata = cerca(nome);
    if (trovata == nullptr)
        throw ado::Errore(ado::Causa::Altro, QStringLiteral("la tabella %1 non esiste").arg(nome));
    return *trovata;
}

const Tabella *diCodice(QStringView codice)
{
    for (const Tabella &una : tavole) {
        if (!codice.isEmpty() && codice.front().toUpper() == una.lettera())
            return &una;
    }
    return nullptr;
}

QList<Posto> colonneCon(Legame legame)
{
    return posti([legame](const Colonna &colonna) { return colonna.legame == legame; });
}

QList<Posto> dipendentiDi(QStringView tabella)
{
    return posti([tabella](const Colonna &colonna) { return nomina(colonna, tabella); });
}

QList<Posto> dipendentiDi(QStringView tabella, Legame legame)
{
    return posti([tabella, legame](const Colonna &colonna) {
        return colonna.legame == legame && nomina(colonna, tabella);
    });
}

QList<const Tabella *> coppieDi(const Tabella &tabella)
{
    QList<const Tabella *> trovate;
    for (const Tabella &una : tavole) {
        if (una.forma == Forma::Coppie && nomina(una.colonne.front(), tabella.nome))
            trovate.append(&una);
    }
    return trovate;
}

QString citata(QStringView nome)
{
    const bool semplice = std::all_of(nome.begin(), nome.end(), [](QChar carattere) {
        return carattere.unicode() < 0x80 && carattere.isLetterOrNumber();
    });
    return semplice ? nome.toString() : QStringLiteral("\"%1\"").arg(nome);
}

} // namespace modTarvola::catalogo
