#include "demo/verifica.h"

#include "db/archivio/connessioni.h"
#include "db/schema/schema.h"

#include <QCryptographicHash>

#include <algorithm>

using namespace Qt::StringLiterals;
using namespace esempi;

namespace verifica
{

namespace
{

// Percorre gli atti come li percorre chi li batte. I tipi sono ancora etichette.
class Percorso
{
public:
    void archivio(const Archivio &questo)
    {
        const QString codice = aggiunge(u"Archivi"_s, {{u"Nome"_s, questo.nome},
                                                       {u"Abbreviazione"_s, questo.abbreviato},
                                                       {u"Gruppo"_s, questo.gruppo}});
        for (const Registro &suo : questo.registri)
            registro(suo, codice);
    }
    Tabelle &&tabelle() && { return std::move(m_tabelle); }

private:
    // Aggiunge una riga, i cui testi vuoti sono Null, e ne dà il codice.
    QString aggiunge(const QString &tabella, Riga riga)
    {
        QList<Riga> &righe = m_tabelle[tabella];
        const QString codice = tabella.first(1) + QString::number(righe.size() + 1);
        riga[u"Codice"_s] = codice;
        riga.removeIf([](const auto &campo) { return campo.value().isEmpty(); });
        righe.append(riga);
        if (tabella != u"Binari"_s)
            m_tabelle[u"OperatoriContesti"_s].append(
                Riga{{u"CodiceOperatore"_s, u"O1"_s}, {u"CodiceContesto"_s, codice}});
        return codice;
    }

    void registro(const Registro &questo, const QString &archivio)
    {
        const QString codice = aggiunge(u"Registri"_s, {{u"Archivio"_s, archivio},
                                                        {u"Titolo"_s, questo.titolo},
                                                        {u"Tipo"_s, questo.tipo},
                                                        {u"DataIniziale"_s, questo.dataIniziale},
                                                        {u"DataFinale"_s, questo.dataFinale},
                                                        {u"Supporto"_s, questo.supporto}});
        for (const Atto &atto : questo.atti) {
            const QString voce = aggiunge(u"Voci"_s, {{u"Registro"_s, codice},
                                                      {u"Volume"_s, atto.volume},
                                                      {u"PaginaIniziale"_s, atto.pagina},
                                                      {u"CodiceVoce"_s, atto.numero},
                                                      {u"Data"_s, atto.data}});
            for (const Individuo &persona : atto.persone)
                individuo(persona, voce);
            testo(voce, u"Testo riportato"_s, atto.testo);
            if (!atto.traduzione.isEmpty())
                testo(voce, u"Nota"_s, atto.traduzione);
        }
    }

    void testo(const QString &voce, const QString &genere, const QString &parole)
    {
        aggiunge(u"Binari"_s,
                 {{u"Tipo"_s, genere}, {u"IdProprietario"_s, voce}, {u"Campolungo"_s, parole}});
    }

    QString individuo(const Individuo &questo, const QString &voce)
    {
        const QString codice = aggiunge(u"Individui"_s, {{u"Voce"_s, voce},
                                                         {u"Ruolo"_s, questo.ruolo},
                                                         {u"Precisazione"_s, questo.precisazione},
                                                         {u"Nome"_s, questo.nome},
                                                         {u"Cognome"_s, questo.cognome},
                                                         {u"Età"_s, questo.eta},
                                                         {u"Sesso"_s, questo.sesso}});
        eventi(questo.eventi, codice);
        for (const Famiglia &sua : questo.famiglie)
            famiglia(sua, codice, voce);
        return codice;
    }

    void famiglia(const Famiglia &questa, const QString &individuoDiPartenza, const QString &voce)
    {
        const QString codice =
            aggiunge(u"Famiglie"_s, {{u"Voce"_s, voce}, {u"Ruolo"_s, questa.tipo}});
        membro(questa.tipo == u"Famiglia Genitori"_s ? u"FamiglieGenitori"_s : u"FamiglieConiugi"_s,
               codice, individuoDiPartenza);
        for (const Individuo &suo : questa.membri)
            membro(u"FamiglieConiugi"_s, codice, individuo(suo, voce));
        eventi(questa.eventi, codice);
    }

    void membro(const QString &tabella, const QString &famiglia, const QString &individuo)
    {
        m_tabelle[tabella].append(
            Riga{{u"CodiceFamiglia"_s, famiglia}, {u"CodiceIndividuo"_s, individuo}});
    }

    void eventi(const std::vector<Evento> &questi, const QString &proprietario)
    {
        for (const Evento &evento : questi)
            aggiunge(u"Eventi"_s, {{u"IdProprietario"_s, proprietario},
                                   {u"Tipo"_s, evento.tipo},
                                   {u"Valore"_s, evento.valore},
                                   {u"Luogo"_s, evento.luogo},
                                   {u"Data"_s, evento.data}});
    }

