#include "db/elenchi/ambiti.h"

#include "db/schema/generi.h"
#include "db/schema/tabelle.h"
#include "platform/motore/ado.h"

#include <QHash>

#include <algorithm>
#include <optional>

namespace modTarvola
{

namespace
{

using catalogo::Colonna;
using catalogo::Legame;

enum Livello { diVoce = 0, diRegistro = 4, diArchivio = 6, tutto = 7 };

// Le tappe dall'archivio alle righe di una tabella: ciascuna nomina la precedente come
// proprietaria.
using Discesa = QList<QStringView>;

const QList<Discesa> &disceseA(const QString &tabella)
{
    static const Discesa voci{u"Archivi", u"Registri", u"Voci"};
    static const Discesa individui = voci + Discesa{u"Individui"};
    static const Discesa famiglie = voci + Discesa{u"Famiglie"};
    static const Discesa eventi{u"Eventi"};
    static const Discesa binari{u"Binari"};
    static const QHash<QString, QList<Discesa>> tutte{
        {QStringLiteral("Voci"), {voci}},
        {QStringLiteral("Individui"), {individui}},
        {QStringLiteral("Famiglie"), {famiglie}},
        {QStringLiteral("Eventi"), {individui + eventi, famiglie + eventi}},
        {QStringLiteral("Binari"),
         {voci.first(1) + binari, voci.first(2) + binari, voci + binari, individui + binari,
          famiglie + binari, individui + eventi + binari, famiglie + eventi + binari}},
    };
    static const QList<Discesa> nessuna;
    const auto sue = tutte.constFind(tabella);
    return sue == tutte.constEnd() ? nessuna : *sue;
}

// La colonna con cui le righe di una tappa nominano quelle della tappa di prima.
QStringView legame(QStringView tappa, QStringView prima)
{
    for (const catalogo::Posto &posto : catalogo::dipendentiDi(prima)) {
        if (posto.tabella->nome == tappa && posto.colonna->legame != Legame::Nominato)
            return posto.colonna->nome;
    }
    throw ado::Errore(ado::Causa::Altro,
                      QStringLiteral("la tabella %1 non è di %2").arg(tappa, prima));
}

// Le righe in fondo alla discesa, dall'archivio in giù per gli indici: CROSS JOIN vieta al motore
// di percorrerla al contrario.
QString discende(const Discesa &tappe, int ambito)
{
    QString testo =
        QStringLiteral("SELECT %1.rowid FROM %2").arg(tappe.constLast(), tappe.constFirst());
    for (qsizetype i = 1; i < tappe.size(); ++i)
        testo += QStringLiteral(" CROSS JOIN %1 ON %1.%2 = %3.Codice")
                     .arg(tappe[i], legame(tappe[i], tappe[i - 1]), tappe[i - 1]);
    testo += QStringLiteral(" WHERE Archivi.Codice = ?1");
    if (ambito == diRegistro || ambito == diVoce)
        testo += QStringLiteral(" AND Registri.Codice = ?2");
    if (ambito == diVoce)
        testo += QStringLiteral(" AND Voci.Codice = ?3");
    return testo;
}

// Vero se la riga è in fondo alla discesa, trovato salendo da lei al suo archivio.
QString risale(const Discesa &tappe)
{
    const qsizetype ultima = tappe.size() - 1;
    QString testo = QStringLiteral("EXISTS (SELECT 1 FROM ") + tappe[ultima - 1].toString();
    for (qsizetype i = ultima - 2; i > 0; --i)
        testo += QStringLiteral(" CROSS JOIN %1 ON %1.Codice = %2.%3")
                     .arg(tappe[i], tappe[i + 1], legame(tappe[i + 1], tappe[i]));
    return testo +
           QStringLiteral(" WHERE %1.Codice = %2.%3 AND Registri.Archivio = ?1)")
               .arg(tappe[ultima - 1], tappe[ultima], legame(tappe[ultima], tappe[ultima - 1]));
}

// Un ambito più stretto tiene solo le discese che passano per chi lo delimita.
QString condizioneDelleDiscese(const QString &tabella, int ambito)
{
    const QStringView passaggio = ambito == diVoce       ? u"Voci"
                                  : ambito == diRegistro ? u"Registri"
                                                         : u"Archivi";
    QStringList chiavi;
    for (const Discesa &tappe : disceseA(tabella)) {
        if (tappe.contains(passaggio))
            chiavi.append(discende(tappe, ambito));
    }
    return QStringLiteral("%1.rowid IN (%2)")
        .arg(tabella, chiavi.join(QStringLiteral(" UNION ALL ")));
}

// Ciò che sta subito sotto il record corrente, e gli elenchi che sono tutta la tabella.
struct Diretto {
    QStringView tabella;
    int ambito = 0;
    QStringView condizione;
};
constexpr Diretto diretti[] = {
    {u"Archivi", diVoce, u""},
    {u"Registri", diVoce, u"Registri.Archivio = ?1"},
    {u"Registri", diArchivio, u"Registri.Archivio = ?1"},
    {u"Registri", tutto, u""},
    {u"Voci", diVoce, u"Voci.Registro = ?2"},
    {u"Individui", diVoce, u"Individui.Voce = ?3"},
    {u"Famiglie", diVoce, u"Famiglie.Voce = ?3"},
};

std::optional<QString> condizioneSemplice(const QString &tabella, int ambito)
{
    for (const Diretto &uno : diretti) {
        if (uno.tabella == tabella && uno.ambito == ambito)
            return uno.condizione.toString();
    }
    if (disceseA(tabella).isEmpty() ||
        (ambito != diVoce && ambito != diRegistro && ambito != diArchivio && ambito != tutto))
        return {};
    return ambito == tutto ? QString() : condizioneDelleDiscese(tabella, ambito);
}

const char *const conRuolo =
    "EXISTS (SELECT 1 FROM Traduzioni WHERE Traduzioni.Codice = Individui.Ruolo)";
const char *const conVoce =
    " AND EXISTS (SELECT 1 FROM Voci CROSS JOIN Registri ON Registri.Codice = Voci.Registro "
    "CROSS JOIN Archivi ON Archivi.Codice = Registri.Archivio "
    "WHERE Voci.Codice = Individui.Voce)";

// I dettagli mostrano solo chi ha ruolo, voce, registro e archivio; di un registro o di un archivio
// sono già scelti quelli che li hanno.
QString condizioneDettagli(int ambito)
{
    const bool giaScelti = ambito == diRegistro || ambito == diArchivio;
    return QString::fromUtf8(conRuolo) + (giaScelti ? QString() : QString::fromUtf8(conVoce));
}

// Gli eventi di cui i dettagli mostrano luogo e data.
struct EventoMostrato {
    int genere = 0;
    QStringView nome;
};
constexpr EventoMostrato eventiMostrati[] = {
    {Nascita, u"Nascita"}, {Battesimo, u"Battesimo"}, {Morte, u"Morte"}, {Sepoltura, u"Sepoltura"}};

// Con più eventi dello stesso genere, il maggiore.
QString colonneEventi()
{
    QString testo;
    for (const EventoMostrato &evento : eventiMostrati)
        testo +=
            QStringLiteral("max(CASE e.Tipo WHEN %1 THEN e.Luogo END COLLATE NOCASE) AS Luogo%2, "
                           "max(CASE e.Tipo WHEN %1 THEN e.Data END) AS Data%2, ")
                .arg(evento.genere)
                .arg(evento.nome);
    return testo;
}

// Gli eventi dell'individuo si leggono una volta sola, per tutte e otto le colonne.
QString letturaDettagli(const QString &lingua)
{
    return QStringLiteral("SELECT i.Codice, i.Nome, i.Soprannome, i.Cognome, i.Detto, i.Sesso, "
                          "Traduzioni.%1 AS Ruolo, i.Precisazione, i.Voce, i.Legittimo, i.\"Età\", "
                          "i.Vivente, i.Creazione, ")
               .arg(lingua) +
           colonneEventi() +
           QStringLiteral("Archivi.Nome AS Nome, Registri.Titolo, Voci.Codice AS CodiceVoce "
                          "FROM Individui i CROSS JOIN Traduzioni ON Traduzioni.Codice = i.Ruolo "
                          "CROSS JOIN Voci ON Voci.Codice = i.Voce "
                          "CROSS JOIN Registri ON Registri.Codice = Voci.Registro "
                          "CROSS JOIN Archivi ON Archivi.Codice = Registri.Archivio "
                          "LEFT JOIN Eventi e ON e.IdProprietario = i.Codice "
                          "WHERE i.rowid = ? GROUP BY i.rowid");
}

} // namespace

QString condizioneAmbito(const QString &tabella, int ambito, bool dettagli)
{
    const auto condizione = condizioneSemplice(tabella, ambito);
    if (!condizione)
        throw ado::Errore(
            ado::Causa::Altro,
            QStringLiteral("l'ambito %1 non esiste per la tabella %2").arg(ambito).arg(tabella));
    if (!dettagli || tabella != QStringLiteral("Individui"))
        return *condizione;
    const QString anche = condizioneDettagli(ambito);
    return condizione->isEmpty() ? anche : *condizione + QStringLiteral(" AND ") + anche;
}

QString condizioneSalendo(const QString &tabella, int ambito, bool dettagli)
{
    // I testi e i file vengono da troppe parti.
    if (ambito != diArchivio || tabella == QStringLiteral("Binari") || disceseA(tabella).isEmpty())
        return {};
    QStringList salite;
    for (const Discesa &tappe : disceseA(tabella))
        salite.append(risale(tappe));
    const bool conDettagli = dettagli && tabella == QStringLiteral("Individui");
    return u'(' + salite.join(QStringLiteral(" OR ")) + u')' +
           (conDettagli ? QStringLiteral(" AND ") + condizioneDettagli(ambito) : QString());
}

QString letturaRiga(const QString &tabella, int ambito, bool dettagli, const QString &lingua)
{
    if (tabella == QStringLiteral("Individui") && dettagli)
        return letturaDettagli(lingua);
    if (tabella != QStringLiteral("Binari"))
        return QStringLiteral("SELECT * FROM %1 WHERE rowid = ?").arg(tabella);
    // Un elenco non legge mai i contenuti: di un testo solo il principio, di un file nulla.
    const QString contenuto =
        ambito == tutto
            ? QStringLiteral(", CASE WHEN Tipo IN (12, 13) THEN substr(Campolungo, 1, 200) END "
                             "AS Campolungo")
            : QString();
    return QStringLiteral("SELECT Codice, Tipo, IdProprietario, Nome%1 FROM Binari WHERE rowid = ?")
        .arg(contenuto);
}

bool eColonnaDiDate(const QString &tabella, const QString &colonna)
{
    const Colonna *sua = catalogo::tabella(tabella).colonna(colonna);
    if (sua != nullptr)
        return sua->specie == catalogo::Specie::Giorno || sua->specie == catalogo::Specie::Istante;
    return std::any_of(std::begin(eventiMostrati), std::end(eventiMostrati),
                       [&colonna](const EventoMostrato &evento) {
                           return colonna == QStringLiteral("Data%1").arg(evento.nome);
                       });
}

} // namespace modTarvola