    Tabelle m_tabelle;
};

const QStringList &campiDiTempo()
{
    static const QStringList campi{u"Creazione"_s, u"Modifica"_s};
    return campi;
}

QString inTesto(const QVariant &valore)
{
    return valore.typeId() == QMetaType::QByteArray ? impronta(valore.toByteArray())
                                                    : valore.toString();
}

// Legge ogni riga di una tabella; un testo vuoto, che non è Null, resta fra i campi.
QList<Riga> leggeTabella(ado::Connection &connessione, const QString &tabella)
{
    QList<Riga> righe;
    connessione.leggi({u"SELECT * FROM "_s + tabella, {}, {}}, [&](const ado::Riga &letta) {
        Riga riga;
        for (int i = 0; i < letta.colonne(); ++i) {
            if (!letta.nullo(i))
                riga[letta.nome(i)] = inTesto(letta.valore(i));
        }
        righe.append(riga);
        return true;
    });
    return righe;
}

// I numeri dei generi prendono il posto delle loro etichette.
void traduce(Tabelle &tabelle)
{
    QMap<QString, QString> generi;
    for (const Riga &genere : std::as_const(tabelle[u"Traduzioni"_s]))
        generi[genere[u"L1"_s]] = genere[u"Codice"_s];
    for (auto tabella = tabelle.begin(); tabella != tabelle.end(); ++tabella) {
        if (tabella.key() == u"Traduzioni"_s)
            continue;
        for (Riga &riga : tabella.value()) {
            for (const QString &campo : {u"Tipo"_s, u"Ruolo"_s}) {
                if (riga.contains(campo))
                    riga[campo] = generi[riga[campo]];
            }
        }
    }
}

QString inParole(const Riga &riga)
{
    QStringList campi;
    for (auto campo = riga.begin(); campo != riga.end(); ++campo)
        campi.append(u"%1=\"%2\""_s.arg(campo.key(), campo.value()));
    return campi.isEmpty() ? u"no row"_s : campi.join(u' ');
}

// Le righe coi codici in ordine di numero, l'ordine in cui sono state battute; poi le altre.
void ordina(QList<Riga> &righe)
{
    const auto chiave = [](const Riga &riga) {
        const QString codice = riga[u"Codice"_s];
        return std::pair(codice.isEmpty() || codice.at(0).isDigit() ? codice.toInt()
                                                                    : codice.mid(1).toInt(),
                         inParole(riga));
    };
    std::sort(righe.begin(), righe.end(),
              [&](const Riga &a, const Riga &b) { return chiave(a) < chiave(b); });
}

// Toglie i tempi, che il programma mette da sé; quelli fuori dai limiti restano, e si vedranno.
void toglieTempi(Riga &riga, const QString &inizio, const QString &fine)
{
    for (const QString &campo : campiDiTempo()) {
        if (riga.value(campo) >= inizio && riga.value(campo) <= fine)
            riga.remove(campo);
        else if (!riga.contains(campo))
            riga.insert(campo, u"Null"_s);
    }
}

// Le tabelle i cui record portano i tempi; fra loro solo Individui ha anche Creazione.
bool conTempi(const QString &tabella)
{
    return tabella != u"Binari"_s && tabella != u"Traduzioni"_s &&
           modTarvola::tabelleConCodice().contains(tabella);
}

} // namespace

QString impronta(const QByteArray &byte)
{
    return QString::fromLatin1(QCryptographicHash::hash(byte, QCryptographicHash::Sha256).toHex());
}

Tabelle attese(const std::vector<Archivio> &archivi, const Credenziali &trascrittore)
{
    Percorso percorso;
    for (const Archivio &archivio : archivi)
        percorso.archivio(archivio);
    Tabelle tabelle = std::move(percorso).tabelle();
    tabelle[u"Operatori"_s] = {Riga{{u"Codice"_s, u"O1"_s},
                                    {u"Tipo"_s, u"Trascrittore"_s},
                                    {u"Nome"_s, trascrittore.nome},
                                    {u"Cognome"_s, trascrittore.cognome},
                                    {u"Password"_s, trascrittore.password}}};
    return tabelle;
}

Esito confronta(const QString &percorso, const QString &modello, Tabelle attese,
                const QString &inizio, const QString &fine)
{
    ado::Connection vuoto;
    vuoto.Open(modTarvola::stringaDiConnessione(modello));
    attese[u"Traduzioni"_s] = leggeTabella(vuoto, u"Traduzioni"_s);
    traduce(attese);
    ado::Connection connessione;
    connessione.Open(modTarvola::stringaDiConnessione(percorso));
    Esito esito;
    for (const QString &tabella : modTarvola::tabelle()) {
        QList<Riga> scritte = leggeTabella(connessione, tabella);
        QList<Riga> battute = attese[tabella];
        ordina(scritte);
        ordina(battute);
        esito.righe[tabella] = static_cast<int>(scritte.size());
        for (int i = 0; i < qMax(scritte.size(), battute.size()); ++i) {
            Riga scritta = scritte.value(i);
            if (i < scritte.size() && conTempi(tabella)) {
                if (tabella != u"Individui"_s)
                    scritta.insert(u"Creazione"_s, inizio);
                toglieTempi(scritta, inizio, fine);
            }
            if (scritta != battute.value(i))
                esito.differenze.append(u"%1: typed %2, found %3"_s.arg(
                    tabella, inParole(battute.value(i)), inParole(scritta)));
        }
    }
    return esito;
}

} // namespace verifica
